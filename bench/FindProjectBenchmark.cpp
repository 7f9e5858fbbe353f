// Times the folder walk behind choosing a folder, against `find` over the same
// tree: choosing a large checkout must not feel slower than listing it.

#include "selection/ProjectSelection.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// 40 modules x 10 features x 10 groups x 50 sources = 200,000 files in about
// 4,500 folders, the shape of a large app's checkout, with the one project
// (and the workspace Xcode keeps inside it) at the far end of the walk.
constexpr int modules = 40;
constexpr int features = 10;
constexpr int groups = 10;
constexpr int sourcesPerGroup = 50;

std::string numbered(const char* stem, int number) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%s%03d", stem, number);
    return buffer;
}

void touch(const fs::path& file) {
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr) {
        throw std::runtime_error("cannot create " + file.string());
    }
    std::fclose(out);
}

// Built on first use, removed when the program ends.
class Tree {
public:
    Tree()
        : root_(fs::temp_directory_path() /
                ("kelvane-bench-selection-" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
        std::fprintf(stderr, "building a tree of %d files in %s\n",
                     modules * features * groups * sourcesPerGroup, root_.c_str());
        for (int m = 0; m < modules; ++m) {
            const fs::path module = root_ / "Modules" / numbered("Module", m);
            for (int f = 0; f < features; ++f) {
                for (int g = 0; g < groups; ++g) {
                    const fs::path group =
                        module / "Sources" / numbered("Feature", f) / numbered("Group", g);
                    fs::create_directories(group);
                    for (int s = 0; s < sourcesPerGroup; ++s) {
                        touch(group / (numbered("ViewController", s) + ".swift"));
                    }
                }
            }
        }
        const fs::path project =
            root_ / "Modules" / numbered("Module", modules - 1) / "App" / "App.xcodeproj";
        fs::create_directories(project / "project.xcworkspace");
        touch(project / "project.pbxproj");
        touch(project / "project.xcworkspace" / "contents.xcworkspacedata");
        expected_ = (project / "project.xcworkspace").string();
    }
    ~Tree() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    [[nodiscard]] std::string root() const { return root_.string(); }
    [[nodiscard]] const std::string& expected() const { return expected_; }

private:
    fs::path root_;
    std::string expected_;
};

const Tree& tree() {
    static const Tree instance;
    return instance;
}

// Each run starts with one untimed walk, so the timed ones see a warm cache
// (and a wrong answer stops the figure from being reported at all).
void BM_FindProject(benchmark::State& state) {
    const std::string root = tree().root();
    if (kelvane::findProject(root) != tree().expected()) {
        state.SkipWithError("findProject did not find the project's workspace");
        return;
    }
    for (auto _ : state) {
        std::string found = kelvane::findProject(root);
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(BM_FindProject)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);

// The yardstick, timed the same way; its process start-up is well under 1% of
// the figure.
void BM_FindCommand(benchmark::State& state) {
    const std::string command = "find '" + tree().root() + "' > /dev/null";
    if (std::system(command.c_str()) != 0) {
        state.SkipWithError("find failed");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::system(command.c_str()));
    }
}
BENCHMARK(BM_FindCommand)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);

} // namespace
