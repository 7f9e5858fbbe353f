#include "ScannerHarness.h"
#include "parser/ParserError.h"

namespace kelvane::testing {
namespace {

using ScanFailure = ScannerHarness;

TEST_F(ScanFailure, ProjectsThatDoNotLoadFailTheScanBeforeAnyCheck) {
    dir.write("NoFile.xcodeproj/README", "");
    dir.write("Garbage.xcodeproj/project.pbxproj", "{ objects = ");
    dir.write("Folder.xcodeproj/project.pbxproj/inner", "");
    const std::vector<std::pair<std::string, std::string>> cases{
        {dir.file("App.txt"), "Invalid .xcodeproj or .xcworkspace path"},
        {dir.file("NoFile.xcodeproj"), "project.pbxproj not found"},
        // The reader's and the file system's own texts pass through.
        {dir.file("Garbage.xcodeproj"), dir.file("Garbage.xcodeproj/project.pbxproj") + ":1:"},
        {dir.file("Folder.xcodeproj"), dir.file("Folder.xcodeproj/project.pbxproj") + ": "},
    };
    for (const auto& [url, underlying] : cases) {
        journal->clear();
        const auto completion = scan({returning("a", Severity::error)}, url);
        ASSERT_TRUE(completion) << url;
        ASSERT_TRUE(std::holds_alternative<ScanError>(*completion)) << url;
        const ScanError& error = std::get<ScanError>(*completion);
        EXPECT_EQ(error.errorCase(), ScanError::Case::parsingFailed);
        EXPECT_EQ(std::string(error.what()).rfind("Failed to parse project: " + underlying, 0), 0U)
            << error.what();
        EXPECT_EQ(std::string(error.what()),
                  "Failed to parse project: " + error.underlyingDescription());
        // No check ran and nothing was reported.
        EXPECT_EQ(*journal, Journal{"0 complete"}) << url;
    }
    EXPECT_EQ(failures.str(), "");
}

TEST(ScanErrorText, EachCaseHasItsFixedDescription) {
    const ParserError parserError(ParserError::Case::pbxprojNotFound);
    const std::vector<std::tuple<ScanError, ScanError::Case, std::string>> cases{
        {ScanError::parsingFailed(parserError.what()), ScanError::Case::parsingFailed,
         "Failed to parse project: project.pbxproj not found"},
        {ScanError::checkFailed("bad"), ScanError::Case::checkFailed,
         "Check execution failed: bad"},
        {ScanError::invalidProjectURL(), ScanError::Case::invalidProjectURL, "Invalid project URL"},
    };
    for (const auto& [error, errorCase, text] : cases) {
        EXPECT_EQ(error.errorCase(), errorCase);
        EXPECT_EQ(std::string(error.what()), text);
    }
}

} // namespace
} // namespace kelvane::testing
