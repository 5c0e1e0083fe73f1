// vellicor/fileformat/parser.h — reads design documents into a container.
#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "vellicor/fileformat/parser_element.h"
#include "vellicor/platform/xml_events.h"
#include "vellicor/util/stack.h"

namespace vellicor {

/// Serves one load at a time. Element names make objects, the elements inside set their properties, finished objects go
/// to what holds them. References stay texts: the caller runs the container's `postLoadProcess` afterwards.
///
/// Malformed XML raises "XMLParseException" when it comes from a path; from data and text "FileParseException", which
/// nests the `XMLError`. What a document's content makes the model raise passes through as it is. Objects in the wrong
/// place are logged and dropped.
class Parser : private XMLEventHandler {
public:
    using Stack = QVStack<std::shared_ptr<QVParserElement>>;

    /// Text counts as UTF-8 whatever its declaration says. With recovery, like data.
    [[nodiscard]] std::shared_ptr<SQLContainer> parseXMLFromString(std::string_view text);
    void parseXMLFromString(std::string_view text, SQLContainer& container);
    /// Without recovery. Only this form and the next read external entities.
    [[nodiscard]] std::shared_ptr<SQLContainer> parseXMLFromPath(const std::filesystem::path& path);
    void parseXMLFile(const std::filesystem::path& path, SQLContainer& container);
    /// The same for the bytes of the file, read before.
    void parseXMLFile(const std::filesystem::path& path, std::string_view bytes, SQLContainer& container);
    /// Without recovery.
    void parseXMLFromData(std::string_view bytes, SQLContainer& container);
    /// When the first attempt fails, empties the container, repairs the bytes and tries once more; the container then
    /// has the property "documentRecoveryOccurred". The second failure reaches the caller.
    void parseXMLWithRecoveryFromData(std::string_view bytes, SQLContainer& container);

    /// The second half of that, for a first attempt that ended in `failure`.
    void recoverFromData(std::string_view bytes, SQLContainer& container, const SQLException& failure);

    /// What recovery changed or left out, in words; empty when the document was whole.
    [[nodiscard]] const std::vector<std::string>& changes() const { return _changes; }
    /// Elements inside known objects that nobody knows, each with its place, in words: named as classes are, or with
    /// elements of their own, which are left out.
    [[nodiscard]] const std::vector<std::string>& unknownElements() const { return _unknownElements; }

    /// The object of a text that holds one object's element, in no document; null when its root makes none.
    [[nodiscard]] std::shared_ptr<SQLObject> parseDetachedObject(std::string_view text);

    void resetParser() { _stack.removeAll(); }
    /// The open elements; after a parse, the root element alone.
    [[nodiscard]] const Stack& stack() const { return _stack; }

    /// Whether objects decide by themselves what a key means: forced, or by the preference "useNewXMLFileLoader". Asked
    /// once a parse.
    [[nodiscard]] bool useSafePropertySetter() const;
    [[nodiscard]] bool forceSafePropertySetter() const { return _forceSafePropertySetter; }
    void setForceSafePropertySetter(bool flag) { _forceSafePropertySetter = flag; }

private:
    using Element = std::shared_ptr<QVParserElement>;

    // --- events (parser.cpp)
    void startElement(std::string_view name, const XMLAttributes& attributes) override;
    void characters(std::string_view text) override;
    void endElement(std::string_view name) override;
    void parseBegins(const XMLPosition& position) override { _position = &position; }
    void begin(SQLContainer* container);
    void parseData(std::string_view bytes, SQLContainer& container, bool bytesAreUTF8);
    void parseWithRecovery(std::string_view bytes, SQLContainer& container, bool bytesAreUTF8);
    void noteUnknownElement(std::string_view name, const QVParserElement& element, const SQLObject& holder);
    [[nodiscard]] Element makeElement(std::string_view name, const XMLAttributes& attributes);
    void retire(Element element);

    // --- what becomes of a finished element (parser_attaching.cpp)
    /// The holder is on top of the stack.
    void addTableComponentToStack(const std::shared_ptr<SQLTableComponent>& component);
    void addSQLObjectToStack(const std::shared_ptr<SQLObject>& object);
    void addToContainer(SQLContainer& container, const std::shared_ptr<SQLObject>& object);
    void setFromElement(std::string_view name, const QVParserElement& curObject, QVParserElement& curNode);
    void setPropertyFromElement(std::string_view name, const QVParserElement& curObject, QVParserElement& curNode);
    void setSafePropertyFromElement(std::string_view name, const QVParserElement& curObject, QVParserElement& curNode);

    Stack _stack;
    std::vector<Element> _retired;  // entries to use again, a few
    std::vector<std::string> _changes;
    std::vector<std::string> _unknownElements;
    const XMLPosition* _position = nullptr;  // of the parse that runs
    SQLContainer* _container = nullptr;      // what is filled, while a parse runs; null for a detached object
    bool _recovering = false;                // the second attempt runs
    bool _usesSafeSetter = false;            // in this parse
    bool _forceSafePropertySetter = false;
};

}  // namespace vellicor
