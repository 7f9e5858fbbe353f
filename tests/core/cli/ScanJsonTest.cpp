#include "report/ScanJson.h"

#include <gtest/gtest.h>

namespace kelvane::cli {
using namespace kelvane::report;
namespace {

using Json = nlohmann::ordered_json;

// One issue that uses every evidence source, every fix action and every
// entitlement value, so a field dropped or misnamed anywhere shows here.
DoctorIssue everyVariant() {
    return DoctorIssue{
        .id = "kitchen.sink",
        .severity = Severity::warning,
        .title = "Title",
        .description = "a\nb",
        .impact = "Impact",
        .evidence =
            {
                {PlistSource{"W", "Info.plist"}, "K", "V", "E"},
                {EntitlementsSource{"A", "Entitlements"}, "K", "V", std::nullopt},
                {BuildSettingSource{"A", "Debug"}, "K", "V", std::nullopt},
                {SchemeSource{"S"}, "K", "V", std::nullopt},
                {ProjectSettingSource{""}, "K", "V", std::nullopt},
                {CapabilitySource{"A", "iCloud"}, "K", "V", std::nullopt},
                {FrameworkReferenceSource{"X"}, "K", "V", std::nullopt},
                {WatchKitExtensionSource{"Y"}, "K", "V", std::nullopt},
            },
        .affectedTargets = {{"A", TargetType::application, "com.a"},
                            {"X", TargetType::widgetExtension, std::nullopt}},
        .fix =
            DoctorFix{
                .summary = "Fix it",
                .safety = FixSafety::safeAuto,
                .steps =
                    {
                        {"1", UpdatePlistKey{"W", "Info.plist", "K", "N"}},
                        {"2", SetBuildSetting{std::nullopt, "All Configurations", "S", "V"}},
                        {"3", UpdateEntitlement{"A", "F", "K", EntitlementValue::boolean(true)}},
                        {"4", UpdateEntitlement{"A", "F", "K", EntitlementValue::string("s")}},
                        {"5", UpdateEntitlement{"A", "F", "K", EntitlementValue::array({"x"})}},
                        {"6", UpdateSchemeSetting{"S", "Release"}},
                        {"7", AddFrameworkReference{"X", "WidgetKit.framework"}},
                        {"8", ManualInstruction{{"open", "close"}}},
                    },
                .warningMessage = std::nullopt,
            },
    };
}

TEST(ScanJson, WritesTheDocumentFieldForField) {
    const DoctorIssue success{.id = "ok", .severity = Severity::success, .title = "OK"};
    const FinishedScan scan{
        .projectPath = "work/App.xcodeproj",
        .projectName = "App",
        .scanDuration = 0.5,
        .report = {.issues = {everyVariant(), success},
                   .checks = {{"watch.companion.mismatch", success, std::nullopt},
                              {"cloudkit.container.mismatch", std::nullopt, std::nullopt},
                              {"signing.inconsistent", std::nullopt, "f: Permission denied"},
                              {"custom.check", everyVariant(), std::nullopt}}},
    };
    const Json expected = Json::parse(R"json({
  "project": {"path": "work/App.xcodeproj", "name": "App"},
  "scanDuration": 0.5,
  "checks": [
    {"id": "watch.companion.mismatch", "title": "Watch Companion Bundle ID",
     "status": "completed", "issueId": "ok", "error": null},
    {"id": "cloudkit.container.mismatch", "title": "CloudKit Container Configuration",
     "status": "completed", "issueId": null, "error": null},
    {"id": "signing.inconsistent", "title": "Signing Consistency",
     "status": "completed", "issueId": null, "error": "f: Permission denied"},
    {"id": "custom.check", "title": "custom.check",
     "status": "completed", "issueId": "kitchen.sink", "error": null}
  ],
  "issues": [
    {"id": "kitchen.sink", "severity": "warning", "title": "Title", "description": "a\nb",
     "impact": "Impact",
     "evidence": [
       {"source": {"kind": "plist", "targetName": "W", "fileName": "Info.plist"},
        "location": "W → Info.plist", "key": "K", "value": "V", "expectedValue": "E"},
       {"source": {"kind": "entitlements", "targetName": "A", "fileName": "Entitlements"},
        "location": "A → Entitlements", "key": "K", "value": "V", "expectedValue": null},
       {"source": {"kind": "buildSetting", "targetName": "A", "configName": "Debug"},
        "location": "A → Build Settings (Debug)", "key": "K", "value": "V",
        "expectedValue": null
},
       {"source": {"kind": "scheme", "schemeName": "S"},
        "location": "Scheme: S", "key": "K", "value": "V", "expectedValue": null},
       {"source": {"kind": "projectSetting", "configName": ""},
        "location": "Project → Build Settings ()", "key": "K", "value": "V",
        "expectedValue": null},
       {"source": {"kind": "capability", "targetName": "A", "capabilityName": "iCloud"},
        "location": "A → iCloud capability", "key": "K", "value": "V", "expectedValue": null},
       {"source": {"kind": "frameworkReference", "targetName": "X"},
        "location": "X → Frameworks", "key": "K", "value": "V", "expectedValue": null},
       {"source": {"kind": "watchKitExtension", "targetName": "Y"},
        "location": "Y → WatchKit Extension", "key": "K", "value": "V", "expectedValue": null}
     ],
     "affectedTargets": [
       {"name": "A", "type": "application", "bundleID": "com.a"},
       {"name": "X", "type": "widgetExtension", "bundleID": null}
     ],
     "fix": {
    "summary" : "Fix it", "safety" : "safeAuto", "warningMessage" : null, "steps" : [
        {
            "description" : "1",
            "action" : {
                "kind" : "updatePlistKey",
                "targetName" : "W",
                "fileName" : "Info.plist",
                "key" : "K",
                "newValue" : "N"
            }
        },
        {
            "description" : "2",
            "action" : {
                "kind" : "setBuildSetting",
                "targetName" : null,
                "configName" : "All Configurations",
                "settingName" : "S",
                "value" : "V"
            }
        },
        {
            "description" : "3",
            "action" : {
                "kind" : "updateEntitlement",
                "targetName" : "A",
                "fileName" : "F",
                "key" : "K",
                "newValue" : {"kind" : "boolean", "value" : true}
            }
        },
        {
            "description" : "4",
            "action" : {
                "kind" : "updateEntitlement",
                "targetName" : "A",
                "fileName" : "F",
                "key" : "K",
                "newValue" : {"kind" : "string", "value" : "s"}
            }
        },
        {
            "description" : "5",
            "action" : {
                "kind" : "updateEntitlement",
                "targetName" : "A",
                "fileName" : "F",
                "key" : "K",
                "newValue" : {"kind" : "array", "value" : ["x"]}
            }
        },
        {
            "description" : "6",
            "action" : {
                "kind" : "updateSchemeSetting",
                "schemeName" : "S",
                "buildConfiguration" : "Release"
            }
        },
        {
            "description" : "7",
            "action" : {
                "kind" : "addFrameworkReference",
                "targetName" : "X",
                "frameworkName" : "WidgetKit.framework"
            }
        },
        {
            "description" : "8",
            "action" : {"kind" : "manualInstruction", "steps" : [ "open", "close" ]}
        }
    ]
}
},
    {"id": "ok", "severity": "success", "title": "OK", "description": "", "impact": "",
     "evidence": [], "affectedTargets": [], "fix": null}
  ]
})json");
    // ordered_json compares objects in order, so field order is checked too.
    const Json actual = toJson(scan);
    EXPECT_EQ(actual, expected) << actual.dump(2);
}

} // namespace
} // namespace kelvane::cli
