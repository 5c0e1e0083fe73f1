// vellicor/export/source_node.h — the tree that SQL text is built from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vellicor/export/forward.h"
#include "vellicor/model/forward.h"
#include "vellicor/platform/text.h"
#include "vellicor/platform/text_format.h"

namespace vellicor {

/// One fragment of SQL with the punctuation and white space around it and between its children. A node owns its
/// children; the parent and the exporter are back-references that keep nothing alive. A tree belongs to the thread that
/// builds it; a text field may be read and written from any thread, and a read never sees half a write.
/// Texts are empty unless something else is said; setters store a copy.
class QVSourceNode {
public:
    using Children = std::vector<SourceNodePtr>;

    QVSourceNode() = default;
    virtual ~QVSourceNode();
    QVSourceNode(const QVSourceNode&) = delete;
    QVSourceNode& operator=(const QVSourceNode&) = delete;

    static SourceNodePtr node();
    /// A word of SQL: one blank after it unless `spaceAfter` is given.
    static SourceNodePtr nodeWithValue(std::string_view value);
    static SourceNodePtr nodeWithValue(std::string_view value, std::string_view spaceAfter);
    static SourceNodePtr nodeWithValue(std::string_view value, std::string_view spaceBefore,
                                       std::string_view spaceAfter);
    /// As `nodeWithValue(value)`, tagged with a number of the caller's.
    static SourceNodePtr nodeWithValueOfType(std::string_view value, int type);
    /// As `nodeWithValue(text(form, arguments...))`.
    template <class... Arguments>
    static SourceNodePtr nodeWithStringFormat(std::type_identity_t<detail::CheckedForm<Arguments...>> form,
                                              const Arguments&... arguments) {
        return nodeWithValue(text<Arguments...>(form, arguments...));
    }
    /// "(", children separated by ",", ")"; without visible children it writes nothing unless always visible.
    static SourceNodePtr bracketBlock();
    /// "/*", the text, "*/", without blanks of its own.
    static SourceNodePtr commentBlockWithStringValue(std::string_view value);

    // Reading.

    /// The text of the whole subtree, made anew at each call; empty when the node is not visible.
    [[nodiscard]] std::string string() const;
    /// The child's text as it stands inside this node: this node's quote string is escaped by a backslash.
    [[nodiscard]] std::string stringForNode(const QVSourceNode& child) const;
    /// What `string` writes as the node's own text; the value, unless a derived class shows something else.
    [[nodiscard]] virtual std::string displayValue() const;
    /// True when always visible, when the value is not empty, or when any child is visible.
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] Children visibleChildren() const;
    /// Null when no child is visible.
    [[nodiscard]] SourceNodePtr lastVisibleChild() const;
    /// The visible children that take part in the placing of separators.
    [[nodiscard]] Children infixItems() const;
    /// This node and everything below it in pre-order.
    [[nodiscard]] std::vector<const QVSourceNode*> flatten() const;
    /// For logs.
    [[nodiscard]] std::string description() const;

    // Children.

    /// Appends the child and answers it. With `quoteChildren` the child takes this node's child quote string. Null adds
    /// nothing and answers null. A node cannot be put below itself, whichever way (AssertionFailure).
    SourceNodePtr addChild(SourceNodePtr child);
    /// Adds the text as a word, and says in the log that a node was expected.
    SourceNodePtr addChild(std::string_view value);
    SourceNodePtr addChild(std::nullptr_t) { return nullptr; }
    /// An index beyond the count is a programming error (AssertionFailure). Does not apply `quoteChildren`.
    SourceNodePtr insertChild(SourceNodePtr child, std::size_t index);
    SourceNodePtr insertChildValue(std::string_view value, std::size_t index);
    /// Appends all of them, without applying `quoteChildren`.
    void addChildren(const Children& children);
    /// Adds an empty node that groups others, and answers it.
    SourceNodePtr addChildNode();
    SourceNodePtr addChildWithValue(std::string_view value);
    SourceNodePtr addChildWithValue(std::string_view value, std::string_view spaceAfter);
    SourceNodePtr addChildWithValue(std::string_view value, std::string_view spaceBefore, std::string_view spaceAfter);
    /// Takes out every occurrence and clears the child's parent, in either spelling.
    void removeChild(SourceNodePtr child);
    void removeChildrenObject(SourceNodePtr child) { removeChild(std::move(child)); }
    /// The child directly below this node whose elementId equals `id`; the first match wins, null if none.
    [[nodiscard]] SourceNodePtr childWithId(std::string_view id) const;
    /// The index must be in range.
    [[nodiscard]] const SourceNodePtr& childAtIndex(std::size_t index) const { return _children.at(index); }
    /// The index of a child; all ones when it is not one.
    [[nodiscard]] std::size_t indexOfChild(const SourceNodePtr& child) const;
    [[nodiscard]] const Children& children() const { return _children; }
    /// Replaces the list; the parents of the nodes that go and come follow.
    void setChildren(Children children);

    // Fields.

    [[nodiscard]] bool alwaysVisible() const { return _alwaysVisible; }
    void setAlwaysVisible(bool flag) { _alwaysVisible = flag; }
    /// True at first: the outer white space of the joined children is dropped and not put back.
    [[nodiscard]] bool trimChildren() const { return _trimChildren; }
    void setTrimChildren(bool flag) { _trimChildren = flag; }
    /// True leaves this node out of its parent's infix items.
    [[nodiscard]] bool removeInfixSeparator() const { return _removeInfixSeparator; }
    void setRemoveInfixSeparator(bool flag) { _removeInfixSeparator = flag; }
    [[nodiscard]] bool quoteChildren() const { return _quoteChildren; }
    void setQuoteChildren(bool flag) { _quoteChildren = flag; }
    [[nodiscard]] std::string value() const;
    void setValue(std::string_view value);
    /// Written before and after everything else of the node.
    [[nodiscard]] std::string spaceBefore() const { return rareText(Text::SpaceBefore); }
    void setSpaceBefore(std::string_view value) { setRareText(Text::SpaceBefore, value); }
    [[nodiscard]] std::string spaceAfter() const;
    void setSpaceAfter(std::string_view value);
    /// Written after the children.
    [[nodiscard]] std::string postfixValue() const { return rareText(Text::Postfix); }
    void setPostfixValue(std::string_view value) { setRareText(Text::Postfix, value); }
    /// Written between children.
    [[nodiscard]] std::string infixValue() const { return rareText(Text::Infix); }
    void setInfixValue(std::string_view value) { setRareText(Text::Infix, value); }
    /// Written between the opening quote and the value.
    [[nodiscard]] std::string prefixValue() const { return rareText(Text::Prefix); }
    void setPrefixValue(std::string_view value) { setRareText(Text::Prefix, value); }
    /// Written around the joined children when any is visible.
    [[nodiscard]] std::string spaceAfterChildren() const { return rareText(Text::SpaceAfterChildren); }
    void setSpaceAfterChildren(std::string_view value) { setRareText(Text::SpaceAfterChildren, value); }
    [[nodiscard]] std::string spaceBeforeChildren() const { return rareText(Text::SpaceBeforeChildren); }
    void setSpaceBeforeChildren(std::string_view value) { setRareText(Text::SpaceBeforeChildren, value); }
    /// The key by which the parent finds this node; null at first.
    [[nodiscard]] OptionalText elementId() const { return optionalText(Text::ElementId); }
    void setElementId(const OptionalText& id) { setOptionalText(Text::ElementId, id); }
    /// The uid of the model object that this node was made for; null at first.
    [[nodiscard]] OptionalText objectUid() const { return optionalText(Text::ObjectUid); }
    void setObjectUid(const OptionalText& uid) { setOptionalText(Text::ObjectUid, uid); }
    [[nodiscard]] std::string childQuoteString() const { return rareText(Text::ChildQuote); }
    void setChildQuoteString(std::string_view value) { setRareText(Text::ChildQuote, value); }
    /// Written on both sides of the node's whole text, and escaped inside its children's text.
    [[nodiscard]] std::string quoteString() const { return rareText(Text::Quote); }
    void setQuoteString(std::string_view value) { setRareText(Text::Quote, value); }
    /// For callers; `string` does not write it.
    [[nodiscard]] std::string nodeComment() const { return rareText(Text::Comment); }
    void setNodeComment(std::string_view value) { setRareText(Text::Comment, value); }
    /// A tag of the caller's; 0 at first.
    [[nodiscard]] int type() const { return _type; }
    void setType(int type) { _type = type; }
    [[nodiscard]] SQLExportDialect* exporter() const { return _exporter; }
    void setExporter(SQLExportDialect* exporter) { _exporter = exporter; }
    /// Comment markers kept for callers: "/*" and "*/" at first.
    [[nodiscard]] std::string openCommentString() const { return rareText(Text::OpenComment); }
    void setOpenCommentString(std::string_view value) { setRareText(Text::OpenComment, value); }
    [[nodiscard]] std::string closeCommentString() const { return rareText(Text::CloseComment); }
    void setCloseCommentString(std::string_view value) { setRareText(Text::CloseComment, value); }
    /// Written after each child, behind its separator, and after the last one too.
    [[nodiscard]] std::string infixSpaceAfter() const { return rareText(Text::InfixSpaceAfter); }
    void setInfixSpaceAfter(std::string_view value) { setRareText(Text::InfixSpaceAfter, value); }
    /// Written before each child.
    [[nodiscard]] std::string childSpaceBefore() const { return rareText(Text::ChildSpaceBefore); }
    void setChildSpaceBefore(std::string_view value) { setRareText(Text::ChildSpaceBefore, value); }
    /// The node that this one was last added to; null at the root and once that node is gone.
    [[nodiscard]] QVSourceNode* parentNode() const { return _parentNode; }
    void setParentNode(QVSourceNode* parent) { _parentNode = parent; }

private:
    enum class Text : std::uint8_t {
        SpaceBefore,
        Postfix,
        Infix,
        Prefix,
        SpaceAfterChildren,
        SpaceBeforeChildren,
        ElementId,
        ObjectUid,
        ChildQuote,
        Quote,
        Comment,
        OpenComment,
        CloseComment,
        InfixSpaceAfter,
        ChildSpaceBefore
    };
    struct RareText {
        Text field;
        std::string text;
    };
    struct Writer;

    static std::string_view defaultText(Text field);
    const std::string* findText(Text field) const;       // under the lock; null when the field has its default
    void storeText(Text field, std::string_view value);  // under the lock
    std::string rareText(Text field) const;
    void setRareText(Text field, std::string_view value);
    OptionalText optionalText(Text field) const;
    void setOptionalText(Text field, const OptionalText& value);
    void checkNotBelow(const QVSourceNode* child) const;
    [[nodiscard]] bool holds(const QVSourceNode& node) const;
    void wasPutInto(const QVSourceNode& holder);
    void wasTakenOut(const QVSourceNode& holder, std::size_t times);
    bool hasOwnText() const;

    bool _alwaysVisible = false;
    bool _trimChildren = true;
    bool _removeInfixSeparator = false;
    bool _quoteChildren = false;
    int _type = 0;
    std::string _value;
    std::string _spaceAfter;
    std::vector<RareText> _rareTexts;  // the texts that differ from their defaults; most nodes have none
    Children _children;
    QVSourceNode* _parentNode = nullptr;
    SQLExportDialect* _exporter = nullptr;
    // Where the node stands, whatever `setParentNode` said.
    const QVSourceNode* _holder = nullptr;  // the only node with this one in its list; null where that is not known
    std::size_t _places = 0;                // in lists
};

}  // namespace vellicor
