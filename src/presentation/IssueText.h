#pragma once

#include "diagnostics/DoctorIssue.h"
#include "presentation/ScanPresentation.h"

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

// One issue in plain text, as the terminal prints it under a scan and as the
// window copies it: both front-ends share this one wording.
namespace kelvane::presentation {

// ✓, ! or ✗: the terminal's glyph for a symbol a row's circle draws
// ("checkmark", "exclamationmark", "xmark").
[[nodiscard]] std::string_view symbolGlyph(std::string_view symbol) noexcept;
[[nodiscard]] std::string_view severityGlyph(Severity severity) noexcept;

// How the text is decorated; plain when a function is left empty. The
// terminal passes its colours and bold here, the clipboard nothing.
struct TextDecoration {
    std::function<std::string(Tone, std::string_view)> paint{};
    std::function<std::string(std::string_view)> bold{};
};

// The issue's heading line, description, impact, evidence, affected targets
// and fix, preceded by an empty line.
void writeIssueText(const DoctorIssue& issue, std::ostream& out,
                    const TextDecoration& decoration = {});

// The same without the leading empty line, for the clipboard.
[[nodiscard]] std::string issueText(const DoctorIssue& issue);

} // namespace kelvane::presentation
