#include "presentation/IssuePresentation.h"

#include "diagnostics/Overloaded.h"

#include <algorithm>
#include <variant>

namespace kelvane::presentation {

namespace {

constexpr std::string_view kStepPrefix = "Step ";
constexpr std::string_view kTargetsSuffix = " target(s)";
constexpr std::string_view kExpectedPrefix = "Expected: ";

constexpr std::string_view kTargetLabel = "Target:";
constexpr std::string_view kFrameworkLabel = "Framework:";
constexpr std::string_view kConfigLabel = "Config:";
constexpr std::string_view kSettingLabel = "Setting:";
constexpr std::string_view kFileLabel = "File:";
constexpr std::string_view kValueLabel = "Value:";
// No check proposes scheme changes yet; the label follows the others.
constexpr std::string_view kSchemeLabel = "Scheme:";

std::string keyAndValue(std::string_view key, std::string_view value) {
    return std::string(key) + " = " + std::string(value);
}

} // namespace

Badge severityBadge(Severity severity) noexcept {
    switch (severity) {
    case Severity::error:
        return {"xmark.circle.fill", "ERROR", Tone::failure};
    case Severity::warning:
        return {"exclamationmark.triangle.fill", "WARNING", Tone::warning};
    case Severity::success:
        break;
    }
    return {"checkmark.circle.fill", "SUCCESS", Tone::success};
}

Badge safetyBadge(FixSafety safety) noexcept {
    switch (safety) {
    case FixSafety::safeAuto:
        return {"checkmark.shield.fill", "SAFE", Tone::success};
    case FixSafety::requiresConfirmation:
        return {"exclamationmark.shield.fill", "REQUIRES REVIEW", Tone::warning};
    case FixSafety::manualOnly:
        break;
    }
    return {"hand.raised.fill", "MANUAL ONLY", Tone::muted};
}

std::string fixStepTitle(std::size_t number, const FixAction& action) {
    const std::string_view suffix = std::visit(
        Overloaded{
            [](const UpdatePlistKey&) { return std::string_view(": Update Info.plist"); },
            [](const SetBuildSetting&) { return std::string_view(": Update Build Setting"); },
            [](const UpdateEntitlement&) { return std::string_view(": Update Entitlements"); },
            [](const UpdateSchemeSetting&) { return std::string_view(": Update Scheme"); },
            [](const AddFrameworkReference&) { return std::string_view(": Link Framework"); },
            [](const ManualInstruction&) { return std::string_view(": Manual Instructions"); },
        },
        action);
    return std::string(kStepPrefix) + std::to_string(number) + std::string(suffix);
}

std::string entitlementValueText(const EntitlementValue& value) {
    return std::visit(Overloaded{
                          [](bool flag) { return std::string(flag ? "YES" : "NO"); },
                          [](const std::string& text) { return text; },
                          [](const std::vector<std::string>& texts) {
                              std::string joined = "[";
                              for (const std::string& text : texts) {
                                  if (joined.size() > 1) {
                                      joined += ", ";
                                  }
                                  joined += text;
                              }
                              return joined + "]";
                          },
                      },
                      value.value);
}

std::vector<LabelledRow> fixActionRows(const FixAction& action) {
    return std::visit(
        Overloaded{
            [](const UpdatePlistKey& a) {
                return std::vector<LabelledRow>{{kTargetLabel, a.targetName},
                                                {kFileLabel, a.fileName},
                                                {kValueLabel, keyAndValue(a.key, a.newValue)}};
            },
            [](const SetBuildSetting& a) {
                std::vector<LabelledRow> rows;
                // Without a target the setting is the project's own.
                if (a.targetName) {
                    rows.push_back({kTargetLabel, *a.targetName});
                }
                rows.push_back({kConfigLabel, a.configName});
                rows.push_back({kSettingLabel, a.settingName});
                rows.push_back({kValueLabel, a.value});
                return rows;
            },
            [](const UpdateEntitlement& a) {
                return std::vector<LabelledRow>{
                    {kTargetLabel, a.targetName},
                    {kFileLabel, a.fileName},
                    {kValueLabel, keyAndValue(a.key, entitlementValueText(a.newValue))}};
            },
            [](const UpdateSchemeSetting& a) {
                return std::vector<LabelledRow>{{kSchemeLabel, a.schemeName},
                                                {kConfigLabel, a.buildConfiguration}};
            },
            [](const AddFrameworkReference& a) {
                return std::vector<LabelledRow>{{kTargetLabel, a.targetName},
                                                {kFrameworkLabel, a.frameworkName}};
            },
            [](const ManualInstruction&) { return std::vector<LabelledRow>{}; },
        },
        action);
}

std::vector<std::string> manualInstructions(const FixAction& action) {
    if (const auto* manual = std::get_if<ManualInstruction>(&action)) {
        return manual->steps;
    }
    return {};
}

std::optional<std::string> expectedValueText(const EvidenceItem& item) {
    if (!item.expectedValue) {
        return std::nullopt;
    }
    return std::string(kExpectedPrefix) + *item.expectedValue;
}

std::string affectedTargetsText(std::size_t count) {
    return std::to_string(count) + std::string(kTargetsSuffix);
}

std::string shortTargetList(const std::vector<TargetRef>& targets, std::size_t shown) {
    std::string text;
    const std::size_t named = std::min(targets.size(), std::max<std::size_t>(shown, 1));
    for (std::size_t index = 0; index < named; ++index) {
        if (index > 0) {
            text += ", ";
        }
        text += targets[index].name;
    }
    if (targets.size() > named) {
        text += " and " + std::to_string(targets.size() - named) + " more";
    }
    return text;
}

std::optional<ApplyConfirmation> applyConfirmation(FixSafety safety) noexcept {
    switch (safety) {
    case FixSafety::safeAuto:
        return ApplyConfirmation{.buttonLabel = "Apply Fix",
                                 .dialogTitle = "Apply Fix",
                                 .dialogMessage = "This will safely modify your project files.",
                                 .confirmLabel = "Apply Fix",
                                 .cancelLabel = "Cancel"};
    case FixSafety::requiresConfirmation:
        return ApplyConfirmation{.buttonLabel = "Preview & Apply",
                                 .dialogTitle = "Review Changes",
                                 .dialogMessage = "Review the changes above before applying.",
                                 .confirmLabel = "Apply Changes",
                                 .cancelLabel = "Cancel"};
    case FixSafety::manualOnly:
        break;
    }
    return std::nullopt;
}

std::string_view howThisWorksText(FixSafety safety) noexcept {
    switch (safety) {
    case FixSafety::safeAuto:
        return "Each step changes only the value it names, and nothing else in the project "
               "depends on the old value, so the fix can be applied as it stands.";
    case FixSafety::requiresConfirmation:
        return "The steps change identifiers or settings that other targets, profiles or "
               "services may rely on. Read each step before applying, then scan again to "
               "confirm the result.";
    case FixSafety::manualOnly:
        break;
    }
    return "These steps need choices only you can make, such as which team or group is the "
           "right one. Follow them in Xcode, then scan again.";
}

} // namespace kelvane::presentation
