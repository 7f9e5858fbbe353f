#pragma once

#include "diagnostics/DoctorFix.h"
#include "diagnostics/EvidenceItem.h"
#include "diagnostics/TargetRef.h"
#include "model/TargetContext.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Pieces several checks build their issues from, kept here so that every
// check words and shapes them the same way.
namespace kelvane {

// Evidence about a build setting always names the "Debug" configuration,
// whichever configuration the parser read; fixes that change a build setting
// always name "All Configurations". The two labels differ on purpose.
inline constexpr std::string_view kEvidenceConfiguration = "Debug";
inline constexpr std::string_view kFixConfiguration = "All Configurations";

// A build setting of `targetName` as read, under the "Debug" label.
[[nodiscard]] EvidenceItem buildSettingEvidence(std::string targetName, std::string key,
                                                std::string value,
                                                std::optional<std::string> expectedValue = {});

// A step that sets a target's build setting in "All Configurations".
[[nodiscard]] FixStep setBuildSettingStep(std::string description, std::string targetName,
                                          std::string settingName, std::string value);

// The targets' names joined by ", ", as issue texts list them.
[[nodiscard]] std::string joinNames(const std::vector<TargetContext>& targets);

// One TargetRef per target, in the same order.
[[nodiscard]] std::vector<TargetRef> makeTargetRefs(const std::vector<TargetContext>& targets);

} // namespace kelvane
