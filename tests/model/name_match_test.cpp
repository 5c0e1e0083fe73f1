// tests/model/name_match_test.cpp — free names by numbering, and dotted names.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "vellicor/model/name_match.h"
#include "vellicor/model/object.h"
#include "vellicor/model/object_name.h"

namespace vellicor {
namespace {

class Named : public SQLObject {
public:
    std::string getName() const override { return schema.empty() ? getBaseName() : schema + "." + getBaseName(); }
    std::string getSchemaName() const override { return schema; }
    bool classCanUseSchemaName() const override { return true; }
    std::string schema;
};

class Scope : public NameScope {
public:
    std::shared_ptr<Named> add(const OptionalText& name, std::string schema = {}) {
        auto object = create<Named>();
        object->schema = std::move(schema);
        object->setName(name);
        ++_counts[lowercased(object->getName())];
        objects.push_back(object);
        return object;
    }
    void rename(Named& object, const std::string& name) {
        leave(object);
        object.setName(name);
        ++_counts[lowercased(object.getName())];
    }
    void removeAt(std::size_t position) {
        leave(*objects[position]);
        objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(position));
    }
    bool holdsName(std::string_view name, const SQLObject* except) const override {
        ++lookUps;
        auto found = _counts.find(std::string(name));
        std::size_t count = found == _counts.end() ? 0 : found->second;
        const bool isIn = std::any_of(objects.begin(), objects.end(), [&](auto& o) { return o.get() == except; });
        return count > (isIn && lowercased(except->getName()) == name ? 1u : 0u);
    }
    std::size_t siblingCount(const SQLObject* except) const override {
        return objects.size() - static_cast<std::size_t>(std::count_if(objects.begin(), objects.end(),
                                                                       [&](auto& o) { return o.get() == except; }));
    }
    NumberHints& numberHints() const override { return _hints; }

    std::vector<std::shared_ptr<Named>> objects;
    mutable std::size_t lookUps = 0;

private:
    void leave(const Named& object) {
        const std::string name = lowercased(object.getName());
        --_counts[name];
        _hints.nameBecameFree(name);
    }
    std::unordered_map<std::string, std::size_t> _counts;
    mutable NumberHints _hints;
};

TEST(NameMatch, ForAnObject) {
    struct Case {
        OptionalText proposal;
        bool withSchema;
        std::vector<std::string> taken;
        const char* result;
        const char* schema = "";
    };
    for (const Case& c : {
             Case{std::nullopt, true, {}, "untitled"},
             {" \t\n", true, {"untitled"}, "untitled_1"},
             {"untitled", true, {"untitled", "untitled_1"}, "untitled_2"},
             {" orders ", true, {"ORDERS"}, "orders_1"},
             {"orders_3", true, {"orders_3"}, "orders_4"},
             {"orders_03", true, {"orders_03"}, "orders_3"},
             {"my_table", true, {"my_table"}, "my_table_1"},
             {"_5", true, {"_5"}, "_6"},
             {"orders", true, {"sales.orders"}, "orders_1", "sales"},
             {"sales.orders", true, {"sales.orders", "sales.orders_1"}, "sales.orders_2", "sales"},
             {"other.orders", true, {"other.orders"}, "other.orders_1", "sales"},
             {"orders", true, {"orders"}, "orders", "sales"},
             {"Orders", false, {"orders"}, "Orders"},
             {"orders", false, {"Orders", "orders_1"}, "orders_2"},
             {"orders", false, {"sales.orders"}, "orders", "sales"},
             {"n_9223372036854775807", true, {"n_9223372036854775807"}, "n_-9223372036854775808"},
             {"n_99999999999999999999", true, {"n_99999999999999999999"}, "n_9223372036854775807"},
             {"\u03A3\u03A3", true, {"\u03C3\u03C2", "\u03C3\u03C2_1"}, "\u03A3\u03A3_2"},
             {"%@", true, {"%@"}, "%@_1"},
         }) {
        Scope scope;
        for (const std::string& name : c.taken) scope.add(name);
        auto object = create<Named>();
        object->schema = c.schema;
        EXPECT_EQ(SQLNameMatch::getValidNameForObject(*object, c.proposal, scope, c.withSchema), c.result)
            << c.proposal.value_or("null") << c.schema;
    }
    Scope scope;
    auto own = scope.add("orders");
    EXPECT_EQ(SQLNameMatch::getValidNameForObject(*own, "orders", scope, true), "orders");
}

TEST(NameMatch, AmongAll) {
    struct Case {
        OptionalText proposal;
        std::vector<std::string> taken;
        const char* result;
    };
    for (const Case& c : {
             Case{std::nullopt, {}, "untitled"},
             {"  ", {"untitled"}, "untitled_1"},
             {"my_table", {}, "my_table"},
             {"my_table", {"MY_TABLE"}, "my_0"},
             {"my_table", {"my_table", "my_0"}, "my_1"},
             {"item_9", {"item_9"}, "item_10"},
             {"x_", {"x_"}, "x_0"},
             {"_5", {"_5", "_6"}, "_7"},
         }) {
        Scope scope;
        for (const std::string& name : c.taken) scope.add(name);
        EXPECT_EQ(SQLNameMatch::getValidName(c.proposal, scope), c.result) << c.proposal.value_or("null");
    }
    Scope scope;
    auto own = scope.add("Orders");
    EXPECT_TRUE(SQLNameMatch::isObjectNamePresent("oRDERS", scope));
    EXPECT_FALSE(SQLNameMatch::isObjectNamePresent("orders", scope, own.get()));
    EXPECT_TRUE(SQLNameMatch::isObjectNamePresent("orders", scope, nullptr));
}

/// The rule itself, with the names gathered for every call.
std::string plainNameForObject(const Scope& scope, const Named& object, const std::string& name, bool withSchema) {
    std::unordered_set<std::string> taken;
    for (const auto& sibling : scope.objects) {
        if (sibling.get() != &object) taken.insert(lowercased(sibling->getName()));
    }
    auto key = [&](const std::string& candidate) {
        return withSchema ? SQLNameMatch::compNameWithSchema(candidate, object) : lowercased(candidate);
    };
    if (!taken.contains(withSchema ? key(name) : name)) return name;
    const std::size_t underscore = name.rfind('_');
    const bool numbered = underscore != std::string::npos && underscore + 1 < name.size() &&
                          name.find_first_not_of("0123456789", underscore + 1) == std::string::npos;
    const std::string base = numbered ? name.substr(0, underscore) : name;
    std::int64_t number = numbered ? integerValue(name.substr(underscore + 1)) : 1;
    while (taken.contains(key(base + "_" + std::to_string(number)))) ++number;
    return base + "_" + std::to_string(number);
}

std::string plainName(const Scope& scope, const std::string& name) {
    auto isTaken = [&](const std::string& candidate) {
        return std::any_of(scope.objects.begin(), scope.objects.end(),
                           [&](auto& object) { return lowercased(object->getName()) == lowercased(candidate); });
    };
    if (!isTaken(name)) return name;
    const std::size_t underscore = name.rfind('_');
    const std::string base = name.substr(0, underscore);
    std::int64_t number = underscore == std::string::npos ? 1 : integerValue(name.substr(underscore + 1));
    while (isTaken(base + "_" + std::to_string(number))) ++number;
    return base + "_" + std::to_string(number);
}

TEST(NameMatch, HintsNeverChangeTheResult) {
    const std::vector<std::string> proposals{"x",   "X",   "x_1",   "x_3",   "x_03", "x_-2",
                                             "x_y", "s.x", "S.x_2", "x_7_2", "s.x_9"};
    std::mt19937 random(20240501);
    auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    Scope scope;
    for (int step = 0; step < 2000; ++step) {
        const std::string proposal = proposals[below(proposals.size())];
        const bool exists = !scope.objects.empty() && below(3) == 0;
        auto object = exists ? scope.objects[below(scope.objects.size())] : create<Named>();
        if (!exists && below(2)) object->schema = "s";
        const bool withSchema = below(2);
        const std::string forObject = plainNameForObject(scope, *object, proposal, withSchema);
        const std::string amongAll = plainName(scope, proposal);
        ASSERT_EQ(SQLNameMatch::getValidNameForObject(*object, proposal, scope, withSchema), forObject) << step;
        ASSERT_EQ(SQLNameMatch::getValidName(proposal, scope), amongAll) << step;
        switch (below(scope.objects.size() > 30 ? 3 : 6)) {
            case 0:
                if (!scope.objects.empty()) scope.removeAt(below(scope.objects.size()));
                break;
            case 1:
                if (exists) scope.rename(*object, below(2) ? forObject : proposal);
                break;
            case 2:
                if (below(20) == 0) scope.numberHints().clear();
                break;
            case 3:
                scope.add(amongAll);
                break;
            default:
                scope.add(forObject, object->schema);
        }
    }
}

TEST(NameMatch, ManyObjectsOfOneNameAreNumberedWithoutSearching) {
    Scope scope;
    constexpr std::size_t kCount = 1000;
    for (std::size_t i = 0; i < kCount; ++i) scope.add(SQLNameMatch::getValidName("t", scope));
    for (std::size_t i = 0; i < kCount; ++i) {  // each number that becomes free is found again
        scope.removeAt(kCount / 2);
        auto object = create<Named>();
        scope.add(SQLNameMatch::getValidNameForObject(*object, "t", scope, true));
    }
    EXPECT_EQ(SQLNameMatch::getValidName("t", scope), "t_1000");
    EXPECT_LT(scope.lookUps, 10 * kCount);
}

TEST(NameMatch, NumbersPastTheLargestComeRound) {
    NumberHints hints;
    constexpr auto kMost = std::numeric_limits<std::uint64_t>::max();
    hints.remember("x", kMost - 1, 2);
    EXPECT_EQ(hints.firstCandidate("x", kMost), 3u);
    hints.nameBecameFree("x_-1");
    EXPECT_EQ(hints.firstCandidate("x", kMost - 1), kMost);
    EXPECT_EQ(hints.firstCandidate("x", 0), 3u);
    hints.remember("x", 4, 6);
    hints.remember("x", 3, 3);
    EXPECT_EQ(hints.firstCandidate("x", 1), 7u);
    for (const char* other : {"x_01", "x_+1", "x_", "x_-0", "x", "y_1", "x_9"}) hints.nameBecameFree(other);
    EXPECT_EQ(hints.firstCandidate("x", 1), 7u);
}

TEST(NameMatch, PartsForIncrementing) {
    struct Case {
        const char* name;
        IncrementingNameParts parts;
    };
    for (const Case& c : {
             Case{"orders", {"orders", std::nullopt, std::nullopt}},
             {"orders_7", {"orders", "7", std::nullopt}},
             {"orders_fk_2", {"orders", "2", "fk"}},
             {"a_b_fk_12", {"a_b", "12", "fk"}},
             {"_fk_1", {"", "1", "fk"}},
             {"fk_1", {"fk", "1", std::nullopt}},
             {"a_1_2", {"a_1", "2", std::nullopt}},
             {"a_FK_2", {"a_FK", "2", std::nullopt}},
             {"", {"", std::nullopt, std::nullopt}},
         }) {
        EXPECT_EQ(SQLNameMatch::namePartsForIncrementing(c.name), c.parts) << c.name;
    }
}

TEST(ObjectName, JoinsQualifiersBaseAndAlias) {
    auto name = SQLObjectName::objectNameWithBaseName("orders");
    EXPECT_EQ(name.description(), "orders");
    name.addQualifier("db");
    name.addQualifier(std::nullopt);
    name.addQualifier("sales");
    name.setAlias("");
    EXPECT_EQ(name.aliasString(), "");
    name.setAlias("t");
    EXPECT_EQ(name.fullyQualifiedName(), "db.sales.orders");
    EXPECT_EQ(name.aliasString(), " AS t");
    EXPECT_EQ(name.description(), "db.sales.orders AS t");
}

}  // namespace
}  // namespace vellicor
