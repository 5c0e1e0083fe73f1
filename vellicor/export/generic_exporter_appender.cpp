// vellicor/export/generic_exporter_appender.cpp — the user's own blocks of SQL in a script, cut into statements.
#include "vellicor/export/generic_exporter_appender.h"

#include "vellicor/model/container.h"
#include "vellicor/model/document_info.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {
// Kept: blocks are expected to fit a 16-bit position; a longer one is not cut.
constexpr std::size_t kBlockLimit = 65536;
}  // namespace

std::vector<std::string> GenericSQLExporterAppender::SQLBlockArrayFromString(std::string_view text) {
    return splitSQLInstructions(text);
}

std::vector<std::string> GenericSQLExporterAppender::splitSQLInstructions(std::string_view block) {
    block = trimmed(block);
    if (block.size() >= kBlockLimit) {  // never fewer bytes than 16-bit units
        const std::size_t units = utf16Length(block);
        if (units >= kBlockLimit) {
            log(text("SQL block too long to split (%ld)", units));
            return {std::string(block)};
        }
    }
    // Every character that decides is ASCII, so the bytes of the others pass as they are.
    enum class State { Normal, InQuote, Escaped } state = State::Normal;
    char openQuote = 0;
    std::vector<std::string> statements;
    std::size_t start = 0;
    for (std::size_t i = 0; i < block.size(); ++i) {
        const char c = block[i];
        switch (state) {
            case State::Normal:
                if (c == '"' || c == '\'' || c == '`') {
                    openQuote = c;
                    state = State::InQuote;
                } else if (c == ';' && i + 1 < block.size()) {
                    statements.emplace_back(block.substr(start, i + 1 - start));
                    start = i + 1;
                }
                break;
            case State::InQuote:
                if (c == '\\')
                    state = State::Escaped;
                else if (c == openQuote)
                    state = State::Normal;
                break;
            case State::Escaped: state = State::InQuote; break;
        }
    }
    statements.emplace_back(block.substr(start));
    return statements;
}

std::vector<std::string> GenericSQLExporterAppender::prologueSQLBlockForContainer(SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    if (!info || !info->hasProperty(keys::prologueExportSQL)) return {};
    return SQLBlockArrayFromString(trimmed(info->prologueExportSQL()));
}

std::vector<std::string> GenericSQLExporterAppender::postAppendSQLBlockForContainer(SQLContainer& container) {
    const SQLDocumentInfo* info = container.documentInfo();
    if (!info || !info->hasProperty(keys::postExportSQL)) return {};
    return SQLBlockArrayFromString(trimmed(info->postExportSQL()));
}

}  // namespace vellicor
