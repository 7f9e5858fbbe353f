#include "scanner/CheckRegistry.h"
#include "scanner/CheckTitles.h"

#include <gtest/gtest.h>

#include <set>

namespace kelvane {
namespace {

// Progress rows are found by id, so the registry must run its checks in the
// order of the title list and under the same ids, or rows would never finish.
TEST(CheckRegistry, RunsItsChecksInTheOrderOfTheTitleList) {
    std::size_t next = 0;
    for (const AnyCheck& check : makeCheckRegistry()) {
        while (next < kCheckTitles.size() && kCheckTitles[next].id != check.id()) {
            ++next;
        }
        ASSERT_LT(next, kCheckTitles.size()) << check.id() << " is unknown or out of order";
        ++next;
    }
}

TEST(CheckTitles, NameNineDistinctChecks) {
    std::set<std::string_view> ids;
    for (const CheckTitle& entry : kCheckTitles) {
        ids.insert(entry.id);
        EXPECT_EQ(checkTitle(entry.id), entry.title);
    }
    EXPECT_EQ(ids.size(), 9U);
    EXPECT_EQ(checkTitle("watch.companion.missing"), std::nullopt);
    EXPECT_EQ(checkTitle("Signing.Inconsistent"), std::nullopt);
}

} // namespace
} // namespace kelvane
