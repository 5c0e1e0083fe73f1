// tests/platform/text_test.cpp — Unicode text: trimming, case, order, repair, templates, patterns, numbers.
#include "vellicor/platform/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

#include "vellicor/platform/interned.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/regular_expression.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

TEST(Text, IsTrimmedOfTheWhiteSpaceOfItsSet) {
    for (const std::string blank : {" ", "\t", "\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x8A",
                                    "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"}) {
        EXPECT_EQ(trimmed(blank + blank + "a" + blank + "b" + blank, TrimSet::Whitespace), "a" + blank + "b");
        EXPECT_EQ(trimmed(blank + blank), "");
        EXPECT_TRUE(containsWhitespace("a" + blank, TrimSet::Whitespace));
    }
    for (const std::string br : {"\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        EXPECT_EQ(trimmed(br + "a" + br), "a");
        EXPECT_EQ(trimmed(br + "a" + br, TrimSet::Whitespace), br + "a" + br);
        EXPECT_TRUE(containsWhitespace(br + "a"));
        EXPECT_FALSE(containsWhitespace("a" + br, TrimSet::Whitespace));
    }
    for (const std::string other : {"\xE2\x80\x8B", "\xC2\xA1", "\x1F", "\xA0", "\xC2", "\xE2\x80", "\xEF\xBB\xBF"}) {
        EXPECT_EQ(trimmed(other + "a" + other), other + "a" + other);
        EXPECT_FALSE(containsWhitespace(other));
    }
}

TEST(Text, MapsCaseWithoutALocale) {
    EXPECT_EQ(lowercased("ORDER_Id 9"), "order_id 9");
    EXPECT_EQ(uppercased("order_iD \xC3\x9F"), "ORDER_ID SS");
    EXPECT_EQ(lowercased("\xC3\x89" "A\xCE\xA3 \xC4\xB0"), "\xC3\xA9" "a\xCF\x82 i\xCC\x87");  // final sigma
    EXPECT_EQ(lowercased("A\xFF" "B"), "a\xEF\xBF\xBD" "b");
}

TEST(Text, ComparesWithoutRegardToCase) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"", "a", -1},        {"Order", "oRDER", 0}, {"a1", "a_b", -1},
        {"a_b", "AB", -1},    {"ab", "a", 1},        {"a[", "AZ", -1},
        {"gr\xC3\xB6\xC3\x9F" "en", "GR\xC3\x96SSEN", 0},    // ö and ß
        {"k", "\xE2\x84\xAA", 0},                               // the Kelvin sign
        {"x\xC3\x9F", "Xs", 1},                                 // a longer folding
        {"\xF0\x9F\x98\x80", "\xEE\x80\x80", -1},               // surrogates before U+E000 …
        {"\xF0\x9F\x98\x80", "\xEF\xBC\xA1", -1},               // … and U+FF21
        {"\xF0\x9F\x98\x80", "\xED\x9F\xBB", 1},
        {"\xF0\x9F\x98\x80", "\xF4\x80\x80\x80", -1},
        {"a\xFF", "A\xFE", 0},                                  // both are repaired to U+FFFD
        {"a\xFF", "ab", 1},
    };
    for (const auto& [a, b, order] : cases) {
        EXPECT_EQ(compareIgnoringCase(a, b) <=> 0, order <=> 0) << a << " " << b;
        EXPECT_EQ(compareIgnoringCase(b, a) <=> 0, 0 <=> order) << a << " " << b;
        EXPECT_EQ(equalIgnoringCase(a, b), order == 0) << a << " " << b;
        EXPECT_EQ(caseFolded(a) == caseFolded(b), order == 0) << a << " " << b;
    }
}

TEST(Text, NamesSortByLettersAndNumbers) {
    const char* sorted[] = {"", "a", "a b", "a2", "a10", "a99999999999999999999", "a100000000000000000000", "ab",
                            "\xC3\xA9\x63", "order_items", "order1", "orders", "Zed"};
    for (std::size_t i = 0; i + 1 < std::size(sorted); ++i)
        EXPECT_LT(nameSortKey(sorted[i]), nameSortKey(sorted[i + 1])) << sorted[i] << " " << sorted[i + 1];
    EXPECT_EQ(nameSortKey("a007b02"), nameSortKey("A7B2"));
    EXPECT_EQ(nameSortKey("a\xFF"), nameSortKey("a\xFE"));
    const std::string long1(5000, 'x');  // a key beyond the buffer on the stack
    EXPECT_LT(nameSortKey(long1 + "a"), nameSortKey(long1 + "b"));
    EXPECT_EQ(nameSortKey(long1).find('\0'), std::string::npos);
}

TEST(Text, IllFormedSequencesAreFoundAndRepaired) {
    const std::string mark = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> cases[] = {
        {"a\xC3", "a" + mark},   {"\xE2\x82" "b", mark + "b"}, {"\xC0\xAF", mark + mark}, {"\xF0\x9F\x98", mark},
        {"\xED\xA0\x80", mark + mark + mark},                {"long enough \x80 text", "long enough " + mark + " text"},
        {"\xF4\x90\x80\x80", mark + mark + mark + mark},
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
    EXPECT_EQ(joined({"", "b", ""}, ", "), ", b, ");
}

TEST(TextFormat, FillsPlaceholdersInOnePass) {
    const std::string name = "%@ %ld";
    EXPECT_EQ(text("DROP %@ FROM %@;", name, "t"), "DROP %@ %ld FROM t;");
    EXPECT_EQ(text("%ld %lu %d%@", -1, std::uint64_t(-1), 7, std::string_view("x")), "-1 18446744073709551615 7x");
    const OptionalText absent;
    EXPECT_EQ(text("(%@)(%@)", absent, static_cast<const char*>(nullptr)), "((null))((null))");
    EXPECT_EQ(text("100% of %@ %s %", OptionalText("a")), "100% of a %s %");
}

TEST(RegularExpression, RangesAreBytesWhateverStandsBefore) {
    const RegularExpression word("(?<=(.))b(.?)");
    for (const std::string before : {"a", "\xC3\xA9", "\xE6\x97\xA5", "\xF0\x9F\x98\x80", "\xFF"}) {
        const std::string text = before + "bx" + before + "b" + before;
        const auto matches = word.allMatches(text);
        ASSERT_EQ(matches.size(), 2u) << before;
        EXPECT_EQ(matches[0].groups[0]->position, before.size());
        EXPECT_EQ(matches[0].group(2, text), "x");
        EXPECT_EQ(matches[1].groups[0]->position, 2 * before.size() + 2);
        EXPECT_EQ(matches[1].group(1, text), before);
        EXPECT_EQ(matches[1].group(2, text), before);
        EXPECT_EQ(matches[1].group(7, text), "");
    }
    EXPECT_EQ(RegularExpression("x*").allMatches("axb").size(), 4u);  // empty matches move on
    const auto optional = RegularExpression("^(.*?)_((fk)_)?(\\d+)$").firstMatch("o_\xD9\xA3");  // any Unicode digit
    ASSERT_TRUE(optional);
    EXPECT_FALSE(optional->groups[3]) << "a group that took no part is absent";
    EXPECT_EQ(optional->groups[4]->position, 2u);
}

TEST(RegularExpression, CoversOnlyWhenTheFirstMatchIsAllOfTheText) {
    const RegularExpression number("[0-9]+"), lower("^[\\p{lowercase}_][\\p{lowercase}\\p{Mark}_0-9$]*$");
    EXPECT_TRUE(number.firstMatchCovers("12"));
    for (const char* text : {"", "a1", "1a", "1 2"}) EXPECT_FALSE(number.firstMatchCovers(text)) << text;
    EXPECT_TRUE(lower.firstMatchCovers("\xC3\xA9$"));
    EXPECT_FALSE(lower.firstMatchCovers("abc\n"));
    EXPECT_TRUE(lower.firstMatch("abc\n"));  // "$" stands before one final line break too
}

TEST(RegularExpression, WhatCannotBeMatchedIsNoMatch) {
    const RegularExpression broken("a(b");
    EXPECT_NE(broken.error(), "");
    EXPECT_FALSE(broken.firstMatch("ab"));
    EXPECT_TRUE(broken.allMatches("ab").empty());

    const RegularExpression deep("^(?:.|,)*_(\\d+)$");
    EXPECT_EQ(deep.error(), "");
    EXPECT_FALSE(deep.firstMatch(std::string(2'000'000, 'a') + "_1"));  // runs over ICU's stack
    EXPECT_TRUE(deep.firstMatch("a_1"));
    EXPECT_FALSE(deep.firstMatch("\xFF\xFE\x80"));
}

TEST(Text, PatternsAndInternedTextsServeAllThreads) {
    const RegularExpression expression("(\\d+)$");
    std::vector<InternedText> interned[4];
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (auto& texts : interned)
        threads.emplace_back([&] {
            for (int n = 0; n < 1000; ++n) {
                const std::string text = "n" + std::to_string(n);
                const auto match = expression.firstMatch(text);
                if (!match || match->group(1, text) != text.substr(1)) ++wrong;
                texts.emplace_back(text);
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
    for (const auto& texts : interned) EXPECT_EQ(texts, interned[0]);
    EXPECT_EQ(interned[0][7].view(), "n7");
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Numbers, AnIntegerIsReadAsFarAsItGoes) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {" 42 ", 42}, {"-7x", -7},     {"+5", 5},              {"- 5", -5}, {"--5", 0}, {"0x1F", 0},        {"1e3", 1},
        {"3.9", 3},   {"\n\t 8\n", 8}, {"\xC2\xA0" "9", 9},    {"007", 7},  {"-", 0},   {"\xD9\xA3", 0},    {"a1", 0},
        {"99999999999999999999", INT64_MAX},  {"9223372036854775807", INT64_MAX}, {"9223372036854775808", INT64_MAX},
        {"-99999999999999999999", INT64_MIN}, {"-9223372036854775808", INT64_MIN}, {"-2147483649", -2147483649},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(integerValue(text), expected) << text;
        EXPECT_EQ(intValue(text), std::clamp<std::int64_t>(expected, INT32_MIN, INT32_MAX)) << text;
    }
}

TEST(Numbers, ARealIsReadAsFarAsItGoes) {
    const std::string manyZeros(400, '0');
    const std::pair<std::string, double> cases[] = {
        {".5", 0.5},   {"5.", 5},          {".", 0},           {"1e+", 1},             {"5e-324", 5e-324}, {"inf", 0},
        {"nan", 0},    {"0x10", 0},        {" +1.5e2x", 150},  {"-.25", -0.25},        {"1,5", 1},         {"- 5", 0},
        {"0e999", 0},  {"-1e999", -kInfinity}, {"1e-999", 0}, {"1e99999999999999999999", kInfinity},
        {"1" + manyZeros, kInfinity},      {"0." + manyZeros + "1", 0},         {"1" + manyZeros + "e-400", 1},
        {"0." + manyZeros + "1e800", kInfinity},                                {"0." + manyZeros + "1e50", 0},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(doubleValue(text), expected) << text;
    EXPECT_EQ(floatValue("0.1"), 0.1f);
    EXPECT_EQ(floatValue("1e39"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(floatValue("1e-60"), 0.0f);
}

TEST(Numbers, AFlagIsTrueForYTOrADigitButZero) {
    for (const char* text : {"yes", "T", "01", "-1", "2x", " \n+0003"}) EXPECT_TRUE(boolValue(text)) << text;
    for (const char* text : {"", "0", "no", "on", "--1", "- 1", "000", "x1"}) EXPECT_FALSE(boolValue(text)) << text;
}

TEST(Numbers, AreWrittenAsPrintfWritesThem) {
    EXPECT_EQ(fixedText(0.5, 6), "0.500000");
    EXPECT_EQ(fixedText(-0.001, 2), "-0.00");
    EXPECT_EQ(fixedText(1e22, 0), "10000000000000000000000");
    const std::pair<double, const char*> general[] = {
        {0.117647, "0.117647"}, {1e6, "1e+06"}, {0.00001, "1e-05"}, {-kInfinity, "-inf"},
        {std::copysign(NAN, -1.0), "nan"},
    };
    for (const auto& [number, expected] : general) EXPECT_EQ(generalText(number), expected);
    EXPECT_EQ(numberText(1.0f), "1");
    EXPECT_EQ(numberText(1.0f / 3), "0.3333333");
    EXPECT_EQ(numberText(2.0 / 3), "0.6666666666666666");
    EXPECT_EQ(numberText(1e16), "1e+16");
}

}  // namespace
}  // namespace vellicor
