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

    bool mark(const QVSourceNode& node) {
        const std::size_t own = marks.size();
        marks.emplace_back();
        bool visible = node.hasOwnText();
        for (const SourceNodePtr& child : node._children) visible |= mark(*child);
        marks[own] = {visible, marks.size()};
        return visible;
    }

    /// Writes a visible node whose mark is `own`.
    void write(const QVSourceNode& node, std::size_t own) {
        const Texts texts(node);
        out += texts.spaceBefore;
        out += texts.quote;
        out += texts.prefix;
        out += node.displayValue();
        writeChildren(node, own, texts);
        out += texts.postfix;
        out += texts.quote;
        out += texts.spaceAfter;
    }

    void writeChildren(const QVSourceNode& node, std::size_t own, const Texts& texts) {
        const QVSourceNode* first = nullptr;
        const QVSourceNode* last = nullptr;
        const QVSourceNode* lastInfixItem = nullptr;
        std::size_t position = own + 1;
        for (const SourceNodePtr& child : node._children) {
            if (marks[position].visible) {
                if (!first) first = child.get();
                last = child.get();
                if (!child->_removeInfixSeparator) lastInfixItem = child.get();
            }
            position = marks[position].end;
        }
        if (!first) return;

        out += texts.spaceBeforeChildren;
        const std::size_t start = out.size();
        position = own + 1;
        for (const SourceNodePtr& child : node._children) {
            if (marks[position].visible) {
                out += texts.childSpaceBefore;
                writeChild(*child, position, texts.quote);
                if (child.get() != last && child.get() != lastInfixItem) out += texts.infix;
                out += texts.infixSpaceAfter;
            }
            position = marks[position].end;
        }
        const std::string_view kept = trimmed(std::string_view(out).substr(start));
        const std::size_t leading = kept.empty() ? 0 : static_cast<std::size_t>(kept.data() - out.data()) - start;
        out.resize(start + leading + kept.size());
        if (node._trimChildren) {
            out.erase(start, leading);
        } else {
            out.replace(start, leading, first->spaceBefore());
            out += texts.infixSpaceAfter;
            out += last->spaceAfter();
        }
        out += texts.spaceAfterChildren;
    }

    void writeChild(const QVSourceNode& child, std::size_t position, const std::string& quote) {
        const std::size_t start = out.size();
        write(child, position);
        if (quote.empty() || out.find(quote, start) == std::string::npos) return;
        const std::string escaped = replacingAll(std::string_view(out).substr(start), quote, "\\" + quote);
        out.replace(start, std::string::npos, escaped);
    }

    std::string out;
    std::vector<Mark> marks;
};

std::string QVSourceNode::string() const {
    Writer writer;
    if (writer.mark(*this)) writer.write(*this, 0);
    return std::move(writer.out);
}

std::string QVSourceNode::stringForNode(const QVSourceNode& child) const {
    Writer writer;
    if (writer.mark(child)) writer.writeChild(child, 0, quoteString());
    return std::move(writer.out);
}

}  // namespace vellicor
