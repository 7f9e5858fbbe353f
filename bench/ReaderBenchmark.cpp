// Throughput of readPropertyList on generated project files of 1, 10 and
// 50 MB. The per-byte rate should not fall as the file grows: the object
// table is looked up by id in constant time. The same read recording where
// each build setting stands (what a located report asks for) should cost
// at most 1.3 times as much.
#include "ProjectGenerator.h"
#include "parser/SettingPositions.h"
#include "plist/PropertyListReader.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace {

const std::string& project(std::size_t megabytes) {
    // Generated once per size: generating takes longer than reading.
    static std::map<std::size_t, std::string> cache;
    auto [it, inserted] = cache.try_emplace(megabytes);
    if (inserted) {
        it->second = kelvane::bench::generateProject(megabytes * 1'000'000);
    }
    return it->second;
}

void read(benchmark::State& state, bool positions) {
    const std::string& text = project(static_cast<std::size_t>(state.range(0)));
    const std::string source = "project.pbxproj";
    for (auto _ : state) {
        kelvane::plist::KeyPositions keys = kelvane::buildSettingPositions();
        kelvane::plist::Value value =
            kelvane::plist::readPropertyList(text, source, {}, positions ? &keys : nullptr);
        benchmark::DoNotOptimize(value);
        // Freeing the tree is not reading it; it costs about a fifth more.
        state.PauseTiming();
        { const kelvane::plist::Value dropped = std::move(value); }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(text.size()));
}

void readOldStyleProject(benchmark::State& state) {
    read(state, false);
}

void readOldStyleProjectWithPositions(benchmark::State& state) {
    read(state, true);
}

} // namespace

BENCHMARK(readOldStyleProject)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(readOldStyleProjectWithPositions)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
