#include "diagnostics/EvidenceSource.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

TEST(LocationDescription, RendersEveryCase) {
    const std::vector<std::pair<EvidenceSource, std::string>> cases{
        {PlistSource{"Watch", "Info.plist"}, "Watch → Info.plist"},
        {EntitlementsSource{"App", "Entitlements"}, "App → Entitlements"},
        {BuildSettingSource{"App", "Release"}, "App → Build Settings (Release)"},
        {SchemeSource{"App"}, "Scheme: App"},
        {ProjectSettingSource{"Debug"}, "Project → Build Settings (Debug)"},
        {CapabilitySource{"App", "iCloud"}, "App → iCloud capability"},
        {FrameworkReferenceSource{"Widget"}, "Widget → Frameworks"},
        {WatchKitExtensionSource{"Watch"}, "Watch → WatchKit Extension"},
    };
    for (const auto& [source, expected] : cases) {
        EXPECT_EQ(locationDescription(source), expected) << caseName(source);
    }
}

TEST(LocationDescription, InsertsPayloadTextsVerbatim) {
    EXPECT_EQ(locationDescription(ProjectSettingSource{""}), "Project → Build Settings ()");
    EXPECT_EQ(locationDescription(SchemeSource{""}), "Scheme: ");
    EXPECT_EQ(locationDescription(BuildSettingSource{" My App ", "\"Debug\""}),
              " My App  → Build Settings (\"Debug\")");
}

TEST(CaseName, FollowsTheCaseOrder) {
    const std::vector<std::string> expected{
        "plist",          "entitlements", "buildSetting",       "scheme",
        "projectSetting", "capability",   "frameworkReference", "watchKitExtension",
    };
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EvidenceSource source;
        // Every case is default-constructible; build the one at `index`.
        auto build = [&]<std::size_t... I>(std::index_sequence<I...>) {
            ((I == index ? (source.emplace<I>(), 0) : 0), ...);
        };
        build(std::make_index_sequence<std::variant_size_v<EvidenceSource>>{});
        EXPECT_EQ(caseName(source), expected[index]);
    }
}

} // namespace
} // namespace kelvane
