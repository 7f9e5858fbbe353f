#pragma once

#include <cstddef>
#include <string>

namespace kelvane {

// Where a resolved value was set, so evidence can point a developer at it:
// a file and line (an .xcconfig), or a level of the project file.
struct SettingOrigin {
    // The file that holds the assignment: an .xcconfig or the project.pbxproj;
    // empty for values Xcode supplies itself.
    std::string file;
    // 1-based; 0 where no line is known (project-file levels).
    std::size_t line = 0;
    // "project xcconfig", "project", "target xcconfig", "target", "built-in",
    // "Info.plist", "generated Info.plist", "entitlements".
    std::string level;
    // 1-based column of the setting's name on its line; 0 where unknown.
    std::size_t column = 0;

    friend bool operator==(const SettingOrigin&, const SettingOrigin&) = default;
};

} // namespace kelvane
