#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kelvane {

// Calls `visit` with the name of every entry of `folder` (except "." and "..")
// and whether that entry is a folder itself; a symbolic link is never one,
// whatever it points to. Entries come in the file system's own order. Returns
// false when the folder cannot be opened; an error part way through ends the
// listing quietly.
bool forEachFolderEntry(const std::string& folder,
                        const std::function<void(std::string_view name, bool isFolder)>& visit);

} // namespace kelvane
