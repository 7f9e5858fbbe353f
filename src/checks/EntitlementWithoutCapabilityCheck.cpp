#include "checks/EntitlementWithoutCapabilityCheck.h"

#include "checks/DoctorCheck.h"
#include "checks/EntitlementsReader.h"
#include "diagnostics/JoinLines.h"
#include "plist/IsoDate.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>
#include <utility>

namespace kelvane {

namespace {

constexpr std::string_view kCheckID = "entitlement.without.capability";
// Evidence names the file by this word, not by its real name.
constexpr std::string_view kEvidenceFileName = "Entitlements";

constexpr std::string_view kNoneTitle = "No Capability-Requiring Entitlements";
constexpr std::string_view kNoneDescription = "This project does not use entitlements that require "
                                              "specific capabilities to be enabled.";
constexpr std::string_view kNoneImpact = "No capability-entitlement mismatches detected.";

constexpr std::string_view kFoundTitle = "Entitlements May Require Capabilities";
constexpr std::string_view kFoundLead = "Detected entitlements that typically require "
                                        "corresponding capabilities to be enabled in Xcode.\n\n"
                                        "Entitlements found:\n";
constexpr std::string_view kFoundTrail =
    "\n\nIMPORTANT: This check detects entitlement presence only.\n"
    "• If these capabilities are already enabled in your Xcode project, you can ignore this "
    "warning\n"
    "• If capabilities are NOT enabled, your app may build successfully but fail at runtime\n"
    "• Verify in Xcode: Target → Signing & Capabilities\n\n"
    "Note: Kelvane cannot read .pbxproj capability flags directly (they're in a complex "
    "format).\n"
    "This is a heuristic check to remind you to verify capability configuration.";
constexpr std::string_view kFoundImpact =
    "If capabilities are not enabled in Xcode, the app may build successfully but fail silently "
    "at runtime when trying to use these features.";

constexpr std::string_view kLineHas = " has '";
constexpr std::string_view kLineRequires = "' entitlement (requires '";
constexpr std::string_view kLineTrail = "' capability)";

constexpr std::string_view kFixSummary = "Verify Capabilities in Xcode";
constexpr std::string_view kFixStep = "Verify capabilities are enabled in Xcode project";
constexpr std::string_view kFixInstructions[] = {
    "Open project in Xcode",
    "Select each affected target",
    "Go to Signing & Capabilities tab",
    "Ensure required capabilities are added",
    "If capability is missing, click '+ Capability' to add it",
};

// "[2 items]" and the like.
std::string counted(char open, std::size_t count, std::string_view noun, char close) {
    std::string text(1, open);
    text += std::to_string(count);
    text += ' ';
    text += noun;
    text += close;
    return text;
}

// How evidence shows an entitlement's value.
std::string renderValue(const plist::Value& value) {
    switch (value.kind()) {
    case plist::Value::Kind::string:
        return *value.asString();
    case plist::Value::Kind::array:
        return counted('[', value.asArray()->size(), "items", ']');
    case plist::Value::Kind::boolean:
        return *value.asBoolean() ? "true" : "false";
    case plist::Value::Kind::integer:
        return std::to_string(*value.asInteger());
    case plist::Value::Kind::real: {
        char text[64];
        const auto end = std::to_chars(text, text + sizeof text, *value.asReal()).ptr;
        return std::string(text, end);
    }
    case plist::Value::Kind::date:
        return plist::formatIsoDate(*value.asDate());
    case plist::Value::Kind::data:
        return counted('<', value.asData()->size(), "bytes", '>');
    case plist::Value::Kind::dictionary:
        return counted('{', value.asDictionary()->size(), "keys", '}');
    }
    return {};
}

} // namespace

std::optional<DoctorIssue>
EntitlementWithoutCapabilityCheck::run(const ProjectContext& context) const {
    std::vector<std::string> lines;
    std::vector<EvidenceItem> evidence;
    std::vector<TargetRef> affected;

    for (const TargetContext& target : context.targets) {
        const plist::Dictionary entitlements = readEntitlements(target);
        if (entitlements.empty()) {
            continue;
        }
        for (const auto& [key, capability] : entitlementToCapability) {
            const plist::Value* value = entitlements.find(key);
            if (value == nullptr) {
                continue;
            }
            lines.push_back(target.name + std::string(kLineHas) + key + std::string(kLineRequires) +
                            capability + std::string(kLineTrail));
            evidence.push_back(
                EvidenceItem{EntitlementsSource{target.name, std::string(kEvidenceFileName)}, key,
                             renderValue(*value), std::nullopt});
            // Targets that share a name are one target to the reader.
            const bool listed =
                std::any_of(affected.begin(), affected.end(),
                            [&](const TargetRef& ref) { return ref.name == target.name; });
            if (!listed) {
                affected.push_back(makeTargetRef(target));
            }
        }
    }

    if (lines.empty()) {
        return DoctorIssue{std::string(kCheckID),
                           Severity::success,
                           std::string(kNoneTitle),
                           std::string(kNoneDescription),
                           std::string(kNoneImpact),
                           {},
                           {},
                           std::nullopt};
    }

    return DoctorIssue{
        std::string(kCheckID),
        Severity::warning,
        std::string(kFoundTitle),
        std::string(kFoundLead) + joinLines(lines) + std::string(kFoundTrail),
        std::string(kFoundImpact),
        std::move(evidence),
        std::move(affected),
        DoctorFix{std::string(kFixSummary),
                  FixSafety::manualOnly,
                  {FixStep{std::string(kFixStep), ManualInstruction{{std::begin(kFixInstructions),
                                                                     std::end(kFixInstructions)}}}},
                  std::nullopt}};
}

static_assert(DoctorCheck<EntitlementWithoutCapabilityCheck>);

} // namespace kelvane
