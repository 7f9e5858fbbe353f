#pragma once

#include "scanner/ProjectScanner.h"

#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvane::adoption {

// The findings a team has accepted, so CI fails only on new ones. Stored as
//   {"version": 1, "findings": [{"check": …, "finding": …}, …]}
// with one object per finding (FindingKeys.h), sorted, so the file diffs
// well under version control.
class Baseline {
public:
    static constexpr int kVersion = 1;

    // Every finding of the report.
    [[nodiscard]] static Baseline of(const ScanReport& report);
    // Throws BaselineError with `displayPath` leading its text.
    [[nodiscard]] static Baseline fromText(std::string_view text, const std::string& displayPath);

    [[nodiscard]] bool contains(const nlohmann::json& key) const;
    // Adds the other's findings, as a run over several projects records them.
    void merge(const Baseline& other);
    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    [[nodiscard]] std::string toText() const;

    friend bool operator==(const Baseline&, const Baseline&) = default;

private:
    // By the key's compact text, which nlohmann writes with sorted members.
    std::map<std::string, nlohmann::json> keys_;
};

class BaselineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Far beyond the findings of any real project: a line per finding.
inline constexpr std::size_t kMaxBaselineSize = 16 * 1024 * 1024;
inline constexpr int kMaxBaselineNesting = 16;

// The report with the baseline's findings taken out. An issue whose findings
// are all known is dropped, and its check's row passes; an issue with new
// findings stays with only their lines in its description (its evidence,
// targets and severity are the whole issue's: they are not split by line).
[[nodiscard]] ScanReport withoutKnownFindings(ScanReport report, const Baseline& baseline);

// Reads and writes the file. Throws BaselineError; a folder, FIFO or device
// is refused without blocking.
[[nodiscard]] Baseline readBaseline(const std::string& path);
void writeBaseline(const Baseline& baseline, const std::string& path);

} // namespace kelvane::adoption
