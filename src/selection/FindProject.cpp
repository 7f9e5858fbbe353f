#include "model/FilePath.h"
#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <system_error>
#include <vector>

namespace kelvane {
namespace {

namespace fs = std::filesystem;

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
// order is the same on every file system.
std::vector<PendingEntry> readFolder(const std::string& folder, fs::directory_iterator entries) {
    struct Named {
        std::string name;
        bool isFolder;
    };
    std::vector<Named> found;
    std::error_code error;
    for (const fs::directory_iterator end; entries != end; entries.increment(error)) {
        if (error) {
            break;
        }
        // The entry already holds "<folder>/<name>"; slice the name out of it
        // rather than build another path object.
        const std::string& full = entries->path().native();
        const std::string_view name = std::string_view(full).substr(full.rfind('/') + 1);
        if (name.empty() || name.front() == '.') {
            continue;
        }
        // Both answers come from the type the folder listing reported, without a
        // further call to the file system. A link is never descended, so links
        // to ancestors cannot make the walk go round.
        const bool isFolder =
            !entries->is_symlink(error) && !error && entries->is_directory(error) && !error;
        error.clear();
        if (isFolder || isWorkspace(name) || isProject(name)) {
            found.push_back({std::string(name), isFolder});
        }
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
// call stack.
Candidates walk(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator top(fs::path(folder), error);
    if (error) {
        throw ProjectSelectionError(ProjectSelectionError::Case::cannotEnumerateFolder);
    }

    Candidates candidates;
    std::vector<PendingEntry> stack;
    pushInReverse(stack, readFolder(folder, std::move(top)));
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
        fs::directory_iterator inner(fs::path(entry.path), error);
        if (error) {
            error.clear();
            continue;
        }
        pushInReverse(stack, readFolder(entry.path, std::move(inner)));
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
