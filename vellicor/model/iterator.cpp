// vellicor/model/iterator.cpp — the cursor over a list.
#include "vellicor/model/iterator.h"

#include "vellicor/platform/log.h"

namespace vellicor {

std::shared_ptr<SQLObject> SQLIterator::next() {
    if (hasNext()) return _array[_next++];
    log("SQLIterator beyond array");
    return nullptr;
}

}  // namespace vellicor
