#include "diagnostics/JoinLines.h"
#include "diagnostics/TargetRef.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane {
namespace {

TEST(JoinLines, PutsOneBreakBetweenLinesAndNoneAtTheEnd) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, ""}, {{"a"}, "a"}, {{"a", "b"}, "a\nb"}, {{"a", ""}, "a\n"}, {{"", ""}, "\n"},
    };
    for (const auto& [lines, expected] : cases) {
        EXPECT_EQ(joinLines(lines), expected);
    }
    EXPECT_EQ(join({"group.a", "group.b"}, ", "), "group.a, group.b");
}

TEST(MakeTargetRef, CopiesNameTypeAndBundleIdentifier) {
    TargetContext target;
    target.name = "Widget";
    target.type = TargetType::widgetExtension;
    target.bundleIdentifier = "com.example.app.widget";
    target.developmentTeam = "TEAM";
    EXPECT_EQ(makeTargetRef(target),
              (TargetRef{"Widget", TargetType::widgetExtension, "com.example.app.widget"}));

    target.bundleIdentifier.reset();
    EXPECT_EQ(makeTargetRef(target).bundleID, std::nullopt);
}

} // namespace
} // namespace kelvane
