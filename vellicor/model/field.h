// vellicor/model/field.h — one column of a table.
#pragma once

#include <mutex>

#include "vellicor/model/link.h"
#include "vellicor/model/table_component.h"
#include "vellicor/platform/weak_ref.h"

namespace vellicor {

/// How a column takes part in foreign keys.
enum class ForeignKeyMode { None = 0, Single = 1, Compound = 2, CompoundMember = 3 };

/// A column: type, flags, default, and in the older style a reference of its own to a column of another table.
class SQLField : public SQLTableComponent, public SQLLink {
public:
    using SQLTableComponent::SQLTableComponent;
    ~SQLField() override;
    void init() override;
    static std::shared_ptr<SQLField> field() { return create<SQLField>(); }
    static std::shared_ptr<SQLField> fieldWithName(const OptionalText& name, const OptionalText& type) {
        return initWithName(name, type);
    }
    static std::shared_ptr<SQLField> initWithName(const OptionalText& name, const OptionalText& type);

    static const UndoProperties& undoProperties();
    [[nodiscard]] const UndoProperties& classUndoProperties() const override { return undoProperties(); }
    static const UndoProperties& propertiesWithUndo();
    [[nodiscard]] std::string_view getClassType() const override { return "SQLField"; }
    /// "unique" also reads "1" while uniqueness is forced and the column is no primary key.
    [[nodiscard]] std::string getProperty(std::string_view key) const override;

    // --- type (field_type.cpp)
    void setType(const OptionalText& type) { setType(type, false); }
    /// Splits off the size in parentheses; what follows them is dropped.
    void setType(const OptionalText& type, bool toUpperCase);
    void setType(const OptionalText& type, const char*) = delete;
    [[nodiscard]] static std::string getDataTypeFromTypeString(std::string_view type);
    [[nodiscard]] static std::string getDataTypeSizeFromTypeString(std::string_view type);
    /// What the type's text had behind the parentheses, such as " with time zone": lossless documents keep it, nothing
    /// else knows of it. Empty when there was nothing.
    [[nodiscard]] std::string typeRest() const { return _typeRest ? *_typeRest : std::string(); }
    void setTypeRest(const std::string& rest);   ///< undoable
    void setDataType(const OptionalText& type);  ///< undoable
    void setTypeSize(const OptionalText& size);  ///< undoable
    [[nodiscard]] const std::string& getDataType() const { return _type; }
    [[nodiscard]] const std::string& getDataTypeSize() const { return _typeSize; }
    [[nodiscard]] const std::string& type() const { return _type; }
    [[nodiscard]] const std::string& typeSize() const { return _typeSize; }
    [[nodiscard]] bool hasTypeSize() const { return hasTypeSizeForDisplay(false); }
    /// For display the document's dialect may say that the type takes no size.
    [[nodiscard]] bool hasTypeSizeForDisplay(bool display) const;
    [[nodiscard]] std::string getFullTypeStringForDisplay(bool display) const;
    /// Type and size, "VARCHAR(20)".
    [[nodiscard]] std::string getFullTypeString() const { return getFullTypeStringForDisplay(false); }
    [[nodiscard]] std::string getOriginalType() const { return getFullTypeString(); }
    [[nodiscard]] std::string originalType() const { return getFullTypeString(); }
    void setOriginalType(const OptionalText& type) { setType(type); }
    /// The full type; the type of the column at the end of the chain of references while matching is forced.
    [[nodiscard]] std::string getType() const { return getTypeForDisplay(false); }
    [[nodiscard]] std::string getTypeForDisplay(bool display) const;
    [[nodiscard]] std::string getLabel() override;
    [[nodiscard]] std::string toString() const;

    // --- flags; undoable unless said otherwise
    void setNotNull(bool flag);
    [[nodiscard]] bool getNotNull() const { return getPropertyAsBoolean(keys::notNull); }
    void setUnique(bool flag);
    [[nodiscard]] bool isUnique() const { return getPropertyAsBoolean(keys::unique); }
    void setRequiresForcedUnique(bool flag) { setPropertyAsBoolean(keys::forcedUnique, flag); }  ///< not undoable
    void setForcedUnique(bool flag) { setPropertyAsBoolean(keys::forcedUnique, flag); }          ///< not undoable
    [[nodiscard]] bool forcedUnique() const { return getPropertyAsBoolean(keys::forcedUnique); }
    void setPrimaryKey(bool flag);
    [[nodiscard]] bool primaryKey() const { return _primaryKey; }
    [[nodiscard]] bool getPrimaryKey() const { return _primaryKey; }
    void setAutoIncrement(bool flag);
    [[nodiscard]] bool getAutoIncrement() const { return getPropertyAsBoolean(keys::autoIncrement); }
    [[nodiscard]] bool autoIncrement() const { return getAutoIncrement(); }
    [[nodiscard]] bool uniqueOrForcedUnique() const;
    void setUniqueOrForcedUnique(bool flag) { setUnique(flag); }
    [[nodiscard]] bool requiresUniqueOrPrimaryKey() const;
    [[nodiscard]] bool canSetUnique() const;

    // --- default value
    void setDefaultValue(const OptionalText& value);  ///< undoable; null stores the empty text
    [[nodiscard]] std::string defaultValue() const { return getProperty(keys::defaultValue); }
    [[nodiscard]] std::string getDefaultValue() const { return defaultValue(); }
    /// A text without quotes is an expression: it is marked so and stored as it is.
    void setDefaultValueFromParsedString(const OptionalText& value);
    [[nodiscard]] static bool isQuoted(std::string_view text);
    /// Kept: a value quoted at both ends keeps its leading quote.
    void setDefaultValueRemovingQuotes(const OptionalText& value);

    // --- name of the column's foreign key
    /// Undoable. Made unique by the document; an empty result removes the property.
    void setForeignKeyName(const OptionalText& name);
    [[nodiscard]] std::string foreignKeyName() const override { return getProperty(keys::foreignKeyName); }
    void propertyDidChange(std::string_view key) override;
    void propertiesWereMerged() override;
    bool validateForeignKeyName(OptionalText& name, ValidationError* error);
    void setReferenceId(const OptionalText& name);
    [[nodiscard]] std::string getReferenceId() const override { return getProperty(keys::foreignKeyName); }

    // --- reference by name and uid (field_reference.cpp); setters without undo
    void setReferences(const OptionalText& table, const OptionalText& field);
    void setReferencesTable(const OptionalText& name) { setReference(&Reference::table, name); }
    void setReferencesField(const OptionalText& name) { setReference(&Reference::field, name); }
    void setReferencesTableUID(const OptionalText& uid) { setReference(&Reference::tableUid, uid); }
    void setReferencesFieldUID(const OptionalText& uid) { setReference(&Reference::fieldUid, uid); }
    /// As stored; null when unset.
    [[nodiscard]] const OptionalText& referencesTable() const { return reference().table; }
    [[nodiscard]] const OptionalText& referencesField() const { return reference().field; }
    [[nodiscard]] const OptionalText& referencesFieldUID() const { return reference().fieldUid; }
    [[nodiscard]] const OptionalText& getReferencesFieldUID() const { return reference().fieldUid; }
    [[nodiscard]] const OptionalText& referencesTableUID() const { return reference().tableUid; }
    [[nodiscard]] const OptionalText& getReferencesTableUID() const { return reference().tableUid; }
    /// Names of the resolved target; null while unresolved.
    [[nodiscard]] OptionalText getReferencesField() const;
    [[nodiscard]] OptionalText getReferencesTable() const;
    /// "table(column)" of the stored names; null when either is unset.
    [[nodiscard]] OptionalText getReferencesString() const;
    /// The same of the resolved names; null while unresolved.
    [[nodiscard]] OptionalText getReferences() const;
    /// "table(column)" of this column.
    [[nodiscard]] std::string getReferenceName() const override;
    [[nodiscard]] std::string getReferenceLinkName() const override { return getProperty(keys::referenceLinkName); }
    void setReferenceLinkName(const OptionalText& name) override;
    /// Text shown for the reference; null when there is none.
    [[nodiscard]] OptionalText referenceInformationString() override;

    // --- resolution
    [[nodiscard]] SQLTable* getTableForReferences() const;
    /// Logs when neither uid nor name finds a column.
    [[nodiscard]] SQLField* getFieldForReferences(const SQLTable& table) const;
    /// Sets or clears (null) the target and keeps names, uids and the document's graph in step.
    void setFkField(SQLField* target);
    [[nodiscard]] SQLField* getFkField() const override { return reference().target.get(); }
    [[nodiscard]] SQLField* fkField() const override { return reference().target.get(); }
    [[nodiscard]] SQLTable* targetTable() const override;
    [[nodiscard]] bool hasForeignKey() const { return getFkField() != nullptr; }
    void updateLinksWithNewUid() override;
    void resetUid() override;
    void reconnectIncompleteReference() override;
    [[nodiscard]] SQLTable* observingFkTable() const { return reference().observed.get(); }
    /// The columns that were given this one as target and still live.
    [[nodiscard]] std::vector<SQLField*> connectedObjects() const;
    /// Some column points here, or did so.
    [[nodiscard]] bool hasConnectedObjects() const { return !_connectedObjects.empty(); }

    // --- old compound keys (field_compound.cpp)
    [[nodiscard]] ForeignKeyMode foreignKeyMode() const;
    [[nodiscard]] static bool allowCompoundKey() { return false; }
    [[nodiscard]] bool getCompoundForeignKey() const { return _compoundForeignKey; }
    void setCompoundForeignKey(bool flag);
    [[nodiscard]] SQLField* getSourceForeignKey() const { return reference().owner.get(); }
    void setSourceForeignKey(SQLField* field);
    /// Records the uid of a dependent member while a document is read.
    void setReferenceDependentField(const std::string& uid);
    [[nodiscard]] std::vector<SQLField*> getDependentCompoundKeyFields() const;
    void updateDependentKeys(const std::vector<SQLField*>& targetPrimaryKey);
    void clearCompoundKey();
    /// Turns an old compound key into a foreign-key object of the table; whether it did.
    bool convertCompoundForeignKey();
    [[nodiscard]] static bool compoundKeyIsValid(const std::vector<SQLField*>& first,
                                                 const std::vector<SQLField*>& second);
    [[nodiscard]] static bool shouldAddField(const SQLField* candidate, const SQLField& target,
                                             const std::vector<SQLField*>& added);
    [[nodiscard]] std::vector<std::string> getCompoundKeyVector() const;
    [[nodiscard]] std::vector<std::string> sourceFieldNameList() const override;
    [[nodiscard]] std::vector<std::string> targetFieldNameList() const override;
    void convertInlineCheckConstraint();

    // --- actions and cardinalities
    void setSourceCardinalityAsString(const OptionalText& text);
    void setDestinationCardinalityAsString(const OptionalText& text);
    [[nodiscard]] bool linkIsDeferrable() const override { return isDeferrable(); }
    [[nodiscard]] bool linkIsInitiallyDeferred() const override { return isInitiallyDeferred(); }
    [[nodiscard]] SQLTableComponent& connectableComponent() override { return *this; }

    // --- type matching
    [[nodiscard]] bool shouldForceForeignKeyTypeMatching() const;
    [[nodiscard]] bool isForcedUnsigned() const;
    [[nodiscard]] bool getForcedUnsigned() const;
    [[nodiscard]] bool getFkTypeMismatch() const;
    [[nodiscard]] bool fieldMatchesType(const OptionalText& type, const SQLField& targetField) const;
    /// The chain of references comes back here, or is longer than the document has objects.
    [[nodiscard]] bool isCircularFK() const;

    // --- other
    void addIndexName(std::string_view name);
    [[nodiscard]] std::vector<std::string> indexList() const;
    void addCheckConstraint(const std::shared_ptr<SQLConstraint>& constraint);
    [[nodiscard]] Point location() const override { return {}; }
    [[nodiscard]] Size size() const override { return {}; }
    void setSize(Size) override {}
    void setLocation(Point) override {}
    [[nodiscard]] bool hasWarnings() const { return false; }
    virtual void foreignKeyPrimarykeyChange(SQLObject&) {}
    /// Addresses the column by uid within its table, for scripting: {"sqlFields", uid}.
    [[nodiscard]] std::pair<std::string, std::string> objectSpecifier() const { return {"sqlFields", uid()}; }

    // --- SQL, document, JSON, loading (field_document.cpp)
    [[nodiscard]] std::string exportToSQL() override;
    using SQLTableComponent::exportToSQL;
    [[nodiscard]] static std::string quoteForSQL(std::string_view text);
    /// Kept: the target table's name stands in the column's place too, and only CASCADE is written.
    [[nodiscard]] std::string exportSQLForeignKey(std::string_view tableName);
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    [[nodiscard]] Value::Map jsonDictionary() const override;
    void setSafePropertyValue(const LoadedValue& value, std::string_view key) override;
    void postLoadProcess() override;
    [[nodiscard]] std::shared_ptr<SQLObject> copyWithZone(void* zone = nullptr) const override;
    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLField>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    /// What only columns with a reference have; most have none.
    struct Reference {
        OptionalText field;  // null or empty: references nothing
        OptionalText table;  // possibly schema-qualified
        OptionalText tableUid;
        OptionalText fieldUid;
        WeakRef<SQLField> target;
        WeakRef<SQLField> owner;  // of the old compound key that the column is a member of
        WeakRef<SQLTable> observed;
        std::vector<std::string> dependents;            // uids; from reading until the table of the target is there
        std::weak_ptr<SQLForeignKeyObjectGraph> graph;  // the one that the column was last entered in
        std::recursive_mutex loadMutex;
    };
    /// An empty one while there is none.
    [[nodiscard]] const Reference& reference() const;
    [[nodiscard]] Reference& ownReference();
    void setReference(OptionalText Reference::*part, const OptionalText& text);

    [[nodiscard]] static bool isSet(const OptionalText& text) { return text && !text->empty(); }
    void pointTo(SQLField& target);
    void addConnectedObject(SQLField& field);
    void clearReference();
    void updateGraph();
    void resolveReference();
    [[nodiscard]] OptionalText graphType() const;
    [[nodiscard]] std::string writtenType() const;
    void writeUnresolvedReference(const XMLElement& node) const;
    [[nodiscard]] SQLExportDialect* documentExporter() const;
    [[nodiscard]] OptionalText validForeignKeyName(const OptionalText& name) const;

    std::string _type;
    std::string _typeSize;
    std::unique_ptr<const std::string> _typeRest;  // null when there is none, as nearly always
    bool _primaryKey = false;
    bool _compoundForeignKey = false;
    bool _settingFkField = false;           // stops cycles of source keys
    bool _hadDependents = false;            // some column was made a member of this one's old compound key
    std::unique_ptr<Reference> _reference;  // null until needed
    std::vector<std::string> _indexList;    // guarded by `sharedLock(this)`
    std::vector<WeakRef<SQLField>> _connectedObjects;
};

}  // namespace vellicor
