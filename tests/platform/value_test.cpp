// tests/platform/value_test.cpp — values as JSON, property lists, archives; bytes as Base64.
#include "vellicor/platform/value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "vellicor/platform/base64.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/json.h"
#include "vellicor/platform/keyed_archive.h"
#include "vellicor/platform/property_list.h"

namespace vellicor {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// A value of every kind but null.
Value sample() {
    return Value::Map{{"text", "a <&> \"b\"\n\xC3\xA9"},
                      {"empty", ""},
                      {"", "no key"},
                      {"yes", Value::boolean(true)},
                      {"low", Value::integer(INT64_MIN)},
                      {"high", Value::integer(INT64_MAX)},
                      {"real", Value::real(0.1)},
                      {"whole", Value::real(2)},
                      {"list", Value::List{"x", Value::List{}, Value::Map{}}}};
}

std::string nested(std::string_view open, std::string_view close, int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += open;
    for (int i = 0; i < depth; ++i) text += close;
    return text;
}

std::string failure(auto&& act) {
    try {
        act();
    } catch (const SQLException& error) {
        return error.name() + ": " + error.reason();
    }
    return "no failure";
}

TEST(Json, ReadsBackWhatItWrote) {
    EXPECT_EQ(valueFromJson(jsonText(sample())), sample());
    EXPECT_EQ(valueFromJson(prettyJsonText(sample())), sample());
    EXPECT_EQ(prettyJsonText(Value::List{"a"}, 4), "[\n    \"a\"\n]");
    EXPECT_EQ(jsonText(Value::Map{{"b", Value::List{"\xFF", Value::real(std::numeric_limits<double>::infinity())}},
                                  {"a", PropertyValue::boolean(true)}}),
              "{\"a\":true,\"b\":[\"\xEF\xBF\xBD\",null]}");
    EXPECT_EQ(valueFromJson("{\"a\":1,\"a\":{\"b\":[2,[]]},\"c\":18446744073709551615}"),
              Value(Value::Map{{"a", Value::Map{{"b", Value::List{Value::integer(2), Value::List{}}}}},
                               {"c", Value::real(18446744073709551615.0)}}));
}

TEST(Json, SaysWhereItFails) {
    const std::pair<std::string, const char*> cases[] = {
        {"{\n  \"a\": x}", "line 2, column 8: syntax error"},
        {nested("[", "]", 100'000), "levels of nesting"},
        {"", "line 1, column "},      {"[1e999]", "line 1, column "},  {"[1", "line 1, column "},
        {"{\"a\"}", "line 1, column "}, {"\"\xFF\"", "line 1, column "}, {"1 2", "line 1, column "},
    };
    for (const auto& [text, reason] : cases)
        EXPECT_THAT(failure([&text = text] { (void)valueFromJson(text); }),
                    AllOf(StartsWith("JSONException: "), HasSubstr(reason)));
}

TEST(PropertyList, ReadsBackWhatItWrote) {
    std::string error;
    const auto text = propertyListText(sample(), error);
    ASSERT_TRUE(text) << error;
    EXPECT_EQ(valueFromPropertyList(*text, error), sample()) << *text;
    EXPECT_EQ(valueFromPropertyList("\xEF\xBB\xBF" + *text, error), sample());

    // What XML cannot hold is dropped or repaired, in keys too.
    const std::string dirty("a\x01\0\xFF\xEF\xBF\xBF" "b", 8);
    const auto cleaned = propertyListText(Value::Map{{dirty, dirty}}, error);
    ASSERT_TRUE(cleaned);
    EXPECT_EQ(valueFromPropertyList(*cleaned, error), Value(Value::Map{{"a\xEF\xBF\xBD" "b", "a\xEF\xBF\xBD" "b"}}));

    EXPECT_FALSE(propertyListText(Value::Map{{"a", Value::List{Value()}}}, error));
    EXPECT_THAT(error, HasSubstr("null"));
    EXPECT_EQ(valueFromPropertyList("<plist><array><date>2020-02-03T04:05:06Z</date>"
                                    "<data> AQ\n ID </data></array></plist>", error),
              Value(Value::List{"2020-02-03T04:05:06Z", "AQID"}));
}

/// A binary property list of these objects (the first is the root), with sizes of one byte.
std::string binaryList(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00", table;
    for (const std::string& object : objects) {
        table += static_cast<char>(bytes.size());
        bytes += object;
    }
    const auto place = static_cast<char>(bytes.size());
    auto number = [](char value) { return std::string(7, '\0') + value; };
    return bytes + table + std::string(6, '\0') + "\1\1" + number(static_cast<char>(objects.size())) + number(0) +
           number(place);
}

TEST(PropertyList, TextsOfManyReferencesAreRefusedAtOnce) {
    const auto read = [](std::size_t references) {
        std::string list = "<plist version=\"1.0\"><string>";
        for (; references > 0; --references) list += "&amp;";
        std::string error;
        return valueFromPropertyList(list + "</string></plist>", error).has_value() ? "" : error;
    };
    EXPECT_EQ(read(5000), "");
    EXPECT_THAT(read(400'000), ::testing::HasSubstr("too many references"));
}

TEST(PropertyList, ReadsTheBinaryFormAndRefusesWhatIsNone) {
    std::string error;
    const std::string sound = binaryList({"\xD2\1\2\3\4", "\x51k", "\x51m", "\x53" "abc", "\xA2\1\5", "\x10\x2A"});
    EXPECT_EQ(valueFromPropertyList(sound, error),
              Value(Value::Map{{"k", "abc"}, {"m", Value::List{"k", Value::integer(42)}}}));

    std::vector<std::string> multiplying;  // each list holds the next one twice: 2^60 values
    for (char i = 1; i <= 60; ++i) multiplying.push_back(std::string("\xA2") + i + i);
    multiplying.push_back("\x09");
    const std::string itself("\xA1\0", 2);
    // Tags in comments and instructions do not end a level.
    const std::string hidden = nested("<array><!--></array>--><?></dict>?>", "</array>", 1000);
    const std::string hostile[] = {
        binaryList({itself}), binaryList(multiplying), binaryList({"\xA1\7"}), binaryList({"\xAF\x13\xFF"}),
        binaryList({}), sound.substr(0, sound.size() - 1), "bplist00" + std::string(40, '\xFF'), "", "abc", "<plist>",
        "<plist></plist>", "<plist><dict><string>no key</string></dict></plist>", "<plist>" + hidden + "</plist>",
    };
    for (const std::string& bytes : hostile) {
        error.clear();
        EXPECT_FALSE(valueFromPropertyList(bytes, error)) << bytes.substr(0, 80);
        EXPECT_NE(error, "");
    }
    EXPECT_THAT(error, HasSubstr("too deeply"));
    for (std::size_t i = 0; i < sound.size(); ++i) {  // any damage is refused or read as something, never worse
        std::string damaged = sound;
        damaged[i] = static_cast<char>(damaged[i] ^ 0xFF);
        (void)valueFromPropertyList(damaged, error);
    }
}

TEST(KeyedArchive, KeepsItsEntries) {
    KeyedArchiver archiver;
    archiver.encode("SQLContainer", "name");
    archiver.encode(Value::List{"old"}, "objectList");
    archiver.encode(sample(), "objectList");
    const KeyedUnarchiver unarchiver = KeyedUnarchiver::fromData(archiver.data());
    ASSERT_TRUE(unarchiver.decode("name") && unarchiver.decode("objectList"));
    EXPECT_EQ(*unarchiver.decode("name"), Value("SQLContainer"));
    EXPECT_EQ(*unarchiver.decode("objectList"), sample());
    EXPECT_EQ(unarchiver.decode("labelManager"), nullptr);
    const char* others[] = {"", "{}", "[]", "<a/>", "{\"archive\":\"vellicor 1\"}", "{\"archive\":2,\"entries\":{}}"};
    for (const char* bytes : others)
        EXPECT_THAT(failure([&] { (void)KeyedUnarchiver::fromData(bytes); }), StartsWith("ArchiveException")) << bytes;
}

TEST(Base64, WritesLinesOfSixtyFourAndReadsAnyLines) {
    const std::string full = nested("YWFh", "", 16);
    const std::pair<std::string, std::string> cases[] = {
        {"", ""}, {"f", "Zg=="}, {"foo", "Zm9v"}, {"\xFF\xFE\xFB", "//77"}, {std::string("\0\0", 2), "AAA="},
        {std::string(97, 'a'), full + "\n" + full + "\nYQ=="},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(base64Text(bytes), text);
        EXPECT_EQ(bytesFromBase64(text), bytes);
    }
    EXPECT_EQ(bytesFromBase64(full + "\r\n" + full + "\n YQ"), std::string(97, 'a'));
    EXPECT_EQ(bytesFromBase64("Z m\t9\r\nv\nZg==Zm9v"), "foof");
    EXPECT_EQ(bytesFromBase64("Zm9v*Zm9v"), "foo");
}

}  // namespace
}  // namespace vellicor
