#include "settings/UnicodeLowercase.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

struct LowercaseCase {
    const char* name;
    std::string input;
    std::string expected;
};

class UnicodeLowercase : public testing::TestWithParam<LowercaseCase> {};

TEST_P(UnicodeLowercase, MapsEveryCharacterOnItsOwn) {
    EXPECT_EQ(lowercasedUnicode(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, UnicodeLowercase,
    testing::Values(LowercaseCase{"ascii", "My App 2", "my app 2"},
                    LowercaseCase{"latin1", "ÀÉÎÕÜÞ ß×", "àéîõüþ ß×"},
                    LowercaseCase{"latinExtendedA", "ĀĐĲŁŒŸŽ", "āđĳłœÿž"},
                    // A Σ at the end of a word stays σ: the final-sigma rule is not applied.
                    LowercaseCase{"greekWithoutFinalSigma", "ΟΔΥΣΣΕΥΣ Ά", "οδυσσευσ ά"},
                    LowercaseCase{"cyrillic", "ЁЖЯ ЀЏ Ґ", "ёжя ѐџ ґ"},
                    // The one lowercase mapping that grows: i followed by U+0307.
                    LowercaseCase{"capitalIWithDot", "İstanbul", "i\xCC\x87stanbul"},
                    LowercaseCase{"signsAndTitlecase", "\u212A\u212B ǅ", "kå ǆ"},
                    LowercaseCase{"outsideBasicPlane", "\U00010400\U0001E900",
                                  "\U00010428\U0001E922"},
                    LowercaseCase{"uncasedUnchanged", "漢字 😀 \t-", "漢字 😀 \t-"},
                    // Truncated, overlong and surrogate sequences are copied byte for byte.
                    LowercaseCase{"malformedBytesKept",
                                  "A\xFF\xC0\xAF"
                                  "B\xED\xA0\x80\xE2\x82",
                                  "a\xFF\xC0\xAF"
                                  "b\xED\xA0\x80\xE2\x82"}),
    [](const auto& entry) { return std::string(entry.param.name); });

} // namespace
} // namespace kelvane
