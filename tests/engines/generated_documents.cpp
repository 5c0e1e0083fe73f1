// tests/engines/generated_documents.cpp — documents made by number.
#include "tests/engines/generated_documents.h"

#include <gtest/gtest.h>

#include "tests/support/dialect_text.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

/// How names are chosen, and which preferences go with them.
enum class Naming { Plain, QuotedAlways, QuotedWhereSet, NothingSet };

class Maker {
public:
    Maker(std::uint64_t number, std::string_view dialect, const DocumentTraits& traits)
        : _state(number * 0x9E3779B97F4A7C15u + 1), _naming(static_cast<Naming>(number % 4)), _traits(traits),
          _exporter(exporterOf(dialect)) {}

    std::shared_ptr<SQLContainer> make() {
        _document = SQLContainer::newContainer();
        const bool hasSchemas = oneIn(3);
        const std::size_t count = 3 + below(5);
        for (std::size_t i = 0; i < count; ++i) {
            auto table = SQLTable::tableWithName("t");
            table->setBaseName(name("table"));
            if (hasSchemas && !oneIn(3)) table->setSchemaName(oneIn(2) ? "sales" : "stock");
            _document->add(table);
            _tables.push_back(table.get());
            fill(*table);
        }
        for (SQLTable* table : _tables) addKeys(*table);
        addViews();
        if (oneIn(4)) _document->add(SQLTable::tableWithName("bare_table"));
        addInfo();
        return _document;
    }

private:
    struct Target {  // columns that a key may reference
        SQLTable* table;
        std::vector<SQLField*> columns;
    };

    std::uint64_t next() {
        _state ^= _state << 13;
        _state ^= _state >> 7;
        return _state ^= _state << 17;
    }
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>((next() >> 20) % limit); }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <class List>
    auto& pick(List& list) {
        return list[below(std::size(list))];
    }

    /// Unique in the document, also without blanks and regard to case.
    std::string name(const std::string& stem) {
        static const char* const kOdd[] = {"Order", "select",     "two words", "MixedCase", "größe",
                                           "it's",  "say \"hi\"", "back`tick", "a-b",       "1st",
                                           "user",  "group",      "UPPER",     "rows"};
        const std::string number = std::to_string(++_lastNumber);
        if (_naming == Naming::Plain || oneIn(2)) return stem + "_" + number;
        std::string odd = pick(kOdd);
        // A few odd words stand alone: behind a number they are reserved no longer.
        return _usedOdd.insert(odd).second ? odd : odd + " " + number;
    }

    // --- columns

    static bool isText(const DocumentTraits::Type& type) { return std::string_view(type.name).starts_with("VARCHAR"); }

    SQLField& addColumn(SQLTable& table, const DocumentTraits::Type& type) {
        auto column = SQLField::fieldWithName(name("column"), type.name);
        if (type.isUnsigned) column->setPropertyAsBoolean(keys::unsigned_, true);
        if (type.hasTimeZone) column->setPropertyAsBoolean(keys::timezone, true);
        table.add(column);
        return *column;
    }

    void addPrimaryKey(SQLTable& table) {
        Target target{&table, {}};
        const std::size_t kind = below(5);
        if (kind == 0) return;
        const auto add = [&](const char* type) -> SQLField& {
            SQLField& column = addColumn(table, {type, {}});
            column.setPrimaryKey(true);
            column.setNotNull(true);
            target.columns.push_back(&column);
            return column;
        };
        if (kind == 1) add("VARCHAR(20)");
        if (kind >= 2) add(oneIn(3) ? "BIGINT" : "INTEGER").setAutoIncrement(kind == 2);
        if (kind == 4) add(oneIn(2) ? "VARCHAR(12)" : "INTEGER");
        if (oneIn(3)) table.setPrimaryKeyConstraintName(oneIn(2) ? "common_pk" : "pk_" + std::to_string(++_lastNumber));
        _targets.push_back(target);
    }

    void fill(SQLTable& table) {
        addPrimaryKey(table);
        const std::size_t count = 2 + below(5);
        std::vector<SQLField*> indexable;
        for (std::size_t i = 0; i < count; ++i) {
            const DocumentTraits::Type& type = pick(_traits.types);
            SQLField& column = addColumn(table, type);
            if (oneIn(4)) column.setNotNull(true);
            if (!type.defaults.empty() && !oneIn(3)) setDefault(column, pick(type.defaults));
            if (type.isIndexable) indexable.push_back(&column);
            if (type.isIndexable && oneIn(6)) column.setUnique(true);
            if (type.isIndexable && oneIn(6)) column.setPropertyAsBoolean(keys::indexed, true);
            if (oneIn(4)) column.setComment(comment());
        }
        addChecks(table);
        addIndexes(table, indexable);
        if (oneIn(2)) table.setComment(comment());
    }

    static void setDefault(SQLField& column, const DocumentTraits::Default& value) {
        column.setDefaultValue(value.value);
        if (value.isExpression) column.setPropertyAsBoolean(keys::noQuoteDefault, true);
    }

    std::string comment() {
        static const char* const kComments[] = {
            "plain",     "ends */ early", "opens /* another", "it's a \"quote\"", "two\nlines", "back\\slash",
            "a; b -- c", "dollar $1 %s",  "slash/",           "größer",           "*/*"};
        return pick(kComments);
    }

    void addChecks(SQLTable& table) {
        if (!oneIn(3)) return;
        // The expression is the user's, so its names are ones that stand as they are.
        auto column = SQLField::fieldWithName("amount", "INTEGER");
        table.add(column);
        column->setProperty(keys::checkConstraint, "amount >= 0");
        if (oneIn(2)) column->setProperty(keys::checkConstraintName, "amount_check");
        auto constraint = SQLConstraint::constraint();
        constraint->setName(oneIn(2) ? "amount_check" : name("check"));
        constraint->setCheckConstraintExpression("amount < 1000 AND amount <> 13");
        table.add(constraint);
    }

    void addIndexes(SQLTable& table, std::vector<SQLField*> columns) {
        const auto add = [&](const std::shared_ptr<SQLIndex>& index, bool isEmpty) {
            index->setName(oneIn(3) ? "common_idx" : name("index"));
            if (table.getFieldByTypeAndName(isKindOf<SQLIndex>, index->getName())) return;
            for (std::size_t i = 0; i < columns.size() && !isEmpty; ++i) {
                if (i > 0 && !oneIn(3)) continue;
                index->addIndexField(*columns[i]);
                const std::string& type = columns[i]->getDataType();
                if ((type == "VARCHAR" || type == "TEXT") && oneIn(2)) index->setSizeForIndexEntry(*columns[i], "10");
            }
            table.add(index);
        };
        for (std::size_t i = below(3); i > 0; --i) {
            auto index = SQLIndex::indexWithName("i");
            if (oneIn(4)) index->setIndexType("UNIQUE");
            add(index, columns.empty() || oneIn(8));
        }
        if (oneIn(2)) add(SQLConstraint::constraint(), columns.empty());
        // A key may reference what a unique index covers whole.
        for (SQLIndex* index : table.indexObjectsInTable()) {
            bool isWhole = index->getIndexType() == "UNIQUE" && index->indexListCount() > 0;
            for (SQLField* column : index->fieldList())
                isWhole &= index->getSizeForIndexEntry(column).empty() &&
                           (column->getDataType() == "VARCHAR" || column->getDataType() == "INTEGER");
            if (isWhole) _targets.push_back({&table, index->fieldList()});
        }
    }

    // --- keys

    void addKeys(SQLTable& table) {
        for (std::size_t i = below(3); i > 0 && !_targets.empty(); --i) {
            const Target target = pick(_targets);
            const bool leavesSchema = !table.getSchemaName().empty() && target.table->getSchemaName().empty();
            if (leavesSchema && !_traits.keysLeaveSchemas) continue;
            std::vector<SQLField*> sources;
            const bool isNullable = !oneIn(3);
            for (SQLField* column : target.columns) {
                const std::string type = column->getFullTypeString();
                SQLField& source =
                    addColumn(table, {type.c_str(), {}, true, column->getPropertyAsBoolean(keys::unsigned_)});
                source.setNotNull(!isNullable);
                sources.push_back(&source);
            }
            if (sources.size() == 1 && oneIn(2)) {
                sources.front()->setFkField(target.columns.front());
                setUpKey(*sources.front(), isNullable);
                if (oneIn(2)) sources.front()->setForeignKeyName("common_fk");
                if (oneIn(3)) sources.front()->setDeferrable(true);
            } else {
                auto key = SQLForeignKey::initWithName(oneIn(2) ? "common_fk" : name("key"));
                if (table.getFieldByTypeAndName(isKindOf<SQLForeignKey>, key->getName())) continue;
                table.add(key);
                key->setTargetTable(target.table);
                for (std::size_t n = 0; n < sources.size(); ++n) key->addFieldPair(sources[n], target.columns[n]);
                setUpKey(*key, isNullable);
                if (oneIn(3)) key->setDeferrable(true);
                if (oneIn(4)) key->setInitiallyDeferred(true);
            }
        }
        if (oneIn(6)) table.add(SQLForeignKey::initWithName("key_to_nowhere"));
    }

    void setUpKey(SQLConnectable& key, bool isNullable) {
        key.setDeleteAction(keyAction(isNullable));
        key.setUpdateAction(keyAction(isNullable));
    }
    std::uint64_t keyAction(bool isNullable) {
        const std::uint64_t code = below(6);
        return code == action::setNull && !isNullable ? action::noAction : code;
    }

    // --- views and the document

    void addViews() {
        const std::size_t count = below(3);
        std::vector<std::string> readable;
        for (SQLTable* table : _tables)
            if (table->getSchemaName().empty()) readable.push_back(_exporter->getCanonicalName(*table));
        if (readable.empty()) return;
        std::vector<std::shared_ptr<SQLView>> views;
        for (std::size_t i = 0; i < count; ++i) {
            auto view = SQLView::viewWithName("v");
            view->setBaseName(name("view"));
            // Each reads the view behind it, which stands later in the document.
            if (!views.empty())
                views.back()->setQueryString("SELECT * FROM " + _exporter->getCanonicalName(*view) + ";");
            view->setQueryString("SELECT * FROM " + pick(readable) + " -- 'all; of it\n");
            _document->add(view);
            views.push_back(view);
        }
        if (oneIn(4)) _document->add(SQLView::viewWithName("view_without_query"));
        if (oneIn(2)) return;
        for (SQLTable* table : _tables) {
            if (table->getSchemaName().empty() || _naming == Naming::QuotedAlways) continue;
            auto view = SQLView::viewWithName("qualified_view");
            const std::string base = table->getBaseName();
            if (!base.starts_with("table_")) continue;  // the query is the user's
            view->setQueryString("SELECT * FROM " + table->getSchemaName() + "." + base);
            _document->add(view);
            return;
        }
    }

    void addInfo() {
        auto info = create<SQLDocumentInfo>();
        info->setDropTableOption(oneIn(3));
        if (oneIn(4)) info->setPrologueExportSQL("SELECT 1 -- first; then the rest");
        if (oneIn(4)) info->setPostExportSQL("SELECT 'a;b'; -- a; b\nSELECT 2");
        _document->add(info);
    }

    std::uint64_t _state;
    Naming _naming;
    const DocumentTraits& _traits;
    std::shared_ptr<GenericSQLExporter> _exporter;
    std::shared_ptr<SQLContainer> _document;
    std::vector<SQLTable*> _tables;
    std::vector<Target> _targets;
    std::set<std::string> _usedOdd;
    std::size_t _lastNumber = 0;
};

}  // namespace

GeneratedDocument::GeneratedDocument(std::uint64_t number, std::string_view dialect, const DocumentTraits& traits) {
    const auto set = [this](const char* key, const Value& value) {
        _preferences.push_back(std::make_unique<ScopedPreference>(key, value));
    };
    set(prefs::runnableScripts, Value::boolean(true));
    switch (static_cast<Naming>(number % 4)) {
        case Naming::QuotedAlways: set(prefs::quoteIdentifiersOnExport, Value::boolean(true)); break;
        case Naming::QuotedWhereSet:
            set(prefs::quoteReservedWords, Value::boolean(true));
            set(prefs::autoQuoteIdentifiersWithWhitespace, Value::boolean(true));
            set(prefs::autoQuoteIdentifiersWithInvalidCharacters, Value::boolean(true));
            break;
        default: break;
    }
    set(prefs::usePostgresComments, Value::boolean(dialect == "postgres"));
    set(prefs::includeTitleHeaderInExport, Value::boolean(number % 5 == 0));
    set(prefs::exportObjectSortOrder, Value::integer(number % 3 == 0 ? 1 : 0));
    set(prefs::useIfNotExistsOnTableExport, Value::boolean(number % 7 == 0));
    set(prefs::useAlterTableForMySQLIndexCreation, Value::boolean(number % 2 == 0));
    _document = Maker(number, dialect, traits).make();
}

void expectGeneratedDocumentsOnEngine(Engine& engine, const DocumentTraits& traits, std::uint64_t count) {
    for (std::uint64_t number = 1; number <= count; ++number) {
        GeneratedDocument made(number, engine.dialect(), traits);
        expectDocumentOnEngine(engine, made.document(), "document " + std::to_string(number));
        if (::testing::Test::HasFailure()) return;  // one script tells enough
    }
}

}  // namespace vellicor::testing
