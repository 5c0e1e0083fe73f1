// vellicor/model/name_scope.h — a set of siblings among which names must be unique, as naming sees it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "vellicor/model/forward.h"
#include "vellicor/platform/guarded.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// The number that a text is the "%ld" form of; null for any other text, such as one with leading zeros.
[[nodiscard]] std::optional<std::uint64_t> plainNumber(std::string_view text);

/// Remembers which numbers are taken behind a base name, so that many objects of one name are numbered without trying
/// each number again. A number that becomes free must be reported by `nameBecameFree`. Numbers are signed 64-bit ones
/// in unsigned arithmetic: behind the largest comes the smallest.
class NumberHints {
public:
    /// From `start` on, the first number not known to be taken; `start` itself when nothing is known. Bases are in
    /// lower case.
    [[nodiscard]] std::uint64_t firstCandidate(std::string_view base, std::uint64_t start) const;
    /// All numbers from `start` up to and including `last` are taken behind `base`.
    void remember(std::string_view base, std::uint64_t start, std::uint64_t last);
    /// An element has this name no more; the name is lower-case.
    void nameBecameFree(std::string_view name);
    void clear() { _taken.clear(); }

private:
    /// First and last numbers of runs that neither touch nor overlap.
    using Runs = std::map<std::uint64_t, std::uint64_t>;
    std::unordered_map<std::string, Runs, TextHash, std::equal_to<>> _taken;  // by base
};

/// A container or a table: anything whose elements have names that must differ.
class NameScope {
public:
    virtual ~NameScope() = default;
    /// True when an element other than `except` (null for none) has a `getName` whose lower case is `lowercasedName`.
    /// Takes the list's lock.
    [[nodiscard]] virtual bool holdsName(std::string_view lowercasedName, const SQLObject* except) const = 0;
    /// How many elements there are, `except` left out.
    [[nodiscard]] virtual std::size_t siblingCount(const SQLObject* except) const = 0;
    /// Holds the list's lock while it lives.
    [[nodiscard]] virtual LockedHandle<NumberHints> numberHints() const = 0;
};

}  // namespace vellicor
