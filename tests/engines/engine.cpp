// tests/engines/engine.cpp — what an engine should hold, and the comparison with what it holds.
#include "tests/engines/engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/dialect_text.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor::testing {

namespace {

/// Reads a document the way an engine will hold it.
class Reader {
public:
    Reader(Engine& engine, GenericSQLExporter& exporter) : _engine(engine), _exporter(exporter) {}

    Catalog read(SQLContainer& document) {
        for (const auto& object : document.objectList()) {
            if (auto* view = as<SQLView>(object.get())) {
                if (!trimmed(view->queryString()).empty()) _catalog.facts.insert("view " + nameOf(*view));
            } else if (auto* table = as<SQLTable>(object.get())) {
                addTable(*table);
            }
        }
        return std::move(_catalog);
    }

private:
    /// A name as it is stored: the exporter decides whether it stands in quotes.
    std::string stored(const std::string& name) {
        const std::string written = _exporter.quoteIdentifier(name);
        const std::string quote = _exporter.getQuoteIdentifierString();
        if (!written.starts_with(quote)) return _engine.foldedName(written);
        return replacingAll(std::string_view(written).substr(1, written.size() - 2), quote + quote, quote);
    }
    std::string nameOf(SQLTable& table) {
        const std::string schema = table.getSchemaName();
        if (_engine.joinsSchemas() && !schema.empty()) return stored(schema + "_" + table.getBaseName());
        return _engine.tableName(schema.empty() ? schema : stored(schema), stored(table.getBaseName()));
    }
    std::string list(const std::vector<std::string>& names) {
        std::vector<std::string> parts;
        for (const std::string& name : names) parts.push_back(stored(name));
        return "(" + joined(parts, ",") + ")";
    }

    void addTable(SQLTable& table) {
        std::vector<SQLField*> fields;
        table.forEachComponent<SQLField>([&](SQLField& field) { fields.push_back(&field); });
        if (fields.empty() && !_engine.keepsTablesWithoutColumns()) return;
        const std::string name = nameOf(table);
        _catalog.facts.insert("table " + name);
        addComment(name, table);
        std::size_t checks = 0;
        for (SQLField* field : fields) checks += addColumn(name, *field);
        if (table.hasPrimaryKey()) _catalog.facts.insert("primary key " + name + " " + list(table.primaryKeyList()));
        for (SQLIndex* index : table.indexObjectsInTable()) {
            checks += index->isCheckConstraint();
            if (!index->isCheckConstraint()) addIndex(name, *index);
        }
        for (SQLForeignKey* key : table.foreignKeyObjectsInTable()) addKey(name, *key);
        if (checks > 0 && _engine.keepsChecks()) _catalog.facts.insert("check " + name + " " + std::to_string(checks));
    }

    std::size_t addColumn(const std::string& table, SQLField& field) {
        const std::string name = table + "." + stored(field.getName());
        const bool isKey = field.getPrimaryKey() && _engine.keyImpliesNotNull();
        const bool counts = field.getAutoIncrement() && _engine.keepsAutoIncrement();
        std::string fact = "column " + name + " " + _engine.typeOf(field);
        if (field.getNotNull() || isKey || counts) fact += " not null";
        _catalog.facts.insert(fact + (counts ? " auto" : ""));
        addComment(name, field);
        if (field.isUnique()) _catalog.facts.insert("unique " + table + " " + list({field.getName()}));
        if (field.getPropertyAsBoolean(keys::indexed))
            _catalog.facts.insert("index " + table + " (" + indexed(field, field.getProperty(keys::indexSize)) + ")");
        if (SQLField* target = field.getFkField()) addKey(table, field, *target->parentTable());
        addDefault(name, field);
        return field.hasProperty(keys::checkConstraint) ? 1 : 0;
    }

    /// An expression whose value is the default as the designer means it.
    void addDefault(const std::string& name, SQLField& field) {
        const std::string value = field.getDefaultValue();
        if (value.empty() || equalIgnoringCase(value, "null") || !_engine.keepsDefaultOf(field)) return;
        const std::string type = uppercased(field.getDataType());
        const bool isDate = type.starts_with("DATE") || type.starts_with("TIME");
        const bool isExpression = field.getPropertyAsBoolean(keys::noQuoteDefault) ||
                                  (isDate && (value.ends_with(')') || lowercased(value).starts_with("current")));
        const bool isQuoted = value.size() > 1 && value.starts_with('\'') && value.ends_with('\'');
        if (type == "BOOLEAN")
            _catalog.defaults[name] = _engine.flagOf(value);
        else if (isExpression)
            _catalog.defaults[name] =
                value.find_first_not_of("0123456789.") == std::string::npos ? _engine.valueOf(field, value) : value;
        else if (isQuoted && _engine.dialect() == "mysql")
            _catalog.defaults[name] = value;
        else
            _catalog.defaults[name] = _engine.valueOf(
                field, literal(isQuoted ? replacingAll(value.substr(1, value.size() - 2), "''", "'") : value));
    }
    std::string literal(const std::string& content) const {
        const std::string escaped = _engine.dialect() == "mysql" ? replacingAll(content, "\\", "\\\\") : content;
        return "'" + replacingAll(escaped, "'", "''") + "'";
    }

    std::string indexed(SQLField& column, std::string size) {
        if (size.empty() && uppercased(column.getDataType()) == "TEXT") size = "50";
        return stored(column.getName()) + (size.empty() || !_engine.keepsPrefixSizes() ? "" : "(" + size + ")");
    }

    void addIndex(const std::string& table, SQLIndex& index) {
        std::vector<std::string> columns;
        for (SQLField* column : index.fieldList()) {
            columns.push_back(indexed(*column, index.getSizeForIndexEntry(column)));
        }
        if (columns.empty()) return;
        const bool isUnique = index.getIndexType() == "UNIQUE";
        _catalog.facts.insert((isUnique ? "unique " : "index ") + table + " (" + joined(columns, ",") + ")");
        _catalog.names.insert(stored(index.getName()));
    }

    void addKey(const std::string& table, SQLForeignKey& key) {
        if (key.getKeyPairCount() == 0) return;
        addKey(table, key, *key.targetTable());
        if (_engine.keepsKeyNames()) _catalog.names.insert(stored(key.getName()));
    }
    void addKey(const std::string& table, SQLConnectable& key, SQLTable& target) {
        std::string fact = "foreign key " + table + " " + list(key.sourceFieldNameList()) + " -> " + nameOf(target) +
                           " " + list(key.targetFieldNameList()) + " on delete " +
                           _engine.actionOf(key.deleteAction()) + " on update " + _engine.actionOf(key.updateAction());
        if (_engine.keepsDeferral() && (key.linkIsDeferrable() || key.linkIsInitiallyDeferred())) fact += " deferrable";
        if (_engine.keepsDeferral() && key.linkIsInitiallyDeferred()) fact += " deferred";
        _catalog.facts.insert(fact);
    }

    void addComment(const std::string& name, SQLObject& object) {
        const std::string comment = object.getComment();
        if (_engine.keepsComments() && !comment.empty()) _catalog.facts.insert("comment " + name + " " + comment);
    }

    Engine& _engine;
    GenericSQLExporter& _exporter;
    Catalog _catalog;
};

/// The values of expressions by column. What means the present time is left as a word.
std::set<std::string> values(Engine& engine, const std::map<std::string, std::string>& defaults) {
    std::set<std::string> facts;
    std::vector<std::string> columns;
    std::vector<std::string> expressions;
    for (const auto& [column, expression] : defaults) {
        const std::string lower = lowercased(expression);
        const bool isNow = lower.starts_with("current") || lower.starts_with("now") || lower.starts_with("('now'") ||
                           lower.starts_with("(now") || lower.starts_with("curdate");
        if (isNow) {
            facts.insert("default " + column + " now");
            continue;
        }
        columns.push_back(column);
        expressions.push_back(engine.textOf(expression));
    }
    if (columns.empty()) return facts;
    const Rows rows = engine.query("SELECT " + joined(expressions, ",\n"));
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (rows.at(0).at(i) != "NULL") facts.insert("default " + columns[i] + " [" + rows[0][i] + "]");
    return facts;
}

template <class Set>
std::vector<std::string> without(const Set& all, const Set& some) {
    std::vector<std::string> rest;
    std::ranges::set_difference(all, some, std::back_inserter(rest));
    return rest;
}

}  // namespace

std::string Engine::actionOf(std::uint64_t code) const {
    switch (code) {
        case action::cascade: return "CASCADE";
        case action::restrict_: return "RESTRICT";
        case action::setNull: return "SET NULL";
        case action::setDefault: return "SET DEFAULT";
        default: return "NO ACTION";
    }
}

Catalog expectedCatalog(Engine& engine, SQLContainer& document) {
    const auto exporter = exporterOf(engine.dialect());
    return Reader(engine, *exporter).read(document);
}

void expectDocumentOnEngine(Engine& engine, SQLContainer& document, const std::string& title) {
    const std::string script = scriptOf(engine.dialect(), document);
    SCOPED_TRACE(title + "\n" + script);
    engine.clear();
    const int runs = document.documentInfo() && document.documentInfo()->getDropTableOption() ? 2 : 1;
    for (int i = 0; i < runs; ++i) {
        const std::string refusal = engine.run(script);
        ASSERT_EQ(refusal, "") << "in run " << i + 1;
    }
    expectCatalogOf(engine, document);
}

void expectCatalogOf(Engine& engine, SQLContainer& document) {
    Catalog expected = expectedCatalog(engine, document);
    Catalog actual = engine.catalog();
    expected.facts.merge(values(engine, expected.defaults));
    actual.facts.merge(values(engine, actual.defaults));
    EXPECT_THAT(without(expected.facts, actual.facts), ::testing::IsEmpty()) << "missing";
    EXPECT_THAT(without(actual.facts, expected.facts), ::testing::IsEmpty()) << "not in the document";
    if (Preferences::shared().boolForKey(prefs::addTablePrefixToIndexNamesInExport)) return;  // names get longer
    EXPECT_THAT(without(expected.names, actual.names), ::testing::IsEmpty()) << "names of indexes and keys";
}

void expectKeywordsAsNames(Engine& engine, bool asTables) {
    auto document = SQLContainer::newContainer();
    auto wide = SQLTable::tableWithName("keyword_columns");
    document->add(wide);
    const std::vector<std::string> words = engine.keywords();
    ASSERT_GT(words.size(), 100u);
    for (const std::string& word : words) {
        wide->add(SQLField::fieldWithName(word, "INTEGER"));
        if (!asTables) continue;
        auto table = SQLTable::tableWithName(word);
        table->add(SQLField::fieldWithName(word, "INTEGER"));
        table->getFieldByName(word)->setPrimaryKey(true);
        table->add(SQLIndex::indexWithName(word));
        table->indexObjectsInTable().front()->addIndexField(*table->getFieldByName(word));
        document->add(table);
    }
    const std::string script = scriptOf(engine.dialect(), *document);
    engine.clear();
    EXPECT_EQ(engine.run(script), "");
    std::size_t tables = 0;
    for (const std::string& fact : engine.catalog().facts) tables += fact.starts_with("table ");
    EXPECT_EQ(tables, asTables ? words.size() + 1 : 1);
}

}  // namespace vellicor::testing
