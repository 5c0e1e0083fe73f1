// vellicor/export/generic_exporter_names.h — how names and default values are written.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vellicor/export/generic_exporter_settings.h"
#include "vellicor/export/source_node.h"
#include "vellicor/model/table.h"

namespace vellicor {

/// Every name and every default value that an exporter writes comes through here.
class GenericNames : public GenericSettings {
public:
    // === names
    std::string quoteIdentifier(std::string_view name) override;
    virtual std::string& quoteIdentifierAsMutableString(std::string& name);
    virtual void quoteString(std::string& name);
    [[nodiscard]] virtual bool objectNameRequiresQuoting(std::string_view name);
    [[nodiscard]] bool quoteReservedWord(std::string_view name);
    std::vector<std::string> quoteAllMembers(const std::vector<std::string>& names) override;
    virtual std::string getCanonicalNameSQLField(SQLField& field);
    virtual std::string getCanonicalNameSQLIndex(SQLIndex& index);
    virtual std::string getCanonicalNameSQLConstraint(SQLConstraint& constraint);
    virtual std::string getCanonicalNameSQLTable(SQLTable& table);
    virtual std::string getCanonicalNameSQLView(SQLView& view);
    virtual std::string getCanonicalNameWithLinkString(SQLTable& table, std::string_view linkString);
    [[nodiscard]] virtual std::string schemaNameForTable(SQLTable& table);

    // === names of indexes
    std::string getNameForIndexWithIndex(SQLTable& table, SQLIndex& index) override;
    std::string getNameForIndex(SQLTable& table, std::string_view name);
    std::string getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix);
    std::string getNameForIndex(SQLTable& table, std::string_view name, const OptionalText& suffix,
                                bool quotes) override;
    [[nodiscard]] virtual std::string getIndexNameForFieldIndexed(SQLField& field);
    /// The quoted name of an index in the statement that makes it.
    virtual std::string nameForIndexStatement(SQLTable& table, std::string_view name);
    virtual std::string nameForIndexStatement(SQLTable& table, SQLIndex& index);

    // === values
    virtual std::string quoteDefaultValue(std::string_view value, SQLField& field);
    [[nodiscard]] virtual bool shouldQuoteDefaultFieldValue(std::string_view value, SQLField& field);
    virtual std::string addDefaultQuotes(std::string_view value);
    [[nodiscard]] std::string escapeQuoteCharacter(std::string_view text);
    [[nodiscard]] std::string escapeQuoteCharacter(std::string_view text, std::string_view quoteCharSet);
    [[nodiscard]] std::string addQuotes(std::string_view text);
    std::string quoteForSQL(std::string_view text) { return quoteForSQL(text, false); }
    virtual std::string quoteForSQL(std::string_view text, bool force);

    // === comments
    /// The text as it may stand inside a comment block.
    [[nodiscard]] virtual std::string commentText(std::string_view comment) const { return std::string(comment); }
    /// "/*…*/" around the trimmed comment; empty for a blank one.
    [[nodiscard]] std::string quoteComment(std::string_view comment) const;

    /// The text of a tree; empty for null.
    [[nodiscard]] static std::string nodeText(const SourceNodePtr& node);

protected:
    /// "ALTER TABLE", the table's canonical name and "ADD" or whatever follows, as words of one node.
    SourceNodePtr alterTableNode(SQLTable& table, std::initializer_list<std::string_view> words);
    /// A parenthesised list of quoted names without blanks.
    SourceNodePtr quotedNameList(const std::vector<std::string>& names);
    /// The canonical name of a component's table; empty while the component stands in none.
    [[nodiscard]] std::string canonicalTableName(SQLTableComponent& component);
    /// Without regard to case. A list that was asked for keeps its words while this exporter lives.
    [[nodiscard]] bool containsWord(std::span<const std::string_view> words, std::string_view name) const;

private:
    // Copies of the word lists, by address: a dialect may make its list when it is made itself.
    mutable std::unordered_map<const std::string_view*, std::unordered_set<std::string>> _wordSets;
};

}  // namespace vellicor
