#include "selection/RepositoryProjects.h"

#include "model/FilePath.h"
#include "parser/WorkspaceProjects.h"
#include "selection/AmbiguousFolderError.h"
#include "selection/FolderEntries.h"
#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

namespace kelvane {
namespace {

// Deep enough for any checkout's layout ("src/xcode/ENA/ENA.xcodeproj" is
// three); a bound so that a pathological tree still ends.
constexpr std::size_t kMaxDepth = 16;

// What CocoaPods, Carthage, Xcode, npm and old Xcode builds write into a
// checkout: the projects in them are dependencies or build products, never
// what the developer works on. Hidden folders (.build, .swiftpm) go too.
constexpr std::array<std::string_view, 5> kDependencyFolders{"Pods", "Carthage", "DerivedData",
                                                             "node_modules", "build"};

// Bundles other than projects and workspaces: nothing in them is a project a
// developer opens, and an asset catalogue or a built app can hold thousands
// of entries.
constexpr std::array<std::string_view, 8> kOtherBundles{
    "app", "appex", "bundle", "framework", "playground", "xcarchive", "xcframework", "xctest"};

bool isCandidate(std::string_view name) {
    const std::string_view extension = path::extension(name);
    return extension == "xcodeproj" || extension == "xcworkspace";
}

bool isWorkspace(std::string_view name) {
    return path::extension(name) == "xcworkspace";
}

bool descends(std::string_view name) {
    return std::find(kDependencyFolders.begin(), kDependencyFolders.end(), name) ==
               kDependencyFolders.end() &&
           std::find(kOtherBundles.begin(), kOtherBundles.end(), path::extension(name)) ==
               kOtherBundles.end();
}

struct Pending {
    std::string relative;
    // Only folders that the walk goes into are ever pending without being
    // candidates.
    bool candidate = false;
    std::size_t depth = 0;
};

std::string normal(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().generic_string();
}

class Walk {
public:
    Walk(std::string folder, const std::vector<std::string>& excluded)
        : folder_(std::move(folder)) {
        for (const std::string& each : excluded) {
            std::string relative = path::withoutTrailingSlash(normal(each));
            // "." would exclude the whole walk; the caller refuses that case
            // with a message of its own.
            if (!relative.empty() && relative != "." && !relative.starts_with("../")) {
                excluded_.push_back(std::move(relative));
            }
        }
    }

    [[nodiscard]] std::string pathOf(const std::string& relative) const {
        return folder_ == "." ? relative : path::join(folder_, relative);
    }

    // Candidates in walk order. Depth first with its own stack, so a deep
    // tree cannot exhaust the call stack; links are never folders here, so
    // one that leads back up cannot make the walk go round.
    std::vector<FolderProject> run() const {
        std::vector<Pending> stack;
        if (!push(stack, "", 0)) {
            throw ProjectSelectionError(ProjectSelectionError::Case::cannotEnumerateFolder);
        }
        std::vector<FolderProject> found;
        while (!stack.empty()) {
            Pending entry = std::move(stack.back());
            stack.pop_back();
            if (entry.candidate) {
                found.push_back({pathOf(entry.relative), entry.relative});
            } else if (entry.depth <= kMaxDepth) {
                // Folders below the top that cannot be opened are passed over.
                (void)push(stack, entry.relative, entry.depth);
            }
        }
        return found;
    }

private:
    // Pushes the entries of one folder that matter, so that they pop in
    // ascending byte order of their names: the same order on every file
    // system. False when the folder cannot be opened.
    bool push(std::vector<Pending>& stack, const std::string& relative, std::size_t depth) const {
        std::vector<Pending> entries;
        const std::string folder = relative.empty() ? folder_ : pathOf(relative);
        const bool opened = forEachFolderEntry(folder, [&](std::string_view name, bool isFolder) {
            if (name.front() == '.') {
                return;
            }
            const bool candidate = isCandidate(name);
            if (candidate || (isFolder && descends(name))) {
                std::string child = relative.empty() ? std::string(name) : path::join(relative, name);
                if (!isExcluded(child)) {
                    entries.push_back({std::move(child), candidate, depth + 1});
                }
            }
        });
        std::sort(entries.begin(), entries.end(),
                  [](const Pending& a, const Pending& b) { return a.relative > b.relative; });
        std::move(entries.begin(), entries.end(), std::back_inserter(stack));
        return opened;
    }

    [[nodiscard]] bool isExcluded(const std::string& relative) const {
        return std::any_of(excluded_.begin(), excluded_.end(), [&](const std::string& folder) {
            return relative == folder ||
                   (relative.starts_with(folder) && relative[folder.size()] == '/');
        });
    }

    std::string folder_;
    std::vector<std::string> excluded_;
};

// What a workspace candidate lists, or nothing when its listing cannot be
// read: it stays a candidate then, and scanning it says what is wrong.
std::optional<std::vector<std::string>> listing(const std::string& workspace) {
    try {
        return workspaceProjects(workspace);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::vector<FolderProject> topLevel(std::vector<FolderProject> candidates) {
    std::set<std::string> listed;
    std::set<std::string> listsNothing;
    for (const FolderProject& candidate : candidates) {
        if (!isWorkspace(candidate.path)) {
            continue;
        }
        if (const auto projects = listing(candidate.path)) {
            for (const std::string& project : *projects) {
                listed.insert(normal(project));
            }
            if (projects->empty()) {
                listsNothing.insert(candidate.path);
            }
        }
    }
    std::erase_if(candidates, [&](const FolderProject& candidate) {
        return !isWorkspace(candidate.path) && listed.contains(normal(candidate.path));
    });
    if (listsNothing.size() < candidates.size()) {
        std::erase_if(candidates, [&](const FolderProject& candidate) {
            return listsNothing.contains(candidate.path);
        });
    }
    return candidates;
}

bool isFolderToWalk(const std::string& path) {
    if (isCandidate(path::lastComponent(path))) {
        return false;
    }
    // Follows links, as resolveSelection does for the path it is given.
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

} // namespace

std::vector<FolderProject> repositoryProjects(const std::string& path,
                                             const std::vector<std::string>& excluded) {
    const std::string chosen = path::withoutTrailingSlash(path);
    if (!isFolderToWalk(chosen)) {
        const std::string project = resolveSelection(chosen);
        return {{project, std::string(path::lastComponent(project))}};
    }
    std::vector<FolderProject> projects = topLevel(Walk(chosen, excluded).run());
    if (projects.empty()) {
        throw ProjectSelectionError(ProjectSelectionError::Case::noProjectsFound);
    }
    return projects;
}

std::string resolveRepositoryProject(const std::string& path,
                                     const std::vector<std::string>& excluded) {
    std::vector<FolderProject> projects = repositoryProjects(path, excluded);
    if (projects.size() > 1) {
        std::vector<std::string> relative;
        relative.reserve(projects.size());
        for (FolderProject& project : projects) {
            relative.push_back(std::move(project.relative));
        }
        throw AmbiguousFolderError(path::withoutTrailingSlash(path), std::move(relative));
    }
    return std::move(projects.front().path);
}

} // namespace kelvane
