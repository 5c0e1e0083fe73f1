// vellicor/export/source_node.cpp — source nodes: their fields and children.
#include "vellicor/export/source_node.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <ranges>
#include <unordered_set>

#include "vellicor/platform/atomic_property.h"
#include "vellicor/platform/exception.h"
#include "vellicor/platform/log.h"

namespace vellicor {

namespace {
constexpr auto visible = [](const SourceNodePtr& child) { return child->isVisible(); };
}  // namespace

QVSourceNode::~QVSourceNode() {
    // Nodes that nobody else holds go one by one, not each inside the one above it.
    Children remaining = std::move(_children);
    for (const SourceNodePtr& child : remaining) child->wasTakenOut(*this, 1);
    while (!remaining.empty()) {
        const SourceNodePtr last = std::move(remaining.back());
        remaining.pop_back();
        if (last.use_count() != 1) continue;
        for (SourceNodePtr& child : last->_children) {
            child->wasTakenOut(*last, 1);
            remaining.push_back(std::move(child));
        }
        last->_children.clear();
    }
}

SourceNodePtr QVSourceNode::node() { return std::make_shared<QVSourceNode>(); }

SourceNodePtr QVSourceNode::nodeWithValue(std::string_view value) { return nodeWithValue(value, " "); }

SourceNodePtr QVSourceNode::nodeWithValue(std::string_view value, std::string_view spaceAfter) {
    SourceNodePtr made = node();
    made->_spaceAfter = spaceAfter;
    made->_value = value;
    return made;
}

SourceNodePtr QVSourceNode::nodeWithValue(std::string_view value, std::string_view spaceBefore,
                                          std::string_view spaceAfter) {
    SourceNodePtr made = nodeWithValue(value, spaceAfter);
    made->setSpaceBefore(spaceBefore);
    return made;
}

SourceNodePtr QVSourceNode::nodeWithValueOfType(std::string_view value, int type) {
    SourceNodePtr made = nodeWithValue(value);
    made->_type = type;
    return made;
}

SourceNodePtr QVSourceNode::bracketBlock() {
    SourceNodePtr made = node();
    made->setPrefixValue("(");
    made->setPostfixValue(")");
    made->setInfixValue(",");
    return made;
}

SourceNodePtr QVSourceNode::commentBlockWithStringValue(std::string_view value) {
    SourceNodePtr made = node();
    made->setPrefixValue("/*");
    made->setPostfixValue("*/");
    made->setValue(value);
    return made;
}

std::string QVSourceNode::displayValue() const { return value(); }

bool QVSourceNode::hasOwnText() const {
    if (_alwaysVisible) return true;
    std::scoped_lock lock(sharedLock(this));
    return !_value.empty();
}

bool QVSourceNode::isVisible() const {
    if (hasOwnText()) return true;
    if (_children.empty()) return false;
    std::vector<const QVSourceNode*> open{this};
    while (!open.empty()) {
        const QVSourceNode* next = open.back();
        open.pop_back();
        for (const SourceNodePtr& child : next->_children) {
            if (child->hasOwnText()) return true;
            if (!child->_children.empty()) open.push_back(child.get());
        }
    }
    return false;
}

QVSourceNode::Children QVSourceNode::visibleChildren() const {
    Children result;
    std::ranges::copy_if(_children, std::back_inserter(result), visible);
    return result;
}

SourceNodePtr QVSourceNode::lastVisibleChild() const {
    auto last = std::find_if(_children.rbegin(), _children.rend(), visible);
    return last == _children.rend() ? nullptr : *last;
}

QVSourceNode::Children QVSourceNode::infixItems() const {
    Children items = visibleChildren();
    std::erase_if(items, [](const SourceNodePtr& child) { return child->_removeInfixSeparator; });
    return items;
}

std::vector<const QVSourceNode*> QVSourceNode::flatten() const {
    std::vector<const QVSourceNode*> nodes, open{this};
    while (!open.empty()) {
        const QVSourceNode* next = open.back();
        open.pop_back();
        nodes.push_back(next);
        std::transform(next->_children.rbegin(), next->_children.rend(), std::back_inserter(open),
                       [](const SourceNodePtr& child) { return child.get(); });
    }
    return nodes;
}

std::string QVSourceNode::description() const { return text("<QVSourceNode> %@", value()); }

void QVSourceNode::checkNotBelow(const QVSourceNode* child) const {
    const auto refuse = [] { throw AssertionFailure("a source node cannot stand below itself"); };
    if (child == this) refuse();
    if (child->_children.empty()) return;
    // As a rule every node above stands in one list, and walking up is short.
    const QVSourceNode* above = this;
    while (above->_holder) {
        above = above->_holder;
        if (above == child) refuse();
    }
    if (above->_places != 0 && child->holds(*this)) refuse();
}

bool QVSourceNode::holds(const QVSourceNode& node) const {
    std::vector<const QVSourceNode*> open{this};
    std::unordered_set<const QVSourceNode*> seen;
    while (!open.empty()) {
        const QVSourceNode* next = open.back();
        open.pop_back();
        for (const SourceNodePtr& child : next->_children) {
            if (child.get() == &node) return true;
            if (!child->_children.empty() && seen.insert(child.get()).second) open.push_back(child.get());
        }
    }
    return false;
}

void QVSourceNode::wasPutInto(const QVSourceNode& holder) {
    _holder = _places == 0 || _holder == &holder ? &holder : nullptr;
    ++_places;
}

void QVSourceNode::wasTakenOut(const QVSourceNode& holder, std::size_t times) {
    _places -= times;
    if (_places == 0) _holder = nullptr;
    if (_parentNode == &holder) _parentNode = nullptr;
}

SourceNodePtr QVSourceNode::addChild(SourceNodePtr child) {
    if (!child) return nullptr;
    checkNotBelow(child.get());
    _children.push_back(child);
    child->wasPutInto(*this);
    child->_parentNode = this;
    if (_quoteChildren) child->setQuoteString(childQuoteString());
    return child;
}

SourceNodePtr QVSourceNode::addChild(std::string_view value) {
    log(text("warning - added string instead of node (%@)", value));
    return addChildWithValue(value);
}

SourceNodePtr QVSourceNode::insertChild(SourceNodePtr child, std::size_t index) {
    if (!child) return nullptr;
    checkNotBelow(child.get());
    if (index > _children.size()) throw AssertionFailure("a source node was inserted beyond the end");
    _children.insert(_children.begin() + static_cast<std::ptrdiff_t>(index), child);
    child->wasPutInto(*this);
    child->_parentNode = this;
    return child;
}

SourceNodePtr QVSourceNode::insertChildValue(std::string_view value, std::size_t index) {
    return insertChild(nodeWithValue(value), index);
}

void QVSourceNode::addChildren(const Children& children) {
    Children added = children;  // the list may be this node's own
    std::erase(added, nullptr);
    for (const SourceNodePtr& child : added) checkNotBelow(child.get());
    _children.insert(_children.end(), added.begin(), added.end());
    for (const SourceNodePtr& child : added) {
        child->wasPutInto(*this);
        child->_parentNode = this;
    }
}

SourceNodePtr QVSourceNode::addChildNode() { return addChildWithValue("", ""); }

SourceNodePtr QVSourceNode::addChildWithValue(std::string_view value) { return addChild(nodeWithValue(value)); }

SourceNodePtr QVSourceNode::addChildWithValue(std::string_view value, std::string_view spaceAfter) {
    return addChild(nodeWithValue(value, spaceAfter));
}

SourceNodePtr QVSourceNode::addChildWithValue(std::string_view value, std::string_view spaceBefore,
                                              std::string_view spaceAfter) {
    return addChild(nodeWithValue(value, spaceBefore, spaceAfter));
}

void QVSourceNode::removeChild(SourceNodePtr child) {
    const std::size_t taken = child ? std::erase(_children, child) : 0;
    if (taken == 0) return;
    child->wasTakenOut(*this, taken);
    child->_parentNode = nullptr;
}

SourceNodePtr QVSourceNode::childWithId(std::string_view id) const {
    for (const SourceNodePtr& child : _children) {
        std::scoped_lock lock(sharedLock(child.get()));
        const std::string* elementId = child->findText(Text::ElementId);
        if (elementId && *elementId == id) return child;
    }
    return nullptr;
}

std::size_t QVSourceNode::indexOfChild(const SourceNodePtr& child) const {
    auto found = std::ranges::find(_children, child);
    if (found == _children.end()) return static_cast<std::size_t>(-1);
    return static_cast<std::size_t>(found - _children.begin());
}

void QVSourceNode::setChildren(Children children) {
    std::erase(children, nullptr);
    for (const SourceNodePtr& child : children) checkNotBelow(child.get());
    _children.swap(children);
    for (const SourceNodePtr& child : children) child->wasTakenOut(*this, 1);
    for (const SourceNodePtr& child : _children) {
        child->wasPutInto(*this);
        child->_parentNode = this;
    }
}

std::string QVSourceNode::value() const {
    std::scoped_lock lock(sharedLock(this));
    return _value;
}

void QVSourceNode::setValue(std::string_view value) {
    std::scoped_lock lock(sharedLock(this));
    _value = value;
}

std::string QVSourceNode::spaceAfter() const {
    std::scoped_lock lock(sharedLock(this));
    return _spaceAfter;
}

void QVSourceNode::setSpaceAfter(std::string_view value) {
    std::scoped_lock lock(sharedLock(this));
    _spaceAfter = value;
}

std::string_view QVSourceNode::defaultText(Text field) {
    if (field == Text::OpenComment) return "/*";
    if (field == Text::CloseComment) return "*/";
    return "";
}

const std::string* QVSourceNode::findText(Text field) const {
    for (const RareText& rare : _rareTexts)
        if (rare.field == field) return &rare.text;
    return nullptr;
}

void QVSourceNode::storeText(Text field, std::string_view value) {
    for (RareText& rare : _rareTexts) {
        if (rare.field != field) continue;
        rare.text = value;
        return;
    }
    if (_rareTexts.empty()) _rareTexts.reserve(4);
    _rareTexts.push_back({field, std::string(value)});
}

std::string QVSourceNode::rareText(Text field) const {
    std::scoped_lock lock(sharedLock(this));
    const std::string* found = findText(field);
    return found ? *found : std::string(defaultText(field));
}

void QVSourceNode::setRareText(Text field, std::string_view value) {
    std::scoped_lock lock(sharedLock(this));
    if (value != defaultText(field) || findText(field)) storeText(field, value);
}

OptionalText QVSourceNode::optionalText(Text field) const {
    std::scoped_lock lock(sharedLock(this));
    const std::string* found = findText(field);
    return found ? OptionalText(*found) : std::nullopt;
}

void QVSourceNode::setOptionalText(Text field, const OptionalText& value) {
    std::scoped_lock lock(sharedLock(this));
    if (value)
        storeText(field, *value);
    else
        std::erase_if(_rareTexts, [field](const RareText& rare) { return rare.field == field; });
}

}  // namespace vellicor
