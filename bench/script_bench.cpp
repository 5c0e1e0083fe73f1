// bench/script_bench.cpp — ordering and create scripts of every dialect: time per table as documents grow.
#include <benchmark/benchmark.h>

#include "bench/document_generator.h"
#include "bench/per_table.h"
#include "vellicor/dialects/dialect_manager.h"

namespace vellicor::bench {

namespace {

void order(benchmark::State& state) {
    const auto container = makeDocument(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        container->reorderByForeignKeys();
        container->updateTargetTableLists();
    }
    perTable(state);
}
BENCHMARK(order)->Apply(documentSizes);

void createScript(benchmark::State& state, const std::string& dialect) {
    const auto container = makeDocument(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(container->exportToSQLWithDialect(dialect));
    perTable(state);
}

const bool kRegistered = [] {
    for (const auto& dialect : DialectManager::getDialectManager().exporterList())
        benchmark::RegisterBenchmark(("createScript/" + dialect->getName()).c_str(),
                                     [name = dialect->getName()](benchmark::State& state) { createScript(state, name); })
            ->Apply(documentSizes);
    return true;
}();

}  // namespace

}  // namespace vellicor::bench
