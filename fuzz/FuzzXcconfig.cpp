// Any text read as an .xcconfig, then every setting it assigns evaluated in a
// scope built from it, finishes without crashing. Includes resolve against a
// folder that does not exist, so only absolute paths reach the disk.
#include "settings/SettingsScope.h"
#include "settings/XcconfigReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvane::settings;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    XcconfigContents contents =
        parseXcconfig(text, "/nonexistent/fuzz.xcconfig", "target xcconfig", "/nonexistent");
    std::vector<std::string> names;
    for (const Assignment& assignment : contents.assignments) {
        names.push_back(assignment.name);
    }
    const SettingsScope scope(std::move(contents.assignments),
                              {{"config", "Debug"}, {"sdk", "iphoneos18.2"}});
    for (const std::string& name : names) {
        (void)scope.evaluate(name);
    }
    (void)scope.expand(text);
    return 0;
}
