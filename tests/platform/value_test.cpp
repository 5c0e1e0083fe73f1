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

TEST(PropertyValue, ReadsAsText) {
    EXPECT_EQ(PropertyValue("a").text(), "a");
    EXPECT_EQ(PropertyValue::integer(-5).text(), "-5");
    EXPECT_EQ(PropertyValue::real(0.1).text(), "0.1");
    EXPECT_EQ(PropertyValue::boolean(true).text() + PropertyValue::boolean(false).text(), "10");
    EXPECT_EQ(jsonText(Value::List{PropertyValue("5"), PropertyValue::integer(5), PropertyValue::boolean(false)}),
              "[\"5\",5,false]");
}

TEST(Value, FindsEntriesOfMapsOnly) {
    const Value value = Value::Map{{"a", "1"}};
    ASSERT_TRUE(value.find("a"));
    EXPECT_EQ(*value.find("a"), Value("1"));
    EXPECT_EQ(value.find("b"), nullptr);
    EXPECT_EQ(Value("a").find("a"), nullptr);
}

TEST(Json, ReadsBackWhatItWrote) {
    EXPECT_EQ(valueFromJson(jsonText(sample())), sample());
    EXPECT_EQ(valueFromJson(prettyJsonText(sample())), sample());
    EXPECT_EQ(jsonText(Value::Map{{"b", Value()}, {"a", Value::boolean(true)}}), "{\"a\":true,\"b\":null}");
    EXPECT_EQ(prettyJsonText(Value::List{"a"}, 4), "[\n    \"a\"\n]");
    EXPECT_EQ(jsonText(Value::List{"\xFF", Value::real(std::numeric_limits<double>::infinity())}),
              "[\"\xEF\xBF\xBD\",null]");
    EXPECT_EQ(valueFromJson("{\"a\":1,\"a\":{\"b\":[2,[]]},\"c\":18446744073709551615}"),
              Value(Value::Map{{"a", Value::Map{{"b", Value::List{Value::integer(2), Value::List{}}}}},
                               {"c", Value::real(18446744073709551615.0)}}));
}

TEST(Json, SaysWhereItFails) {
    EXPECT_THAT(failure([] { (void)valueFromJson("{\n  \"a\": x}"); }),
                StartsWith("JSONException: line 2, column 8: syntax error"));
    EXPECT_THAT(failure([] { (void)valueFromJson("[1e999]"); }), StartsWith("JSONException: line 1, column "));
    for (const std::string text : {"", "[1", "{\"a\"}", "\"\xFF\"", "1 2", "nul"})
        EXPECT_THAT(failure([&] { (void)valueFromJson(text); }), StartsWith("JSONException: line 1, column ")) << text;
    EXPECT_THAT(failure([] { (void)valueFromJson(nested("[", "]", 100'000)); }), HasSubstr("levels of nesting"));
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
}

TEST(PropertyList, ReadsDatesAndDataAsText) {
    std::string error;
    EXPECT_EQ(valueFromPropertyList("<plist><array><date>2020-02-03T04:05:06Z</date><date>1999-12-31T23:59:59Z</date>"
                                    "<data> AQ\n ID </data><integer>-7</integer></array></plist>", error),
              Value(Value::List{"2020-02-03T04:05:06Z", "1999-12-31T23:59:59Z", "AQID", Value::integer(-7)}));
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

TEST(PropertyList, ReadsTheBinaryForm) {
    std::string error;
    const std::string sound = binaryList({"\xD2\1\2\3\4", "\x51k", "\x51m", "\x53" "abc", "\xA2\1\5", "\x10\x2A"});
    EXPECT_EQ(valueFromPropertyList(sound, error),
              Value(Value::Map{{"k", "abc"}, {"m", Value::List{"k", Value::integer(42)}}}));

    std::vector<std::string> multiplying;  // each list holds the next one twice: 2^60 values
    for (char i = 1; i <= 60; ++i) multiplying.push_back(std::string("\xA2") + i + i);
    multiplying.push_back("\x09");
    const std::string hostile[] = {
        binaryList({std::string("\xA1\0", 2)}),  // holds itself
        binaryList(multiplying),
        binaryList({"\xA1\7"}),
        binaryList({"\xAF\x13\xFF"}),
        binaryList({}),
        sound.substr(0, sound.size() - 1),
        "bplist00",
        "bplist00" + std::string(40, '\xFF'),
    };
    for (const std::string& bytes : hostile) {
        error.clear();
        EXPECT_FALSE(valueFromPropertyList(bytes, error));
        EXPECT_NE(error, "");
    }
    for (std::size_t i = 0; i < sound.size(); ++i) {  // any damage is refused or read as something, never worse
        std::string damaged = sound;
        damaged[i] = static_cast<char>(damaged[i] ^ 0xFF);
        (void)valueFromPropertyList(damaged, error);
    }
}

TEST(PropertyList, RefusesWhatIsNone) {
    std::string error;
    // Tags in comments and instructions do not end a level.
    const std::string deep = nested("<array>", "</array>", 1000);
    const std::string hidden = nested("<array><!--></array>--><?></dict>?>", "</array>", 1000);
    const std::string hostile[] = {"", "abc", "<plist>", "<plist></plist>",
                                   "<plist><dict><string>no key</string></dict></plist>",
                                   "<plist>" + deep + "</plist>", "<plist>" + hidden + "</plist>"};
    for (const std::string& text : hostile) {
        error.clear();
        EXPECT_FALSE(valueFromPropertyList(text, error)) << text.substr(0, 80);
        EXPECT_NE(error, "");
    }
    EXPECT_THAT(error, HasSubstr("too deeply"));
}

TEST(KeyedArchive, KeepsItsEntries) {
    KeyedArchiver archiver;
    archiver.encode("SQLContainer", "name");
    archiver.encode(Value::List{"old"}, "objectList");
    archiver.encode(sample(), "objectList");
    archiver.encode(Value(), "documentInfo");
    const KeyedUnarchiver unarchiver = KeyedUnarchiver::fromData(archiver.data());
    ASSERT_TRUE(unarchiver.decode("name") && unarchiver.decode("objectList") && unarchiver.decode("documentInfo"));
    EXPECT_EQ(*unarchiver.decode("name"), Value("SQLContainer"));
    EXPECT_EQ(*unarchiver.decode("objectList"), sample());
    EXPECT_TRUE(unarchiver.decode("documentInfo")->isNull());
    EXPECT_EQ(unarchiver.decode("labelManager"), nullptr);
    const char* others[] = {"", "{}", "[]", "<a/>", "{\"archive\":\"vellicor 1\"}", "{\"archive\":2,\"entries\":{}}"};
    for (const char* bytes : others)
        EXPECT_THAT(failure([&] { (void)KeyedUnarchiver::fromData(bytes); }), StartsWith("ArchiveException")) << bytes;
}

TEST(Base64, WritesLinesOfSixtyFourAndReadsAnyLines) {
    const std::string full = nested("YWFh", "", 16);
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},       {"f", "Zg=="},           {"fo", "Zm8="},
        {"foo", "Zm9v"}, {"\xFF\xFE\xFB", "//77"}, {std::string("\0\0", 2), "AAA="},
        {std::string(48, 'a'), full},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(base64Text(bytes), text);
        EXPECT_EQ(bytesFromBase64(text), bytes);
    }
    EXPECT_EQ(base64Text(std::string(97, 'a')), full + "\n" + full + "\nYQ==");
    EXPECT_EQ(bytesFromBase64(full + "\r\n" + full + "\n YQ"), std::string(97, 'a'));
    EXPECT_EQ(bytesFromBase64("Z m\t9\r\nv\nZg==Zm9v"), "foof");
    EXPECT_EQ(bytesFromBase64("Zm9v*Zm9v"), "foo");
}

}  // namespace
}  // namespace vellicor
