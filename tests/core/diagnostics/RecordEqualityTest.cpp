#include "diagnostics/DoctorIssue.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace kelvane {
namespace {

DoctorIssue sampleIssue() {
    return DoctorIssue{
        .id = "bundle.identifier.collision",
        .severity = Severity::error,
        .title = "Bundle Identifier Collision",
        .description = "line 1\nline 2",
        .impact = "impact",
        .evidence = {{BuildSettingSource{"App", "Debug"}, "PRODUCT_BUNDLE_IDENTIFIER", "com.a",
                      std::nullopt},
                     {BuildSettingSource{"Widget", "Debug"}, "PRODUCT_BUNDLE_IDENTIFIER", "com.a",
                      "com.a.widget"}},
        .affectedTargets = {{"App", TargetType::application, "com.a"},
                            {"Widget", TargetType::widgetExtension, "com.a"}},
        .fix =
            DoctorFix{
                .summary = "Resolve Bundle ID Collisions",
                .safety = FixSafety::requiresConfirmation,
                .steps = {{"Change Widget bundle ID",
                           SetBuildSetting{"Widget", "All Configurations",
                                           "PRODUCT_BUNDLE_IDENTIFIER", "com.a.widget"}},
                          {"Enable iCloud",
                           UpdateEntitlement{"App", "App.entitlements", "icloud",
                                             EntitlementValue::array({"CloudKit"})}}},
                .warningMessage = "careful",
            },
    };
}

// Each mutation changes exactly one thing a careless == or hash could miss.
TEST(RecordEquality, EveryFieldCounts) {
    using Mutation = void (*)(DoctorIssue&);
    const std::vector<std::pair<const char*, Mutation>> mutations{
        {"evidence order",
         [](DoctorIssue& i) {
             std::swap(i.evidence[0], i.evidence[1]);
         }},
        {"affected target order",
         [](DoctorIssue& i) {
             std::swap(i.affectedTargets[0], i.affectedTargets[1]);
         }},
        {"fix without steps",
         [](DoctorIssue& i) {
             i.fix->steps.clear();
         }},
        {"no fix",
         [](DoctorIssue& i) {
             i.fix.reset();
         }},
        {"warning message absent",
         [](DoctorIssue& i) {
             i.fix->warningMessage.reset();
         }},
        {"warning message empty",
         [](DoctorIssue& i) {
             i.fix->warningMessage = "";
         }},
        {"expected value absent vs empty",
         [](DoctorIssue& i) {
             i.evidence[0].expectedValue = "";
         }},
        {"same payload, other source case",
         [](DoctorIssue& i) {
             i.evidence[0].source = PlistSource{"App", "Debug"};
         }},
        {"project-level build setting",
         [](DoctorIssue& i) {
             std::get<SetBuildSetting>(i.fix->steps[0].action).targetName.reset();
         }},
        {"empty target name",
         [](DoctorIssue& i) {
             std::get<SetBuildSetting>(i.fix->steps[0].action).targetName = "";
         }},
        {"entitlement value case",
         [](DoctorIssue& i) {
             std::get<UpdateEntitlement>(i.fix->steps[1].action).newValue =
                 EntitlementValue::string("CloudKit");
         }},
        {"bundle id absent",
         [](DoctorIssue& i) {
             i.affectedTargets[0].bundleID.reset();
         }},
        {"target type",
         [](DoctorIssue& i) {
             i.affectedTargets[0].type = TargetType::appClip;
         }},
        {"severity",
         [](DoctorIssue& i) {
             i.severity = Severity::warning;
         }},
        {"safety",
         [](DoctorIssue& i) {
             i.fix->safety = FixSafety::manualOnly;
         }},
        {"description",
         [](DoctorIssue& i) {
             i.description = "line 1\nline 2\n";
         }},
    };
    const DoctorIssue original = sampleIssue();
    for (const auto& [name, mutate] : mutations) {
        DoctorIssue changed = original;
        mutate(changed);
        EXPECT_NE(changed, original) << name;
        EXPECT_NE(hashValue(changed), hashValue(original)) << name;
    }
}

TEST(RecordEquality, CopiesAreEqualAndHashEqual) {
    const DoctorIssue a = sampleIssue();
    const DoctorIssue b = a;
    EXPECT_EQ(a, b);
    EXPECT_EQ(std::hash<DoctorIssue>{}(a), std::hash<DoctorIssue>{}(b));
    std::unordered_set<DoctorIssue> set{a, b};
    EXPECT_EQ(set.size(), 1U);
}

TEST(RecordEquality, VariantCasesWithEqualPayloadsDiffer) {
    const EvidenceSource plist = PlistSource{"App", "Info.plist"};
    const EvidenceSource entitlements = EntitlementsSource{"App", "Info.plist"};
    EXPECT_NE(plist, entitlements);
    EXPECT_NE(hashValue(plist), hashValue(entitlements));

    const FixAction target = AddFrameworkReference{"App", "WidgetKit.framework"};
    const FixAction plistKey = UpdatePlistKey{"App", "WidgetKit.framework", "", ""};
    EXPECT_NE(target, plistKey);
    EXPECT_NE(hashValue(target), hashValue(plistKey));
}

TEST(EntitlementValue, FactoriesPickTheirCase) {
    EXPECT_EQ(caseName(EntitlementValue::boolean(true)), "boolean");
    EXPECT_EQ(caseName(EntitlementValue::string("true")), "string");
    EXPECT_EQ(caseName(EntitlementValue::array({})), "array");
    EXPECT_NE(EntitlementValue::string("a"), EntitlementValue::array({"a"}));
    EXPECT_EQ(caseName(FixAction{ManualInstruction{}}), "manualInstruction");
}

} // namespace
} // namespace kelvane
