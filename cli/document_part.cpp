// cli/document_part.cpp — choosing tables, and cutting what leads out of the choice.
#include "cli/document_part.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "cli/failure.h"
#include "cli/glob.h"
#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/label.h"
#include "vellicor/model/table.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

using Tables = std::vector<std::shared_ptr<SQLTable>>;

bool matchesAny(const std::vector<std::string>& patterns, std::string_view name) {
    return std::ranges::any_of(patterns, [name](const std::string& pattern) { return globMatches(pattern, name); });
}

bool isChosen(const SQLTable& table, const PartOptions& options) {
    if (!options.tables.empty() && !matchesAny(options.tables, table.getName()) &&
        !matchesAny(options.tables, table.getBaseName()))
        return false;
    if (!options.schemas.empty() && !matchesAny(options.schemas, table.getSchemaName())) return false;
    return options.labels.empty() || (table.label() && matchesAny(options.labels, table.label()->getName()));
}

std::string allPatterns(const PartOptions& options) {
    std::vector<std::string> patterns;
    const auto add = [&patterns](const char* option, const std::vector<std::string>& values) {
        for (const std::string& value : values) patterns.push_back(text("%@ '%@'", option, value));
    };
    add("--tables", options.tables);
    add("--schema", options.schemas);
    add("--label", options.labels);
    return joined(patterns, " ");
}

/// The tables that stay, and those that go.
class Cut {
public:
    Cut(SQLContainer& document, const PartOptions& options, Messages& messages) : _messages(messages) {
        for (const auto& object : document.objectList())
            if (auto table = as<SQLTable>(object))
                (isChosen(*table, options) ? _kept : _leftOut).push_back(std::move(table));
        for (const auto& table : _leftOut) {
            _gone.insert(table.get());
            _goneNames.insert(caseFolded(table->getBaseName()));
        }
    }

    [[nodiscard]] const Tables& kept() const { return _kept; }
    [[nodiscard]] const Tables& leftOut() const { return _leftOut; }

    /// Columns that show the type of a column that they reference get it as their own.
    void keepForcedTypes() const {
        std::vector<std::pair<SQLField*, std::string>> types;  // all are asked before the first one changes
        std::vector<SQLField*> unsignedColumns;
        for (const auto& table : _kept)
            table->forEachComponent<SQLField>([&](SQLField& column) {
                if (!column.hasForeignKey()) return;
                if (std::string type = column.getType(); type != column.getOriginalType())
                    types.emplace_back(&column, type);
                if (isGone(column.targetTable()) && column.isForcedUnsigned() && column.getForcedUnsigned())
                    unsignedColumns.push_back(&column);
            });
        for (const auto& [column, type] : types) column->setType(type);
        for (SQLField* column : unsignedColumns) column->setPropertyAsBoolean(keys::unsigned_, true);
    }

    void cutKeys() const {
        for (const auto& table : _kept) {
            for (const auto& component : table->objectList()) {
                auto* column = as<SQLField>(component.get());
                auto* key = as<SQLForeignKey>(component.get());
                SQLTable* target = column ? column->targetTable() : key ? key->targetTable() : nullptr;
                if (!isGone(target)) continue;
                _messages.warning(text("the foreign key from %@(%@) to %@ is left out, since %@ is", table->getName(),
                                       joined(column ? column->sourceFieldNameList() : key->sourceFieldNameList(), ","),
                                       target->getName(), target->getName()));
                if (column)
                    column->setFkField(nullptr);
                else
                    table->remove(key);
            }
        }
    }

    void reportQueries() const {
        for (const auto& table : _kept) {
            const auto* view = as<SQLView>(table.get());
            const std::string name = view ? goneNameIn(view->queryString()) : std::string();
            if (!name.empty())
                _messages.warning(text("the view %@ asks for %@, which is left out", view->getName(), name));
        }
    }

    void reportOwnSQL(const SQLDocumentInfo& info) const {
        const std::string name = goneNameIn(info.prologueExportSQL() + " " + info.postExportSQL());
        if (!name.empty())
            _messages.warning(
                text("the document's own SQL, which is written whole, names %@, which is left out", name));
    }

private:
    [[nodiscard]] bool isGone(const SQLTable* table) const { return table && _gone.contains(table); }

    /// The first word of `sql` that is the name of a table that goes; empty without one.
    [[nodiscard]] std::string goneNameIn(std::string_view sql) const {
        const auto isWordPart = [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return byte >= 0x80 || c == '_' || c == '$' || (c >= '0' && c <= '9') ||
                   ((byte | 0x20) >= 'a' && (byte | 0x20) <= 'z');
        };
        for (auto at = sql.begin(); at != sql.end();) {
            const auto begin = std::find_if(at, sql.end(), isWordPart);
            at = std::find_if_not(begin, sql.end(), isWordPart);
            const std::string word(begin, at);
            if (_goneNames.contains(caseFolded(word))) return word;
        }
        return {};
    }

    Messages& _messages;
    Tables _kept;
    Tables _leftOut;
    std::unordered_set<const SQLTable*> _gone;
    std::unordered_set<std::string> _goneNames;  // base names, folded
};

}  // namespace

void keepPart(SQLContainer& document, const PartOptions& options, Messages& messages) {
    if (options.isWhole()) return;
    const Cut cut(document, options, messages);
    if (cut.kept().empty())
        throw Failure(kBadUse, text("no table or view matches %@; 'vellicor info' shows what the document holds",
                                    allPatterns(options)));
    cut.keepForcedTypes();
    cut.cutKeys();
    cut.reportQueries();
    if (document.documentInfo()) cut.reportOwnSQL(*document.documentInfo());
    for (const auto& table : cut.leftOut()) document.remove(*table);
}

}  // namespace vellicor::cli
