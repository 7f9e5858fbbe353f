#include "model/FilePath.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(FilePath, JoinIsLexical) {
    EXPECT_EQ(path::join("ws", "App/App.xcodeproj"), "ws/App/App.xcodeproj");
    EXPECT_EQ(path::join("ws", "/tmp/X.xcodeproj"), "ws/tmp/X.xcodeproj");
    EXPECT_EQ(path::join("ws/", "/tmp/X.xcodeproj"), "ws/tmp/X.xcodeproj");
    EXPECT_EQ(path::join("ws/", "a"), "ws/a");
    EXPECT_EQ(path::join(".", "App/Info.plist"), "./App/Info.plist");
    EXPECT_EQ(path::join("ws", ""), "ws");
    EXPECT_EQ(path::join("ws", "../x"), "ws/../x");
}

TEST(FilePath, ComponentsOfAPath) {
    EXPECT_EQ(path::parent("App.xcodeproj"), ".");
    EXPECT_EQ(path::parent("examples/Aurora/Aurora.xcodeproj"), "examples/Aurora");
    EXPECT_EQ(path::parent("examples/Aurora/Aurora.xcodeproj/"), "examples/Aurora");
    EXPECT_EQ(path::parent("/App.xcodeproj"), "/");
    EXPECT_EQ(path::lastComponent("a/b/App.xcodeproj/"), "App.xcodeproj");
    EXPECT_EQ(path::extension("a/b/App.xcodeproj"), "xcodeproj");
    EXPECT_EQ(path::extension("a.b/App"), "");
    EXPECT_EQ(path::extension("a/App.XCODEPROJ"), "XCODEPROJ");
    EXPECT_EQ(path::stem("a/My.App.xcodeproj"), "My.App");
    EXPECT_EQ(path::withoutTrailingSlash("a/b//"), "a/b");
    EXPECT_EQ(path::withoutTrailingSlash("/"), "/");
}

} // namespace
} // namespace kelvane
