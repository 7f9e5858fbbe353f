#pragma once

#include "scanner/ProjectScanResult.h"

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace kelvane::report {

// The reports a finished scan can be saved as outside the terminal, each
// written by the terminal's own writer.
enum class ExportFormat { json, sarif, text };

// The usual file extension of a format, without the dot: "json", "sarif",
// "txt"; and the format a file name's extension asks for, if any.
[[nodiscard]] std::string_view exportExtension(ExportFormat format) noexcept;
[[nodiscard]] std::optional<ExportFormat> exportFormatForFile(std::string_view fileName) noexcept;

// Writes `result` as `format`, locating evidence in the project the scan
// read. The text is the terminal's, without colour.
void writeExportedReport(const ProjectScanResult& result, ExportFormat format, std::ostream& out);

} // namespace kelvane::report
