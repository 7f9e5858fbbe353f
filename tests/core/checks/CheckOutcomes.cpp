#include "CheckOutcomes.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace kelvane::test {
namespace {

std::string optionalText(const std::optional<std::string>& text) {
    return text ? "'" + *text + "'" : "(absent)";
}

std::string describe(const EntitlementValue& value) {
    return std::string(caseName(value)) + " " +
           std::visit([](const auto& payload) { return testing::PrintToString(payload); },
                      value.value);
}

std::string describe(const FixAction& action) {
    std::ostringstream out;
    out << caseName(action) << " ";
    std::visit(
        [&](const auto& a) {
            using Action = std::decay_t<decltype(a)>;
            if constexpr (std::is_same_v<Action, UpdatePlistKey>) {
                out << a.targetName << " / " << a.fileName << " / " << a.key << " = " << a.newValue;
            } else if constexpr (std::is_same_v<Action, SetBuildSetting>) {
                out << optionalText(a.targetName) << " / " << a.configName << " / " << a.settingName
                    << " = " << a.value;
            } else if constexpr (std::is_same_v<Action, UpdateEntitlement>) {
                out << a.targetName << " / " << a.fileName << " / " << a.key << " = "
                    << describe(a.newValue);
            } else if constexpr (std::is_same_v<Action, UpdateSchemeSetting>) {
                out << a.schemeName << " / " << a.buildConfiguration;
            } else if constexpr (std::is_same_v<Action, AddFrameworkReference>) {
                out << a.targetName << " / " << a.frameworkName;
            } else {
                for (const auto& step : a.steps) {
                    out << "\n      - " << step;
                }
            }
        },
        action);
    return out.str();
}

} // namespace

Target::Target(std::string name, TargetType type) {
    target_.name = std::move(name);
    target_.type = type;
}

Target& Target::bundleID(std::string value) {
    target_.bundleIdentifier = std::move(value);
    return *this;
}

Target& Target::deploymentTarget(std::string value) {
    target_.deploymentTarget = std::move(value);
    return *this;
}

Target& Target::team(std::string value) {
    target_.developmentTeam = std::move(value);
    return *this;
}

Target& Target::signStyle(std::string value) {
    target_.codeSignStyle = std::move(value);
    return *this;
}

Target& Target::frameworks(std::vector<std::string> paths) {
    target_.linkedFrameworks = std::move(paths);
    return *this;
}

ProjectContext project(std::vector<TargetContext> targets) {
    return ProjectContext{"Fixture.xcodeproj", std::move(targets)};
}

std::string describe(const DoctorIssue& issue) {
    std::ostringstream out;
    out << "id: " << issue.id << "\nseverity: " << rawValue(issue.severity)
        << "\ntitle: " << issue.title << "\ndescription:\n"
        << issue.description << "\nimpact: " << issue.impact << "\nevidence:";
    for (const auto& item : issue.evidence) {
        out << "\n  " << caseName(item.source) << " " << locationDescription(item.source) << " | "
            << item.key << " = " << item.value << " | expected "
            << optionalText(item.expectedValue);
    }
    out << "\naffected:";
    for (const auto& target : issue.affectedTargets) {
        out << "\n  " << target.name << " [" << rawValue(target.type) << "] "
            << optionalText(target.bundleID);
    }
    if (!issue.fix) {
        out << "\nfix: (none)";
        return out.str();
    }
    out << "\nfix: " << issue.fix->summary << " [" << rawValue(issue.fix->safety) << "] warning "
        << optionalText(issue.fix->warningMessage);
    for (const auto& step : issue.fix->steps) {
        out << "\n  step: " << step.description << "\n    " << describe(step.action);
    }
    return out.str();
}

void expectOutcomes(const AnyCheck& check, const std::vector<OutcomeCase>& cases) {
    for (const auto& outcome : cases) {
        SCOPED_TRACE(outcome.name);
        const auto issue = check.run(outcome.project);
        if (issue) {
            EXPECT_EQ(issue->id, check.id()) << "an issue carries its check's id";
        }
        if (std::holds_alternative<NoIssue>(outcome.expected)) {
            EXPECT_FALSE(issue.has_value()) << describe(*issue);
            continue;
        }
        ASSERT_TRUE(issue.has_value()) << "the check returned no issue";
        if (const auto* headline = std::get_if<Headline>(&outcome.expected)) {
            EXPECT_EQ(issue->id, headline->id);
            EXPECT_EQ(rawValue(issue->severity), rawValue(headline->severity));
            EXPECT_EQ(issue->title, headline->title);
            continue;
        }
        const auto& expected = std::get<DoctorIssue>(outcome.expected);
        EXPECT_EQ(describe(*issue), describe(expected));
        EXPECT_TRUE(*issue == expected) << "issues differ in a way the rendering does not show";
    }
}

} // namespace kelvane::test
