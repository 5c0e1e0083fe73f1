// cli/type_translation_options.h — `--types`: what becomes of types when a script is for another dialect.
#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}
namespace vellicor {
class SQLContainer;
}

namespace vellicor::cli {

class Messages;

/// What `--types` chose: "translate" or "keep".
struct TypeTranslationOptions {
    std::string types = "translate";
};
void addTypesOption(CLI::App& command, TypeTranslationOptions& options);

/// Turns the document, which is written for the dialect `own`, into one for `asked`, unless its types are to be kept;
/// each loss is a warning. A document that names no dialect stays as it is.
void translateTypes(SQLContainer& document, std::string_view own, std::string_view asked,
                    const TypeTranslationOptions& options, Messages& messages);

}  // namespace vellicor::cli
