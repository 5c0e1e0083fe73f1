// vellicor/platform/bundle.h — a folder that carries an information dictionary and code.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "vellicor/platform/text.h"
#include "vellicor/platform/value.h"

namespace vellicor {

/// A folder with its information dictionary, a property list at "Info.plist" or "Contents/Info.plist" below it.
class Bundle {
public:
    /// Reads the dictionary; it stays empty when there is none, or when it cannot be read or is no dictionary.
    explicit Bundle(std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& path() const { return _path; }
    [[nodiscard]] const Value::Map& infoDictionary() const { return _infoDictionary; }
    /// "CFBundleIdentifier"; null when it is missing, empty or no text.
    [[nodiscard]] OptionalText identifier() const { return nonEmptyText("CFBundleIdentifier"); }
    /// "CFBundleVersion" as stored, text or number; null when it is missing or of another kind.
    [[nodiscard]] const Value* version() const;
    /// "CFBundleExecutable"; null when it is missing, empty or no text.
    [[nodiscard]] OptionalText executableName() const { return nonEmptyText("CFBundleExecutable"); }
    /// The executable's place, beside the information dictionary; null without a name or when that is no file name.
    [[nodiscard]] std::optional<std::filesystem::path> executablePath() const;
    /// "NSPrincipalClass"; null when it is missing, empty or no text.
    [[nodiscard]] OptionalText principalClass() const { return nonEmptyText("NSPrincipalClass"); }
    /// For logs.
    [[nodiscard]] std::string description() const;

private:
    [[nodiscard]] OptionalText nonEmptyText(std::string_view key) const;

    std::filesystem::path _path;
    std::filesystem::path _contents;  // where the information dictionary lies
    Value::Map _infoDictionary;
};

}  // namespace vellicor
