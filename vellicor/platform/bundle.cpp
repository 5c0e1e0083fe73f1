// vellicor/platform/bundle.cpp — reading a bundle's information dictionary.
#include "vellicor/platform/bundle.h"

#include <system_error>
#include <utility>

#include "vellicor/platform/files.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

Bundle::Bundle(std::filesystem::path path) : _path(std::move(path)), _contents(_path) {
    std::error_code ignored;
    for (const std::filesystem::path& folder : {_path, _path / "Contents"}) {
        const std::filesystem::path file = folder / "Info.plist";
        if (!std::filesystem::is_regular_file(file, ignored)) continue;
        _contents = folder;
        std::string error;
        const auto bytes = readFile(file, error);
        const auto list = bytes ? valueFromPropertyList(*bytes, error) : std::nullopt;
        if (list && list->asMap()) _infoDictionary = *list->asMap();
        return;
    }
}

OptionalText Bundle::nonEmptyText(std::string_view key) const {
    auto found = _infoDictionary.find(key);
    const std::string* text = found == _infoDictionary.end() ? nullptr : found->second.asText();
    return text && !text->empty() ? OptionalText(*text) : std::nullopt;
}

const Value* Bundle::version() const {
    auto found = _infoDictionary.find("CFBundleVersion");
    if (found == _infoDictionary.end()) return nullptr;
    const Value& version = found->second;
    return version.asText() || version.asInteger() || version.asReal() ? &version : nullptr;
}

std::optional<std::filesystem::path> Bundle::executablePath() const {
    const OptionalText name = executableName();
    if (!name || name->find('/') != name->npos || *name == "." || *name == "..") return std::nullopt;
    return _contents / *name;
}

std::string Bundle::description() const { return text("Bundle <%@>", _path.string()); }

}  // namespace vellicor
