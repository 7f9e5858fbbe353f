#include "checks/DeploymentTargetMismatchCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>
#include <vector>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "deployment.target.mismatch";

constexpr const char* kNoneTitle = "No Deployment Targets Configured";
constexpr const char* kNoneDescription =
    "No deployment targets were found in the project configuration.";
constexpr const char* kNoneImpact = "Deployment target validation is not applicable.";

constexpr const char* kSingleTitle = "Single Target Project";
constexpr const char* kSingleDescription =
    "This project has only one target with deployment configuration.";
constexpr const char* kSingleImpact = "Deployment target consistency checks are not applicable.";

constexpr const char* kCompatibleTitle = "Deployment Targets Consistent";
constexpr const char* kCompatibleDescription =
    "All targets have compatible deployment target configurations.";
constexpr const char* kCompatibleImpact = "No deployment-related runtime issues expected.";

constexpr const char* kMismatchTitle = "Deployment Target Mismatch";
constexpr const char* kMismatchDescriptionHead =
    "Deployment target mismatches detected between app and extensions.\n\nIssues found:\n";
constexpr const char* kMismatchDescriptionTail =
    "\n\nExtension targets should have deployment targets equal to or higher than the main "
    "app.\n\n"
    "Common problems:\n"
    "• Extension has iOS 16, app has iOS 17 → extension won't appear on iOS 17+ devices\n"
    "• Watch app has watchOS 9, iOS app has iOS 16 → compatibility issues\n"
    "• Widget has lower deployment target → widget may crash on newer OS versions";
constexpr const char* kMismatchImpact =
    "Mismatched deployment targets can cause runtime crashes, extensions not appearing, and "
    "widgets showing empty states on certain OS versions.";
constexpr const char* kFixSummary = "Align Deployment Targets";
constexpr const char* kFixWarning =
    "Changing deployment targets may affect API availability and device compatibility.";

constexpr const char* kSameTitle = "Deployment Targets Consistent";
constexpr const char* kSameDescriptionHead = "All targets use the same deployment target: ";
constexpr const char* kSameImpact = "No deployment-related issues expected.";
constexpr const char* kUnknownDeploymentTarget = "unknown";

constexpr const char* kDifferentTitle = "Multiple Deployment Targets";
constexpr const char* kDifferentDescriptionHead = "Targets use different deployment targets: ";
constexpr const char* kDifferentDescriptionTail =
    "\n\nThis may be intentional, but ensure compatibility between targets.";
constexpr const char* kDifferentImpact =
    "Different deployment targets may cause compatibility issues.";

// Evidence names the setting generically; the fix always writes the iOS
// setting, whatever the target's platform.
constexpr const char* kEvidenceKey = "DEPLOYMENT_TARGET";
constexpr const char* kFixSetting = "IPHONEOS_DEPLOYMENT_TARGET";

// As built, content is compared with the app that embeds it, on one
// platform: only content that needs a newer OS than its host loses users.
constexpr const char* kBuiltCompatibleDescription =
    "No extension, widget or other embedded content needs a newer OS than the app that embeds "
    "it.";
constexpr const char* kBuiltMismatchTail =
    "\n\nThe app installs on every system its own deployment target allows, but the system "
    "leaves out content that needs a newer one: on the versions in between, the extension, "
    "widget or App Clip does not appear. Content with a lower deployment target than its host "
    "is harmless and not listed.";
constexpr const char* kBuiltMismatchImpact =
    "Users on the older systems the app supports do not get the content that needs a newer one, "
    "with no message telling them why.";
constexpr const char* kBuiltNeeds = " needs ";
constexpr const char* kBuiltHostNeeds = ", but its host ";
constexpr const char* kBuiltHostTrail = " runs on ";
constexpr const char* kBuiltFixStep = " deployment target to ";
// Each platform's setting ends so; a target records only its own platform's.
constexpr std::string_view kDeploymentSettingSuffix = "_DEPLOYMENT_TARGET";

struct Configured {
    const TargetContext* target;
    std::string deploymentTarget;
};

// A piece is a number when it is an optional sign and digits only, within
// 64 bits; anything else ("beta", "$(VERSION)", overflow) is no number.
std::optional<std::int64_t> parseNumber(std::string_view piece) {
    if (!piece.empty() && piece.front() == '+') {
        piece.remove_prefix(1);
        if (!piece.empty() && piece.front() == '-') {
            return std::nullopt;
        }
    }
    if (piece.empty()) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const char* end = piece.data() + piece.size();
    const auto [stop, error] = std::from_chars(piece.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::vector<std::int64_t> versionNumbers(std::string_view text) {
    std::vector<std::int64_t> numbers;
    while (true) {
        const auto dot = text.find('.');
        if (const auto number = parseNumber(text.substr(0, dot))) {
            numbers.push_back(*number);
        }
        if (dot == std::string_view::npos) {
            return numbers;
        }
        text.remove_prefix(dot + 1);
    }
}

DoctorIssue issue(Severity severity, const char* title, std::string description, const char* impact,
                  std::vector<TargetRef> affected = {}) {
    return DoctorIssue{.id = kCheckID,
                       .severity = severity,
                       .title = title,
                       .description = std::move(description),
                       .impact = impact,
                       .affectedTargets = std::move(affected)};
}

// No main app with a deployment target to compare against: only whether
// the targets agree among themselves is reported.
DoctorIssue agreementIssue(const std::vector<Configured>& configured) {
    std::set<std::string> distinct;
    std::vector<TargetRef> affected;
    for (const auto& entry : configured) {
        distinct.insert(entry.deploymentTarget);
        affected.push_back(makeTargetRef(*entry.target));
    }
    if (distinct.size() <= 1) {
        const std::string text = distinct.empty() ? kUnknownDeploymentTarget : *distinct.begin();
        return issue(Severity::success, kSameTitle, kSameDescriptionHead + text, kSameImpact,
                     std::move(affected));
    }
    // std::set orders by code point, not by version: "9.0" follows "17.0".
    const std::vector<std::string> texts(distinct.begin(), distinct.end());
    return issue(Severity::warning, kDifferentTitle,
                 kDifferentDescriptionHead + join(texts, ", ") + kDifferentDescriptionTail,
                 kDifferentImpact, std::move(affected));
}

// Versions as the system compares them: missing pieces count as zero, so
// "16" and "16.0" are one version.
bool needsNewerThan(std::string_view content, std::string_view host) {
    std::vector<std::int64_t> left = versionNumbers(content);
    std::vector<std::int64_t> right = versionNumbers(host);
    if (left.empty() || right.empty()) {
        return false;
    }
    const std::size_t length = std::max(left.size(), right.size());
    left.resize(length, 0);
    right.resize(length, 0);
    return right < left;
}

// The deployment target setting a target's own platform reads.
std::string_view ownDeploymentSetting(const BuiltFacts& facts) {
    for (const auto& [name, value] : facts.settings) {
        if (std::string_view(name).ends_with(kDeploymentSettingSuffix)) {
            return name;
        }
    }
    return kEvidenceKey;
}

std::vector<BuiltFinding> builtMismatches(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& content : context.targets) {
        const TargetContext* host = hostOf(context, content);
        // Frameworks are left to the linker, which warns about them itself.
        if (content.built->role != TargetRole::embedded || host == nullptr ||
            content.type == TargetType::framework || content.type == TargetType::staticLibrary ||
            host->built->platform != content.built->platform || !content.deploymentTarget ||
            !host->deploymentTarget ||
            !needsNewerThan(*content.deploymentTarget, *host->deploymentTarget)) {
            continue;
        }
        const std::string platform(platformName(content.built->platform));
        const std::string line = content.name + kBuiltNeeds + platform + " " +
                                 *content.deploymentTarget + kBuiltHostNeeds + host->name +
                                 kBuiltHostTrail + platform + " " + *host->deploymentTarget;
        const std::string setting(ownDeploymentSetting(*content.built));
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::warning,
            .evidence = {builtSettingEvidence(*host, ownDeploymentSetting(*host->built)),
                         builtSettingEvidence(content, setting, *host->deploymentTarget)},
            .targets = {makeTargetRef(*host), makeTargetRef(content)},
            .steps = {setBuildSettingStep("Set " + content.name + kBuiltFixStep +
                                              *host->deploymentTarget,
                                          content.name, setting, *host->deploymentTarget)}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context) {
    const std::vector<MergedFinding> findings = findAcrossConfigurations(context, builtMismatches);
    if (findings.empty()) {
        return issue(Severity::success, kCompatibleTitle, kBuiltCompatibleDescription,
                     kCompatibleImpact);
    }
    return builtIssue(kCheckID, kMismatchTitle, kMismatchDescriptionHead, findings,
                      kBuiltMismatchTail, kBuiltMismatchImpact,
                      DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::requiresConfirmation,
                                .warningMessage = kFixWarning});
}

} // namespace

std::string DeploymentTargetMismatchCheck::id() const {
    return kCheckID;
}

bool DeploymentTargetMismatchCheck::isLowerVersion(std::string_view a, std::string_view b) {
    const auto left = versionNumbers(a);
    const auto right = versionNumbers(b);
    const auto common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (left[i] != right[i]) {
            return left[i] < right[i];
        }
    }
    return left.size() < right.size();
}

std::optional<DoctorIssue> DeploymentTargetMismatchCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context);
    }
    std::vector<Configured> configured;
    for (const auto& target : context.targets) {
        if (target.deploymentTarget) {
            configured.push_back({&target, *target.deploymentTarget});
        }
    }
    if (configured.empty()) {
        return issue(Severity::success, kNoneTitle, kNoneDescription, kNoneImpact);
    }
    if (configured.size() == 1) {
        return issue(Severity::success, kSingleTitle, kSingleDescription, kSingleImpact,
                     {makeTargetRef(*configured.front().target)});
    }

    // The app is found again by name, so every target sharing its name counts
    // as the app below.
    const TargetContext* app = context.mainAppTarget();
    const auto appEntry =
        app == nullptr ? configured.end()
                       : std::find_if(configured.begin(), configured.end(), [&](const auto& entry) {
                             return entry.target->name == app->name;
                         });
    if (appEntry == configured.end()) {
        return agreementIssue(configured);
    }
    const std::string appVersion = appEntry->deploymentTarget;

    std::vector<std::string> lines;
    std::vector<EvidenceItem> evidence{buildSettingEvidence(app->name, kEvidenceKey, appVersion)};
    std::vector<TargetRef> affected{makeTargetRef(*app)};
    for (const auto& [target, version] : configured) {
        if (target->name == app->name || version == appVersion) {
            continue;
        }
        if (isLowerVersion(version, appVersion)) {
            lines.push_back(target->name + " (" + version +
                            ") has lower deployment target than app (" + appVersion + ")");
        }
        evidence.push_back(buildSettingEvidence(target->name, kEvidenceKey, version, appVersion));
        affected.push_back(makeTargetRef(*target));
    }

    if (lines.empty()) {
        return issue(Severity::success, kCompatibleTitle, kCompatibleDescription, kCompatibleImpact,
                     std::move(affected));
    }

    // Every differing target gets a step, also those that are higher or only
    // written differently: the fix aligns rather than repairs.
    std::vector<FixStep> steps;
    for (auto ref = affected.begin() + 1; ref != affected.end(); ++ref) {
        steps.push_back(
            setBuildSettingStep("Set " + ref->name + " deployment target to " + appVersion,
                                ref->name, kFixSetting, appVersion));
    }
    DoctorIssue mismatch =
        issue(Severity::warning, kMismatchTitle,
              kMismatchDescriptionHead + joinLines(lines) + kMismatchDescriptionTail,
              kMismatchImpact, std::move(affected));
    mismatch.evidence = std::move(evidence);
    mismatch.fix = DoctorFix{.summary = kFixSummary,
                             .safety = FixSafety::requiresConfirmation,
                             .steps = std::move(steps),
                             .warningMessage = kFixWarning};
    return mismatch;
}

} // namespace kelvane
