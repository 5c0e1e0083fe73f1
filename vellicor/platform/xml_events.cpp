// vellicor/platform/xml_events.cpp — Expat behind the event interface.
#include "vellicor/platform/xml_events.h"

#include <expat.h>

#include <algorithm>
#include <deque>
#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "vellicor/platform/entity_files.h"
#include "vellicor/platform/files.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_encoding.h"
#include "vellicor/platform/xml_failures.h"

namespace vellicor {

namespace {

constexpr std::size_t kPieceSize = 1 << 18;
constexpr std::size_t kLargestPiece = 1 << 30;
constexpr int kDeepestEntity = 8;

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<XML_ParserStruct, ParserDeleter>;

/// One parse. Nothing thrown by the handler may pass through the parser's own frames: the callbacks keep the exception,
/// stop the parser and ignore what it still reports; `raise` passes the exception on.
class EventParser : private XMLPosition {
public:
    /// `files` null means that nothing outside the document is read.
    EventParser(XMLEventHandler& handler, const EntityFiles* files)
        : _handler(handler), _files(files), _root(XML_ParserCreate("UTF-8")) {
        if (!_root) throw std::bad_alloc();
        _current = _root.get();
        XML_SetUserData(_current, this);
        XML_SetElementHandler(_current, startElement, endElement);
        XML_SetCharacterDataHandler(_current, characters);
        XML_SetStartDoctypeDeclHandler(_current, startDoctype);
        XML_SetEntityDeclHandler(_current, declareEntity);
        XML_SetSkippedEntityHandler(_current, skipEntity);
        XML_SetExternalEntityRefHandler(_current, openEntity);
        XML_SetParamEntityParsing(_current, XML_PARAM_ENTITY_PARSING_ALWAYS);
        if (files && XML_SetBase(_current, files->folder().c_str()) != XML_STATUS_OK) throw std::bad_alloc();
    }

    /// The text is UTF-8 whatever its declaration says.
    void parse(std::string_view text) {
        _handler.parseBegins(*this);
        feed(text);
    }

private:
    [[nodiscard]] std::int64_t line() const override {
        return _openFiles.empty() ? static_cast<std::int64_t>(XML_GetCurrentLineNumber(_root.get())) : 0;
    }

    /// In pieces, since the parser copies what it is given. It looks at an unfinished tag, reference or comment again
    /// from its beginning with each piece, so pieces grow as long as one lasts.
    void feed(std::string_view bytes) {
        std::size_t fed = 0;
        std::size_t size = kPieceSize;
        do {
            const std::string_view piece = bytes.substr(fed, size);
            fed += piece.size();
            const bool isLast = fed == bytes.size();
            if (XML_Parse(_current, piece.data(), static_cast<int>(piece.size()), isLast) != XML_STATUS_OK) raise();
            const std::size_t unfinished = fed - static_cast<std::size_t>(XML_GetCurrentByteIndex(_current));
            size = std::clamp(2 * unfinished, kPieceSize, kLargestPiece);
        } while (fed < bytes.size());
    }

    [[noreturn]] void raise() {
        if (_failure) std::rethrow_exception(_failure);
        throw named(xmlErrorOf(_current));
    }

    /// An error inside an included file says which one.
    XMLError named(XMLError error) const {
        if (_openFiles.empty()) return error;
        return {error.code(), text("%@ (in the included file %@)", error.description(), _openFiles.back().string()),
                error.line(), error.column()};
    }

    /// Runs one callback; false when it, or an earlier one, failed.
    template <class Work>
    static bool protect(void* parser, Work work) {
        auto& self = *static_cast<EventParser*>(parser);
        if (self._failure) return false;
        try {
            work(self);
            return true;
        } catch (...) {
            self._failure = std::current_exception();
            XML_StopParser(self._current, XML_FALSE);
            return false;
        }
    }

    static void XMLCALL startElement(void* parser, const XML_Char* name, const XML_Char** attributes) {
        protect(parser, [&](EventParser& self) {
            self.takeAttributes(attributes);
            self._handler.startElement(name, self._attributes);
        });
    }
    static void XMLCALL endElement(void* parser, const XML_Char* name) {
        protect(parser, [&](EventParser& self) { self._handler.endElement(name); });
    }
    static void XMLCALL characters(void* parser, const XML_Char* bytes, int size) {
        protect(parser, [&](EventParser& self) { self._handler.characters({bytes, static_cast<std::size_t>(size)}); });
    }

    /// Refills the one map; its nodes and their texts are kept from element to element.
    void takeAttributes(const XML_Char** attributes) {
        while (!_attributes.empty()) _spareNodes.push_back(_attributes.extract(_attributes.begin()));
        for (; *attributes; attributes += 2) {
            if (_spareNodes.empty()) {
                _attributes.emplace(attributes[0], attributes[1]);
                continue;
            }
            XMLAttributes::node_type node = std::move(_spareNodes.back());
            _spareNodes.pop_back();
            node.key() = attributes[0];
            node.mapped() = attributes[1];
            _attributes.insert(std::move(node));
        }
    }

    static void XMLCALL startDoctype(void* parser, const XML_Char*, const XML_Char* systemId, const XML_Char*, int) {
        protect(parser, [&](EventParser& self) {
            if (systemId) self._doctypeSystemId = systemId;
        });
    }

    /// Remembers where external entities are; a reference tells that, but not which entity it means.
    static void XMLCALL declareEntity(void* parser, const XML_Char* name, int isParameter, const XML_Char* value, int,
                                      const XML_Char*, const XML_Char* systemId, const XML_Char*,
                                      const XML_Char* notation) {
        if (value || notation || !systemId) return;
        protect(parser, [&](EventParser& self) {
            if (!isParameter) self._systemIds.emplace(name, systemId);
        });
    }

    /// With an unread type declaration the parser would leave the reference out without a word.
    static void XMLCALL skipEntity(void* parser, const XML_Char* name, int isParameter) {
        protect(parser, [&](EventParser& self) {
            throw self.named(xmlErrorAt(self._current, kUndeclaredEntityCode,
                                        text("The document refers to %@%@;, which it does not declare itself: type "
                                             "declarations outside the document are not read",
                                             isParameter ? "%" : "&", name)));
        });
    }

    static int XMLCALL openEntity(XML_Parser parser, const XML_Char* context, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char*) {
        bool done = protect(XML_GetUserData(parser), [&](EventParser& self) {
            std::string_view where = systemId ? systemId : "";
            bool isTypeDeclaration = !context && parser == self._root.get() && where == self._doctypeSystemId;
            if (!isTypeDeclaration) self.include(context, base ? base : "", where);
        });
        return done ? XML_STATUS_OK : XML_STATUS_ERROR;
    }

    /// The reference that is being opened, "&name;" or "%name;". `context` lists the open entities, this one among
    /// them, in no particular order; it is null for a parameter entity.
    std::string openedReference(const XML_Char* context, std::string_view systemId) const {
        if (!context) return referenceAt(_current);
        for (std::string_view rest = context; !rest.empty();) {
            const std::size_t end = std::min(rest.find('\f'), rest.size());
            const std::string_view name = rest.substr(0, end);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            const auto declared = _systemIds.find(name);
            if (declared == _systemIds.end() || declared->second != systemId) continue;
            std::string reference = text("&%@;", name);
            if (std::ranges::find(_openReferences, reference) == _openReferences.end()) return reference;
        }
        return referenceAt(_current);
    }

    /// Parses an external entity in the place of its reference.
    void include(const XML_Char* context, const std::string& base, std::string_view systemId) {
        const std::string reference = openedReference(context, systemId);
        auto refuse = [&](std::string_view reason) {
            const XMLError error =
                xmlErrorAt(_current, kGeneralXMLErrorCode,
                           text("The external entity %@ (%@) is not read: %@", reference, systemId, reason));
            throw ExternalEntityError(named(error), reference);
        };
        if (!_files) {
            refuse("only a document that is opened as a file may include other files. Put the text into the document");
        }
        if (_openFiles.size() >= kDeepestEntity) refuse("the included files include each other more than 8 deep");
        std::string refusal;
        std::optional<EntityFiles::Included> included = _files->read(systemId, base, refusal);
        if (!included) refuse(refusal);

        ParserHandle child(XML_ExternalEntityParserCreate(_current, context, "UTF-8"));
        if (!child || XML_SetBase(child.get(), included->file.parent_path().c_str()) != XML_STATUS_OK)
            throw std::bad_alloc();
        XML_Parser parent = std::exchange(_current, child.get());
        _openFiles.push_back(included->file);
        _openReferences.push_back(reference);
        try {
            feed(textOf(included->bytes));
        } catch (...) {
            _current = parent;
            throw;
        }
        _current = parent;
        _openFiles.pop_back();
        _openReferences.pop_back();
    }

    /// Of an included file.
    std::string_view textOf(std::string_view bytes) {
        try {
            return xmlAsUTF8(bytes, _converted.emplace_back());
        } catch (const XMLError& error) {
            throw named(error);
        }
    }

    XMLEventHandler& _handler;
    const EntityFiles* _files;  // not owned; null when entities are not read
    ParserHandle _root;
    XML_Parser _current;  // the parser of the innermost open entity, or the root
    std::exception_ptr _failure;
    XMLAttributes _attributes;
    std::vector<XMLAttributes::node_type> _spareNodes;
    std::optional<std::string> _doctypeSystemId;
    std::map<std::string, std::string, std::less<>> _systemIds;  // of external general entities, by their names
    std::vector<std::filesystem::path> _openFiles;               // the included files being read, outermost first
    std::vector<std::string> _openReferences;                    // by which they were included
    std::deque<std::string> _converted;                          // their texts, where those had to be converted
};

}  // namespace

XMLError::XMLError(std::int64_t code, const std::string& description, std::int64_t line, std::int64_t column)
    : SQLException(exceptions::xmlParse,
                   text("Error %ld, Description: %@, Line: %ld, Column: %ld", code, description, line, column)),
      _code(code),
      _description(description),
      _line(line),
      _column(column) {}

namespace {

/// Bytes that are no UTF-8 and declare nothing else are the likeliest reason why the parser met one that it cannot
/// take.
XMLError explained(const XMLError& error, std::string_view bytes) {
    constexpr std::int64_t kInvalidByteCode = 9;
    if (error.code() != kInvalidByteCode || xmlEncodingOf(bytes).isStated || isValidUTF8(bytes)) return error;
    const std::string likely = likelyEncoding(bytes);
    const std::string words = likely.empty() ? "" : text("; it looks like %@", likely);
    return {error.code(),
            text("The document is not UTF-8, and declares no other encoding%@. Begin it with <?xml version=\"1.0\" "
                 "encoding=\"%@\"?>, or save it as UTF-8",
                 words, likely.empty() ? "its encoding" : likely),
            error.line(), error.column()};
}

void parseDocument(std::string_view bytes, XMLEventHandler& handler, const EntityFiles* files) {
    std::string storage;
    const std::string_view text = xmlAsUTF8(bytes, storage);
    try {
        EventParser(handler, files).parse(text);
    } catch (const ExternalEntityError&) {
        throw;
    } catch (const XMLError& error) {
        throw explained(error, bytes);
    }
}

}  // namespace

void parseXML(std::string_view bytes, XMLEventHandler& handler, bool bytesAreUTF8) {
    if (bytesAreUTF8)
        EventParser(handler, nullptr).parse(bytes);
    else
        parseDocument(bytes, handler, nullptr);
}

void parseXMLFile(const std::filesystem::path& file, XMLEventHandler& handler) {
    std::string reason;
    const std::optional<std::string> bytes = readFile(file, reason);
    if (!bytes) throw XMLError(0, text("%@ cannot be read: %@", file.string(), reason), 0, 0);
    parseXMLFile(file, *bytes, handler);
}

void parseXMLFile(const std::filesystem::path& file, std::string_view bytes, XMLEventHandler& handler) {
    const EntityFiles files(file.has_parent_path() ? file.parent_path() : ".");
    parseDocument(bytes, handler, &files);
}

}  // namespace vellicor
