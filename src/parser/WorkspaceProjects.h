#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Every .xcodeproj a workspace lists, in its order, as Xcode locates them:
// `group:` paths are relative to their enclosing groups (and the
// workspace's folder), `container:` to the workspace's folder, `absolute:`
// as written; `self:` (the project a workspace sits in) names none.
// Groups nest at most 64 deep; deeper ones are ignored.
// Throws ParserError (workspaceParsingFailed) when the data file is missing
// or is not well-formed XML, and plist::FileReadError when it cannot be read.
[[nodiscard]] std::vector<std::string> workspaceProjects(const std::string& workspaceURL);

// The same over the text of a contents.xcworkspacedata; paths are joined
// onto `workspaceFolder`.
[[nodiscard]] std::vector<std::string> workspaceProjectsIn(std::string_view xml,
                                                           const std::string& workspaceFolder);

} // namespace kelvane
