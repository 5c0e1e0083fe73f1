// vellicor/platform/xml_failures.cpp — from an Expat error to its number, its words and its place.
#include "vellicor/platform/xml_failures.h"

#include <expat.h>

#include <algorithm>

#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

struct Failure {
    XML_Error error;
    std::int64_t code;
    const char* description;
};

constexpr Failure kFailures[] = {
    {XML_ERROR_SYNTAX, 4, "This is not XML: check that it is a design document"},
    {XML_ERROR_NO_ELEMENTS, 5, "The document is empty or ends before its last element is closed: it may be cut off"},
    {XML_ERROR_UNCLOSED_TOKEN, 73, "A tag, comment or reference is not finished"},
    {XML_ERROR_TAG_MISMATCH, 76, "A closing tag does not match the element that is open"},
    {XML_ERROR_DUPLICATE_ATTRIBUTE, 42, "An element has the same attribute twice"},
    {XML_ERROR_JUNK_AFTER_DOC_ELEMENT, 5, "There is something behind the end of the document: remove it"},
    {XML_ERROR_BAD_CHAR_REF, 9, "A numbered character reference stands for a character that XML does not allow"},
    {XML_ERROR_MISPLACED_XML_PI, 64, "The XML declaration must be the very first thing: remove what stands before it"},
    {XML_ERROR_UNKNOWN_ENCODING, 32, "The declared character encoding is not known: save the document as UTF-8"},
    {XML_ERROR_UNCLOSED_CDATA_SECTION, 5, "A CDATA section is not closed: the document may be cut off"},
    {XML_ERROR_AMPLIFICATION_LIMIT_BREACH, 89,
     "The entities of the document expand to far more text than it holds: remove their declarations"},
};

/// What the parser had before it when it stopped, from the place of the error on, and the byte before that (0 if none).
struct Surroundings {
    std::string_view rest;
    char before = 0;
};

Surroundings surroundings(XML_Parser parser) {
    int offset = 0;
    int size = 0;
    const char* context = XML_GetInputContext(parser, &offset, &size);
    if (!context || offset < 0 || offset > size) return {};
    std::string_view bytes(context, static_cast<std::size_t>(size));
    auto position = static_cast<std::size_t>(offset);
    return {bytes.substr(position), position > 0 ? bytes[position - 1] : '\0'};
}

XMLError invalidToken(XML_Parser parser) {
    if (XML_GetErrorByteIndex(parser) == 0) return xmlErrorAt(parser, 4, kFailures[0].description);
    Surroundings around = surroundings(parser);
    if (around.before == '<' || around.before == '&') {
        return xmlErrorAt(
            parser, 68,
            text("No name follows %@: a plain %@ in text is written %@", around.before == '<' ? "\"<\"" : "\"&\"",
                 around.before == '<' ? "<" : "&", around.before == '<' ? "&lt;" : "&amp;"));
    }
    auto byte = around.rest.empty() ? 0 : static_cast<unsigned char>(around.rest.front());
    if (byte < 0x20 || byte >= 0x7F)
        return xmlErrorAt(parser, 9, "There is a byte or control character here that may not stand in XML");
    return xmlErrorAt(parser, kGeneralXMLErrorCode, "The XML is not well-formed here");
}

}  // namespace

std::string referenceAt(XML_Parser parser) {
    std::string_view rest = surroundings(parser).rest;
    std::size_t end = rest.substr(0, 1024).find(';');
    if ((!rest.starts_with('&') && !rest.starts_with('%')) || end == std::string_view::npos) return "an entity";
    return std::string(rest.substr(0, end + 1));
}

XMLError xmlErrorAt(XML_Parser parser, std::int64_t code, const std::string& description) {
    return {code, description, static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser)),
            static_cast<std::int64_t>(XML_GetCurrentColumnNumber(parser)) + 1};
}

XMLError xmlErrorOf(XML_Parser parser) {
    XML_Error error = XML_GetErrorCode(parser);
    if (error == XML_ERROR_INVALID_TOKEN) return invalidToken(parser);
    if (error == XML_ERROR_UNDEFINED_ENTITY) {
        return xmlErrorAt(parser, kUndeclaredEntityCode,
                          text("The document refers to %@, which it does not declare", referenceAt(parser)));
    }
    if (error == XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF) {
        return xmlErrorAt(parser, kGeneralXMLErrorCode,
                          text("An attribute refers to %@, which stands outside the document: write its text into the "
                               "attribute",
                               referenceAt(parser)));
    }
    auto known = std::find_if(std::begin(kFailures), std::end(kFailures),
                              [error](const Failure& failure) { return failure.error == error; });
    if (known != std::end(kFailures)) return xmlErrorAt(parser, known->code, known->description);
    return xmlErrorAt(parser, kGeneralXMLErrorCode, text("The XML cannot be read: %@", XML_ErrorString(error)));
}

}  // namespace vellicor
