#include "cli/CombinedReport.h"

#include "cli/CombinedJUnit.h"
#include "cli/CombinedSarif.h"
#include "report/ModelJson.h"
#include "model/FilePath.h"

#include <algorithm>
#include <string_view>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

namespace {

using Json = nlohmann::ordered_json;

std::string count(std::size_t n, std::string_view one, std::string_view many) {
    return std::to_string(n) + " " + std::string(n == 1 ? one : many);
}

void writeText(const std::vector<ProjectReport>& projects, const TextStyle& style,
               std::ostream& out) {
    std::size_t notLoaded = 0;
    for (const ProjectReport& project : projects) {
        if (project.failure) {
            ++notLoaded;
            out << style.paint(Tone::failure, "\u2717 ")
                << style.bold("Could not scan " + std::string(path::stem(project.project.path)))
                << " (" << project.project.path << ")\n  " << *project.failure << '\n';
        } else {
            out << project.report;
        }
        out << '\n';
    }
    std::string summary = count(projects.size(), "project", "projects") + " \u2022 " +
                          std::to_string(projects.size() - notLoaded) + " scanned";
    if (notLoaded > 0) {
        summary += " \u2022 " + std::to_string(notLoaded) + " not loaded";
    }
    out << style.bold(summary) << '\n';
}

Json combinedJson(const std::string& path, const std::vector<ProjectReport>& projects) {
    Json entries = Json::array();
    for (const ProjectReport& project : projects) {
        Json entry;
        if (project.failure) {
            entry["project"] = {{"path", project.project.path},
                                {"name", path::stem(project.project.path)}};
            entry["scanDuration"] = nullptr;
            entry["checks"] = nullptr;
            entry["issues"] = nullptr;
        } else {
            entry = Json::parse(project.report);
        }
        entry["error"] = textOrNull(project.failure);
        entries.push_back(std::move(entry));
    }
    Json json;
    json["path"] = path;
    json["projects"] = std::move(entries);
    return json;
}

// The runner splits a command at line breaks and reads '%' as an escape.
std::string annotationData(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '%') {
            result += "%25";
        } else if (c == '\r') {
            result += "%0D";
        } else if (c == '\n') {
            result += "%0A";
        } else {
            result += c;
        }
    }
    return result;
}

// A diagnostic is one line to Xcode.
std::string oneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::replace(text.begin(), text.end(), '\r', ' ');
    return text;
}

void writeLines(const std::vector<ProjectReport>& projects, ScanFormat format,
                std::ostream& out) {
    for (const ProjectReport& project : projects) {
        if (!project.failure) {
            out << project.report;
        } else if (format == ScanFormat::github) {
            out << "::error title=Project not scanned::"
                << annotationData(project.project.path + ": " + *project.failure) << '\n';
        } else {
            out << project.project.path << ": error: " << oneLine(*project.failure) << '\n';
        }
    }
}

} // namespace

void writeCombinedReport(const std::string& path, const std::vector<ProjectReport>& projects,
                         ScanFormat format, const TextStyle& style, std::ostream& out) {
    switch (format) {
    case ScanFormat::text:
        writeText(projects, style, out);
        return;
    case ScanFormat::json:
        out << toDocument(combinedJson(path, projects));
        return;
    case ScanFormat::sarif:
        out << toDocument(combinedSarif(projects));
        return;
    case ScanFormat::junit:
        writeCombinedJUnit(projects, out);
        return;
    case ScanFormat::github:
    case ScanFormat::xcode:
        writeLines(projects, format, out);
        return;
    }
}

} // namespace kelvane::cli
