#include "report/EvidenceLocations.h"

#include "diagnostics/Overloaded.h"
#include "model/FilePath.h"
#include "plist/PropertyListReader.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace kelvane::report {

namespace {

// "Debug, Release" as the configurations a merged finding holds in.
std::vector<std::string_view> namesIn(std::string_view joined) {
    std::vector<std::string_view> names;
    while (!joined.empty()) {
        const std::size_t comma = joined.find(", ");
        names.push_back(joined.substr(0, comma));
        joined = comma == std::string_view::npos ? std::string_view() : joined.substr(comma + 2);
    }
    return names;
}

// A setting may be written under its name alone or with a condition
// ("KEY[sdk=iphoneos*]"); the plain one is the better answer.
bool namesSetting(const std::string& written, const std::string& key) {
    return written == key || (written.starts_with(key) && written.size() > key.size() &&
                              written[key.size()] == '[');
}

std::string targetNameOf(const EvidenceSource& source) {
    return std::visit(
        [](const auto& s) -> std::string {
            if constexpr (requires { s.targetName; }) {
                return s.targetName;
            } else {
                return "";
            }
        },
        source);
}

} // namespace

EvidenceLocations::EvidenceLocations(std::shared_ptr<const ProjectContext> project)
    : project_(std::move(project)) {}

const TargetContext* EvidenceLocations::target(const std::string& name) const {
    if (!project_) {
        return nullptr;
    }
    const auto found =
        std::find_if(project_->targets.begin(), project_->targets.end(),
                     [&](const TargetContext& target) { return target.name == name; });
    return found == project_->targets.end() ? nullptr : &*found;
}

std::optional<std::string> EvidenceLocations::projectFile() const {
    if (!project_) {
        return std::nullopt;
    }
    return path::join(project_->projectURL, "project.pbxproj");
}

EvidenceLocation EvidenceLocations::settingIn(std::string file, const std::string& targetName,
                                              const std::string& configurations,
                                              const std::string& key,
                                              bool firstConfiguration) const {
    std::vector<const SettingPosition*> candidates;
    for (const SettingPosition& position : project_->settingPositions) {
        if (position.file == file && position.targetName == targetName &&
            namesSetting(position.key, key)) {
            candidates.push_back(&position);
        }
    }
    // Plain keys before conditional ones, file order otherwise.
    std::stable_sort(candidates.begin(), candidates.end(), [&](const auto* a, const auto* b) {
        return (a->key == key) > (b->key == key);
    });
    const SettingPosition* chosen = candidates.empty() ? nullptr : candidates.front();
    if (!firstConfiguration) {
        // The first configuration the finding names that writes the setting.
        for (const std::string_view name : namesIn(configurations)) {
            const auto match = std::find_if(candidates.begin(), candidates.end(),
                                            [&](const auto* c) { return c->configuration == name; });
            if (match != candidates.end()) {
                chosen = *match;
                break;
            }
        }
    }
    if (chosen == nullptr) {
        return {std::move(file), 0, 0};
    }
    return {std::move(file), chosen->line, chosen->column};
}

EvidenceLocation EvidenceLocations::keyIn(std::string file, const std::string& key) const {
    auto cached = plistKeys_.find(file);
    if (cached == plistKeys_.end()) {
        plist::KeyPositions keys(
            [](const plist::KeyPositions::Path& path) { return path.empty(); });
        try {
            (void)plist::readPropertyListFile(file, {}, &keys);
        } catch (const std::exception&) {
            // The checks already said what is wrong with the file; without
            // its keys the report still names it.
            keys = plist::KeyPositions();
        }
        cached = plistKeys_.emplace(file, std::move(keys)).first;
    }
    const auto at = cached->second.find({key});
    return {std::move(file), at ? at->line : 0, at ? at->column : 0};
}

std::optional<EvidenceLocation> EvidenceLocations::fromOrigin(const EvidenceItem& item) const {
    const SettingOrigin& origin = *item.origin;
    if (origin.file.empty()) {
        return std::nullopt; // Xcode's own value: no file says it
    }
    if (origin.line != 0) {
        return EvidenceLocation{origin.file, origin.line, origin.column};
    }
    if (origin.level == "project" || origin.level == "target") {
        const auto* setting = std::get_if<BuildSettingSource>(&item.source);
        return settingIn(origin.file, origin.level == "project" ? "" : targetNameOf(item.source),
                         setting ? setting->configName : "", item.key, false);
    }
    if (origin.level == "Info.plist" || origin.level == "entitlements") {
        return keyIn(origin.file, item.key);
    }
    return EvidenceLocation{origin.file, 0, 0};
}

std::optional<EvidenceLocation> EvidenceLocations::fromSource(const EvidenceItem& item) const {
    const std::optional<std::string> pbxproj = projectFile();
    if (!pbxproj) {
        return std::nullopt;
    }
    return std::visit(
        Overloaded{
            [&](const PlistSource& plist) {
                const TargetContext* owner = target(plist.targetName);
                return owner && owner->infoPlistURL ? keyIn(*owner->infoPlistURL, item.key)
                                                    : EvidenceLocation{*pbxproj};
            },
            [&](const EntitlementsSource& entitlements) {
                const TargetContext* owner = target(entitlements.targetName);
                return owner && owner->entitlementsURL ? keyIn(*owner->entitlementsURL, item.key)
                                                       : EvidenceLocation{*pbxproj};
            },
            // Read literally, a target's settings are its first
            // configuration's, whatever name the evidence gives.
            [&](const BuildSettingSource& setting) {
                return settingIn(*pbxproj, setting.targetName, setting.configName, item.key, true);
            },
            [&](const ProjectSettingSource& setting) {
                return settingIn(*pbxproj, "", setting.configName, item.key, false);
            },
            // Schemes live beside the project file in xcshareddata, but no
            // check reads one; the project file is the nearest honest answer.
            [&](const auto&) { return EvidenceLocation{*pbxproj}; },
        },
        item.source);
}

std::optional<EvidenceLocation> EvidenceLocations::locate(const EvidenceItem& item) const {
    if (!project_) {
        return std::nullopt;
    }
    if (item.origin) {
        if (auto located = fromOrigin(item)) {
            return located;
        }
    }
    return fromSource(item);
}

std::vector<EvidenceLocation> EvidenceLocations::locationsFor(const DoctorIssue& issue) const {
    std::vector<EvidenceLocation> locations;
    for (const EvidenceItem& item : issue.evidence) {
        const std::optional<EvidenceLocation> location = locate(item);
        if (location &&
            std::find(locations.begin(), locations.end(), *location) == locations.end()) {
            locations.push_back(*location);
        }
    }
    if (locations.empty()) {
        if (const std::optional<std::string> file = projectFile()) {
            locations.push_back({*file});
        }
    }
    return locations;
}

void placeOrigins(ScanReport& report, const EvidenceLocations& locations) {
    const auto place = [&](DoctorIssue& issue) {
        for (EvidenceItem& item : issue.evidence) {
            if (!item.origin || item.origin->line != 0) {
                continue;
            }
            const std::optional<EvidenceLocation> at = locations.locate(item);
            if (at && at->line != 0 && at->file == item.origin->file) {
                item.origin->line = at->line;
                item.origin->column = at->column;
            }
        }
    };
    std::for_each(report.issues.begin(), report.issues.end(), place);
    for (CheckOutcome& check : report.checks) {
        if (check.issue) {
            place(*check.issue);
        }
    }
}

std::string relativeToCurrentFolder(const std::string& path) {
    const std::filesystem::path given(path);
    if (!given.is_absolute()) {
        // `scan .` joins every path onto "."; annotations name files the
        // way the repository lists them.
        std::string_view relative = path;
        while (relative.starts_with("./") && relative.size() > 2) {
            relative.remove_prefix(2);
        }
        return std::string(relative);
    }
    std::error_code error;
    const std::filesystem::path here = std::filesystem::current_path(error);
    if (error) {
        return path;
    }
    return given.lexically_proximate(here).generic_string();
}

} // namespace kelvane::report
