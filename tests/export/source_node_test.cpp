// tests/export/source_node_test.cpp — the text of node trees, and the cutting of SQL blocks.
#include "vellicor/export/source_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "tests/support/log_capture.h"
#include "vellicor/export/generic_exporter_appender.h"
#include "vellicor/platform/exception.h"

namespace vellicor {
namespace {

using ::testing::ElementsAre;

/// `node` with children that have no space after them.
SourceNodePtr withWords(SourceNodePtr node, const std::vector<std::string>& words) {
    for (const std::string& word : words) node->addChildWithValue(word, "");
    return node;
}

TEST(SourceNode, SeparatesVisibleChildrenUnlessTheyAreFlaggedAtTheEnd) {
    auto spaced = withWords(QVSourceNode::bracketBlock(), {"a", "", "b", ""});
    spaced->setInfixSpaceAfter(" ");
    spaced->setChildSpaceBefore("\t");
    EXPECT_EQ(spaced->string(), "(a, \tb)") << "invisible children leave neither text nor separator";

    struct Case {
        std::vector<std::string> words;
        std::vector<std::size_t> flagged;
        std::string expected;
    };
    const Case cases[] = {
        {{"a ", "b "}, {}, "(a ,b)"},       // children keep their blanks; the outer ones are trimmed
        {{"a", "b", "c"}, {2}, "(a,bc)"},   // behind the last infix item
        {{"a", "b", "c"}, {1}, "(a,b,c)"},  // in the middle
        {{"a", "b", "c"}, {1, 2}, "(ab,c)"},
        {{"a", "b"}, {0, 1}, "(a,b)"},  // no infix item at all
        {{"a", "b", ""}, {1}, "(ab)"},
    };
    for (const Case& c : cases) {
        auto block = withWords(QVSourceNode::bracketBlock(), c.words);
        for (std::size_t index : c.flagged) block->childAtIndex(index)->setRemoveInfixSeparator(true);
        EXPECT_EQ(block->string(), c.expected);
    }
}

TEST(SourceNode, WithoutTrimmingTheOuterSpacesOfTheChildrenComeBack) {
    auto block = QVSourceNode::bracketBlock();
    block->setTrimChildren(false);
    block->setInfixSpaceAfter("\n");
    block->setSpaceBeforeChildren("\n");
    block->addChildWithValue("a", "  ", "");
    block->addChildWithValue("b", "  ", "|");
    EXPECT_EQ(block->string(), "(\n  a,\n  b|\n|)");
    block->setChildren({});
    block->addChildWithValue(" \t\n", "<", " ");
    EXPECT_EQ(block->string(), "(\n<<\n )") << "trimmed first, then both outer spaces come back";
}

TEST(SourceNode, QuotesAreEscapedInsideChildrenOnly) {
    auto quoted = QVSourceNode::nodeWithValue("own\"", "");
    quoted->setQuoteString("\"");
    auto inner = quoted->addChildWithValue("a\"b", "");
    EXPECT_EQ(quoted->string(), "\"own\"a\\\"b\"");

    auto list = QVSourceNode::bracketBlock();
    list->setQuoteChildren(true);
    list->setChildQuoteString("`");
    withWords(list, {"a", "b"});
    list->insertChildValue("c", 1);
    list->addChildren({QVSourceNode::nodeWithValue("d", "")});
    EXPECT_EQ(list->string(), "(`a`,c ,`b`,d)") << "only addChild hands the quote string on";

    auto outer = QVSourceNode::node();
    outer->setQuoteString("'");
    outer->addChild(inner)->setQuoteString("'");
    EXPECT_EQ(outer->string(), "'\\'a\"b\\''") << "a child's own quotes are escaped too";
}

TEST(SourceNode, ChildrenAreFoundMovedAndReleased) {
    auto root = QVSourceNode::node();
    auto group = root->addChildNode();
    auto deep = group->addChildWithValue("deep");
    deep->setElementId("#id");
    EXPECT_EQ(root->childWithId("#id"), nullptr) << "direct children only";
    auto first = root->addChildWithValue("first");
    first->setElementId("#id");
    root->addChildWithValue("second")->setElementId("#id");
    EXPECT_EQ(root->childWithId("#id"), first);
    EXPECT_EQ(root->indexOfChild(first), 1u);
    EXPECT_THAT(root->flatten(),
                ElementsAre(root.get(), group.get(), deep.get(), first.get(), root->children()[2].get()));

    root->addChild(first);
    root->removeChild(first);
    EXPECT_EQ(first->parentNode(), nullptr);
    EXPECT_EQ(root->addChild(nullptr), nullptr);
    EXPECT_EQ(root->addChild(SourceNodePtr()), nullptr);
    EXPECT_EQ(root->children().size(), 2u) << "every occurrence goes";
    EXPECT_THROW(group->addChild(root), AssertionFailure);
    EXPECT_THROW(group->insertChild(group, 0), AssertionFailure);

    group->addChildren(group->children());
    EXPECT_EQ(group->string(), "deep deep");
    root.reset();
    EXPECT_EQ(group->parentNode(), nullptr) << "an owner that goes clears the back-reference";
    EXPECT_EQ(deep->parentNode(), group.get());
}

TEST(SourceNode, NoWayLeadsToARing) {
    const auto top = QVSourceNode::node(), other = QVSourceNode::node(), shared = QVSourceNode::node();
    top->addChild(shared);
    other->addChild(shared);  // a second parent
    shared->addChildWithValue("x", "");
    EXPECT_THROW(shared->addChild(top), AssertionFailure) << "by the first parent";
    EXPECT_THROW(shared->addChildren({other}), AssertionFailure);
    shared->setParentNode(nullptr);
    EXPECT_THROW(shared->setChildren({top}), AssertionFailure) << "whatever it says of its parent";
    other->removeChild(shared);
    EXPECT_THROW(shared->insertChild(top, 0), AssertionFailure);
    shared->addChild(other);
    EXPECT_THROW(other->addChild(top), AssertionFailure);
    EXPECT_EQ(top->string(), "x");
}

TEST(SourceNode, DepthCostsNoStack) {
    const auto root = QVSourceNode::node();
    SourceNodePtr deepest = root;
    for (int level = 0; level < 200'000; ++level) deepest = deepest->addChildNode();
    EXPECT_EQ(root->string(), "");
    deepest->setValue("deep");
    EXPECT_TRUE(root->isVisible());
    EXPECT_EQ(root->string(), "deep");
}

TEST(SourceNode, AStringInPlaceOfANodeIsLogged) {
    testing::LogCapture log;
    auto root = QVSourceNode::node();
    root->addChild("word");
    root->addChildWithValue("x", "");
    EXPECT_EQ(root->string(), "word x");
    EXPECT_THAT(log.lines(), ElementsAre("warning - added string instead of node (word)"));
}

TEST(SourceNode, ATextFieldIsNeverReadHalfWritten) {
    const std::string one(100, 'a'), two(60, 'b');
    auto node = QVSourceNode::nodeWithValue(one);
    node->setInfixValue(one);
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i) {
            node->setValue(i % 2 ? one : two);
            node->setInfixValue(i % 2 ? one : two);
        }
    });
    bool whole = true;
    for (int i = 0; i < 2000; ++i)
        for (const std::string& read : {node->value(), node->infixValue()}) whole &= read == one || read == two;
    writer.join();
    EXPECT_TRUE(whole);
}

TEST(SQLBlockSplitter, CutsBehindSemicolonsOutsideQuotes) {
    struct Case {
        const char* block;
        std::vector<std::string> statements;
    };
    const Case cases[] = {
        {" \n ", {""}},
        {"\n a; \n", {"a;"}},
        {"a; 'x;y'; b", {"a;", " 'x;y';", " b"}},
        {"a;;b", {"a;", ";", "b"}},
        {"'it\\';s'; \"q;'\"; `b;`", {"'it\\';s';", " \"q;'\";", " `b;`"}},
        {"'it''s;'; x", {"'it''s;';", " x"}},
        {"\\'; x';y", {"\\'; x';", "y"}},  // a backslash outside quotes means nothing
        {"'open; end", {"'open; end"}},
        {"größe;\n-- ü", {"größe;", "\n-- ü"}},
    };
    for (const Case& c : cases) EXPECT_EQ(GenericSQLExporterAppender::SQLBlockArrayFromString(c.block), c.statements);
}

TEST(SQLBlockSplitter, BlocksOf65536UnitsStayWhole) {
    testing::LogCapture log;
    std::string block = "a;";
    while (block.size() < 65535) block += "b";
    EXPECT_EQ(GenericSQLExporterAppender::SQLBlockArrayFromString("  " + block).size(), 2u);
    EXPECT_THAT(log.lines(), ElementsAre());
    block += "b";
    EXPECT_THAT(GenericSQLExporterAppender::SQLBlockArrayFromString(block), ElementsAre(block));
    EXPECT_THAT(log.lines(), ElementsAre("SQL block too long to split (65536)"));

    std::string wide = "a;";  // 40,000 units in 80,000 bytes
    for (int i = 0; i < 39998; ++i) wide += "ü";
    EXPECT_EQ(GenericSQLExporterAppender::SQLBlockArrayFromString(wide).size(), 2u);
}

}  // namespace
}  // namespace vellicor
