// vellicor/util/sparse_array.h — an array with gaps: objects at indexes of any size, moved aside as others come and go.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vellicor {

/// Holds objects of type T by identity, without owning them; null is not allowed. An object stands in the array at most
/// once; inserting it again moves it. The array ends just past its last object, so there is no gap at its end.
/// Every operation is logarithmic in the number of objects, and a gap of any width costs nothing. No lock.
template <class T>
class QVSparseMutableArray {
public:
    using Index = std::uint64_t;
    /// A greater index counts as this one.
    static constexpr Index kMaximumIndex = INT64_MAX;

    /// Number of objects, gaps not counted.
    [[nodiscard]] std::size_t count() const { return _places.size(); }
    [[nodiscard]] bool isEmpty() const { return _places.empty(); }
    /// Number of places up to the last object, gaps counted.
    [[nodiscard]] Index length() const { return span(_root); }
    [[nodiscard]] bool contains(const T* object) const { return _places.contains(object); }
    /// The object at that index; null for a gap and beyond the end.
    [[nodiscard]] T* objectAt(Index index) const {
        const Place place = firstFrom(index);
        return place.link != kNone && place.index == index ? _nodes[place.link].object : nullptr;
    }
    /// Null when the object is not in the array.
    [[nodiscard]] std::optional<Index> indexOf(const T* object) const {
        auto found = _places.find(object);
        if (found == _places.end()) return std::nullopt;
        return indexOfNode(found->second);
    }
    /// The objects in index order, without the gaps.
    [[nodiscard]] std::vector<T*> objects() const { return {begin(), end()}; }

    void append(T* object) {
        remove(object);
        if (isFull()) shrink(lastGapUpTo(rightmost(_root)));
        insertBefore(kNone, 0, object);
    }
    /// A gap at `index` is filled; past the end a gap is left before the object. A used place is taken over: the object
    /// there and those that follow it without a gap move up by one, and the gap after them shrinks by one. Where they
    /// cannot move, since the last one has the greatest index, those before them move down instead, so that the order
    /// is the same.
    void insertAt(Index index, T* object) {
        remove(object);
        index = std::min(index, kMaximumIndex);
        const Place next = firstFrom(index);
        if (next.link == kNone) return insertBefore(kNone, index - length(), object);
        const Index gap = _nodes[next.link].gap;
        if (next.index > index) {
            const Index remaining = next.index - index - 1;
            setGap(next.link, remaining);
            return insertBefore(next.link, gap - remaining - 1, object);
        }
        if (const Link shrinking = firstGapAfter(next.link); shrinking != kNone)
            shrink(shrinking);
        else if (isFull())
            shrink(lastGapUpTo(next.link));
        const Index left = _nodes[next.link].gap;
        setGap(next.link, 0);
        insertBefore(next.link, left, object);
    }
    /// Closes the object's place, so that everything behind it moves down by one. False when it is not in the array.
    bool remove(const T* object) {
        auto found = _places.find(object);
        if (found == _places.end()) return false;
        const Link link = found->second;
        _places.erase(found);
        const Link next = successor(link);
        if (next != kNone && _nodes[link].gap) setGap(next, _nodes[next].gap + _nodes[link].gap);
        detach(link);
        return true;
    }
    void removeAll() {
        _places.clear();
        _nodes.clear();
        _free.clear();
        _root = kNone;
    }

    /// Walks the objects in index order. Any change of the array ends the walk.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T* const*;
        using reference = T* const&;

        Iterator() = default;
        reference operator*() const { return _array->_nodes[_link].object; }
        pointer operator->() const { return &**this; }
        Iterator& operator++() {
            _link = _array->successor(_link);
            return *this;
        }
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return _link == other._link; }

    private:
        friend QVSparseMutableArray;
        Iterator(const QVSparseMutableArray* array, std::uint32_t link) : _array(array), _link(link) {}
        const QVSparseMutableArray* _array = nullptr;
        std::uint32_t _link = UINT32_MAX;
    };
    [[nodiscard]] Iterator begin() const { return {this, leftmost(_root)}; }
    [[nodiscard]] Iterator end() const { return {this, kNone}; }

private:
    // A treap in index order. A node's index is implied: the gaps and objects before it, and its own gap.
    using Link = std::uint32_t;
    static constexpr Link kNone = UINT32_MAX;
    struct Node {
        T* object = nullptr;
        Index gap = 0;     // unused places directly before the object
        Index gapSum = 0;  // of the whole subtree
        Link size = 1;     // objects in the subtree
        Link parent = kNone;
        Link left = kNone;
        Link right = kNone;
        std::uint32_t priority = 0;  // never greater than the parent's
    };
    struct Place {
        Link link = kNone;
        Index index = 0;
    };

    Index gapSum(Link link) const { return link == kNone ? 0 : _nodes[link].gapSum; }
    Link size(Link link) const { return link == kNone ? 0 : _nodes[link].size; }
    Index span(Link link) const { return gapSum(link) + size(link); }
    /// Index of a node within its own subtree.
    Index localIndex(Link link) const { return span(_nodes[link].left) + _nodes[link].gap; }

    /// The first object at or behind `index`.
    Place firstFrom(Index index) const {
        Place best;
        Index before = 0;
        for (Link link = _root; link != kNone;) {
            const Index at = before + localIndex(link);
            if (at >= index) {
                best = {link, at};
                link = _nodes[link].left;
            } else {
                before = at + 1;
                link = _nodes[link].right;
            }
        }
        return best;
    }
    Index indexOfNode(Link link) const {
        Index index = localIndex(link);
        for (Link parent = _nodes[link].parent; parent != kNone; link = parent, parent = _nodes[link].parent)
            if (_nodes[parent].right == link) index += localIndex(parent) + 1;
        return index;
    }
    Link leftmost(Link link) const {
        while (link != kNone && _nodes[link].left != kNone) link = _nodes[link].left;
        return link;
    }
    Link rightmost(Link link) const {
        while (link != kNone && _nodes[link].right != kNone) link = _nodes[link].right;
        return link;
    }
    Link successor(Link link) const {
        if (_nodes[link].right != kNone) return leftmost(_nodes[link].right);
        Link parent = _nodes[link].parent;
        for (; parent != kNone && _nodes[parent].right == link; parent = _nodes[link].parent) link = parent;
        return parent;
    }
    /// The first node behind `link` with a gap before it.
    Link firstGapAfter(Link link) const {
        if (gapSum(_nodes[link].right)) return firstGapWithin(_nodes[link].right);
        for (Link parent = _nodes[link].parent; parent != kNone; link = parent, parent = _nodes[link].parent) {
            if (_nodes[parent].left != link) continue;
            if (_nodes[parent].gap) return parent;
            if (gapSum(_nodes[parent].right)) return firstGapWithin(_nodes[parent].right);
        }
        return kNone;
    }
    /// `link`, or the last node before it, with a gap before it; there must be one.
    Link lastGapUpTo(Link link) const {
        if (_nodes[link].gap) return link;
        if (gapSum(_nodes[link].left)) return lastGapWithin(_nodes[link].left);
        for (Link parent = _nodes[link].parent;; link = parent, parent = _nodes[link].parent) {
            if (_nodes[parent].right != link) continue;
            if (_nodes[parent].gap) return parent;
            if (gapSum(_nodes[parent].left)) return lastGapWithin(_nodes[parent].left);
        }
    }
    /// The subtree must hold a gap, as in the next.
    Link lastGapWithin(Link link) const {
        for (;;) {
            if (gapSum(_nodes[link].right))
                link = _nodes[link].right;
            else if (_nodes[link].gap)
                return link;
            else
                link = _nodes[link].left;
        }
    }
    Link firstGapWithin(Link link) const {
        for (;;) {
            if (gapSum(_nodes[link].left))
                link = _nodes[link].left;
            else if (_nodes[link].gap)
                return link;
            else
                link = _nodes[link].right;
        }
    }

    void update(Link link) {
        Node& node = _nodes[link];
        node.gapSum = node.gap + gapSum(node.left) + gapSum(node.right);
        node.size = 1 + size(node.left) + size(node.right);
    }
    void updateUpward(Link link) {
        for (; link != kNone; link = _nodes[link].parent) update(link);
    }
    void setGap(Link link, Index gap) {
        _nodes[link].gap = gap;
        updateUpward(link);
    }
    /// Puts `child`, which may be none, where `link` hangs.
    void replaceInParent(Link link, Link child) {
        const Link parent = _nodes[link].parent;
        if (parent == kNone)
            _root = child;
        else
            (_nodes[parent].left == link ? _nodes[parent].left : _nodes[parent].right) = child;
        if (child != kNone) _nodes[child].parent = parent;
    }
    void shrink(Link link) { setGap(link, _nodes[link].gap - 1); }
    /// Whether the last object has the greatest index. There are gaps then, since no memory holds so many objects.
    bool isFull() const { return length() > kMaximumIndex; }
    /// Turns a node and its parent around, keeping the order.
    void rotateUp(Link link) {
        const Link parent = _nodes[link].parent;
        const bool wasLeft = _nodes[parent].left == link;
        Link& inner = wasLeft ? _nodes[link].right : _nodes[link].left;
        (wasLeft ? _nodes[parent].left : _nodes[parent].right) = inner;
        if (inner != kNone) _nodes[inner].parent = parent;
        replaceInParent(parent, link);
        inner = parent;
        _nodes[parent].parent = link;
        update(parent);
        update(link);
    }
    /// `next` none puts the object at the end.
    void insertBefore(Link next, Index gap, T* object) {
        const Link link = newNode(gap, object);
        _places.emplace(object, link);
        if (_root == kNone) {
            _root = link;
        } else if (next != kNone && _nodes[next].left == kNone) {
            _nodes[next].left = link;
            _nodes[link].parent = next;
        } else {
            const Link last = rightmost(next == kNone ? _root : _nodes[next].left);
            _nodes[last].right = link;
            _nodes[link].parent = last;
        }
        updateUpward(link);
        const std::uint32_t priority = _nodes[link].priority;
        while (_nodes[link].parent != kNone && _nodes[_nodes[link].parent].priority < priority) rotateUp(link);
    }
    void detach(Link link) {
        while (_nodes[link].left != kNone && _nodes[link].right != kNone) {
            const Link left = _nodes[link].left, right = _nodes[link].right;
            rotateUp(_nodes[left].priority > _nodes[right].priority ? left : right);
        }
        const Link parent = _nodes[link].parent;
        replaceInParent(link, _nodes[link].left != kNone ? _nodes[link].left : _nodes[link].right);
        updateUpward(parent);
        _free.push_back(link);
    }
    Link newNode(Index gap, T* object) {
        Link link;
        if (_free.empty()) {
            link = static_cast<Link>(_nodes.size());
            _nodes.emplace_back();
        } else {
            link = _free.back();
            _free.pop_back();
            _nodes[link] = Node{};
        }
        _random ^= _random << 13;
        _random ^= _random >> 17;
        _random ^= _random << 5;
        _nodes[link].object = object;
        _nodes[link].gap = gap;
        _nodes[link].priority = _random;
        return link;
    }

    std::vector<Node> _nodes;
    std::vector<Link> _free;  // unused entries of `_nodes`
    Link _root = kNone;
    std::unordered_map<const T*, Link> _places;  // the node of each object
    std::uint32_t _random = 2463534242u;
};

}  // namespace vellicor
