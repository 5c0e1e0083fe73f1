// vellicor/model/table.h — a table of the design.
#pragma once

#include <span>
#include <unordered_map>
#include <unordered_set>
#include <variant>

#include "vellicor/model/container.h"
#include "vellicor/model/name_scope.h"
#include "vellicor/model/object_peer.h"
#include "vellicor/model/table_component.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/observer_list.h"

namespace vellicor {

class ComponentNames;
class ComponentUids;

/// Told when the component list of a table that it registered with changes.
class FieldListObserver {
public:
    virtual ~FieldListObserver() = default;
    /// False for one that registered without caring; it is reported in the log instead of called.
    [[nodiscard]] virtual bool supportsFieldListChanged() const { return true; }
    virtual void fieldListChanged(SQLTable& table) = 0;
    /// For the log.
    [[nodiscard]] virtual std::string description() const { return "field observer"; }
};

/// Owns one ordered list of components (columns, indexes, constraints, foreign keys), guarded by its own lock.
class SQLTable : public SQLObjectPeer, public NameScope {
public:
    using Components = std::vector<std::shared_ptr<SQLTableComponent>>;
    using Fields = std::vector<SQLField*>;
    static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1) >> 1;
    static constexpr std::size_t kNoPosition = static_cast<std::size_t>(-1);

    explicit SQLTable(Creation creation);
    ~SQLTable() override;
    void init() override;
    static std::shared_ptr<SQLTable> table() { return create<SQLTable>(); }
    static std::shared_ptr<SQLTable> tableWithName(const OptionalText& name) { return initWithName(name); }
    /// Also stands first in the stacking order.
    static std::shared_ptr<SQLTable> tableForImportWithName(const OptionalText& name);
    static std::shared_ptr<SQLTable> initWithName(const OptionalText& name) { return initWithName(name, ""); }
    static std::shared_ptr<SQLTable> initWithName(const OptionalText& name, std::string_view tableType) {
        return initWithName(name, tableType, std::string());
    }
    /// Kept: the table type is not used. A null or empty schema leaves the table without one.
    static std::shared_ptr<SQLTable> initWithName(const OptionalText& name, std::string_view tableType,
                                                  const OptionalText& schemaName);
    /// The next table stands at the first default place again.
    static void resetPosition();

    static const UndoProperties& undoProperties();
    [[nodiscard]] const UndoProperties& classUndoProperties() const override { return undoProperties(); }
    [[nodiscard]] std::string_view getClassType() const override { return "SQLTable"; }
    static bool canUseSchemaName() { return true; }
    [[nodiscard]] bool classCanUseSchemaName() const override { return true; }

    // --- components: adding (table_components.cpp)
    /// A component without a name gets one. Raises "Add Field Exception", or "DuplicateFieldException" for columns.
    virtual void add(const std::shared_ptr<SQLTableComponent>& component);
    /// Raises "ParsingException" for null.
    void addWithRenaming(const std::shared_ptr<SQLTableComponent>& component);
    void addWithRenaming(const std::shared_ptr<SQLTableComponent>& component, bool& didRename);
    void addComponent(const std::shared_ptr<SQLTableComponent>& component);
    void addComponentField(const std::shared_ptr<SQLTableComponent>& component);
    void addComponentGeneral(const std::shared_ptr<SQLTableComponent>& component);
    /// Raises "NilFieldException" and "DuplicateFieldException". Gives the component a fresh uid when the document
    /// knows its present one.
    void addUniqueComponent(const std::shared_ptr<SQLTableComponent>& component);
    void addCheckConstraint(const std::shared_ptr<SQLConstraint>& constraint);
    /// Unknown column names are skipped.
    void addParsedIndexWithName(const OptionalText& name, const std::vector<std::string>& fieldNames,
                                const OptionalText& type);
    void remove(SQLTableComponent& component) { remove(&component); }
    /// Logs null.
    void remove(SQLTableComponent* component);
    void reorder(SQLTableComponent& component, std::size_t position);
    /// Undoable, "reorder fields". The count moves to the end; a greater position does nothing.
    void reorderFieldWithUid(std::string_view uid, std::size_t position);

    // --- components: lists; copies, in order
    /// All of them: columns, indexes, constraints, keys.
    [[nodiscard]] Components components() const;
    /// The same under the names that the files of documents gave it; columns alone are `columnObjectList()`.
    [[nodiscard]] Components getFields() const { return components(); }
    [[nodiscard]] Components fields() const { return components(); }
    [[nodiscard]] Components objectList() const { return components(); }
    /// The columns; they live as long as they stand in the table.
    [[nodiscard]] Fields columnObjectList() const;
    /// The list itself, locked while the handle lives.
    [[nodiscard]] Guarded<Components>::Handle<const Components> lockedFields() const { return _fields.lock(); }
    /// Calls `visit(T&)` for each component of a kind, in order, under the list's lock.
    template <class T, class Visit>
    void forEachComponent(Visit visit) const {
        auto components = _fields.lock();
        for (const auto& component : *components)
            if (T* ofKind = as<T>(component.get())) visit(*ofKind);
    }
    /// Replaces the whole list in one step, without any check; observers hear of it once.
    void setFields(Components components);
    [[nodiscard]] std::size_t fieldCount() const;
    [[nodiscard]] bool contains(const SQLTableComponent& component) const;
    /// `kNotFound` when absent.
    [[nodiscard]] std::size_t getFieldPosition(const SQLTableComponent& component) const {
        return indexOfField(component);
    }
    [[nodiscard]] std::size_t indexOfField(const SQLTableComponent& component) const;
    /// Null past the end.
    [[nodiscard]] SQLTableComponent* getColumn(std::size_t index) const { return getField(index); }
    [[nodiscard]] SQLTableComponent* getField(std::size_t index) const;
    /// The n-th of a class.
    [[nodiscard]] SQLTableComponent* objectOfClass(const ClassFilter& filter, std::size_t index) const;
    [[nodiscard]] Components fieldArrayOfClass(const ClassFilter& filter) const;
    /// Cyclic; null for a component of another table.
    [[nodiscard]] SQLTableComponent* getNextField(const SQLTableComponent& component) const;
    [[nodiscard]] SQLTableComponent* getPreviousField(const SQLTableComponent& component) const;
    [[nodiscard]] SQLTableComponent* getNextObject(const SQLTableComponent& c) const { return getNextField(c); }
    [[nodiscard]] SQLTableComponent* getPreviousObject(const SQLTableComponent& c) const { return getPreviousField(c); }
    [[nodiscard]] std::vector<std::shared_ptr<SQLObject>> flatObjectList() override;

    // --- components: lookup (table_lookup.cpp); null when none
    [[nodiscard]] SQLField* getFieldByName(std::string_view name) const;
    [[nodiscard]] SQLField* fieldNamed(std::string_view name) const { return getFieldByName(name); }
    /// The same for any kind, as that kind: `componentNamed<SQLIndex>("byName")`.
    template <class T>
    [[nodiscard]] T* componentNamed(std::string_view name) const {
        return as<T>(getFieldByTypeAndName(isKindOf<T>, name));
    }
    /// The first component of a kind whose unquoted name equals the trimmed, unquoted name without regard to case.
    [[nodiscard]] SQLTableComponent* getFieldByTypeAndName(const ClassFilter& kind, std::string_view name) const;
    [[nodiscard]] SQLTableComponent* getFieldByTypeAndName(const ClassFilter& kind, std::string_view name,
                                                           bool caseInsensitive) const;
    [[nodiscard]] SQLTableComponent* getFieldByUID(std::string_view uid) const;
    [[nodiscard]] SQLTableComponent* getObjectByName(std::string_view name) const;
    [[nodiscard]] bool isFieldNamePresent(std::string_view name) const;
    [[nodiscard]] bool isFieldNamePresent(std::string_view name, const ClassFilter& kind) const;
    [[nodiscard]] bool isFieldNamePresent(std::string_view name, const ClassFilter& kind,
                                          const SQLTableComponent* except) const;
    [[nodiscard]] bool isObjectNamePresent(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> fieldNamesList() const;
    [[nodiscard]] std::string getFieldNameListString() const;
    /// Without enclosing quote characters; see the source for lone ones.
    [[nodiscard]] static std::string unquotedName(const OptionalText& name);
    [[nodiscard]] static bool tableComponentNameMatchesString(const SQLTableComponent& component, std::string_view name,
                                                              bool caseInsensitive);
    /// Columns with a resolved reference.
    [[nodiscard]] Fields foreignKeyFieldsInTable() const;
    /// Foreign keys with a target table.
    [[nodiscard]] std::vector<SQLForeignKey*> foreignKeyObjectsInTable() const;
    [[nodiscard]] std::vector<SQLIndex*> indexObjectsInTable() const;
    [[nodiscard]] bool fieldIsIndexed(const SQLField& field) const;
    [[nodiscard]] bool fieldIsIndexedNotUnique(const SQLField& field) const;
    [[nodiscard]] bool isIndexSoleIndexOnColumn(const SQLIndex& index, const SQLField& column) const;
    /// Columns and keys of any table of the document, this one included, that reference this table's primary key.
    [[nodiscard]] std::vector<SQLConnectable*> foreignKeysReferencingPrimaryKey() const;

    // --- names (table_names.cpp)
    /// Schema and base name joined with "."; the base name without a schema.
    [[nodiscard]] std::string getName() const override;
    /// Splits off a schema; an unqualified name clears it.
    void setName(const OptionalText& name) override;
    void setBaseName(std::string_view name);
    [[nodiscard]] std::string fullyQualifiedName() const { return fullyQualifiedNameWithSeparator("."); }
    [[nodiscard]] std::string fullyQualifiedNameForIndexNames() const { return fullyQualifiedNameWithSeparator("_"); }
    [[nodiscard]] std::string fullyQualifiedNameWithSeparator(std::string_view separator) const;
    void setFullyQualifiedName(const OptionalText& name) { setFullyQualifiedName(name, true); }
    /// Without forcing, an unqualified name keeps the present schema.
    void setFullyQualifiedName(const OptionalText& name, bool forceSchemaName);
    /// Replaces a taken name by a free one. Always accepts.
    bool validateFullyQualifiedName(OptionalText& name, ValidationError* error);
    bool validateDisplayName(OptionalText& name, ValidationError* error) {
        return validateFullyQualifiedName(name, error);
    }
    [[nodiscard]] std::string displayName() const override { return fullyQualifiedName(); }
    void setDisplayName(const OptionalText& name) override { setFullyQualifiedName(name); }
    [[nodiscard]] std::string getSchemaName() const override { return _schemaName.value_or(std::string()); }
    /// Null when the table has no schema.
    [[nodiscard]] const OptionalText& schemaName() const { return _schemaName; }
    [[nodiscard]] const OptionalText& schema() const { return _schemaName; }
    [[nodiscard]] const OptionalText& getSchema() const { return _schemaName; }
    /// Undoable, "set schema name".
    void setSchemaName(const OptionalText& name);
    void setSchema(const OptionalText& name) { setSchemaName(name); }
    [[nodiscard]] const OptionalText& schemaDisplayName() const { return _schemaName; }
    void setSchemaDisplayName(const OptionalText& name);
    [[nodiscard]] const OptionalText& fullyQualifiedNamePending() const { return _fullyQualifiedNamePending; }
    void setFullyQualifiedNamePending(const OptionalText& name) { _fullyQualifiedNamePending = name; }
    [[nodiscard]] std::string getValidNameForObject(const SQLObject& object, const OptionalText& originalName) const;
    [[nodiscard]] std::string getValidName(const OptionalText& name) const;
    [[nodiscard]] bool holdsName(std::string_view lowercasedName, const SQLObject* except) const override;
    [[nodiscard]] std::size_t siblingCount(const SQLObject* except) const override;
    [[nodiscard]] LockedHandle<NumberHints> numberHints() const override;
    void memberNameDidChange(SQLObject& member) override;
    /// The name for SQL text: the qualified name.
    [[nodiscard]] std::string getNameForSQL() const { return fullyQualifiedName(); }

    // --- settings
    [[nodiscard]] const std::string& tableType() const { return _tableType; }
    [[nodiscard]] const std::string& getTableType() const { return _tableType; }
    [[nodiscard]] const std::string& getType() const { return _tableType; }
    /// Undoable, "set table type".
    void setTableType(const OptionalText& type);
    void setType(const OptionalText& type) { setTableType(type); }
    [[nodiscard]] const std::string& getOtherOptions() const { return _otherOptions; }
    void setOtherOptions(const OptionalText& options) { _otherOptions = options.value_or(std::string()); }
    /// Strips one pair of enclosing quote characters.
    void setComment(const OptionalText& comment) override;
    /// What index names may start with; null until the table was named.
    [[nodiscard]] const OptionalText& indexPrefix() const { return _indexPrefix; }
    void setIndexPrefix(const OptionalText& prefix) { _indexPrefix = prefix; }

    // --- primary key: the columns flagged so, in list order (table_primary_key.cpp)
    [[nodiscard]] bool hasPrimaryKey() const;
    [[nodiscard]] std::vector<std::string> primaryKeyList() const;
    [[nodiscard]] Fields primaryKeyObjectList() const;
    /// Mode 0: names; mode 1: columns.
    [[nodiscard]] std::variant<std::vector<std::string>, Fields> primaryKeyListWithMode(int mode) const;
    virtual void updatePrimaryKeyList() {}
    /// A column of this table joins or leaves the primary key.
    void primaryKeyDidChange() const;
    /// The property `PK_KEY_NAME` when there is one, even an empty one; else the base name and "_pkey".
    [[nodiscard]] std::string primaryKeyConstraintName() const;
    void setPrimaryKeyConstraintName(const OptionalText& name);
    [[nodiscard]] std::string primaryKeyConstraintDisplayName() const { return primaryKeyConstraintName(); }
    void setPrimaryKeyConstraintDisplayName(const OptionalText& name) { setPrimaryKeyConstraintName(name); }
    /// Logs each name that is no column.
    void setPrimaryKeyToFieldNames(const std::vector<std::string>& names);

    // --- uids
    void createNewUid() override;
    void checkUid(SQLContainer& container) override;
    void updateLinksWithNewUid() override;
    void uidChanged(std::string_view newUid, SQLObject& object) override;
    void memberUidDidChange(SQLObject& member) override;
    void addUidMapEntryForObject(SQLTableComponent& object);
    void addUidMapEntryForObject(SQLTableComponent& object, std::string_view newUid);
    void removeUidMapEntryForObject(SQLTableComponent& object);
    void updateUidMapEntryForObject(SQLTableComponent& object);
    using UidMap = std::unordered_map<std::string, SQLTableComponent*, TextHash, std::equal_to<>>;
    /// Every component by uid; of two with the same one, the one that was entered last. A copy.
    [[nodiscard]] UidMap uidFieldMap() const;

    // --- for the container
    void addTableToTargetList(SQLTable& table);
    void clearTargetTableList();
    /// The tables whose foreign keys reference this one, as of the container's last update.
    [[nodiscard]] std::vector<SQLTable*> getTargetTableForFKList() const;
    void setSortPosition(std::int64_t position) { _sortPosition = position; }
    [[nodiscard]] std::int64_t getSortPosition() const { return _sortPosition; }
    /// Also moves the middles of drawn connectors, horizontally only.
    void relocateToOrigin(double dx, double dy) override;
    void postLoadProcess() override;
    [[nodiscard]] bool useNewColoring() const override;
    [[nodiscard]] Color defaultLabelColor() const override;

    // --- observers
    /// Until it is removed, which must be before it goes.
    void addObserverForFieldList(FieldListObserver& observer) { _fieldObservers.add(&observer); }
    void removeObserverForFieldList(const FieldListObserver& observer);
    /// Until the guard goes.
    [[nodiscard]] Observation observeFieldList(FieldListObserver& observer) {
        return _fieldObservers.observe(&observer);
    }
    void notifyFieldObservers();
    /// Hooks; they do nothing.
    virtual void observeTableForForeignKey(SQLObject& /*foreignKey*/) {}
    virtual void stopObservingTableForForeignKey(SQLObject& /*foreignKey*/) {}

    // --- SQL, document, JSON
    /// The table's script by its document's exporter; the empty text when that raises.
    [[nodiscard]] std::string exportToSQL() override;
    [[nodiscard]] std::string exportToSQL(SQLExportDialect* exporter,
                                          const std::shared_ptr<SQLDocumentInfo>& documentInfo);
    /// Kept: the statements, a header and the statements again.
    [[nodiscard]] std::string exportSQLForeignKey();
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLTable>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

protected:
    /// Appends without any check: list, parent, uid map.
    void appendComponent(const std::shared_ptr<SQLTableComponent>& component);

private:
    [[nodiscard]] const ComponentNames* names(const Components& components) const;
    [[nodiscard]] ComponentUids& uids() const;
    void takeBaseName(const std::string& base);
    void takeSchemaName(const OptionalText& name);
    /// The first component whose name matches, as `getFieldByTypeAndName` compares them, and that `accepts` takes.
    template <class Accepts>
    [[nodiscard]] SQLTableComponent* firstNamed(std::string_view name, bool caseInsensitive, Accepts accepts) const;
    [[nodiscard]] bool holdsComponentLike(const SQLTableComponent& component) const;

    Guarded<Components> _fields;
    std::string _tableType;
    OptionalText _schemaName;  // null: no schema
    std::int64_t _sortPosition = 0;
    std::string _otherOptions;
    std::vector<WeakRef<SQLTable>> _targetTableForFKList;
    std::unordered_set<const SQLTable*> _targetTableSet;
    OptionalText _indexPrefix;  // null until named
    ObserverList<FieldListObserver*> _fieldObservers;
    OptionalText _fullyQualifiedNamePending;
    // Both are null while the list is short or nobody asked: most tables are narrow, and their list is as quick.
    // They, and the hints, are guarded by the list's lock.
    mutable std::unique_ptr<ComponentNames> _names;
    mutable std::unique_ptr<ComponentUids> _uids;
    mutable NumberHints _numberHints;
    mutable std::optional<Fields> _primaryKey;  // null until asked for
};

}  // namespace vellicor
