#include "report/ReportExport.h"

#include "report/EvidenceLocations.h"
#include "report/FinishedScan.h"
#include "report/ModelJson.h"
#include "report/SarifReport.h"
#include "report/ScanJson.h"
#include "report/ScanText.h"

#include <exception>

namespace kelvane::report {

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

void writeExportedReport(const ProjectScanResult& result, ExportFormat format, std::ostream& out) {
    FinishedScan scan = finishedScan(result);
    const EvidenceLocations locations(result.project);
    placeOrigins(scan.report, locations);
    switch (format) {
    case ExportFormat::json:
        out << toDocument(toJson(scan));
        return;
    case ExportFormat::sarif:
        writeSarifReport(scan, locations, out);
        return;
    case ExportFormat::text:
        writeScanText(scan, out);
        return;
    }
}

} // namespace kelvane::report
