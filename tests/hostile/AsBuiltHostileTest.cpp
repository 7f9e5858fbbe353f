#include "KelvaneProcess.h"
#include "ProjectFiles.h"
#include "TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace kelvane::testing {
namespace {

// One app whose only configuration is based on Config/Base.xcconfig; the
// cases write what that file and its includes hold.
const std::string kProject = pbxproj(R"pbx(
    ROOT = {isa = PBXProject; buildConfigurationList = PL; mainGroup = G; targets = (APP); };
    G = {isa = PBXGroup; children = (BASE); sourceTree = "<group>"; };
    BASE = {isa = PBXFileReference; path = Config/Base.xcconfig; sourceTree = "<group>"; };
    PL = {isa = XCConfigurationList; buildConfigurations = (PR); };
    PR = {isa = XCBuildConfiguration; name = Release; buildSettings = {SDKROOT = iphoneos; }; };
    APP = {isa = PBXNativeTarget; name = App; productType = "com.apple.product-type.application";
           buildConfigurationList = TL; };
    TL = {isa = XCConfigurationList; buildConfigurations = (TR); };
    TR = {isa = XCBuildConfiguration; name = Release; baseConfigurationReference = BASE;
          buildSettings = {INFOPLIST_FILE = Info.plist; }; };
)pbx");

struct HostileConfig {
    std::string name;
    std::function<void(const TempDir&)> build;
    // Whether the bundle id must come out unknown rather than as a value.
    bool bundleIdUnknown;
};

std::string doubling(int levels) {
    std::string text = "PRODUCT_BUNDLE_IDENTIFIER = $(L0)\n";
    for (int i = 0; i < levels; ++i) {
        const std::string next = std::to_string(i + 1);
        text.append("L").append(std::to_string(i)).append(" = $(L").append(next);
        text.append(")$(L").append(next).append(")\n");
    }
    text.append("L").append(std::to_string(levels)).append(" = abcdefgh\n");
    return text;
}

TEST(AsBuiltHostileInput, SettingFilesEndQuicklyWithValuesOrUnknownsNeverHangs) {
    const std::vector<HostileConfig> cases{
        {"include cycle",
         [](const TempDir& dir) {
             dir.write("P/Config/Base.xcconfig", "#include \"Other.xcconfig\"\nPRODUCT_BUNDLE_IDENTIFIER = a.b\n");
             dir.write("P/Config/Other.xcconfig", "#include \"Base.xcconfig\"\n");
         },
         false},
        {"a FIFO where an include belongs",
         [](const TempDir& dir) {
             dir.write("P/Config/Base.xcconfig", "#include \"Pipe.xcconfig\"\n");
             ASSERT_EQ(::mkfifo(dir.file("P/Config/Pipe.xcconfig").c_str(), 0600), 0);
         },
         true},
        {"a folder where the base configuration belongs",
         [](const TempDir& dir) { dir.write("P/Config/Base.xcconfig/x", ""); }, true},
        {"includes 500 deep",
         [](const TempDir& dir) {
             for (int i = 0; i < 500; ++i) {
                 std::string name = i == 0 ? std::string("Base") : std::string("D");
                 if (i != 0) {
                     name.append(std::to_string(i));
                 }
                 std::string include = "#include \"D";
                 include.append(std::to_string(i + 1)).append(".xcconfig\"\n");
                 dir.write("P/Config/" + name + ".xcconfig", include);
             }
         },
         true},
        {"references that double 40 times",
         [](const TempDir& dir) { dir.write("P/Config/Base.xcconfig", doubling(40)); }, true},
        {"references in a cycle",
         [](const TempDir& dir) {
             dir.write("P/Config/Base.xcconfig",
                       "PRODUCT_BUNDLE_IDENTIFIER = x.$(A)\nA = $(B)\nB = $(A)$(PRODUCT_BUNDLE_IDENTIFIER)\n");
         },
         false},
        {"unterminated references and stray brackets",
         [](const TempDir& dir) {
             dir.write("P/Config/Base.xcconfig", "PRODUCT_BUNDLE_IDENTIFIER = a.$(B\nC[sdk=[ = $(\n= x\n");
         },
         false},
    };
    for (const HostileConfig& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir;
        dir.write("P/App.xcodeproj/project.pbxproj", kProject);
        dir.write("P/Info.plist", "<plist><dict><key>A</key><string>$(</string></dict></plist>");
        c.build(dir);
        const ProcessOutcome run = runKelvane(
            {"inspect", "--as-built", "--format", "json", dir.file("P/App.xcodeproj")});
        expectQuick(run, 2.0);
        ASSERT_EQ(run.status, 0) << run.err;
        const auto json = nlohmann::json::parse(run.out);
        const auto& app = json["targets"][0];
        EXPECT_EQ(app["bundleIdentifier"].is_null(), c.bundleIdUnknown) << app.dump();
        if (c.bundleIdUnknown) {
            EXPECT_FALSE(app["unknownSettings"].empty());
        }
    }
}

TEST(AsBuiltHostileInput, WorkspaceListingNothingLoadableIsALoadError) {
    TempDir dir;
    dir.write("W.xcworkspace/contents.xcworkspacedata",
              workspaceData({"group:Missing.xcodeproj", "group:Pipe.xcodeproj"}));
    ASSERT_EQ(::mkdir(dir.file("Pipe.xcodeproj").c_str(), 0700), 0);
    ASSERT_EQ(::mkfifo(dir.file("Pipe.xcodeproj/project.pbxproj").c_str(), 0600), 0);
    const ProcessOutcome run =
        runKelvane({"scan", "--as-built", "--format", "json", dir.file("W.xcworkspace")});
    expectQuick(run, 1.0);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.out.empty());
    EXPECT_FALSE(run.err.empty());
}

} // namespace
} // namespace kelvane::testing
