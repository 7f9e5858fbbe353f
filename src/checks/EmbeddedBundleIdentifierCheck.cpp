#include "checks/EmbeddedBundleIdentifierCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "diagnostics/JoinLines.h"

#include <map>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "embedded.bundle.identifier.duplicate";

constexpr const char* kUniqueTitle = "Bundle IDs Unique Inside Each App";
constexpr const char* kUniqueDescription =
    "Every bundle inside an app, the app included, has a bundle identifier of its own.";
constexpr const char* kUniqueImpact = "No duplicate-identifier rejection expected on upload.";

constexpr const char* kDuplicateTitle = "Duplicate Bundle ID Inside an App";
constexpr const char* kDuplicateHead = "Bundles that end up inside one app share an identifier:\n";
constexpr const char* kDuplicateTail =
    "\n\nEvery bundle in an app's package (extensions, widgets, frameworks, watch content, App "
    "Clip) must have a unique CFBundleIdentifier; App Store validation rejects the upload "
    "otherwise, and the system may load the wrong bundle.";
constexpr const char* kDuplicateImpact =
    "The archive fails App Store validation; on a device, one bundle can shadow the other.";
constexpr const char* kFixSummary = "Give each embedded bundle its own identifier";
constexpr const char* kFixStep = "Give each bundle listed its own identifier";
constexpr const char* kFixManual =
    "Set a unique PRODUCT_BUNDLE_IDENTIFIER on each, under the app's id (app id + \".\" + a "
    "name)";

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const ShippingUnit& unit : shippingUnits(context)) {
        std::vector<const TargetContext*> bundles{unit.app};
        bundles.insert(bundles.end(), unit.content.begin(), unit.content.end());
        std::map<std::string, std::vector<const TargetContext*>> byID;
        for (const TargetContext* bundle : bundles) {
            if (bundle->bundleIdentifier) {
                byID[*bundle->bundleIdentifier].push_back(bundle);
            }
        }
        for (const auto& [id, sharing] : byID) {
            if (sharing.size() < 2) {
                continue;
            }
            std::vector<std::string> names;
            BuiltFinding finding;
            for (const TargetContext* bundle : sharing) {
                names.push_back(bundle->name);
                finding.evidence.push_back(builtSettingEvidence(*bundle, "PRODUCT_BUNDLE_IDENTIFIER"));
                finding.targets.push_back(makeTargetRef(*bundle));
            }
            finding.line = "Inside " + unit.app->name + ": " + join(names, ", ") + " are all " + id;
            finding.key = finding.line;
            finding.severity = Severity::error;
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

} // namespace

std::string EmbeddedBundleIdentifierCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> EmbeddedBundleIdentifierCheck::run(const ProjectContext& context) const {
    return runAsBuiltOnly(context,
                          BuiltCheckTexts{kCheckID, kUniqueTitle, kUniqueDescription, kUniqueImpact, kDuplicateTitle, kDuplicateHead, kDuplicateTail, kDuplicateImpact,
                                          DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::manualOnly,
                                .steps = {FixStep{kFixStep, ManualInstruction{{kFixManual}}}},
                                .warningMessage = {}}},
                          builtFindings);
}

} // namespace kelvane
