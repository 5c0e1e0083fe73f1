// vellicor/model/table_component.h — what stands inside a table: columns, indexes, constraints, keys, view rows.
#pragma once

#include "vellicor/model/forward.h"
#include "vellicor/model/object_peer.h"

namespace vellicor {

/// An error that validation reports; empty when the value was accepted.
struct ValidationError {
    std::string reason;
};

/// Common base of all components. Its container is the table.
class SQLTableComponent : public SQLObjectPeer {
public:
    using SQLObjectPeer::SQLObjectPeer;
    [[nodiscard]] std::string_view getClassType() const override { return "SQLTableComponent"; }
    /// Asks the parent table to remove it; nothing while detached.
    void delete_();

    /// Unquotes and trims; null is stored as "null". Undoable.
    void setName(const OptionalText& name) override;
    [[nodiscard]] virtual std::string getLabel() { return getName(); }
    [[nodiscard]] std::string comment() const { return getComment(); }
    [[nodiscard]] SQLTable* parentTable() const override;
    [[nodiscard]] virtual SQLField* fkField() const { return nullptr; }
    /// Also keeps the colour in `FieldBackgroundColor`.
    void setLabel(std::shared_ptr<SQLObjectLabel> label) override;
    [[nodiscard]] Color defaultLabelColor() const override;

    /// Replaces a proposal that is not free by one that is, and remembers whether it did. Always accepts.
    virtual bool validateName(OptionalText& name, ValidationError* error);
    /// Whether table prefixes apply to the name.
    [[nodiscard]] virtual bool supportsNamePrefixing() const { return false; }
    /// The name with the table's name in front where the document and the preferences ask for it.
    [[nodiscard]] std::string prefixedName(std::string_view name, SQLTable& table);
    [[nodiscard]] static bool shouldPrefixIndexNameOnInsert(const SQLTable& table);

    [[nodiscard]] bool isDeferrable() const { return getPropertyAsBoolean(keys::deferrable); }
    void setDeferrable(bool flag) { setPropertyAsBoolean(keys::deferrable, flag); }
    [[nodiscard]] bool isInitiallyDeferred() const { return getPropertyAsBoolean(keys::initiallyDeferred); }
    void setInitiallyDeferred(bool flag) { setPropertyAsBoolean(keys::initiallyDeferred, flag); }

    // --- references that wait for their target table
    void setIncompleteReferenceTargetTable(std::string_view table, std::string_view field);
    void clearIncompleteReferenceTargetTable();
    /// Tells the document that a key has come, or has another name or target.
    void foreignKeyDidChange();
    /// Columns and foreign keys look for the table again.
    virtual void reconnectIncompleteReference() {}

    void postLoadProcess() override;

    /// The script of the component's table; the empty text while detached. The exporter is not used.
    [[nodiscard]] std::string exportToSQL(SQLExportDialect* exporter,
                                          const std::shared_ptr<SQLDocumentInfo>& documentInfo);
    [[nodiscard]] std::string exportToSQL() override { return exportToSQL(nullptr, nullptr); }
    [[nodiscard]] std::string exportToSQLWithDocumentInfo(const std::shared_ptr<SQLDocumentInfo>& documentInfo) {
        return exportToSQL(nullptr, documentInfo);
    }
    XMLElement exportToXMLNode(const XMLElement* parent = nullptr) const override;
    /// The element inside an "SQLContainer" element, pretty-printed.
    [[nodiscard]] std::string exportToXMLWithWrapper() const;
    [[nodiscard]] std::string description() const override;
    [[nodiscard]] std::string descriptionWithExporter(SQLExportDialect& exporter);
    [[nodiscard]] Value::Map jsonDictionary() const override;

    /// A typed name that is not committed; null when none.
    [[nodiscard]] const OptionalText& namePending() const { return _namePending; }
    void setNamePending(const OptionalText& name) { _namePending = name; }

    [[nodiscard]] std::shared_ptr<SQLObject> newInstance() const override { return create<SQLTableComponent>(); }
    const ClassInfo& classInfo() const override { return kClassInfo; }
    static const ClassInfo kClassInfo;

private:
    void takeName(const OptionalText& name);

    OptionalText _namePending;
};

}  // namespace vellicor
