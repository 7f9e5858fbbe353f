#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvane::cli {

// The file on disk behind each piece of evidence, for reports that point a
// CI system or an IDE at a file. Evidence names only a target and a file's
// last component, so the paths come from the loaded project: build settings,
// capabilities, frameworks and watch extensions live in project.pbxproj;
// property lists are the files the target's build settings name.
class EvidenceFiles {
public:
    // Without a project (it could not be loaded a second time) every
    // evidence resolves to nothing.
    EvidenceFiles() = default;
    explicit EvidenceFiles(ProjectContext project);

    [[nodiscard]] std::optional<std::string> fileFor(const EvidenceSource& source) const;
    // Each file the issue's evidence names, once, in the order first named;
    // project.pbxproj for an issue without evidence.
    [[nodiscard]] std::vector<std::string> filesFor(const DoctorIssue& issue) const;

private:
    [[nodiscard]] const TargetContext* target(const std::string& name) const;
    [[nodiscard]] std::optional<std::string> projectFile() const;

    std::optional<ProjectContext> project_;
};

// `path` as a CI system wants it: relative to the current folder. Relative
// paths are already; absolute ones are made relative lexically.
[[nodiscard]] std::string relativeToCurrentFolder(const std::string& path);

} // namespace kelvane::cli
