#pragma once

#include <ostream>

namespace kelvane::cli {

// Where a command writes and what it leaves for the process to exit with.
// Commands never touch std::cout or std::cerr themselves, so tests can hand
// them string streams.
struct CommandIO {
    std::ostream& out;
    std::ostream& err;
    int exitStatus = 0;
};

// Exit statuses shared by every command.
inline constexpr int kExitClean = 0;
inline constexpr int kExitFindings = 1;
inline constexpr int kExitNotLoaded = 2;

} // namespace kelvane::cli
