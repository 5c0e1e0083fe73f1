// vellicor/export/generic_exporter_quoting.cpp — how names and default values are written.
#include <algorithm>
#include <unordered_map>

#include "vellicor/export/generic_exporter_names.h"
#include "vellicor/model/field.h"
#include "vellicor/model/index.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

bool GenericNames::containsWord(std::span<const std::string_view> words, std::string_view name) const {
    if (words.empty()) return false;
    auto [entry, isNew] = _wordSets.try_emplace(words.data());
    if (isNew)
        for (const std::string_view word : words) entry->second.emplace(word);
    return entry->second.contains(uppercased(trimmed(name)));
}

std::string GenericNames::quoteIdentifier(std::string_view name) {
    std::string quoted(name);
    return std::move(quoteIdentifierAsMutableString(quoted));
}

std::string& GenericNames::quoteIdentifierAsMutableString(std::string& name) {
    if (useQuotedIdentifier() || objectNameRequiresQuoting(name))
        quoteString(name);
    else if (autoQuoteIdentifiersWithWhitespace()) {
        if (containsWhitespace(name)) quoteString(name);  // a line break is white space too
    } else if (replaceSpacesInIdentifier())
        std::erase(name, ' ');
    return name;
}

void GenericNames::quoteString(std::string& name) {
    const std::string start = getStartingQuoteIdentifierString();
    const std::string end = getEndingQuoteIdentifierString();
    // Kept: quotes inside a name are not escaped, and an empty name becomes one quote where both are the same.
    if (!name.starts_with(start)) name.insert(0, start);
    if (!name.ends_with(end)) name += end;
}

bool GenericNames::objectNameRequiresQuoting(std::string_view name) { return quoteReservedWord(name); }

bool GenericNames::quoteReservedWord(std::string_view name) {
    return Preferences::shared().boolForKey(prefs::quoteReservedWords) && containsWord(reservedWords(), name);
}

std::vector<std::string> GenericNames::quoteAllMembers(const std::vector<std::string>& names) {
    std::vector<std::string> quoted;
    quoted.reserve(names.size());
    for (const std::string& name : names) quoted.push_back(quoteIdentifier(name));
    return quoted;
}

std::string GenericNames::getCanonicalNameSQLField(SQLField& field) { return quoteIdentifier(field.getName()); }
std::string GenericNames::getCanonicalNameSQLIndex(SQLIndex& index) { return quoteIdentifier(index.getName()); }
std::string GenericNames::getCanonicalNameSQLConstraint(SQLConstraint& constraint) {
    return quoteIdentifier(constraint.getName());
}
std::string GenericNames::getCanonicalNameSQLTable(SQLTable& table) {
    return getCanonicalNameWithLinkString(table, ".");
}
std::string GenericNames::getCanonicalNameSQLView(SQLView& view) { return getCanonicalNameWithLinkString(view, "."); }

std::string GenericNames::getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString) {
    const std::string name = quoteIdentifier(trimmed(table.getBaseName()));
    const std::string schema = schemaNameForTable(table);
    return schema.empty() ? name : text("%@%@%@", quoteIdentifier(trimmed(schema)), linkString, name);
}

std::string GenericNames::schemaNameForTable(SQLTable& table) { return table.getSchemaName(); }

std::string GenericNames::canonicalTableName(SQLTableComponent& component) {
    SQLTable* table = component.parentTable();
    return table ? getCanonicalName(*table) : std::string();
}

std::string GenericNames::getIndexNameForFieldIndexed(SQLField& field) {
    return replacingAll(field.getName(), " ", "_") + "_idx";
}

std::string GenericNames::nameForIndexStatement(SQLTable& table, std::string_view name) {
    return getNameForIndex(table, name);
}

std::string GenericNames::nameForIndexStatement(SQLTable& table, SQLIndex& index) {
    return getNameForIndexWithIndex(table, index);
}

std::string GenericNames::getNameForIndexWithIndex(SQLTable& table, SQLIndex& index) {
    return getNameForIndex(table, index.getName());
}

std::string GenericNames::getNameForIndex(SQLTable& table, std::string_view name) {
    return getNameForIndex(table, name, std::string());
}

std::string GenericNames::getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix) {
    return getNameForIndex(table, name, suffix, true);
}

std::string GenericNames::getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix,
                                          bool quotes) {
    std::string indexName(name);
    if (const OptionalText& prefix = table.indexPrefix(); shouldPrefixIndexNames() && prefix) {
        const std::string lower = lowercased(name);
        const std::string qualified = lowercased(text("%@_%@_", table.getSchemaName(), table.getBaseName()));
        if (!lower.starts_with(lowercased(*prefix)) && !lower.starts_with(qualified)) indexName.insert(0, *prefix);
    }
    if (suffix) indexName += *suffix;
    return quotes ? quoteIdentifierAsMutableString(indexName) : indexName;
}

std::string GenericNames::quoteDefaultValue(std::string_view value, SQLField& field) {
    if (value == "''" || !shouldQuoteDefaultFieldValue(value, field)) return std::string(value);
    return addDefaultQuotes(value);
}

bool GenericNames::shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field) {
    return lowercased(value) != "null" && !field.getPropertyAsBoolean(keys::noQuoteDefault);
}

std::string GenericNames::addDefaultQuotes(std::string_view value) {
    // Kept: a backslash escapes a quote, which few servers understand.
    const char quote = getQuoteDefaultString().front();
    std::string quoted;
    if (!value.starts_with(quote)) quoted += quote;
    bool escaped = false;  // the character before is a backslash that is not escaped itself
    bool endsInQuote = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool inner = i > 0 && i + 1 < value.size();
        if (c == quote && inner && !escaped) quoted += '\\';
        quoted += c;
        endsInQuote = c == quote && !escaped;
        escaped = c == '\\' && !escaped;
    }
    if (!endsInQuote) quoted += quote;
    return quoted;
}

std::string GenericNames::escapeQuoteCharacter(std::string_view text) { return escapeQuoteCharacter(text, "'\""); }

std::string GenericNames::escapeQuoteCharacter(std::string_view text, std::string_view quoteCharSet) {
    std::string escaped;
    escaped.reserve(text.size());
    for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
        for (end = start + 1; end < text.size() && (text[end] & 0xC0) == 0x80;) ++end;  // the bytes of one character
        const std::string_view character = text.substr(start, end - start);
        if (character == "\\" || quoteCharSet.find(character) != std::string_view::npos) escaped += '\\';
        escaped += character;
    }
    return escaped;
}

std::string GenericNames::addQuotes(std::string_view string) {
    const std::string quote = getQuoteIdentifierString();
    return quote + replacingAll(string, quote, text("\\%@", quote)) + quote;
}

std::string GenericNames::quoteForSQL(std::string_view text, bool force) {
    const auto holds = [text](char c) { return text.find(c) != std::string_view::npos; };
    // Kept: only texts that hold both kinds of quote are ever changed.
    return holds('\'') && holds('`') && (force || holds(' ')) ? addQuotes(text) : std::string(text);
}

std::string GenericNames::quoteComment(std::string_view comment) const {
    const std::string_view content = trimmed(comment);
    return content.empty() ? std::string() : text("/*%@*/", commentText(content));
}

std::string GenericNames::nodeText(const SourceNodePtr& node) { return node ? node->string() : std::string(); }

SourceNodePtr GenericNames::alterTableNode(SQLTable& table, std::initializer_list<std::string_view> words) {
    auto node = QVSourceNode::node();
    node->addChildWithValue("ALTER TABLE");
    node->addChildWithValue(getCanonicalName(table));
    for (std::string_view word : words) node->addChildWithValue(word);
    return node;
}

SourceNodePtr GenericNames::quotedNameList(const std::vector<std::string>& names) {
    auto list = QVSourceNode::bracketBlock();
    for (const std::string& name : names) list->addChildWithValue(quoteIdentifier(name), "");
    return list;
}

}  // namespace vellicor
