#include "ProjectFiles.h"
#include "TempDir.h"
#include "parser/ProjectParser.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace kelvane {

// Readable failure messages for whole-target comparisons.
void PrintTo(const TargetContext& t, std::ostream* os) {
    const auto opt = [](const std::optional<std::string>& s) {
        return s ? "\"" + *s + "\"" : std::string("none");
    };
    *os << "{name \"" << t.name << "\", " << rawValue(t.type) << ", info " << opt(t.infoPlistURL)
        << ", entitlements " << opt(t.entitlementsURL) << ", id " << opt(t.bundleIdentifier)
        << ", team " << opt(t.developmentTeam) << ", style " << opt(t.codeSignStyle)
        << ", deployment " << opt(t.deploymentTarget) << ", frameworks [";
    for (const std::string& f : t.linkedFrameworks) {
        *os << f << ";";
    }
    *os << "]}";
}

namespace {

using testing::pbxproj;
using testing::TempDir;

// One object table holding a target per rule of the object walk. Object ids
// are out of alphabetical order on purpose: the table's own order must win.
const std::string kObjects = R"pbx(
        Z1 = {isa = PBXNativeTarget; name = Zeta; productType = "com.apple.product-type.application";
              buildConfigurationList = LZ; buildPhases = (PF1, PR1, MISSING, PF2); };
        LZ = {isa = XCConfigurationList; buildConfigurations = (CZD, CZR); };
        CZD = {isa = XCBuildConfiguration; name = Debug; buildSettings = {
              INFOPLIST_FILE = "Zeta/Info.plist";
              CODE_SIGN_ENTITLEMENTS = "$(SRCROOT)/Zeta/Zeta.entitlements";
              DEVELOPMENT_TEAM = ABCDE12345; CODE_SIGN_STYLE = Automatic;
              WATCHOS_DEPLOYMENT_TARGET = 10.0; IPHONEOS_DEPLOYMENT_TARGET = 17.0; }; };
        CZR = {isa = XCBuildConfiguration; name = Release; buildSettings = {
              PRODUCT_BUNDLE_IDENTIFIER = com.example.zeta; }; };
        PF1 = {isa = PBXFrameworksBuildPhase; files = (BF1, BF2, BF3, BF4, BF5, BF6, NOPE); };
        PR1 = {isa = PBXResourcesBuildPhase; files = (BF7); };
        PF2 = {isa = PBXFrameworksBuildPhase; files = (BF1); };
        BF1 = {isa = PBXBuildFile; fileRef = FR1; };
        BF2 = {isa = PBXBuildFile; fileRef = FR2; };
        BF3 = {isa = PBXBuildFile; fileRef = GONE; };
        BF4 = {isa = PBXBuildFile; fileRef = FR4; };
        BF5 = {isa = PBXBuildFile; fileRef = FR5; };
        BF6 = {isa = PBXBuildFile; fileRef = FR6; };
        BF7 = {isa = PBXBuildFile; fileRef = FR7; };
        FR1 = {isa = PBXFileReference; path = WidgetKit.framework; sourceTree = SDKROOT; };
        FR2 = {isa = PBXFileReference; path = libz.tbd; };
        FR4 = {isa = PBXFileReference; name = Named.framework; };
        FR5 = {isa = PBXFileReference; path = System/Library/Frameworks/UIKit.framework; };
        FR6 = {isa = PBXFileReference; path = Upper.FRAMEWORK; };
        FR7 = {isa = PBXFileReference; path = Resource.framework; };
        A1 = {isa = PBXNativeTarget; name = ""; productType = "com.apple.product-type.application.extra";
              buildPhases = PF1; };
        A2 = {isa = PBXNativeTarget; productType = "com.apple.product-type.application"; };
        A3 = {isa = PBXNativeTarget; name = (Listed); };
        A4 = {isa = PBXAggregateTarget; name = Aggregate; };
        A5 = {isa = PBXLegacyTarget; name = Legacy; };
        A6 = {name = NoIsa; };
        A7 = stray;
        M1 = {isa = PBXNativeTarget; name = Mac; productType = "com.apple.product-type.framework";
              buildConfigurationList = LM; buildPhases = (PF1, (nested)); };
        LM = {buildConfigurations = (CM); };
        CM = {buildSettings = {
              INFOPLIST_FILE = /Mac/Info.plist; CODE_SIGN_ENTITLEMENTS = "";
              PRODUCT_BUNDLE_IDENTIFIER = "$(PRODUCT_NAME:rfc1034identifier)";
              IPHONEOS_DEPLOYMENT_TARGET = (17.0); MACOSX_DEPLOYMENT_TARGET = 14.0;
              TVOS_DEPLOYMENT_TARGET = 17.0; CODE_SIGN_STYLE = (Manual); DEVELOPMENT_TEAM = ""; }; };
        W1 = {isa = PBXNativeTarget; name = Watch; productType = "com.apple.product-type.watchkit2-app";
              buildConfigurationList = LW; buildPhases = (PF3); };
        LW = {buildConfigurations = (CW, (nested)); };
        CW = {buildSettings = {PRODUCT_BUNDLE_IDENTIFIER = com.example.watch; }; };
        PF3 = {isa = PBXFrameworksBuildPhase; files = (BF1, (nested)); };
        D1 = {isa = PBXNativeTarget; name = Dangling; buildConfigurationList = NOWHERE; };
        E1 = {isa = PBXNativeTarget; name = EmptyList; buildConfigurationList = LE; };
        LE = {buildConfigurations = (); };
        S1 = {isa = PBXNativeTarget; name = TextSettings; buildConfigurationList = LS; };
        LS = {buildConfigurations = (CS); };
        CS = {buildSettings = none; };
        T1 = {isa = PBXNativeTarget; name = TV; productType = "com.apple.product-type.app-extension";
              buildConfigurationList = LT; };
        LT = {buildConfigurations = (CT); };
        CT = {buildSettings = {TVOS_DEPLOYMENT_TARGET = 17.2; WATCHOS_DEPLOYMENT_TARGET = (x);
              INFOPLIST_FILE = Missing/Info.plist; CODE_SIGN_ENTITLEMENTS = TV; }; };
)pbx";

TargetContext target(std::string name, TargetType type) {
    TargetContext t;
    t.name = std::move(name);
    t.type = type;
    return t;
}

class TargetExtraction : public ::testing::Test {
protected:
    void SetUp() override {
        dir.write("sub/App.xcodeproj/project.pbxproj", pbxproj(kObjects));
        dir.write("Zeta/Info.plist", "{}");
        dir.write("Zeta/Zeta.entitlements", "{}");
        dir.write("Mac/Info.plist", "{}");
        dir.write("TV/keep", "");
        // Given with a parent reference, which must survive into every path.
        location = dir.path().string() + "/sub/../App.xcodeproj";
        std::filesystem::rename(dir.path() / "sub/App.xcodeproj", dir.path() / "App.xcodeproj");
    }

    TempDir dir;
    std::string location;
};

TEST_F(TargetExtraction, FollowsEveryRuleOfTheObjectWalk) {
    const ProjectContext project = ProjectParser().parseProject(location);
    EXPECT_EQ(project.projectURL, location);
    const std::string folder = dir.path().string() + "/sub/..";

    TargetContext zeta = target("Zeta", TargetType::application);
    zeta.infoPlistURL = folder + "/Zeta/Info.plist";
    zeta.developmentTeam = "ABCDE12345";
    zeta.codeSignStyle = "Automatic";
    zeta.deploymentTarget = "17.0";
    zeta.linkedFrameworks = {"WidgetKit.framework", "System/Library/Frameworks/UIKit.framework",
                             "WidgetKit.framework"};

    TargetContext unnamed = target("", TargetType::unknown);

    TargetContext mac = target("Mac", TargetType::framework);
    mac.infoPlistURL = folder + "/Mac/Info.plist";
    mac.entitlementsURL = folder;
    mac.bundleIdentifier = "$(PRODUCT_NAME:rfc1034identifier)";
    mac.developmentTeam = "";
    mac.deploymentTarget = "14.0";

    TargetContext watch = target("Watch", TargetType::watchApp);

    TargetContext tv = target("TV", TargetType::appExtension);
    tv.entitlementsURL = folder + "/TV";
    tv.deploymentTarget = "17.2";

    const std::vector<TargetContext> expected{zeta,
                                              unnamed,
                                              mac,
                                              watch,
                                              target("Dangling", TargetType::unknown),
                                              target("EmptyList", TargetType::unknown),
                                              target("TextSettings", TargetType::unknown),
                                              tv};
    ASSERT_EQ(project.targets.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(project.targets[i], expected[i]) << "target " << i;
    }
}

TEST(TargetExtractionEdges, ObjectTableWithoutNativeTargetsGivesNoTargets) {
    TempDir dir;
    dir.write("A.xcodeproj/project.pbxproj",
              pbxproj("\t\tR = {isa = PBXProject; targets = (X); };\n"
                      "\t\tX = {isa = PBXAggregateTarget; name = X; };\n"));
    dir.write("B.xcodeproj/project.pbxproj", pbxproj(""));
    for (const char* bundle : {"A.xcodeproj", "B.xcodeproj"}) {
        const ProjectContext project = ProjectParser().parseProject(dir.file(bundle));
        EXPECT_TRUE(project.targets.empty()) << bundle;
    }
}

TEST(TargetExtractionEdges, RelativeLocationGivesRelativePaths) {
    TempDir dir;
    dir.write("App.xcodeproj/project.pbxproj",
              pbxproj("\t\tT = {isa = PBXNativeTarget; name = App; buildConfigurationList = L; };\n"
                      "\t\tL = {buildConfigurations = (C); };\n"
                      "\t\tC = {buildSettings = {INFOPLIST_FILE = App/Info.plist; }; };\n"));
    dir.write("App/Info.plist", "{}");
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    ProjectContext project;
    try {
        project = ProjectParser().parseProject("App.xcodeproj");
    } catch (...) {
        std::filesystem::current_path(previous);
        throw;
    }
    std::filesystem::current_path(previous);
    EXPECT_EQ(project.projectURL, "App.xcodeproj");
    ASSERT_EQ(project.targets.size(), 1u);
    EXPECT_EQ(project.targets[0].infoPlistURL, std::optional<std::string>("./App/Info.plist"));
}

} // namespace
} // namespace kelvane
