#include "adoption/FindingKeys.h"

#include <algorithm>

namespace kelvane::adoption {

namespace {

constexpr std::string_view kBullet = "\u2022 ";

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> result;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        result.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return result;
}

bool namesOnly(std::string_view list, const std::vector<std::string>& configurations) {
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t comma = std::min(list.find(", ", start), list.size());
        const std::string_view name = list.substr(start, comma - start);
        if (std::find(configurations.begin(), configurations.end(), name) ==
            configurations.end()) {
            return false;
        }
        start = comma + 2;
    }
    return true;
}

nlohmann::json wholeIssueKey(const std::string& checkID, const DoctorIssue& issue) {
    nlohmann::json targets = nlohmann::json::array();
    for (const TargetRef& target : issue.affectedTargets) {
        targets.push_back(target.name);
    }
    nlohmann::json evidence = nlohmann::json::array();
    for (const EvidenceItem& item : issue.evidence) {
        evidence.push_back({item.key, item.value});
    }
    return {{"check", checkID}, {"issue", issue.id}, {"targets", targets}, {"evidence", evidence}};
}

} // namespace

std::string findingText(std::string_view line, const std::vector<std::string>& configurations) {
    if (line.starts_with(kBullet)) {
        line.remove_prefix(kBullet.size());
    }
    const std::size_t open = line.rfind(" (");
    if (open != std::string_view::npos && line.ends_with(')') &&
        namesOnly(line.substr(open + 2, line.size() - open - 3), configurations)) {
        line = line.substr(0, open);
    }
    return std::string(line);
}

std::vector<IssueFinding> issueFindings(const std::string& checkID, const DoctorIssue& issue) {
    std::vector<IssueFinding> findings;
    if (issue.severity == Severity::success) {
        return findings;
    }
    if (!issue.configurations.empty()) {
        const std::vector<std::string_view> text = lines(issue.description);
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i].starts_with(kBullet)) {
                findings.push_back(IssueFinding{
                    i, {{"check", checkID}, {"finding", findingText(text[i], issue.configurations)}}});
            }
        }
    }
    // A check that states its one finding in prose.
    if (findings.empty()) {
        findings.push_back(IssueFinding{std::nullopt, wholeIssueKey(checkID, issue)});
    }
    return findings;
}

} // namespace kelvane::adoption
