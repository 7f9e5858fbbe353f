#include "adoption/Baseline.h"

#include "adoption/FindingKeys.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace kelvane::adoption {

namespace {

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

// The issue less its known findings; none when nothing new is left.
std::optional<DoctorIssue> newPart(const std::string& checkID, const DoctorIssue& issue,
                                   const Baseline& baseline) {
    const std::vector<IssueFinding> findings = issueFindings(checkID, issue);
    std::vector<std::size_t> knownLines;
    std::size_t known = 0;
    for (const IssueFinding& finding : findings) {
        if (baseline.contains(finding.key)) {
            ++known;
            if (finding.line) {
                knownLines.push_back(*finding.line);
            }
        }
    }
    if (findings.empty() || known == 0) {
        return issue;
    }
    if (known == findings.size()) {
        return std::nullopt;
    }
    DoctorIssue remaining = issue;
    std::string description;
    const std::vector<std::string> lines = splitLines(issue.description);
    bool first = true;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (std::find(knownLines.begin(), knownLines.end(), i) == knownLines.end()) {
            description += (first ? "" : "\n") + lines[i];
            first = false;
        }
    }
    remaining.description = std::move(description);
    return remaining;
}

} // namespace

Baseline Baseline::of(const ScanReport& report) {
    Baseline baseline;
    for (const CheckOutcome& outcome : report.checks) {
        if (!outcome.issue) {
            continue;
        }
        for (IssueFinding& finding : issueFindings(outcome.checkID, *outcome.issue)) {
            baseline.keys_.emplace(finding.key.dump(), std::move(finding.key));
        }
    }
    return baseline;
}

void Baseline::merge(const Baseline& other) {
    keys_.insert(other.keys_.begin(), other.keys_.end());
}

Baseline Baseline::fromText(std::string_view text, const std::string& displayPath) {
    const auto fail = [&](const std::string& why) {
        return BaselineError(displayPath + ": " + why);
    };
    nlohmann::json document;
    try {
        document = nlohmann::json::parse(
            text, [&](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
                if (depth > kMaxBaselineNesting) {
                    throw fail("nested too deeply for a baseline");
                }
                return true;
            });
    } catch (const nlohmann::json::exception& error) {
        throw fail(std::string("not a baseline: ") + error.what());
    }
    if (!document.is_object() || !document.contains("version")) {
        throw fail("not a baseline: expected {\"version\": 1, \"findings\": [...]}");
    }
    const nlohmann::json& version = document["version"];
    if (!version.is_number_integer() || version.get<long long>() != kVersion) {
        throw fail("baseline version " + version.dump() + " is not one this kelvane reads (1); "
                   "write it again with --write-baseline");
    }
    const auto findings = document.find("findings");
    if (findings == document.end() || !findings->is_array()) {
        throw fail("not a baseline: \"findings\" must be a list");
    }
    Baseline baseline;
    for (const nlohmann::json& key : *findings) {
        if (!key.is_object() || !key.contains("check")) {
            throw fail("not a baseline: each finding must be an object naming its check");
        }
        baseline.keys_.emplace(key.dump(), key);
    }
    return baseline;
}

bool Baseline::contains(const nlohmann::json& key) const {
    return keys_.contains(key.dump());
}

std::string Baseline::toText() const {
    nlohmann::json findings = nlohmann::json::array();
    for (const auto& [text, key] : keys_) {
        findings.push_back(key);
    }
    const nlohmann::json document{{"version", kVersion}, {"findings", std::move(findings)}};
    return document.dump(2) + "\n";
}

ScanReport withoutKnownFindings(ScanReport report, const Baseline& baseline) {
    std::vector<bool> matched(report.issues.size(), false);
    std::vector<bool> dropped(report.issues.size(), false);
    for (CheckOutcome& outcome : report.checks) {
        if (!outcome.issue) {
            continue;
        }
        std::optional<DoctorIssue> remaining = newPart(outcome.checkID, *outcome.issue, baseline);
        // The report lists the same issue again, sorted by severity.
        for (std::size_t i = 0; i < report.issues.size(); ++i) {
            if (!matched[i] && report.issues[i] == *outcome.issue) {
                matched[i] = true;
                dropped[i] = !remaining;
                if (remaining) {
                    report.issues[i] = *remaining;
                }
                break;
            }
        }
        outcome.issue = std::move(remaining);
    }
    std::vector<DoctorIssue> kept;
    for (std::size_t i = 0; i < report.issues.size(); ++i) {
        if (!dropped[i]) {
            kept.push_back(std::move(report.issues[i]));
        }
    }
    report.issues = std::move(kept);
    return report;
}

Baseline readBaseline(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (fs::is_regular_file(path, error)) {
        const auto size = fs::file_size(path, error);
        if (!error && size > kMaxBaselineSize) {
            throw BaselineError(path + ": larger than " +
                                std::to_string(kMaxBaselineSize / (1024 * 1024)) +
                                " MiB; not a baseline");
        }
    }
    std::string text;
    try {
        text = plist::readFile(path);
    } catch (const plist::FileReadError& failure) {
        throw BaselineError(failure.what());
    }
    return Baseline::fromText(text, path);
}

void writeBaseline(const Baseline& baseline, const std::string& path) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (file) {
        file << baseline.toText();
        file.flush();
    }
    if (!file) {
        throw BaselineError(path + ": " + std::generic_category().message(errno));
    }
}

} // namespace kelvane::adoption
