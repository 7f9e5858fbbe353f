#pragma once

#include "settings/Assignment.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvane::settings {

// What one .xcconfig file contributes, with its includes inlined at their
// lines, in the order Xcode pushes the assignments (the last one wins).
struct XcconfigContents {
    std::vector<Assignment> assignments;
    // What a developer would want to hear about, one line each, as
    // "<file>:<line>: <what>": include cycles, malformed lines, bounds hit.
    std::vector<std::string> notes;
    friend bool operator==(const XcconfigContents&, const XcconfigContents&) = default;
};

// Reads the .xcconfig at `path`. `level` is written into every origin
// ("project xcconfig" or "target xcconfig"); `projectDir` is the last folder
// a relative include is looked up in. Never throws for what lies on disk: a
// missing, unreadable or non-regular file (folder, FIFO, device), here or
// as a required or optional include, becomes one placeholder assignment with
// the reason; a missing file under `Pods/Target Support Files/` spares
// identity settings. Include depth, the number of assignments and the bytes
// read are bounded; past a bound the rest is a note and a placeholder.
[[nodiscard]] XcconfigContents readXcconfig(const std::string& path, const std::string& level,
                                            const std::string& projectDir);

// The same over text already in memory, which `path` names in origins and
// from which relative includes are resolved.
[[nodiscard]] XcconfigContents parseXcconfig(std::string_view text, const std::string& path,
                                             const std::string& level,
                                             const std::string& projectDir);

} // namespace kelvane::settings
