// tests/support/temp_folder.h — a fresh folder that is removed at the end of a scope.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace vellicor::testing {

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vellicor-XXXXXX").string();
        if (!mkdtemp(pattern.data())) std::abort();
        _path = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return _path; }
    std::filesystem::path write(const std::string& name, std::string_view content) const {
        std::filesystem::create_directories((_path / name).parent_path());
        std::ofstream(_path / name, std::ios::binary) << content;
        return _path / name;
    }
    static std::string read(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    std::filesystem::path _path;
};

}  // namespace vellicor::testing
