#include "KelvaneProcess.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

namespace kelvane::testing {
namespace {

namespace fs = std::filesystem;

// What a write anywhere in a tree would change: every entry's kind, size,
// permissions and bytes, and by the keys, every folder's listing.
struct Entry {
    fs::file_type type;
    std::uintmax_t size;
    fs::perms mode;
    std::uint64_t hash;
    std::string linkTarget;
    friend bool operator==(const Entry&, const Entry&) = default;
};

std::uint64_t fnv1a(const fs::path& file) {
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    std::ifstream in(file, std::ios::binary);
    char buffer[1 << 14];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0) {
        for (std::streamsize i = 0; i < in.gcount(); ++i) {
            hash = (hash ^ static_cast<unsigned char>(buffer[i])) * 0x100000001b3ULL;
        }
    }
    return hash;
}

std::map<std::string, Entry> snapshot(const fs::path& root) {
    std::map<std::string, Entry> entries;
    for (const fs::directory_entry& item : fs::recursive_directory_iterator(root)) {
        const fs::file_status status = item.symlink_status();
        Entry entry{status.type(), 0, status.permissions(), 0, {}};
        if (fs::is_regular_file(status)) {
            entry.size = item.file_size();
            entry.hash = fnv1a(item.path());
        } else if (fs::is_symlink(status)) {
            entry.linkTarget = fs::read_symlink(item.path()).string();
        }
        entries.emplace(fs::relative(item.path(), root).string(), entry);
    }
    return entries;
}

void setWritable(const fs::path& root, bool writable) {
    const auto options = writable ? fs::perm_options::add : fs::perm_options::remove;
    const fs::perms write =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(root, write, options);
    for (const fs::directory_entry& item : fs::recursive_directory_iterator(root)) {
        if (!item.is_symlink()) {
            fs::permissions(item.path(), write, options);
        }
    }
}

// The values `--format` takes, as the command's own help lists them, so a
// format added later is covered without touching this test.
std::vector<std::string> formats(const std::string& command) {
    const ProcessOutcome help = runKelvane({command, "--help"});
    std::smatch match;
    EXPECT_TRUE(std::regex_search(help.out, match, std::regex(R"(--format \w+:\{([^}]*)\})")))
        << help.out;
    std::vector<std::string> values;
    const std::string list = match.size() > 1 ? match[1].str() : "";
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t comma = std::min(list.find(',', start), list.size());
        values.push_back(list.substr(start, comma - start));
        start = comma + 1;
    }
    return values;
}

std::vector<std::string> bundlesBelow(const fs::path& root) {
    std::vector<std::string> bundles;
    for (const fs::directory_entry& item : fs::recursive_directory_iterator(root)) {
        const fs::path extension = item.path().extension();
        if (item.is_directory() && (extension == ".xcodeproj" || extension == ".xcworkspace")) {
            bundles.push_back(fs::relative(item.path(), root).string());
        }
    }
    return bundles;
}

// Kelvane only reads. Scan and inspect every example in every output format,
// from inside the copy so that a stray relative write would land there too,
// and compare the whole tree before and after. Root ignores the read-only
// permissions, so the comparison is what counts.
TEST(NoWrite, ScanningAndInspectingLeaveEveryFileAsItWas) {
    const TempDir parent;
    for (const fs::directory_entry& example : fs::directory_iterator(sourceDir() / "examples")) {
        if (example.is_directory()) {
            fs::copy(example.path(), parent.path() / example.path().filename(),
                     fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        }
    }
    const std::vector<std::string> bundles = bundlesBelow(parent.path());
    ASSERT_GE(bundles.size(), 2u);

    std::vector<std::vector<std::string>> commands;
    for (const std::string& bundle : bundles) {
        for (const std::string& format : formats("scan")) {
            commands.push_back({"scan", "--format", format, "--fail-on", "never", bundle});
        }
        commands.push_back({"scan", "--color", "always", "--fail-on", "never", bundle});
        for (const std::string& format : formats("inspect")) {
            commands.push_back({"inspect", "--format", format, bundle});
        }
    }
    ASSERT_GE(commands.size(), bundles.size() * 8);

    setWritable(parent.path(), false);
    const auto before = snapshot(parent.path());
    for (const auto& command : commands) {
        const ProcessOutcome run = runKelvane(command, parent.path().string());
        std::string line;
        for (const std::string& word : command) {
            line += word + " ";
        }
        // The workspace Xcode keeps inside a project names no project, so
        // loading it fails; that must not write either.
        EXPECT_TRUE(run.status == 0 || run.status == 2) << line << "\n" << run.err;
        if (run.status == 2) {
            EXPECT_NE(run.err, "") << line;
        }
    }
    const auto after = snapshot(parent.path());
    setWritable(parent.path(), true);

    EXPECT_EQ(after.size(), before.size());
    for (const auto& [path, entry] : after) {
        const auto was = before.find(path);
        if (was == before.end()) {
            ADD_FAILURE() << "appeared: " << path;
        } else if (!(was->second == entry)) {
            ADD_FAILURE() << "changed: " << path;
        }
    }
    for (const auto& [path, entry] : before) {
        EXPECT_TRUE(after.contains(path)) << "disappeared: " << path;
    }
    std::printf("%zu runs over %zu bundles, %zu entries compared\n", commands.size(),
                bundles.size(), before.size());
}

} // namespace
} // namespace kelvane::testing
