// vellicor/model/written_names.cpp — how names stand in documents.
#include "vellicor/model/written_names.h"

#include <algorithm>

#include "vellicor/model/table.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

bool needsCare(std::string_view name) { return name.find_first_of("\"'`\\.") != name.npos; }

std::string asComponent(std::string_view text) { return std::string(trimmed(SQLObjectPeer::trimName(text))); }

std::string asBaseName(std::string_view text) {
    const NameParts parts = SQLObjectPeer::splitNameBySchema(text);
    const std::string unquoted = SQLObjectPeer::trimName(trimmed(parts.baseName, TrimSet::Whitespace));
    return std::string(trimmed(unquoted, TrimSet::Whitespace));
}

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// The text in double quotes, so that the reader takes them off once. A backslash stands outside of them with the
/// character behind it, which it protects there: inside it would protect the closing quote as well.
std::string inQuotes(std::string_view text) {
    constexpr char kQuote = '"';
    std::string all(1, kQuote);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            if (text[i] == kQuote) all += '\\';
            all += text[i];
            continue;
        }
        all += kQuote;
        all += '\\';
        if (i + 1 < text.size()) all += text[++i];
        while (i + 1 < text.size() && continuesCharacter(text[i + 1])) all += text[++i];
        all += kQuote;
    }
    return all += kQuote;
}

/// The plainest form that `read` makes `name` of; the plain name when none does.
template <class Read>
std::string written(const std::string& name, Read read) {
    if (!needsCare(name) || !writesLosslessDocuments()) return name;
    constexpr int kMostQuotes = 2;
    std::string candidate = name;
    for (int quotes = 0; quotes <= kMostQuotes; ++quotes, candidate = inQuotes(candidate))
        if (read(candidate) == name) return candidate;
    return name;
}

}  // namespace

bool writesLosslessDocuments() { return Preferences::shared().boolForKey(prefs::losslessDocuments); }

std::string writtenName(const std::string& name) { return written(name, asComponent); }

std::string writtenBaseName(const std::string& name) { return written(name, asBaseName); }

std::string writtenQualifiedName(const SQLTable& table) {
    const std::string schema = table.getSchemaName(), base = table.getBaseName();
    std::string plain = table.getName();
    if ((!needsCare(schema) && !needsCare(base)) || !writesLosslessDocuments()) return plain;
    const NameParts read = SQLObjectPeer::splitNameBySchema(plain);
    if (read.schemaPart == schema && read.baseName == base) return plain;
    return schema.empty() ? inQuotes(base) : text("%@.%@", inQuotes(schema), inQuotes(base));
}

}  // namespace vellicor
