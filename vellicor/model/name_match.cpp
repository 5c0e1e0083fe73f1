// vellicor/model/name_match.cpp — finding free names by numbering.
#include "vellicor/model/name_match.h"

#include <limits>

#include "vellicor/model/object_peer.h"
#include "vellicor/platform/log.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

std::string trimmedProposal(const OptionalText& name) {
    const std::string_view proposal = trimmed(name ? std::string_view(*name) : std::string_view());
    return std::string(proposal.empty() ? "untitled" : proposal);
}

/// A name without its number, and the number to begin with.
struct Numbered {
    std::string base;
    std::uint64_t start;
};

std::string nameWithNumber(std::string_view base, std::uint64_t number) {
    return text("%@_%ld", base, static_cast<std::int64_t>(number));
}

/// The first number from `start` on that makes a free name; `except` counts as absent. `key` is what the compared name
/// has in front of the number, the underscore included. Ends after `limit` more numbers than one, free or not.
/// What others hold is skipped by the scope's hints, so that each taken number is tried once, not once a name.
std::uint64_t firstFreeNumber(const NameScope& scope, std::string_view key, std::uint64_t start,
                              const SQLObject* except, std::uint64_t limit) {
    const std::string_view base = key.substr(0, key.size() - 1);
    auto isTaken = [&](std::uint64_t number) {
        return scope.holdsName(text("%@%ld", key, static_cast<std::int64_t>(number)), except);
    };
    const auto hints = scope.numberHints();
    std::uint64_t number = hints->firstCandidate(base, start);
    while (number - start < limit && isTaken(number)) {
        hints->remember(base, number, number);
        number = hints->firstCandidate(base, number);
    }
    // Among the numbers skipped may be the one that the object left out has itself.
    if (!except || number == start) return number;
    const std::string own = lowercased(except->getName());
    if (!std::string_view(own).starts_with(key)) return number;
    const auto ownNumber = plainNumber(std::string_view(own).substr(key.size()));
    const bool isEarlier = ownNumber && *ownNumber - start < number - start;
    return isEarlier && !isTaken(*ownNumber) ? *ownNumber : number;
}

}  // namespace

std::string SQLNameMatch::getValidNameForObject(const SQLObject& object, const OptionalText& originalName,
                                                const NameScope& container, bool canAddSchema) {
    const std::string name = trimmedProposal(originalName);
    auto comparisonKey = [&](std::string_view candidate) {
        return canAddSchema ? compNameWithSchema(candidate, object) : lowercased(candidate);
    };
    const std::string key = comparisonKey(name);
    // Kept: without the schema the name is looked up as it is among lower-case ones, so one with capitals is free.
    const bool passesAsItIs = !canAddSchema && key != name;
    if (passesAsItIs || !container.holdsName(key, &object)) return name;

    static const RegularExpression numbered(R"(^(.*)_(\d+)$)");
    Numbered parts{name, 1};
    if (auto match = numbered.firstMatch(name))
        parts = {std::string(match->group(1, name)), static_cast<std::uint64_t>(integerValue(match->group(2, name)))};
    return nameWithNumber(parts.base, firstFreeNumber(container, comparisonKey(parts.base + "_"), parts.start, &object,
                                                      container.siblingCount(&object)));
}

std::string SQLNameMatch::getValidName(const OptionalText& name, const NameScope& container) {
    const std::string proposal = trimmedProposal(name);
    if (!isObjectNamePresent(proposal, container)) return proposal;
    Numbered parts{proposal, 1};
    // Kept: any last underscore counts, also one without a number behind it.
    if (const std::size_t underscore = proposal.rfind('_'); underscore != std::string::npos)
        parts = {proposal.substr(0, underscore),
                 static_cast<std::uint64_t>(integerValue(proposal.substr(underscore + 1)))};
    return nameWithNumber(parts.base, firstFreeNumber(container, lowercased(parts.base + "_"), parts.start, nullptr,
                                                      std::numeric_limits<std::uint64_t>::max()));
}

bool SQLNameMatch::isObjectNamePresent(std::string_view name, const NameScope& container) {
    return container.holdsName(lowercased(name), nullptr);
}

bool SQLNameMatch::isObjectNamePresent(std::string_view name, const NameScope& container, const SQLObject* curObject) {
    return container.holdsName(lowercased(name), curObject);
}

std::string SQLNameMatch::compNameWithSchema(std::string_view name, const SQLObject& object) {
    const std::string schema = object.classCanUseSchemaName() ? object.getSchemaName() : std::string();
    if (schema.empty() || !SQLObjectPeer::splitNameBySchema(name).schemaPart.empty()) return lowercased(name);
    if (name.starts_with(schema) && name.substr(schema.size()).starts_with('.')) return lowercased(name);
    return lowercased(text("%@.%@", schema, name));
}

IncrementingNameParts SQLNameMatch::namePartsForIncrementing(std::string_view name) {
    static const RegularExpression numbered(R"(^(.*?)_(((fk)_)?(\d+))$)");
    if (!numbered.error().empty())
        log(text("[WARN] static regex failed in SQLNameMatch nameParts for incrementing %@", numbered.error()));
    const auto match = numbered.firstMatch(name);
    if (!match) return {std::string(name), std::nullopt, std::nullopt};
    auto part = [&](std::size_t index) {
        return match->groups[index] ? OptionalText(match->group(index, name)) : std::nullopt;
    };
    return {std::string(match->group(1, name)), part(5), part(4)};
}

}  // namespace vellicor
