#include "cli/EvidenceFiles.h"

#include "diagnostics/Overloaded.h"
#include "model/FilePath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kelvane::cli {

EvidenceFiles::EvidenceFiles(ProjectContext project) : project_(std::move(project)) {}

const TargetContext* EvidenceFiles::target(const std::string& name) const {
    if (!project_) {
        return nullptr;
    }
    const auto found =
        std::find_if(project_->targets.begin(), project_->targets.end(),
                     [&](const TargetContext& target) { return target.name == name; });
    return found == project_->targets.end() ? nullptr : &*found;
}

std::optional<std::string> EvidenceFiles::projectFile() const {
    if (!project_) {
        return std::nullopt;
    }
    return path::join(project_->projectURL, "project.pbxproj");
}

std::optional<std::string> EvidenceFiles::fileFor(const EvidenceSource& source) const {
    return std::visit(
        Overloaded{
            [&](const PlistSource& plist) -> std::optional<std::string> {
                const TargetContext* owner = target(plist.targetName);
                return owner && owner->infoPlistURL ? owner->infoPlistURL : projectFile();
            },
            [&](const EntitlementsSource& entitlements) -> std::optional<std::string> {
                const TargetContext* owner = target(entitlements.targetName);
                return owner && owner->entitlementsURL ? owner->entitlementsURL : projectFile();
            },
            // Schemes live beside the project file in xcshareddata, but no
            // check reads one; the project file is the nearest honest answer.
            [&](const auto&) { return projectFile(); },
        },
        source);
}

std::vector<std::string> EvidenceFiles::filesFor(const DoctorIssue& issue) const {
    std::vector<std::string> files;
    for (const EvidenceItem& item : issue.evidence) {
        const std::optional<std::string> file = fileFor(item.source);
        if (file && std::find(files.begin(), files.end(), *file) == files.end()) {
            files.push_back(*file);
        }
    }
    if (files.empty()) {
        if (const std::optional<std::string> file = projectFile()) {
            files.push_back(*file);
        }
    }
    return files;
}

std::string relativeToCurrentFolder(const std::string& path) {
    const std::filesystem::path given(path);
    if (!given.is_absolute()) {
        return path;
    }
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    if (error) {
        return path;
    }
    return given.lexically_proximate(here).generic_string();
}

} // namespace kelvane::cli
