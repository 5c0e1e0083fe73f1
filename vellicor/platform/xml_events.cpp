// vellicor/platform/xml_events.cpp — Expat behind the event interface.
#include "vellicor/platform/xml_events.h"

#include <expat.h>
#include <fcntl.h>
#include <unicode/ucnv.h>

#include <cerrno>
#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "vellicor/platform/entity_files.h"
#include "vellicor/platform/file_descriptor.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/platform/xml_failures.h"

namespace vellicor {

namespace {

constexpr int kPieceSize = 1 << 18;
constexpr int kDeepestEntity = 8;

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserHandle = std::unique_ptr<XML_ParserStruct, ParserDeleter>;

/// Describes a one-byte encoding that Expat does not know by itself; the others stay unknown.
int describeEncoding(void*, const XML_Char* name, XML_Encoding* encoding) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, void (*)(UConverter*)> converter(ucnv_open(name, &status), ucnv_close);
    if (U_FAILURE(status) || ucnv_getMaxCharSize(converter.get()) != 1) return XML_STATUS_ERROR;
    for (int byte = 0; byte < 256; ++byte) {
        char source = static_cast<char>(byte);
        const char* position = &source;
        status = U_ZERO_ERROR;
        UChar32 character = ucnv_getNextUChar(converter.get(), &position, &source + 1, &status);
        encoding->map[byte] = U_SUCCESS(status) && character != 0xFFFD ? character : -1;
        ucnv_reset(converter.get());
    }
    encoding->data = nullptr;
    encoding->convert = nullptr;
    encoding->release = nullptr;
    return XML_STATUS_OK;
}

/// One parse. Nothing thrown by the handler may pass through the parser's own frames: the callbacks keep the exception,
/// stop the parser and ignore what it still reports; `raise` passes the exception on.
class EventParser {
public:
    /// `files` null means that nothing outside the document is read.
    EventParser(XMLEventHandler& handler, const EntityFiles* files, const char* encoding)
        : _handler(handler), _files(files), _root(XML_ParserCreate(encoding)) {
        if (!_root) throw std::bad_alloc();
        _current = _root.get();
        XML_SetUserData(_current, this);
        XML_SetElementHandler(_current, startElement, endElement);
        XML_SetCharacterDataHandler(_current, characters);
        XML_SetUnknownEncodingHandler(_current, describeEncoding, nullptr);
        XML_SetStartDoctypeDeclHandler(_current, startDoctype);
        XML_SetEntityDeclHandler(_current, declareEntity);
        XML_SetSkippedEntityHandler(_current, skipEntity);
        XML_SetExternalEntityRefHandler(_current, openEntity);
        XML_SetParamEntityParsing(_current, XML_PARAM_ENTITY_PARSING_ALWAYS);
        if (files && XML_SetBase(_current, files->folder().c_str()) != XML_STATUS_OK) throw std::bad_alloc();
    }

    void parse(std::string_view bytes) { feed(bytes); }

    void parse(const FileDescriptor& file, const std::filesystem::path& path) {
        for (::ssize_t count = 1; count > 0;) {
            void* buffer = XML_GetBuffer(_current, kPieceSize);
            if (!buffer) throw std::bad_alloc();
            count = file.readSome(static_cast<char*>(buffer), kPieceSize);
            if (count < 0) throw XMLError(0, text("%@ cannot be read: %@", path.string(), systemReason(errno)), 0, 0);
            if (XML_ParseBuffer(_current, static_cast<int>(count), count == 0) != XML_STATUS_OK) raise();
        }
    }

private:
    /// Pieces of limited size, since the parser copies each of them.
    void feed(std::string_view bytes) {
        do {
            std::string_view piece = bytes.substr(0, kPieceSize);
            bytes.remove_prefix(piece.size());
            auto size = static_cast<int>(piece.size());
            if (XML_Parse(_current, piece.data(), size, bytes.empty()) != XML_STATUS_OK) raise();
        } while (!bytes.empty());
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

    /// Remembers the names of external entities; a reference tells only where they are.
    static void XMLCALL declareEntity(void* parser, const XML_Char* name, int isParameter, const XML_Char* value, int,
                                      const XML_Char*, const XML_Char* systemId, const XML_Char*,
                                      const XML_Char* notation) {
        if (value || notation || !systemId) return;
        protect(parser, [&](EventParser& self) {
            self._entityNames.emplace(systemId, text("%@%@;", isParameter ? "%" : "&", name));
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

    /// Parses an external entity in the place of its reference.
    void include(const XML_Char* context, const std::string& base, std::string_view systemId) {
        auto known = _entityNames.find(systemId);
        std::string name = known != _entityNames.end() ? known->second : "an external entity";
        auto refuse = [&](std::string_view reason) {
            throw named(xmlErrorAt(_current, kGeneralXMLErrorCode,
                                   text("The external entity %@ (%@) is not read: %@", name, systemId, reason)));
        };
        if (!_files) {
            refuse("only a document that is opened as a file may include other files. Put the text into the document");
        }
        if (_openFiles.size() >= kDeepestEntity) refuse("the included files include each other more than 8 deep");
        std::string refusal;
        std::optional<EntityFiles::Included> included = _files->read(systemId, base, refusal);
        if (!included) refuse(refusal);

        ParserHandle child(XML_ExternalEntityParserCreate(_current, context, nullptr));
        if (!child || XML_SetBase(child.get(), included->file.parent_path().c_str()) != XML_STATUS_OK)
            throw std::bad_alloc();
        XML_Parser parent = std::exchange(_current, child.get());
        _openFiles.push_back(included->file);
        try {
            feed(included->bytes);
        } catch (...) {
            _current = parent;
            throw;
        }
        _current = parent;
        _openFiles.pop_back();
    }

    XMLEventHandler& _handler;
    const EntityFiles* _files;  // not owned; null when entities are not read
    ParserHandle _root;
    XML_Parser _current;  // the parser of the innermost open entity, or the root
    std::exception_ptr _failure;
    XMLAttributes _attributes;
    std::vector<XMLAttributes::node_type> _spareNodes;
    std::optional<std::string> _doctypeSystemId;
    std::map<std::string, std::string, std::less<>> _entityNames;  // system id to reference: "&name;" or "%name;"
    std::vector<std::filesystem::path> _openFiles;                 // the included files being read, outermost first
};

}  // namespace

XMLError::XMLError(std::int64_t code, const std::string& description, std::int64_t line, std::int64_t column)
    : SQLException(exceptions::xmlParse,
                   text("Error %ld, Description: %@, Line: %ld, Column: %ld", code, description, line, column)),
      _code(code),
      _description(description),
      _line(line),
      _column(column) {}

void parseXML(std::string_view bytes, XMLEventHandler& handler, bool bytesAreUTF8) {
    EventParser(handler, nullptr, bytesAreUTF8 ? "UTF-8" : nullptr).parse(bytes);
}

void parseXMLFile(const std::filesystem::path& file, XMLEventHandler& handler) {
    FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!descriptor) throw XMLError(0, text("%@ cannot be read: %@", file.string(), systemReason(errno)), 0, 0);
    EntityFiles files(file.has_parent_path() ? file.parent_path() : ".");
    EventParser(handler, &files, nullptr).parse(descriptor, file);
}

}  // namespace vellicor
