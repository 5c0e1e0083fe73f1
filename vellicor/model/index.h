// vellicor/model/index.h — an index of a table, and what stands for a table constraint.
#pragma once

#include <map>
#include <unordered_set>

#include "vellicor/model/table_component.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/weak_ref.h"

namespace vellicor {

/// One column of an index as it is read from a document, before the columns are found.
class SQLIndexEntry : public SQLObject {
public:
    using SQLObject::SQLObject;
    [[nodiscard]] std::string_view getClassType() const override { return "SQLIndexEntry"; }
    [[nodiscard]] SQLField* field() const { return _field.get(); }
    void setField(SQLField* field);
    [[nodiscard]] std::string prefixSize() const { return getProperty(keys::prefixSize); }
    void setPrefixSize(const OptionalText& size);  ///< null stores the empty text
    [[nodiscard]] std::string fieldUid() const { return getProperty(keys::fieldUid); }
    void setFieldUid(const OptionalText& uid);
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLIndexEntry>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    WeakRef<SQLField> _field;
};

/// An ordered list of the table's columns, each with an optional prefix length. Every list has its own lock; no
/// operation takes two of them at once.
class SQLIndex : public SQLTableComponent {
public:
    using SQLTableComponent::SQLTableComponent;
    /// One column of the index; the column reads as null once it is gone.
    struct Entry {
        WeakRef<SQLField> field;
        OptionalText size;  // prefix length; null when none
    };
    using Entries = std::vector<Entry>;

    void init() override;
    static std::shared_ptr<SQLIndex> index() { return create<SQLIndex>(); }
    static std::shared_ptr<SQLIndex> indexWithName(const OptionalText& name) { return initWithName(name); }
    static std::shared_ptr<SQLIndex> initWithName(const OptionalText& name) { return createNamed<SQLIndex>(name); }

    [[nodiscard]] std::string_view getClassType() const override { return "SQLIndex"; }
    [[nodiscard]] virtual std::string_view nodeName() const { return "SQLIndex"; }
    [[nodiscard]] bool supportsNamePrefixing() const override { return true; }
    [[nodiscard]] virtual bool isCheckConstraint() const { return false; }
    [[nodiscard]] std::string getFieldName() const { return {}; }

    // --- columns (index.cpp); changes announce "fieldList" and are undoable
    void addIndexField(SQLField& column);
    /// A position past the end means the end.
    void insertIndexFieldAtPosition(SQLField& column, std::size_t position);
    /// Kept: undoing puts the column back at the end.
    void removeIndexField(SQLField& column);
    void insertObjectInFieldListAtIndex(SQLField& column, std::size_t index);
    void removeObjectFromFieldListAtIndex(std::size_t index);
    void setIncludesIndexFieldForBoolean(SQLField& column, bool include);
    [[nodiscard]] bool indexContainsField(const SQLField& column) const;
    [[nodiscard]] std::size_t indexListCount() const;
    /// The columns that still live, in order.
    [[nodiscard]] std::vector<SQLField*> fieldList() const;
    [[nodiscard]] std::vector<SQLField*> getIndexList() const { return fieldList(); }
    [[nodiscard]] Entries indexEntryList() const;
    [[nodiscard]] Entries fieldEnumerator() const { return indexEntryList(); }
    /// Null when the column is not in the index.
    [[nodiscard]] std::optional<Entry> dictionaryEntryForField(const SQLField& column) const;
    [[nodiscard]] std::vector<std::string> getFieldNameList() const { return getFieldNameListWithPrefixes(false); }
    /// With prefixes, "(size)" follows a name whose entry has one.
    [[nodiscard]] std::vector<std::string> getFieldNameListWithPrefixes(bool withPrefixes) const;
    /// A null size removes it (and, kept, ends without announcing the end of the change).
    void setSizeForIndexEntry(SQLField& column, const OptionalText& size);
    /// Empty for no column, no entry or no size.
    [[nodiscard]] std::string getSizeForIndexEntry(const SQLField* column) const;
    /// Drops columns that are no longer in the table.
    void updateIndexFieldList();

    // --- type
    void setIndexType(const OptionalText& type);  ///< undoable; null stores the empty text
    [[nodiscard]] std::string getIndexType() const { return getProperty(keys::indexType); }
    [[nodiscard]] std::string indexType() const { return getIndexType(); }
    [[nodiscard]] std::string getIndexTypeString() const { return getIndexType(); }

    // --- reading (index_document.cpp)
    void setFieldName(const OptionalText& name);
    /// Raises "NilIndexFieldException" for a null or empty name. Ignores a negative position and a name already listed.
    /// Past the end it leaves a gap; the name at a used position, and those behind it without a gap, move up.
    void insertFieldName(const OptionalText& name, std::int64_t position);
    void addIndexEntry(const std::shared_ptr<SQLIndexEntry>& entry);
    /// Logs a name that is no column of the table.
    void addFieldFromName(std::string_view name);
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    void postLoadProcess() override;
    void cleanupIndexesForDisplay();

    // --- labels
    [[nodiscard]] virtual std::string labelForDisplay(bool shortForm) const;
    [[nodiscard]] std::string getLabel() override { return labelForDisplay(false); }
    [[nodiscard]] std::string fieldListForDisplay() const;

    // --- document, JSON, SQL
    /// Addresses the index by uid within its table, for scripting: {"sqlIndexes", uid}.
    [[nodiscard]] std::pair<std::string, std::string> objectSpecifier() const { return {"sqlIndexes", uid()}; }
    [[nodiscard]] std::string exportToSQL() override { return getLabel(); }
    using SQLTableComponent::exportToSQL;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLIndex>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    void takeColumnNames();
    void takeColumnSizes();
    void rebindColumns();
    /// The index's only column; null when it has another number of columns.
    [[nodiscard]] SQLField* soleColumn() const;
    void collapseInto(SQLField& column, const char* flagKey, const char* nameKey);

    using ReadEntries = std::vector<std::shared_ptr<SQLIndexEntry>>;

    /// Names as read from a document, by position, until `postLoadProcess`.
    struct NamesAsRead {
        std::map<std::int64_t, std::string> byPosition;
        std::unordered_set<std::string> all;
    };

    Guarded<NamesAsRead> _namesAsRead;
    Guarded<ReadEntries> _fieldSizeListPreLoad;  // entries as read, until then
    Guarded<Entries> _indexEntryList;
};

/// A UNIQUE constraint over columns, or a CHECK constraint with an expression.
class SQLConstraint : public SQLIndex {
public:
    using SQLIndex::SQLIndex;
    void init() override;
    static std::shared_ptr<SQLConstraint> constraint() { return create<SQLConstraint>(); }
    static std::shared_ptr<SQLConstraint> indexWithName(const OptionalText& name) { return initWithName(name); }
    static std::shared_ptr<SQLConstraint> initWithName(const OptionalText& name) {
        return createNamed<SQLConstraint>(name);
    }

    [[nodiscard]] std::string_view getClassType() const override { return "SQLConstraint"; }
    [[nodiscard]] std::string_view nodeName() const override { return "SQLConstraint"; }
    /// Observers of "isCheckConstraint" are told when the type changes.
    [[nodiscard]] bool isCheckConstraint() const override { return constraintType() == "CHECK"; }
    [[nodiscard]] std::string constraintType() const { return getIndexType(); }
    void setConstraintType(const OptionalText& type) { setIndexType(type); }
    [[nodiscard]] std::string checkConstraintExpression() const { return getProperty(keys::checkConstraint); }
    /// Also makes the type "CHECK".
    void setCheckConstraintExpression(const OptionalText& expression);
    void setCheckConstraintExpressionFromSQL(const OptionalText& sql);
    /// What stands in the parentheses of "CHECK (…)"; empty when there is none.
    [[nodiscard]] static std::string extractCheckConstraintExpression(std::string_view sql);
    /// Kept: two constraints of one name are never equal.
    [[nodiscard]] bool isEqualToConstraint(const SQLConstraint* other) const;
    [[nodiscard]] std::string labelForDisplay(bool shortForm) const override;
    void propertyWillChange(std::string_view key, const PropertyValue* current, const PropertyValue* next) override;
    void propertyDidChange(std::string_view key) override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLConstraint>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;
};

/// An index made while an old and a new model are compared; it records no undo.
class SQLComparisonIndex : public SQLIndex {
public:
    using SQLIndex::SQLIndex;
    [[nodiscard]] bool supportsUndo() const override { return false; }
    static std::shared_ptr<SQLComparisonIndex> indexWithName(const OptionalText& name) { return initWithName(name); }
    static std::shared_ptr<SQLComparisonIndex> initWithName(const OptionalText& name) {
        return createNamed<SQLComparisonIndex>(name);
    }
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLComparisonIndex>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;
};

}  // namespace vellicor
