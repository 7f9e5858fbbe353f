#include "model/ProjectContext.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TargetContext target(std::string name, TargetType type) {
    TargetContext t;
    t.name = std::move(name);
    t.type = type;
    return t;
}

TEST(ProjectContext, QueriesFollowTargetOrder) {
    const ProjectContext empty{"A.xcodeproj", {}};
    EXPECT_EQ(empty.mainAppTarget(), nullptr);
    EXPECT_TRUE(empty.targetsOfType(TargetType::application).empty());

    const ProjectContext project{"A.xcodeproj",
                                 {target("Clip", TargetType::appClip),
                                  target("First", TargetType::application),
                                  target("Widget", TargetType::widgetExtension),
                                  target("Second", TargetType::application)}};
    ASSERT_NE(project.mainAppTarget(), nullptr);
    EXPECT_EQ(project.mainAppTarget()->name, "First");
    const auto apps = project.targetsOfType(TargetType::application);
    ASSERT_EQ(apps.size(), 2u);
    EXPECT_EQ(apps[0].name, "First");
    EXPECT_EQ(apps[1].name, "Second");
    EXPECT_TRUE(project.targetsOfType(TargetType::watchApp).empty());
}

TEST(TargetContext, InfoPlistValueReadsOnlyTheTopLevelOfADictionary) {
    testing::TempDir dir;
    TargetContext watch = target("Watch", TargetType::watchApp);
    EXPECT_EQ(watch.infoPlistValue("WKCompanionAppBundleIdentifier"), std::nullopt)
        << "no Info.plist means no value, not an error";

    watch.infoPlistURL = dir.write("Info.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
  <key>WKCompanionAppBundleIdentifier</key><string>com.example.app</string>
  <key>Nested</key><dict><key>Inner</key><string>x</string></dict>
</dict></plist>)");
    EXPECT_EQ(watch.infoPlistValue("WKCompanionAppBundleIdentifier"),
              plist::Value("com.example.app"));
    EXPECT_EQ(watch.infoPlistValue("Inner"), std::nullopt);
    EXPECT_EQ(watch.infoPlistValue("Missing"), std::nullopt);

    watch.infoPlistURL = dir.write("List.plist", "(a, b)");
    EXPECT_EQ(watch.infoPlistValue("a"), std::nullopt) << "a list root is no value";

    watch.infoPlistURL = dir.write("Broken.plist", "{ a = ");
    EXPECT_ANY_THROW((void)watch.infoPlistValue("a"));
}

} // namespace
} // namespace kelvane
