// bench/growth_bench.cpp — what grows inside one object or one file: time per name, column or megabyte.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bench/per_table.h"
#include "vellicor/dialects/dialect_manager.h"
#include "vellicor/export/alter_run.h"
#include "vellicor/fileformat/document_file.h"
#include "vellicor/model/container.h"
#include "vellicor/model/field.h"
#include "vellicor/model/table.h"
#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"
#include "vellicor/platform/property_list.h"
#include "vellicor/platform/text_format.h"

namespace vellicor::bench {

namespace {

// --- names of foreign keys

/// Every key of the document wants the same name, so each gets the next free number.
void nameForeignKeys(benchmark::State& state) {
    Preferences::shared().setBool(true, prefs::forceForeignKeyUnique);
    for (auto _ : state) {
        state.PauseTiming();
        auto container = SQLContainer::newContainer();
        auto target = SQLTable::tableWithName("target");
        target->add(SQLField::fieldWithName("id", "INTEGER"));
        container->add(target);
        std::vector<std::shared_ptr<SQLField>> columns;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            auto table = SQLTable::tableWithName(text("t%ld", i));
            columns.push_back(SQLField::fieldWithName("ref", "INTEGER"));
            table->add(columns.back());
            container->add(table);
            columns.back()->setFkField(target->getFieldByName("id"));
        }
        state.ResumeTiming();
        for (const auto& column : columns) column->setForeignKeyName("key");
        if (columns.back()->foreignKeyName() != text("key_fk_%ld", state.range(0) - 1))
            state.SkipWithError("the last key has another name");
        state.PauseTiming();
        columns.clear();
        container.reset();
        state.ResumeTiming();
    }
    Preferences::shared().removeObject(prefs::forceForeignKeyUnique);
    perItem(state);
}
BENCHMARK(nameForeignKeys)->Arg(500)->Arg(1000)->Arg(2000)->Arg(4000)->Unit(benchmark::kMillisecond);

// --- wide tables

std::string wideTable(std::int64_t columns, std::string_view type) {
    std::string xml = "<SQLContainer><SQLTable><name>wide</name>";
    for (std::int64_t i = 0; i < columns; ++i) xml += text("<SQLField><name>c%ld</name><type>%@</type></SQLField>", i, type);
    return xml;
}

void loadIndexColumns(benchmark::State& state) {
    std::string xml = wideTable(state.range(0), "INT") + "<SQLIndex><name>i</name>";
    for (std::int64_t i = 0; i < state.range(0); ++i) xml += text("<fieldName>c%ld</fieldName>", i);
    xml += "</SQLIndex></SQLTable></SQLContainer>";
    for (auto _ : state) benchmark::DoNotOptimize(loadDocumentData(xml, "wide").container);
    perItem(state);
}
BENCHMARK(loadIndexColumns)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

/// Every column has another type now.
void alterColumns(benchmark::State& state, const std::string& dialect, bool runnable) {
    const auto from = loadDocumentData(wideTable(state.range(0), "INT") + "</SQLTable></SQLContainer>", "old").container;
    const auto to = loadDocumentData(wideTable(state.range(0), "TEXT") + "</SQLTable></SQLContainer>", "new").container;
    auto exporter = as<GenericSQLExporter>(DialectManager::getDialectManager().getExporter(dialect));
    Preferences::shared().setBool(runnable, prefs::runnableScripts);
    auto table = [](const SQLContainer& document) {
        return as<SQLTable>(document.getObjectByName("wide", NameOptions{.ofClass = isKindOf<SQLTable>}));
    };
    for (auto _ : state) {
        AlterRun run(*exporter, *from);
        for (const auto& component : table(*to)->getFields())
            if (auto* column = as<SQLField>(component.get()))
                benchmark::DoNotOptimize(
                    exporter->alterSQLFieldAsVector(*column, *table(*from)->getFieldByName(column->getName()), nullptr));
    }
    Preferences::shared().removeObject(prefs::runnableScripts);
    perItem(state);
}

const bool kAltersRegistered = [] {
    for (const bool runnable : {false, true})
        for (const auto& dialect : DialectManager::getDialectManager().exporterList()) {
            const std::string name = dialect->getName();
            benchmark::RegisterBenchmark(text("alterColumns/%@/%@", runnable ? "runnable" : "classic", name).c_str(),
                                         [name, runnable](benchmark::State& state) { alterColumns(state, name, runnable); })
                ->Arg(500)
                ->Arg(2000)
                ->Arg(8000)
                ->Unit(benchmark::kMillisecond);
        }
    return true;
}();

// --- one long piece of text

/// A file that is gone with its benchmark.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content)
        : _path(std::filesystem::temp_directory_path() / text("vellicor_bench_%d.xml", static_cast<int>(::getpid()))) {
        std::ofstream(_path, std::ios::binary) << content;
    }
    ~TemporaryFile() { std::filesystem::remove(_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const { return _path; }

private:
    std::filesystem::path _path;
};

void loadLong(benchmark::State& state, const std::string& before, const std::string& behind) {
    const TemporaryFile file(before + std::string(static_cast<std::size_t>(state.range(0)) << 20, 'x') + behind);
    for (auto _ : state) benchmark::DoNotOptimize(loadDocument(file.path()).container);
    perItem(state);
}
BENCHMARK_CAPTURE(loadLong, comment, "<SQLContainer><!--", "--></SQLContainer>")
    ->Arg(2)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadLong, attribute, "<SQLContainer a=\"", "\"></SQLContainer>")
    ->Arg(2)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond);

/// Kilobytes of "&amp;".
void readPropertyListOfEntities(benchmark::State& state) {
    std::string xml = "<plist version=\"1.0\"><string>";
    for (std::int64_t i = 0; i < state.range(0) * 1024 / 5; ++i) xml += "&amp;";
    xml += "</string></plist>";
    for (auto _ : state) {
        std::string error;
        benchmark::DoNotOptimize(valueFromPropertyList(xml, error));
    }
    perItem(state);
}
BENCHMARK(readPropertyListOfEntities)->Arg(64)->Arg(256)->Arg(1024)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace vellicor::bench
