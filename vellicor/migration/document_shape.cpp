// vellicor/migration/document_shape.cpp — what a document's create script makes in a dialect.
#include "vellicor/migration/document_shape.h"

#include <unordered_map>

#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/view.h"

namespace vellicor {

namespace {

/// While it lives the document has no statements of the user's own. Nobody is told and nothing is recorded for undo.
class WithoutUserStatements {
public:
    explicit WithoutUserStatements(SQLDocumentInfo* info) : _info(info) {
        for (const char* key : {keys::prologueExportSQL, keys::postExportSQL}) {
            if (!_info || !_info->hasProperty(key)) continue;
            _kept.emplace_back(key, PropertyValue(_info->getProperty(key)));
            _info->setProperties({{key, PropertyValue("")}});
        }
    }
    ~WithoutUserStatements() {
        if (!_kept.empty()) _info->setProperties(_kept);
    }
    WithoutUserStatements(const WithoutUserStatements&) = delete;
    WithoutUserStatements& operator=(const WithoutUserStatements&) = delete;

private:
    SQLDocumentInfo* _info;
    QVMutableNotifyingPropertyDictionary::Snapshot _kept;
};

std::string scriptOf(SQLContainer& document, GenericSQLExporter& exporter) {
    SQLDocumentInfo* info = document.documentInfo();
    const WithoutUserStatements silence(info);
    auto settings = info ? copyOf(*info) : create<SQLDocumentInfo>();
    settings->setProperties({{keys::dropTableOption, PropertyValue("0")}});
    exporter.setDocumentInfo(settings);
    return document.exportToSQL(exporter);
}

}  // namespace

DatabaseShape shapeOfDocument(SQLContainer& document, const MigrationDialect& dialect) {
    GenericSQLExporter& exporter = dialect.exporter();
    ScriptReader reader(dialect.wordRules(), dialect.folding());
    DatabaseShape shape = reader.read(scriptOf(document, exporter));

    std::unordered_map<std::string, SQLTable*> tables;
    for (const auto& object : document.objectList())
        if (auto* table = as<SQLTable>(object.get())) tables.emplace(exporter.getCanonicalName(*table), table);
    for (TableShape& table : shape.tables) {
        const auto found = tables.find(table.name.text());
        if (found != tables.end()) {
            table.table = found->second;
            auto column = table.columns.begin();
            // The script keeps the order of the columns.
            found->second->forEachComponent<SQLField>([&](SQLField& field) {
                const SQLName name = reader.nameOf(exporter.quoteIdentifier(field.getName()));
                if (column != table.columns.end() && column->name == name) (column++)->column = &field;
            });
        }
        dialect.complete(table);
    }
    for (ViewShape& view : shape.views)
        if (const auto found = tables.find(view.name.text()); found != tables.end())
            view.view = as<SQLView>(found->second);
    return shape;
}

}  // namespace vellicor
