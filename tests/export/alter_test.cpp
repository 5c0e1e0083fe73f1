// tests/export/alter_test.cpp — statements that turn an old model into a new one, in the neutral dialect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/export/alter_run.h"
#include "vellicor/export/sql_export_dialect_common.h"
#include "vellicor/export/exporter_common.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogCapture;
using testing::ScopedPreference;

/// Spells out deferral where it is asked for, as dialects with that clause do.
class DeferringExporter : public GenericSQLExporter {
public:
    SourceNodePtr foreignKeyDeferredBlock(SQLConnectable& key, SQLConnectable*) override {
        const char* word = key.linkIsDeferrable() ? "DEFERRABLE" : addExplicitDeferrable() ? "NOT DEFERRABLE" : "";
        return QVSourceNode::nodeWithValue(word, "");
    }
    bool checkIndexValid(SQLIndex& index) override { return index.getIndexType() != "REFUSED"; }
    bool useIndexPrefixSize() const override { return true; }
    std::string prefixForIndexedProperty(SQLField& field) override { return field.parentTable()->getBaseName() + "_"; }
};

/// Two tables; the columns a.parent and s.b.a_id reference a.id, and a key object references a.code.
struct Model {
    template <class T>
    T* component(const char* name) const {
        return as<T>(b->getFieldByTypeAndName(isKindOf<T>, name));
    }
    SQLField* column(const char* table, const char* name) const { return testing::field(*document, table, name); }

    std::shared_ptr<SQLContainer> document = testing::document(
        "a(id int pk; code varchar(8); parent int -> a.id);; s.b(a_id int -> a.id; note text; index i (a_id,note(8));"
        "constraint u UNIQUE (a_id,note); constraint ck CHECK [note > 0]; key k (note) -> a(code))");
    SQLTable* a = testing::table(*document, "a");
    SQLTable* b = testing::table(*document, "s.b");
    SQLField* id = column("a", "id");
    SQLField* code = column("a", "code");
    SQLField* parent = column("a", "parent");
    SQLField* aId = column("s.b", "a_id");
    SQLField* note = column("s.b", "note");
    SQLIndex* index = component<SQLIndex>("i");
    SQLConstraint* unique = component<SQLConstraint>("u");
    SQLConstraint* check = component<SQLConstraint>("ck");
    SQLForeignKey* key = component<SQLForeignKey>("k");
};

class Alter : public ::testing::Test {
protected:
    void SetUp() override {
        now.aId->setReferenceId("b_fk");
        old.aId->setReferenceId("b_fk");
    }
    Model now;
    Model old;
    std::shared_ptr<DeferringExporter> exporter = create<DeferringExporter>();
    std::shared_ptr<GenericSQLExporter> generic = GenericSQLExporter::exporter();
    static std::string text(const SourceNodePtr& node) { return GenericSQLExporter::nodeText(node); }
    Statements indexChange(GenericSQLExporter& by) { return by.alterIndexedProperty(*now.note, *old.note); }
};

TEST_F(Alter, Statements) {
    old.index->setName("i0");
    now.note->setDataType("blob");
    const struct {
        std::string actual;
        std::string expected;
    } cases[] = {
        {generic->alterType(*now.note, *old.note), "ALTER TABLE s.b ALTER COLUMN note TYPE blob"},
        {generic->addColumn(*now.note), "ALTER TABLE s.b ADD COLUMN note BLOB"},
        {generic->addField(*now.note, *now.b), "ALTER TABLE s.b ADD COLUMN note BLOB ;\n"},
        {generic->dropColumn(*now.note), "ALTER TABLE s.b DROP COLUMN note"},
        {generic->drop(*now.index), "DROP INDEX i"},
        {generic->addIndex(*now.index, *now.a), "ALTER TABLE a ADD INDEX i (a_id,note);\n"},
        {generic->addConstraint(*now.check), "ALTER TABLE s.b ADD CONSTRAINT ck CHECK (note > 0);\n"},
        {generic->alterSQLIndex(*now.index, *old.index), "ALTER TABLE s.b DROP INDEX i0, ADD  INDEX i (a_id,note);\n"},
        {generic->drop(*now.check), "ALTER TABLE s.b DROP CONSTRAINT ck"},
        {generic->addSQLConstraint(*now.check), "ALTER TABLE s.b ADD  CONSTRAINT ck CHECK (note > 0)"},
        {generic->addSQLConstraint(*now.unique), "ALTER TABLE s.b ADD CONSTRAINT u UNIQUE (a_id,note)"},
        {generic->alter(*now.a, *old.a), ""},
    };
    for (const auto& [actual, expected] : cases) EXPECT_EQ(actual, expected);
}

TEST_F(Alter, LogsWhatIsUnsupported) {
    LogCapture captured;
    EXPECT_EQ(generic->alterSQLConstraint(*now.check, *old.check), "");
    EXPECT_THAT(generic->alterAsVector(*now.index, *old.index, nullptr), IsEmpty());
    EXPECT_THAT(generic->postLoadAlterAsVector(*now.index, *old.index), IsEmpty());
    EXPECT_THAT(captured.lines(), ElementsAre("unsupported alterSQLConstraint for exporter Generic SQL",
                                              "Unable to use selector alterSQLIndexAsVector::"));
}

/// Two statements between silent ones.
class StatementsOfTable : public GenericSQLExporter {
public:
    Statements alterSQLTableAsVector(SQLTable&, SQLTable&, SQLObject*) override { return {"", "one", "", "two", ""}; }
};

TEST_F(Alter, TableStatementsAreJoinedWithoutEmptyOnes) {
    EXPECT_EQ(create<StatementsOfTable>()->alter(*now.a, *old.a), "one;\ntwo");
    EXPECT_EQ(create<StatementsOfTable>()->alter(*now.id, *old.id), "");
}

TEST(AlterInDialects, NothingRaisesForDetachedComponents) {
    ScopedPreference comments(prefs::usePostgresComments);
    auto target = testing::document("a(id int pk)");
    auto old = SQLField::fieldWithName("a", "int");
    auto now = SQLField::fieldWithName("a", "int");
    now->setPrimaryKey(true);
    now->setAutoIncrement(true);
    now->setNotNull(true);
    now->setDefaultValue("1");
    now->setComment("note");
    auto unique = SQLField::fieldWithName("a", "int");
    unique->setUnique(true);
    unique->setFkField(testing::field(*target, "a", "id"));
    unique->setPropertyAsBoolean(keys::indexed, true);
    auto index = SQLIndex::indexWithName("i");
    auto constraint = SQLConstraint::initWithName("c");
    auto key = SQLForeignKey::initWithName("k");
    LogCapture captured;
    for (const auto& record : DialectManager::getDialectManager().exporterList()) {
        const std::string& dialect = record->getName();
        auto exporter = testing::exporterOf(dialect);
        for (const Statements& statements :
             {exporter->alterAsVector(*now, *old, nullptr), exporter->postLoadAlterAsVector(*now, *old),
              exporter->alterForeignKey(*unique, *unique), exporter->alterIndexedProperty(*unique, *old),
              exporter->alterSQLForeignKeyAsVector(key.get(), nullptr, nullptr),
              Statements{exporter->alterUniqueConstraint(*old, *unique), exporter->addIndex(*index),
                         exporter->alterSQLConstraint(*constraint, *constraint)}})
            EXPECT_EQ(joined(statements, ""), "") << dialect;
        EXPECT_NE(exporter->export_(*now), "") << dialect << ": the column itself needs no table";
        now->setType("bigint");
        (void)exporter->alterType(*now, *old);
        now->setType("int");
        for (SQLObject* object : std::initializer_list<SQLObject*>{now.get(), index.get(), constraint.get(), key.get()})
            (void)exporter->drop(*object);
        (void)exporter->dropForeignKey(*key);
        (void)exporter->addColumn(*now);
        (void)exporter->createIndexStatement(*now, "i");
    }
    EXPECT_THAT(captured.lines(), ::testing::Contains("Export Error: missing index object"));
}

// --- dropping keys

TEST_F(Alter, DropsAKeyOnceOnly) {
    EXPECT_EQ(generic->dropForeignKey(*old.aId), "ALTER TABLE s.b DROP CONSTRAINT b_fk");
    EXPECT_EQ(generic->dropForeignKey(*old.aId), "");
    EXPECT_EQ(generic->dropForeignKey(*now.aId), "ALTER TABLE s.b DROP CONSTRAINT b_fk") << "another key of that name";
    EXPECT_EQ(generic->dropSQLForeignKey(*old.key), "ALTER TABLE s.b DROP CONSTRAINT IF EXISTS k");
    EXPECT_EQ(generic->dropSQLForeignKey(*old.key), "");
    const std::string unknown =
        "/* Need to DROP Foreign Key constraint from field a(parent), but constraint name unknown */";
    EXPECT_EQ(generic->dropForeignKey(*old.parent), unknown);
    EXPECT_EQ(generic->dropForeignKey(*old.parent), unknown) << "nothing was dropped yet";
    AlterRun run(*generic, *old.document);
    EXPECT_EQ(generic->dropForeignKey(*old.aId), "ALTER TABLE s.b DROP CONSTRAINT b_fk") << "a new run";
}

TEST_F(Alter, ChangedKeyObjectIsDroppedAndAdded) {
    const auto change = [this](SQLForeignKey* key, SQLForeignKey* oldKey) {
        return generic->alterSQLForeignKeyAsVector(key, oldKey, nullptr);
    };
    const std::string added = "ALTER TABLE s.b ADD CONSTRAINT k FOREIGN KEY (note) REFERENCES a (code);\n";
    EXPECT_THAT(change(now.key, old.key), IsEmpty());
    EXPECT_THAT(change(now.key, nullptr), ElementsAre(added));
    now.key->setDeferrable(true);
    EXPECT_THAT(change(now.key, old.key), ElementsAre("ALTER TABLE s.b DROP CONSTRAINT IF EXISTS k", added));
    EXPECT_THAT(change(nullptr, old.key), IsEmpty()) << "dropped once";
}

// --- comparing keys

TEST_F(Alter, ForeignKeysMatchByAllTheirParts) {
    const struct {
        const char* what;
        void (*change)(Model&);
        std::vector<std::string> log;
    } cases[] = {
        {"same", [](Model&) {}, {"[FOREIGN KEY MATCH]"}},
        {"default delete action", [](Model& m) { m.aId->setDeleteAction(4); }, {"[FOREIGN KEY MATCH]"}},
        {"default update action", [](Model& m) { m.aId->setUpdateAction(4); }, {"[FOREIGN KEY MATCH]"}},
        {"target table", [](Model& m) { m.a->setName("c"); }, {}},
        {"no target", [](Model& m) { m.aId->setFkField(nullptr); }, {}},
        {"name", [](Model& m) { m.aId->setReferenceId("other"); }, {}},
        {"deferrable", [](Model& m) { m.aId->setDeferrable(true); }, {}},
        {"initially deferred", [](Model& m) { m.aId->setInitiallyDeferred(true); }, {}},
        {"target column", [](Model& m) { m.aId->setFkField(m.code); },
         {"[FOREIGN KEY MISMATCH] - targetList (id) (code)", "id != code"}},
        {"source column", [](Model& m) { m.aId->setName("x"); },
         {"[FOREIGN KEY MISMATCH] - sourceList (a_id) (x)", "a_id != x"}},
        {"delete action", [](Model& m) { m.aId->setDeleteAction(1); }, {"[FOREIGN KEY MISMATCH] - delete action"}},
        {"update action", [](Model& m) { m.aId->setUpdateAction(2); }, {"[FOREIGN KEY MISMATCH] - update action"}},
    };
    for (const auto& [what, change, log] : cases) {
        Model changed;
        changed.aId->setReferenceId("b_fk");
        change(changed);
        LogCapture captured;
        const bool matches = !log.empty() && log.back() == "[FOREIGN KEY MATCH]";
        EXPECT_EQ(generic->isForeignKeyMatchForFieldA(*old.aId, *changed.aId), matches) << what;
        EXPECT_EQ(captured.lines(), log) << what;
    }
    LogCapture captured;
    now.key->addFieldPair(now.aId, now.id);
    EXPECT_FALSE(generic->isForeignKeyMatchForFieldA(*old.key, *now.key));
    EXPECT_THAT(captured.lines(), ElementsAre("[FOREIGN KEY MISMATCH] - targetList (code) (code,id)", "(null) != id"));
}

TEST_F(Alter, ForeignKeyMatchesSaysWhichSideHasAReference) {
    EXPECT_EQ(generic->foreignKeyMatches(*now.id, *old.id), 0);
    EXPECT_EQ(generic->foreignKeyMatches(*now.aId, *old.aId), 0);
    EXPECT_EQ(generic->foreignKeyMatches(*now.id, *old.aId), 1);
    EXPECT_EQ(generic->foreignKeyMatches(*now.aId, *old.id), 2);
    now.aId->setFkField(now.code);
    EXPECT_EQ(generic->foreignKeyMatches(*now.aId, *old.aId), 3);
}

// --- keys of a table's columns

TEST_F(Alter, ColumnKeysAreDroppedBeforeAnyIsAdded) {
    EXPECT_EQ(text(exporter->alterForeignKeyForTable(*now.a, *old.a)), "");
    old.parent->setReferenceId("p_old");
    now.parent->setReferenceId("p_new");
    now.code->setFkField(now.id);
    old.id->setFkField(old.aId);
    old.id->setReferenceId("gone");

    const auto node = exporter->alterForeignKeyForTable(*now.a, *old.a);
    const std::string drops = "ALTER TABLE a DROP CONSTRAINT gone;\nALTER TABLE a DROP CONSTRAINT p_old;";
    const std::string adds =
        "ALTER TABLE a ADD FOREIGN KEY (code) REFERENCES a (id);\n"
        "ALTER TABLE a ADD CONSTRAINT p_new FOREIGN KEY (parent) REFERENCES a (id) NOT DEFERRABLE;";
    EXPECT_EQ(text(node->childWithId("#dropInstructions")), drops);
    EXPECT_EQ(text(node->childWithId("#addInstructions")), adds);
    EXPECT_EQ(text(node), drops + "\n" + adds);
    EXPECT_FALSE(exporter->addExplicitDeferrable());
    EXPECT_EQ(text(exporter->alterForeignKeyForTable(*now.a, *old.a)), adds) << "the drops were written before";
}

TEST_F(Alter, KeysThatDifferInDeferralOrTypeAreMadeAnew) {
    const char* drop = "ALTER TABLE s.b DROP CONSTRAINT b_fk";
    const char* add = "ALTER TABLE s.b ADD CONSTRAINT b_fk FOREIGN KEY (a_id) REFERENCES a (id) ";
    now.aId->setDeferrable(true);
    EXPECT_THAT(exporter->alterForeignKey(*now.aId, *old.aId), ElementsAre(drop, std::string(add) + "DEFERRABLE;"));
    now.aId->setDeferrable(false);
    now.aId->setType("bigint");
    exporter = create<DeferringExporter>();
    const auto node = exporter->alterForeignKeyAsNode(*now.aId, *old.aId);
    EXPECT_EQ(text(node->childWithId("#dropInstructionEntry")), drop);
    EXPECT_EQ(text(node->childWithId("#addInstructionEntry")), std::string(add) + "NOT DEFERRABLE;");
    ScopedPreference ignoring(prefs::canIgnoreObjectsOnExport);
    now.b->setPropertyAsBoolean(keys::cannotLinkToObject, true);
    EXPECT_THAT(create<DeferringExporter>()->alterForeignKey(*now.aId, *old.aId), IsEmpty());
}

// --- primary keys

TEST_F(Alter, PrimaryKeyChangeTakesTheReferencesWithIt) {
    EXPECT_EQ(generic->alterPrimaryKey(*now.id, *old.id), "");
    now.id->setPrimaryKey(false);
    now.code->setPrimaryKey(true);
    const std::string references = "ALTER TABLE s.b ADD CONSTRAINT b_fk FOREIGN KEY (a_id) REFERENCES a (id);";
    const std::string expected =
        "/* Need to DROP Foreign Key constraint from field a(parent), but constraint name unknown */;\n"
        "ALTER TABLE s.b DROP CONSTRAINT b_fk;\n"
        "/*Need to modify primary key on table a but constraint name not set - guessing a_pkey*/\n"
        "ALTER TABLE a DROP CONSTRAINT a_pkey;\n"
        "ALTER TABLE a ADD CONSTRAINT a_pkey PRIMARY KEY (code);\n"
        "ALTER TABLE a ADD FOREIGN KEY (parent) REFERENCES a (id);\n" + references;
    EXPECT_EQ(generic->alterPrimaryKey(*now.id, *old.id), expected);
    {
        AlterRun run(*generic, *old.document);
        EXPECT_EQ(generic->alterPrimaryKey(*now.id, *old.id), expected) << "by the run's index";
    }

    old.parent->setFkField(nullptr);
    old.a->setPrimaryKeyConstraintName("pk_old");
    const auto node = GenericSQLExporter::exporter()->alterPrimaryKeyForTable(*now.a, *old.a);
    const std::pair<const char*, std::string> parts[] = {
        {"DropReferencingFKConstraints", "ALTER TABLE s.b DROP CONSTRAINT b_fk;"},
        {"dropPrimaryKey", "ALTER TABLE a DROP CONSTRAINT pk_old;"},
        {"addPrimaryKey", "ALTER TABLE a ADD CONSTRAINT a_pkey PRIMARY KEY (code);"},
        {"AddReferencingFKConstraints", references}};
    for (const auto& [id, expected] : parts) EXPECT_EQ(text(node->childWithId(id)), expected);
    EXPECT_EQ(node->childWithId("dropPrimaryKey")->nodeComment(), "drop primary key instruction");
    EXPECT_EQ(text(node).find("guessing"), std::string::npos);
}

TEST_F(Alter, ReferencesThatAreGoneStayDropped) {
    const std::vector<SQLConnectable*> keys{old.aId, old.key};
    EXPECT_EQ(generic->filterForeignKeyList(keys, now.document.get()), keys);
    EXPECT_EQ(text(generic->addForeignKeyList({old.key})),
              "ALTER TABLE s.b ADD CONSTRAINT k FOREIGN KEY (note) REFERENCES a (code);");
    now.aId->setFkField(now.code);
    EXPECT_THAT(generic->filterForeignKeyList(keys, now.document.get()), ElementsAre(keys[1]));
    now.b->setName("other");
    EXPECT_THAT(generic->filterForeignKeyList(keys, now.document.get()), IsEmpty());
    const struct {
        const char* what;
        void (*change)(Model&);
        std::vector<SQLConnectable*> kept;
    } cases[] = {
        {"a renamed column key", [](Model& m) { m.aId->setReferenceId("other"); }, {old.key}},
        {"a renamed key object", [](Model& m) { m.key->setName("other"); }, {old.aId}},
        {"a column key in place of a key object",
         [](Model& m) {
             m.key->delete_();
             m.note->setFkField(m.code);
             m.note->setReferenceId("k");
         },
         {old.aId}},
    };
    for (const auto& [what, change, kept] : cases) {
        Model changed;
        changed.aId->setReferenceId("b_fk");
        change(changed);
        EXPECT_EQ(generic->filterForeignKeyList(keys, changed.document.get()), kept) << what;
    }
    EXPECT_THAT(generic->filterForeignKeyList(keys, nullptr), IsEmpty());
}

// --- indexed columns

TEST_F(Alter, IndexedFlagSwitchedOff) {
    now.note->setProperty("k", "v");
    EXPECT_THAT(generic->postLoadAlterAsVector(*now.note, *old.note), IsEmpty());
    old.note->setPropertyAsBoolean(keys::indexed, true);
    LogCapture captured;
    EXPECT_THAT(generic->postLoadAlterAsVector(*now.note, *old.note),
                ElementsAre("ALTER TABLE s.b DROP INDEX b_note_idx;\n"));
    EXPECT_THAT(captured.lines(),
                ElementsAre("canDropIndex = YES", "|| DROPPING indexed property note ",
                            ::testing::MatchesRegex("dropIndexName = b_note_idx \\{.*indexed = 1.*\\}")));
    old.note->setProperty(keys::indexedKeyName, "");
    EXPECT_THAT(indexChange(*generic), ElementsAre("ALTER TABLE s.b DROP INDEX ;\n")) << "kept: no name is a name too";
    {
        ScopedPreference runnable(prefs::runnableScripts);
        EXPECT_THAT(indexChange(*testing::exporterOf("generic")),
                    ElementsAre("ALTER TABLE s.b DROP INDEX b_note_idx;\n"));
    }
    old.note->setProperty(keys::indexedKeyName, "i");
    EXPECT_THAT(indexChange(*generic), IsEmpty()) << "the index is the table's";
    EXPECT_EQ(captured.lines().back(), "canDropIndex = NO");
    old.index->removeIndexField(*old.note);
    EXPECT_THAT(indexChange(*generic), ElementsAre("ALTER TABLE s.b DROP INDEX i;\n"));
}

TEST_F(Alter, IndexedFlagSwitchedOn) {
    now.note->setPropertyAsBoolean(keys::indexed, true);
    LogCapture captured;
    EXPECT_THAT(indexChange(*generic), ElementsAre("CREATE INDEX b_note_idx ON s.b(note);\n"));
    EXPECT_THAT(captured.lines(),
                ElementsAre("[INDEXED FIELD] checking for index existance", "[INDEXED FIELD] Adding Index note_idx"));
    old.index->setName("b_note_idx");
    EXPECT_THAT(indexChange(*generic), ::testing::SizeIs(1));
    EXPECT_THAT(indexChange(*exporter), IsEmpty()) << "its own prefix makes the names equal";
}

// --- statements that dialects share

TEST_F(Alter, SharedStatements) {
    const auto indexStatement = [this](GenericSQLExporter& by, const IndexStatementForm& form) {
        return ExporterCommon::addIndex(*now.index, *now.b, by, form);
    };
    EXPECT_EQ(indexStatement(*exporter, {.addCreateInstruction = false}), " INDEX i ON s.b (a_id,note(8));\n");
    now.index->setIndexType(" UNIQUE ");
    EXPECT_EQ(indexStatement(*generic, {.addSeparator = false, .withTableName = false}),
              "CREATE UNIQUE INDEX i (a_id,note)");
    now.index->setIndexType("REFUSED");
    EXPECT_EQ(indexStatement(*exporter, {}), "");

    EXPECT_EQ(ExporterCommon::dropForeignKey(*now.b, *now.aId, *generic), "ALTER TABLE s.b DROP CONSTRAINT b_fk");
    const auto lost = SQLTable::tableWithName("t");
    EXPECT_EQ(ExporterCommon::dropForeignKey(*lost, *now.aId), "ALTER TABLE t DROP CONSTRAINT b_fk");
    LogCapture captured;
    EXPECT_EQ(ExporterCommon::dropForeignKey(*now.a, *now.parent, *generic), "");
    EXPECT_THAT(captured.lines(),
                ElementsAre("Note: probably wanted to delete foreign key here, but didn't have reference id"));

    EXPECT_EQ(SQLExportDialectCommon::dropPrimaryKeyInstruction(*now.b, *now.note, *generic), "");
    now.note->setProperty("PK_NAME", "p k");
    EXPECT_EQ(SQLExportDialectCommon::dropPrimaryKeyInstruction(*now.b, *now.note, *generic),
              "ALTER TABLE s.b DROP CONSTRAINT \"p k\";");
}

}  // namespace
}  // namespace vellicor
