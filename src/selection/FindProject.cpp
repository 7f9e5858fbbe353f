#include "model/FilePath.h"
#include "selection/FolderEntries.h"
#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvane {
namespace {

// An entry the walk still has to visit. Ordinary files that are not
// candidates never become one: on a large source tree they are nearly all of
// the entries, and all the walk needs from them is their name.
struct PendingEntry {
    std::string path;
    bool isFolder = false;
};

struct Candidates {
    std::vector<std::string> workspaces;
    std::vector<std::string> projects;
};

bool isWorkspace(std::string_view name) {
    return path::extension(name) == "xcworkspace";
}
bool isProject(std::string_view name) {
    return path::extension(name) == "xcodeproj";
}

// A folder's visible entries that matter to the walk, in ascending byte order
// of their names (std::string compares as unsigned bytes), so the visiting
// order is the same on every file system. Nothing when the folder cannot be
// opened.
std::optional<std::vector<PendingEntry>> readFolder(const std::string& folder) {
    struct Named {
        std::string name;
        bool isFolder;
    };
    std::vector<Named> found;
    const bool opened = forEachFolderEntry(folder, [&](std::string_view name, bool isFolder) {
        if (name.front() == '.') {
            return;
        }
        if (isFolder || isWorkspace(name) || isProject(name)) {
            found.push_back({std::string(name), isFolder});
        }
    });
    if (!opened) {
        return std::nullopt;
    }
    std::sort(found.begin(), found.end(),
              [](const Named& a, const Named& b) { return a.name < b.name; });

    std::vector<PendingEntry> result;
    result.reserve(found.size());
    for (const Named& entry : found) {
        result.push_back({path::join(folder, entry.name), entry.isFolder});
    }
    return result;
}

void pushInReverse(std::vector<PendingEntry>& stack, std::vector<PendingEntry> entries) {
    std::move(entries.rbegin(), entries.rend(), std::back_inserter(stack));
}

// Depth-first, pre-order, with its own stack: a deep tree must not exhaust the
// call stack. Links are never descended, so a link to an ancestor cannot make
// the walk go round.
Candidates walk(const std::string& folder) {
    std::optional<std::vector<PendingEntry>> top = readFolder(folder);
    if (!top) {
        throw ProjectSelectionError(ProjectSelectionError::Case::cannotEnumerateFolder);
    }
    std::vector<PendingEntry> stack;
    pushInReverse(stack, std::move(*top));

    Candidates candidates;
    while (!stack.empty()) {
        PendingEntry entry = std::move(stack.back());
        stack.pop_back();

        if (isWorkspace(entry.path)) {
            candidates.workspaces.push_back(entry.path);
        } else if (isProject(entry.path)) {
            candidates.projects.push_back(entry.path);
        }
        if (!entry.isFolder) {
            continue;
        }
        // Folders below the top that cannot be opened are passed over silently.
        if (std::optional<std::vector<PendingEntry>> inner = readFolder(entry.path)) {
            pushInReverse(stack, std::move(*inner));
        }
    }
    return candidates;
}

std::string namesOf(const std::vector<std::string>& paths) {
    std::string names;
    for (const std::string& candidate : paths) {
        if (!names.empty()) {
            names += ", ";
        }
        names += path::lastComponent(candidate);
    }
    return names;
}

std::string single(const std::vector<std::string>& paths, ProjectSelectionError::Case multiple) {
    if (paths.size() > 1) {
        throw ProjectSelectionError(multiple, namesOf(paths));
    }
    return paths.front();
}

} // namespace

std::string findProject(const std::string& folder) {
    Candidates candidates = walk(folder);
    if (!candidates.workspaces.empty()) {
        return single(candidates.workspaces, ProjectSelectionError::Case::multipleWorkspacesFound);
    }
    if (candidates.projects.empty()) {
        throw ProjectSelectionError(ProjectSelectionError::Case::noProjectsFound);
    }
    return single(candidates.projects, ProjectSelectionError::Case::multipleProjectsFound);
}

} // namespace kelvane
