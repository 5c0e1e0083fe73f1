// vellicor/model/class_info.cpp — finding the setter of an element name.
#include "vellicor/model/class_info.h"

#include <unordered_map>

namespace vellicor {

namespace {

std::string_view rest(std::string_view name) { return name.substr(name.empty() ? 0 : 1); }

/// The first letter, an ASCII capital in lower case; NUL when there is none.
char initial(std::string_view name) {
    const char first = name.empty() ? '\0' : name.front();
    return first >= 'A' && first <= 'Z' ? static_cast<char>(first + ('a' - 'A')) : first;
}

}  // namespace

struct ClassInfo::SetterTable {
    /// Element names are one when they differ in nothing but the case of the first letter.
    struct ElementNameHash {
        std::size_t operator()(std::string_view name) const {
            return TextHash{}(rest(name)) * 31 + static_cast<unsigned char>(initial(name));
        }
    };
    struct ElementNameEqual {
        bool operator()(std::string_view a, std::string_view b) const {
            return initial(a) == initial(b) && a.size() == b.size() && rest(a) == rest(b);
        }
    };

    std::unordered_map<std::string_view, const Setter*, ElementNameHash, ElementNameEqual> byName;

    explicit SetterTable(const ClassInfo& info) {
        for (const ClassInfo* current = &info; current; current = current->base) {
            for (const Setter& setter : current->setters) byName.emplace(setter.key, &setter);  // nearest class wins
        }
    }
};

const Setter* ClassInfo::setterFor(std::string_view elementName) const {
    const SetterTable* current = table.load(std::memory_order_acquire);
    if (!current) {
        // Of several threads that come first at once, one table stays. It lives as long as its class: for ever.
        auto made = std::make_unique<const SetterTable>(*this);
        if (table.compare_exchange_strong(current, made.get(), std::memory_order_acq_rel)) current = made.release();
    }
    auto found = current->byName.find(elementName);
    return found == current->byName.end() ? nullptr : found->second;
}

}  // namespace vellicor
