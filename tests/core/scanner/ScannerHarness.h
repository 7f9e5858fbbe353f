#pragma once

#include "FakeChecks.h"
#include "ProjectFiles.h"
#include "TempDir.h"
#include "scanner/ProjectScanner.h"
#include "scanner/VirtualClockLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace kelvane::testing {

// A scanner on a virtual clock over a project with no targets; the fakes do
// the work.
class ScannerHarness : public ::testing::Test {
protected:
    TempDir dir;
    std::string projectURL = projectWithoutTargets();
    VirtualClockLoop loop;
    std::ostringstream failures;
    std::shared_ptr<Journal> journal = std::make_shared<Journal>();

    std::string projectWithoutTargets() {
        dir.write("App.xcodeproj/project.pbxproj", pbxproj(""));
        return dir.file("App.xcodeproj");
    }

    AnyCheck returning(const std::string& id, Severity severity) {
        return FakeCheck{id, FakeCheck::Behaviour::issue, severity, "", journal, &loop};
    }
    AnyCheck returningNone(const std::string& id) {
        return FakeCheck{id, FakeCheck::Behaviour::none, Severity::success, "", journal, &loop};
    }
    AnyCheck throwing(const std::string& id, const std::string& text) {
        return FakeCheck{id,   FakeCheck::Behaviour::failure, Severity::success, text, journal,
                         &loop};
    }

    // Runs one scan to its end; the completion, if it came.
    std::optional<ScanCompletion> scan(std::vector<AnyCheck> checks, const std::string& url = {}) {
        ProjectScanner scanner(loop, failures, std::move(checks));
        std::optional<ScanCompletion> completion;
        scanner.scan(
            url.empty() ? projectURL : url,
            [this](const std::string& id, const std::optional<DoctorIssue>& issue) {
                journal->push_back(stamp(loop) + "progress " + id + " -> " +
                                   (issue ? issue->id : "none"));
            },
            [&](ScanCompletion result) {
                journal->push_back(stamp(loop) + "complete");
                completion = std::move(result);
            });
        EXPECT_TRUE(journal->empty()) << "scan() must not call back before it returns";
        loop.runUntilIdle();
        return completion;
    }

    static std::vector<std::string> issueIDs(const ScanCompletion& completion) {
        std::vector<std::string> ids;
        for (const DoctorIssue& issue : std::get<ScanReport>(completion).issues) {
            ids.push_back(issue.id);
        }
        return ids;
    }
};

} // namespace kelvane::testing
