// vellicor/platform/exception.h — the one exception type of the library, identified by name, with a reason text.
#pragma once

#include <stdexcept>
#include <string>

namespace vellicor {

/// What model operations and the loader raise. `name()` identifies the kind, `reason()` is the text for people and the
/// one that log lines print.
class SQLException : public std::runtime_error {
public:
    SQLException(std::string name, const std::string& reason) : std::runtime_error(reason), _name(std::move(name)) {}
    const std::string& name() const { return _name; }
    std::string reason() const { return what(); }

private:
    std::string _name;
};

/// A broken promise of the caller (a programming error). It stops the operation before anything changed.
class AssertionFailure : public SQLException {
public:
    explicit AssertionFailure(const std::string& reason) : SQLException("AssertionFailure", reason) {}
};

namespace exceptions {
inline constexpr const char* unknownType = "unknown type exception";
inline constexpr const char* nilField = "NilFieldException";
inline constexpr const char* duplicateField = "DuplicateFieldException";
inline constexpr const char* addField = "Add Field Exception";
inline constexpr const char* parsing = "ParsingException";
inline constexpr const char* getObjectByName = "GetObjectByNameException";
inline constexpr const char* nilIndexField = "NilIndexFieldException";
inline constexpr const char* xmlParse = "XMLParseException";
inline constexpr const char* fileParse = "FileParseException";
inline constexpr const char* xmlSecurity = "XML Security Exception";
inline constexpr const char* applicationSupport = "ApplicationSupportDirectoryFail";
}  // namespace exceptions

}  // namespace vellicor
