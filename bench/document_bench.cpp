// bench/document_bench.cpp — adding, naming, loading and saving: time per table as documents grow.
#include <benchmark/benchmark.h>

#include "bench/document_generator.h"
#include "bench/per_table.h"
#include "vellicor/fileformat/parser.h"
#include "vellicor/model/table.h"

namespace vellicor::bench {

namespace {

void load(benchmark::State& state) {
    const std::string xml = makeDocument(static_cast<std::size_t>(state.range(0)))->xmlData();
    for (auto _ : state) {
        auto container = SQLContainer::newContainer();
        Parser().parseXMLFromData(xml, *container);
        container->postLoadProcess();
        benchmark::DoNotOptimize(container->count());
    }
    perTable(state);
}
BENCHMARK(load)->Apply(documentSizes);

void save(benchmark::State& state) {
    const auto container = makeDocument(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(container->xmlData());
    perTable(state);
}
BENCHMARK(save)->Apply(documentSizes);

/// Every table wants the same name, so each gets the next free number.
void addWithRenaming(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto container = SQLContainer::newContainer();
        std::vector<std::shared_ptr<SQLTable>> tables;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            tables.push_back(makeTable(static_cast<std::size_t>(i)));
            tables.back()->setName("orders");
        }
        state.ResumeTiming();
        for (const auto& table : tables) container->addWithRenaming(table);
        benchmark::DoNotOptimize(container->count());
    }
    perTable(state);
}
BENCHMARK(addWithRenaming)->Apply(documentSizes);

void removeAll(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto container = makeDocument(static_cast<std::size_t>(state.range(0)));
        const auto objects = container->objectList();
        state.ResumeTiming();
        for (const auto& object : objects) container->remove(*object);
    }
    perTable(state);
}
BENCHMARK(removeAll)->Apply(documentSizes);

void lookUpByName(benchmark::State& state) {
    const auto container = makeDocument(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        for (const auto& object : container->objectList())
            benchmark::DoNotOptimize(container->getObjectByName(object->getName(), false));
    perTable(state);
}
BENCHMARK(lookUpByName)->Apply(documentSizes);

}  // namespace

}  // namespace vellicor::bench
