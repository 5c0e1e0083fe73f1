// vellicor/database/catalog_document.cpp — tables, keys and views of a catalog as objects of the model.
#include "vellicor/database/catalog_document.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "vellicor/database/catalog_components.h"
#include "vellicor/database/placement.h"
#include "vellicor/database/stable_uid.h"
#include "vellicor/model/container.h"
#include "vellicor/model/database_keys.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr double kRowHeight = 18;
constexpr double kTitleHeight = 28;
constexpr double kCharacterWidth = 7;

class DocumentBuilder {
public:
    explicit DocumentBuilder(const Catalog& catalog) : _catalog(catalog) { _result.omissions = catalog.omissions; }

    CatalogDocument build() {
        SQLContainer& document = *(_result.container = SQLContainer::newContainer());
        SQLDocumentInfo& info = *document.documentInfo();
        DatabaseUrl engine;
        engine.engine = _catalog.engine;
        info.setUid(stableUid({"document"}));
        info.setDefaultExportDialect(std::string(engine.dialect()));
        if (!_catalog.prologue.empty()) info.setPrologueExportSQL(joined(_catalog.prologue, "\n"));
        document.updateExportDialect();
        for (const CatalogTable& table : _catalog.tables) addTable(table);
        for (const CatalogView& view : _catalog.views) addView(view);
        for (std::size_t i = 0; i < _catalog.tables.size(); ++i) addForeignKeys(i);
        place();
        return std::move(_result);
    }

private:
    static std::string key(std::string_view schema, std::string_view name) { return text("%@\n%@", schema, name); }
    static std::string shownName(const std::string& schema, const std::string& name) {
        return schema.empty() ? name : schema + "." + name;
    }
    void omit(std::string line) { _result.omissions.push_back(std::move(line)); }

    template <class T>
    std::shared_ptr<T> makeTable(std::string_view kind, const std::string& schema, const std::string& name) {
        auto table = create<T>();
        table->setBaseName(modelName(name));
        if (!schema.empty()) table->setSchemaName(modelName(schema));
        table->setUid(stableUid({kind, schema, name}));
        return table;
    }
    void add(const std::shared_ptr<SQLTable>& table) {
        const std::string wanted = table->getName();
        _result.container->add(table);
        if (table->getName() != wanted)
            omit(text("the name %@, which differs from another only in its case: the document calls it %@", wanted,
                      table->getName()));
        _objects.push_back(table);
    }

    void addTable(const CatalogTable& facts) {
        auto table = makeTable<SQLTable>("table", facts.schema, facts.name);
        setTableFacts(*table, facts);
        const CatalogComponents components(_catalog.engine, facts);
        for (const auto& component : components.componentsFor(*table)) {
            try {
                table->add(component);
            } catch (const SQLException&) {
                omit(text("%@ of table %@: its name differs from another only in its case", component->getName(),
                          shownName(facts.schema, facts.name)));
            }
        }
        components.addColumnLists(*table);
        _tables.emplace(key(facts.schema, facts.name), table.get());
        _tables.emplace(caseFolded(key(facts.schema, facts.name)), table.get());
        add(table);
    }

    void addView(const CatalogView& facts) {
        auto view = makeTable<SQLView>("view", facts.schema, facts.name);
        setViewFacts(*view, facts);
        add(view);
    }

    void addForeignKeys(std::size_t place) {
        const CatalogTable& facts = _catalog.tables[place];
        SQLTable& table = *_objects[place];
        KeyNames names(facts);
        for (const CatalogForeignKey& key : facts.foreignKeys) {
            auto target = _tables.find(DocumentBuilder::key(key.targetSchema, key.targetTable));
            if (target == _tables.end() && _catalog.engine == DatabaseEngine::SQLite)
                target = _tables.find(caseFolded(DocumentBuilder::key(key.targetSchema, key.targetTable)));
            const char* trouble = nullptr;
            if (target == _tables.end())
                trouble = "it leads to %@, which is not there";
            else if (!addForeignKey(key, names, table, *target->second))
                trouble = "its columns are not those of %@";
            if (trouble)
                omit(text("foreign key %@ of table %@: ", key.name.empty() ? joined(key.columns, ", ") : key.name,
                          shownName(facts.schema, facts.name)) +
                     replacingAll(trouble, "%@", shownName(key.targetSchema, key.targetTable)));
        }
    }

    void place() {
        std::vector<PlacedNode> nodes(_objects.size());
        std::unordered_map<const SQLTable*, std::size_t> numbers;
        for (std::size_t i = 0; i < _objects.size(); ++i) numbers.emplace(_objects[i].get(), i);
        for (std::size_t i = 0; i < _objects.size(); ++i) {
            nodes[i].size = canvasSizeOf(*_objects[i]);
            for (const SQLForeignKey* foreignKey : _objects[i]->foreignKeyObjectsInTable())
                nodes[i].references.push_back(numbers.at(foreignKey->targetTable()));
        }
        placeNodes(nodes);
        for (std::size_t i = 0; i < _objects.size(); ++i) _objects[i]->setFrame({nodes[i].location, nodes[i].size});
    }

    const Catalog& _catalog;
    CatalogDocument _result;
    std::vector<std::shared_ptr<SQLTable>> _objects;     // tables, then views, in the catalog's order
    std::unordered_map<std::string, SQLTable*> _tables;  // by qualified name, as it is and folded
};

}  // namespace

CatalogDocument documentOf(const Catalog& catalog) { return DocumentBuilder(catalog).build(); }

Size canvasSizeOf(const SQLTable& table) {
    std::size_t longest = utf16Length(table.getName());
    std::size_t rows = 0;
    table.forEachComponent<SQLTableComponent>([&](SQLTableComponent& component) {
        ++rows;
        longest = std::max(longest, std::min<std::size_t>(utf16Length(component.getLabel()), 60));
    });
    return {std::max(120.0, static_cast<double>(longest) * kCharacterWidth + 30),
            kTitleHeight + static_cast<double>(std::max<std::size_t>(rows, 1)) * kRowHeight};
}

std::string modelName(std::string_view name) {
    if (name.find_first_of("'\"`\\") == name.npos) return std::string(name);
    for (const char quote : {'"', '`', '\''})
        if (name.find(quote) == name.npos) return quote + std::string(name) + quote;
    return '"' + replacingAll(name, "\"", "\\\"") + '"';
}

}  // namespace vellicor
