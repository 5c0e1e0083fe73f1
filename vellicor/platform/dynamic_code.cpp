// vellicor/platform/dynamic_code.cpp — shared objects through the system's dynamic linker.
#include "vellicor/platform/dynamic_code.h"

#include <dlfcn.h>

#include <system_error>

namespace vellicor {

std::optional<DynamicCode> DynamicCode::load(const std::filesystem::path& file, std::string& error) {
    std::error_code failure;
    const std::filesystem::path whole = std::filesystem::absolute(file, failure);  // a bare name would be searched for
    if (failure) {
        error = failure.message();
        return std::nullopt;
    }
    if (!std::filesystem::is_regular_file(whole, failure)) {  // a pipe would make the linker wait
        error = failure ? failure.message() : "not a regular file";
        return std::nullopt;
    }
    void* handle = ::dlopen(whole.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle) return DynamicCode(handle);
    const char* reason = ::dlerror();
    error = reason ? reason : "";
    return std::nullopt;
}

void* DynamicCode::symbol(const std::string& name) const { return ::dlsym(_handle, name.c_str()); }

}  // namespace vellicor
