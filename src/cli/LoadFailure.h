#pragma once

#include <exception>
#include <ostream>

namespace kelvane::cli {

// Writes "kelvane: <description>" for a project that could not be selected or
// loaded and returns the exit status for it. The description is the error's
// own text: parser errors, unreadable files and malformed property lists all
// carry their user-facing text in what().
int reportLoadFailure(const std::exception& error, std::ostream& err);

} // namespace kelvane::cli
