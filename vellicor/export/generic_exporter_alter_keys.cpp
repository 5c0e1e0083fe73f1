// vellicor/export/generic_exporter_alter_keys.cpp — from an old table to a new one: foreign keys and primary keys.
#include <algorithm>
#include <iterator>
#include <optional>

#include "vellicor/export/generic_exporter_alter.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/primary_key_references.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr const char* kDropInstructions = "#dropInstructions";
constexpr const char* kAddInstructions = "#addInstructions";
constexpr const char* kDropEntry = "#dropInstructionEntry";
constexpr const char* kAddEntry = "#addInstructionEntry";

/// While it lives, both sides of a comparison spell out whether they are deferrable.
class ExplicitDeferrable {
public:
    explicit ExplicitDeferrable(GenericSettings& exporter)
        : _exporter(exporter), _previous(exporter.addExplicitDeferrable()) {
        exporter.setAddExplicitDeferrable(true);
    }
    ~ExplicitDeferrable() { _exporter.setAddExplicitDeferrable(_previous); }
    ExplicitDeferrable(const ExplicitDeferrable&) = delete;
    ExplicitDeferrable& operator=(const ExplicitDeferrable&) = delete;

private:
    GenericSettings& _exporter;
    bool _previous;
};

/// A node whose visible children stand on lines of their own.
SourceNodePtr lines() {
    auto node = QVSourceNode::node();
    node->setInfixSpaceAfter("\n");
    return node;
}

SourceNodePtr addWithId(const SourceNodePtr& parent, SourceNodePtr child, const char* id) {
    child->setElementId(id);
    return parent->addChild(std::move(child));
}

/// Whether the lists are equal. If not, the names at the first place where they differ are logged, null where a list
/// has ended, behind the line that `mismatch` makes of both lists.
template <class Mismatch>
bool listsMatch(const std::vector<std::string>& a, const std::vector<std::string>& b, Mismatch mismatch) {
    const auto [inA, inB] = std::ranges::mismatch(a, b);
    if (inA == a.end() && inB == b.end()) return true;
    const auto nameAt = [](const auto& list, auto place) {
        return place == list.end() ? std::nullopt : OptionalText(*place);
    };
    log(mismatch(joined(a, ","), joined(b, ",")));
    log(text("%@ != %@", nameAt(a, inA), nameAt(b, inB)));
    return false;
}

/// Whether two keys are of one kind and have one name, as the database knows it: a column's key and a key object never
/// stand for each other, nor does a key for what it was called before.
bool haveSameKindAndName(SQLConnectable& a, SQLConnectable& b) {
    const bool isObject = as<SQLForeignKey>(&a);
    return isObject == static_cast<bool>(as<SQLForeignKey>(&b)) && a.getReferenceId() == b.getReferenceId();
}

/// Whether two keys lead from columns of the same names to the same columns of a table of the same name.
bool haveSameEnds(const SQLConnectable& a, const SQLConnectable& b) {
    const SQLTable* targetA = a.targetTable();
    const SQLTable* targetB = b.targetTable();
    return targetA && targetB && targetA->fullyQualifiedName() == targetB->fullyQualifiedName() &&
           a.sourceFieldNameList() == b.sourceFieldNameList() && a.targetFieldNameList() == b.targetFieldNameList();
}

}  // namespace

// --- bookkeeping

void GenericAlterScript::beginAlterRun(const SQLContainer& database, const PrimaryKeyReferences& references) {
    _droppedForeignKeys.clear();
    _databaseContainer = &database;
    _primaryKeyReferences = &references;
}

void GenericAlterScript::endAlterRun() {
    _databaseContainer = nullptr;
    _primaryKeyReferences = nullptr;
}

void GenericAlterScript::markDropped(SQLConnectable& key) {
    _droppedForeignKeys.try_emplace(&key, key.connectableComponent().shared_from_this());
}

// --- dropping one key

std::string GenericAlterScript::unknownForeignKeyComment(SQLConnectable& key, std::string_view keyName) {
    const SQLTable* table = key.connectableComponent().parentTable();
    return text("/* Need to DROP Foreign Key constraint from field %@(%@), but constraint name unknown */",
                commentText(table ? table->getName() : std::string()), commentText(keyName));
}

std::string GenericAlterScript::dropForeignKey(SQLConnectable& key) {
    if (!canAlterConstraints() || wasDropped(key)) return {};
    const std::string referenceId = key.getReferenceId();
    if (referenceId.empty()) return unknownForeignKeyComment(key, key.connectableComponent().getName());
    markDropped(key);
    const std::string table = canonicalTableName(key.connectableComponent());
    return text("ALTER TABLE %@ DROP CONSTRAINT %@", table, quoteIdentifier(referenceId));
}

SourceNodePtr GenericAlterScript::dropSQLForeignKeyNode(SQLForeignKey& key) {
    auto node = QVSourceNode::node();
    if (!canAlterConstraints() || wasDropped(key)) return node;
    markDropped(key);
    node->addChildWithValue("ALTER TABLE");
    node->addChildWithValue(canonicalTableName(key));
    node->addChildWithValue("DROP CONSTRAINT");
    node->addChildWithValue("IF EXISTS");
    node->addChildWithValue(quoteIdentifier(key.getName()));
    return node;
}

std::string GenericAlterScript::dropSQLForeignKey(SQLForeignKey& key) { return nodeText(dropSQLForeignKeyNode(key)); }

Statements GenericAlterScript::alterSQLForeignKeyAsVector(SQLForeignKey* key, SQLForeignKey* oldKey, SQLObject*) {
    if (!supportsForeignKeys() || (key && oldKey && isUnchanged(*key, *oldKey))) return {};
    Statements statements;
    if (oldKey) statements.push_back(dropSQLForeignKey(*oldKey));
    if (SQLTable* table = key ? key->parentTable() : nullptr)
        std::ranges::move(postLoadAsVector(*key, *table), std::back_inserter(statements));
    std::erase(statements, "");
    return statements;
}

// --- comparing keys

bool GenericAlterScript::isUnchanged(SQLForeignKey& key, SQLForeignKey& oldKey) {
    return key.getComparisonString() == oldKey.getComparisonString();
}

bool GenericAlterScript::actionsMatch(std::uint64_t a, std::uint64_t b, std::uint64_t unsetAction) {
    constexpr std::uint64_t unset = action::none;
    return a == b || (a == unset && b == unsetAction) || (b == unset && a == unsetAction);
}

bool GenericAlterScript::isForeignKeyMatchForFieldA(SQLConnectable& fieldA, SQLConnectable& fieldB) {
    const SQLTable* targetA = fieldA.targetTable();
    const SQLTable* targetB = fieldB.targetTable();
    if (!targetA || !targetB || targetA->fullyQualifiedName() != targetB->fullyQualifiedName()) return false;
    if (fieldA.foreignKeyName() != fieldB.foreignKeyName()) return false;
    if (fieldA.linkIsDeferrable() != fieldB.linkIsDeferrable()) return false;
    if (fieldA.linkIsInitiallyDeferred() != fieldB.linkIsInitiallyDeferred()) return false;

    const auto targetMismatch = [](const std::string& a, const std::string& b) {
        return text("[FOREIGN KEY MISMATCH] - targetList (%@) (%@)", a, b);
    };
    const auto sourceMismatch = [](const std::string& a, const std::string& b) {
        return text("[FOREIGN KEY MISMATCH] - sourceList (%@) (%@)", a, b);
    };
    if (!listsMatch(fieldA.targetFieldNameList(), fieldB.targetFieldNameList(), targetMismatch)) return false;
    if (!listsMatch(fieldA.sourceFieldNameList(), fieldB.sourceFieldNameList(), sourceMismatch)) return false;
    if (!actionsMatch(fieldA.deleteAction(), fieldB.deleteAction(), defaultDeleteAction())) {
        log("[FOREIGN KEY MISMATCH] - delete action");
        return false;
    }
    // Kept: the default of the delete action stands for an unset update action too.
    if (!actionsMatch(fieldA.updateAction(), fieldB.updateAction(), defaultDeleteAction())) {
        log("[FOREIGN KEY MISMATCH] - update action");
        return false;
    }
    log("[FOREIGN KEY MATCH]");
    return true;
}

int GenericAlterScript::foreignKeyMatches(SQLField& field, SQLField& oldField) {
    const OptionalText reference = field.getReferences();
    const OptionalText oldReference = oldField.getReferences();
    if (reference == oldReference) return 0;
    if (!reference) return 1;
    return oldReference ? 3 : 2;
}

// --- keys of columns

std::string GenericAlterScript::foreignKeyClause(SQLField& field) {
    if (!field.parentTable()) return {};
    const ExplicitDeferrable explicitly(*this);
    const ForeignKeyForm form{.asExternalInstruction = false, .isInstructionComparison = true};
    const std::string clause = createForeignKey(field, form);
    return std::string(trimmed(clause));
}

GenericAlterScript::ForeignKeyChange GenericAlterScript::foreignKeyChange(SQLField& field, SQLField& databaseField) {
    if (const SQLTable* table = field.parentTable(); table && !canLinkToObject(*table)) return {};
    const bool isWanted = !foreignKeyClause(field).empty();
    const bool exists = !foreignKeyClause(databaseField).empty();
    const bool isKept = isWanted && exists;
    if (isKept && isForeignKeyMatchForFieldA(databaseField, field) && field.getType() == databaseField.getType())
        return {};

    ForeignKeyChange change;
    if (exists) change.drop = dropForeignKey(databaseField);
    if (isWanted) {
        std::optional<ExplicitDeferrable> explicitly;
        if (isKept) explicitly.emplace(*this);
        const std::string statement = createForeignKey(field, {.asExternalInstruction = true});
        change.add = trimmed(statement);
    }
    return change;
}

SourceNodePtr GenericAlterScript::alterForeignKeyAsNode(SQLField& field, SQLField& databaseField) {
    const ForeignKeyChange change = foreignKeyChange(field, databaseField);
    auto node = lines();
    addWithId(node, QVSourceNode::nodeWithValue(change.drop, ""), kDropEntry);
    addWithId(node, QVSourceNode::nodeWithValue(change.add, ""), kAddEntry);
    return node;
}

Statements GenericAlterScript::alterForeignKey(SQLField& field, SQLField& databaseField) {
    ForeignKeyChange change = foreignKeyChange(field, databaseField);
    Statements statements{std::move(change.drop), std::move(change.add)};
    std::erase(statements, "");
    return statements;
}

SourceNodePtr GenericAlterScript::alterForeignKeyForTable(SQLTable& table, SQLTable& databaseTable) {
    auto node = lines();
    auto drops = addWithId(node, lines(), kDropInstructions);
    auto adds = addWithId(node, lines(), kAddInstructions);
    for (const auto& component : table.objectList()) {
        auto* field = as<SQLField>(component.get());
        SQLField* databaseField = field ? databaseTable.getFieldByName(field->getName()) : nullptr;
        if (!databaseField) continue;
        SourceNodePtr entry = alterForeignKeyAsNode(*field, *databaseField);
        adds->addChild(entry->childWithId(kAddEntry));
        if (auto drop = drops->addChild(entry->childWithId(kDropEntry))) drop->setPostfixValue(";");
    }
    return node;
}

// --- primary keys

SourceNodePtr GenericAlterScript::alterPrimaryKeyForTable(SQLTable& table, SQLTable& databaseTable) {
    auto node = lines();
    if (!canAlterConstraints() || table.primaryKeyList() == databaseTable.primaryKeyList()) return node;
    std::vector<SQLConnectable*> references;
    if (databaseTable.hasPrimaryKey()) {
        references = foreignKeysReferencing(databaseTable);
        if (!references.empty()) {
            SourceNodePtr drops = alterDropForeignKeysReferencingPrimaryKey(table, databaseTable);
            addWithId(node, std::move(drops), "DropReferencingFKConstraints");
        }
        node->addChild(primaryKeyConstraintNameGuessWarning(databaseTable));
        addWithId(node, dropPrimaryKeyInstruction(databaseTable), "dropPrimaryKey");
    }
    if (table.hasPrimaryKey()) addWithId(node, addPrimaryKeyInstruction(table), "addPrimaryKey");
    if (!references.empty()) {
        const auto kept = filterForeignKeyList(references, table.topLevelContainer());
        addWithId(node, addForeignKeyList(kept), "AddReferencingFKConstraints");
    }
    return node;
}

std::string GenericAlterScript::alterPrimaryKey(SQLField& field, SQLField& databaseField) {
    SQLTable* table = field.parentTable();
    SQLTable* databaseTable = databaseField.parentTable();
    return table && databaseTable ? nodeText(alterPrimaryKeyForTable(*table, *databaseTable)) : std::string();
}

SourceNodePtr GenericAlterScript::alterDropForeignKeysReferencingPrimaryKey(SQLTable&, SQLTable& databaseTable) {
    return canAlterConstraints() ? dropForeignKeyList(foreignKeysReferencing(databaseTable)) : QVSourceNode::node();
}

SourceNodePtr GenericAlterScript::primaryKeyConstraintNameGuessWarning(SQLTable& table) {
    if (table.hasProperty(keys::primaryKeyName)) return QVSourceNode::node();
    const std::string warning = text("Need to modify primary key on table %@ but constraint name not set - guessing %@",
                                     table.getName(), primaryKeyConstraintName(table));
    return QVSourceNode::commentBlockWithStringValue(commentText(warning));
}

SourceNodePtr GenericAlterScript::dropPrimaryKeyInstruction(SQLTable& table) {
    auto node = alterTableNode(table, {"DROP CONSTRAINT"});
    if (const OptionalText name = primaryKeyConstraintName(table); name && !name->empty())
        node->addChildWithValue(quoteIdentifier(*name));
    node->setPostfixValue(";");
    node->setNodeComment("drop primary key instruction");
    return node;
}

SourceNodePtr GenericAlterScript::addPrimaryKeyInstruction(SQLTable& table) {
    auto node = alterTableNode(table, {"ADD CONSTRAINT"});
    if (const OptionalText name = primaryKeyConstraintName(table); name && !name->empty())
        node->addChildWithValue(quoteIdentifier(*name));
    node->addChildWithValue("PRIMARY KEY");
    node->addChild(quotedNameList(table.primaryKeyList()));
    node->setPostfixValue(";");
    node->setNodeComment("add primary key instruction");
    return node;
}

std::vector<SQLConnectable*> GenericAlterScript::foreignKeysReferencing(const SQLTable& table) const {
    const bool isIndexed = _primaryKeyReferences && table.topLevelContainer() == _databaseContainer;
    return isIndexed ? _primaryKeyReferences->referencing(table) : table.foreignKeysReferencingPrimaryKey();
}

SourceNodePtr GenericAlterScript::dropForeignKeyList(const std::vector<SQLConnectable*>& keys) {
    auto node = lines();
    for (SQLConnectable* key : keys) node->addChildWithValue(dropForeignKey(*key), "")->setPostfixValue(";");
    return node;
}

SourceNodePtr GenericAlterScript::addForeignKeyList(const std::vector<SQLConnectable*>& keys) {
    auto node = lines();
    for (SQLConnectable* key : keys) {
        const std::string statement = createReference(*key);
        node->addChildWithValue(trimmed(statement), "");
    }
    return node;
}

std::string GenericAlterScript::createReference(SQLConnectable& key) {
    auto* object = as<SQLForeignKey>(&key);
    if (!object) return createForeignKey(key, {.asExternalInstruction = true});
    SQLTable* table = object->parentTable();
    return table ? joined(postLoadAsVector(*object, *table), "\n") : std::string();
}

std::vector<SQLConnectable*> GenericAlterScript::filterForeignKeyList(const std::vector<SQLConnectable*>& keys,
                                                                      SQLContainer* documentContainer) {
    std::vector<SQLConnectable*> kept;
    if (!documentContainer) return kept;
    for (SQLConnectable* key : keys) {
        const SQLTable* table = key->connectableComponent().parentTable();
        if (!table) continue;
        const NameOptions anyCase{.caseSensitive = false, .ofClass = isKindOf<SQLTable>};
        const auto* documentTable = as<SQLTable>(documentContainer->getObjectByName(table->getName(), anyCase));
        if (!documentTable) continue;
        const SQLTable::Components components = documentTable->objectList();
        const bool stillThere = std::ranges::any_of(components, [key](const auto& component) {
            auto* candidate = as<SQLConnectable>(component.get());
            return candidate && haveSameKindAndName(*key, *candidate) && haveSameEnds(*key, *candidate);
        });
        if (stillThere) kept.push_back(key);
    }
    return kept;
}

}  // namespace vellicor
