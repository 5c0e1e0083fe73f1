// vellicor/util/stack.h — a last-in-first-out list of handles.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace vellicor {

/// `T` is a handle whose default value means null: a smart pointer, a raw pointer, an optional.
template <class T>
class QVStack {
public:
    [[nodiscard]] bool isEmpty() const { return _entries.empty(); }
    [[nodiscard]] std::size_t count() const { return _entries.size(); }
    /// The top entry, which stays; null when empty.
    [[nodiscard]] T peek() const { return _entries.empty() ? T{} : _entries.back(); }

    void push(T entry) { _entries.push_back(std::move(entry)); }
    /// Removes and answers the top entry; null when empty.
    T pop() {
        if (_entries.empty()) return T{};
        T top = std::move(_entries.back());
        _entries.pop_back();
        return top;
    }
    void removeAll() { _entries.clear(); }

private:
    std::vector<T> _entries;  // the top is last
};

}  // namespace vellicor
