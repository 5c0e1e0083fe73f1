// cli/help_format.cpp — the parser's own help, with less noise.
#include "cli/help_format.h"

#include <CLI/CLI.hpp>

#include "vellicor/platform/text.h"

namespace vellicor::cli {

namespace {

class HelpFormat : public CLI::Formatter {
public:
    HelpFormat() {
        column_width(32);
        label("OPTIONS", "OPTION...");
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Operands");
    }
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
        return replacingAll(CLI::Formatter::make_option_name(option, isPositional), "{false}", "");
    }
    /// What the option takes: its choices, or the kind of its value; nothing for flags and operands.
    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_items_expected_max() == 0 || option->get_positional()) return {};
        const std::string type = option->get_type_name();
        const auto open = type.find('{');
        return " " +
               (open == std::string::npos ? type : replacingAll(removingCharacters(type.substr(open), "{}"), ",", "|"));
    }
};

}  // namespace

std::shared_ptr<CLI::FormatterBase> helpFormat() { return std::make_shared<HelpFormat>(); }

}  // namespace vellicor::cli
