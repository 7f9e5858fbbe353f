#pragma once

#include "scanner/CheckProgress.h"
#include "scanner/ProjectScanResult.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelvane {

// The one value every screen is drawn from. Each payload carries its case
// name as `kind`, as the other enumerations with payloads do.

struct IdleState {
    static constexpr std::string_view kind = "idle";
    friend bool operator==(const IdleState&, const IdleState&) = default;
};

struct ScanningState {
    static constexpr std::string_view kind = "scanning";
    std::string projectPath{};
    std::vector<CheckProgress> checkProgress{};
    friend bool operator==(const ScanningState&, const ScanningState&) = default;
};

struct CompletedState {
    static constexpr std::string_view kind = "completed";
    ProjectScanResult result{};
    friend bool operator==(const CompletedState&, const CompletedState&) = default;
};

struct ErrorState {
    static constexpr std::string_view kind = "error";
    // Shown to the user as it is.
    std::string message{};
    friend bool operator==(const ErrorState&, const ErrorState&) = default;
};

// Case order is the variant's index order.
using ScanState = std::variant<IdleState, ScanningState, CompletedState, ErrorState>;

} // namespace kelvane
