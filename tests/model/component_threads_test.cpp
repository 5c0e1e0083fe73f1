// tests/model/component_threads_test.cpp — two threads on one table, index, key or view; meant for the thread sanitizer.
#include <gtest/gtest.h>

#include "tests/support/two_threads.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/foreign_key.h"
#include "vellicor/model/index.h"
#include "vellicor/model/table.h"
#include "vellicor/model/view.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {
namespace {

using testing::changeWhileReading;

constexpr std::size_t kColumns = 60;

/// A table in a document; its columns are made beforehand, so that only the operation under test runs twice.
struct Wide {
    explicit Wide(bool filled) {
        document->add(table);
        for (std::size_t i = 0; i < kColumns; ++i) {
            columns.push_back(SQLField::fieldWithName(text("c%lu", i), "INTEGER"));
            if (filled) table->add(columns.back());
        }
    }
    std::shared_ptr<SQLContainer> document = SQLContainer::newContainer();
    std::shared_ptr<SQLTable> table = SQLTable::tableWithName("t");
    std::vector<std::shared_ptr<SQLField>> columns;
};

TEST(ComponentThreads, ATableIsReadWhileItsColumnsChange) {
    const Wide wide(false);
    SQLTable& table = *wide.table;
    changeWhileReading(
        kColumns,
        [&](std::size_t i) {
            table.add(wide.columns[i]);
            if (i % 3 == 2) table.remove(wide.columns[i - 1].get());
        },
        [&] {
            EXPECT_LE(table.fieldCount(), kColumns);
            (void)table.getFieldByName("C1");
            (void)table.primaryKeyList();
            (void)table.getFields();
            (void)table.exportToXMLNode();
            (void)copyOf(table);
        });
    EXPECT_EQ(table.fieldCount(), kColumns - kColumns / 3);
}

TEST(ComponentThreads, AnIndexIsReadWhileItsColumnsChange) {
    const Wide wide(true);
    const auto index = SQLIndex::indexWithName("i");
    wide.table->add(index);
    changeWhileReading(
        kColumns,
        [&](std::size_t i) {
            index->addIndexField(*wide.columns[i]);
            index->setSizeForIndexEntry(*wide.columns[i], "8");
            if (i % 3 == 2) index->removeIndexField(*wide.columns[i - 1]);
            wide.columns[0]->addIndexName("i");
        },
        [&] {
            EXPECT_LE(index->indexListCount(), kColumns);
            EXPECT_LE(index->fieldList().size(), kColumns);
            (void)index->indexContainsField(*wide.columns[1]);
            (void)index->getFieldNameListWithPrefixes(true);
            (void)index->exportToXMLNode();
            (void)wide.columns[0]->indexList();
        });
    EXPECT_EQ(index->indexListCount(), kColumns - kColumns / 3);
}

TEST(ComponentThreads, AnIndexIsResolvedWhileNamesArrive) {
    const Wide wide(true);
    const auto index = SQLIndex::indexWithName("i");
    wide.table->add(index);
    changeWhileReading(
        kColumns, [&](std::size_t i) { index->setFieldName(text("c%lu", i)); }, [&] { index->postLoadProcess(); });
    index->postLoadProcess();
    EXPECT_EQ(index->indexListCount(), kColumns);
}

TEST(ComponentThreads, AKeyIsReadWhileItsPairsChange) {
    const Wide wide(true);
    const auto key = SQLForeignKey::initWithName("k");
    wide.table->add(key);
    key->setTargetTable(wide.table.get());
    changeWhileReading(
        kColumns,
        [&](std::size_t i) {
            key->addFieldPair(wide.columns[i].get(), wide.columns[0].get());
            if (i % 3 == 2) key->removeFieldPairAtIndex(0);
        },
        [&] {
            EXPECT_LE(key->getKeyPairCount(), kColumns);
            EXPECT_LE(key->fieldPairs().size(), kColumns);
            (void)key->getKeyPairAtIndex(0);
            (void)key->getSourceList();
            (void)key->exportToSQL();
            (void)key->exportToXMLNode();
        });
    EXPECT_EQ(key->getKeyPairCount(), kColumns - kColumns / 3);
}

TEST(ComponentThreads, AViewIsReadWhileItsColumnsArrive) {
    const auto document = SQLContainer::newContainer();
    const auto view = SQLView::viewWithName("v");
    document->add(view);
    changeWhileReading(
        kColumns,
        [&](std::size_t i) {
            view->addColumn(text("c%lu", i));
            view->addSelectColumn(text("c%lu", i));
            view->addTableEntry("t");
            view->updateFieldList();
        },
        [&] {
            (void)view->exportToXMLNode();
            (void)copyOf(*view);
            EXPECT_EQ(view->fieldCount() % 2, 0u) << "no reader sees half a list";
            const Value json(view->jsonDictionary());
            EXPECT_EQ(json.find("entries")->asList()->size() % 2, 0u);
        });
    EXPECT_GT(view->getFields().size(), 2 * kColumns);
}

}  // namespace
}  // namespace vellicor
