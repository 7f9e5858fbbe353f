#include "HostileFiles.h"
#include "KelvaneProcess.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace kelvane::testing {
namespace {

// Whatever sits where .kelvane.yml or a baseline belongs, the scan ends at
// once with exit status 2 and a line naming the file, never a hang or a crash.
struct HostileAdoptionFile {
    std::string name;
    std::function<void(const TempDir&)> place;
    std::vector<std::string> options;
    std::string errorStart;
};

std::string junk(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 2463534242u;
    for (char& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<char>(state);
    }
    return bytes;
}

TEST(HostileAdoptionFiles, EndQuicklyWithAnErrorNamingTheFile) {
    const std::string config = ".kelvane.yml";
    const std::vector<HostileAdoptionFile> cases{
        {"a huge configuration",
         [](const TempDir& dir) { dir.write(".kelvane.yml", "skip: [" + std::string(4 << 20, 'a') + "]\n"); },
         {}, "kelvane: .kelvane.yml: larger than 64 KiB"},
        {"a sparse configuration claiming 4 GiB",
         [](const TempDir& dir) {
             dir.write(".kelvane.yml", "");
             std::filesystem::resize_file(dir.file(".kelvane.yml"), std::uintmax_t{4} << 30);
         },
         {}, "kelvane: .kelvane.yml: larger than 64 KiB"},
        {"flow collections 60000 deep",
         [](const TempDir& dir) {
             dir.write(".kelvane.yml", "skip: " + std::string(30000, '[') + std::string(30000, ']'));
         },
         {}, "kelvane: .kelvane.yml:1: nested more than 16 levels deep"},
        {"block mappings 2000 deep",
         [](const TempDir& dir) {
             std::string text;
             for (int i = 0; i < 2000; ++i) {
                 text += std::string(static_cast<std::size_t>(i), ' ') + "k:\n";
             }
             dir.write(".kelvane.yml", text);
         },
         {}, "kelvane: .kelvane.yml:"},
        {"a FIFO", [](const TempDir& dir) { ASSERT_EQ(::mkfifo(dir.file(".kelvane.yml").c_str(), 0600), 0); },
         {}, "kelvane: .kelvane.yml: Not a regular file"},
        {"a folder", [](const TempDir& dir) { dir.write(".kelvane.yml/x", ""); }, {},
         "kelvane: .kelvane.yml: Is a directory"},
        {"binary junk", [](const TempDir& dir) { dir.write(".kelvane.yml", junk(4096)); }, {},
         "kelvane: .kelvane.yml"},
        {"aliases of aliases",
         [](const TempDir& dir) {
             std::string text = "a0: &a0 [x, x]\n";
             for (int i = 1; i < 12; ++i) {
                 const std::string name = std::to_string(i);
                 const std::string before = std::to_string(i - 1);
                 text.append("a").append(name).append(": &a").append(name);
                 text.append(" [*a").append(before).append(", *a").append(before).append("]\n");
             }
             dir.write(".kelvane.yml", text);
         },
         {}, "kelvane: .kelvane.yml:1: unknown key 'a0'"},
        {"a FIFO for the baseline",
         [](const TempDir& dir) { ASSERT_EQ(::mkfifo(dir.file("known.json").c_str(), 0600), 0); },
         {"--baseline", "known.json"}, "kelvane: known.json: Not a regular file"},
        {"binary junk for the baseline", [](const TempDir& dir) { dir.write("known.json", junk(4096)); },
         {"--baseline", "known.json"}, "kelvane: known.json: not a baseline"},
        {"a baseline nested 100000 deep",
         [](const TempDir& dir) { dir.write("known.json", std::string(100000, '[')); },
         {"--baseline", "known.json"}, "kelvane: known.json: nested too deeply"},
    };
    for (const HostileAdoptionFile& c : cases) {
        SCOPED_TRACE(c.name);
        const TempDir dir;
        const std::string project =
            hostile::writeProjectReading(dir, hostile::goodEntitlements(), hostile::goodWatchInfoPlist());
        c.place(dir);
        std::vector<std::string> arguments{"scan", project, "--format", "json"};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        const ProcessOutcome run = runKelvane(arguments, dir.path().string());
        expectQuick(run);
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_TRUE(run.err.starts_with(c.errorStart)) << run.err;
    }
}

} // namespace
} // namespace kelvane::testing
