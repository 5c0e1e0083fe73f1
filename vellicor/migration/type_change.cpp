// vellicor/migration/type_change.cpp — what a change of a column's type does to the values that are there.
#include "vellicor/migration/type_change.h"

#include <algorithm>
#include <array>
#include <optional>

#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

namespace {

enum class Family { Integer, Decimal, Float, Text, Date, Time, Moment, Flag, Other };

struct KnownType {
    std::string_view name;
    Family family;
    long width;  // rank in the family; the size when none is written, -1: without limit
};
constexpr long kNoLimit = 1L << 40;
constexpr std::array kTypes{
    KnownType{"TINYINT", Family::Integer, 1},
    KnownType{"SMALLINT", Family::Integer, 2},
    KnownType{"INT2", Family::Integer, 2},
    KnownType{"SMALLSERIAL", Family::Integer, 2},
    KnownType{"MEDIUMINT", Family::Integer, 3},
    KnownType{"INT", Family::Integer, 4},
    KnownType{"INTEGER", Family::Integer, 4},
    KnownType{"INT4", Family::Integer, 4},
    KnownType{"SERIAL", Family::Integer, 4},
    KnownType{"BIGINT", Family::Integer, 8},
    KnownType{"INT8", Family::Integer, 8},
    KnownType{"BIGSERIAL", Family::Integer, 8},
    KnownType{"DECIMAL", Family::Decimal, 0},
    KnownType{"NUMERIC", Family::Decimal, 0},
    KnownType{"DEC", Family::Decimal, 0},
    KnownType{"NUMBER", Family::Decimal, 0},
    KnownType{"REAL", Family::Float, 4},
    KnownType{"FLOAT4", Family::Float, 4},
    KnownType{"FLOAT", Family::Float, 6},
    KnownType{"DOUBLE", Family::Float, 8},
    KnownType{"FLOAT8", Family::Float, 8},
    KnownType{"DOUBLE PRECISION", Family::Float, 8},
    KnownType{"CHAR", Family::Text, 1},
    KnownType{"CHARACTER", Family::Text, 1},
    KnownType{"NCHAR", Family::Text, 1},
    KnownType{"VARCHAR", Family::Text, kNoLimit},
    KnownType{"VARCHAR2", Family::Text, 1},
    KnownType{"NVARCHAR", Family::Text, 1},
    KnownType{"CHARACTER VARYING", Family::Text, kNoLimit},
    KnownType{"TINYTEXT", Family::Text, 255},
    KnownType{"TEXT", Family::Text, kNoLimit},
    KnownType{"CITEXT", Family::Text, kNoLimit},
    KnownType{"MEDIUMTEXT", Family::Text, kNoLimit},
    KnownType{"LONGTEXT", Family::Text, kNoLimit},
    KnownType{"CLOB", Family::Text, kNoLimit},
    KnownType{"DATE", Family::Date, 0},
    KnownType{"TIME", Family::Time, 0},
    KnownType{"TIMESTAMP", Family::Moment, 0},
    KnownType{"DATETIME", Family::Moment, 0},
    KnownType{"TIMESTAMPTZ", Family::Moment, 0},
    KnownType{"BOOLEAN", Family::Flag, 0},
    KnownType{"BOOL", Family::Flag, 0},
};

struct Parsed {
    std::string base;
    Family family = Family::Other;
    long size = 0;
    long scale = 0;
    bool isUnsigned = false;
};

Parsed parsedChange(std::string_view type) {
    std::string upper = uppercased(type);
    Parsed result;
    if (const std::size_t at = upper.find(" UNSIGNED"); at != std::string::npos) {
        result.isUnsigned = true;
        upper.erase(at, 9);
    }
    const std::size_t open = upper.find('(');
    result.base = std::string(trimmed(std::string_view(upper).substr(0, open)));
    const auto* known = std::ranges::find(kTypes, std::string_view(result.base), &KnownType::name);
    if (known == kTypes.end() && result.base.starts_with("TIMESTAMP"))
        known = std::ranges::find(kTypes, std::string_view("TIMESTAMP"), &KnownType::name);
    if (known != kTypes.end()) {
        result.family = known->family;
        result.size = known->width;
    }
    if (open == std::string::npos || result.family == Family::Integer) return result;
    const std::string inner = upper.substr(open + 1);
    result.size = std::atol(inner.c_str());
    if (const std::size_t comma = inner.find(','); comma != std::string::npos)
        result.scale = std::atol(inner.c_str() + comma + 1);
    return result;
}

using Effect = TypeChange::Effect;

TypeChange narrower(std::string_view before, std::string_view after) {
    return {Effect::MayFail, text("a value of %@ may not fit into %@", before, after)};
}
TypeChange rounded(std::string_view before, std::string_view after) {
    return {Effect::LosesData, text("%@ cannot hold every digit of %@", after, before)};
}

}  // namespace

TypeChange typeChange(std::string_view before, std::string_view after) {
    const Parsed a = parsedChange(before);
    const Parsed b = parsedChange(after);
    if (a.base == b.base && a.size == b.size && a.scale == b.scale && a.isUnsigned == b.isUnsigned) return {};
    const TypeChange widens{Effect::Widens, {}};
    const bool fits = b.size >= a.size;
    const bool signFits = a.isUnsigned == b.isUnsigned || (a.isUnsigned && b.size > a.size);
    switch (a.family) {
        case Family::Integer:
            if (b.family == Family::Integer) return fits && signFits ? widens : narrower(before, after);
            if (b.family == Family::Decimal)
                return b.size == 0 || b.size - b.scale >= 20 ? widens : narrower(before, after);
            if (b.family == Family::Float) return b.size >= 8 && a.size <= 4 ? widens : rounded(before, after);
            break;
        case Family::Decimal:
            if (b.family == Family::Decimal) {
                if (b.size == 0) return widens;
                if (b.scale < a.scale || a.size == 0) return rounded(before, after);
                return b.size - b.scale >= a.size - a.scale ? widens : narrower(before, after);
            }
            if (b.family == Family::Float) return rounded(before, after);
            if (b.family == Family::Integer)
                return a.scale > 0 || a.size == 0 ? rounded(before, after) : narrower(before, after);
            break;
        case Family::Float:
            if (b.family == Family::Float) return fits ? widens : rounded(before, after);
            if (b.family == Family::Integer || b.family == Family::Decimal) return rounded(before, after);
            break;
        case Family::Text:
            if (b.family == Family::Text) return fits ? widens : narrower(before, after);
            break;
        case Family::Date:
            if (b.family == Family::Moment) return widens;
            break;
        case Family::Moment:
            if (b.family == Family::Moment)
                return {Effect::MayFail, text("%@ and %@ read time zones and fractions differently", before, after)};
            if (b.family == Family::Date || b.family == Family::Time)
                return {Effect::LosesData, text("%@ keeps only a part of %@", after, before)};
            break;
        default: break;
    }
    if (b.family == Family::Text && a.family != Family::Other) return b.size >= 40 ? widens : narrower(before, after);
    return {Effect::MayFail, text("not every %@ is a %@", before, after)};
}

}  // namespace vellicor
