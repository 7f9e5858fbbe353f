#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"
#include "plist/Value.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

// As-built outcome tables: the issue a project must produce, by id, severity
// and title, and one finding line its description must hold.
namespace kelvane::test {

// An Info.plist or entitlements dictionary written inline.
[[nodiscard]] inline plist::Dictionary plistOf(std::vector<plist::DictionaryEntry> entries) {
    return plist::Dictionary(std::move(entries));
}

struct BuiltCase {
    std::string name;
    ProjectContext project;
    std::string id;
    Severity severity;
    std::string title;
    // Empty when only the headline matters.
    std::string line;
};

template <typename Check>
void expectBuiltOutcomes(const Check& check, const std::vector<BuiltCase>& cases) {
    for (const BuiltCase& c : cases) {
        SCOPED_TRACE(c.name);
        const std::optional<DoctorIssue> issue = check.run(c.project);
        if (!issue.has_value()) {
            ADD_FAILURE() << "no issue";
            continue;
        }
        EXPECT_EQ(issue->id, c.id);
        EXPECT_EQ(issue->severity, c.severity);
        EXPECT_EQ(issue->title, c.title);
        EXPECT_NE(issue->description.find(c.line), std::string::npos) << issue->description;
    }
}

} // namespace kelvane::test
