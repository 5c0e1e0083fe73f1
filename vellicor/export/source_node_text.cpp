// vellicor/export/source_node_text.cpp — source nodes: the text of a tree, written into one buffer.
#include <mutex>

#include "vellicor/export/source_node.h"
#include "vellicor/platform/atomic_property.h"

namespace vellicor {

/// One making of a text. Which nodes are visible is found once, for every node in pre-order; the writing follows the
/// same order and steps over what is not visible.
struct QVSourceNode::Writer {
    struct Mark {
        bool visible = false;
        std::size_t end = 0;  // the first mark behind this node's subtree
    };
    /// The texts of one node, read together under its lock. Missing ones are empty.
    struct Texts {
        explicit Texts(const QVSourceNode& node) {
            std::scoped_lock lock(sharedLock(&node));
            spaceAfter = node._spaceAfter;
            for (const RareText& rare : node._rareTexts) {
                switch (rare.field) {
                    case Text::SpaceBefore: spaceBefore = rare.text; break;
                    case Text::Postfix: postfix = rare.text; break;
                    case Text::Infix: infix = rare.text; break;
                    case Text::Prefix: prefix = rare.text; break;
                    case Text::SpaceAfterChildren: spaceAfterChildren = rare.text; break;
                    case Text::SpaceBeforeChildren: spaceBeforeChildren = rare.text; break;
                    case Text::Quote: quote = rare.text; break;
                    case Text::InfixSpaceAfter: infixSpaceAfter = rare.text; break;
                    case Text::ChildSpaceBefore: childSpaceBefore = rare.text; break;
                    default: break;
                }
            }
        }
        std::string spaceBefore, spaceAfter, prefix, postfix, quote, infix, infixSpaceAfter;
        std::string childSpaceBefore, spaceBeforeChildren, spaceAfterChildren;
    };

    /// A node whose text is being written. Trees may be deep, so nodes wait in a list, not on the stack.
    struct Open {
        Open(const QVSourceNode& opened, std::size_t own) : node(&opened), texts(opened), position(own + 1) {}
        const QVSourceNode* node;
        Texts texts;
        std::size_t position;  // the mark of the child that is next
        std::size_t next = 0;
        const QVSourceNode* first = nullptr;  // of the visible children
        const QVSourceNode* last = nullptr;
        const QVSourceNode* lastInfixItem = nullptr;
        std::size_t childrenStart = 0;  // in the text
        std::size_t childStart = 0;
    };

    bool mark(const QVSourceNode& root) {
        struct Step {
            const QVSourceNode* node;
            std::size_t own;
            std::size_t next = 0;
        };
        std::vector<Step> steps;
        auto enter = [&](const QVSourceNode& node) {
            steps.push_back({&node, marks.size()});
            marks.push_back({node.hasOwnText()});
        };
        enter(root);
        while (!steps.empty()) {
            Step& step = steps.back();
            if (step.next < step.node->_children.size()) {
                enter(*step.node->_children[step.next++]);
                continue;
            }
            Mark& own = marks[step.own];
            own.end = marks.size();
            steps.pop_back();
            if (own.visible && !steps.empty()) marks[steps.back().own].visible = true;
        }
        return marks.front().visible;
    }

    /// Writes the marked tree, whose root is visible.
    void write(const QVSourceNode& root) {
        begin(root, 0);
        while (!open.empty()) {
            Open& node = open.back();
            const Children& children = node.node->_children;
            while (node.next < children.size() && !marks[node.position].visible) step(node);
            if (node.next < children.size()) {
                out += node.texts.childSpaceBefore;
                node.childStart = out.size();
                begin(*children[node.next], node.position);
            } else {
                end(node);
                open.pop_back();
                if (!open.empty()) endChild(open.back());
            }
        }
    }

    void step(Open& node) {
        node.position = marks[node.position].end;
        ++node.next;
    }

    void begin(const QVSourceNode& node, std::size_t own) {
        Open& opened = open.emplace_back(node, own);
        const Texts& texts = opened.texts;
        out += texts.spaceBefore;
        out += texts.quote;
        out += texts.prefix;
        out += node.displayValue();
        std::size_t position = own + 1;
        for (const SourceNodePtr& child : node._children) {
            if (marks[position].visible) {
                if (!opened.first) opened.first = child.get();
                opened.last = child.get();
                if (!child->_removeInfixSeparator) opened.lastInfixItem = child.get();
            }
            position = marks[position].end;
        }
        if (opened.first) out += texts.spaceBeforeChildren;
        opened.childrenStart = out.size();
    }

    void endChild(Open& parent) {
        const QVSourceNode* child = parent.node->_children[parent.next].get();
        escape(parent.texts.quote, parent.childStart);
        if (child != parent.last && child != parent.lastInfixItem) out += parent.texts.infix;
        out += parent.texts.infixSpaceAfter;
        step(parent);
    }

    void end(const Open& node) {
        const Texts& texts = node.texts;
        if (node.first) {
            const std::size_t start = node.childrenStart;
            const std::string_view kept = trimmed(std::string_view(out).substr(start));
            const std::size_t leading = kept.empty() ? 0 : static_cast<std::size_t>(kept.data() - out.data()) - start;
            out.resize(start + leading + kept.size());
            if (node.node->_trimChildren) {
                out.erase(start, leading);
            } else {
                out.replace(start, leading, node.first->spaceBefore());
                out += texts.infixSpaceAfter;
                out += node.last->spaceAfter();
            }
            out += texts.spaceAfterChildren;
        }
        out += texts.postfix;
        out += texts.quote;
        out += texts.spaceAfter;
    }

    /// Puts a backslash in front of each `quote` from `start` on.
    void escape(const std::string& quote, std::size_t start) {
        if (quote.empty() || out.find(quote, start) == std::string::npos) return;
        const std::string escaped = replacingAll(std::string_view(out).substr(start), quote, "\\" + quote);
        out.replace(start, std::string::npos, escaped);
    }

    std::string out;
    std::vector<Mark> marks;
    std::vector<Open> open;
};

std::string QVSourceNode::string() const {
    Writer writer;
    if (writer.mark(*this)) writer.write(*this);
    return std::move(writer.out);
}

std::string QVSourceNode::stringForNode(const QVSourceNode& child) const {
    Writer writer;
    if (writer.mark(child)) writer.write(child);
    writer.escape(quoteString(), 0);
    return std::move(writer.out);
}

}  // namespace vellicor
