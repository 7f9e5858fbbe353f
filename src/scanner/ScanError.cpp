#include "scanner/ScanError.h"

namespace kelvane {

ScanError::ScanError(Case errorCase, std::string_view prefix, std::string_view underlying)
    : std::runtime_error(std::string(prefix) + std::string(underlying)), case_(errorCase),
      underlying_(underlying) {}

ScanError ScanError::parsingFailed(std::string_view underlyingDescription) {
    return {Case::parsingFailed, "Failed to parse project: ", underlyingDescription};
}

ScanError ScanError::checkFailed(std::string_view underlyingDescription) {
    return {Case::checkFailed, "Check execution failed: ", underlyingDescription};
}

ScanError ScanError::invalidProjectURL() {
    return {Case::invalidProjectURL, "Invalid project URL", ""};
}

} // namespace kelvane
