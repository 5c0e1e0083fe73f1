// bench/per_table.h — sizes of documents, and the counters by which costs compare.
#pragma once

#include <benchmark/benchmark.h>

namespace vellicor::bench {

inline void documentSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
}

/// Reports the time per unit of the row's argument, so that a flat column means linear cost.
inline void perUnit(benchmark::State& state, const char* column) {
    state.counters[column] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
inline void perTable(benchmark::State& state) { perUnit(state, "per_table"); }
/// A name, a column, a megabyte.
inline void perItem(benchmark::State& state) { perUnit(state, "per_item"); }

}  // namespace vellicor::bench
