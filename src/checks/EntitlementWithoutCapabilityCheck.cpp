#include "checks/EntitlementWithoutCapabilityCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/DoctorCheck.h"
#include "checks/EntitlementsReader.h"
#include "diagnostics/JoinLines.h"
#include "model/FilePath.h"
#include "plist/IsoDate.h"
#include "settings/UnicodeLowercase.h"

#include <algorithm>
#include <array>
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

// As built, the entitlements file is the capability: Xcode writes it when a
// capability is turned on. Only a project that itself records a capability
// as off, beside an entitlement that capability governs, gets a reminder.
constexpr std::string_view kBuiltFoundTitle = "Entitlements of Capabilities Turned Off";
constexpr std::string_view kBuiltFoundLead =
    "The project records these capabilities as turned off, yet the targets' entitlements use "
    "them:\n";
constexpr std::string_view kBuiltFoundTrail =
    "\n\nXcode keeps a record of each capability switch in the project and writes the "
    "entitlement when the capability is turned on. A record that says off beside an entitlement "
    "that is present means the two were edited apart: turn the capability on in Signing & "
    "Capabilities if the target uses it, or remove the entitlement if it does not.";
constexpr std::string_view kBuiltLineOff = "' entitlement, but its capability '";
constexpr std::string_view kBuiltLineRecord = "' (";
constexpr std::string_view kBuiltLineTrail = ") is recorded as off";
constexpr std::string_view kRecordKey = "enabled";
constexpr std::string_view kRecordOff = "0";
constexpr std::string_view kRecordOn = "1";
constexpr std::string_view kRecordFile = "project.pbxproj";
constexpr std::string_view kRecordLevel = "target attributes";
// Records may name one platform's variant of a capability, in whatever case
// Xcode wrote it ("com.apple.ApplicationGroups.iOS", "com.apple.HealthKit.watchos").
constexpr std::array<std::string_view, 5> kPlatformSuffixes{"ios", "mac", "macos", "watchos",
                                                            "tvos"};

// A capability the project's records may name, by its name without a
// platform suffix. It governs the entitlements the check's table maps to
// its display name, and the keys listed here that the table does not hold.
// Background Modes and In-App Purchase write no entitlement, so no record of
// theirs can disagree with one.
struct RecordedCapability {
    std::string_view record;
    std::string_view displayName;
    std::array<std::string_view, 2> moreKeys;
};
constexpr std::array kRecordedCapabilities{
    RecordedCapability{"com.apple.ApplicationGroups", "App Groups",
                       {"com.apple.security.application-groups", {}}},
    RecordedCapability{"com.apple.iCloud", "iCloud",
                       {"com.apple.developer.ubiquity-kvstore-identifier",
                        "com.apple.developer.ubiquity-container-identifiers"}},
    RecordedCapability{"com.apple.Push", "Push Notifications",
                       {"com.apple.developer.aps-environment", {}}},
    RecordedCapability{"com.apple.Keychain", "Keychain Sharing", {"keychain-access-groups", {}}},
    RecordedCapability{"com.apple.SafariKeychain", "Associated Domains", {}},
    RecordedCapability{"com.apple.HealthKit", "HealthKit", {}},
    RecordedCapability{"com.apple.HomeKit", "HomeKit", {}},
    RecordedCapability{"com.apple.Siri", "Siri", {}},
    RecordedCapability{"com.apple.ApplePay", "Apple Pay", {}},
    RecordedCapability{"com.apple.GameCenter", "Game Center", {}},
    RecordedCapability{"com.apple.Maps", "Maps", {"com.apple.developer.maps", {}}},
    RecordedCapability{"com.apple.NetworkExtensions", "Network Extensions", {}},
    RecordedCapability{"com.apple.VPNLite", "Personal VPN", {}},
    RecordedCapability{"com.apple.HotspotConfiguration", "Hotspot Configuration",
                       {"com.apple.developer.networking.HotspotConfiguration", {}}},
    RecordedCapability{"com.apple.Wallet", "Wallet",
                       {"com.apple.developer.pass-type-identifiers", {}}},
    RecordedCapability{"com.apple.WAC", "Wireless Accessory Configuration", {}},
};

std::string_view withoutPlatform(std::string_view record) {
    const std::size_t dot = record.rfind('.');
    if (dot == std::string_view::npos) {
        return record;
    }
    const std::string last = lowercasedUnicode(record.substr(dot + 1));
    const bool platform = std::find(kPlatformSuffixes.begin(), kPlatformSuffixes.end(), last) !=
                          kPlatformSuffixes.end();
    return platform ? record.substr(0, dot) : record;
}

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

DoctorIssue noneIssue() {
    return DoctorIssue{std::string(kCheckID),
                       Severity::success,
                       std::string(kNoneTitle),
                       std::string(kNoneDescription),
                       std::string(kNoneImpact),
                       {},
                       {},
                       std::nullopt};
}

DoctorFix verifyFix() {
    return DoctorFix{std::string(kFixSummary),
                     FixSafety::manualOnly,
                     {FixStep{std::string(kFixStep), ManualInstruction{{std::begin(kFixInstructions),
                                                                        std::end(kFixInstructions)}}}},
                     std::nullopt};
}

// The records that say a capability is off, by base name; a capability some
// record of another platform turns on is not off.
std::vector<std::pair<const RecordedCapability*, std::string>> recordsTurnedOff(
    const BuiltFacts& facts) {
    std::vector<std::pair<const RecordedCapability*, std::string>> off;
    for (const RecordedCapability& capability : kRecordedCapabilities) {
        std::optional<std::string> offRecord;
        bool on = false;
        for (const auto& [name, enabled] : facts.systemCapabilities) {
            if (withoutPlatform(name) == capability.record) {
                on = on || enabled;
                if (!enabled && !offRecord) {
                    offRecord = name;
                }
            }
        }
        if (offRecord && !on) {
            off.emplace_back(&capability, *offRecord);
        }
    }
    return off;
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context,
                                        const EntitlementCapabilityMap& entitlementToCapability) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& target : context.targets) {
        const auto off = recordsTurnedOff(*target.built);
        if (off.empty()) {
            continue;
        }
        const plist::Dictionary entitlements = readEntitlements(target);
        for (const auto& [capabilityOff, record] : off) {
            const RecordedCapability& capability = *capabilityOff;
            std::vector<std::string_view> keys;
            for (const auto& [key, displayName] : entitlementToCapability) {
                if (displayName == capability.displayName) {
                    keys.push_back(key);
                }
            }
            for (const std::string_view key : capability.moreKeys) {
                if (!key.empty()) {
                    keys.push_back(key);
                }
            }
            for (const std::string_view key : keys) {
                const plist::Value* value = entitlements.find(key);
                if (value == nullptr) {
                    continue;
                }
                const std::string line = target.name + std::string(kLineHas) + std::string(key) +
                                         std::string(kBuiltLineOff) +
                                         std::string(capability.displayName) +
                                         std::string(kBuiltLineRecord) + record +
                                         std::string(kBuiltLineTrail);
                const EvidenceItem recordEvidence{
                    .source = CapabilitySource{target.name, record},
                    .key = std::string(kRecordKey),
                    .value = std::string(kRecordOff),
                    .expectedValue = std::string(kRecordOn),
                    .origin = SettingOrigin{path::join(target.built->project, kRecordFile), 0,
                                            std::string(kRecordLevel)}};
                findings.push_back(BuiltFinding{
                    .key = line,
                    .line = line,
                    .severity = Severity::warning,
                    .evidence = {recordEvidence,
                                 builtEntitlementEvidence(target, std::string(key),
                                                          renderValue(*value))},
                    .targets = {makeTargetRef(target)},
                    .steps = {}});
            }
        }
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context,
                                      const EntitlementCapabilityMap& entitlementToCapability) {
    const std::vector<MergedFinding> findings =
        findAcrossConfigurations(context, [&](const ProjectContext& configuration) {
            return builtFindings(configuration, entitlementToCapability);
        });
    if (findings.empty()) {
        return noneIssue();
    }
    return builtIssue(std::string(kCheckID), std::string(kBuiltFoundTitle),
                      std::string(kBuiltFoundLead), findings, std::string(kBuiltFoundTrail),
                      std::string(kFoundImpact), verifyFix());
}

} // namespace

std::optional<DoctorIssue>
EntitlementWithoutCapabilityCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context, entitlementToCapability);
    }
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
        return noneIssue();
    }

    return DoctorIssue{
        std::string(kCheckID),
        Severity::warning,
        std::string(kFoundTitle),
        std::string(kFoundLead) + joinLines(lines) + std::string(kFoundTrail),
        std::string(kFoundImpact),
        std::move(evidence),
        std::move(affected),
        verifyFix()};
}

static_assert(DoctorCheck<EntitlementWithoutCapabilityCheck>);

} // namespace kelvane
