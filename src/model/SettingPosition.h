#pragma once

#include <cstddef>
#include <string>

namespace kelvane {

// Where one build setting is written in a project.pbxproj: the `KEY = value;`
// line inside one configuration's buildSettings, so a report can send a
// developer (or an IDE, or a CI annotation) to it.
struct SettingPosition {
    std::string file;       // the project.pbxproj
    std::string targetName; // empty for the project's own settings
    std::string configuration;
    std::string key;
    std::size_t line = 0; // 1-based
    std::size_t column = 0;
    friend bool operator==(const SettingPosition&, const SettingPosition&) = default;
};

} // namespace kelvane
