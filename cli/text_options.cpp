// cli/text_options.cpp — the options that shape the text of a script.
#include "cli/text_options.h"

#include <CLI/CLI.hpp>
#include <array>
#include <vector>

#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor::cli {

namespace {

/// Which names each way of quoting puts in quotes.
struct QuotingMode {
    const char* name;
    bool all;
    bool reserved;
    bool spaces;
    bool invalid;
};
constexpr std::array kQuotingModes{
    QuotingMode{"always", true, false, false, false}, QuotingMode{"reserved", false, true, false, false},
    QuotingMode{"spaces", false, false, true, false}, QuotingMode{"needed", false, true, true, true},
    QuotingMode{"never", false, false, false, false},
};
constexpr std::array kSortOrders{"document", "name"};  // by the value of the preference

std::vector<std::string> quotingModeNames() {
    std::vector<std::string> names;
    for (const QuotingMode& mode : kQuotingModes) names.emplace_back(mode.name);
    return names;
}

}  // namespace

void applyTextOptions(const TextOptions& options) {
    Preferences& preferences = Preferences::shared();
    if (options.header) preferences.setBool(*options.header, prefs::includeTitleHeaderInExport);
    if (options.ifNotExists) preferences.setBool(true, prefs::useIfNotExistsOnTableExport);
    if (options.honorIgnore) preferences.setBool(true, prefs::canIgnoreObjectsOnExport);
    for (std::size_t order = 0; order < kSortOrders.size(); ++order)
        if (options.sort == kSortOrders[order])
            preferences.setObject(Value::integer(static_cast<std::int64_t>(order)), prefs::exportObjectSortOrder);
    for (const QuotingMode& mode : kQuotingModes) {
        if (options.quote != mode.name) continue;
        preferences.setBool(mode.all, prefs::quoteIdentifiersOnExport);
        preferences.setBool(mode.reserved, prefs::quoteReservedWords);
        preferences.setBool(mode.spaces, prefs::autoQuoteIdentifiersWithWhitespace);
        preferences.setBool(mode.invalid, prefs::autoQuoteIdentifiersWithInvalidCharacters);
    }
}

void addSwitch(CLI::App& command, const char* names, std::optional<bool>& value, const char* description) {
    command.add_flag_function(
        names, [&value](std::int64_t count) { value = count > 0; }, description);
}

void addTextOptions(CLI::App& command, TextOptions& options, PreferenceOptions& preferences) {
    addSwitch(command, "--header,!--no-header", options.header, "begin with a title line, or do not");
    command.add_flag("--if-not-exists", options.ifNotExists,
                     "create only what does not exist, where the dialect can say so");
    command.add_option("--sort", options.sort, "order of the objects")
        ->check(CLI::IsMember(std::vector<std::string>(kSortOrders.begin(), kSortOrders.end())));
    command.add_option("--quote", options.quote, "which names are put in quotes")
        ->check(CLI::IsMember(quotingModeNames()));
    command.add_flag("--honor-ignore", options.honorIgnore, "leave out what the document marks as not to be exported");
    command.add_flag("--classic", preferences.classic, "the classic text, even where the database would refuse it");
}

}  // namespace vellicor::cli
