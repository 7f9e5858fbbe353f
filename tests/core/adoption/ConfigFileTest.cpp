#include "adoption/ConfigFile.h"

#include "TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelvane::adoption {
namespace {

struct GoodFile {
    std::string name;
    std::string text;
    ScanConfig expected;
};

TEST(ConfigFile, ReadsEveryOption) {
    const std::vector<GoodFile> cases{
        {"empty", "", {}},
        {"comments only", "# nothing yet\n", {}},
        {"every key",
         "skip: [signing.inconsistent]\n"
         "only:\n  - a.b\n  - 'c.d'\n"
         "exclude: [Pods/, ./Vendor/Lib]\n"
         "baseline: ci/baseline.json\n"
         "reading: as-built\n"
         "configuration: Release\n",
         {.skip = {{"signing.inconsistent", 1}},
          .only = {{"a.b", 3}, {"c.d", 4}},
          .exclude = {"Pods", "Vendor/Lib"},
          .baseline = ConfigValue{"ci/baseline.json", 6},
          .asBuilt = true,
          .configuration = ConfigValue{"Release", 8}}},
        {"literal reading", "reading: literal\n", {.asBuilt = false}},
        {"an empty list", "skip:\n", {}},
    };
    for (const GoodFile& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(parseScanConfig(c.text, ".kelvane.yml"), c.expected);
    }
}

struct BadFile {
    std::string text;
    std::string error;
};

TEST(ConfigFile, NamesTheLineOfWhatIsWrong) {
    const std::vector<BadFile> cases{
        {"skip: []\nonly: []\nskp: [a]\n",
         ".kelvane.yml:3: unknown key 'skp' (known: skip, only, exclude, baseline, reading, "
         "configuration)"},
        {"reading: as built\n", ".kelvane.yml:1: reading must be literal or as-built, not 'as built'"},
        {"reading:\n", ".kelvane.yml:1: 'reading' takes literal or as-built"},
        {"skip: signing.inconsistent\n",
         ".kelvane.yml:1: 'skip' takes a list, like 'skip: [check.id]'"},
        {"exclude: {Pods: yes}\n", ".kelvane.yml:1: 'exclude' takes a list, like 'exclude: [Pods]'"},
        {"only:\n  - a\n  - [b]\n", ".kelvane.yml:3: each item of 'only' must be a single word"},
        {"exclude: [../other]\n", ".kelvane.yml:1: exclude takes folders inside this one, not '../other'"},
        {"exclude:\n  - /etc\n", ".kelvane.yml:2: exclude takes folders inside this one, not '/etc'"},
        {"baseline: [a, b]\n",
         ".kelvane.yml:1: 'baseline' takes a file, like 'baseline: kelvane-baseline.json'"},
        {"skip: [a]\nskip: [b]\n", ".kelvane.yml:2: 'skip' is set twice"},
        {"- skip\n", ".kelvane.yml:1: expected options as 'key: value' lines, like 'skip: [check.id]'"},
        {"? [a]\n: b\n", ".kelvane.yml:1: an option's name must be a plain word"},
        {"skip: [a\nonly: b\n", ".kelvane.yml:2: end of sequence flow not found"},
        {"skip: []\n---\nonly: []\n", ".kelvane.yml: holds more than one YAML document"},
        {std::string(20, '[') + std::string(20, ']'), ".kelvane.yml:1: nested more than 16 levels deep"},
    };
    for (const BadFile& c : cases) {
        SCOPED_TRACE(c.text);
        try {
            (void)parseScanConfig(c.text, ".kelvane.yml");
            ADD_FAILURE() << "read without error";
        } catch (const ConfigError& error) {
            EXPECT_EQ(std::string(error.what()), c.error);
        }
    }
}

TEST(ConfigFile, IsLookedForInTheFolderAndPointsTheBaselineThere) {
    const testing::TempDir dir;
    EXPECT_EQ(readScanConfig(dir.path().string()), std::nullopt);
    dir.write(".kelvane.yml", "baseline: ci/known.json\n");
    const auto config = readScanConfig(dir.path().string());
    ASSERT_TRUE(config && config->baseline);
    EXPECT_EQ(config->baseline->text, dir.file("ci/known.json"));
    EXPECT_EQ(configDisplayPath("."), ".kelvane.yml");
}

} // namespace
} // namespace kelvane::adoption
