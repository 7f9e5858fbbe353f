#pragma once

#include "model/TargetContext.h"
#include "plist/Value.h"

#include <vector>

namespace kelvane {

// Links the resolved targets of one project: what each copies into its
// bundle (extensions, watch content, App Clips, frameworks, login items,
// through its copy-files phases), the host of every embedded target and test
// bundle, each target's role, and the main app of every platform.
// `objects[i]` is the PBXNativeTarget of `targets[i]`.
void connectTargets(std::vector<TargetContext>& targets,
                    const std::vector<const plist::Dictionary*>& objects,
                    const plist::Dictionary& objectTable);

} // namespace kelvane
