// vellicor/model/view.h — a database view: a query text, and rows that show its parts.
#pragma once

#include <mutex>

#include "vellicor/model/connectable.h"
#include "vellicor/model/table.h"

namespace vellicor {

/// One row of a view in the diagram: a heading, a selected column or a source table. It takes part in no reference: the
/// link operations answer nothing and their setters do nothing.
class SQLViewEntry : public SQLTableComponent, public SQLConnectable {
public:
    using SQLTableComponent::SQLTableComponent;
    static std::shared_ptr<SQLViewEntry> viewEntryWithName(const OptionalText& name, std::string_view type) {
        return initWithName(name, type);
    }
    static std::shared_ptr<SQLViewEntry> initWithName(const OptionalText& name, std::string_view type);
    [[nodiscard]] std::string_view getClassType() const override { return "SQLViewEntry"; }
    /// "label", "column" or "table".
    [[nodiscard]] std::string type() const { return getProperty(keys::viewEntryType); }
    void setType(const OptionalText& type);
    [[nodiscard]] std::string getLabel() override { return getName(); }

    [[nodiscard]] SQLTableComponent& connectableComponent() override { return *this; }
    [[nodiscard]] SQLTable* targetTable() const override { return nullptr; }
    [[nodiscard]] SQLField* getFkField() const override { return nullptr; }
    [[nodiscard]] std::string foreignKeyName() const override { return {}; }
    [[nodiscard]] std::string getReferenceId() const override { return {}; }
    [[nodiscard]] std::vector<std::string> sourceFieldNameList() const override { return {}; }
    [[nodiscard]] std::vector<std::string> targetFieldNameList() const override { return {}; }
    bool isFKFieldValid(unsigned&) const override { return false; }
    [[nodiscard]] std::uint64_t deleteAction() const override { return 0; }
    void setDeleteAction(std::uint64_t) override {}
    [[nodiscard]] std::uint64_t updateAction() const override { return 0; }
    void setUpdateAction(std::uint64_t) override {}
    [[nodiscard]] std::uint64_t sourceCardinality() const override { return 0; }
    void setSourceCardinality(std::uint64_t) override {}
    [[nodiscard]] std::uint64_t destinationCardinality() const override { return 0; }
    void setDestinationCardinality(std::uint64_t) override {}
    void setDefaultCardinalityForImport() override {}
    void setDefaultCardinalityForCreatedKey() override {}
    [[nodiscard]] bool linkIsDeferrable() const override { return false; }
    [[nodiscard]] bool linkIsInitiallyDeferred() const override { return false; }
    [[nodiscard]] OptionalText referenceInformationString() override { return std::string(); }
    [[nodiscard]] std::string getReferenceName() const override { return {}; }
    [[nodiscard]] std::string referenceName() const { return {}; }
    [[nodiscard]] std::string getReferenceLinkName() const override { return {}; }
    void setReferenceLinkName(const OptionalText&) override {}
    void setFkField(SQLField*) {}
    void setForeignKeyName(const OptionalText&) {}
    void setTargetTable(SQLTable*) {}

    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLViewEntry>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;
};

/// A kind of table whose components are `SQLViewEntry` rows only. Operations on its lists hold the view's own lock.
class SQLView : public SQLTable {
public:
    using SQLTable::SQLTable;
    using Texts = std::vector<std::string>;

    static std::shared_ptr<SQLView> viewWithName(const OptionalText& name) { return initWithName(name); }
    static std::shared_ptr<SQLView> initWithName(const OptionalText& name) { return createNamed<SQLView>(name); }
    [[nodiscard]] std::string_view getClassType() const override { return "SQLView"; }

    [[nodiscard]] std::string queryString() const { return getProperty(keys::queryString); }
    void setQueryString(const OptionalText& query);
    /// Always null; setting keeps nothing.
    [[nodiscard]] std::shared_ptr<SQLObject> queryObject() const { return nullptr; }
    void setQueryObject(const std::shared_ptr<SQLObject>&) {}
    [[nodiscard]] bool hasParsed() const { return _hasParsed; }
    void setHasParsed(bool flag) { _hasParsed = flag; }

    void addColumn(std::string_view text);
    void addSelectColumn(std::string_view text);
    void addTableEntry(std::string_view table);
    /// "table AS alias" when the alias is not empty.
    void addTableEntry(std::string_view table, const OptionalText& asAlias);
    [[nodiscard]] Texts columns() const;
    [[nodiscard]] Texts selectColumns() const;
    [[nodiscard]] Texts tableList() const;

    /// Logs and refuses what is no view entry. An entry whose uid is in use gets a fresh one. Observers of the field
    /// list hear of it once, as of the next.
    void addViewEntry(const std::shared_ptr<SQLTableComponent>& entry);
    void add(const std::shared_ptr<SQLTableComponent>& component) override { addViewEntry(component); }
    /// Makes the rows anew, in one step: "columns", the selected columns, "tables", the source tables.
    void updateFieldList();

    [[nodiscard]] std::vector<std::shared_ptr<SQLObject>> flatObjectList() override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLView>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    void appendText(Texts& texts, std::string text);

    mutable std::recursive_mutex _viewMutex;  // guards the three lists and the component list while rows change
    Texts _columns;
    bool _hasParsed = false;
    Texts _selectColumns;  // column expressions
    Texts _tableList;      // tables, each possibly with AS and an alias
};

}  // namespace vellicor
