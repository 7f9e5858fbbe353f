#pragma once

#include "graph/ProjectFile.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane {

// A project, or every project a workspace lists, read once and resolved as
// Xcode builds it for any of its configurations.
class AsBuiltProject {
public:
    // `url` is an .xcodeproj or .xcworkspace. Throws ParserError,
    // plist::FileReadError and plist::ParseError when nothing can be loaded;
    // a workspace's projects that are missing (a Pods project not committed)
    // are skipped as long as one loads.
    // With `positions`, the resolved projects say where each build setting
    // is written.
    [[nodiscard]] static AsBuiltProject load(const std::string& url, bool positions = false);

    // The configurations of the first project, in its order.
    [[nodiscard]] std::vector<std::string> configurations() const;
    // The one `xcodebuild` uses without -configuration: the first project's
    // defaultConfigurationName, else its first configuration.
    [[nodiscard]] std::string defaultConfiguration() const;

    // Every target resolved for `configuration` (the default when absent):
    // targets of each project in the project's own order, projects in the
    // order the workspace lists them.
    [[nodiscard]] ProjectContext resolve(const std::optional<std::string>& configuration) const;

    // What a scan checks: the project resolved for `only`, or for its default
    // configuration with every configuration resolved beside it in
    // `resolvedConfigurations`, so a problem that lives only in Beta is seen.
    [[nodiscard]] ProjectContext resolveForScan(const std::optional<std::string>& only) const;

private:
    std::vector<ProjectFile> projects_;
};

} // namespace kelvane
