// tests/model/container_threads_test.cpp — two threads on one document; meant for the thread sanitizer.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/support/two_threads.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/object_style.h"
#include "vellicor/model/table.h"

namespace vellicor {
namespace {

/// Made beforehand: tables take their default places from a counter of the class.
std::vector<std::shared_ptr<SQLTable>> tables(std::size_t count) {
    std::vector<std::shared_ptr<SQLTable>> tables(count);
    for (auto& table : tables) table = SQLTable::tableWithName("t");
    return tables;
}

TEST(ContainerThreads, OneAddsAndRemovesWhileTheOtherReads) {
    constexpr std::size_t kTables = 300;
    const auto document = SQLContainer::newContainer();
    const auto added = tables(kTables);
    testing::changeWhileReading(
        kTables,
        [&](std::size_t i) {
            document->add(added[i]);
            if (i % 3 == 2) document->remove(*document->objectList()[i / 3]);
            if (i + 1 == kTables) document->reorderByUID();
        },
        [&] {
            EXPECT_LE(document->count(), kTables);
            EXPECT_LE(document->objectListSortedByName().size(), kTables);
            EXPECT_LE(document->objectListByZOrder().size(), kTables);
            if (const auto* found = document->getObjectByName("T", false)) (void)document->zorderForObject(*found);
            (void)document->isObjectNamePresent("t_7");
            (void)document->uidInContainer("nobody");
            (void)document->objectWithUid("nobody");
            document->reorderByForeignKeys();
            (void)document->xmlDocument();
        });
    EXPECT_EQ(document->count(), kTables - kTables / 3);
    EXPECT_EQ(document->objectListByZOrder().size(), document->count());
}

TEST(ContainerThreads, BothAddUnderNamesOfTheirOwn) {
    constexpr std::size_t kTables = 200;
    const auto document = SQLContainer::newContainer();
    auto add = [&](const std::vector<std::shared_ptr<SQLTable>>& added) {
        for (const auto& table : added) document->add(table);
    };
    const auto mine = tables(kTables), others = tables(kTables);
    std::thread other(add, others);
    add(mine);
    other.join();
    EXPECT_EQ(document->count(), 2 * kTables);
    EXPECT_NE(document->getObjectByName("t_399"), nullptr);
    EXPECT_EQ(document->getObjectByName("t_400"), nullptr);
}

TEST(ContainerThreads, BothAskForNamesAndStyles) {
    const auto document = SQLContainer::newContainer();
    const auto table = SQLTable::tableWithName("t");
    document->add(table);
    for (const char* name : {"c", "c_1", "c_2"}) table->add(SQLField::fieldWithName(name, "INTEGER"));
    const auto ask = [&] {
        for (int i = 0; i < 300; ++i) {
            EXPECT_EQ(table->getValidName("c"), "c_3");
            EXPECT_EQ(table->getValidNameForObject(*document, "c"), "c_3");
            EXPECT_EQ(SQLNameMatch::getValidName("c", *table), "c_3") << "without the table's own lock around it";
            EXPECT_EQ(document->getValidName("t"), "t_1");
        }
        for (const auto& field : table->getFields()) EXPECT_EQ(field->objectStyle()->styledObject(), field.get());
    };
    std::thread other(ask);
    ask();
    other.join();
}

TEST(ContainerThreads, DocumentsTakeObjectsFromEachOther) {
    const std::shared_ptr<SQLContainer> documents[] = {SQLContainer::newContainer(), SQLContainer::newContainer(),
                                                       SQLContainer::newContainer()};
    for (const auto& document : documents)
        for (const auto& table : tables(15)) document->add(table);
    const auto exchange = [&](std::size_t to, std::size_t from) {
        for (int i = 0; i < 10; ++i) {
            documents[to]->merge(*documents[from]);
            for (const auto& table : documents[from]->objectList()) documents[to]->add(table);
            documents[to]->addObjects(documents[from]->flatObjectList());
        }
    };
    std::thread second(exchange, 1, 2), third(exchange, 2, 0);
    exchange(0, 1);
    second.join();
    third.join();
    exchange(0, 1), exchange(0, 2);
    EXPECT_EQ(documents[0]->count(), 45u);
}

}  // namespace
}  // namespace vellicor
