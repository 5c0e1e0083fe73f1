// vellicor/types/type_equivalents.cpp — the table of types: one list a dialect, one row a type.
#include <algorithm>

#include "vellicor/platform/text.h"
#include "vellicor/types/type_families.h"

namespace vellicor {

namespace {

/// One list a dialect, and the lists in the order of the dialects.
struct TypeTable {
    using enum TypeFamily;
    using enum type_flags::Flag;

    static constexpr std::string_view kNames[] = {"generic",   "OpenBase",  "SQLite",   "sybase", "postgres",
                                                  "FileMaker", "SQLServer", "Redshift", "mysql",  "Oracle"};

    static constexpr std::string_view kFamilyNames[] = {
        "integer", "exact number", "money",         "approximate number",
        "boolean", "bits",         "text",          "binary",
        "date",    "time",         "date and time", "interval",
        "JSON",    "XML",          "UUID",          "enumeration",
        "set",     "array",        "spatial",       "other"};

    static constexpr std::int64_t k8 = -128, k16 = -32768, k24 = -8388608, k32 = -2147483648LL, k64 = INT64_MIN;
    static constexpr std::uint64_t kMax8 = 127, kMax16 = 32767, kMax24 = 8388607, kMax32 = 2147483647,
                                   kMax64 = INT64_MAX;
    static constexpr std::uint64_t kMaxU8 = 255, kMaxU16 = 65535, kMaxU24 = 16777215, kMaxU32 = 4294967295,
                                   kMaxU64 = UINT64_MAX;
    static constexpr std::uint64_t kLarge = kLargeBytes;
    static constexpr std::uint64_t kDay = 24;  // hours

    static constexpr TypeRow kGeneric[] = {
        {"SMALLINT", Integer, 0, k16, kMax16},
        {"INTEGER|INT", Integer, 0, k32, kMax32},
        {"BIGINT", Integer, 0, k64, kMax64},
        {"DECIMAL|DEC", Decimal, 0, 38, 38, 38, 18},
        {"NUMERIC", Decimal, kReadOnly, 38, 38, 38, 18},
        {"REAL", Real, 0, 0, 24},
        {"DOUBLE PRECISION|DOUBLE", Real, 0, 0, 53},
        {"FLOAT", Real, kReadOnly, 0, 53, 53, 53},
        {"BOOLEAN|BOOL", Boolean},
        {"BIT", Bits, 0, 0, 0, 16384, 1},
        {"BIT VARYING", Bits, kVarying, 0, 0, 16384, 1},
        {"CHAR|CHARACTER", Text, kFixed, 0, 0, 255, 1},
        {"NCHAR|NATIONAL CHARACTER|NATIONAL CHAR", Text, kFixed | kReadOnly, 0, 0, 255, 1},
        {"VARCHAR|CHARACTER VARYING|CHAR VARYING", Text, 0, 0, 0, 32672},
        {"NVARCHAR|NCHAR VARYING|NATIONAL CHARACTER VARYING|NATIONAL CHAR VARYING", Text, kReadOnly, 0, 0, 32672},
        {"CLOB|CHARACTER LARGE OBJECT|NCLOB", Text, 0, 0, kLarge},
        {"BINARY", Binary, kFixed, 0, 0, 255, 1},
        {"VARBINARY|BINARY VARYING", Binary, 0, 0, 0, 32672},
        {"BLOB|BINARY LARGE OBJECT", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, 1, 9999},
        {"TIME", Time, 0, 0, kDay, 9, 0},
        {"TIME% WITH TIME ZONE", Time, kOffset, 0, kDay, 9, 0},
        {"TIMESTAMP|DATETIME", Timestamp, 0, 1, 9999, 9, 6},
        {"TIMESTAMP% WITH TIME ZONE", Timestamp, kOffset, 1, 9999, 9, 6},
        {"INTERVAL YEAR TO MONTH", Interval, kMonths, 0, 16},
        {"INTERVAL DAY TO SECOND|INTERVAL", Interval, kDays, 0, 40},
        {"JSON", Json},
        {"XML", Xml},
    };

    static constexpr TypeRow kOpenBase[] = {
        {"INT|INTEGER|LONG", Integer, 0, k32, kMax32},
        {"LONGLONG|BIGINT", Integer, 0, k64, kMax64},
        {"MONEY", Money, 0, 2, 19},
        {"DECIMAL|NUMERIC", Decimal, 0, 38, 38, 38, 18},
        {"FLOAT|DOUBLE|DOUBLE PRECISION|REAL", Real, 0, 0, 53},
        {"BOOLEAN|BOOL", Boolean},
        {"CHAR|CHARACTER", Text, 0, 0, 0, 4096, 1},
        {"VARCHAR|CHARACTER VARYING", Text, kReadOnly, 0, 0, 4096, 255},
        {"TEXT", Text, 0, 0, kLarge},
        {"OBJECT|BLOB", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, 1, 9999},
        {"TIME", Time, 0, 0, kDay},
        {"DATETIME|TIMESTAMP", Timestamp, 0, 1, 9999},
    };

    static constexpr TypeRow kSQLite[] = {
        {"INTEGER|INT|BIGINT|INT8", Integer, 0, k64, kMax64},
        {"TINYINT", Integer, kReadOnly, k8, kMaxU8},
        {"SMALLINT|INT2", Integer, kReadOnly, k16, kMax16},
        {"MEDIUMINT", Integer, kReadOnly, k24, kMax24},
        {"UNSIGNED BIG INT", Integer, kReadOnly, 0, kMaxU64},
        {"DECIMAL|NUMERIC|NUMBER", Decimal, kAnything, 15, 308, 100},
        {"REAL|DOUBLE|DOUBLE PRECISION|FLOAT", Real, 0, 0, 53},
        {"BOOLEAN|BOOL", Boolean, kAnything},
        {"CHAR|CHARACTER|NCHAR|NATIVE CHARACTER", Text, kFixed | kAnything, 0, 0, 1'000'000'000, 1},
        {"VARCHAR|VARYING CHARACTER|CHARACTER VARYING|NVARCHAR", Text, kAnything, 0, kLarge, 1'000'000'000},
        {"TEXT|CLOB", Text, 0, 0, kLarge},
        {"BLOB", Binary, 0, 0, kLarge},
        {"DATE", Date, kAnything, 1, 9999},
        {"TIME", Time, kAnything, 0, kDay, 0, 6},
        {"DATETIME|TIMESTAMP", Timestamp, kAnything, 1, 9999, 0, 6},
        {"JSON", Json, kReadOnly},
        {"UUID", Uuid, kReadOnly},
    };

    // Lengths are those that the smallest pages of a server hold.
    static constexpr TypeRow kSybase[] = {
        {"TINYINT", Integer, 0, 0, kMaxU8},
        {"SMALLINT", Integer, 0, k16, kMax16},
        {"UNSIGNED SMALLINT", Integer, 0, 0, kMaxU16},
        {"INT|INTEGER", Integer, 0, k32, kMax32},
        {"UNSIGNED INT|UNSIGNED INTEGER", Integer, 0, 0, kMaxU32},
        {"BIGINT", Integer, 0, k64, kMax64},
        {"UNSIGNED BIGINT", Integer, 0, 0, kMaxU64},
        {"SMALLMONEY", Money, 0, 4, 10},
        {"MONEY", Money, 0, 4, 19},
        {"DECIMAL|DEC|NUMERIC", Decimal, 0, 38, 38, 38, 18},
        {"REAL", Real, 0, 0, 24},
        {"DOUBLE PRECISION", Real, 0, 0, 53},
        {"FLOAT", Real, kReadOnly, 0, 53, 53, 53},
        {"BIT", Boolean},
        {"CHAR|CHARACTER", Text, kFixed | kNarrow, 0, 0, 1948, 1},
        {"VARCHAR|CHARACTER VARYING|CHAR VARYING", Text, kNarrow, 0, 0, 1948, 1},
        {"TEXT", Text, kNarrow, 0, kLarge},
        {"UNICHAR", Text, kFixed, 0, 0, 974, 1},
        {"UNIVARCHAR", Text, 0, 0, 0, 974, 1},
        {"NCHAR|NATIONAL CHARACTER|NATIONAL CHAR", Text, kFixed | kReadOnly, 0, 0, 1948, 1},
        {"NVARCHAR|NCHAR VARYING|NATIONAL CHARACTER VARYING", Text, kReadOnly, 0, 0, 1948, 1},
        {"UNITEXT", Text, 0, 0, kLarge},
        {"BINARY", Binary, kFixed, 0, 0, 1948, 1},
        {"VARBINARY", Binary, 0, 0, 0, 1948, 1},
        {"IMAGE", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, 1, 9999},
        {"TIME", Time, kReadOnly, 0, kDay, 0, 3},
        {"BIGTIME", Time, 0, 0, kDay, 0, 6},
        {"DATETIME", Timestamp, kReadOnly, 1753, 9999, 0, 3},
        {"SMALLDATETIME", Timestamp, kReadOnly, 1900, 2078},
        {"BIGDATETIME", Timestamp, 0, 1, 9999, 0, 6},
        {"TIMESTAMP", Binary, kReadOnly | kFixed, 0, 8},
    };

    static constexpr TypeRow kPostgres[] = {
        {"SMALLINT|INT2", Integer, 0, k16, kMax16},
        {"INTEGER|INT|INT4", Integer, 0, k32, kMax32},
        {"BIGINT|INT8", Integer, 0, k64, kMax64},
        {"SMALLSERIAL|SERIAL2", Integer, kCounts | kReadOnly, k16, kMax16},
        {"SERIAL|SERIAL4", Integer, kCounts | kReadOnly, k32, kMax32},
        {"BIGSERIAL|SERIAL8", Integer, kCounts | kReadOnly, k64, kMax64},
        {"OID|XID|CID", Integer, kReadOnly, 0, kMaxU32},
        {"NUMERIC|DECIMAL|DEC", Decimal, kUnlimited, 16383, 147455, 1000},
        {"MONEY", Money, 0, 2, 19},
        {"REAL|FLOAT4", Real, 0, 0, 24},
        {"DOUBLE PRECISION|FLOAT8", Real, 0, 0, 53},
        {"FLOAT", Real, kReadOnly, 0, 53, 53, 53},
        {"BOOLEAN|BOOL", Boolean},
        {"BIT", Bits, 0, 0, 0, 83886080, 1},
        {"BIT VARYING|VARBIT", Bits, kVarying, 0, 0, 83886080},
        {"CHAR|CHARACTER|BPCHAR|NCHAR|NATIONAL CHARACTER|NATIONAL CHAR", Text, kFixed, 0, 0, 10485760, 1},
        {"VARCHAR|CHARACTER VARYING|CHAR VARYING|NCHAR VARYING|NATIONAL CHARACTER VARYING", Text, 0, 0, kLarge,
         10485760},
        {"TEXT|CITEXT", Text, 0, 0, kLarge},
        {"NAME", Text, kReadOnly | kBytes, 0, 63},
        {"BYTEA", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, -4713, 5874897},
        {"TIME|TIME% WITHOUT TIME ZONE", Time, 0, 0, kDay, 6, 6},
        {"TIME% WITH TIME ZONE|TIMETZ", Time, kOffset, 0, kDay, 6, 6},
        {"TIMESTAMP|TIMESTAMP% WITHOUT TIME ZONE", Timestamp, 0, -4713, 294276, 6, 6},
        {"TIMESTAMP% WITH TIME ZONE|TIMESTAMPTZ", Timestamp, kInstant, -4713, 294276, 6, 6},
        {"INTERVAL", Interval, kMonths | kDays, 0, 64},
        {"JSON", Json},
        {"JSONB", Json, kReadOnly},
        {"XML", Xml},
        {"UUID", Uuid},
        {"POINT", Spatial, 0, 1},
        {"LINE", Worded, kReadOnly, 0, 255},
        {"LSEG|BOX|CIRCLE", Worded, kReadOnly, 0, 255},
        {"PATH|POLYGON|TSVECTOR|TSQUERY|JSONPATH", Worded, kReadOnly, 0, kLarge},
        {"INET|CIDR", Worded, kReadOnly, 0, 43},
        {"MACADDR|MACADDR8", Worded, kReadOnly, 0, 23},
        {"INT4RANGE|INT8RANGE|NUMRANGE|TSRANGE|TSTZRANGE|DATERANGE|HSTORE", Worded, kReadOnly, 0, kLarge},
        {"PG_LSN", Worded, kReadOnly, 0, 17},
        {"REGCLASS|REGPROC|REGTYPE", Worded, kReadOnly, 0, 255},
    };

    static constexpr TypeRow kFileMaker[] = {
        {"NUMERIC|NUMBER|DECIMAL|INT|INTEGER", Decimal, kUnlimited, 400, 800},
        {"NUMERIC|FLOAT|DOUBLE|REAL", Real, 0, 0, 53},
        {"VARCHAR|CHARACTER VARYING", Text, 0, 0, kLarge, 1'000'000},
        {"TEXT", Text, 0, 0, kLarge},
        {"BLOB|CONTAINER|VARBINARY|LONGVARBINARY|BINARY VARYING", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, 1, 4000},
        {"TIME", Time, 0, 0, kDay, 0, 6},
        {"TIMESTAMP", Timestamp, 0, 1, 4000, 0, 6},
    };

    static constexpr TypeRow kSQLServer[] = {
        {"TINYINT", Integer, 0, 0, kMaxU8},
        {"SMALLINT", Integer, 0, k16, kMax16},
        {"INT|INTEGER", Integer, 0, k32, kMax32},
        {"BIGINT", Integer, 0, k64, kMax64},
        {"SMALLMONEY", Money, 0, 4, 10},
        {"MONEY", Money, 0, 4, 19},
        {"DECIMAL|DEC|NUMERIC", Decimal, 0, 38, 38, 38, 18},
        {"REAL", Real, 0, 0, 24},
        {"FLOAT|DOUBLE PRECISION", Real, 0, 0, 53, 53, 53},
        {"BIT", Boolean},
        {"CHAR|CHARACTER", Text, kFixed | kNarrow, 0, 0, 8000, 1},
        {"VARCHAR|CHARACTER VARYING|CHAR VARYING", Text, kNarrow, 0, 0, 8000, 1},
        {"VARCHAR(MAX)|TEXT", Text, kNarrow, 0, kLarge},
        {"NCHAR|NATIONAL CHARACTER|NATIONAL CHAR", Text, kFixed, 0, 0, 4000, 1},
        {"NVARCHAR|NATIONAL CHARACTER VARYING|NATIONAL CHAR VARYING", Text, 0, 0, 0, 4000, 1},
        {"SYSNAME", Text, kReadOnly, 0, 0, 128, 128},
        {"NVARCHAR(MAX)|NTEXT", Text, 0, 0, kLarge},
        {"BINARY", Binary, kFixed, 0, 0, 8000, 1},
        {"VARBINARY|BINARY VARYING", Binary, 0, 0, 0, 8000, 1},
        {"VARBINARY(MAX)|IMAGE", Binary, 0, 0, kLarge},
        {"ROWVERSION|TIMESTAMP", Binary, kReadOnly | kFixed, 0, 8},
        {"DATE", Date, 0, 1, 9999},
        {"TIME", Time, 0, 0, kDay, 7, 7},
        {"DATETIME", Timestamp, kReadOnly, 1753, 9999, 0, 3},
        {"SMALLDATETIME", Timestamp, kReadOnly, 1900, 2078},
        {"DATETIME2", Timestamp, 0, 1, 9999, 7, 7},
        {"DATETIMEOFFSET", Timestamp, kOffset, 1, 9999, 7, 7},
        {"XML", Xml},
        {"UNIQUEIDENTIFIER", Uuid},
        {"GEOMETRY", Spatial},
        {"GEOGRAPHY", Spatial, kReadOnly, 8},
        {"HIERARCHYID|SQL_VARIANT", Worded, kReadOnly, 0, 8000},
    };

    static constexpr TypeRow kRedshift[] = {
        {"SMALLINT|INT2", Integer, 0, k16, kMax16},
        {"INTEGER|INT|INT4", Integer, 0, k32, kMax32},
        {"BIGINT|INT8", Integer, 0, k64, kMax64},
        {"DECIMAL|NUMERIC", Decimal, 0, 37, 38, 38, 18},
        {"REAL|FLOAT4", Real, 0, 0, 24},
        {"DOUBLE PRECISION|FLOAT8|FLOAT", Real, 0, 0, 53},
        {"BOOLEAN|BOOL", Boolean},
        {"CHAR|CHARACTER|NCHAR|BPCHAR", Text, kFixed | kNarrow | kBytes, 0, 0, 4096, 1},
        {"VARCHAR|CHARACTER VARYING|NVARCHAR|TEXT", Text, kBytes, 0, 0, 65535, 256},
        {"VARBYTE|VARBINARY|BINARY VARYING", Binary, 0, 0, 0, 16777216, 64000},
        {"DATE", Date, 0, -4713, 294276},
        {"TIME|TIME WITHOUT TIME ZONE", Time, 0, 0, kDay, 0, 6},
        {"TIME WITH TIME ZONE|TIMETZ", Time, kOffset, 0, kDay, 0, 6},
        {"TIMESTAMP|TIMESTAMP WITHOUT TIME ZONE", Timestamp, 0, -4713, 294276, 0, 6},
        {"TIMESTAMP WITH TIME ZONE|TIMESTAMPTZ", Timestamp, kInstant, -4713, 294276, 0, 6},
        {"INTERVAL YEAR TO MONTH", Interval, kMonths, 0, 16},
        {"INTERVAL DAY TO SECOND", Interval, kDays, 0, 40},
        {"SUPER", Json, kRounded},
        {"GEOMETRY", Spatial},
        {"GEOGRAPHY", Spatial, kReadOnly, 8},
        {"HLLSKETCH", Worded, kReadOnly, 0, 65535},
    };

    static constexpr TypeRow kMySQL[] = {
        {"TINYINT|INT1", Integer, 0, k8, kMax8},
        {"TINYINT UNSIGNED|INT1 UNSIGNED", Integer, 0, 0, kMaxU8},
        {"SMALLINT|INT2", Integer, 0, k16, kMax16},
        {"SMALLINT UNSIGNED|INT2 UNSIGNED", Integer, 0, 0, kMaxU16},
        {"YEAR", Integer, kReadOnly, 0, 2155},
        {"MEDIUMINT|INT3|MIDDLEINT", Integer, kReadOnly, k24, kMax24},
        {"MEDIUMINT UNSIGNED|INT3 UNSIGNED|MIDDLEINT UNSIGNED", Integer, kReadOnly, 0, kMaxU24},
        {"INT|INTEGER|INT4", Integer, 0, k32, kMax32},
        {"INT UNSIGNED|INTEGER UNSIGNED|INT4 UNSIGNED", Integer, 0, 0, kMaxU32},
        {"BIGINT|INT8", Integer, 0, k64, kMax64},
        {"BIGINT UNSIGNED|INT8 UNSIGNED", Integer, 0, 0, kMaxU64},
        {"SERIAL", Integer, kCounts | kReadOnly, 0, kMaxU64},
        {"DECIMAL|DEC|NUMERIC|FIXED", Decimal, 0, 30, 65, 65, 10},
        {"DECIMAL UNSIGNED|DEC UNSIGNED|NUMERIC UNSIGNED|FIXED UNSIGNED", Decimal, kReadOnly, 30, 65, 65, 10},
        {"FLOAT|FLOAT4|FLOAT UNSIGNED", Real, 0, 0, 24, 53},
        {"DOUBLE|DOUBLE PRECISION|REAL|FLOAT8|DOUBLE UNSIGNED|REAL UNSIGNED", Real, 0, 0, 53},
        {"BOOLEAN|BOOL", Boolean},
        {"BIT", Bits, 0, 0, 0, 64, 1},
        {"CHAR|CHARACTER|NCHAR|NATIONAL CHAR|NATIONAL CHARACTER", Text, kFixed, 0, 0, 255, 1},
        {"VARCHAR|CHARACTER VARYING|VARCHARACTER|NVARCHAR|NATIONAL VARCHAR|NCHAR VARCHAR", Text, 0, 0, 65535, 65535,
         255},
        {"TINYTEXT", Text, kReadOnly | kBytes, 0, kMaxU8},
        {"TEXT", Text, kBytes, 0, kMaxU16},
        {"MEDIUMTEXT|LONG VARCHAR|LONG", Text, kBytes, 0, kMaxU24},
        {"LONGTEXT", Text, 0, 0, kLarge},
        {"BINARY", Binary, kFixed, 0, 0, 255, 1},
        {"VARBINARY", Binary, 0, 0, 0, 65535, 255},
        {"TINYBLOB", Binary, kReadOnly, 0, kMaxU8},
        {"BLOB", Binary, 0, 0, kMaxU16},
        {"MEDIUMBLOB|LONG VARBINARY", Binary, 0, 0, kMaxU24},
        {"LONGBLOB", Binary, 0, 0, kLarge},
        {"DATE", Date, 0, 1, 9999},
        {"TIME", Time, 0, 0, 838, 6, 0},
        {"DATETIME", Timestamp, 0, 1, 9999, 6, 0},
        {"TIMESTAMP", Timestamp, kInstant | kReadOnly, 1970, 2037, 6, 0},
        {"JSON", Json, kRounded},
        {"ENUM", Enumeration},
        {"SET", Set},
        {"POINT", Spatial, 0, 1},
        {"LINESTRING", Spatial, 0, 2},
        {"POLYGON", Spatial, 0, 3},
        {"MULTIPOINT", Spatial, 0, 4},
        {"MULTILINESTRING", Spatial, 0, 5},
        {"MULTIPOLYGON", Spatial, 0, 6},
        {"GEOMETRYCOLLECTION|GEOMCOLLECTION", Spatial, 0, 7},
        {"GEOMETRY", Spatial},
        {"INET6", Worded, kReadOnly, 0, 39},
        {"INET4", Worded, kReadOnly, 0, 15},
        {"UUID", Uuid, kReadOnly},
    };

    static constexpr TypeRow kOracle[] = {
        {"NUMBER|NUMERIC|DECIMAL|DEC", Decimal, 0, 127, 38, 38},
        {"INTEGER|INT|SMALLINT", Decimal, kReadOnly, 0, 38, 0, 38},
        {"BINARY_FLOAT", Real, 0, 0, 24},
        {"BINARY_DOUBLE", Real, 0, 0, 53},
        {"FLOAT|DOUBLE PRECISION", Real, kReadOnly, 0, 126},
        {"REAL", Real, kReadOnly, 0, 63},
        {"CHAR|CHARACTER", Text, kFixed | kBytes | kCharWord, 0, 2000, 2000, 1},
        {"NCHAR|NATIONAL CHARACTER|NATIONAL CHAR", Text, kFixed | kReadOnly, 0, 2000, 1000, 1},
        {"VARCHAR2|VARCHAR|CHARACTER VARYING|CHAR VARYING", Text, kBytes | kCharWord, 0, 4000, 4000, 1},
        {"NVARCHAR2|NCHAR VARYING|NATIONAL CHARACTER VARYING|NATIONAL CHAR VARYING", Text, kReadOnly, 0, 4000, 2000, 1},
        {"CLOB|NCLOB|LONG", Text, 0, 0, kLarge},
        {"RAW", Binary, 0, 0, 0, 2000, 1},
        {"BLOB|LONG RAW|BFILE", Binary, 0, 0, kLarge},
        {"DATE", Timestamp, 0, -4712, 9999},
        {"TIMESTAMP", Timestamp, 0, -4712, 9999, 9, 6},
        {"TIMESTAMP% WITH LOCAL TIME ZONE", Timestamp, kInstant, -4712, 9999, 9, 6},
        {"TIMESTAMP% WITH TIME ZONE", Timestamp, kOffset, -4712, 9999, 9, 6},
        {"INTERVAL YEAR TO MONTH", Interval, kMonths, 0, 16},
        {"INTERVAL DAY TO SECOND", Interval, kDays, 0, 40},
        {"JSON", Json, kReadOnly},
        {"XMLTYPE", Xml},
        {"SDO_GEOMETRY|MDSYS.SDO_GEOMETRY", Spatial},
        {"ROWID|UROWID", Worded, kReadOnly, 0, 4000},
    };

    static constexpr std::span<const TypeRow> kDialects[] = {kGeneric,   kOpenBase,  kSQLite,   kSybase, kPostgres,
                                                             kFileMaker, kSQLServer, kRedshift, kMySQL,  kOracle};

    struct FamilyOrder {
        TypeFamily family;
        TypeFamily places[4];
        std::size_t count;
    };
    static constexpr FamilyOrder kPlaces[] = {
        {Integer, {Integer, Decimal}, 2},
        {Decimal, {Decimal}, 1},
        {Money, {Money, Decimal}, 2},
        {Real, {Real}, 1},
        {Boolean, {Boolean, Integer, Decimal}, 3},
        {Bits, {Bits, Text}, 2},
        {Text, {Text}, 1},
        {Binary, {Binary}, 1},
        {Date, {Date, Timestamp, Text}, 3},
        {Time, {Time, Text}, 2},
        {Timestamp, {Timestamp, Text}, 2},
        {Interval, {Interval, Text}, 2},
        {Json, {Json, Text}, 2},
        {Xml, {Xml, Text}, 2},
        {Uuid, {Uuid, Text}, 2},
        {Enumeration, {Enumeration, Text}, 2},
        {Set, {Set, Text}, 2},
        {Array, {Array, Text}, 2},
        {Spatial, {Spatial, Text}, 2},
        {Worded, {Worded, Text}, 2},
    };
};

}  // namespace

std::span<const std::string_view> typeDialectNames() { return TypeTable::kNames; }

std::optional<TypeDialect> typeDialectNamed(std::string_view name) {
    const auto* found =
        std::ranges::find_if(TypeTable::kNames, [&](std::string_view own) { return equalIgnoringCase(own, name); });
    if (found == std::end(TypeTable::kNames)) return std::nullopt;
    return static_cast<TypeDialect>(found - std::begin(TypeTable::kNames));
}

std::string_view typeFamilyName(TypeFamily family) { return TypeTable::kFamilyNames[static_cast<std::size_t>(family)]; }

std::span<const TypeRow> typesOf(TypeDialect dialect) {
    return TypeTable::kDialects[static_cast<std::size_t>(dialect)];
}

std::span<const TypeFamily> familiesFor(TypeFamily family) {
    const TypeTable::FamilyOrder& order = TypeTable::kPlaces[static_cast<std::size_t>(family)];
    return {order.places, order.count};
}

}  // namespace vellicor
