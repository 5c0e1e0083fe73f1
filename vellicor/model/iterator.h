// vellicor/model/iterator.h — a cursor over a list.
#pragma once

#include <memory>
#include <vector>

#include "vellicor/model/forward.h"

namespace vellicor {

/// Walks a list from its first element; the count is taken at construction.
class SQLIterator {
public:
    using Array = std::vector<std::shared_ptr<SQLObject>>;

    static SQLIterator iteratorForArray(Array array) { return initWithArray(std::move(array)); }
    static SQLIterator initWithArray(Array array) { return SQLIterator(std::move(array)); }

    [[nodiscard]] bool hasNext() const { return _next < _count; }
    /// The next element; past the end it logs "SQLIterator beyond array" and answers null.
    std::shared_ptr<SQLObject> next();

private:
    explicit SQLIterator(Array array) : _array(std::move(array)), _count(_array.size()) {}
    Array _array;
    std::size_t _next = 0;
    std::size_t _count;
};

}  // namespace vellicor
