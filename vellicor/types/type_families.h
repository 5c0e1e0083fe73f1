// vellicor/types/type_families.h — what the types of ten dialects hold, as data.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace vellicor {

/// The dialects that the table knows, in the order of the registry.
enum class TypeDialect : std::uint8_t {
    Generic,
    OpenBase,
    SQLite,
    Sybase,
    Postgres,
    FileMaker,
    SQLServer,
    Redshift,
    MySQL,
    Oracle
};
/// Their names in the registry, in that order.
[[nodiscard]] std::span<const std::string_view> typeDialectNames();
/// The dialect of a registry name in any case; null for one that the table does not know, such as a plug-in's.
[[nodiscard]] std::optional<TypeDialect> typeDialectNamed(std::string_view name);

enum class TypeFamily : std::uint8_t {
    Integer,
    Decimal,
    Money,
    Real,
    Boolean,
    Bits,
    Text,
    Binary,
    Date,
    Time,
    Timestamp,
    Interval,
    Json,
    Xml,
    Uuid,
    Enumeration,
    Set,
    Array,
    Spatial,
    Worded,  ///< known by its text alone: network addresses, ranges, row identifiers
};
/// "integer", "exact number", "date and time" ...
[[nodiscard]] std::string_view typeFamilyName(TypeFamily family);

namespace type_flags {
enum Flag : unsigned {
    kReadOnly = 1U << 0,   ///< understood, never chosen
    kFixed = 1U << 1,      ///< text or binary padded to its length
    kNarrow = 1U << 2,     ///< text of one code page, not of Unicode
    kBytes = 1U << 3,      ///< the declared length counts bytes
    kCounts = 1U << 4,     ///< the column counts by itself
    kInstant = 1U << 5,    ///< a moment, shown in the zone of the session
    kOffset = 1U << 6,     ///< a moment with the zone that was given
    kAnything = 1U << 7,   ///< limits are written, and not kept by the engine
    kUnlimited = 1U << 8,  ///< without a size it takes as much as `high` and `low` say
    kVarying = 1U << 9,    ///< bits of any number up to the length
    kMonths = 1U << 10,    ///< intervals of years and months
    kDays = 1U << 11,      ///< intervals of days and seconds
    kCharWord = 1U << 12,  ///< a length in characters is written "(n CHAR)"
    kRounded = 1U << 13,   ///< numbers inside lose what a double cannot hold
    kUnsized = 1U << 14,   ///< of values: no length is declared
};
}  // namespace type_flags

/// "About a gigabyte": what the longest types are told apart by no longer, since no client sends more at once.
inline constexpr std::uint64_t kLargeBytes = 1'073'741'823;

/// One type of a dialect. What the numbers mean depends on the family:
///
///     Integer          low..high
///     Decimal, Money   high digits, low of them behind the point; most: the widest declared; usual: without a size
///     Real             high bits of mantissa
///     Bits             most: the longest; usual: without a size
///     Text, Binary     most: the longest declared (0: takes no length); high: bytes that fit (0: as many as declared);
///                      usual: the length without a size (0: as much as fits)
///     Date, Timestamp  years low..high; most: digits of the second's fraction (0: none); usual: without a size
///     Time             high hours; most and usual as above
///     Spatial          low: the shape, 0 for any
///     Interval, Worded high characters of the text form
struct TypeRow {
    /// Upper-case names, the first one is written: "INTEGER|INT". "%" marks the place of a size inside a name.
    std::string_view names;
    TypeFamily family;
    unsigned flags = 0;
    std::int64_t low = 0;
    std::uint64_t high = 0;
    std::uint32_t most = 0;
    std::uint32_t usual = 0;

    [[nodiscard]] constexpr bool has(unsigned flag) const { return (flags & flag) != 0; }
    /// The name that is written, "%" included.
    [[nodiscard]] constexpr std::string_view name() const { return names.substr(0, names.find('|')); }
};

/// The types of a dialect; within a family the narrower stands before the wider, and the preferred before its like.
[[nodiscard]] std::span<const TypeRow> typesOf(TypeDialect dialect);
/// The families in which a value finds a place, its own first.
[[nodiscard]] std::span<const TypeFamily> familiesFor(TypeFamily family);

}  // namespace vellicor
