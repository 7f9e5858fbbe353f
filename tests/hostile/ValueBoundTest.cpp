#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane::testing {
namespace {

// A few bytes of text per value grow some thirty-fold in memory, so a file of
// a few hundred megabytes could exhaust it; the text forms are held to the
// number of values the binary form is.
TEST(ValueBound, TextFormsStopAtTheLimit) {
    struct Form {
        const char* name;
        std::string head, value, tail;
        std::size_t containers; // values besides the 1000 repeated ones
    };
    const Form forms[] = {
        {"old-style", "{objects = {}; x = (", "a,", ");}", 3},
        {"XML", "<plist><dict><key>x</key><array>", "<true/>", "</array></dict></plist>", 2},
    };
    for (const Form& form : forms) {
        std::string document = form.head;
        for (int i = 0; i < 1000; ++i) {
            document += form.value;
        }
        document += form.tail;
        const auto read = [&](std::size_t maxValues) {
            return plist::readPropertyList(document, "App.entitlements",
                                           {.maxDepth = 512, .maxValues = maxValues});
        };
        try {
            (void)read(1000);
            ADD_FAILURE() << form.name << ": read past the limit";
        } catch (const plist::ParseError& error) {
            EXPECT_EQ(error.reason(), "the data expands to more than 1000 values") << form.name;
            EXPECT_EQ(error.line(), 1u) << form.name;
        }
        EXPECT_NO_THROW((void)read(1000 + form.containers)) << form.name;
    }
}

} // namespace
} // namespace kelvane::testing
