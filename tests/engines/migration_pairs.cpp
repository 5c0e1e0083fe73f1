// tests/engines/migration_pairs.cpp — pairs of documents made by number.
#include "tests/engines/migration_pairs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "tests/engines/migration_run.h"
#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

struct ColumnPlan {
    int id;
    std::string name, type, value, comment;
    bool notNull = false, unique = false, indexed = false, key = false, counts = false, checked = false;
};
struct IndexPlan {
    int id;
    std::string name;
    std::vector<int> columns;
    bool unique = false, constraint = false;
};
struct KeyPlan {
    int id;
    std::string name;
    int source, table;
    std::uint64_t onDelete = 0, onUpdate = 0;
};
struct TablePlan {
    int id;
    std::string name, schema, comment;
    std::vector<ColumnPlan> columns;
    std::vector<IndexPlan> indexes;
    std::vector<KeyPlan> keys;
};
struct ViewPlan {
    int id;
    std::string name;
    int table;
    bool filtered = false;
};
struct DatabasePlan {
    std::vector<TablePlan> tables;
    std::vector<ViewPlan> views;
};

template <class List>
auto* withId(List& list, int id) {
    const auto found = std::ranges::find_if(list, [id](const auto& entry) { return entry.id == id; });
    return found == list.end() ? nullptr : &*found;
}

class Random {
public:
    explicit Random(std::uint64_t seed) : _state(seed * 0x9E3779B97F4A7C15u + 1) { (void)next(); }
    std::uint64_t next() {
        _state ^= _state << 13;
        _state ^= _state >> 7;
        return _state ^= _state << 17;
    }
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>((next() >> 20) % limit); }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <class List>
    auto& pick(List& list) {
        return list[below(list.size())];
    }

private:
    std::uint64_t _state;
};

const std::vector<std::string> kTypes{"INTEGER", "BIGINT", "VARCHAR(40)", "VARCHAR(80)", "NUMERIC(12,2)", "TEXT", "DATE"};

/// The first document, and one change after the other; each change has its own seed, so that any of them can be left out.
class PairMaker {
public:
    PairMaker(std::uint64_t seed, std::string_view dialect) : _random(seed), _isMySQL(dialect == "mysql"), _isSQLite(dialect == "SQLite") {}

    DatabasePlan first() {
        DatabasePlan database;
        const std::size_t count = 2 + _random.below(4);
        for (std::size_t i = 0; i < count; ++i) addTable(database);
        for (std::size_t i = 0; i < count; ++i) addKey(database);
        for (std::size_t i = _random.below(3); i > 0; --i) addView(database);
        return database;
    }

    void change(DatabasePlan& database, std::uint64_t seed) {
        _random = Random(seed);
        _lastId = static_cast<int>(1000 + seed % 1000 * 50);
        for (int attempt = 0; attempt < 10; ++attempt)
            if (changeOnce(database)) return;
    }

private:
    std::string name(const std::string& stem) {
        static const std::vector<std::string> kOdd{"Order", "select", "two words", "MixedCase", "group", "UPPER", "a-b"};
        const std::string number = std::to_string(++_lastId);
        return _random.oneIn(6) ? kOdd[_random.below(kOdd.size())] + " " + number : stem + "_" + number;
    }
    static std::string defaultOf(const std::string& type, std::size_t variant) {
        if (type == "TEXT") return {};
        if (type == "DATE") return variant % 2 ? "2024-02-29" : "2023-01-01";
        if (type.starts_with("NUMERIC")) return variant % 2 ? "1.50" : "2.00";
        return variant % 2 ? "7" : "42";
    }

    ColumnPlan& addColumn(TablePlan& table) {
        ColumnPlan column;
        column.id = ++_lastId;
        column.name = name("c");
        column.type = _random.pick(kTypes);
        column.notNull = _random.oneIn(3);
        if (column.notNull || _random.oneIn(3)) column.value = defaultOf(column.type, _random.below(2));
        column.unique = column.type != "TEXT" && column.value.empty() && _random.oneIn(6);
        column.indexed = column.type != "TEXT" && _random.oneIn(6);
        if (_random.oneIn(5)) column.comment = "about " + column.name;
        return table.columns.emplace_back(column);
    }
    void addTable(DatabasePlan& database) {
        TablePlan table;
        table.id = ++_lastId;
        table.name = name("t");
        if (!_isMySQL && _random.oneIn(4)) table.schema = _random.oneIn(2) ? "sales" : "stock";
        if (_random.oneIn(4)) table.comment = "about " + table.name;
        ColumnPlan key{++_lastId, "id", "INTEGER", "", ""};
        key.key = key.notNull = true;
        key.counts = _random.oneIn(3);
        table.columns.push_back(key);
        for (std::size_t i = 1 + _random.below(4); i > 0; --i) addColumn(table);
        for (std::size_t i = _random.below(3); i > 0; --i) addIndex(table);
        database.tables.push_back(table);
    }
    bool addIndex(TablePlan& table) {
        IndexPlan index{++_lastId, name("i"), {}, _random.oneIn(3), false};
        for (const ColumnPlan& column : table.columns)
            if (column.type != "TEXT" && !column.key && _random.oneIn(2)) index.columns.push_back(column.id);
        if (index.columns.empty()) return false;
        index.constraint = index.unique && _random.oneIn(2);
        table.indexes.push_back(index);
        return true;
    }
    bool addKey(DatabasePlan& database) {
        TablePlan& source = _random.pick(database.tables);
        TablePlan& target = _random.pick(database.tables);
        const ColumnPlan* id = keyOf(target);
        if (!id) return false;
        ColumnPlan column{++_lastId, name("r"), id->type, "", ""};
        KeyPlan key{++_lastId, "", column.id, target.id, _random.below(5), _random.below(5)};
        if (_isMySQL || !_random.oneIn(3)) key.name = name("k");
        source.columns.push_back(column);
        source.keys.push_back(key);
        return true;
    }
    void addView(DatabasePlan& database) {
        database.views.push_back({++_lastId, name("v"), _random.pick(database.tables).id, false});
    }
    static const ColumnPlan* keyOf(const TablePlan& table) {
        const ColumnPlan* found = nullptr;
        for (const ColumnPlan& column : table.columns) {
            if (!column.key) continue;
            if (found) return nullptr;
            found = &column;
        }
        return found;
    }
    static bool isReferenced(const DatabasePlan& database, int table) {
        return std::ranges::any_of(database.tables, [&](const TablePlan& other) {
            return std::ranges::any_of(other.keys, [&](const KeyPlan& key) { return key.table == table; });
        });
    }

    bool changeOnce(DatabasePlan& database) {
        if (database.tables.empty()) return addTable(database), true;
        TablePlan& table = _random.pick(database.tables);
        std::vector<ColumnPlan*> plain;
        for (ColumnPlan& column : table.columns)
            if (!column.key && std::ranges::none_of(table.keys, [&](const KeyPlan& key) { return key.source == column.id; }))
                plain.push_back(&column);
        ColumnPlan* column = plain.empty() ? nullptr : _random.pick(plain);
        switch (_random.below(27)) {
            case 0: return addTable(database), true;
            case 1: return dropTable(database, table.id);
            case 2: return table.name = name("t"), true;
            case 3: return swapTables(database, table);
            case 4: return addColumn(table), true;
            case 5: return column && dropColumn(table, column->id);
            case 6: return table.columns[_random.below(table.columns.size())].name = name("c"), true;
            case 7:
                if (table.columns.size() < 2) return false;
                return std::swap(table.columns[0].name, table.columns[1].name), true;
            case 8: return column && retype(*column);
            case 9: return column && (column->notNull = !column->notNull, true);
            case 10: return column && column->type != "TEXT" && (column->value = column->value.empty() ? defaultOf(column->type, 0) : "", true);
            case 11: return column && column->type != "TEXT" && (column->unique = !column->unique, true);
            case 12: return column && column->type != "TEXT" && (column->indexed = !column->indexed, true);
            case 13: return addIndex(table);
            case 14: return !table.indexes.empty() && (table.indexes.erase(table.indexes.begin()), true);
            case 15: return !table.indexes.empty() && (table.indexes.front().name = name("i"), true);
            case 16: return !table.indexes.empty() && (table.indexes.front().unique = !table.indexes.front().unique,
                                                       table.indexes.front().constraint = false, true);
            case 17: return addKey(database);
            case 18: return !table.keys.empty() && (table.keys.pop_back(), true);
            case 19: return !table.keys.empty() && (table.keys.front().onDelete = _random.below(5), true);
            case 20: return widenKey(database, table);
            case 21: return (table.columns.front().key && !isReferenced(database, table.id)) && (toggleKey(table), true);
            case 22: return column && (column->value.empty() || (column->value = defaultOf(column->type, 1), true));
            case 23: return table.comment = "new " + std::to_string(++_lastId), true;
            case 24: return column && (column->comment = column->comment.empty() ? "fresh" : "", true);
            case 25: return changeViews(database);
            default: return moveTable(table);
        }
    }

    bool dropTable(DatabasePlan& database, int id) {
        std::erase_if(database.tables, [id](const TablePlan& table) { return table.id == id; });
        for (TablePlan& table : database.tables) std::erase_if(table.keys, [id](const KeyPlan& key) { return key.table == id; });
        std::erase_if(database.views, [id](const ViewPlan& view) { return view.table == id; });
        return true;
    }
    static bool dropColumn(TablePlan& table, int id) {
        if (table.columns.size() < 2) return false;
        for (IndexPlan& index : table.indexes) std::erase(index.columns, id);
        std::erase_if(table.indexes, [](const IndexPlan& index) { return index.columns.empty(); });
        std::erase_if(table.columns, [id](const ColumnPlan& column) { return column.id == id; });
        return true;
    }
    bool swapTables(DatabasePlan& database, TablePlan& table) {
        TablePlan& other = _random.pick(database.tables);
        if (&other == &table || other.schema != table.schema) return false;
        std::swap(other.name, table.name);
        return true;
    }
    bool retype(ColumnPlan& column) {
        static const std::vector<std::string> kExchangeable{"INTEGER", "BIGINT", "VARCHAR(40)", "VARCHAR(80)", "NUMERIC(12,2)"};
        if (column.type == "TEXT" || column.type == "DATE") return false;
        column.type = _random.pick(kExchangeable);
        if (!column.value.empty()) column.value = defaultOf(column.type, _random.below(2));
        return true;
    }
    bool widenKey(DatabasePlan& database, TablePlan& table) {
        ColumnPlan* id = const_cast<ColumnPlan*>(keyOf(table));
        if (!id || _isSQLite) return false;
        id->type = id->type == "INTEGER" ? "BIGINT" : "INTEGER";
        // What references it, and what references that by the same column, follows.
        for (TablePlan& other : database.tables)
            for (const KeyPlan& key : other.keys)
                if (key.table == table.id)
                    if (ColumnPlan* source = withId(other.columns, key.source)) source->type = id->type;
        return true;
    }
    void toggleKey(TablePlan& table) {
        ColumnPlan& id = table.columns.front();
        if (_random.oneIn(2) && table.columns.size() > 1 && table.columns[1].type != "TEXT") table.columns[1].key = !table.columns[1].key;
        else id.counts = !id.counts;
    }
    bool changeViews(DatabasePlan& database) {
        if (database.views.empty() || _random.oneIn(4)) return addView(database), true;
        ViewPlan& view = _random.pick(database.views);
        switch (_random.below(3)) {
            case 0: return view.name = name("v"), true;
            case 1: return view.filtered = !view.filtered, true;
            default: return std::erase_if(database.views, [id = view.id](const ViewPlan& other) { return other.id == id; }), true;
        }
    }
    bool moveTable(TablePlan& table) {
        if (_isMySQL) return false;
        table.schema = table.schema.empty() ? "sales" : "";
        return true;
    }

    Random _random;
    bool _isMySQL;
    bool _isSQLite;
    int _lastId = 0;
};

std::shared_ptr<SQLContainer> documentOf(const DatabasePlan& database, std::string_view dialect) {
    auto document = SQLContainer::newContainer();
    const auto uid = [](int id) { return "U" + std::to_string(id); };
    for (const TablePlan& plan : database.tables) {
        auto table = SQLTable::tableWithName("t");
        table->setBaseName(plan.name);
        if (!plan.schema.empty()) table->setSchemaName(plan.schema);
        table->setUid(uid(plan.id));
        if (!plan.comment.empty()) table->setComment(plan.comment);
        document->add(table);
        for (const ColumnPlan& entry : plan.columns) {
            auto column = SQLField::fieldWithName(entry.name, entry.type);
            column->setUid(uid(entry.id));
            column->setPrimaryKey(entry.key);
            column->setNotNull(entry.notNull);
            if (entry.counts && entry.key) column->setAutoIncrement(true);
            if (!entry.value.empty()) column->setDefaultValue(entry.value);
            column->setUnique(entry.unique);
            if (entry.indexed) column->setPropertyAsBoolean(keys::indexed, true);
            if (!entry.comment.empty()) column->setComment(entry.comment);
            table->add(column);
        }
        for (const IndexPlan& entry : plan.indexes) {
            std::shared_ptr<SQLIndex> index = entry.constraint ? SQLConstraint::constraint() : SQLIndex::indexWithName("i");
            index->setName(entry.name);
            index->setUid(uid(entry.id));
            if (entry.unique || entry.constraint) index->setIndexType("UNIQUE");
            for (const int id : entry.columns)
                if (auto* column = as<SQLField>(table->getFieldByUID(uid(id)))) index->addIndexField(*column);
            table->add(index);
        }
    }
    const auto exporter = exporterOf(dialect);
    exporter->configureForExport();
    for (const TablePlan& plan : database.tables) {
        auto* table = as<SQLTable>(document->getObjectWithUID(uid(plan.id)));
        for (const KeyPlan& entry : plan.keys) {
            auto* target = as<SQLTable>(document->getObjectWithUID(uid(entry.table)));
            auto* source = as<SQLField>(table->getFieldByUID(uid(entry.source)));
            if (!target || !source || target->primaryKeyObjectList().size() != 1) continue;
            SQLField* id = target->primaryKeyObjectList().front();
            if (entry.name.empty()) {
                source->setFkField(id);
                source->setDeleteAction(entry.onDelete);
                source->setUpdateAction(entry.onUpdate);
                continue;
            }
            auto key = SQLForeignKey::initWithName(entry.name);
            key->setUid(uid(entry.id));
            table->add(key);
            key->setTargetTable(target);
            key->addFieldPair(source, id);
            key->setDeleteAction(entry.onDelete);
            key->setUpdateAction(entry.onUpdate);
        }
    }
    for (const ViewPlan& plan : database.views) {
        auto view = SQLView::viewWithName("v");
        view->setBaseName(plan.name);
        view->setUid(uid(plan.id));
        auto* table = as<SQLTable>(document->getObjectWithUID(uid(plan.table)));
        view->setQueryString("SELECT * FROM " + exporter->getCanonicalName(*table) + (plan.filtered ? " WHERE 1 = 1" : ""));
        document->add(view);
    }
    return document;
}

std::string rowsOf(const DatabasePlan& database, std::string_view dialect) {
    auto document = documentOf(database, dialect);
    const auto exporter = exporterOf(dialect);
    exporter->configureForExport();
    std::string script;
    std::set<int> filled;
    for (const TablePlan& plan : database.tables) {
        auto* table = as<SQLTable>(document->getObjectWithUID("U" + std::to_string(plan.id)));
        for (int row = 1; row <= 2; ++row) {
            std::vector<std::string> names, values;
            for (const ColumnPlan& column : plan.columns) {
                const auto key = std::ranges::find_if(plan.keys, [&](const KeyPlan& entry) { return entry.source == column.id; });
                std::string value = std::to_string(row);
                if (key != plan.keys.end() && !filled.contains(key->table)) value = "NULL";
                else if (column.type == "DATE") value = "'2024-01-0" + std::to_string(row) + "'";
                else if (column.type == "TEXT" || column.type.starts_with("VARCHAR")) value = "'" + value + "'";
                names.push_back(exporter->quoteIdentifier(column.name));
                values.push_back(value);
            }
            script += "INSERT INTO " + exporter->getCanonicalName(*table) + " (" + joined(names, ", ") + ") VALUES (" + joined(values, ", ") + ");\n";
        }
        filled.insert(plan.id);
    }
    return script;
}

std::string failureOf(Engine& engine, std::uint64_t number, const std::vector<std::uint64_t>& changes, bool& refusedRows) {
    PairMaker maker(number, engine.dialect());
    const DatabasePlan before = maker.first();
    DatabasePlan after = before;
    for (const std::uint64_t seed : changes) maker.change(after, seed);
    const auto old = documentOf(before, engine.dialect());
    const auto now = documentOf(after, engine.dialect());
    const MigrationRun run = runMigration(engine, *old, *now, rowsOf(before, engine.dialect()));
    refusedRows = run.refusedRows;
    std::string trouble = run.trouble;
    for (const std::string& gap : run.gaps) trouble += "\nnot expressible: " + gap;
    return trouble;
}

}  // namespace

void expectGeneratedMigrationsOnEngine(Engine& engine, std::uint64_t first, std::uint64_t count) {
    ScopedPreference runnable(prefs::runnableScripts);
    ScopedPreference comments(prefs::usePostgresComments, Value::boolean(engine.dialect() == "postgres"));
    if (const char* asked = std::getenv("VELLICOR_MIGRATION_PAIRS")) count = std::strtoull(asked, nullptr, 10);
    if (const char* asked = std::getenv("VELLICOR_MIGRATION_FIRST")) first = std::strtoull(asked, nullptr, 10);
    std::uint64_t refused = 0;
    for (std::uint64_t number = first; number < first + count; ++number) {
        std::vector<std::uint64_t> changes;
        for (std::uint64_t i = 0; i < 1 + number % 6; ++i) changes.push_back(number * 31 + i * 7 + 1);
        bool refusedRows = false;
        std::string failure = failureOf(engine, number, changes, refusedRows);
        refused += refusedRows;
        if (failure.empty()) continue;
        for (std::size_t i = 0; i < changes.size();) {
            std::vector<std::uint64_t> fewer = changes;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            if (const std::string still = failureOf(engine, number, fewer, refusedRows); !still.empty()) {
                failure = still;
                changes = fewer;
            } else {
                ++i;
            }
        }
        ADD_FAILURE() << "pair " << number << " with " << changes.size() << " changes:\n" << failure;
        if (!std::getenv("VELLICOR_MIGRATION_GO_ON")) return;
    }
    std::cout << count << " pairs; rows were refused, as the plan said, in " << refused << "\n";
}

}  // namespace vellicor::testing
