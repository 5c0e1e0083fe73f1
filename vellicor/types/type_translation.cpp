// vellicor/types/type_translation.cpp — finding the type of another dialect that holds the same values.
#include "vellicor/types/type_translation.h"

#include <algorithm>
#include <optional>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"
#include "vellicor/types/type_text.h"
#include "vellicor/types/type_values.h"

namespace vellicor {

namespace {

constexpr std::string_view kGradeNames[] = {"exact", "widening", "lossy", "unknown"};
// Where generic looks for a name that is not its own.
constexpr TypeDialect kKnownBest[] = {TypeDialect::Postgres, TypeDialect::MySQL,  TypeDialect::SQLServer,
                                      TypeDialect::Oracle,   TypeDialect::SQLite, TypeDialect::Sybase};

struct TypePlace {
    const TypeRow* row = nullptr;
    std::string size;
    TypeValues values;
};

std::string digitsText(std::uint64_t digits, std::uint64_t fraction) {
    return fraction == 0 ? std::to_string(digits) : text("%lu,%lu", digits + fraction, fraction);
}

/// The size with which the row comes nearest to the values; empty when it goes without.
std::string sizeFor(const TypeRow& row, const TypeValues& values) {
    const std::uint64_t most = row.most;
    switch (row.family) {
        case TypeFamily::Decimal:
        case TypeFamily::Money: {
            const bool isUnlimited = values.digits + values.fraction > most && row.has(type_flags::kUnlimited);
            if (most == 0 || isUnlimited) return {};
            if (row.has(type_flags::kAnything) && values.digits + values.fraction > most) return {};
            std::uint64_t fraction =
                std::min({values.fraction, static_cast<std::uint64_t>(std::max<std::int64_t>(row.low, 0)), most});
            // Of what is too much on both sides of the point, the side before it gets more.
            if (values.digits > most - fraction) fraction = std::min(fraction, most / 3);
            return digitsText(std::min(values.digits, most - fraction), fraction);
        }
        case TypeFamily::Bits:
            return row.has(type_flags::kVarying) && row.usual == 0 && values.digits >= most
                       ? std::string()
                       : std::to_string(std::min(values.digits, most));
        case TypeFamily::Text: {
            if (most == 0) return {};
            const bool isCounted =
                row.has(type_flags::kBytes) && !(row.has(type_flags::kCharWord) && values.characters != values.bytes);
            const std::uint64_t length = std::min(isCounted ? values.bytes : values.characters, most);
            return std::to_string(length) + (row.has(type_flags::kBytes) && !isCounted ? " CHAR" : "");
        }
        case TypeFamily::Binary: return most == 0 ? std::string() : std::to_string(std::min(values.bytes, most));
        case TypeFamily::Time:
        case TypeFamily::Timestamp: {
            if (most == 0) return {};
            const std::uint64_t digits = std::min(values.fraction, most);
            return digits == row.usual ? std::string() : std::to_string(digits);
        }
        default: return {};
    }
}

bool isLength(TypeFamily family) { return family == TypeFamily::Text || family == TypeFamily::Binary; }

bool isCandidate(const TypeRow& row, const TypeValues& values, TypeOptions options) {
    if (row.has(type_flags::kReadOnly) || row.family != values.family) return false;
    // Padding is for what is padded.
    return !(row.has(type_flags::kFixed) && !values.has(type_flags::kFixed)) &&
           !(options.counts && row.family != TypeFamily::Integer);
}

TypePlace placed(const TypeRow& row, const TypeValues& values) {
    TypePlace place{&row, sizeFor(row, values), {}};
    place.values = valuesOf(row, TypeText::parsed(text("%@(%@)", row.name(), place.size)));
    return place;
}

/// The row that fits best, the first of them; null unless it fits as well as asked.
std::optional<TypePlace> placeIn(TypeDialect dialect, const TypeValues& values, TypeOptions options, TypeFit least) {
    std::optional<TypePlace> best;
    TypeFit bestFit = TypeFit::None;
    // What is padded stays so if it can; what has no length gets none if it need not.
    for (const bool isFixed : {true, false}) {
        for (const bool isSized : {false, true}) {
            if (isSized && values.has(type_flags::kUnsized) && bestFit == TypeFit::All) break;
            for (const TypeRow& row : typesOf(dialect)) {
                const bool comesNow =
                    !values.has(type_flags::kUnsized) || !isLength(row.family) || (row.most != 0) == isSized;
                if (row.has(type_flags::kFixed) != isFixed || !comesNow || !isCandidate(row, values, options)) continue;
                TypePlace place = placed(row, values);
                const TypeFit fit = fitOf(place.values, values);
                if (best && (fit < bestFit || (fit == bestFit && fit != TypeFit::None))) continue;
                bestFit = fit;
                best = std::move(place);
            }
            if (!values.has(type_flags::kUnsized)) break;
        }
        if (bestFit == TypeFit::All) break;
    }
    return bestFit >= least ? best : std::nullopt;
}

bool isSame(const TypeValues& a, const TypeValues& b) {
    return !a.has(type_flags::kAnything) && a.family == b.family && fitOf(a, b) == TypeFit::All &&
           fitOf(b, a) == TypeFit::All;
}

struct Source {
    const TypeRow* row = nullptr;
    TypeDialect dialect{};
};

Source sourceOf(TypeDialect from, const TypeText& type) {
    if (const TypeRow* row = findType(from, type)) return {row, from};
    if (from == TypeDialect::Generic)
        for (const TypeDialect other : kKnownBest)
            if (const TypeRow* row = findType(other, type)) return {row, other};
    return {};
}

/// SQLite takes any name; what stands in it decides.
std::string_view sqliteNameFor(std::string_view name) {
    const auto has = [&](std::string_view part) { return name.find(part) != std::string_view::npos; };
    if (has("INT")) return "INTEGER";
    if (has("CHAR") || has("CLOB") || has("TEXT")) return "TEXT";
    if (has("BLOB") || name.empty()) return "BLOB";
    if (has("REAL") || has("FLOA") || has("DOUB")) return "REAL";
    return {};
}

/// "VARCHAR stops at 65,535 bytes": why a text with a length became one without.
std::string limitText(TypeDialect dialect, const TypeValues& values) {
    for (const TypeRow& row : typesOf(dialect))
        if (row.family == values.family && row.most != 0 && !row.has(type_flags::kReadOnly | type_flags::kFixed) &&
            (values.has(type_flags::kNarrow) || !row.has(type_flags::kNarrow)))
            return text("%@ stops at %@", row.name(),
                        row.high ? lengthText(row.high, "bytes")
                                 : lengthText(row.most, row.has(type_flags::kBytes) || row.family == TypeFamily::Binary
                                                            ? "bytes"
                                                            : "characters"));
    return "takes more";
}

std::string reasonFor(TypeDialect to, const TypePlace& place, const TypeValues& own, const TypeValues& values,
                      TypeGrade grade) {
    if (grade == TypeGrade::Lossy) return lossOf(place.values, values);
    const TypeFamily family = place.row->family;
    if (own.family == TypeFamily::Enumeration || own.family == TypeFamily::Set)
        return "takes any text, not only the values";
    if (family == TypeFamily::Text && own.family != TypeFamily::Text)
        return text("keeps the %@ as its text",
                    own.family == TypeFamily::Worded ? "value" : typeFamilyName(own.family));
    if (place.row->has(type_flags::kAnything)) return "the engine keeps no limits";
    if (family != own.family) return text("%@ in place of %@", typeFamilyName(family), typeFamilyName(own.family));
    return isLength(family) && !own.has(type_flags::kUnsized) && place.row->most == 0 ? limitText(to, own)
                                                                                      : "takes more";
}

TypeTranslation unknownType(std::string_view dialect, std::string_view type) {
    return {
        std::string(type), TypeGrade::Unknown, text("%@ has no type %@ that is known here", dialect, type), false, {}};
}

TypeTranslation translatedType(TypeDialect to, const Source& source, const TypeText& type, TypeOptions options) {
    TypeValues own = valuesOf(*source.row, type);
    if (type.isArray) own = {TypeFamily::Array};
    TypeTranslation made;
    made.counts = source.row->has(type_flags::kCounts) && !type.isArray;
    options.counts = (options.counts || made.counts) && own.family == TypeFamily::Integer;

    // An enumeration is written as it stands where there are any.
    if (own.family == TypeFamily::Enumeration || own.family == TypeFamily::Set) {
        for (const TypeRow& row : typesOf(to))
            if (row.family == own.family) {
                made.text = text("%@(%@)", row.name(), joined(type.arguments, ","));
                return made;
            }
        if (own.family == TypeFamily::Enumeration) made.labels = type.arguments;
    }
    // First a place without loss, then one of the same kind, then its text, at last what comes nearest.
    std::optional<TypePlace> place;
    TypeValues values;
    const auto search = [&](TypeFit least) {
        for (const TypeFamily family : familiesFor(own.family)) {
            if (place) return;
            const bool isLastResort = family == TypeFamily::Text && own.family != TypeFamily::Text;
            if (isLastResort && least == TypeFit::All) return;
            values = asFamily(own, family);
            place = placeIn(to, values, options, least);
        }
    };
    for (const TypeFit least : {TypeFit::All, TypeFit::Shape, TypeFit::None}) search(least);
    if (!place && options.counts) {  // no whole numbers by that name
        options.counts = false;
        search(TypeFit::None);
    }
    if (!place) return unknownType(typeDialectNames()[static_cast<std::size_t>(to)], type.name);
    made.text = sizedName(*place->row, place->size);
    if (fitOf(place->values, values) != TypeFit::All)
        made.grade = TypeGrade::Lossy;
    else
        made.grade = isSame(place->values, own) ? TypeGrade::Exact : TypeGrade::Widening;
    if (made.grade != TypeGrade::Exact) made.reason = reasonFor(to, *place, own, values, made.grade);
    return made;
}

/// The arguments with which a row shows in the table.
std::string tableSize(const TypeRow& row) {
    switch (row.family) {
        case TypeFamily::Decimal: return row.most ? "10,2" : "";
        case TypeFamily::Bits: return row.most ? "8" : "";
        case TypeFamily::Text:
        case TypeFamily::Binary: return row.most ? "20" : "";
        case TypeFamily::Enumeration:
        case TypeFamily::Set: return "'a','b'";
        case TypeFamily::Time:
        case TypeFamily::Timestamp: return row.most ? std::to_string(std::min(row.most, 6U)) : "";
        default: return {};
    }
}

}  // namespace

std::string_view typeGradeName(TypeGrade grade) { return kGradeNames[static_cast<std::size_t>(grade)]; }

TypeTranslation translateType(std::string_view from, std::string_view to, std::string_view type, TypeOptions options) {
    const auto source = typeDialectNamed(from), target = typeDialectNamed(to);
    if (!source || !target || source == target) return {std::string(type), TypeGrade::Exact, {}, false, {}};
    const TypeText parsed = TypeText::parsed(type);
    // A name that is not generic's own may well be written for the dialect that is asked for.
    if (source == TypeDialect::Generic && !findType(*source, parsed) && findType(*target, parsed))
        return {std::string(type), TypeGrade::Exact, {}, false, {}};
    Source found = sourceOf(*source, parsed);
    if (!found.row && source == TypeDialect::SQLite)
        if (const std::string_view name = sqliteNameFor(parsed.name); !name.empty())
            found = sourceOf(*source, TypeText{std::string(name), {}, false});
    if (!found.row) return unknownType(typeDialectNames()[static_cast<std::size_t>(*source)], type);
    return translatedType(*target, found, parsed, options);
}

std::optional<TypeFamily> familyOfType(std::string_view dialect, std::string_view type) {
    const auto known = typeDialectNamed(dialect);
    if (!known) return std::nullopt;
    const TypeText parsed = TypeText::parsed(type);
    const Source source = sourceOf(*known, parsed);
    if (!source.row) return std::nullopt;
    return parsed.isArray ? TypeFamily::Array : source.row->family;
}

std::vector<TypePair> typePairs(std::optional<TypeDialect> from) {
    std::vector<TypePair> pairs;
    const std::span<const std::string_view> names = typeDialectNames();
    for (std::size_t own = 0; own < names.size(); ++own) {
        if (from && static_cast<std::size_t>(*from) != own) continue;
        for (const TypeRow& row : typesOf(static_cast<TypeDialect>(own))) {
            const std::string type = sizedName(row, tableSize(row));
            if (findType(static_cast<TypeDialect>(own), TypeText::parsed(type)) != &row) continue;
            for (std::size_t other = 0; other < names.size(); ++other)
                if (other != own)
                    pairs.push_back({static_cast<TypeDialect>(own), static_cast<TypeDialect>(other), row.family, type,
                                     translateType(names[own], names[other], type)});
        }
    }
    return pairs;
}

}  // namespace vellicor
