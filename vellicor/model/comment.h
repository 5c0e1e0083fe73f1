// vellicor/model/comment.h — a text note on the canvas, and a framed area.
#pragma once

#include "vellicor/model/object_peer.h"

namespace vellicor {

class SQLComment : public SQLObjectPeer {
public:
    using SQLObjectPeer::SQLObjectPeer;
    void init() override;
    static std::shared_ptr<SQLComment> initWithComment(const OptionalText& text);

    static const UndoProperties& undoProperties();
    [[nodiscard]] const UndoProperties& classUndoProperties() const override { return undoProperties(); }
    [[nodiscard]] std::string_view getClassType() const override { return "SQLComment"; }

    [[nodiscard]] std::string getComment() const override { return _comment; }
    [[nodiscard]] const std::string& comment() const { return _comment; }
    void setComment(const OptionalText& text) override;  ///< undoable, "set comment text"
    /// The property "commentTitle"; empty without one.
    [[nodiscard]] std::string displayName() const override { return getProperty(keys::commentTitle); }
    void setDisplayName(const OptionalText& title) override;
    /// Observers of "displayName" are told when the title changes.
    void propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next) override;
    void propertyDidChange(std::string_view key) override;
    /// A comment without a title takes its name as title.
    void postLoadProcess() override;

    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLComment>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    std::string _comment;
};

class SQLCanvasArea : public SQLComment {
public:
    using SQLComment::SQLComment;
    static std::shared_ptr<SQLCanvasArea> initWithString(const OptionalText& text);
    [[nodiscard]] std::string_view getClassType() const override { return "SQLCanvasArea"; }
    [[nodiscard]] std::string exportToSQL() override { return {}; }
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLCanvasArea>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;
};

}  // namespace vellicor
