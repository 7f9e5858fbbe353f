#pragma once

#include "model/SettingPosition.h"
#include "plist/KeyPositions.h"
#include "plist/Value.h"

#include <string>
#include <vector>

namespace kelvane {

// The keys of project.pbxproj worth a position: the build settings of each
// configuration object (objects → id → buildSettings → KEY).
[[nodiscard]] plist::KeyPositions buildSettingPositions();

// Each build setting of the project and of every target, by configuration
// name, where `positions` (read with buildSettingPositions) places it.
// Settings without a recorded place (a binary project file) are left out.
[[nodiscard]] std::vector<SettingPosition> settingPositions(const plist::Dictionary& objects,
                                                            const plist::KeyPositions& positions,
                                                            const std::string& projectFile);

} // namespace kelvane
