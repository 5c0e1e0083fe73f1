// vellicor/platform/xml_failures.h — parser errors in the numbering of libxml2, with words that say what to do.
#pragma once

#include <string>

#include "vellicor/platform/xml_events.h"

struct XML_ParserStruct;

namespace vellicor {

/// An error at the place where `parser` stands.
[[nodiscard]] XMLError xmlErrorAt(XML_ParserStruct* parser, std::int64_t code, const std::string& description);
/// The error at which `parser` stopped by itself.
[[nodiscard]] XMLError xmlErrorOf(XML_ParserStruct* parser);

/// "&name;" or "%name;" where `parser` stands; "an entity" when that is inside the text of another entity.
[[nodiscard]] std::string referenceAt(XML_ParserStruct* parser);

/// Error code of a reference to an entity that is not declared.
inline constexpr std::int64_t kUndeclaredEntityCode = 26;
/// Error code of everything that the numbering has no better number for.
inline constexpr std::int64_t kGeneralXMLErrorCode = 1;

}  // namespace vellicor
