// vellicor/model/comment.cpp — text notes on the canvas, framed areas, and their form in documents.
#include "vellicor/model/comment.h"

#include "vellicor/platform/xml_export.h"

namespace vellicor {

void SQLComment::init() {
    SQLObjectPeer::init();
    setName("comment");
}

std::shared_ptr<SQLComment> SQLComment::initWithComment(const OptionalText& text) {
    auto comment = create<SQLComment>();
    comment->setComment(text);
    return comment;
}

const SQLComment::UndoProperties& SQLComment::undoProperties() {
    static const UndoProperties keys{keys::ignoreWhenExporting, keys::commentTitle, keys::shouldDrawFrame,
                                     keys::labelColor, keys::hidden};
    return keys;
}

void SQLComment::setComment(const OptionalText& text) {
    registerUndo(this, [old = _comment](SQLComment& comment) { comment.setComment(old); });
    setUndoActionName("set comment text");
    _comment = text.value_or(std::string());
}

void SQLComment::setDisplayName(const OptionalText& title) { setProperty(keys::commentTitle, title); }

void SQLComment::propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next) {
    if (key == keys::commentTitle) willChangeValueForKey("displayName");
    SQLObjectPeer::propertyWillChange(key, current, next);
}

void SQLComment::propertyDidChange(std::string_view key) {
    SQLObjectPeer::propertyDidChange(key);
    if (key == keys::commentTitle) didChangeValueForKey("displayName");
}

void SQLComment::postLoadProcess() {
    SQLObjectPeer::postLoadProcess();
    if (!hasProperty(keys::commentTitle)) setDisplayName(getName());
}

// --- documents

void SQLComment::setSafePropertyValue(const LoadedValue& value, std::string_view key) {
    if (key != "comment")
        SQLObjectPeer::setSafePropertyValue(value, key);
    else if (!value.object)
        setComment(std::string(value.text));
}

XMLElement SQLComment::exportToXMLNode(const XMLElement* parent) const {
    XMLElement node = XMLExport::element(getClassType(), parent);
    node.addCDataElement("name", getName());
    node.addCDataElement("comment", _comment);
    exportLocationToXMLNode(node);
    exportPropertiesToXMLNode(node);
    return node;
}

Value::Map SQLComment::jsonDictionary() const {
    Value::Map json = SQLObjectPeer::jsonDictionary();
    json.insert_or_assign("ClassType", getClassType());
    json.insert_or_assign("name", getName());
    json.insert_or_assign("comment", _comment);
    json.insert_or_assign("properties", propertiesAsJson());
    return json;
}

std::shared_ptr<SQLObject> SQLComment::copyWithZone(void* zone) const {
    auto copy = as<SQLComment>(SQLObjectPeer::copyWithZone(zone));
    copy->_comment = _comment;
    return copy;
}

std::shared_ptr<SQLCanvasArea> SQLCanvasArea::initWithString(const OptionalText& text) {
    auto area = create<SQLCanvasArea>();
    area->setComment(text);
    return area;
}

namespace {

constexpr Setter kCommentSetters[] = {
    setter<&SQLComment::setComment>("comment"),
    setter<&SQLComment::setDisplayName>("displayName"),
};

}  // namespace

const ClassInfo SQLComment::kClassInfo{"SQLComment", &SQLObjectPeer::kClassInfo, kCommentSetters,
                                       makeLoadable<SQLComment>};
const ClassInfo SQLCanvasArea::kClassInfo{"SQLCanvasArea", &SQLComment::kClassInfo, {}, makeLoadable<SQLCanvasArea>};

}  // namespace vellicor
