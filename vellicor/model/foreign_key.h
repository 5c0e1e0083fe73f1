// vellicor/model/foreign_key.h — a table-level foreign key and its column pairs.
#pragma once

#include "vellicor/model/link.h"
#include "vellicor/model/table_component.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/weak_ref.h"

namespace vellicor {

/// One pair of a foreign key: a column of the key's table and a column of the target table. Its container is the key.
class SQLForeignKeyEntry : public SQLObject {
public:
    using SQLObject::SQLObject;
    [[nodiscard]] std::string_view getClassType() const override { return "SQLForeignKeyEntry"; }
    static std::shared_ptr<SQLForeignKeyEntry> initWithSource(SQLField* source, SQLField* target);

    [[nodiscard]] SQLContainer* topLevelContainer() const override;
    [[nodiscard]] SQLForeignKey* foreignKey() const;
    /// Null while unresolved.
    [[nodiscard]] SQLField* source() const { return _source.get(); }
    [[nodiscard]] SQLField* getSource() const { return _source.get(); }
    [[nodiscard]] SQLField* target() const { return _target.get(); }
    [[nodiscard]] SQLField* getTarget() const { return _target.get(); }
    /// Undoable; the key announces "fieldPairList".
    void setSource(SQLField* source);
    void setTarget(SQLField* target);
    void setTargetByName(const OptionalText& name);
    /// The uid "-" clears the side; a uid that is no column leaves it unchanged.
    void setSourceFromUid(const SQLTable& table, std::string_view uid);
    void setTargetFromUid(const SQLTable& table, std::string_view uid);
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLForeignKeyEntry>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    using Side = std::shared_ptr<SQLField> SQLForeignKeyEntry::*;
    void setSide(Side side, SQLField* column);
    void setSideFromUid(Side side, const SQLTable& table, std::string_view uid);

    std::shared_ptr<SQLField> _source;
    std::shared_ptr<SQLField> _target;
};

/// An ordered list of column pairs with actions, deferral and cardinalities. The pair list has its own re-entrant lock;
/// observers of "fieldPairList" hear of its changes.
class SQLForeignKey : public SQLTableComponent, public SQLLink {
public:
    using Entries = std::vector<std::shared_ptr<SQLForeignKeyEntry>>;

    using SQLTableComponent::SQLTableComponent;
    ~SQLForeignKey() override;
    void init() override;
    static std::shared_ptr<SQLForeignKey> initWithName(const OptionalText& name) {
        return createNamed<SQLForeignKey>(name);
    }

    static const UndoProperties& undoProperties();
    [[nodiscard]] const UndoProperties& classUndoProperties() const override { return undoProperties(); }
    [[nodiscard]] std::string_view getClassType() const override { return "SQLForeignKey"; }
    [[nodiscard]] bool supportsNamePrefixing() const override { return true; }

    // --- pairs (foreign_key.cpp); undoable
    void addFieldPair(SQLField* source, SQLField* target);
    /// Ignores an entry already listed. Without undo.
    void addForeignKeyEntry(const std::shared_ptr<SQLForeignKeyEntry>& entry);
    [[nodiscard]] std::shared_ptr<SQLForeignKeyEntry> createEntryObject() const;
    /// Ignores an entry already listed; past the end means the end. Without undo.
    void insertFieldPair(const std::shared_ptr<SQLForeignKeyEntry>& entry, std::size_t index);
    /// Logs a position past the end.
    void removeFieldPairAtIndex(std::size_t index);
    /// Nothing for null.
    void removeFieldPair(const std::shared_ptr<SQLForeignKeyEntry>& entry);
    /// The last pair of these two columns; nothing when there is none.
    void removeFieldPair(const SQLField* source, const SQLField* target);
    [[nodiscard]] std::size_t getKeyPairCount() const;
    /// Null outside the list.
    [[nodiscard]] std::shared_ptr<SQLForeignKeyEntry> getKeyPairAtIndex(std::int64_t index) const;
    [[nodiscard]] Entries fieldPairs() const;
    [[nodiscard]] Entries fieldPairList() const { return fieldPairs(); }
    /// Names of the resolved columns, in order.
    [[nodiscard]] std::vector<std::string> getSourceList() const;
    [[nodiscard]] std::vector<std::string> getTargetList() const;
    [[nodiscard]] std::vector<std::string> sourceFieldNameList() const override { return getSourceList(); }
    [[nodiscard]] std::vector<std::string> targetFieldNameList() const override { return getTargetList(); }
    [[nodiscard]] std::vector<SQLField*> targetFieldObjectList() const;

    // --- target
    void setTargetTable(SQLTable* table);  ///< undoable
    [[nodiscard]] SQLTable* targetTable() const override { return _targetTable.get(); }
    [[nodiscard]] SQLTable* getTargetTable() const { return _targetTable.get(); }
    void setTargetTableByName(const OptionalText& name);
    [[nodiscard]] std::string getTargetTableName() const;
    /// Also makes the column's table the target.
    void setFkField(SQLField* column);
    [[nodiscard]] SQLField* getFkField() const override { return _fkField.get(); }
    /// Sets the target and answers it; remembers a table that is not there as missing. Null for a null or empty name.
    SQLTable* findTargetTableByName(const OptionalText& name);

    // --- the link
    [[nodiscard]] std::string getReferenceLinkName() const override { return getProperty(keys::referenceLinkName); }
    void setReferenceLinkName(const OptionalText& name) override;
    [[nodiscard]] bool linkIsDeferrable() const override { return isDeferrable(); }
    [[nodiscard]] bool linkIsInitiallyDeferred() const override { return isInitiallyDeferred(); }
    [[nodiscard]] SQLTableComponent& connectableComponent() override { return *this; }

    // --- names, checks, texts
    bool validateName(OptionalText& name, ValidationError* error) override;
    [[nodiscard]] std::string foreignKeyName() const override { return getName(); }
    [[nodiscard]] std::string getReferenceId() const override { return getName(); }
    [[nodiscard]] bool getFkTypeMismatch() const;
    [[nodiscard]] static bool isCircularFK() { return false; }
    [[nodiscard]] std::string getLabel() override;
    [[nodiscard]] std::string getReferenceInformationString() const { return "[MultiFK]"; }
    [[nodiscard]] OptionalText referenceInformationString() override { return getReferenceInformationString(); }
    [[nodiscard]] std::string getReferenceName() const override { return getName(); }
    [[nodiscard]] std::string getTestCompareString() const;
    [[nodiscard]] std::string getComparisonString() const;
    /// A plain description, not the SQL of a dialect.
    [[nodiscard]] std::string exportToSQL() override;
    using SQLTableComponent::exportToSQL;

    // --- loading and document (foreign_key_document.cpp)
    void postLoadProcess() override;
    void updateImplicitPrimaryKeyTargetEntries();
    void connectEntries();
    void reconnectIncompleteReference() override;
    /// Lets go of columns that are no longer in their tables.
    void updateWithChangedModel();
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    /// Kept: the copy has no actions, and finds its targets by name.
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLForeignKey>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    void connectTarget(SQLForeignKeyEntry& entry);
    void connectSource(SQLForeignKeyEntry& entry);
    [[nodiscard]] bool holdsPair(const SQLForeignKeyEntry& entry) const;
    void resolveTargetTable();
    void targetTableWasFound();

    WeakRef<SQLTable> _targetTable;
    std::string _missingTableUid;  // as it was read, while that table is not there
    WeakRef<SQLField> _fkField;
    Guarded<Entries> _fieldPairList;
};

/// Turns old compound references of a table's columns into foreign keys.
class SQLForeignKeyConverter {
public:
    /// Kept: acts on columns in compound mode only, which none ever is; `SQLField` converts its own while loading.
    static void convertCompoundForeignKeyToTableLevel(SQLTable& table);
};

}  // namespace vellicor
