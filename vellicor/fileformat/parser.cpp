// vellicor/fileformat/parser.cpp — the forms of reading a document, and the events of one parse.
#include "vellicor/fileformat/parser.h"

#include <exception>
#include <utility>

#include "vellicor/fileformat/model_classes.h"
#include "vellicor/fileformat/recovery.h"
#include "vellicor/model/container.h"
#include "vellicor/model/table_component.h"
#include "vellicor/model/whereabouts.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

/// Sets a flag for the length of a scope.
class FlagScope {
public:
    explicit FlagScope(bool& flag) : _flag(flag) { _flag = true; }
    ~FlagScope() { _flag = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& _flag;
};

}  // namespace

std::shared_ptr<SQLContainer> Parser::parseXMLFromString(std::string_view text) {
    auto container = SQLContainer::newContainer();
    parseXMLFromString(text, *container);
    return container;
}

void Parser::parseXMLFromString(std::string_view text, SQLContainer& container) {
    if (isValidUTF8(text))
        parseWithRecovery(text, container, true);
    else
        parseWithRecovery(repairedUTF8(text), container, true);
}

std::shared_ptr<SQLContainer> Parser::parseXMLFromPath(const std::filesystem::path& path) {
    auto container = SQLContainer::newContainer();
    parseXMLFile(path, *container);
    return container;
}

void Parser::parseXMLFile(const std::filesystem::path& path, SQLContainer& container) {
    begin(&container);
    vellicor::parseXMLFile(path, *this);
}

void Parser::parseXMLFile(const std::filesystem::path& path, std::string_view bytes, SQLContainer& container) {
    begin(&container);
    vellicor::parseXMLFile(path, bytes, *this);
}

void Parser::parseXMLFromData(std::string_view bytes, SQLContainer& container) { parseData(bytes, container, false); }

void Parser::parseXMLWithRecoveryFromData(std::string_view bytes, SQLContainer& container) {
    parseWithRecovery(bytes, container, false);
}

void Parser::parseData(std::string_view bytes, SQLContainer& container, bool bytesAreUTF8) {
    begin(&container);
    try {
        parseXML(bytes, *this, bytesAreUTF8);
    } catch (const XMLError& error) {
        constexpr const char* recoverySuggestion = nullptr;  // the parser makes none
        std::throw_with_nested(SQLException(
            exceptions::fileParse, text("Error %ld, Description: %@, Line: %ld, Column: %ld\n %@", error.code(),
                                        error.description(), error.line(), error.column(), recoverySuggestion)));
    }
    container.containerChanged();
}

void Parser::parseWithRecovery(std::string_view bytes, SQLContainer& container, bool bytesAreUTF8) {
    try {
        parseData(bytes, container, bytesAreUTF8);
    } catch (const SQLException& failure) {
        recoverFromData(bytes, container, failure);
    }
}

void Parser::recoverFromData(std::string_view bytes, SQLContainer& container, const SQLException& failure) {
    log(text("Error occurred during parsing :%@.\n Attempting Recovery\n", failure.reason()));
    container.removeAll();
    resetParser();
    std::vector<std::string> changes;
    const std::string repaired = repairedDocument(bytes, changes);
    const FlagScope recovering(_recovering);
    parseData(repaired, container, true);
    _changes.insert(_changes.begin(), changes.begin(), changes.end());
    container.setPropertyAsBoolean(keys::documentRecoveryOccurred, true);
}

std::shared_ptr<SQLObject> Parser::parseDetachedObject(std::string_view text) {
    begin(nullptr);
    parseXML(text, *this, true);
    const Element root = _stack.peek();
    return root ? as<SQLObject>(root->object()) : nullptr;
}

bool Parser::useSafePropertySetter() const {
    return _forceSafePropertySetter || Preferences::shared().boolForKey(prefs::useNewXMLFileLoader);
}

// --- events

void Parser::begin(SQLContainer* container) {
    resetParser();
    _changes.clear();
    _unknownElements.clear();
    _container = container;
    _usesSafeSetter = useSafePropertySetter();
}

void Parser::startElement(std::string_view name, const XMLAttributes& attributes) {
    if (const Element holder = _stack.peek()) holder->setHasElements();
    Element element = makeElement(name, attributes);
    if (name == "SQLContainer")
        element->setObject(shared(_container));
    else if (std::shared_ptr<Loadable> object = objectForElement(name))
        element->setObject(std::move(object));
    if (SQLObject* object = element->modelObject(); object && object != _container)
        object->setSourceLine(static_cast<std::int32_t>(_position->line()));
    _stack.push(std::move(element));
}

void Parser::characters(std::string_view text) {
    if (const Element top = _stack.peek()) top->appendValue(text);
}

void Parser::endElement(std::string_view name) {
    Element element = _stack.pop();
    const bool isDetachedObject = !_container && _stack.isEmpty();  // it belongs to nobody
    const Element holder = _stack.peek();
    if (!element->modelObject()) {
        if (holder) setFromElement(name, *element, *holder);
    } else if (!isDetachedObject) {
        if (auto component = as<SQLTableComponent>(element->object()))
            addTableComponentToStack(component);
        else
            addSQLObjectToStack(shared(element->modelObject()));
    }
    if (_stack.isEmpty())
        _stack.push(std::move(element));
    else
        retire(std::move(element));
}

void Parser::noteUnknownElement(std::string_view name, const QVParserElement& element, const SQLObject& holder) {
    const bool isNamedLikeClass = name.starts_with("SQL") || name.starts_with("QV");
    if (element.valueObject() || (!element.hasElements() && !isNamedLikeClass)) return;
    if (holder.classInfo().setterFor(name)) return;
    _unknownElements.push_back(text("nobody knows the element \"%@\" in the %@%@", name, whereabouts(holder),
                                    element.hasElements() ? "; what stands in it is left out" : ""));
}

Parser::Element Parser::makeElement(std::string_view name, const XMLAttributes& attributes) {
    if (_retired.empty()) return std::make_shared<QVParserElement>(name, attributes);
    Element element = std::move(_retired.back());
    _retired.pop_back();
    element->restart(name, attributes);
    return element;
}

void Parser::retire(Element element) {
    constexpr std::size_t kept = 16;
    element->setObject(nullptr);
    if (_retired.size() < kept && element.use_count() == 1) _retired.push_back(std::move(element));
}

}  // namespace vellicor
