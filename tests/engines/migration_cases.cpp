// tests/engines/migration_cases.cpp — every kind of difference between two documents, one case a line.
#include "tests/engines/migration_cases.h"

#include <gtest/gtest.h>

#include "tests/engines/migration_run.h"
#include "tests/support/dialect_text.h"
#include "tests/support/scoped_preference.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/preference_keys.h"

namespace vellicor::testing {

namespace {

/// "$" stands for a prefix of the case. Documents are written as the builder reads them; "view $v [query]" is a view.
/// Renames: "$t > $u" for a table or view, "$t.a > b" for a component of the new table of the old `$t`.
struct Case {
    const char* current;
    const char* desired;
    const char* renames = "";
    const char* rows = "";
};

const Case kCases[] = {
    // --- tables
    {"", "$t(a INTEGER)"},
    {"$t(a INTEGER)", ""},
    {"$t(a INTEGER)", "$u(a INTEGER)", "$t > $u", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER pk);;$u(a INTEGER pk)", "$u(a INTEGER pk);;$t(a INTEGER pk)", "$t > $u;$u > $t", "INSERT INTO $t VALUES (1)"},
    {"$a(a INTEGER);;$b(a INTEGER);;$c(a INTEGER)", "$b(a INTEGER);;$c(a INTEGER);;$a(a INTEGER)", "$a > $b;$b > $c;$c > $a", "INSERT INTO $a VALUES (1)"},
    {"$a(a INTEGER);;$b(a INTEGER)", "$b(a INTEGER);;$c(a INTEGER)", "$a > $b;$b > $c", "INSERT INTO $b VALUES (5)"},
    {"$t(a INTEGER)", "$T(a INTEGER)", "$t > $T", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$w(a INTEGER pk);;$u(b INTEGER -> $w.a)", "$t > $w", "INSERT INTO $t VALUES (1);INSERT INTO $u VALUES (1)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$t(a INTEGER pk)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$u(b INTEGER)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", ""},
    {"$t(a INTEGER)", "$u(a INTEGER);;$t(z VARCHAR(20))", "$t > $u", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER unique)", "$u(a INTEGER unique)", "$t > $u", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER;index $i (a))", "$u(a INTEGER);;$t(a INTEGER;index $i (a))", "$t > $u"},
    {"$t(a INTEGER;index $i (a))", "$u(b INTEGER;index $i (b))"},
    // --- columns: coming, going, other names
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(b INTEGER;a INTEGER)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER notnull default=7)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b VARCHAR(20) default=x~y)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER notnull)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER unique)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER indexed)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER comment=about~b)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER;b INTEGER)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER;b INTEGER unique)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER;b INTEGER indexed)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER;b INTEGER notnull)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER)", "$t(b INTEGER)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(A INTEGER)", "$t.a > A", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER;b INTEGER)", "$t(b INTEGER;a INTEGER)", "$t.a > b;$t.b > a", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER;b VARCHAR(20))", "$t(b INTEGER;a VARCHAR(20))", "$t.a > b;$t.b > a", "INSERT INTO $t VALUES (1, 'x')"},
    {"$t(a INTEGER;b INTEGER;c INTEGER)", "$t(b INTEGER;c INTEGER;a INTEGER)", "$t.a > b;$t.b > c;$t.c > a", "INSERT INTO $t VALUES (1, 2, 3)"},
    {"$t(a INTEGER;b INTEGER)", "$t(b INTEGER;c INTEGER)", "$t.a > b;$t.b > c", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER;b INTEGER)", "$t(b INTEGER)", "$t.a > b", "INSERT INTO $t VALUES (1, 2)"},
    {"$t(a INTEGER)", "$t(b INTEGER;a VARCHAR(10))", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$u(b BIGINT)", "$t > $u;$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(b BIGINT notnull default=5)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER unique)", "$t(b INTEGER unique)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER pk)", "$t(b INTEGER pk)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER;index $i (a))", "$t(b INTEGER;index $i (b))", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER check=a~>~0)", "$t(b INTEGER check=b~>~0)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER pk;b INTEGER -> $t.a)", "$t(x INTEGER pk;y INTEGER -> $t.x)", "$t.a > x;$t.b > y", "INSERT INTO $t VALUES (1, 1)"},
    {"$t(a INTEGER indexed)", "$t(b INTEGER indexed)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    {"$t(a INTEGER)", "$t(b INTEGER unique)", "$t.a > b", "INSERT INTO $t VALUES (1)"},
    // --- types
    {"$t(a INTEGER)", "$t(a BIGINT)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a BIGINT)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (1)"},
    {"$t(a VARCHAR(10))", "$t(a VARCHAR(50))", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a VARCHAR(50))", "$t(a VARCHAR(10))", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a VARCHAR(50))", "$t(a TEXT)", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a TEXT)", "$t(a VARCHAR(50))", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a INTEGER)", "$t(a VARCHAR(20))", "", "INSERT INTO $t VALUES (12)"},
    {"$t(a VARCHAR(20))", "$t(a INTEGER)", "", "INSERT INTO $t VALUES ('12')"},
    {"$t(a NUMERIC(10,2))", "$t(a NUMERIC(12,4))", "", "INSERT INTO $t VALUES (1.25)"},
    {"$t(a NUMERIC(12,4))", "$t(a NUMERIC(10,2))", "", "INSERT INTO $t VALUES (1.25)"},
    {"$t(a INTEGER)", "$t(a NUMERIC(12,2))", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER default=5)", "$t(a BIGINT default=5)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER default=5)", "$t(a VARCHAR(20) default=five)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER unique)", "$t(a BIGINT unique)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;index $i (a))", "$t(a BIGINT;index $i (a))", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk)", "$t(a BIGINT pk)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER check=a~>~0)", "$t(a BIGINT check=a~>~0)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$t(a BIGINT pk);;$u(b BIGINT -> $t.a)", "", "INSERT INTO $t VALUES (7);INSERT INTO $u VALUES (7)"},
    {"$t(a DATE)", "$t(a TIMESTAMP)"},
    {"$t(a INTEGER notnull)", "$t(a BIGINT)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INT)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    // --- null and defaults
    {"$t(a INTEGER)", "$t(a INTEGER notnull)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER)", "$t(a INTEGER notnull default=3)", "", "INSERT INTO $t VALUES (NULL)"},
    {"$t(a INTEGER default=3)", "$t(a INTEGER notnull default=3)", "", "INSERT INTO $t VALUES (NULL)"},
    {"$t(a INTEGER notnull)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER)", "$t(a INTEGER default=3)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER default=3)", "$t(a INTEGER default=4)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER default=3)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a VARCHAR(20) default=it's)", "$t(a VARCHAR(20) default=say~\"hi\")", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a INTEGER default=3)", "$t(a INTEGER expression=1~+~1)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a VARCHAR(20) notnull)", "$t(a VARCHAR(20) notnull default=NOT~NULL)", "", "INSERT INTO $t VALUES ('x')"},
    // --- counting
    {"$t(a INTEGER pk auto notnull)", "$t(a INTEGER pk notnull)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk notnull)", "$t(a INTEGER pk auto notnull)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk auto notnull)", "$t(b INTEGER pk auto notnull)", "$t.a > b", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk auto notnull)", "$u(a INTEGER pk auto notnull)", "$t > $u", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER)", "$t(a INTEGER;b INTEGER pk auto notnull)", "", "INSERT INTO $t VALUES (7);INSERT INTO $t VALUES (8)"},
    {"$t(a INTEGER pk auto notnull;b INTEGER)", "$t(b INTEGER)", "", "INSERT INTO $t VALUES (7, 1)"},
    {"$t(a INTEGER pk auto notnull;b INTEGER notnull)", "$t(a INTEGER auto notnull unique;b INTEGER notnull pk)", "", "INSERT INTO $t VALUES (7, 1)"},
    {"$t(a BIGINT pk auto notnull)", "$t(a INTEGER pk auto notnull)", "", "INSERT INTO $t VALUES (7)"},
    // --- primary keys
    {"$t(a INTEGER notnull)", "$t(a INTEGER notnull pk)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER)", "$t(a INTEGER pk)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER pk;b INTEGER)", "$t(a INTEGER pk;b INTEGER pk)", "", "INSERT INTO $t VALUES (7, 1)"},
    {"$t(a INTEGER pk;b INTEGER pk)", "$t(a INTEGER;b INTEGER pk)", "", "INSERT INTO $t VALUES (7, 1)"},
    {"$t(a INTEGER pk;b INTEGER)", "$t(a INTEGER;b INTEGER pk)", "", "INSERT INTO $t VALUES (7, 1)"},
    {"$t(a INTEGER pk;b INTEGER unique);;$u(c INTEGER -> $t.a)", "$t(a INTEGER pk;b INTEGER unique);;$u(c INTEGER -> $t.b)", "", "INSERT INTO $t VALUES (7, 7);INSERT INTO $u VALUES (7)"},
    {"$t(a VARCHAR(20) pk)", "$t(a VARCHAR(30) pk)", "", "INSERT INTO $t VALUES ('x')"},
    {"$t(a INTEGER pk;b INTEGER)", "$t(b INTEGER pk)", "", "INSERT INTO $t VALUES (7, 1)"},
    // --- uniqueness and indexes
    {"$t(a INTEGER)", "$t(a INTEGER unique)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER unique)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER)", "$t(a INTEGER indexed)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER indexed)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;b INTEGER)", "$t(a INTEGER;b INTEGER;index $i (a,b))"},
    {"$t(a INTEGER;b INTEGER;index $i (a,b))", "$t(a INTEGER;b INTEGER)"},
    {"$t(a INTEGER;b INTEGER;index $i (a,b))", "$t(a INTEGER;b INTEGER;index $i (b,a))"},
    {"$t(a INTEGER;index $i (a))", "$t(a INTEGER;index $j (a))"},
    {"$t(a INTEGER;index $i (a))", "$t(a INTEGER;index $i UNIQUE (a))"},
    {"$t(a INTEGER;index $i UNIQUE (a))", "$t(a INTEGER;index $i (a))"},
    {"$t(a INTEGER;b INTEGER;index $i (a);index $j (b))", "$t(a INTEGER;b INTEGER;index $j (a);index $i (b))"},
    {"$t(a INTEGER;constraint $c UNIQUE (a))", "$t(a INTEGER;constraint $d UNIQUE (a))"},
    {"$t(a INTEGER;b INTEGER;constraint $c UNIQUE (a))", "$t(a INTEGER;b INTEGER;constraint $c UNIQUE (a,b))"},
    {"$t(a INTEGER;constraint $c UNIQUE (a))", "$t(a INTEGER)"},
    {"$t(a INTEGER)", "$t(a INTEGER;constraint $c UNIQUE (a))"},
    {"$t(a INTEGER unique)", "$t(a INTEGER;constraint $c UNIQUE (a))"},
    {"$t(a INTEGER;b INTEGER;index $i (a,b))", "$t(a INTEGER;index $i (a))"},
    // --- checks
    {"$t(a INTEGER)", "$t(a INTEGER check=a~>~0)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER check=a~>~0)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER check=a~>~0)", "$t(a INTEGER check=a~>~1)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;constraint $c CHECK [a > 0])", "$t(a INTEGER;constraint $c CHECK [a > 1])", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;constraint $c CHECK [a > 0])", "$t(a INTEGER;constraint $d CHECK [a > 0])", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;b INTEGER;constraint $c CHECK [a > b])", "$t(x INTEGER;y INTEGER;constraint $c CHECK [x > y])", "$t.a > x;$t.b > y", "INSERT INTO $t VALUES (7, 1)"},
    // --- foreign keys
    {"$t(a INTEGER pk);;$u(b INTEGER)", "$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "", "INSERT INTO $t VALUES (7);INSERT INTO $u VALUES (7)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$t(a INTEGER pk);;$u(b INTEGER)", "", "INSERT INTO $t VALUES (7);INSERT INTO $u VALUES (7)"},
    {"$t(a INTEGER pk);;$u(b INTEGER -> $t.a)", "$t(a INTEGER pk);;$u(b INTEGER -> $t.a delete=1)"},
    {"$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a))", "$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a) delete=3 update=1)"},
    {"$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a))", "$t(a INTEGER pk);;$u(b INTEGER;key $l (b) -> $t(a))"},
    {"$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a))", "$t(a INTEGER pk);;$u(c INTEGER;key $k (c) -> $t(a))", "$u.b > c", "INSERT INTO $t VALUES (7);INSERT INTO $u VALUES (7)"},
    {"$t(a INTEGER pk);;$u(b INTEGER;index $i (b);key $k (b) -> $t(a))", "$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a))"},
    {"$t(a INTEGER pk);;$u(b INTEGER;key $k (b) -> $t(a))", "$t(a INTEGER pk);;$u(b INTEGER;index $i (b);key $k (b) -> $t(a))"},
    {"$t(a INTEGER pk;b INTEGER pk);;$u(x INTEGER;y INTEGER;key $k (x,y) -> $t(a,b))", "$t(a INTEGER pk;b INTEGER pk);;$u(x INTEGER;y INTEGER)"},
    {"$t(a INTEGER pk;b INTEGER pk);;$u(x INTEGER;y INTEGER)", "$t(a INTEGER pk;b INTEGER pk);;$u(x INTEGER;y INTEGER;key $k (x,y) -> $t(a,b))"},
    {"$t(a INTEGER pk;b INTEGER)", "$t(a INTEGER pk;b INTEGER -> $t.a)", "", "INSERT INTO $t VALUES (7, 7)"},
    {"$t(a INTEGER pk;b INTEGER);;$u(a INTEGER pk;b INTEGER)", "$t(a INTEGER pk;b INTEGER -> $u.a);;$u(a INTEGER pk;b INTEGER -> $t.a)"},
    {"$t(a INTEGER pk;b INTEGER;key $k (b) -> $u(a));;$u(a INTEGER pk;b INTEGER;key $l (b) -> $t(a))", "$t(a INTEGER pk;b INTEGER)"},
    {"$t(a INTEGER pk;b INTEGER;key $k (b) -> $u(a));;$u(a INTEGER pk;b INTEGER;key $l (b) -> $t(a))", ""},
    {"$t(a INTEGER pk;b INTEGER;key $k (b) -> $u(a));;$u(a INTEGER pk;b INTEGER;key $l (b) -> $t(a))", "$x(a BIGINT pk;b BIGINT;key $k (b) -> $u(a));;$u(a BIGINT pk;b BIGINT;key $l (b) -> $x(a))", "$t > $x"},
    {"", "$t(a INTEGER pk;b INTEGER;key $k (b) -> $u(a));;$u(a INTEGER pk;b INTEGER;key $l (b) -> $t(a))"},
    // --- views
    {"$t(a INTEGER)", "$t(a INTEGER);;view $v [SELECT a FROM $t]"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t]", "$t(a INTEGER)"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t]", "$t(a INTEGER);;view $v [SELECT a + 1 AS b FROM $t]"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t]", "$t(a INTEGER);;view $w [SELECT a FROM $t]", "$v > $w"},
    {"$t(a INTEGER);;view $v [SELECT * FROM $t]", "$t(a INTEGER;b INTEGER);;view $v [SELECT * FROM $t]", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t]", "$t(a BIGINT);;view $v [SELECT a FROM $t]", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t]", "$u(b INTEGER);;view $v [SELECT b FROM $u]", "$t > $u;$t.a > b", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER;b INTEGER);;view $v [SELECT a FROM $t];;view $w [SELECT a FROM $v]", "$t(a INTEGER);;view $v [SELECT a FROM $t];;view $w [SELECT a FROM $v]"},
    {"$t(a INTEGER);;view $v [SELECT a FROM $t];;view $w [SELECT a FROM $v]", "$t(a INTEGER);;view $v [SELECT a, a + 1 AS c FROM $t];;view $w [SELECT a, c FROM $v]"},
    // --- comments and names
    {"$t(a INTEGER comment=old)", "$t(a INTEGER comment=it's~new)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER comment=old)", "$t(a INTEGER)", "", "INSERT INTO $t VALUES (7)"},
    {"$t(a INTEGER comment=old)", "$t(b INTEGER comment=old)", "$t.a > b", "INSERT INTO $t VALUES (7)"},
    {"$t(two~words INTEGER;select INTEGER)", "$t(a-b INTEGER;Group INTEGER)", "$t.two words > a-b;$t.select > Group"},
    {"$t(order INTEGER unique)", "$t(MixedCase BIGINT unique)", "$t.order > MixedCase"},
    {"$My~table(a INTEGER pk);;$u(b INTEGER;key $My~key (b) -> $My~table(a))", "$My~order(a INTEGER pk);;$u(b INTEGER;key $My~key (b) -> $My~order(a))", "$My table > $My order"},
};

std::vector<std::string> splitAt(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        if (const auto part = trimmed(std::string_view(text).substr(start, end - start)); !part.empty()) parts.emplace_back(part);
        start = end + separator.size();
    }
    return parts;
}

std::string withPrefix(const char* text, std::size_t number) { return replacingAll(text, "$", "c" + std::to_string(number) + "_"); }

std::shared_ptr<SQLContainer> documentOf(const std::vector<std::string>& descriptions) {
    std::string tables;
    std::vector<std::string> views;
    for (const std::string& description : descriptions)
        for (const std::string& part : splitAt(description, ";;"))
            part.starts_with("view ") ? views.push_back(part.substr(5)) : void(tables += part + ";;");
    auto document = testing::document(tables);
    for (const std::string& text : views) {
        auto view = SQLView::viewWithName(text.substr(0, text.find(' ')));
        const std::size_t open = text.find('[');
        view->setQueryString(text.substr(open + 1, text.rfind(']') - open - 1));
        document->add(view);
    }
    return document;
}

void join(SQLContainer& before, SQLContainer& after, const std::string& renames) {
    // All tables first: a column is looked for in what its table became.
    std::map<std::string, SQLTable*> successors;
    const auto sides = [](const std::string& rename) {
        const std::size_t arrow = rename.find(" > ");
        return std::pair(rename.substr(0, arrow), rename.substr(arrow + 3));
    };
    for (const std::string& rename : splitAt(renames, ";")) {
        const auto [from, to] = sides(rename);
        if (from.find('.') != std::string::npos) continue;
        auto* old = as<SQLTable>(before.getObjectByName(from));
        auto* now = as<SQLTable>(after.getObjectByName(to));
        ASSERT_TRUE(old && now) << rename;
        now->setUid(old->uid());
        successors[from] = now;
    }
    for (const std::string& rename : splitAt(renames, ";")) {
        const auto [from, to] = sides(rename);
        const std::size_t dot = from.find('.');
        if (dot == std::string::npos) continue;
        const std::string tableName = from.substr(0, dot);
        auto* old = as<SQLTable>(before.getObjectByName(tableName));
        SQLTable* now = successors.contains(tableName) ? successors[tableName] : as<SQLTable>(after.getObjectByName(tableName));
        ASSERT_TRUE(old && now) << rename;
        SQLField* column = now->getFieldByName(to);
        ASSERT_TRUE(column && old->getFieldByName(from.substr(dot + 1))) << rename;
        column->setUid(old->getFieldByName(from.substr(dot + 1))->uid());
    }
}

std::string troubleWith(Engine& engine, const std::vector<std::size_t>& numbers) {
    std::vector<std::string> current, desired;
    std::string renames, rows;
    for (const std::size_t number : numbers) {
        current.push_back(withPrefix(kCases[number].current, number));
        desired.push_back(withPrefix(kCases[number].desired, number));
        renames += withPrefix(kCases[number].renames, number) + ";";
        for (const std::string& row : splitAt(withPrefix(kCases[number].rows, number), ";")) rows += row + ";\n";
    }
    const auto before = documentOf(current);
    const auto after = documentOf(desired);
    join(*before, *after, renames);
    const MigrationRun run = runMigration(engine, *before, *after, rows);
    std::string trouble = run.trouble;
    if (run.refusedRows) trouble += "the rows were refused";
    for (const std::string& gap : run.gaps) trouble += "\nnot expressible: " + gap;
    return trouble;
}

}  // namespace

void expectMigrationCasesOnEngine(Engine& engine) {
    ScopedPreference runnable(prefs::runnableScripts);
    ScopedPreference comments(prefs::usePostgresComments, Value::boolean(engine.dialect() == "postgres"));
        std::vector<std::size_t> all;
    for (std::size_t number = 0; number < std::size(kCases); ++number) all.push_back(number);
    const std::string trouble = troubleWith(engine, all);
    if (trouble.empty()) return;
    bool isFound = false;
    for (const std::size_t number : all) {
        const std::string alone = troubleWith(engine, {number});
        if (!alone.empty()) ADD_FAILURE() << "case " << number << ": " << alone;
        isFound |= !alone.empty();
    }
    // MySQL's names for keys without one count through the whole database, so cases side by side may collide.
    if (!isFound && engine.dialect() != "mysql") ADD_FAILURE() << "all cases together: " << trouble;
}

}  // namespace vellicor::testing
