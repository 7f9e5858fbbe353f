#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"
#include "plist/KeyPositions.h"
#include "scanner/ProjectScanner.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelvane::report {

// A place in a file; line and column are 1-based, 0 where only the file is
// known (a binary property list, a setting Xcode supplies itself).
struct EvidenceLocation {
    std::string file;
    std::size_t line = 0;
    std::size_t column = 0;
    friend bool operator==(const EvidenceLocation&, const EvidenceLocation&) = default;
};

// The file and line behind each piece of evidence, for reports that point a
// CI system or an IDE at them. Evidence names only a target and a file's
// last component, so places come from the project the scan loaded: build
// settings at their line in project.pbxproj (as built: in the .xcconfig that
// set them), property-list keys at their line in the file the target names.
class EvidenceLocations {
public:
    // Without a project every evidence resolves to nothing.
    EvidenceLocations() = default;
    explicit EvidenceLocations(std::shared_ptr<const ProjectContext> project);

    [[nodiscard]] std::optional<EvidenceLocation> locate(const EvidenceItem& item) const;
    // Each place the issue's evidence names, once, in the order first named;
    // project.pbxproj for an issue without evidence.
    [[nodiscard]] std::vector<EvidenceLocation> locationsFor(const DoctorIssue& issue) const;

private:
    [[nodiscard]] const TargetContext* target(const std::string& name) const;
    [[nodiscard]] std::optional<std::string> projectFile() const;
    [[nodiscard]] std::optional<EvidenceLocation> fromSource(const EvidenceItem& item) const;
    [[nodiscard]] std::optional<EvidenceLocation> fromOrigin(const EvidenceItem& item) const;
    [[nodiscard]] EvidenceLocation settingIn(std::string file, const std::string& targetName,
                                             const std::string& configurations,
                                             const std::string& key, bool firstConfiguration) const;
    [[nodiscard]] EvidenceLocation keyIn(std::string file, const std::string& key) const;

    std::shared_ptr<const ProjectContext> project_;
    // Top-level key positions of each property list asked about, read once.
    mutable std::map<std::string, plist::KeyPositions> plistKeys_;
};

// Fills in, on the report's as-built evidence, the line and column of values
// set in project.pbxproj or a property list, where the project knows them.
void placeOrigins(ScanReport& report, const EvidenceLocations& locations);

// `path` as a CI system wants it: relative to the current folder, without a
// leading "./". Relative paths are already; absolute ones are made relative
// lexically.
[[nodiscard]] std::string relativeToCurrentFolder(const std::string& path);

} // namespace kelvane::report
