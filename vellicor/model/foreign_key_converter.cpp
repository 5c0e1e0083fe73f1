// vellicor/model/foreign_key_converter.cpp — old compound references of a table's columns into foreign keys.
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string fieldListText(const std::vector<SQLField*>& fields) {
    std::vector<std::string> descriptions;
    for (const SQLField* field : fields) descriptions.push_back("    " + field->description());
    return text("(\n%@\n)", joined(descriptions, ",\n"));
}

void convert(SQLField& field, SQLTable& table) {
    SQLTable* targetTable = field.targetTable();
    if (!targetTable) return;
    const std::vector<SQLField*> primaryKey = targetTable->primaryKeyObjectList();
    std::vector<SQLField*> references = field.getDependentCompoundKeyFields();
    references.insert(references.begin(), &field);
    auto foreignKey = create<SQLForeignKey>();
    foreignKey->setTargetTable(targetTable);
    table.addWithRenaming(foreignKey);
    log(text("referenceList = %@, targetPrimaryKeyList = %@", fieldListText(references), fieldListText(primaryKey)));
    if (references.size() <= primaryKey.size()) {
        for (std::size_t i = 0; i < references.size(); ++i) {
            log(text("source = %@, target = %@", references[i]->description(), primaryKey[i]->description()));
            foreignKey->addFieldPair(references[i], primaryKey[i]);
        }
    }
    field.setFkField(nullptr);
}

}  // namespace

void SQLForeignKeyConverter::convertCompoundForeignKeyToTableLevel(SQLTable& table) {
    for (const auto& component : table.fields()) {
        auto* field = as<SQLField>(component.get());
        if (field && field->getFkField() && field->foreignKeyMode() == ForeignKeyMode::Compound) convert(*field, table);
    }
}

}  // namespace vellicor
