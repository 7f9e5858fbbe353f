#pragma once

#include "model/BuiltFacts.h"
#include "settings/Assignment.h"

#include <string>
#include <vector>

namespace kelvane {

// What Xcode defines before any file of the project speaks: names of the
// project and target, folders, the platform's names and the product's
// wrapper. They sit at the bottom of a target's stack, so every level of the
// project may override them.
struct BuiltInContext {
    std::string projectName;
    // The project folder as an absolute path: what SRCROOT holds in a build.
    std::string sourceRoot;
    std::string projectFilePath;
    std::string configuration;
    std::string targetName;
    std::string productType;
    Platform platform = Platform::unknown;
};

// Defaults and what Xcode derives from the project: the bottom of the stack.
[[nodiscard]] std::vector<settings::Assignment> builtInSettings(const BuiltInContext& context);
// What it derives from the target (TARGET_NAME, PRODUCT_TYPE): above the
// project levels and below the target's own, so a project-wide value such as
// `com.acme.$(TARGET_NAME)` resolves per target.
[[nodiscard]] std::vector<settings::Assignment> targetDerivedSettings(const BuiltInContext& context);

} // namespace kelvane
