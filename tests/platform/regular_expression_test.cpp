// tests/platform/regular_expression_test.cpp — what the library asks of regular expressions.
#include "vellicor/platform/regular_expression.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace vellicor {
namespace {

using Groups = std::vector<std::string>;

/// The texts of all groups of the first match; empty without a match, "-" for an absent group.
Groups groupsOf(const RegularExpression& expression, std::string_view text) {
    const auto match = expression.firstMatch(text);
    if (!match) return {};
    Groups groups;
    for (std::size_t i = 0; i < match->groups.size(); ++i)
        groups.push_back(match->groups[i] ? std::string(match->group(i, text)) : "-");
    return groups;
}

TEST(RegularExpression, AnswersItsGroups) {
    const RegularExpression greedy("^(.*)_(\\d+)$");
    EXPECT_EQ(groupsOf(greedy, "a_1_2"), (Groups{"a_1_2", "a_1", "2"}));
    EXPECT_EQ(groupsOf(greedy, "o_\xD9\xA3"), (Groups{"o_\xD9\xA3", "o", "\xD9\xA3"}));  // any Unicode digit
    EXPECT_EQ(groupsOf(greedy, "a\nb_1"), Groups{});
    EXPECT_EQ(groupsOf(greedy, "a_b"), Groups{});
    const RegularExpression optional("^(.*?)_(((fk)_)?(\\d+))$");
    EXPECT_EQ(groupsOf(optional, "orders_fk_2"), (Groups{"orders_fk_2", "orders", "fk_2", "fk_", "fk", "2"}));
    EXPECT_EQ(groupsOf(optional, "fk_3"), (Groups{"fk_3", "fk", "3", "-", "-", "3"}));
    EXPECT_EQ(groupsOf(optional, "_3"), (Groups{"_3", "", "3", "-", "-", "3"}));
    EXPECT_EQ(groupsOf(optional, "a_fk_"), Groups{});
}

TEST(RegularExpression, RangesAreBytesWhateverStandsBefore) {
    const RegularExpression word("(?<=(.))b(.?)");
    for (const std::string before : {"a", "\xC3\xA9", "\xE6\x97\xA5", "\xF0\x9F\x98\x80", "\xFF"}) {
        const std::string text = before + "bx" + before + "b" + before;
        const auto matches = word.allMatches(text);
        ASSERT_EQ(matches.size(), 2u) << before;
        EXPECT_EQ(matches[0].groups[0]->position, before.size());
        EXPECT_EQ(matches[0].group(1, text), before);
        EXPECT_EQ(matches[0].group(2, text), "x");
        EXPECT_EQ(matches[1].groups[0]->position, 2 * before.size() + 2);
        EXPECT_EQ(matches[1].group(1, text), before);
        EXPECT_EQ(matches[1].group(2, text), before);
        EXPECT_EQ(matches[1].group(7, text), "");
    }
    EXPECT_EQ(RegularExpression("x*").allMatches("axb").size(), 4u);  // empty matches move on
}

TEST(RegularExpression, CoversOnlyWhenTheFirstMatchIsAllOfTheText) {
    const RegularExpression number("[0-9]+");
    EXPECT_TRUE(number.firstMatchCovers("12"));
    for (const char* text : {"", "a1", "1a", "1 2"}) EXPECT_FALSE(number.firstMatchCovers(text)) << text;

    const RegularExpression bare("[a-zA-Z0-9$_\\u0080-\\uFFFF]+");
    EXPECT_TRUE(bare.firstMatchCovers("gr\xC3\xB6\xC3\x9F" "e_$1"));
    EXPECT_FALSE(bare.firstMatchCovers("a\xF0\x9F\x98\x80"));

    const RegularExpression lower("^[\\p{lowercase}_][\\p{lowercase}\\p{Mark}_0-9$]*$");
    for (const char* text : {"\xC3\xA9", "\xC2\xAA", "abc$", "_9"}) EXPECT_TRUE(lower.firstMatchCovers(text)) << text;
    for (const char* text : {"\xE6\x97\xA5\xE6\x9C\xAC", "9a", "a b", "", "Abc", "abc\n"})
        EXPECT_FALSE(lower.firstMatchCovers(text)) << text;
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

TEST(RegularExpression, IsSharedByThreads) {
    const RegularExpression expression("(\\d+)$");
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (int n = 0; n < 500; ++n) {
                const std::string text = "n" + std::to_string(i * 1000 + n);
                const auto match = expression.firstMatch(text);
                if (!match || match->group(1, text) != std::string_view(text).substr(1)) ++wrong;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace vellicor
