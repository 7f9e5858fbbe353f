#pragma once

#include <string>

namespace kelvane {

// The path to scan for what the user chose: a project or workspace bundle as
// it is (by its name alone, without looking inside), or the single candidate
// beneath a chosen folder. A trailing "/" is dropped first. Throws
// ProjectSelectionError.
[[nodiscard]] std::string resolveSelection(const std::string& path);

// The single workspace beneath `folder` or, when there is none, the single
// project. The walk is depth-first, pre-order, each folder's entries in
// ascending byte order of their names; it skips hidden entries with everything
// beneath them, does not follow symbolic links, and does descend into bundles,
// so a project's own project.xcworkspace is a workspace candidate. Paths are
// joined lexically onto `folder`. Throws ProjectSelectionError.
[[nodiscard]] std::string findProject(const std::string& folder);

} // namespace kelvane
