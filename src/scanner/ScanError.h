#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvane {

// Why a whole scan failed. Only a project that cannot be loaded ends a scan
// (parsingFailed); the other two cases belong to the error's vocabulary but
// nothing raises them, since a failing check is reported and skipped.
class ScanError : public std::runtime_error {
public:
    enum class Case {
        parsingFailed,
        checkFailed,
        invalidProjectURL,
    };

    // "Failed to parse project: " + the underlying error's text.
    [[nodiscard]] static ScanError parsingFailed(std::string_view underlyingDescription);
    // "Check execution failed: " + the underlying error's text.
    [[nodiscard]] static ScanError checkFailed(std::string_view underlyingDescription);
    // "Invalid project URL".
    [[nodiscard]] static ScanError invalidProjectURL();

    [[nodiscard]] Case errorCase() const noexcept { return case_; }
    // The wrapped error's own text; empty for invalidProjectURL.
    [[nodiscard]] const std::string& underlyingDescription() const noexcept { return underlying_; }

private:
    ScanError(Case errorCase, std::string_view prefix, std::string_view underlying);

    Case case_;
    std::string underlying_;
};

} // namespace kelvane
