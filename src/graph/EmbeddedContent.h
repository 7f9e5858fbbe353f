#pragma once

#include "model/TargetContext.h"
#include "plist/Value.h"

#include <string>
#include <string_view>
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

// The app a TEST_HOST or BUNDLE_LOADER path runs in: the name of its first
// ".app" component ("…/Cirrus.app/Cirrus" gives "Cirrus"); empty when it
// names no app.
[[nodiscard]] std::string_view hostProductName(std::string_view hostPath);

// The name of the product a target builds: its resolved PRODUCT_NAME, else
// the target's name.
[[nodiscard]] std::string productName(const TargetContext& target);

} // namespace kelvane
