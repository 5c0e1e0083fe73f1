// vellicor/model/object_list.h — a document's objects in order, found by position, name and uid without searching.
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vellicor/model/forward.h"
#include "vellicor/model/name_scope.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// The ordered list behind a container, with its indexes. It does not lock; its owner does. An object may stand in it
/// more than once. Names and uids are indexed as they are when an object enters and whenever `nameDidChange` and
/// `uidDidChange` say so.
class ObjectList {
    struct Block;

public:
    using Element = std::shared_ptr<SQLObjectPeer>;
    static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

    struct Entry;
    struct ListOrder {
        bool operator()(const Entry* a, const Entry* b) const { return a->precedes(*b); }
    };
    using Bucket = std::set<Entry*, ListOrder>;
    using Index = std::unordered_map<std::string, Bucket, TextHash, std::equal_to<>>;

    /// One occurrence of an object.
    struct Entry {
        Element object;
        std::string name;  // its `getName`, as indexed

        [[nodiscard]] bool precedes(const Entry& other) const;

    private:
        friend class ObjectList;
        Block* block = nullptr;
        std::size_t place = 0;  // within the block
        // Where the entry is listed; null while it is not.
        Index::value_type* byName = nullptr;
        Index::value_type* byBaseName = nullptr;  // stays null for what is no table
        Index::value_type* byUid = nullptr;
    };

    ObjectList();
    ~ObjectList();
    ObjectList(const ObjectList&) = delete;
    ObjectList& operator=(const ObjectList&) = delete;

    [[nodiscard]] std::size_t size() const { return _entries.size(); }
    [[nodiscard]] bool contains(const SQLObject& object) const { return _entries.contains(&object); }
    /// Position of the first occurrence; `kAbsent` when not contained.
    [[nodiscard]] std::size_t position(const SQLObject& object) const;
    /// `position` is less than `size()`.
    [[nodiscard]] const Element& at(std::size_t position) const;
    /// The elements in order.
    [[nodiscard]] std::vector<Element> snapshot() const;

    /// `position` is at most `size()`.
    void insert(std::size_t position, Element object);
    /// Takes out every occurrence.
    void remove(const SQLObject& object);
    void clear();
    void assign(const std::vector<Element>& objects);
    /// Puts the same objects into another order; what is indexed stays.
    void reorder(const std::vector<Element>& objects);
    /// These take an address that is only compared: an object that is not in the list, or no more, changes nothing.
    void nameDidChange(const SQLObject* object);
    void uidDidChange(const SQLObject* object);

    // The occurrences that a key finds, in list order; valid until the list changes.
    /// Objects whose `getName` folds to `foldedName`.
    [[nodiscard]] const Bucket& withFoldedName(std::string_view foldedName) const;
    /// Tables whose `getBaseName` folds to `foldedName`.
    [[nodiscard]] const Bucket& tablesWithFoldedBaseName(std::string_view foldedName) const;
    /// Objects whose uid is exactly `uid`.
    [[nodiscard]] const Bucket& withUid(std::string_view uid) const;
    /// Numbers known to be taken behind a base name; kept right by the list.
    [[nodiscard]] NumberHints& numberHints() const { return _numberHints; }

    /// Calls `visit(element)` for each element in order. The list must not change meanwhile.
    template <class Visit>
    void forEach(Visit visit) const {
        forEachUntil([&](const Element& element) {
            visit(element);
            return false;
        });
    }
    /// The same, ending at the first element for which `visit` answers true.
    template <class Visit>
    void forEachUntil(Visit visit) const {
        for (const auto& block : _blocks)
            for (const Entry* entry : block->entries)
                if (visit(entry->object)) return;
    }

private:
    // A few hundred entries, so that entering in the middle moves few.
    struct Block {
        std::vector<Entry*> entries;
        std::size_t order = 0;  // of the block in the list
        std::size_t start = 0;  // position of its first entry, where `_startsKnown` says so
    };
    static constexpr std::size_t kBlockSize = 256;

    Entry& newEntry(Element object);
    void place(const std::vector<Entry*>& entries);
    void append(Entry& entry);
    void splitBlock(std::size_t order);
    void take(Entry& entry);
    void renumberBlocks(std::size_t from);
    void renumberPlaces(Block& block, std::size_t from);
    void findStarts() const;
    void enter(Entry& entry);
    void leave(Entry& entry);
    void enterName(Entry& entry);
    void leaveName(Entry& entry);
    void enterUid(Entry& entry);

    std::unordered_multimap<const SQLObject*, Entry> _entries;
    std::vector<std::unique_ptr<Block>> _blocks;
    mutable std::size_t _startsKnown = 0;  // of how many leading blocks `start` is right
    Index _byName;
    Index _byBaseName;
    Index _byUid;
    mutable NumberHints _numberHints;
};

inline bool ObjectList::Entry::precedes(const Entry& other) const {
    return block == other.block ? place < other.place : block->order < other.block->order;
}

}  // namespace vellicor
