// tests/model/foreign_key_graph_test.cpp — which type a chain of references gives its columns.
#include "vellicor/model/foreign_key_graph.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/document_builder.h"
#include "tests/support/log_capture.h"
#include "vellicor/platform/exception.h"

namespace vellicor {
namespace {

using testing::LogCapture;
using ::testing::ElementsAre;
using ::testing::SizeIs;

/// A table with the columns a to e; the type of each is its letter twice, "AA" to "EE".
struct Columns {
    std::shared_ptr<SQLContainer> document = testing::document("t(a AA; b BB; c CC; d DD; e EE)");
    SQLTable& table = *testing::table(*document, "t");
    SQLForeignKeyObjectGraph& graph = *document->fkObjectGraph();

    SQLField* operator[](char name) { return table.getFieldByName(std::string(1, name)); }
    /// "ab b-" sets references one after the other: a references b, b references nothing.
    template <class Then>
    void refer(std::string_view steps, Then then) {
        for (std::size_t i = 0; i + 1 < steps.size(); i += 3) {
            SQLField* field = (*this)[steps[i]];
            field->setFkField(steps[i + 1] == '-' ? nullptr : (*this)[steps[i + 1]]);
            then(field);
        }
    }
    void refer(std::string_view steps) {
        refer(steps, [](SQLField*) {});
    }
    /// The forced type of each column, by its first letter; a blank for a column that is gone.
    std::string types() {
        std::string types;
        for (char name : {'a', 'b', 'c', 'd', 'e'}) {
            SQLField* field = (*this)[name];
            types += field ? graph.dataTypeForField(*field)->front() : ' ';
        }
        return types;
    }
    /// Each listed root with the names of its children.
    std::string trees() const {
        auto name = [](const FKGraphNode& node) { return node.field() ? node.field()->getName() : "?"; };
        std::string trees;
        for (const auto& root : graph.subgraphList()) {
            trees += name(*root) + "(";
            for (const auto& child : root->children()) trees += name(*child);
            trees += ")";
        }
        return trees;
    }
};

TEST(ForeignKeyGraph, GivesAChainTheTypeOfItsEnd) {
    const struct {
        const char* steps;
        const char* types;
        const char* trees;
    } rows[] = {
        {"ab bc", "CCCDE", "c(b)"},
        {"ac bc dc b-", "CBCCE", "c(ad)"},
        {"ab a-", "ABCDE", ""},
        {"ab bc b-", "BBCDE", "b(a)"},
        {"ab bc a-", "ACCDE", "c(b)"},
        // A column that changes its target leaves the old one, which stays listed.
        {"ab ac", "CBCDE", "b()c(a)"},
        {"ab ac bd", "CDCDE", "c(a)d(b)"},
        // So does a root that gains a target that has a node already.
        {"ab cd bd", "DDDDE", "b(a)d(cb)"},
        // What would close a ring stays outside the trees.
        {"ab bc ca", "CCCDE", "c(b)"},
        {"aa", "ABCDE", ""},
        // A root is handed to direct children only: a keeps c.
        {"ab bc cd de", "CDEEE", "e(d)"},
    };
    for (const auto& row : rows) {
        Columns columns;
        columns.refer(row.steps);
        EXPECT_EQ(columns.types(), row.types) << row.steps;
        EXPECT_EQ(columns.trees(), row.trees) << row.steps;
    }
    EXPECT_THROW(Columns().graph.updateForeignKey(nullptr), AssertionFailure);
}

TEST(ForeignKeyGraph, EndsItsWalksInARing) {
    // The root that a remembers is out of date when d comes to reference it.
    Columns columns;
    columns.refer("ab bc cd da");
    const auto node = columns.graph.nodeForField(columns['a']);
    EXPECT_EQ(node->depthFromRoot(), 4u);
    EXPECT_EQ(node->nodeForField(columns['d']), columns.graph.nodeForField(columns['d']).get());
    EXPECT_EQ(node->nodeForField(columns['e']), nullptr);
    EXPECT_EQ(std::ranges::count(node->description(), '\n'), 4);
    EXPECT_EQ(node->dataType(), "CC");
}

TEST(ForeignKeyGraph, OutlivesItsColumns) {
    Columns columns;
    columns.refer("ac bc de");
    columns.table.remove(columns['c']);
    EXPECT_EQ(columns.types(), "AB EE") << "a root that is gone gives no type";
    columns.table.remove(columns['a']);
    EXPECT_EQ(columns.trees(), "?(b)e(d)");
    columns.table.add(SQLField::fieldWithName("c", "NEW"));
    columns.refer("b- dc");
    EXPECT_EQ(columns.trees(), "e()c(d)");
    EXPECT_EQ(columns.graph.dataTypeForField(*columns['d']), "NEW");
    columns.table.remove(columns['d']);
    EXPECT_EQ(columns.trees(), "e()");
}

TEST(ForeignKeyGraph, DescribesItsTrees) {
    Columns columns;
    LogCapture log;
    columns.graph.debug();
    EXPECT_EQ(columns.graph.description(), "<SQLForeignKeyObjectGraph> no subgraphs");
    columns.refer("ab bd cd");
    auto line = [&](char name) { return "<FKGraphNode> Tree " + columns[name]->description() + " \n"; };
    const std::string tree =
        "\nRoot [type: DD] :\n  " + line('d') + " -" + line('b') + " --" + line('a') + " -" + line('c');
    EXPECT_EQ(columns.graph.description(), "<SQLForeignKeyObjectGraph>" + tree);
    columns.graph.debug();
    EXPECT_THAT(log.lines(), ElementsAre("no subgraphs", tree));
}

TEST(ForeignKeyGraph, HoldsLongChainsAndWideTrees) {
    constexpr std::size_t kCount = 100'000;
    auto root = FKGraphNode::nodeWithField(nullptr), last = root;
    for (std::size_t i = 1; i < kCount; ++i) last = last->addChildForField(nullptr);
    EXPECT_EQ(last->depthFromRoot(), kCount);
    EXPECT_EQ(last->root(), root.get());
    root.reset();
    EXPECT_EQ(last->parent(), nullptr);

    auto wide = FKGraphNode::nodeWithField(nullptr);
    for (std::size_t i = 0; i < kCount; ++i) wide->addChildForField(nullptr);
    const auto children = wide->children();
    for (std::size_t i = 0; i < kCount; ++i)
        if (i != 7) wide->removeChild(*children[i]);
    EXPECT_THAT(wide->children(), ElementsAre(children[7]));
    for (const std::size_t kept : {7, 3}) wide->addChild(children[kept]);
    wide->removeChild(*children[5]);
    EXPECT_THAT(wide->children(), ElementsAre(children[7], children[3]));
    auto other = FKGraphNode::nodeWithField(nullptr);
    other->addChild(children[3]);
    EXPECT_THAT(wide->children(), ElementsAre(children[7]));
}

TEST(ForeignKeyGraph, FlatFormKeepsListsOfColumns) {
    const struct {
        const char* steps;
        const char* lists;
        const char* typeOfA;
    } rows[] = {
        {"ab", "ba ", "BB"},
        {"ab bc", "ba ", "BB"},  // a list of its own, without the target
        {"ab cd bc", "dcab ", "DD"},
        {"ab cb a-", "bc ", "AA"},
        {"ab b-", "ba ", "BB"},
        {"ab ba", "ba ", "BB"},
    };
    for (const auto& row : rows) {
        Columns columns;
        SQLForeignKeyGraph flat;
        columns.refer(row.steps, [&](SQLField* field) { flat.updateForeignKey(field); });
        std::string lists;
        for (const auto& subgraph : flat.subgraphList()) {
            for (const auto& column : subgraph) lists += column->getName();
            lists += " ";
        }
        EXPECT_EQ(lists, row.lists) << row.steps;
        EXPECT_EQ(flat.typeForField(*columns['a']), row.typeOfA) << row.steps;
    }
    Columns columns;
    SQLForeignKeyGraph flat;
    columns.refer("ab cb", [&](SQLField* field) { flat.updateForeignKey(field); });
    columns['c']->setFkField(nullptr);
    LogCapture log;
    flat.updateForeignKey(columns['c']);
    const std::string a = columns['a']->description(), b = columns['b']->description();
    EXPECT_EQ(log.lines().front(), "need to rebuild: (\n    " + b + ",\n    " + a + "\n)");
    EXPECT_EQ(log.lines().back(), "updating foreign key " + a + " " + b);
    EXPECT_THAT(flat.graph(), SizeIs(2));
    EXPECT_THAT(flat.dependendentFields(columns['b']), SizeIs(1));
}

}  // namespace
}  // namespace vellicor
