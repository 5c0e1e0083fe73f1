// tests/engines/type_judges_test.cpp — every pair of types that two servers here have: the boundary values of a column
// travel to the translated column and back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "tests/engines/server.h"
#include "tests/engines/sqlite_engine.h"
#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/export/document_translation.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/text.h"
#include "vellicor/types/type_text.h"
#include "vellicor/types/type_translation.h"

namespace vellicor::testing {
namespace {

using Values = std::vector<std::string>;

struct Probe {
    std::string type;
    Values values;
};
struct Origin {
    std::string dialect;
    std::vector<Probe> probes;
};

std::string times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

const std::string kFace = "😀", kNines35 = times(35, "9"), kNines30 = times(30, "9");

const Origin kOrigins[] = {
    {"mysql",
     {{"TINYINT", {"-128", "127"}},
      {"tinyint(3) unsigned", {"0", "255"}},
      {"SMALLINT", {"-32768", "32767"}},
      {"SMALLINT UNSIGNED", {"0", "65535"}},
      {"YEAR", {"1901", "2155"}},
      {"MEDIUMINT", {"-8388608", "8388607"}},
      {"MEDIUMINT UNSIGNED", {"0", "16777215"}},
      {"int(11)", {"-2147483648", "2147483647"}},
      {"INT UNSIGNED", {"0", "4294967295"}},
      {"BIGINT", {"-9223372036854775808", "9223372036854775807"}},
      {"BIGINT UNSIGNED", {"0", "18446744073709551615"}},
      {"DECIMAL(10,2)", {"-99999999.99", "99999999.99", "0.01"}},
      {"DECIMAL(65,30)", {kNines35 + "." + kNines30, "-" + kNines35 + "." + kNines30}},
      {"DECIMAL(12) UNSIGNED", {"0", "999999999999"}},
      {"FLOAT", {"-3.40282e38", "3.40282e38", "1.5"}},
      {"DOUBLE", {"-1.79769313486231e308", "1.79769313486231e308", "2.2250738585072014e-308"}},
      {"BOOLEAN", {"0", "1"}},
      {"BIT(8)", {"00000000", "11111111"}},
      {"BIT(64)", {times(64, "0"), times(64, "1")}},
      {"CHAR(255)", {times(255, kFace), "a"}},
      {"VARCHAR(20)", {times(20, kFace), "", "it's"}},
      {"VARCHAR(16000)", {times(16000, kFace)}},
      {"TINYTEXT", {times(255, "x")}},
      {"TEXT", {times(65535, "x")}},
      {"MEDIUMTEXT", {times(70000, "ß")}},
      {"LONGTEXT", {times(70000, "ß")}},
      {"BINARY(4)", {"00ff00ff"}},
      {"VARBINARY(20)", {"", times(20, "ff")}},
      {"TINYBLOB", {times(255, "00")}},
      {"BLOB", {times(65535, "fe")}},
      {"MEDIUMBLOB", {times(70000, "fe")}},
      {"LONGBLOB", {times(70000, "fe")}},
      {"DATE", {"0001-01-01", "9999-12-31"}},
      {"TIME(6)", {"-838:59:59.000000", "838:59:59.000000", "12:00:00.000001"}},
      {"DATETIME", {"0001-01-01 00:00:00", "9999-12-31 23:59:59"}},
      {"DATETIME(6)", {"0001-01-01 00:00:00.000001", "9999-12-31 23:59:59.999999"}},
      {"TIMESTAMP(6)", {"1970-01-01 00:00:01.000000", "2038-01-19 03:14:07.999999"}},
      {"JSON", {R"({"a": [1, "b"]})"}},
      {"ENUM('a','it''s')", {"a", "it's"}},
      {"SET('a','b')", {"", "a,b"}},
      {"LINESTRING", {"LINESTRING(1 2,3 4.5)"}},
      {"POLYGON", {"POLYGON((0 0,0 1,1 1,0 0))"}},
      {"MULTIPOINT", {"MULTIPOINT(1 2,3 4)"}},
      {"MULTILINESTRING", {"MULTILINESTRING((1 2,3 4))"}},
      {"MULTIPOLYGON", {"MULTIPOLYGON(((0 0,0 1,1 1,0 0)))"}},
      {"GEOMETRYCOLLECTION", {"GEOMETRYCOLLECTION(POINT(1 2))"}},
      {"GEOMETRY", {"POINT(1 2)", "LINESTRING(1 2,3 4.5)"}},
      {"INET6", {"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "::"}},
      {"UUID", {"ffffffff-ffff-ffff-ffff-ffffffffffff"}}}},
    {"postgres",
     {{"smallint", {"-32768", "32767"}},
      {"integer", {"-2147483648", "2147483647"}},
      {"int8", {"-9223372036854775808", "9223372036854775807"}},
      {"oid", {"0", "4294967295"}},
      {"numeric(10,2)", {"-99999999.99", "99999999.99", "0.01"}},
      {"numeric(65,30)", {kNines35 + "." + kNines30}},
      {"numeric(1000,2)", {times(998, "9") + ".99"}},
      {"numeric", {times(200, "9") + "." + times(40, "9")}},
      {"money", {"-92233720368547758.08", "92233720368547758.07"}},
      {"real", {"-3.4028235e+38", "3.4028235e+38", "1.1754944e-38"}},
      {"double precision", {"1.79769313486231e+308", "2.2250738585072014e-308"}},
      {"float(53)", {"1.79769313486231e+308"}},
      {"boolean", {"0", "1"}},
      {"bit(8)", {"00000000", "11111111"}},
      {"bit(80)", {times(80, "1")}},
      {"bit varying(8)", {"", "01", "11111111"}},
      {"char(255)", {times(255, kFace), "a"}},
      {"char(300)", {times(300, kFace)}},
      {"character varying(20)", {times(20, kFace), "", "it's", "back\\slash"}},
      {"varchar(20000)", {times(20000, kFace)}},
      {"varchar(70000)", {times(70000, kFace)}},
      {"varchar", {times(70000, kFace)}},
      {"text", {times(70000, kFace), ""}},
      {"name", {times(63, "n")}},
      {"bytea", {"", times(70000, "00ff")}},
      {"date", {"4713-01-01 BC", "0001-01-01", "5874897-12-31"}},
      {"time(6)", {"00:00:00", "24:00:00", "23:59:59.999999"}},
      {"time(6) with time zone", {"00:00:00+14", "23:59:59.999999-12"}},
      {"timestamp(6)", {"4713-01-01 00:00:00 BC", "294276-12-31 23:59:59.999999"}},
      {"timestamptz", {"4713-01-01 00:00:00 BC", "2024-02-29 12:00:00.000001"}},
      {"interval", {"-178000000 years", "1 mon -2 days +03:04:05.678901"}},
      {"json", {R"({"a": 1.00000000000000000001})"}},
      {"jsonb", {R"({"a": 1.00000000000000000001})"}},
      {"xml", {"<a b=\"c\">ß</a>"}},
      {"uuid", {"ffffffff-ffff-ffff-ffff-ffffffffffff"}},
      {"line", {"{1,2,3}"}},
      {"box", {"(1,1),(0,0)"}},
      {"path", {"((0,0),(1,2.5))"}},
      {"inet", {"ffff:ffff:ffff:ffff:ffff:ffff:255.255.255.255/127", "10.0.0.0/8"}},
      {"macaddr8", {"ff:ff:ff:ff:ff:ff:ff:ff"}},
      {"int4range", {"[-2147483648,2147483647)", "empty"}},
      {"pg_lsn", {"FFFFFFFF/FFFFFFFF"}},
      {"regclass", {"pg_class"}},
      {"integer[]", {"{1,NULL,3}", "{}"}}}},
    {"SQLite",
     {{"INTEGER", {"-9223372036854775808", "9223372036854775807"}},
      {"TINYINT", {"-128", "255"}},
      {"SMALLINT", {"-32768", "32767"}},
      {"MEDIUMINT", {"-8388608", "8388607"}},
      {"DECIMAL(10,2)", {"-99999999.99", "99999999.99"}},
      {"DOUBLE", {"-1.79769313486231e+308", "1.79769313486231e+308"}},
      {"BOOLEAN", {"0", "1"}},
      {"CHAR(20)", {times(20, kFace)}},
      {"VARCHAR(20)", {times(20, kFace), ""}},
      {"VARCHAR(70000)", {times(70000, kFace)}},
      {"TEXT", {times(70000, kFace)}},
      {"BLOB", {"", times(70000, "00ff")}},
      {"DATE", {"0001-01-01", "9999-12-31"}},
      {"TIME", {"00:00:00.000001", "23:59:59.999999"}},
      {"DATETIME", {"0001-01-01 00:00:00.000001", "9999-12-31 23:59:59.999999"}},
      {"JSON", {R"({"a": 1.00000000000000000001})"}},
      {"UUID", {"ffffffff-ffff-ffff-ffff-ffffffffffff"}}}}};

/// What no two servers here can judge: counting is a default; the points of both print in their own ways; and the
/// engine holds no such numbers, or has the type in a newer version.
const std::map<std::string, Values> kNotJudged = {{"mysql", {"SERIAL", "POINT", "INET4"}},
                                                  {"postgres", {"SMALLSERIAL", "SERIAL", "BIGSERIAL", "POINT"}},
                                                  {"SQLite", {"UNSIGNED BIG INT"}}};
/// MariaDB keeps JSON as its text, where MySQL rounds.
bool judgeIsKinder(const std::string& to, TypeFamily family) { return to == "mysql" && family == TypeFamily::Json; }

/// Numbers may differ where SQLite, which writes fifteen digits, does not write them all.
bool areSame(const Values& a, const Values& b, const std::string& type) {
    const auto family = familyOfType("postgres", type);
    if (family != TypeFamily::Real && !type.starts_with("DOUBLE")) return a == b;
    return std::ranges::equal(a, b, [](const std::string& x, const std::string& y) {
        return std::abs(doubleValue(x) - doubleValue(y)) <= 1e-14 * std::abs(doubleValue(y));
    });
}

/// A column in which values are kept, and how they go in and come out.
struct Column {
    std::string type;
    Values values;
};

class TypeJudges : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        _engines["mysql"] = std::make_unique<MariaDBServer>();
        _engines["postgres"] = std::make_unique<PostgresServer>();
        _engines["SQLite"] = std::make_unique<SQLiteEngine>();
    }
    static void TearDownTestSuite() { _engines.clear(); }
    void SetUp() override {
        for (const auto& [name, engine] : _engines)
            if (auto* server = dynamic_cast<Server*>(engine.get())) {
                if (!server->isInstalled()) GTEST_SKIP() << server->trouble() << ": no type was judged";
                ASSERT_EQ(server->trouble(), "");
            }
        for (const auto& [name, engine] : _engines) engine->clear();
    }

    static std::string literal(const std::string& dialect, TypeFamily family, const std::string& value) {
        if (family == TypeFamily::Binary) return dialect == "postgres" ? "'\\x" + value + "'" : "X'" + value + "'";
        if (family == TypeFamily::Bits && dialect == "mysql") return "b'" + value + "'";
        const std::string doubled = replacingAll(value, "'", "''");
        if (dialect != "mysql") return "'" + doubled + "'";
        const std::string quoted = "'" + replacingAll(doubled, "\\", "\\\\") + "'";
        return family == TypeFamily::Spatial ? "ST_GeomFromText(" + quoted + ")" : quoted;
    }

    static std::string shown(const std::string& dialect, const std::string& type, TypeFamily family) {
        if (dialect == "postgres") {
            if (family == TypeFamily::Boolean) return "v::int";
            if (family == TypeFamily::Binary) return "encode(v, 'hex')";
            if (family == TypeFamily::Money) return "v::numeric";
            if (family == TypeFamily::Real) return "v::float8";
            const bool isMoment = family == TypeFamily::Timestamp && uppercased(type).find("TZ") != std::string::npos;
            return isMoment || type == "TIMESTAMP WITH TIME ZONE" ? "v AT TIME ZONE 'UTC'" : "v";
        }
        if (family == TypeFamily::Binary) return "lower(hex(v))";
        if (dialect == "SQLite") return family == TypeFamily::Real ? "printf('%!.17g', v)" : "v";
        if (family == TypeFamily::Real) return "v + 0e0";
        if (family == TypeFamily::Spatial) return "ST_AsText(v)";
        if (family == TypeFamily::Bits) return "lpad(bin(v), " + TypeText::parsed(type).arguments.at(0) + ", '0')";
        return "v";
    }

    /// The values as the columns give them back; empty, with why, when the engine refuses one.
    static std::vector<Values> kept(const std::string& dialect, const std::vector<Column>& columns, std::string& why) {
        Engine& engine = *_engines.at(dialect);
        std::string script = dialect == "postgres" ? "SET TimeZone = 'UTC';\n"
                             : dialect == "mysql"  ? "SET time_zone = '+00:00';\n"
                                                   : "";
        std::vector<std::string> queries;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const auto& [type, values] = columns[i];
            const TypeFamily family = familyOfType(dialect, type).value_or(TypeFamily::Worded);
            const std::string name = "t" + std::to_string(i);
            script += "DROP TABLE IF EXISTS " + name + ";\nCREATE TABLE " + name + " (n INTEGER, v " + type + ");\n";
            for (std::size_t n = 0; n < values.size(); ++n)
                script += "INSERT INTO " + name + " VALUES (" + std::to_string(n) + ", " +
                          literal(dialect, family, values[n]) + ");\n";
            queries.push_back("SELECT " + shown(dialect, type, family) + " FROM " + name + " ORDER BY n");
        }
        why = engine.run(script);
        std::vector<Values> all;
        if (!why.empty()) return all;
        for (const Rows& rows : engine.rows(queries)) {
            Values& column = all.emplace_back();
            for (const auto& row : rows) column.push_back(row.empty() ? "" : row.at(0));
        }
        return all;
    }

    static inline std::map<std::string, std::unique_ptr<Engine>> _engines;
};

TEST_F(TypeJudges, EveryTypeOfTheServersHasBoundaryValues) {
    for (const Origin& origin : kOrigins) {
        const TypeDialect dialect = *typeDialectNamed(origin.dialect);
        const Values& others = kNotJudged.at(origin.dialect);
        for (const TypeRow& row : typesOf(dialect)) {
            const bool isProbed = std::ranges::any_of(origin.probes, [&](const Probe& probe) {
                return findType(dialect, TypeText::parsed(probe.type)) == &row;
            });
            const bool isExcused = std::ranges::find(others, row.name()) != others.end();
            EXPECT_NE(isProbed, isExcused) << origin.dialect << " " << row.names;
        }
    }
}

TEST_F(TypeJudges, TranslatedColumnsHoldTheBoundaryValues) {
    int held = 0, lost = 0;
    for (const Origin& origin : kOrigins) {
        std::vector<Column> columns;
        for (const Probe& probe : origin.probes) columns.push_back({probe.type, probe.values});
        std::string why;
        const std::vector<Values> originals = kept(origin.dialect, columns, why);
        ASSERT_EQ(why, "") << origin.dialect;
        for (const auto& [to, engine] : _engines) {
            if (to == origin.dialect) continue;
            std::vector<Column> there, back;
            std::vector<Values> expected;
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const TypeTranslation place = translateType(origin.dialect, to, columns[i].type);
                ASSERT_NE(place.grade, TypeGrade::Unknown) << columns[i].type << " " << place.reason;
                if (place.grade != TypeGrade::Lossy) {
                    there.push_back({place.text, originals[i]});
                    back.push_back({columns[i].type, {}});
                    expected.push_back(originals[i]);
                    ++held;
                    continue;
                }
                ++lost;
                bool isLost = judgeIsKinder(to, *familyOfType(origin.dialect, columns[i].type));
                if (!isLost) {
                    const std::vector<Values> copy = kept(to, {{place.text, originals[i]}}, why);
                    isLost = !why.empty() ||
                             kept(origin.dialect, {{columns[i].type, copy.at(0)}}, why) != std::vector<Values>{originals[i]};
                }
                EXPECT_TRUE(isLost) << origin.dialect << " " << columns[i].type << " lives in " << to << " "
                                    << place.text << ", but should lose: " << place.reason;
            }
            const std::vector<Values> copies = kept(to, there, why);
            ASSERT_EQ(why, "") << origin.dialect << " in " << to;
            for (std::size_t i = 0; i < back.size(); ++i) back[i].values = copies[i];
            const std::vector<Values> returned = kept(origin.dialect, back, why);
            ASSERT_EQ(why, "") << origin.dialect << " back from " << to;
            for (std::size_t i = 0; i < back.size(); ++i)
                EXPECT_TRUE(areSame(returned[i], expected[i], back[i].type)) << origin.dialect << " " << back[i].type << " in " << to << " "
                                                    << there[i].type << ": " << ::testing::PrintToString(returned[i]).substr(0, 200);
        }
    }
    RecordProperty("held", held);
    RecordProperty("lost", lost);
}

/// A design in the words of its own dialect; the first table refers to the second.
struct Design {
    std::string dialect;
    std::string description;
};
const Design kDesigns[] = {
    {"mysql",
     "u(id BIGINT~UNSIGNED pk auto; name VARCHAR(255) unique);;"
     "t(id INT pk auto; u BIGINT~UNSIGNED -> u.id; kind ENUM('a','it''s') default=a; yes TINYINT(1) default=1;"
     " flag BOOL expression=TRUE; born DATE; made DATETIME(3) expression=CURRENT_TIMESTAMP(3);"
     " data MEDIUMBLOB; doc JSON; price DECIMAL(10,2) default=0.00; note MEDIUMTEXT; bits BIT(4) expression=b'0101';"
     " constraint c CHECK [`price` >= 0 and char_length(`note`) < 9])"},
    {"postgres",
     "u(id uuid pk expression=gen_random_uuid(); code text unique);;"
     "t(id serial pk; u uuid -> u.id; code text -> u.code; flag boolean expression=true; tags text[] "
     "expression='{}'::text[];"
     " made timestamp(6) expression=now(); day date expression=CURRENT_DATE; doc jsonb; data bytea;"
     " state varchar(9) expression='new'::character~varying; num numeric(12,2) expression=0; wide varchar(9000);"
     " wider varchar(9000); constraint c CHECK [(state)::text = ANY ((ARRAY['new'::character varying, 'old'])::text[])])"},
    {"SQLite",
     "u(id INTEGER pk auto; name VARCHAR(40) unique);;"
     "t(id INTEGER pk auto; u INTEGER -> u.id; flag BOOLEAN default=0; made DATETIME expression=CURRENT_TIMESTAMP;"
     " price DECIMAL(10,2) default=1.50; note TEXT; data BLOB; constraint c CHECK [length(note) == 3])"}};

TEST_F(TypeJudges, TranslatedDocumentsRun) {
    ScopedPreference runnable(prefs::runnableScripts);
    for (const Design& design : kDesigns)
        for (const auto& [to, engine] : _engines) {
            auto made = document(design.description);
            translateDocument(*made, design.dialect, to);
            engine->clear();
            const std::string script = scriptOf(to, *made);
            EXPECT_EQ(engine->run(script), "") << design.dialect << " to " << to << "\n" << script;
        }
}

}  // namespace
}  // namespace vellicor::testing
