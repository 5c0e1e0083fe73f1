// vellicor/platform/xml_events.h — event-driven reading of XML.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "vellicor/platform/exception.h"

namespace vellicor {

using XMLAttributes = std::map<std::string, std::string, std::less<>>;

/// Where a parse stands.
class XMLPosition {
public:
    virtual ~XMLPosition() = default;
    /// Counts from 1; 0 inside a file that the document includes.
    [[nodiscard]] virtual std::int64_t line() const = 0;
};

/// Receives the events of one parse. Exceptions thrown by a handler stop the parse and reach its caller.
class XMLEventHandler {
public:
    virtual ~XMLEventHandler() = default;
    virtual void startElement(std::string_view name, const XMLAttributes& attributes) = 0;
    /// Character data, CDATA included, in pieces of any size.
    virtual void characters(std::string_view text) = 0;
    virtual void endElement(std::string_view name) = 0;
    /// Called once before the first event; `position` lives as long as the parse.
    virtual void parseBegins(const XMLPosition& /*position*/) {}
};

/// XML that cannot be read: an error code in the numbering of libxml2, what is wrong in words, and where.
class XMLError : public SQLException {
public:
    XMLError(std::int64_t code, const std::string& description, std::int64_t line, std::int64_t column);
    std::int64_t code() const { return _code; }
    const std::string& description() const { return _description; }
    /// Both count from 1; 0 when there is no position.
    std::int64_t line() const { return _line; }
    std::int64_t column() const { return _column; }

private:
    std::int64_t _code;
    std::string _description;
    std::int64_t _line;
    std::int64_t _column;
};

/// A reference to an external entity that may not be read.
class ExternalEntityError : public XMLError {
public:
    ExternalEntityError(const XMLError& error, std::string entity) : XMLError(error), _entity(std::move(entity)) {}
    /// "&name;" or "%name;".
    const std::string& entity() const { return _entity; }

private:
    std::string _entity;
};

/// Parses bytes in whatever encoding they are or declare; raises XMLError. Entities outside the document are an error
/// that names the entity. `bytesAreUTF8` makes the bytes count as UTF-8 whatever the XML declaration says.
void parseXML(std::string_view bytes, XMLEventHandler& handler, bool bytesAreUTF8 = false);
/// Parses a file; raises XMLError, with code 0 and the system's reason when it cannot be read. External entities
/// resolve to regular files at or below the folder of `file`, at most 1 MiB each and 8 deep; anything else is an error
/// that names the entity.
void parseXMLFile(const std::filesystem::path& file, XMLEventHandler& handler);
/// The same for the bytes of `file`, read before.
void parseXMLFile(const std::filesystem::path& file, std::string_view bytes, XMLEventHandler& handler);

}  // namespace vellicor
