#include "cli/ExplainCommand.h"
#include "TempDir.h"
#include "report/CheckPages.h"
#include "cli/ChecksCommand.h"
#include "report/FinishedScan.h"
#include "report/ReportExport.h"
#include "scanner/CheckRegistry.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>
#include <string>

namespace kelvane::cli {
using namespace kelvane::report;
namespace {

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The pages are compiled in; a page that changed on disk without the build
// noticing, or one that lost bytes on the way, must show here.
TEST(CheckPages, EveryCheckHasItsPageAsWrittenInDocs) {
    for (const AnyCheck& check : makeCheckRegistry()) {
        const auto page = checkPage(check.id());
        ASSERT_TRUE(page.has_value()) << check.id();
        const auto file = testing::sourceDir() / "docs" / "checks" / (check.id() + ".md");
        EXPECT_EQ(std::string(*page), readText(file)) << check.id();
    }
    EXPECT_FALSE(checkPage("signing").has_value());
    EXPECT_FALSE(checkPage("").has_value());
}

TEST(ExplainCommand, PrintsThePageOfAKnownCheck) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runExplain("signing.inconsistent", out, err), kExitClean);
    EXPECT_EQ(out.str(), std::string(*checkPage("signing.inconsistent")));
    EXPECT_TRUE(err.str().empty());
}

TEST(ExplainCommand, AnUnknownIdIsAWrongCommandLineThatListsTheIds) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runExplain("signing", out, err), kExitNotLoaded);
    EXPECT_TRUE(out.str().empty());
    EXPECT_NE(err.str().find("no check 'signing'"), std::string::npos);
    for (const CheckPage& page : checkPages()) {
        EXPECT_NE(err.str().find("  " + std::string(page.id) + "\n"), std::string::npos) << page.id;
    }
}

TEST(ChecksCommand, JsonListsEveryCheckInRunOrderWithItsTitle) {
    const std::vector<AnyCheck> checks = makeCheckRegistry();
    std::ostringstream out;
    writeCheckListJson(checks, out);
    const nlohmann::json list = nlohmann::json::parse(out.str());
    ASSERT_TRUE(list.is_array());
    ASSERT_EQ(list.size(), checks.size());
    for (std::size_t index = 0; index < checks.size(); ++index) {
        EXPECT_EQ(list[index].size(), 2U);
        EXPECT_EQ(list[index]["id"], checks[index].id());
        EXPECT_EQ(list[index]["title"], checkDisplayTitle(checks[index].id()));
    }
    EXPECT_EQ(list[0]["title"], "Watch Companion Bundle ID");
}

TEST(ReportExport, AFileNamesItsFormatByItsExtension) {
    EXPECT_EQ(exportFormatForFile("report.json"), ExportFormat::json);
    EXPECT_EQ(exportFormatForFile("/tmp/a.b/report.sarif"), ExportFormat::sarif);
    EXPECT_EQ(exportFormatForFile("report.txt"), ExportFormat::text);
    EXPECT_EQ(exportFormatForFile("report"), std::nullopt);
    EXPECT_EQ(exportFormatForFile("reports.d/report"), std::nullopt);
    EXPECT_EQ(exportFormatForFile("report.junit"), std::nullopt);
    for (const ExportFormat format :
         {ExportFormat::json, ExportFormat::sarif, ExportFormat::text}) {
        EXPECT_EQ(exportFormatForFile("r." + std::string(exportExtension(format))), format);
    }
}

} // namespace
} // namespace kelvane::cli
