// cli/text_options.h — the options that shape the text of a script, whichever command writes it.
#pragma once

#include <optional>
#include <string>

#include "cli/session.h"

namespace CLI {
class App;
}

namespace vellicor::cli {

struct TextOptions {
    std::optional<bool> header;
    bool ifNotExists = false;
    bool honorIgnore = false;
    std::string sort;
    std::string quote;
};

/// With `--classic`, which belongs to the preferences.
void addTextOptions(CLI::App& command, TextOptions& options, PreferenceOptions& preferences);
/// Flags that have a preference of their own win over every other way to set it.
void applyTextOptions(const TextOptions& options);

/// A flag with an opposite; null when neither is given.
void addSwitch(CLI::App& command, const char* names, std::optional<bool>& value, const char* description);

}  // namespace vellicor::cli
