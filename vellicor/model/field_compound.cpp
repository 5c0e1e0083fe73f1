// vellicor/model/field_compound.cpp — compound keys as columns held them before there were foreign-key objects.
#include <algorithm>
#include <unordered_map>

#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

ForeignKeyMode SQLField::foreignKeyMode() const {
    if (hasForeignKey()) return allowCompoundKey() ? ForeignKeyMode::Compound : ForeignKeyMode::Single;
    return _compoundForeignKey ? ForeignKeyMode::CompoundMember : ForeignKeyMode::None;
}

void SQLField::setCompoundForeignKey(bool flag) {
    willChangeValueForKey("foreignKeyMode");
    _compoundForeignKey = flag;
    didChangeValueForKey("foreignKeyMode");
}

void SQLField::setSourceForeignKey(SQLField* field) {
    if (field || _reference) ownReference().owner = field;
    if (field) field->_hadDependents = true;
}

void SQLField::setReferenceDependentField(const std::string& uid) { ownReference().dependents.push_back(uid); }

std::vector<SQLField*> SQLField::getDependentCompoundKeyFields() const {
    std::vector<SQLField*> members;
    const SQLTable* table = _hadDependents ? parentTable() : nullptr;
    if (!table) return members;
    table->forEachComponent<SQLField>([&](SQLField& field) {
        if (field.getSourceForeignKey() == this) members.push_back(&field);
    });
    return members;
}

void SQLField::updateDependentKeys(const std::vector<SQLField*>& targetPrimaryKey) {
    SQLTable* table = parentTable();
    if (!table) return;
    std::vector<SQLField*> added{this};
    std::vector<std::shared_ptr<SQLField>> created;
    for (const SQLField* target : targetPrimaryKey) {
        if (!target || target == getFkField()) continue;
        const std::string name(trimmed(target->getName()));
        auto* member = as<SQLField>(table->getFieldByTypeAndName(isKindOf<SQLField>, name));
        if (shouldAddField(member, *target, added)) {
            member = created.emplace_back(SQLField::fieldWithName(target->getName(), target->getType())).get();
            try {
                table->addWithRenaming(created.back());
            } catch (const std::exception&) {
                log("error with adding compound foreign key entry");
            }
        }
        added.push_back(member);
        member->setCompoundForeignKey(true);
        member->setSourceForeignKey(this);
    }
}

bool SQLField::shouldAddField(const SQLField* candidate, const SQLField& target, const std::vector<SQLField*>& added) {
    return !candidate || candidate->hasForeignKey() || candidate->getType() != target.getType() ||
           std::ranges::find(added, candidate) != added.end() || candidate->getSourceForeignKey();
}

void SQLField::clearCompoundKey() {
    setCompoundForeignKey(false);
    for (SQLField* member : getDependentCompoundKeyFields()) {
        member->setSourceForeignKey(nullptr);
        member->setCompoundForeignKey(false);
    }
}

bool SQLField::convertCompoundForeignKey() {
    SQLTable* table = parentTable();
    if (reference().dependents.empty() || !table) return false;
    SQLTable* targetTable = getTableForReferences();
    if (!targetTable) return false;
    auto foreignKey = create<SQLForeignKey>();
    foreignKey->setTargetTable(targetTable);

    SQLField* target = getFieldForReferences(*targetTable);
    const SQLTable::Fields primaryKey = targetTable->primaryKeyObjectList();
    if (primaryKey.size() < 2 || std::ranges::find(primaryKey, target) == primaryKey.end()) return false;
    setFkField(nullptr);
    foreignKey->addFieldPair(this, target);

    // Of equal names the last one. An index or constraint may have a column's name and is no source.
    std::unordered_map<std::string, SQLField*> columns;
    table->forEachComponent<SQLField>([&](SQLField& field) { columns[field.getName()] = &field; });
    for (SQLField* column : primaryKey) {
        if (column == target) continue;
        const auto source = columns.find(column->getName());
        foreignKey->addFieldPair(source == columns.end() ? nullptr : source->second, column);
    }
    table->add(foreignKey);
    return true;
}

bool SQLField::compoundKeyIsValid(const std::vector<SQLField*>& first, const std::vector<SQLField*>& second) {
    if (second.size() != first.size() + 1) return false;
    return std::equal(first.begin(), first.end(), second.begin(),
                      [](const SQLField* a, const SQLField* b) { return a->getType() == b->getType(); });
}

std::vector<std::string> SQLField::getCompoundKeyVector() const {
    const SQLTable* table = targetTable();
    return table ? table->primaryKeyList() : std::vector<std::string>{};
}

void SQLField::convertInlineCheckConstraint() {
    SQLTable* table = parentTable();
    if (!table) return;
    auto constraint = SQLConstraint::constraint();
    constraint->setCheckConstraintExpression(getProperty(keys::checkConstraint));
    constraint->setName(hasProperty(keys::checkConstraintName) ? getProperty(keys::checkConstraintName)
                                                               : text("%@_check_cons", getName()));
    removeProperty(keys::checkConstraint);
    removeProperty(keys::checkConstraintName);
    table->addWithRenaming(constraint);
}

}  // namespace vellicor
