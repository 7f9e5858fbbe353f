#include "cli/ReportExport.h"

#include "cli/EvidenceFiles.h"
#include "cli/FinishedScan.h"
#include "cli/ModelJson.h"
#include "cli/Reading.h"
#include "cli/SarifReport.h"
#include "cli/ScanJson.h"
#include "cli/ScanText.h"

#include <exception>

namespace kelvane::cli {

namespace {

EvidenceFiles evidenceFilesOf(const std::string& projectPath, bool asBuilt) {
    try {
        Reading reading;
        reading.asBuilt = asBuilt;
        return EvidenceFiles(loadProject(projectPath, reading));
    } catch (const std::exception&) {
        // Gone or changed since the scan: the results still stand, unlocated.
        return EvidenceFiles();
    }
}

} // namespace

std::string_view exportExtension(ExportFormat format) noexcept {
    switch (format) {
    case ExportFormat::json:
        return "json";
    case ExportFormat::sarif:
        return "sarif";
    case ExportFormat::text:
        break;
    }
    return "txt";
}

std::optional<ExportFormat> exportFormatForFile(std::string_view fileName) noexcept {
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view extension = fileName.substr(dot + 1);
    for (const ExportFormat format :
         {ExportFormat::json, ExportFormat::sarif, ExportFormat::text}) {
        if (extension == exportExtension(format)) {
            return format;
        }
    }
    return std::nullopt;
}

void writeExportedReport(const ProjectScanResult& result, ExportFormat format, bool asBuilt,
                         std::ostream& out) {
    const FinishedScan scan = finishedScan(result);
    switch (format) {
    case ExportFormat::json:
        out << toDocument(toJson(scan));
        return;
    case ExportFormat::sarif:
        writeSarifReport(scan, evidenceFilesOf(scan.projectPath, asBuilt), out);
        return;
    case ExportFormat::text:
        writeScanText(scan, out);
        return;
    }
}

} // namespace kelvane::cli
