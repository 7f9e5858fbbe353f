// Any bytes as the project.pbxproj of a small project that has real
// entitlements and Info.plist files beside it: loading and all nine checks,
// read literally and as built, end in a report or a load error, never a
// crash, a hang or a leak.
#include "graph/AsBuiltProject.h"
#include "scanner/ProjectScanner.h"
#include "scanner/SleepingLoop.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {
namespace fs = std::filesystem;

void writeFile(const fs::path& path, std::string_view bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The files a fuzzed project's build settings can name; the seeds name them.
fs::path projectFolder() {
    static const fs::path folder = [] {
        const auto root = fs::temp_directory_path() /
                          ("kelvane-fuzz-scan-" + std::to_string(::getpid()));
        const std::string entitlements = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>com.apple.security.application-groups</key><array><string>group.a</string></array>
<key>com.apple.developer.icloud-services</key><array><string>CloudKit</string></array>
<key>com.apple.developer.icloud-container-identifiers</key><array/>
<key>aps-environment</key><string>development</string>
</dict></plist>)";
        const std::string info = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>WKCompanionAppBundleIdentifier</key><string>com.example.app</string>
</dict></plist>)";
        for (const char* name : {"App", "Widget", "Watch", "Extension", "Nimbus", "Aurora"}) {
            writeFile(root / name / (std::string(name) + ".entitlements"), entitlements);
            writeFile(root / name / "Info.plist", info);
        }
        writeFile(root / "App.entitlements", entitlements);
        writeFile(root / "Info.plist", info);
        fs::create_directories(root / "App.xcodeproj");
        return root;
    }();
    return folder;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto folder = projectFolder();
    writeFile(folder / "App.xcodeproj" / "project.pbxproj",
              std::string_view(reinterpret_cast<const char*>(data), size));

    for (const bool asBuilt : {false, true}) {
        kelvane::SleepingLoop loop;
        std::ostringstream failures;
        kelvane::ProjectScanner::ProjectLoader loader;
        if (asBuilt) {
            loader = [](const std::string& url) {
                return kelvane::AsBuiltProject::load(url).resolve(std::nullopt);
            };
        }
        const kelvane::ProjectScanner scanner(loop, failures, kelvane::makeCheckRegistry(),
                                              std::chrono::milliseconds(0), loader);
        bool completed = false;
        scanner.scan((folder / "App.xcodeproj").string(), {},
                     [&](const kelvane::ScanCompletion&) { completed = true; });
        loop.runUntilIdle();
        if (!completed) {
            __builtin_trap();
        }
    }
    return 0;
}
