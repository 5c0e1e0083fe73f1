// vellicor/types/type_values.cpp — the values of types, and whether one type holds those of another.
#include "vellicor/types/type_values.h"

#include <algorithm>
#include <bit>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

constexpr unsigned kZones = type_flags::kInstant | type_flags::kOffset;
constexpr std::uint64_t kMostBytesInCharacter = 4;

std::uint64_t digitsOf(std::uint64_t number) {
    std::uint64_t digits = 1;
    while (number /= 10) ++digits;
    return digits;
}

/// 65535 as "65,535".
std::string grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
    return digits;
}

void setText(TypeValues& values, std::uint64_t characters, std::uint64_t bytes) {
    values.characters = std::min(characters, bytes);
    values.bytes = std::min(bytes, values.characters * (values.has(type_flags::kNarrow) ? 1 : kMostBytesInCharacter));
}

void setLength(TypeValues& values, const TypeRow& row, const TypeText& type) {
    const std::uint64_t room = row.high ? row.high : kLargeBytes;
    if (row.most == 0 || (row.usual == 0 && !type.number(0))) values.flags |= type_flags::kUnsized;
    const std::uint64_t declared = row.most == 0 ? room : type.number(0).value_or(row.usual ? row.usual : room);
    if (values.family == TypeFamily::Binary) {
        values.bytes = std::min(declared, room);
        return;
    }
    const bool saysCharacters = row.has(type_flags::kCharWord) && !type.arguments.empty() &&
                                uppercased(type.arguments.front()).ends_with("CHAR");
    if (row.has(type_flags::kBytes) && !saysCharacters)
        values.characters = values.bytes = std::min(declared, room);
    else
        setText(values, declared, room);
}

void setDigits(TypeValues& values, const TypeRow& row, const TypeText& type) {
    const auto precision = type.number(0);
    if (row.most == 0 || (!precision && row.usual == 0)) {
        values.fraction = static_cast<std::uint64_t>(row.low);
        values.digits = row.high - std::min(row.high, values.fraction);
        // A number whose point floats has all its digits before it or behind it.
        if (row.high < values.fraction) values.digits = row.high + values.fraction;
        return;
    }
    const std::uint32_t all = precision.value_or(row.usual);
    values.fraction = type.number(1).value_or(0);
    values.digits = all - std::min<std::uint64_t>(all, values.fraction);
}

void setTextForm(TypeValues& values, const TypeText& type) {
    std::uint64_t longest = 0, sum = 0;
    for (const std::string& label : type.arguments) {
        const std::uint64_t length = utf16Length(literalContent(label));
        longest = std::max(longest, length);
        sum += length + 1;
    }
    values.characters = values.family == TypeFamily::Set ? sum - std::min<std::uint64_t>(sum, 1) : longest;
}

bool holdsZones(const TypeValues& outer, const TypeValues& inner) {
    return (outer.flags & kZones) == (inner.flags & kZones) ||
           (outer.has(type_flags::kOffset) && inner.has(type_flags::kInstant));
}

}  // namespace

TypeValues valuesOf(const TypeRow& row, const TypeText& type) {
    TypeValues values{row.family, row.flags};
    values.low = row.low;
    values.high = row.high;
    switch (row.family) {
        case TypeFamily::Decimal:
        case TypeFamily::Money: setDigits(values, row, type); break;
        case TypeFamily::Real:
            if (row.most != 0)
                if (const auto bits = type.number(0); bits && type.arguments.size() == 1)
                    values.high = *bits <= 24 ? 24 : 53;
            break;
        case TypeFamily::Bits: values.digits = type.number(0).value_or(row.usual ? row.usual : row.most); break;
        case TypeFamily::Text:
        case TypeFamily::Binary: setLength(values, row, type); break;
        case TypeFamily::Time:
        case TypeFamily::Timestamp:
            values.fraction = row.most ? type.number(0).value_or(row.usual) : row.usual;
            values.characters = 40;
            break;
        case TypeFamily::Enumeration:
        case TypeFamily::Set: setTextForm(values, type); break;
        case TypeFamily::Interval:
        case TypeFamily::Worded: values.characters = row.high; break;
        case TypeFamily::Uuid: values.characters = 36; break;
        case TypeFamily::Date: values.characters = 20; break;
        default: break;
    }
    return values;
}

TypeValues asFamily(const TypeValues& values, TypeFamily family) {
    if (values.family == family) return values;
    TypeValues made{family, 0};
    switch (family) {
        case TypeFamily::Integer:  // of a boolean
            made.high = 1;
            break;
        case TypeFamily::Decimal:
            if (values.family == TypeFamily::Boolean) {
                made.digits = 1;
            } else if (values.family == TypeFamily::Integer) {
                const std::uint64_t least = values.low < 0 ? ~static_cast<std::uint64_t>(values.low) : 0;
                made.digits = digitsOf(std::max(values.high, least));
            } else {
                made.digits = values.digits;
                made.fraction = values.fraction;
            }
            break;
        case TypeFamily::Timestamp:
            made.low = values.low;
            made.high = values.high;
            break;
        case TypeFamily::Text:
            switch (values.family) {
                case TypeFamily::Bits:
                    made.flags =
                        type_flags::kNarrow | (values.has(type_flags::kVarying) ? 0U : unsigned{type_flags::kFixed});
                    break;
                case TypeFamily::Uuid: made.flags = type_flags::kNarrow | type_flags::kFixed; break;
                case TypeFamily::Date:
                case TypeFamily::Time:
                case TypeFamily::Timestamp:
                case TypeFamily::Interval:
                case TypeFamily::Worded: made.flags = type_flags::kNarrow; break;
                default: break;
            }
            setText(made,
                    values.family == TypeFamily::Bits ? values.digits
                    : values.characters               ? values.characters
                                                      : kLargeBytes,
                    kLargeBytes);
            break;
        default: made.characters = values.characters; break;
    }
    return made;
}

namespace {

bool holdsShape(const TypeValues& outer, const TypeValues& inner) {
    if (outer.has(type_flags::kAnything) && outer.family != TypeFamily::Decimal && outer.family != TypeFamily::Text)
        return true;
    switch (outer.family) {
        case TypeFamily::Integer: return outer.low <= inner.low && inner.high <= outer.high;
        case TypeFamily::Decimal:
        case TypeFamily::Money:
            // What rounds to a number of digits minds them all, wherever the point stands.
            if (outer.has(type_flags::kAnything))
                return inner.digits + inner.fraction <= static_cast<std::uint64_t>(outer.low);
            return inner.digits <= outer.digits && inner.fraction <= outer.fraction;
        case TypeFamily::Real: return inner.high <= outer.high;
        case TypeFamily::Bits:
            return inner.digits <= outer.digits && (outer.has(type_flags::kVarying) ||
                                                    (!inner.has(type_flags::kVarying) && inner.digits == outer.digits));
        case TypeFamily::Text:
            return inner.characters <= outer.characters && inner.bytes <= outer.bytes &&
                   (inner.has(type_flags::kNarrow) || !outer.has(type_flags::kNarrow));
        case TypeFamily::Binary: return inner.bytes <= outer.bytes;
        case TypeFamily::Interval: return (inner.flags & (type_flags::kMonths | type_flags::kDays) & ~outer.flags) == 0;
        case TypeFamily::Spatial: return outer.low == 0 || outer.low == inner.low;
        default: return true;
    }
}

bool holdsRange(const TypeValues& outer, const TypeValues& inner) {
    switch (outer.family) {
        case TypeFamily::Date:
        case TypeFamily::Timestamp:
            return outer.low <= inner.low && inner.high <= outer.high && inner.fraction <= outer.fraction;
        case TypeFamily::Time: return inner.high <= outer.high && inner.fraction <= outer.fraction;
        case TypeFamily::Json: return inner.has(type_flags::kRounded) || !outer.has(type_flags::kRounded);
        default: return true;
    }
}

}  // namespace

TypeFit fitOf(const TypeValues& outer, const TypeValues& inner) {
    if (!holdsShape(outer, inner)) return TypeFit::None;
    if (outer.has(type_flags::kAnything)) return TypeFit::All;
    if (!holdsZones(outer, inner))
        return (outer.flags & kZones) && (inner.flags & kZones) ? TypeFit::Moment : TypeFit::Shape;
    return holdsRange(outer, inner) ? TypeFit::All : TypeFit::Zone;
}

std::string lengthText(std::uint64_t length, std::string_view unit) {
    return length >= kLargeBytes ? text("about a gigabyte") : text("%@ %@", grouped(length), unit);
}

std::string lossOf(const TypeValues& outer, const TypeValues& inner) {
    std::vector<std::string> reasons;
    switch (outer.family) {
        case TypeFamily::Integer: {
            const auto range = [](const TypeValues& values) { return text("%ld to %lu", values.low, values.high); };
            reasons.push_back(text("holds %@, not %@", range(outer), range(inner)));
            break;
        }
        case TypeFamily::Decimal:
        case TypeFamily::Money:
            if (outer.has(type_flags::kAnything))
                reasons.push_back(text("keeps %ld digits", outer.low));
            else
                reasons.push_back(text("holds %@ digits before and %@ behind the point, not %@ and %@",
                                       grouped(outer.digits), grouped(outer.fraction), grouped(inner.digits),
                                       grouped(inner.fraction)));
            break;
        case TypeFamily::Real: reasons.push_back(text("keeps %lu bits, not %lu", outer.high, inner.high)); break;
        case TypeFamily::Bits:
            reasons.push_back(outer.digits < inner.digits ? text("stops at %@ bits", grouped(outer.digits))
                                                          : text("fills up to %@ bits", grouped(outer.digits)));
            break;
        case TypeFamily::Text:
            if (outer.has(type_flags::kNarrow) && !inner.has(type_flags::kNarrow))
                reasons.emplace_back("holds one code page only");
            if (inner.characters > outer.characters)
                reasons.push_back(
                    text("stops at %@",
                         lengthText(outer.characters, outer.has(type_flags::kBytes) ? "bytes" : "characters")));
            else if (inner.bytes > outer.bytes)
                reasons.push_back(text("stops at %@", lengthText(outer.bytes, "bytes")));
            break;
        case TypeFamily::Binary: reasons.push_back(text("stops at %@", lengthText(outer.bytes, "bytes"))); break;
        case TypeFamily::Time:
            if (inner.high > outer.high) reasons.push_back(text("stops at %lu hours and knows no sign", outer.high));
            break;
        case TypeFamily::Json: reasons.emplace_back("rounds numbers that are no double"); break;
        case TypeFamily::Interval: reasons.emplace_back("has months or days, not both"); break;
        case TypeFamily::Spatial: reasons.emplace_back("holds one shape only"); break;
        default: break;
    }
    const bool isTime = outer.family == TypeFamily::Time || outer.family == TypeFamily::Timestamp;
    if (isTime && inner.fraction > outer.fraction)
        reasons.push_back(text("keeps %lu digits of a second, not %lu", outer.fraction, inner.fraction));
    if ((outer.family == TypeFamily::Date || outer.family == TypeFamily::Timestamp) &&
        (inner.low < outer.low || inner.high > outer.high))
        reasons.push_back(text("holds years %ld to %lu", outer.low, outer.high));
    if (isTime && !holdsZones(outer, inner))
        reasons.emplace_back(!(outer.flags & kZones)   ? "keeps no time zone"
                             : !(inner.flags & kZones) ? "takes times to be in a zone"
                                                       : "keeps the moment, not its zone");
    return joined(reasons, "; ");
}

}  // namespace vellicor
