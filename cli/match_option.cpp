// cli/match_option.cpp — the option that says which objects of two documents are the same.
#include "cli/match_option.h"

#include <CLI/CLI.hpp>

namespace vellicor::cli {

void addMatchOption(CLI::App& command, std::string& value) {
    value = "auto";
    command.add_option("--match", value, "what makes two objects the same: the uid, the name, or the uid first")
        ->check(CLI::IsMember({"uid", "name", "auto"}))
        ->capture_default_str();
}

MatchMode matchMode(const std::string& value) {
    if (value == "uid") return MatchMode::Uid;
    return value == "name" ? MatchMode::Name : MatchMode::Automatic;
}

}  // namespace vellicor::cli
