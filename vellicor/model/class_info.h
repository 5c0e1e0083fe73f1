// vellicor/model/class_info.h — what the document reader may do with a class: its name, its setters, how to make one.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "vellicor/model/forward.h"
#include "vellicor/platform/numbers.h"
#include "vellicor/platform/text.h"

namespace vellicor {

/// One stored attribute as the reader hands it over: a text, or the value object (a point or a size) that was read.
struct LoadedValue {
    std::string_view text;
    SQLValue* object = nullptr;  // null for a text
};

/// What the reader can fill: model objects and value objects.
class Loadable {
public:
    virtual ~Loadable() = default;
    virtual const ClassInfo& classInfo() const = 0;
    /// The careful route of the reader: the class decides what it makes of a key that it knows, and what of others.
    virtual void setSafePropertyValue(const LoadedValue& value, std::string_view key) = 0;
};

/// One thing that a document may set by name. `key` is the element's name with its first letter in lower case.
struct Setter {
    std::string_view key;
    void (*apply)(Loadable& target, const LoadedValue& value);
    /// What it sets is the property of that name, so that the property survives in documents.
    bool storesProperty = false;
};

/// A class as the reader sees it. Setters of `base` apply where the class has none of its own.
struct ClassInfo {
    std::string_view name;
    const ClassInfo* base = nullptr;
    std::span<const Setter> setters;
    std::shared_ptr<Loadable> (*make)() = nullptr;  ///< null: a document may not create one

    /// The setter for an element name (its first letter in either case); null when the class has none.
    const Setter* setterFor(std::string_view elementName) const;

    struct SetterTable;
    mutable std::atomic<const SetterTable*> table{nullptr};  ///< own and inherited setters; made by the first look-up
};

/// The rule for flags in documents: "1", or "YES" in any case, is true; everything else false.
[[nodiscard]] inline bool flagFromDocument(std::string_view text) {
    return text == "1" || equalIgnoringCase(text, "YES");
}

namespace detail {

template <class>
struct Method;
template <class C, class R, class A>
struct Method<R (C::*)(A)> {
    using Class = C;
    using Argument = std::remove_cvref_t<A>;
};

/// Text converted the way the platform scans it; never fails.
template <class Argument>
Argument fromText(std::string_view text) {
    if constexpr (std::is_same_v<Argument, bool>)
        return flagFromDocument(text);
    else if constexpr (std::is_same_v<Argument, std::int32_t>)
        return intValue(text);
    else if constexpr (std::is_integral_v<Argument>)
        return static_cast<Argument>(integerValue(text));
    else if constexpr (std::is_same_v<Argument, double>)
        return doubleValue(text);
    else if constexpr (std::is_same_v<Argument, float>)
        return floatValue(text);
    else if constexpr (std::is_same_v<Argument, std::string_view>)
        return text;
    else
        return Argument(std::string(text));
}

}  // namespace detail

/// A setter that converts the text to the type of the method's one argument.
template <auto M>
constexpr Setter setter(std::string_view key) {
    using Of = detail::Method<decltype(M)>;
    return {key, [](Loadable& target, const LoadedValue& value) {
                if (!value.object)
                    (dynamic_cast<typename Of::Class&>(target).*M)(detail::fromText<typename Of::Argument>(value.text));
            }};
}

/// The same where the method stores the property of that name.
template <auto M>
constexpr Setter propertySetter(std::string_view key) {
    return {key, setter<M>(key).apply, true};
}

/// A name that the class takes and does nothing with.
constexpr Setter ignored(std::string_view key) {
    return {key, [](Loadable&, const LoadedValue&) {}};
}

template <class T>
std::shared_ptr<Loadable> makeLoadable() {
    return create<T>();
}

}  // namespace vellicor
