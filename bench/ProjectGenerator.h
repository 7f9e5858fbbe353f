#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace kelvane::bench {

// A project.pbxproj of about `approxBytes` (never much less, at most one
// target's worth more) laid out as Xcode writes it: the encoding line,
// "/* Begin ... section */" blocks in Xcode's order, 24-digit ids with their
// "/* comment */", targets of every product type with hundreds of files each,
// and build configurations of some forty settings. Names with blanks, quotes
// and non-ASCII letters appear here and there, so quoted strings and escapes
// are exercised too. The same size always gives the same text.
[[nodiscard]] std::string generateProject(std::size_t approxBytes);

// Writes generateProject(approxBytes) as `xcodeproj`/project.pbxproj,
// creating the folders; `xcodeproj` should end in ".xcodeproj".
void writeProject(const std::filesystem::path& xcodeproj, std::size_t approxBytes);

} // namespace kelvane::bench
