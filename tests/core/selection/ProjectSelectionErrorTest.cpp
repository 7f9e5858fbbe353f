#include "selection/ProjectSelectionError.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using Case = ProjectSelectionError::Case;

TEST(ProjectSelectionError, DescriptionsAreTheStartScreenTexts) {
    const struct {
        ProjectSelectionError error;
        const char* text;
    } rows[] = {
        {ProjectSelectionError(Case::multipleWorkspacesFound, "A.xcworkspace, B.xcworkspace"),
         "Multiple workspaces found: A.xcworkspace, B.xcworkspace\n\n"
         "Please select a specific workspace directly."},
        {ProjectSelectionError(Case::multipleProjectsFound, "A.xcodeproj, B.xcodeproj"),
         "Multiple projects found: A.xcodeproj, B.xcodeproj\n\n"
         "Please select a specific project directly."},
        {ProjectSelectionError(Case::pathDoesNotExist), "The selected path does not exist."},
        {ProjectSelectionError(Case::invalidSelection),
         "Please select an .xcodeproj, .xcworkspace, or a folder containing a project."},
        {ProjectSelectionError(Case::cannotEnumerateFolder),
         "Cannot read the contents of the selected folder."},
        {ProjectSelectionError(Case::noProjectsFound),
         "No .xcodeproj or .xcworkspace found in the selected folder."},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(std::string(row.error.what()), row.text);
    }
    EXPECT_EQ(rows[0].error.names(), "A.xcworkspace, B.xcworkspace");
    EXPECT_EQ(rows[0].error.errorCase(), Case::multipleWorkspacesFound);
    EXPECT_EQ(rows[2].error.names(), "");
}

} // namespace
} // namespace kelvane
