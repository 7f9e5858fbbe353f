#include "checks/AppGroupConsistencyCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/DoctorCheck.h"
#include "checks/EntitlementsReader.h"
#include "diagnostics/JoinLines.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr std::string_view kCheckID = "app.group.consistency";
// Evidence names the file by this word, not by its real name.
constexpr std::string_view kEvidenceFileName = "Entitlements";

constexpr std::string_view kNoGroupsTitle = "No App Groups";
constexpr std::string_view kNoGroupsDescription = "This project does not use app groups.";
constexpr std::string_view kNoGroupsImpact = "App group consistency validation is not applicable.";

constexpr std::string_view kSingleTitle = "Single Target with App Groups";
constexpr std::string_view kSingleDescription =
    "Only one target uses app groups, so consistency checks are not applicable.";
constexpr std::string_view kSingleImpact = "No inter-target app group sharing issues can occur.";

constexpr std::string_view kConsistentTitle = "App Groups Consistent";
constexpr std::string_view kConsistentDescription =
    "All targets that use app groups have consistent configuration.";
constexpr std::string_view kConsistentImpact =
    "Data sharing between app and extensions will work correctly.";

constexpr std::string_view kInconsistentTitle = "App Group Inconsistency";
constexpr std::string_view kInconsistentLead =
    "App group entitlements are inconsistent across targets.\n\nIssues found:\n";
constexpr std::string_view kInconsistentTrail =
    "\n\nFor proper data sharing:\n"
    "• All related targets (app, extensions, widgets, watch) must declare the same app "
    "groups\n"
    "• App groups must be identical across all targets that need to share data\n"
    "• Group identifiers must match exactly (case-sensitive)";
constexpr std::string_view kInconsistentImpact =
    "Inconsistent app groups cause silent runtime failures, data not being shared between app "
    "and extensions, and widgets showing empty states.";

constexpr std::string_view kExtraGroups = " declares groups not in main app: ";
constexpr std::string_view kMissingGroups = " missing app groups: ";
constexpr std::string_view kAppWithoutGroups =
    "Main app does not declare app groups, but extensions do: ";

constexpr std::string_view kFixSummary = "Align App Group Entitlements";
constexpr std::string_view kFixWarning =
    "Modifying app groups will affect data sharing between targets.";
constexpr std::string_view kFixStep = "Review and align app group entitlements in all targets";
constexpr std::string_view kFixInstructions[] = {
    "Open project in Xcode",
    "Select each target",
    "Go to Signing & Capabilities tab",
    "Ensure all targets that need to share data have the same app groups",
    "Verify group identifier format: group.<bundle-id-prefix>",
};

// As built, an extension shares data with the target that embeds it, on one
// device, through any group the two have in common. A host with groups and
// an extension without any is normal: most extensions share nothing.
constexpr std::string_view kBuiltConsistentDescription =
    "Every extension that declares app groups shares at least one of them with the app that "
    "embeds it.";
constexpr std::string_view kBuiltInconsistentTrail =
    "\n\nAn extension and its app share data only through an app group both declare: with none "
    "in common, whatever the extension writes to its group container the app never reads, and "
    "the other way round. An extension may use a subset of its app's groups; extensions that "
    "declare no groups are not listed.";
constexpr std::string_view kBuiltDisjoint = " shares no app group with its host ";
constexpr std::string_view kBuiltHostWithout = " declares app groups, but its host ";
constexpr std::string_view kBuiltHostWithoutTrail = " declares none: ";
constexpr std::string_view kBuiltGroupsOf = ": ";
constexpr std::string_view kBuiltAgainst = " against ";
// Where a file or value the build could not resolve leaves a target's
// groups unknown.
constexpr std::string_view kEntitlementsSetting = "CODE_SIGN_ENTITLEMENTS";
constexpr std::string_view kUnknownEntitlementPrefix = "entitlements ";

struct GroupUser {
    const TargetContext* target;
    // Ascending, duplicates kept: this is what evidence shows.
    std::vector<std::string> groups;
};

std::vector<GroupUser> collectGroupUsers(const ProjectContext& context, const std::string& key) {
    std::vector<GroupUser> users;
    for (const TargetContext& target : context.targets) {
        const plist::Dictionary entitlements = readEntitlements(target);
        const plist::Value* value = entitlements.find(key);
        if (value == nullptr) {
            continue;
        }
        if (auto groups = identifierList(*value)) {
            std::sort(groups->begin(), groups->end());
            users.push_back({&target, std::move(*groups)});
        }
    }
    return users;
}

// std::set iterates in ascending code-point order, which is the order the
// groups of one line are listed in.
std::vector<std::string> difference(const std::set<std::string>& from,
                                    const std::set<std::string>& without) {
    std::vector<std::string> result;
    std::set_difference(from.begin(), from.end(), without.begin(), without.end(),
                        std::back_inserter(result));
    return result;
}

EvidenceItem groupEvidence(const std::string& targetName, const std::string& key,
                           const std::vector<std::string>& groups,
                           std::optional<std::string> expected) {
    return EvidenceItem{EntitlementsSource{targetName, std::string(kEvidenceFileName)}, key,
                        join(groups, ", "), std::move(expected)};
}

DoctorIssue successIssue(std::string_view title, std::string_view description,
                         std::string_view impact, std::vector<TargetRef> affected) {
    return DoctorIssue{std::string(kCheckID),    Severity::success,   std::string(title),
                       std::string(description), std::string(impact), {},
                       std::move(affected),      std::nullopt};
}

DoctorIssue inconsistentIssue(const std::vector<std::string>& lines,
                              std::vector<EvidenceItem> evidence, std::vector<TargetRef> affected) {
    std::string description(kInconsistentLead);
    description += joinLines(lines);
    description += kInconsistentTrail;
    return DoctorIssue{
        std::string(kCheckID),
        Severity::warning,
        std::string(kInconsistentTitle),
        std::move(description),
        std::string(kInconsistentImpact),
        std::move(evidence),
        std::move(affected),
        DoctorFix{std::string(kFixSummary),
                  FixSafety::manualOnly,
                  {FixStep{std::string(kFixStep), ManualInstruction{{std::begin(kFixInstructions),
                                                                     std::end(kFixInstructions)}}}},
                  std::string(kFixWarning)}};
}

// A target's resolved groups, ascending; nothing when they cannot be known
// (the entitlements file or a group depends on what the repository lacks).
std::optional<std::set<std::string>> builtGroups(const TargetContext& target,
                                                 const std::string& key) {
    const std::string unknownGroup = std::string(kUnknownEntitlementPrefix) + key;
    for (const UnknownSetting& unknown : target.built->unknown) {
        if (unknown.name == kEntitlementsSetting || unknown.name.starts_with(unknownGroup)) {
            return std::nullopt;
        }
    }
    std::set<std::string> groups;
    const plist::Dictionary entitlements = readEntitlements(target);
    if (const plist::Value* value = entitlements.find(key)) {
        if (auto listed = identifierList(*value)) {
            groups.insert(listed->begin(), listed->end());
        }
    }
    return groups;
}

std::string listed(const std::set<std::string>& groups) {
    return join(std::vector<std::string>(groups.begin(), groups.end()), ", ");
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context, const std::string& key) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& extension : context.targets) {
        const TargetContext* host = hostOf(context, extension);
        // App groups live on one device: a watch app shares none with its
        // phone. A WatchKit extension is the code of its watch app, whose
        // bundle runs none, so it has no one there to share with.
        if (extension.built->role != TargetRole::embedded || host == nullptr ||
            host->built->platform != extension.built->platform ||
            extension.type == TargetType::watchExtension) {
            continue;
        }
        const auto own = builtGroups(extension, key);
        if (!own || own->empty()) {
            continue;
        }
        const auto hosts = builtGroups(*host, key);
        if (!hosts) {
            continue;
        }
        std::vector<std::string> shared;
        std::set_intersection(own->begin(), own->end(), hosts->begin(), hosts->end(),
                              std::back_inserter(shared));
        if (!shared.empty()) {
            continue;
        }
        const std::string line =
            hosts->empty()
                ? extension.name + std::string(kBuiltHostWithout) + host->name +
                      std::string(kBuiltHostWithoutTrail) + listed(*own)
                : extension.name + std::string(kBuiltDisjoint) + host->name +
                      std::string(kBuiltGroupsOf) + listed(*own) + std::string(kBuiltAgainst) +
                      listed(*hosts);
        std::vector<EvidenceItem> evidence;
        if (!hosts->empty()) {
            evidence.push_back(builtEntitlementEvidence(*host, key, listed(*hosts)));
        }
        evidence.push_back(builtEntitlementEvidence(
            extension, key, listed(*own),
            hosts->empty() ? std::nullopt : std::optional<std::string>(listed(*hosts))));
        findings.push_back(BuiltFinding{
            .key = line,
            .line = line,
            .severity = Severity::warning,
            .evidence = std::move(evidence),
            .targets = {makeTargetRef(*host), makeTargetRef(extension)},
            .steps = {}});
    }
    return findings;
}

std::optional<DoctorIssue> runAsBuilt(const ProjectContext& context, const std::string& key) {
    const std::vector<MergedFinding> findings = findAcrossConfigurations(
        context, [&](const ProjectContext& configuration) { return builtFindings(configuration, key); });
    if (findings.empty()) {
        return successIssue(kConsistentTitle, kBuiltConsistentDescription, kConsistentImpact, {});
    }
    std::string head(kInconsistentLead);
    return builtIssue(std::string(kCheckID), std::string(kInconsistentTitle), std::move(head),
                      findings, std::string(kBuiltInconsistentTrail),
                      std::string(kInconsistentImpact),
                      DoctorFix{.summary = std::string(kFixSummary),
                                .safety = FixSafety::manualOnly,
                                .steps = {FixStep{std::string(kFixStep),
                                                  ManualInstruction{{std::begin(kFixInstructions),
                                                                     std::end(kFixInstructions)}}}},
                                .warningMessage = std::string(kFixWarning)});
}

} // namespace

std::optional<DoctorIssue> AppGroupConsistencyCheck::run(const ProjectContext& context) const {
    if (isAsBuilt(context)) {
        return runAsBuilt(context, appGroupKey);
    }
    const std::vector<GroupUser> users = collectGroupUsers(context, appGroupKey);
    if (users.empty()) {
        return successIssue(kNoGroupsTitle, kNoGroupsDescription, kNoGroupsImpact, {});
    }
    if (users.size() == 1) {
        return successIssue(kSingleTitle, kSingleDescription, kSingleImpact,
                            {makeTargetRef(*users.front().target)});
    }

    const TargetContext* mainApp = context.mainAppTarget();
    const auto appUser = mainApp == nullptr
                             ? users.end()
                             : std::find_if(users.begin(), users.end(), [&](const GroupUser& user) {
                                   return user.target->name == mainApp->name;
                               });

    std::vector<std::string> lines;
    std::vector<EvidenceItem> evidence;
    std::vector<TargetRef> affected;

    if (appUser == users.end()) {
        std::vector<std::string> names;
        for (const GroupUser& user : users) {
            names.push_back(user.target->name);
            evidence.push_back(groupEvidence(user.target->name, appGroupKey, user.groups, {}));
            affected.push_back(makeTargetRef(*user.target));
        }
        lines.push_back(std::string(kAppWithoutGroups) + join(names, ", "));
        return inconsistentIssue(lines, std::move(evidence), std::move(affected));
    }

    const std::set<std::string> appSet(appUser->groups.begin(), appUser->groups.end());
    const std::string appGroups = join(appUser->groups, ", ");
    evidence.push_back(groupEvidence(mainApp->name, appGroupKey, appUser->groups, {}));
    affected.push_back(makeTargetRef(*mainApp));
    for (const GroupUser& user : users) {
        // Every target that shares the main app's name counts as the app.
        if (user.target->name == mainApp->name) {
            continue;
        }
        const std::set<std::string> targetSet(user.groups.begin(), user.groups.end());
        if (const auto extra = difference(targetSet, appSet); !extra.empty()) {
            lines.push_back(user.target->name + std::string(kExtraGroups) + join(extra, ", "));
        }
        if (const auto missing = difference(appSet, targetSet); !missing.empty()) {
            lines.push_back(user.target->name + std::string(kMissingGroups) + join(missing, ", "));
        }
        evidence.push_back(groupEvidence(user.target->name, appGroupKey, user.groups, appGroups));
        affected.push_back(makeTargetRef(*user.target));
    }

    if (lines.empty()) {
        // Nothing to show against: the consistent outcome names the targets only.
        return successIssue(kConsistentTitle, kConsistentDescription, kConsistentImpact,
                            std::move(affected));
    }
    return inconsistentIssue(lines, std::move(evidence), std::move(affected));
}

static_assert(DoctorCheck<AppGroupConsistencyCheck>);

} // namespace kelvane
