#pragma once

#include <string>
#include <vector>

namespace kelvane {

// A project or workspace bundle found beneath a folder.
struct FolderProject {
    // Joined lexically onto the folder as given ("." adds nothing).
    std::string path;
    // Relative to the folder, as the user is shown it.
    std::string relative;

    friend bool operator==(const FolderProject&, const FolderProject&) = default;
};

// The projects a developer means by `path`, as `xcodebuild` and Xcode see a
// checkout rather than as the window's picker walks it. A project or
// workspace bundle, or anything that is not a folder, is taken as
// resolveSelection takes it: a list of that one path, or its error.
//
// In a folder: every .xcodeproj and .xcworkspace that is not inside another
// bundle (so never a project's own project.xcworkspace), outside hidden
// folders and the folders dependency managers and builds fill (Pods,
// Carthage, DerivedData, node_modules, build), at most 16 folders deep,
// without following links. A workspace stands for the projects it lists,
// which then are not candidates of their own; one that lists no project
// (a package's) stands aside for any other candidate. Walk order: depth
// first, each folder's entries by ascending byte order of their names.
//
// `excluded` names folders (or bundles) relative to `path` that the walk
// passes over, as a repository's configuration asks.
//
// Throws ProjectSelectionError with the window's texts: pathDoesNotExist,
// invalidSelection, cannotEnumerateFolder, noProjectsFound.
[[nodiscard]] std::vector<FolderProject> repositoryProjects(
    const std::string& path, const std::vector<std::string>& excluded = {});

// The single project of repositoryProjects(path, excluded), or
// AmbiguousFolderError naming every candidate.
[[nodiscard]] std::string resolveRepositoryProject(const std::string& path,
                                                   const std::vector<std::string>& excluded = {});

} // namespace kelvane
