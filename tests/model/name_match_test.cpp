// tests/model/name_match_test.cpp — free names by numbering.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "vellicor/model/name_match.h"
#include "vellicor/model/object.h"

namespace vellicor {
namespace {

class Named : public SQLObject {
public:
    using SQLObject::SQLObject;
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
        objects.push_back(object);
        return object;
    }
    void rename(Named& object, const std::string& name) {
        const std::string former = lowercased(object.getName());
        object.setName(name);
        _hints.lock()->nameBecameFree(former);
    }
    void removeAt(std::size_t position) {
        _hints.lock()->nameBecameFree(lowercased(objects[position]->getName()));
        objects.erase(objects.begin() + static_cast<std::ptrdiff_t>(position));
    }
    bool holdsName(std::string_view name, const SQLObject* except) const override {
        ++lookUps;
        return std::ranges::any_of(
            objects, [&](auto& object) { return object.get() != except && lowercased(object->getName()) == name; });
    }
    std::size_t siblingCount(const SQLObject* except) const override {
        return objects.size() - (std::ranges::find(objects, except, &std::shared_ptr<Named>::get) != objects.end());
    }
    LockedHandle<NumberHints> numberHints() const override { return _hints.lock(); }

    std::vector<std::shared_ptr<Named>> objects;
    mutable std::size_t lookUps = 0;

private:
    mutable Guarded<NumberHints> _hints;
};

TEST(NameMatch, ForAnObject) {
    const struct {
        OptionalText proposal;
        bool withSchema;
        std::vector<std::string> taken;
        const char* result;
        const char* schema = "";
    } cases[] = {
        {std::nullopt, true, {}, "untitled"},
        {" \t\n", true, {"untitled"}, "untitled_1"},
        {" orders ", true, {"ORDERS"}, "orders_1"},
        {"orders", true, {"sales.orders"}, "orders_1", "sales"},
        {"sales.orders", true, {"sales.orders", "sales.orders_1"}, "sales.orders_2", "sales"},
        {"other.orders", true, {"other.orders"}, "other.orders_1", "sales"},
        {"orders", true, {"orders"}, "orders", "sales"},
        {"Orders", false, {"orders"}, "Orders"},
        {"orders", false, {"sales.orders"}, "orders", "sales"},
        {"n_9223372036854775807", true, {"n_9223372036854775807"}, "n_-9223372036854775808"},
        {"n_99999999999999999999", true, {"n_99999999999999999999"}, "n_9223372036854775807"},
        {"\u03A3\u03A3", true, {"\u03C3\u03C2", "\u03C3\u03C2_1"}, "\u03A3\u03A3_2"},
        {"%@", true, {"%@"}, "%@_1"},
    };
    for (const auto& c : cases) {
        Scope scope;
        for (const std::string& name : c.taken) scope.add(name);
        auto object = create<Named>();
        object->schema = c.schema;
        EXPECT_EQ(SQLNameMatch::getValidNameForObject(*object, c.proposal, scope, c.withSchema), c.result)
            << c.proposal.value_or("null") << c.schema;
    }
}

/// The rule itself: for an object numbers are digits behind the last underscore, among all whatever stands there.
std::string plainName(const Scope& scope, const std::string& name, const Named* object = nullptr,
                      bool withSchema = false) {
    auto key = [&](const std::string& candidate) {
        return withSchema ? SQLNameMatch::compNameWithSchema(candidate, *object) : lowercased(candidate);
    };
    if (!scope.holdsName(object && !withSchema ? name : key(name), object)) return name;
    const std::size_t underscore = name.rfind('_');
    const std::string behind = underscore == std::string::npos ? "" : name.substr(underscore + 1);
    const bool areDigits = !behind.empty() && behind.find_first_not_of("0123456789") == std::string::npos;
    const bool isNumbered = object ? areDigits : underscore != std::string::npos;
    const std::string base = isNumbered ? name.substr(0, underscore) : name;
    std::int64_t number = isNumbered ? integerValue(behind) : 1;
    while (scope.holdsName(key(base + "_" + std::to_string(number)), object)) ++number;
    return base + "_" + std::to_string(number);
}

TEST(NameMatch, HintsNeverChangeTheResult) {
    const std::vector<std::string> proposals{"x",   "X",     "x_1",   "x_3",   "x_03", "x_-2", "x_y",
                                             "s.x", "S.x_2", "x_7_2", "s.x_9", "x_",   "_5",   "my_x"};
    std::mt19937 random(20240501);
    auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    Scope scope;
    for (int step = 0; step < 2000; ++step) {
        const std::string proposal = proposals[below(proposals.size())];
        const bool exists = !scope.objects.empty() && below(3) == 0;
        auto object = exists ? scope.objects[below(scope.objects.size())] : create<Named>();
        if (!exists && below(2)) object->schema = "s";
        const bool withSchema = below(2);
        const std::string forObject = plainName(scope, proposal, object.get(), withSchema);
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
                if (below(20) == 0) scope.numberHints()->clear();
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
    constexpr std::size_t kCount = 200;
    for (std::size_t i = 0; i < kCount; ++i) scope.add(SQLNameMatch::getValidName("t", scope));
    for (std::size_t i = 0; i < kCount; ++i) {  // each number that becomes free is found again
        scope.removeAt(kCount / 2);
        auto object = create<Named>();
        scope.add(SQLNameMatch::getValidNameForObject(*object, "t", scope, true));
    }
    EXPECT_EQ(SQLNameMatch::getValidName("t", scope), "t_200");
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
    const std::pair<const char*, IncrementingNameParts> cases[] = {
        {"orders_7", {"orders", "7", std::nullopt}}, {"a_b_fk_12", {"a_b", "12", "fk"}},
        {"_fk_1", {"", "1", "fk"}},                  {"fk_1", {"fk", "1", std::nullopt}},
        {"a_1_2", {"a_1", "2", std::nullopt}},       {"a_FK_2", {"a_FK", "2", std::nullopt}},
        {"", {"", std::nullopt, std::nullopt}},
    };
    for (const auto& [name, parts] : cases) EXPECT_EQ(SQLNameMatch::namePartsForIncrementing(name), parts) << name;
}

}  // namespace
}  // namespace vellicor
