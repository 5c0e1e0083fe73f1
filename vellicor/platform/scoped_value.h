// vellicor/platform/scoped_value.h — a variable that returns to what it was at the end of a scope.
#pragma once

#include <utility>

namespace vellicor {

/// Sets the variable, and gives it its previous value back however the scope ends. The variable must outlive it.
template <class T>
class ScopedValue {
public:
    ScopedValue(T& variable, T value) : _variable(variable), _previous(std::exchange(variable, std::move(value))) {}
    ~ScopedValue() { _variable = std::move(_previous); }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& _variable;
    T _previous;
};

}  // namespace vellicor
