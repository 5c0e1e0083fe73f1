// vellicor/platform/dynamic_code.h — code that is loaded into the running process.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vellicor {

/// A shared object in this process. Once loaded it stays until the process ends, so what it made may live as long.
class DynamicCode {
public:
    /// Loads the file, with every symbol that it needs; null with the system's reason in `error` when that fails.
    /// Loading a file again answers the same code.
    [[nodiscard]] static std::optional<DynamicCode> load(const std::filesystem::path& file, std::string& error);
    /// The address of an exported function; null when there is none of that name.
    [[nodiscard]] void* symbol(const std::string& name) const;

private:
    explicit DynamicCode(void* handle) : _handle(handle) {}
    void* _handle;  // never closed
};

}  // namespace vellicor
