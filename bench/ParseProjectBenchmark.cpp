// Throughput of ProjectParser::parseProject on generated projects of 1, 10 and
// 50 MB, whole (file read, property-list read, object walk, existence tests)
// and of the object walk alone. The walk should stay a small share of the
// whole: every reference is one lookup by id.
#include "ProjectGenerator.h"
#include "parser/ProjectParser.h"
#include "parser/ProjectTargets.h"
#include "plist/PropertyListReader.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>

namespace {

namespace fs = std::filesystem;

// Projects are written once per size into one folder that goes away with the
// process.
class ProjectFolder {
public:
    ProjectFolder() {
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        root_ = fs::temp_directory_path() / ("kelvane-parse-bench-" + std::to_string(stamp));
        fs::create_directories(root_);
    }
    ~ProjectFolder() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    ProjectFolder(const ProjectFolder&) = delete;
    ProjectFolder& operator=(const ProjectFolder&) = delete;

    const std::string& project(std::size_t megabytes) {
        auto [it, inserted] = projects_.try_emplace(megabytes);
        if (inserted) {
            const fs::path bundle =
                root_ / ("Generated" + std::to_string(megabytes) + ".xcodeproj");
            kelvane::bench::writeProject(bundle, megabytes * 1'000'000);
            it->second = bundle.string();
        }
        return it->second;
    }

private:
    fs::path root_;
    std::map<std::size_t, std::string> projects_;
};

ProjectFolder& folder() {
    static ProjectFolder instance;
    return instance;
}

std::int64_t fileSize(const std::string& bundle) {
    return static_cast<std::int64_t>(fs::file_size(fs::path(bundle) / "project.pbxproj"));
}

void parseProject(benchmark::State& state) {
    const std::string& bundle = folder().project(static_cast<std::size_t>(state.range(0)));
    const kelvane::ProjectParser parser;
    std::size_t targets = 0;
    for (auto _ : state) {
        kelvane::ProjectContext project = parser.parseProject(bundle);
        targets = project.targets.size();
        benchmark::DoNotOptimize(project);
    }
    state.SetBytesProcessed(state.iterations() * fileSize(bundle));
    state.counters["targets"] = static_cast<double>(targets);
}

void parseTargets(benchmark::State& state) {
    const std::string& bundle = folder().project(static_cast<std::size_t>(state.range(0)));
    const kelvane::plist::Value root =
        kelvane::plist::readPropertyListFile(bundle + "/project.pbxproj");
    for (auto _ : state) {
        auto targets = kelvane::parseTargets(*root.asDictionary(), bundle);
        benchmark::DoNotOptimize(targets);
    }
    state.SetBytesProcessed(state.iterations() * fileSize(bundle));
}

} // namespace

BENCHMARK(parseProject)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
BENCHMARK(parseTargets)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
