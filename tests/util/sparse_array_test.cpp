// tests/util/sparse_array_test.cpp — the array with gaps, rectangles.
#include "vellicor/util/sparse_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "vellicor/util/rectangle.h"

namespace vellicor {
namespace {

struct Item {
    char name;
};

/// The places as one letter each, "." for a gap.
std::string places(const QVSparseMutableArray<Item>& array) {
    std::string result;
    for (std::uint64_t i = 0; i < array.length(); ++i) result += array.objectAt(i) ? array.objectAt(i)->name : '.';
    return result;
}

TEST(SparseArray, GapsAreLeftFilledConsumedAndClosed) {
    Item a{'a'}, b{'b'}, c{'c'}, d{'d'};
    QVSparseMutableArray<Item> array;
    array.append(&a);
    array.insertAt(3, &b);
    EXPECT_EQ(places(array), "a..b");
    array.insertAt(2, &c);
    EXPECT_EQ(places(array), "a.cb") << "a gap is filled";
    array.insertAt(0, &d);
    EXPECT_EQ(places(array), "dacb") << "a used place shifts up to the gap, which is consumed";
    array.insertAt(7, &d);
    EXPECT_EQ(places(array), "acb....d") << "an object that is inserted again moves";
    EXPECT_TRUE(array.remove(&c));
    EXPECT_EQ(places(array), "ab....d") << "removal closes the place";
    EXPECT_TRUE(array.remove(&d));
    EXPECT_EQ(places(array), "ab") << "no gap stays at the end";
}

TEST(SparseArray, HugeIndexesCostNothing) {
    Item a{'a'}, b{'b'}, c{'c'};
    QVSparseMutableArray<Item> array;
    array.insertAt(4'000'000'000, &a);
    array.insertAt(UINT64_MAX, &b);
    array.append(&c);
    EXPECT_EQ(array.indexOf(&a), 4'000'000'000);
    EXPECT_EQ(array.objects(), (std::vector<Item*>{&a, &b, &c}));
    EXPECT_EQ(array.indexOf(&b), std::uint64_t{INT64_MAX} - 1) << "nothing stands behind the greatest index";
    EXPECT_EQ(array.indexOf(&c), INT64_MAX);
}

TEST(SparseArray, TheGreatestIndexIsSharedByMakingRoomBelow) {
    constexpr std::uint64_t last = INT64_MAX;
    Item a{'a'}, b{'b'}, c{'c'}, d{'d'};
    const struct {
        std::vector<std::pair<std::uint64_t, Item*>> inserted;
        std::vector<std::pair<Item*, std::uint64_t>> places;  // in order
    } cases[] = {
        {{{last, &a}, {last, &b}, {last, &c}}, {{&b, last - 2}, {&c, last - 1}, {&a, last}}},
        {{{last - 1, &a}, {last - 1, &b}, {last - 1, &c}}, {{&c, last - 2}, {&b, last - 1}, {&a, last}}},
        {{{last, &a}, {last - 1, &b}, {last - 3, &c}, {last - 1, &d}},
         {{&c, last - 3}, {&d, last - 2}, {&b, last - 1}, {&a, last}}},
        {{{last, &a}, {0, &b}, {last, &c}}, {{&b, 0}, {&c, last - 1}, {&a, last}}},
    };
    for (const auto& [inserted, places] : cases) {
        QVSparseMutableArray<Item> array;
        for (const auto& [index, item] : inserted) array.insertAt(index, item);
        std::vector<Item*> order;
        for (const auto& [item, index] : places) {
            order.push_back(item);
            EXPECT_EQ(array.indexOf(item), index) << item->name << " of " << places.size();
        }
        EXPECT_EQ(array.objects(), order);
    }
    std::vector<Item> many(1000);
    QVSparseMutableArray<Item> array;
    for (std::size_t i = 0; i < many.size(); ++i) array.insertAt(i % 7 ? last : last - i / 2, &many[i]);
    std::uint64_t before = 0;
    for (const Item* item : array.objects()) {
        EXPECT_GT(*array.indexOf(item), before);
        before = *array.indexOf(item);
    }
    EXPECT_EQ(before, last);
}

TEST(SparseArray, AgreesWithAPlainListUnderRandomChanges) {
    std::mt19937 random(7);
    for (int round = 0; round < 15; ++round) {
        std::vector<Item> items(50);
        std::vector<Item*> model;  // null for a gap
        QVSparseMutableArray<Item> array;
        const auto removeFromModel = [&](Item* item) {
            std::erase(model, item);
            while (!model.empty() && !model.back()) model.pop_back();
        };
        for (int step = 0; step < 300; ++step) {
            Item* item = &items[random() % items.size()];
            const auto action = random() % 10;
            const bool wasThere = std::ranges::count(model, item) > 0;
            removeFromModel(item);
            if (action < 6) {
                const std::size_t index = random() % 80;
                array.insertAt(index, item);
                if (index >= model.size()) model.resize(index + 1);
                const auto place = model.begin() + static_cast<std::ptrdiff_t>(index);
                if (*place) {
                    const auto gap = std::find(place, model.end(), nullptr);
                    if (gap != model.end()) model.erase(gap);
                    model.insert(model.begin() + static_cast<std::ptrdiff_t>(index), item);
                } else {
                    *place = item;
                }
            } else if (action < 7) {
                array.append(item);
                model.push_back(item);
            } else {
                ASSERT_EQ(array.remove(item), wasThere);
            }
            ASSERT_EQ(array.length(), model.size());
            std::vector<Item*> present;
            for (std::size_t i = 0; i < model.size(); ++i) {
                ASSERT_EQ(array.objectAt(i), model[i]);
                if (!model[i]) continue;
                present.push_back(model[i]);
                ASSERT_EQ(array.indexOf(model[i]), i);
            }
            ASSERT_EQ(array.count(), present.size());
            ASSERT_EQ(array.objects(), present);
        }
    }
}

TEST(Rectangle, EmptyOnesDoNotCountInAUnion) {
    const Rect table{{100, 100}, {200, 100}}, other{{-10, 150}, {20, 100}}, flat{{5, 5}, {10, 0}};
    EXPECT_EQ(unionRect({}, table), table);
    EXPECT_EQ(unionRect(table, flat), table);
    EXPECT_EQ(unionRect(flat, flat), Rect{});
    EXPECT_EQ(unionRect(table, other), (Rect{{-10, 100}, {310, 150}}));
    EXPECT_EQ((Point{0.5, -2}.description()), "{0.5, -2}");
    EXPECT_EQ((Size{3, 0.1}.description()), "{3, 0.10000000000000001}");
}

}  // namespace
}  // namespace vellicor
