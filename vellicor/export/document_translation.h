// vellicor/export/document_translation.h — a document of one dialect made one of another.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vellicor {

class SQLContainer;

/// What a column or table had in its own dialect, and has no more.
struct TranslationLoss {
    std::string object;  ///< "column orders.id"
    std::string what;    ///< "the type VARCHAR(70000)"
    std::string why;     ///< "TEXT stops at 65,535 bytes"
};

/// Says the types, defaults and checks of every column in the words of the dialect `to`, as the tables of
/// `types/type_translation.h` and `types/value_translation.h` have them; the document is changed in place. Answers what
/// was lost, in the order of the document. Dialects by their registry names; nothing happens when they are the same, or
/// when one is not known.
std::vector<TranslationLoss> translateDocument(SQLContainer& document, std::string_view from, std::string_view to);

}  // namespace vellicor
