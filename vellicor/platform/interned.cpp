// vellicor/platform/interned.cpp — the pool of unique texts.
#include "vellicor/platform/interned.h"

#include <unordered_set>

#include "vellicor/platform/guarded.h"
#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

constexpr std::size_t kCacheSize = 128;  // a power of two

const std::string* uniqueCopy(std::string_view text) {
    // Never destroyed, since statics may hold interned texts. Elements of a set keep their address.
    static auto& pool = *new Guarded<std::unordered_set<std::string, TextHash, std::equal_to<>>>;
    auto texts = pool.lock();
    auto found = texts->find(text);
    return &*(found != texts->end() ? found : texts->emplace(text).first);
}

/// The copy of `text`, as a rule without the lock of the pool: each thread remembers the last text of every hash slot.
const std::string* interned(std::string_view text) {
    thread_local const std::string* recent[kCacheSize] = {};
    const std::string*& slot = recent[TextHash{}(text) & (kCacheSize - 1)];
    if (!slot || *slot != text) slot = uniqueCopy(text);
    return slot;
}

}  // namespace

InternedText::InternedText() {
    static const std::string* const empty = uniqueCopy({});
    _text = empty;
}

InternedText::InternedText(std::string_view text) : _text(interned(text)) {}

}  // namespace vellicor
