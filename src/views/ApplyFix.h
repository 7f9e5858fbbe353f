#pragma once

#include "diagnostics/DoctorIssue.h"

#include <functional>
#include <optional>
#include <string>

namespace kelvane::views {

// Applies an issue's fix and later calls `done` once: with nothing when it
// worked, with the error's text when it failed. The owner of the screens
// decides what applying means; the views only show that it is under way.
using FixDone = std::function<void(std::optional<std::string> failure)>;
using ApplyFix = std::function<void(const DoctorIssue& issue, FixDone done)>;

} // namespace kelvane::views
