// Any bytes as a workspace's contents.xcworkspacedata: the workspace resolves
// to a project (or, read as built, to every project it lists) or fails with
// one of the loading errors, never anything else.
#include "parser/ParserError.h"
#include "parser/ProjectParser.h"
#include "parser/WorkspaceLocation.h"
#include "parser/WorkspaceProjects.h"
#include "plist/ParseError.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {
std::filesystem::path workspaceFolder() {
    static const std::filesystem::path folder = [] {
        auto path = std::filesystem::temp_directory_path() /
                    ("kelvane-fuzz-workspace-" + std::to_string(::getpid()));
        std::filesystem::create_directories(path / "App.xcworkspace");
        std::filesystem::create_directories(path / "App" / "App.xcodeproj");
        std::ofstream(path / "App" / "App.xcodeproj" / "project.pbxproj")
            << "// !$*UTF8*$!\n{ objects = { }; rootObject = X; }\n";
        return path;
    }();
    return folder;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    (void)kelvane::firstProjectLocation(bytes);
    try {
        (void)kelvane::workspaceProjectsIn(bytes, "ws");
    } catch (const kelvane::ParserError&) {
    }

    const auto folder = workspaceFolder();
    {
        std::ofstream out(folder / "App.xcworkspace" / "contents.xcworkspacedata",
                          std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    try {
        (void)kelvane::ProjectParser().parseProject((folder / "App.xcworkspace").string());
    } catch (const kelvane::ParserError&) {
    } catch (const kelvane::plist::ParseError&) {
    } catch (const kelvane::plist::FileReadError&) {
    }
    return 0;
}
