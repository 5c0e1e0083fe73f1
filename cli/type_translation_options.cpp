// cli/type_translation_options.cpp — translating a document before its script is written.
#include "cli/type_translation_options.h"

#include <CLI/CLI.hpp>

#include "cli/messages.h"
#include "vellicor/export/document_translation.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

void addTypesOption(CLI::App& command, TypeTranslationOptions& options) {
    command
        .add_option("--types", options.types,
                    "translate types, defaults and checks of a document of another dialect (the default), or keep them")
        ->check(CLI::IsMember({"translate", "keep"}));
}

void translateTypes(SQLContainer& document, std::string_view own, std::string_view asked,
                    const TypeTranslationOptions& options, Messages& messages) {
    if (options.types == "keep") return;
    for (const TranslationLoss& loss : translateDocument(document, own, asked))
        messages.warning(text("%@: %@: %@", loss.object, loss.what, loss.why));
}

}  // namespace vellicor::cli
