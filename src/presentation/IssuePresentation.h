#pragma once

#include "diagnostics/DoctorFix.h"
#include "diagnostics/EvidenceItem.h"
#include "diagnostics/FixAction.h"
#include "diagnostics/FixSafety.h"
#include "diagnostics/Severity.h"
#include "diagnostics/TargetRef.h"
#include "presentation/ScanPresentation.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The words and symbols of one issue's detail and its fix, as plain values.
namespace kelvane::presentation {

struct Badge {
    std::string_view symbol{};
    std::string_view text{};
    Tone tone = Tone::muted;
    friend bool operator==(const Badge&, const Badge&) = default;
};

// "ERROR" with xmark.circle.fill, and so on.
[[nodiscard]] Badge severityBadge(Severity severity) noexcept;
// "SAFE", "REQUIRES REVIEW" or "MANUAL ONLY" with its shield or hand.
[[nodiscard]] Badge safetyBadge(FixSafety safety) noexcept;

// "Step 2: Update Build Setting"; `number` counts from 1.
[[nodiscard]] std::string fixStepTitle(std::size_t number, const FixAction& action);

struct LabelledRow {
    std::string_view label{};
    std::string value{};
    friend bool operator==(const LabelledRow&, const LabelledRow&) = default;
};

// The payload of an action under the labels "Target:", "Framework:",
// "Config:", "Setting:", "File:" and "Value:". A key and its new value read
// together as one value ("KEY = value"). Manual instructions have no rows:
// their texts are listed as they are (manualInstructions).
[[nodiscard]] std::vector<LabelledRow> fixActionRows(const FixAction& action);
[[nodiscard]] std::vector<std::string> manualInstructions(const FixAction& action);
// An entitlement value as it would be written: YES/NO, the text, or the
// texts in brackets.
[[nodiscard]] std::string entitlementValueText(const EntitlementValue& value);

// "Expected: " and the expected value, when the evidence knows one.
[[nodiscard]] std::optional<std::string> expectedValueText(const EvidenceItem& item);
// "3 target(s)".
[[nodiscard]] std::string affectedTargetsText(std::size_t count);

// A short list of target names for one line: "App", "App, Widget", then
// "App, Widget and 3 more" past `shown` names.
[[nodiscard]] std::string shortTargetList(const std::vector<TargetRef>& targets,
                                          std::size_t shown = 2);

// What the apply control of a fix says and the dialog that guards it; a
// manual-only fix has neither.
struct ApplyConfirmation {
    std::string_view buttonLabel{};
    std::string_view dialogTitle{};
    std::string_view dialogMessage{};
    std::string_view confirmLabel{};
    std::string_view cancelLabel{};
    friend bool operator==(const ApplyConfirmation&, const ApplyConfirmation&) = default;
};

[[nodiscard]] std::optional<ApplyConfirmation> applyConfirmation(FixSafety safety) noexcept;

// The "How this works" paragraph of a fix: what the safety class asks of the
// user.
[[nodiscard]] std::string_view howThisWorksText(FixSafety safety) noexcept;

inline constexpr std::string_view kApplyingLabel = "Applying...";
inline constexpr std::string_view kManualStepsLabel = "Manual steps required";
// Written to standard output, followed by the error's text.
inline constexpr std::string_view kFixFailedPrefix = "Fix failed: ";

} // namespace kelvane::presentation
