// vellicor/export/document_translation.cpp — types, defaults and checks of a document in another dialect's words.
#include "vellicor/export/document_translation.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/expression_tokens.h"
#include "vellicor/types/type_text.h"
#include "vellicor/types/type_translation.h"
#include "vellicor/types/value_translation.h"

namespace vellicor {

namespace {

constexpr std::string_view kZone = " WITH TIME ZONE";
constexpr std::string_view kUnsigned = " UNSIGNED";
constexpr std::size_t kRowBytes = 65535;
constexpr std::size_t kKeyCharacters = 255;

/// The type as its dialect says it, flags included.
std::string typeOf(TypeDialect dialect, const SQLField& field) {
    std::string type = field.getFullTypeString();
    const std::string upper = uppercased(type);
    const auto has = [&](std::string_view word) { return upper.find(word) != std::string::npos; };
    if (field.getPropertyAsBoolean(keys::unsigned_) && dialect == TypeDialect::MySQL && !has("UNSIGNED"))
        type += kUnsigned;
    if (field.getPropertyAsBoolean(keys::timezone) && !has("ZONE") && !has("TZ")) type += kZone;
    return type;
}

class Translator {
public:
    Translator(SQLContainer& document, TypeDialect from, TypeDialect to)
        : _from(from),
          _to(to),
          _fromName(typeDialectNames()[static_cast<std::size_t>(from)]),
          _toName(typeDialectNames()[static_cast<std::size_t>(to)]) {
        for (const auto& object : document.objectList())
            if (auto* table = as<SQLTable>(object.get()); table && !as<SQLView>(table)) _tables.push_back(table);
    }

    std::vector<TranslationLoss> run() {
        findKeys();
        findCounting();
        for (SQLTable* table : _tables) {
            for (const auto& component : table->getFields()) {
                if (auto* field = as<SQLField>(component.get())) translate(*field);
                if (auto* constraint = as<SQLConstraint>(component.get());
                    constraint && constraint->isCheckConstraint())
                    translate(*table, *constraint);
            }
            if (_to == TypeDialect::MySQL) fitRow(*table);
        }
        return std::move(_losses);
    }

private:
    // === what columns mean to each other

    /// Columns of keys, and which refer to which.
    void findKeys() {
        const auto refer = [&](SQLField* source, SQLField* target) {
            if (!source || !target) return;
            _keyed.insert({source, target});
            _referring[target].push_back(source);
        };
        for (SQLTable* table : _tables) {
            for (const auto& component : table->getFields()) {
                auto* field = as<SQLField>(component.get());
                if (!field) continue;
                if (field->getPrimaryKey() || field->isUnique()) _keyed.insert(field);
                refer(field, field->getFkField());
            }
            for (SQLForeignKey* key : table->foreignKeyObjectsInTable())
                for (const auto& pair : key->fieldPairs()) refer(pair->source(), pair->target());
        }
    }

    /// Columns that count, and those that refer to them, which need the same type.
    void findCounting() {
        std::vector<const SQLField*> open;
        for (const SQLTable* table : _tables)
            for (const auto& component : table->getFields())
                if (auto* field = as<SQLField>(component.get()); field && counts(*field)) open.push_back(field);
        while (!open.empty()) {
            const SQLField* field = open.back();
            open.pop_back();
            if (!_counting.insert(field).second) continue;
            const auto sources = _referring.find(field);
            if (sources != _referring.end()) open.insert(open.end(), sources->second.begin(), sources->second.end());
        }
    }

    [[nodiscard]] bool counts(const SQLField& field) const {
        if (field.getAutoIncrement()) return true;
        const TypeRow* row = findType(_from, TypeText::parsed(field.getDataType()));
        return row && row->has(type_flags::kCounts);
    }

    // === one column

    void translate(SQLField& field) {
        const std::string type = typeOf(_from, field);
        if (trimmed(type).empty()) return;
        TypeTranslation made = translated(type, _counting.contains(&field));
        if (made.grade == TypeGrade::Unknown)
            lose(field, text("the type %@", type), text("%@; it stands as it is", made.reason));
        else if (made.grade == TypeGrade::Lossy)
            lose(field, text("the type %@", type), text("%@ %@", made.text, made.reason));
        if (made.counts) field.setAutoIncrement(true);
        if (_to == TypeDialect::MySQL && _keyed.contains(&field)) fitKey(field, type, made);
        translateDefault(field, type, made);
        translateCheck(field);
        if (!made.labels.empty() && !field.hasProperty(keys::checkConstraint))
            field.setProperty(keys::checkConstraint, text("%@ IN (%@)", nameInCheck(field), joined(made.labels, ",")));
        if (const std::string update = field.getProperty(keys::onUpdateFieldValue); !update.empty())
            lose(field, text("ON UPDATE %@", update), text("%@ has nothing like it", _toName));
        if (made.grade != TypeGrade::Unknown && !equalIgnoringCase(made.text, type)) setType(field, made.text);
    }

    /// Documents use few types many times.
    const TypeTranslation& translated(const std::string& type, bool counts) {
        auto& known = _known[counts ? 1 : 0];
        const auto found = known.find(type);
        if (found != known.end()) return found->second;
        return known.emplace(type, translateType(_fromName, _toName, type, {.counts = counts})).first->second;
    }

    /// Flags that the dialect writes by itself leave the type.
    void setType(SQLField& field, std::string type) const {
        const bool isZoned = _to == TypeDialect::Postgres || _to == TypeDialect::Redshift;
        const bool hasZone = isZoned && type.ends_with(kZone), isUnsigned = type.ends_with(kUnsigned);
        if (hasZone) type.resize(type.size() - kZone.size());
        if (isUnsigned) type.resize(type.size() - kUnsigned.size());
        field.setPropertyAsBoolean(keys::timezone, hasZone);
        field.setPropertyAsBoolean(keys::unsigned_, isUnsigned);
        field.setPropertyAsBoolean(keys::zeroFill, false);
        // Words behind the brackets are part of the name, or the size would cut them off.
        if (type.ends_with(')') || type.find('(') == std::string::npos) {
            field.setType(type);
        } else {
            field.setDataType(type);
            field.setTypeSize(std::string());
        }
    }

    /// A key takes no text without a length.
    void fitKey(const SQLField& field, const std::string& type, TypeTranslation& made) {
        if (!made.text.ends_with("TEXT") && !made.text.ends_with("BLOB")) return;
        const std::string wide = made.text;
        made.text = text("%@(%lu)", made.text.ends_with("TEXT") ? "VARCHAR" : "VARBINARY", kKeyCharacters);
        lose(field, text("the type %@", type),
             text("%@ stops at %lu, since no key of %@ takes %@", made.text, kKeyCharacters, _toName, wide));
    }

    void translateDefault(SQLField& field, const std::string& type, const TypeTranslation& made) {
        const std::string value = field.defaultValue();
        if (trimmed(value).empty()) return;
        const TypeText newType = TypeText::parsed(made.text);
        const ValueTranslation said =
            vellicor::translateDefault(_fromName, _toName, type, made.text, value,
                                       {.isExpression = field.getPropertyAsBoolean(keys::noQuoteDefault),
                                        .fraction = newType.number(0).value_or(0)});
        if (said.grade == TypeGrade::Lossy) lose(field, text("the default %@", value), said.reason);
        if (said.counts) field.setAutoIncrement(true);
        if (said.text == value && said.isExpression == field.getPropertyAsBoolean(keys::noQuoteDefault)) return;
        field.setDefaultValue(said.text);
        field.setPropertyAsBoolean(keys::noQuoteDefault, said.isExpression && !said.text.empty());
    }

    void translateCheck(SQLField& field) {
        if (!field.hasProperty(keys::checkConstraint)) return;
        const std::string condition = field.getProperty(keys::checkConstraint);
        const ValueTranslation said = vellicor::translateCheck(_fromName, _toName, condition);
        if (said.grade == TypeGrade::Lossy) {
            lose(field, text("the check %@", condition), said.reason);
            field.removeProperty(keys::checkConstraint);
        } else if (said.text != condition) {
            field.setProperty(keys::checkConstraint, said.text);
        }
    }

    void translate(SQLTable& table, SQLConstraint& constraint) {
        const std::string condition = constraint.checkConstraintExpression();
        const ValueTranslation said = vellicor::translateCheck(_fromName, _toName, condition);
        if (said.grade == TypeGrade::Lossy) {
            // MariaDB guards its JSON columns so; elsewhere the type does.
            const bool isGuard = _from == TypeDialect::MySQL && lowercased(condition).starts_with("json_valid(");
            if (!isGuard)
                _losses.push_back({text("constraint %@.%@", table.getName(), constraint.getName()),
                                   text("the check %@", condition), said.reason});
            table.remove(&constraint);
        } else if (said.text != condition) {
            constraint.setProperty(keys::checkConstraint, said.text);
        }
    }

    [[nodiscard]] std::string nameInCheck(const SQLField& field) const {
        const std::string name = field.getName();
        return isPlainName(name) ? name : textOf(_to, {{ExpressionToken::Kind::Name, name, false, {}}});
    }

    // === one row

    /// A row has a limit of its own: the longest texts that are in no key give way until it is kept.
    void fitRow(SQLTable& table) {
        struct Text {
            std::size_t bytes;
            SQLField* field;
        };
        std::vector<Text> texts;
        std::size_t row = 0;
        for (const auto& component : table.getFields()) {
            auto* field = as<SQLField>(component.get());
            if (!field) continue;
            const bool isBinary = equalIgnoringCase(field->getDataType(), "VARBINARY");
            if (!isBinary && !equalIgnoringCase(field->getDataType(), "VARCHAR")) {
                row += 16;  // more than a number, a time or the pointer to a long text takes
                continue;
            }
            const std::size_t length = TypeText::parsed(field->getFullTypeString()).number(0).value_or(255);
            const std::size_t bytes = length * (isBinary ? 1 : 4) + 2;
            row += bytes;
            if (!_keyed.contains(field)) texts.push_back({bytes, field});
        }
        std::ranges::stable_sort(texts, std::greater(), &Text::bytes);
        for (const Text& longest : texts) {
            if (row <= kRowBytes) return;
            row -= longest.bytes;
            setType(*longest.field, equalIgnoringCase(longest.field->getDataType(), "VARBINARY") ? "BLOB"
                                    : longest.bytes <= kRowBytes                                 ? "TEXT"
                                                                                                 : "MEDIUMTEXT");
        }
    }

    void lose(const SQLField& field, std::string what, std::string why) {
        const SQLTable* table = field.parentTable();
        _losses.push_back({text("column %@.%@", table ? table->getName() : std::string(), field.getName()),
                           std::move(what), std::move(why)});
    }

    TypeDialect _from, _to;
    std::string_view _fromName, _toName;
    std::vector<SQLTable*> _tables;
    std::unordered_set<const SQLField*> _keyed, _counting;
    std::unordered_map<const SQLField*, std::vector<const SQLField*>> _referring;  // by the column they refer to
    std::unordered_map<std::string, TypeTranslation> _known[2];                    // by type; those that count apart
    std::vector<TranslationLoss> _losses;
};

}  // namespace

std::vector<TranslationLoss> translateDocument(SQLContainer& document, std::string_view from, std::string_view to) {
    const auto source = typeDialectNamed(from), target = typeDialectNamed(to);
    if (!source || !target || source == target) return {};
    return Translator(document, *source, *target).run();
}

}  // namespace vellicor
