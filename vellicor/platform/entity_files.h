// vellicor/platform/entity_files.h — the files that an XML document may include as external entities.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vellicor {

/// What may be included: regular files at or below one folder, of limited size.
class EntityFiles {
public:
    static constexpr std::size_t kLargestFile = 1024 * 1024;

    struct Included {
        std::filesystem::path file;  // absolute, without symbolic links
        std::string bytes;
    };

    explicit EntityFiles(const std::filesystem::path& folder);
    const std::filesystem::path& folder() const { return _folder; }

    /// The file that `systemId`, a relative URI, names, as seen from the folder `base`; null with the reason in
    /// `refusal` when it has a URL scheme, leads out of the folder (symbolic links count as where they lead), is no
    /// regular file, is too large or cannot be read.
    [[nodiscard]] std::optional<Included> read(std::string_view systemId, const std::filesystem::path& base,
                                               std::string& refusal) const;

private:
    [[nodiscard]] bool contains(const std::filesystem::path& file) const;

    std::filesystem::path _folder;
};

}  // namespace vellicor
