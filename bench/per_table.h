// bench/per_table.h — sizes of documents, and the counter by which their costs compare.
#pragma once

#include <benchmark/benchmark.h>

namespace vellicor::bench {

inline void documentSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
}

/// Reports the time per table, so that a flat column means linear cost.
inline void perTable(benchmark::State& state) {
    state.counters["per_table"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace vellicor::bench
