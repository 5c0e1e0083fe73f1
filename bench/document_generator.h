// bench/document_generator.h — documents of any size, the same ones every time.
#pragma once

#include <cstddef>
#include <memory>

#include "vellicor/model/container.h"

namespace vellicor::bench {

inline constexpr std::size_t kFieldsPerTable = 20;

/// A table `table_<number>` with `kFieldsPerTable` columns, an index, and comments here and there.
[[nodiscard]] std::shared_ptr<SQLTable> makeTable(std::size_t number);

/// `tables` tables; each but the first references an earlier one by a foreign key, every other one also by a column.
[[nodiscard]] std::shared_ptr<SQLContainer> makeDocument(std::size_t tables);

}  // namespace vellicor::bench
