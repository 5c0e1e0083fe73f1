// cli/prefs_command.cpp — `vellicor prefs`: preferences that stay, in a property-list file.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/output.h"
#include "cli/preference_settings.h"
#include "cli/result.h"
#include "vellicor/platform/known_preferences.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::cli {

namespace {

struct PrefsOptions {
    std::string key;
    std::string value;
    std::string config;
    ReportOptions report;
};

/// Plain lines for a terminal: the columns start below each other.
class Columns {
public:
    void add(std::vector<std::string> row) { _rows.push_back(std::move(row)); }
    [[nodiscard]] std::string text() const {
        std::vector<std::size_t> widths;
        for (const auto& row : _rows)
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (i == widths.size()) widths.push_back(0);
                widths[i] = std::max(widths[i], utf16Length(row[i]));
            }
        std::string all;
        for (const auto& row : _rows) {
            std::string line;
            for (std::size_t i = 0; i < row.size(); ++i)
                line += row[i] + std::string(widths[i] + 2 - utf16Length(row[i]), ' ');
            all += std::string(line, 0, line.find_last_not_of(' ') + 1) + "\n";
        }
        return all;
    }

private:
    std::vector<std::vector<std::string>> _rows;
};

ExitCode get(const PrefsOptions& options) {
    const Value::Map stored = storedPreferences(options.config);
    const KnownPreference* known = knownPreference(options.key);
    const auto found = stored.find(options.key);
    if (found == stored.end() && !known)
        throw Failure(kBadUse, text("there is no preference '%@'; 'vellicor prefs list' shows all", options.key));
    const std::string value = found != stored.end() ? preferenceText(found->second) : defaultPreferenceText(*known);
    Output::standard().write(value + "\n");
    return kDone;
}

ExitCode set(const PrefsOptions& options, Messages& messages) {
    Value::Map stored = storedPreferences(options.config, true);
    stored[options.key] = preferenceFromText(options.key, options.value, messages);
    writePreferences(preferencesFile(options.config), stored);
    return kDone;
}

ExitCode unset(const PrefsOptions& options) {
    Value::Map stored = storedPreferences(options.config, true);
    if (stored.erase(options.key) > 0) writePreferences(preferencesFile(options.config), stored);
    return kDone;
}

/// Every known key, then what else the file holds.
ExitCode list(const PrefsOptions& options) {
    const Value::Map stored = storedPreferences(options.config);
    Columns columns;
    Value::List rows;
    const auto add = [&](std::string_view key, std::string_view type, std::string_view byDefault,
                         std::string_view meaning) {
        const auto found = stored.find(key);
        const bool isSet = found != stored.end();
        const std::string whenSet = byDefault.empty() ? "set" : text("set, default %@", byDefault);
        columns.add({std::string(key), std::string(type),
                     isSet ? singleLine(preferenceText(found->second)) : std::string(byDefault),
                     isSet ? whenSet : "default", std::string(meaning)});
        rows.push_back(Value::Map{{"key", key},
                                  {"type", type},
                                  {"default", byDefault},
                                  {"value", isSet ? found->second : Value()},
                                  {"meaning", meaning}});
    };
    for (const KnownPreference& known : knownPreferences())
        add(known.key, preferenceTypeName(known.type), defaultPreferenceText(known), known.meaning);
    for (const auto& [key, value] : stored)
        if (!knownPreference(key)) add(key, "", "", "not a preference of the library");
    if (options.report.json)
        writeJson({{"preferences", std::move(rows)}});
    else
        Output::standard().write(columns.text());
    return kDone;
}

}  // namespace

void addPrefsCommand(CLI::App& app, Session& session) {
    CLI::App& prefs = *app.add_subcommand("prefs", "read and change the preferences that every run starts with");
    prefs.require_subcommand(0, 1);
    auto options = std::make_shared<PrefsOptions>();
    const auto add = [&](const char* name, const char* description, bool takesKey, std::function<ExitCode()> work) {
        CLI::App* command = prefs.add_subcommand(name, description)->group("Commands");
        if (takesKey)
            command->add_option("KEY", options->key, "preference; 'prefs list' shows all")
                ->type_name(kPreferenceType)
                ->required();
        addConfigOption(*command, options->config);
        command->callback([options, &session, work] { session.choose(options->report, work); });
        return command;
    };
    add("get", "show the value of a preference", true, [options] { return get(*options); });
    add("set", "store a value", true, [options, &session] { return set(*options, session.messages); })
        ->add_option("VALUE", options->value, "true or false, a whole number, or a text")
        ->type_name("VALUE")
        ->required();
    add("unset", "forget the stored value", true, [options] { return unset(*options); });
    addJsonOption(*add("list", "show every preference with its type, value and meaning", false,
                       [options] { return list(*options); }),
                  options->report);
}

}  // namespace vellicor::cli
