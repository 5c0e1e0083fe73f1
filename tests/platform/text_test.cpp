// tests/platform/text_test.cpp — Unicode text: trimming, case, order, repair, templates.
#include "vellicor/platform/text.h"

#include <gtest/gtest.h>


#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

int sign(int number) { return (number > 0) - (number < 0); }

TEST(Text, IsTrimmedOfTheWhiteSpaceOfItsSet) {
    const char* blanks[] = {" ", "\t", "\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x8A", "\xE2\x80\xAF",
                            "\xE2\x81\x9F", "\xE3\x80\x80"};
    const char* breaks[] = {"\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
    const char* others[] = {"\xE2\x80\x8B", "\xC2\xA1", "\x1F", "\x80", "\xA0", "\xC2", "\xE2\x80", "\xEF\xBB\xBF"};
    for (const std::string c : blanks) {
        EXPECT_EQ(trimmed(c + c + "a" + c + "b" + c + c, TrimSet::Whitespace), "a" + c + "b");
        EXPECT_EQ(trimmed(c + c), "");
        EXPECT_TRUE(containsWhitespace("a" + c, TrimSet::Whitespace));
    }
    for (const std::string c : breaks) {
        EXPECT_EQ(trimmed(c + "a" + c), "a");
        EXPECT_EQ(trimmed(c + "a" + c, TrimSet::Whitespace), c + "a" + c);
        EXPECT_TRUE(containsWhitespace(c + "a"));
        EXPECT_FALSE(containsWhitespace("a" + c, TrimSet::Whitespace));
    }
    for (const std::string c : others) {
        EXPECT_EQ(trimmed(c + "a" + c), c + "a" + c);
        EXPECT_FALSE(containsWhitespace(c));
    }
}

TEST(Text, MapsCaseWithoutALocale) {
    EXPECT_EQ(lowercased("ORDER_Id 9"), "order_id 9");
    EXPECT_EQ(uppercased("order_iD 9"), "ORDER_ID 9");
    EXPECT_EQ(uppercased("stra\xC3\x9F" "e"), "STRASSE");
    EXPECT_EQ(lowercased("\xC3\x89" "A\xCE\xA3"), "\xC3\xA9" "a\xCF\x82");  // final sigma
    EXPECT_EQ(lowercased("\xC4\xB0"), "i\xCC\x87");
    EXPECT_EQ(lowercased("A\xFF" "B"), "a\xEF\xBF\xBD" "b");
    EXPECT_EQ(caseFolded("GR\xC3\x96SSEN"), caseFolded("gr\xC3\xB6\xC3\x9F" "en"));
}

TEST(Text, ComparesWithoutRegardToCase) {
    struct Case {
        const char *a, *b;
        int order;
    };
    const Case cases[] = {
        {"", "", 0},           {"", "a", -1},      {"Order", "oRDER", 0},        {"a1", "a_b", -1},
        {"a_b", "AB", -1},     {"ab", "a", 1},     {"PK_KEY_NAME", "pkX", -1},   {"a[", "AZ", -1},
        {"gr\xC3\xB6\xC3\x9F" "en", "GR\xC3\x96SSEN", 0},    // ö and ß
        {"k", "\xE2\x84\xAA", 0},                               // the Kelvin sign
        {"x\xC3\x9F", "Xs", 1},                                 // a longer folding
        {"z", "\xC3\xA4", -1},
        {"\xF0\x9F\x98\x80", "\xEE\x80\x80", -1},               // surrogates before U+E000 …
        {"\xF0\x9F\x98\x80", "\xEF\xBC\xA1", -1},               // … and U+FF21
        {"\xF0\x9F\x98\x80", "\xED\x9F\xBB", 1},
        {"\xF0\x9F\x98\x80", "\xF4\x80\x80\x80", -1},
        {"\xEE\x80\x80", "\xEF\xBC\xA1", -1},
        {"a\xFF", "A\xFE", 0},                                  // both are repaired to U+FFFD
        {"a\xFF", "ab", 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(sign(compareIgnoringCase(c.a, c.b)), c.order) << c.a << " " << c.b;
        EXPECT_EQ(sign(compareIgnoringCase(c.b, c.a)), -c.order) << c.a << " " << c.b;
        EXPECT_EQ(equalIgnoringCase(c.a, c.b), c.order == 0) << c.a << " " << c.b;
        EXPECT_EQ(caseFolded(c.a) == caseFolded(c.b), c.order == 0) << c.a << " " << c.b;
    }
}

TEST(Text, NamesSortByLettersAndNumbers) {
    const char* sorted[] = {"", "a", "a b", "a2", "a10", "a99999999999999999999", "a100000000000000000000", "ab",
                            "\xC3\xA9" "c", "order_items", "order1", "orders", "Zed"};
    for (std::size_t i = 0; i + 1 < std::size(sorted); ++i)
        EXPECT_LT(nameSortKey(sorted[i]), nameSortKey(sorted[i + 1])) << sorted[i] << " " << sorted[i + 1];
    EXPECT_EQ(nameSortKey("Order"), nameSortKey("oRDER"));
    EXPECT_EQ(nameSortKey("a01"), nameSortKey("a1"));
    EXPECT_EQ(nameSortKey("a007b02"), nameSortKey("A7B2"));
    EXPECT_EQ(nameSortKey("a\xFF"), nameSortKey("a\xFE"));
    const std::string long1(5000, 'x');  // a key beyond the buffer on the stack
    EXPECT_LT(nameSortKey(long1 + "a"), nameSortKey(long1 + "b"));
    EXPECT_EQ(nameSortKey(long1).find('\0'), std::string::npos);
}

TEST(Text, IllFormedSequencesAreFoundAndRepaired) {
    const std::string mark = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> cases[] = {
        {"\xFF", mark},         {"a\xC3", "a" + mark},   {"\xE2\x82" "b", mark + "b"}, {"\xC0\xAF", mark + mark},
        {"\xED\xA0\x80", mark + mark + mark},            {"\xF4\x90\x80\x80", mark + mark + mark + mark},
        {"long enough \x80 text", "long enough " + mark + " text"}, {"\xF0\x9F\x98", mark},
    };
    for (const auto& [text, repaired] : cases) {
        EXPECT_FALSE(isValidUTF8(text));
        EXPECT_EQ(repairedUTF8(text), repaired);
        EXPECT_EQ(utf16Length(text), utf16Length(repaired));
    }
    const std::string sound = "eight bytes and \xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80";
    EXPECT_TRUE(isValidUTF8(sound));
    EXPECT_EQ(repairedUTF8(sound), sound);
    EXPECT_EQ(utf16Length(sound), 16u + 1 + 1 + 2);
}

TEST(Text, IsReplacedRemovedAndJoined) {
    EXPECT_EQ(replacingAll("''a'", "'", "''"), "''''a''");
    EXPECT_EQ(replacingAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replacingAll("abc", "", "x"), "abc");
    EXPECT_EQ(removingCharacters("\"a`b\xC3\xA9`", "`\""), "ab\xC3\xA9");
    EXPECT_EQ(joined({}, ", "), "");
    EXPECT_EQ(joined({"a"}, ", "), "a");
    EXPECT_EQ(joined({"", "b", ""}, ", "), ", b, ");
}

TEST(TextFormat, FillsPlaceholdersInOnePass) {
    const std::string name = "%@ %ld";
    EXPECT_EQ(text("DROP %@ FROM %@;", name, "t"), "DROP %@ %ld FROM t;");
    EXPECT_EQ(text("%ld %lu %d%@", -1, std::uint64_t(-1), 7, std::string_view("x")), "-1 18446744073709551615 7x");
    const OptionalText absent;
    EXPECT_EQ(text("(%@)(%@)", absent, static_cast<const char*>(nullptr)), "((null))((null))");
    EXPECT_EQ(text("100% of %@ %s %", OptionalText("a")), "100% of a %s %");
    EXPECT_EQ(text("LIKE '%'"), "LIKE '%'");
}

}  // namespace
}  // namespace vellicor
