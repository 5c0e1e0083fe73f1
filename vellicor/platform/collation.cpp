// vellicor/platform/collation.cpp — the order of names, as sort keys of ICU's collation.
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "vellicor/platform/text.h"

namespace vellicor {

namespace {

/// The user's locale; the root for the locales without a language ("C", "POSIX"), whose collation is ASCII order.
icu::Locale collationLocale() {
    const icu::Locale& locale = icu::Locale::getDefault();
    const std::string_view name = locale.getName();
    if (name.starts_with("en_US_POSIX") || name == "c") return icu::Locale::getRoot();
    return locale;
}

/// Strength secondary (case does not count), runs of digits by number; null without collation data.
std::unique_ptr<icu::Collator> makeCollator() {
    std::unique_ptr<icu::Collator> collator;
    for (const icu::Locale& locale : {collationLocale(), icu::Locale::getRoot()}) {
        UErrorCode status = U_ZERO_ERROR;
        collator.reset(icu::Collator::createInstance(locale, status));
        if (U_SUCCESS(status) && collator) break;
        collator.reset();
    }
    if (!collator) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    collator->setStrength(icu::Collator::SECONDARY);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    return collator;
}

/// A collator for this thread alone, copied from the one of the process.
const icu::Collator* threadCollator() {
    static const std::unique_ptr<icu::Collator> shared = makeCollator();
    thread_local const std::unique_ptr<icu::Collator> own(shared ? shared->clone() : nullptr);
    return own.get();
}

}  // namespace

std::string nameSortKey(std::string_view name) {
    const icu::Collator* collator = threadCollator();
    // A name too long for ICU's lengths still gets a key of its own.
    if (!collator || name.size() > std::numeric_limits<std::int32_t>::max() / 8) return caseFolded(name);
    const auto units = icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    std::uint8_t buffer[256];
    std::int32_t length = collator->getSortKey(units, buffer, sizeof buffer);
    if (length <= 0) return caseFolded(name);
    if (length <= static_cast<std::int32_t>(sizeof buffer))
        return {reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length - 1)};  // without the final zero
    std::string key(static_cast<std::size_t>(length), '\0');
    length = collator->getSortKey(units, reinterpret_cast<std::uint8_t*>(key.data()), length);
    key.resize(static_cast<std::size_t>(std::max(length, 1) - 1));
    return key;
}

}  // namespace vellicor
