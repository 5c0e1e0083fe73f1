// vellicor/model/object_list.cpp — blocks of entries, and the maps that find them.
#include "vellicor/model/object_list.h"

#include <algorithm>

#include "vellicor/model/table.h"

namespace vellicor {

namespace {

const ObjectList::Bucket& found(const ObjectList::Index& index, std::string_view key) {
    static const ObjectList::Bucket none;
    const auto entry = index.find(key);
    return entry == index.end() ? none : entry->second;
}

ObjectList::Index::value_type* list(ObjectList::Index& index, std::string key, ObjectList::Entry& entry) {
    auto& bucket = *index.try_emplace(std::move(key)).first;
    bucket.second.insert(&entry);
    return &bucket;
}

void unlist(ObjectList::Index& index, ObjectList::Index::value_type*& bucket, ObjectList::Entry& entry) {
    if (!bucket) return;
    bucket->second.erase(&entry);
    if (bucket->second.empty()) index.erase(index.find(bucket->first));
    bucket = nullptr;
}

}  // namespace

ObjectList::ObjectList() = default;
ObjectList::~ObjectList() = default;

std::size_t ObjectList::position(const SQLObject& object) const {
    const Entry* first = nullptr;
    for (auto [entry, end] = _entries.equal_range(&object); entry != end; ++entry)
        if (!first || entry->second.precedes(*first)) first = &entry->second;
    if (!first) return kAbsent;
    findStarts();
    return first->block->start + first->place;
}

const ObjectList::Element& ObjectList::at(std::size_t position) const {
    findStarts();
    auto behind = std::ranges::upper_bound(_blocks, position, {}, [](const auto& block) { return block->start; });
    const Block& block = **std::prev(behind);
    return block.entries[position - block.start]->object;
}

std::vector<ObjectList::Element> ObjectList::snapshot() const {
    std::vector<Element> elements;
    elements.reserve(size());
    forEach([&](const Element& element) { elements.push_back(element); });
    return elements;
}

void ObjectList::insert(std::size_t position, Element object) {
    const bool atEnd = position == size();
    if (!atEnd) findStarts();
    Entry& entry = newEntry(std::move(object));
    if (atEnd) {
        append(entry);
    } else {
        auto behind = std::ranges::upper_bound(_blocks, position, {}, [](const auto& block) { return block->start; });
        Block& block = **std::prev(behind);
        const std::size_t place = position - block.start;
        block.entries.insert(block.entries.begin() + static_cast<std::ptrdiff_t>(place), &entry);
        renumberPlaces(block, place);
        _startsKnown = std::min(_startsKnown, block.order + 1);
        if (block.entries.size() > kBlockSize) splitBlock(block.order);
    }
    enter(entry);
}

void ObjectList::remove(const SQLObject& object) {
    auto [first, last] = _entries.equal_range(&object);
    for (auto entry = first; entry != last; ++entry) {
        leave(entry->second);
        take(entry->second);
    }
    _entries.erase(first, last);
}

void ObjectList::clear() {
    _byName.clear();
    _byBaseName.clear();
    _byUid.clear();
    _blocks.clear();
    _startsKnown = 0;
    _numberHints.clear();
    _entries.clear();
}

void ObjectList::assign(const std::vector<Element>& objects) {
    clear();
    for (const Element& object : objects) {
        Entry& entry = newEntry(object);
        append(entry);
        enter(entry);
    }
}

void ObjectList::reorder(const std::vector<Element>& objects) {
    for (auto& [object, entry] : _entries) entry.block = nullptr;  // not placed yet
    std::vector<Entry*> order;
    order.reserve(size());
    for (const Element& object : objects) {
        auto [entry, end] = _entries.equal_range(object.get());
        while (entry->second.block) ++entry;
        order.push_back(&entry->second);
        entry->second.block = _blocks.front().get();
    }
    place(order);
    // Buckets keep list order: those of several entries are sorted anew.
    for (Index* index : {&_byName, &_byBaseName, &_byUid}) {
        for (auto& [key, bucket] : *index) {
            if (bucket.size() < 2) continue;
            const std::vector<Entry*> entries(bucket.begin(), bucket.end());
            bucket.clear();
            bucket.insert(entries.begin(), entries.end());
        }
    }
}

void ObjectList::nameDidChange(const SQLObject* object) {
    for (auto [entry, end] = _entries.equal_range(object); entry != end; ++entry) {
        leaveName(entry->second);
        enterName(entry->second);
    }
}

void ObjectList::uidDidChange(const SQLObject* object) {
    for (auto [entry, end] = _entries.equal_range(object); entry != end; ++entry) {
        unlist(_byUid, entry->second.byUid, entry->second);
        enterUid(entry->second);
    }
}

const ObjectList::Bucket& ObjectList::withFoldedName(std::string_view foldedName) const {
    return found(_byName, foldedName);
}

const ObjectList::Bucket& ObjectList::tablesWithFoldedBaseName(std::string_view foldedName) const {
    return found(_byBaseName, foldedName);
}

const ObjectList::Bucket& ObjectList::withUid(std::string_view uid) const { return found(_byUid, uid); }

ObjectList::Entry& ObjectList::newEntry(Element object) {
    Entry& entry = _entries.emplace(object.get(), Entry())->second;
    entry.object = std::move(object);
    return entry;
}

void ObjectList::place(const std::vector<Entry*>& entries) {
    _blocks.clear();
    _startsKnown = 0;
    for (Entry* entry : entries) append(*entry);
}

void ObjectList::append(Entry& entry) {
    if (_blocks.empty() || _blocks.back()->entries.size() >= kBlockSize) {
        _blocks.push_back(std::make_unique<Block>());
        _blocks.back()->order = _blocks.size() - 1;
        _blocks.back()->entries.reserve(kBlockSize + 1);
    }
    Block& block = *_blocks.back();
    entry.block = &block;
    entry.place = block.entries.size();
    block.entries.push_back(&entry);
}

void ObjectList::splitBlock(std::size_t order) {
    auto half = std::make_unique<Block>();
    std::vector<Entry*>& entries = _blocks[order]->entries;
    const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(entries.size() / 2);
    half->entries.reserve(kBlockSize + 1);
    half->entries.assign(middle, entries.end());
    entries.erase(middle, entries.end());
    renumberPlaces(*half, 0);
    _blocks.insert(_blocks.begin() + static_cast<std::ptrdiff_t>(order + 1), std::move(half));
    renumberBlocks(order + 1);
}

void ObjectList::take(Entry& entry) {
    Block& block = *entry.block;
    const std::size_t order = block.order;
    block.entries.erase(block.entries.begin() + static_cast<std::ptrdiff_t>(entry.place));
    renumberPlaces(block, entry.place);
    _startsKnown = std::min(_startsKnown, order + 1);
    if (!block.entries.empty()) return;
    _blocks.erase(_blocks.begin() + static_cast<std::ptrdiff_t>(order));
    renumberBlocks(order);
}

void ObjectList::renumberBlocks(std::size_t from) {
    for (std::size_t order = from; order < _blocks.size(); ++order) _blocks[order]->order = order;
    _startsKnown = std::min(_startsKnown, from);
}

void ObjectList::renumberPlaces(Block& block, std::size_t from) {
    for (std::size_t place = from; place < block.entries.size(); ++place) {
        block.entries[place]->block = &block;
        block.entries[place]->place = place;
    }
}

void ObjectList::findStarts() const {
    for (; _startsKnown < _blocks.size(); ++_startsKnown) {
        std::size_t start = 0;
        if (_startsKnown > 0) {
            const Block& previous = *_blocks[_startsKnown - 1];
            start = previous.start + previous.entries.size();
        }
        _blocks[_startsKnown]->start = start;
    }
}

void ObjectList::enter(Entry& entry) {
    enterName(entry);
    enterUid(entry);
}

void ObjectList::leave(Entry& entry) {
    leaveName(entry);
    unlist(_byUid, entry.byUid, entry);
}

void ObjectList::enterName(Entry& entry) {
    entry.name = entry.object->getName();
    entry.byName = list(_byName, caseFolded(entry.name), entry);
    if (auto* table = as<SQLTable>(entry.object.get()))
        entry.byBaseName = list(_byBaseName, caseFolded(table->getBaseName()), entry);
}

void ObjectList::leaveName(Entry& entry) {
    unlist(_byName, entry.byName, entry);
    unlist(_byBaseName, entry.byBaseName, entry);
    _numberHints.nameBecameFree(lowercased(entry.name));
}

void ObjectList::enterUid(Entry& entry) { entry.byUid = list(_byUid, entry.object->uid(), entry); }

}  // namespace vellicor
