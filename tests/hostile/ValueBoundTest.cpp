#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane::testing {
namespace {

// Two bytes of text per value ("a,") grow some thirty-fold in memory, so a
// project file of a few hundred megabytes could exhaust it; every form is
// held to the number of values the binary form is.
TEST(ValueBound, OldStyleTextStopsAtTheLimit) {
    const plist::ReadLimits limits{.maxDepth = 512, .maxValues = 1000};
    std::string manyValues = "{objects = {}; x = (";
    for (int i = 0; i < 1000; ++i) {
        manyValues += "a,";
    }
    manyValues += ");}";
    try {
        (void)plist::readPropertyList(manyValues, "App.xcodeproj/project.pbxproj", limits);
        ADD_FAILURE() << "read past the limit";
    } catch (const plist::ParseError& error) {
        EXPECT_EQ(error.reason(), "the data expands to more than 1000 values");
        EXPECT_EQ(error.line(), 1u);
    }
    // Within the limit, the same text reads.
    EXPECT_NO_THROW(
        (void)plist::readPropertyList(manyValues, "App.xcodeproj/project.pbxproj",
                                      plist::ReadLimits{.maxDepth = 512, .maxValues = 1003}));
}

} // namespace
} // namespace kelvane::testing
