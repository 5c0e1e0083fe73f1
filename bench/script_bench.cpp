// bench/script_bench.cpp — ordering and create scripts of every dialect: time per table as documents grow.
#include <benchmark/benchmark.h>

#include "bench/document_generator.h"
#include "bench/per_table.h"
#include "vellicor/dialects/dialect_manager.h"

namespace vellicor::bench {

namespace {

/// The documents are large, so one is kept at a time; benchmarks of the same size stand together.
SQLContainer& documentOf(std::size_t tables) {
    static std::shared_ptr<SQLContainer> kept;
    static std::size_t size = 0;
    if (size != tables) {
        kept.reset();
        kept = makeDocument(tables);
        size = tables;
    }
    return *kept;
}

void order(benchmark::State& state) {
    SQLContainer& container = documentOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        container.reorderByForeignKeys();
        container.updateTargetTableLists();
    }
    perTable(state);
}

void createScript(benchmark::State& state, const std::string& dialect) {
    SQLContainer& container = documentOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(container.exportToSQLWithDialect(dialect));
    perTable(state);
}

const bool kRegistered = [] {
    for (const std::int64_t tables : {1'000, 10'000, 100'000}) {
        benchmark::RegisterBenchmark("order", order)->Arg(tables)->Unit(benchmark::kMillisecond);
        for (const auto& dialect : DialectManager::getDialectManager().exporterList())
            benchmark::RegisterBenchmark(
                ("createScript/" + dialect->getName()).c_str(),
                [name = dialect->getName()](benchmark::State& state) { createScript(state, name); })
                ->Arg(tables)
                ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace

}  // namespace vellicor::bench
