#include "cli/CombinedJUnit.h"

#include "cli/JUnitReport.h"

#include "model/FilePath.h"

#include <expat.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace kelvane::cli {

namespace {

struct Totals {
    long tests = 0;
    long failures = 0;
    long errors = 0;
    long skipped = 0;
    double time = 0;
};

// One report read back: the totals of its <testsuites> and the bytes of each
// <testsuite> element, copied rather than rebuilt so that the suites stay
// exactly what the single-project writer makes of a scan.
struct ReadBack {
    std::string_view document;
    Totals totals;
    std::vector<std::string_view> suites;
    int depth = 0;
    XML_Index suiteStart = 0;
    XML_Index suiteTagEnd = 0;
    XML_Parser parser = nullptr;
};

const char* attribute(const XML_Char** attributes, const char* name) {
    for (std::size_t i = 0; attributes[i] != nullptr; i += 2) {
        if (std::strcmp(attributes[i], name) == 0) {
            return attributes[i + 1];
        }
    }
    return "0";
}

void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto& reading = *static_cast<ReadBack*>(data);
    ++reading.depth;
    if (reading.depth == 1 && std::strcmp(name, "testsuites") == 0) {
        reading.totals.tests = std::strtol(attribute(attributes, "tests"), nullptr, 10);
        reading.totals.failures = std::strtol(attribute(attributes, "failures"), nullptr, 10);
        reading.totals.errors = std::strtol(attribute(attributes, "errors"), nullptr, 10);
        reading.totals.skipped = std::strtol(attribute(attributes, "skipped"), nullptr, 10);
        reading.totals.time = std::strtod(attribute(attributes, "time"), nullptr);
    } else if (reading.depth == 2 && std::strcmp(name, "testsuite") == 0) {
        reading.suiteStart = XML_GetCurrentByteIndex(reading.parser);
        reading.suiteTagEnd = reading.suiteStart + XML_GetCurrentByteCount(reading.parser);
    }
}

void XMLCALL onEnd(void* data, const XML_Char* name) {
    auto& reading = *static_cast<ReadBack*>(data);
    if (reading.depth == 2 && std::strcmp(name, "testsuite") == 0) {
        // An element written as <testsuite/> has no end tag of its own.
        const int count = XML_GetCurrentByteCount(reading.parser);
        const XML_Index end =
            count > 0 ? XML_GetCurrentByteIndex(reading.parser) + count : reading.suiteTagEnd;
        reading.suites.push_back(reading.document.substr(
            static_cast<std::size_t>(reading.suiteStart),
            static_cast<std::size_t>(end - reading.suiteStart)));
    }
    --reading.depth;
}

// The report is this program's own writing; one that does not read back
// contributes nothing rather than a broken document.
ReadBack read(std::string_view document) {
    ReadBack reading;
    reading.document = document;
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate("UTF-8"), &XML_ParserFree);
    if (!parser || document.size() > INT_MAX) {
        return {};
    }
    reading.parser = parser.get();
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), &onStart, &onEnd);
    if (XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE) ==
        XML_STATUS_ERROR) {
        return {};
    }
    return reading;
}

std::string notLoadedSuite(const ProjectReport& project) {
    const std::string suite =
        xmlAttributeText("kelvane." + std::string(path::stem(project.project.path)));
    return "<testsuite name=\"" + suite +
           "\" tests=\"1\" failures=\"0\" errors=\"1\" skipped=\"0\" time=\"0.000\">\n"
           "    <properties>\n"
           "      <property name=\"projectPath\" value=\"" +
           xmlAttributeText(project.project.path) +
           "\"/>\n"
           "    </properties>\n"
           "    <testcase classname=\"" +
           suite +
           "\" name=\"Load project\" id=\"load\">\n"
           "      <error type=\"notLoaded\" message=\"" +
           xmlAttributeText(*project.failure) +
           "\"/>\n"
           "    </testcase>\n"
           "  </testsuite>";
}

} // namespace

void writeCombinedJUnit(const std::vector<ProjectReport>& projects, std::ostream& out) {
    Totals totals;
    std::vector<std::string> suites;
    for (const ProjectReport& project : projects) {
        if (project.failure) {
            ++totals.tests;
            ++totals.errors;
            suites.push_back(notLoadedSuite(project));
            continue;
        }
        const ReadBack reading = read(project.report);
        totals.tests += reading.totals.tests;
        totals.failures += reading.totals.failures;
        totals.errors += reading.totals.errors;
        totals.skipped += reading.totals.skipped;
        totals.time += reading.totals.time;
        for (const std::string_view suite : reading.suites) {
            suites.emplace_back(suite);
        }
    }
    char time[32];
    std::snprintf(time, sizeof time, "%.3f", totals.time);
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<testsuites name=\"kelvane\" tests=\"" << totals.tests << "\" failures=\""
        << totals.failures << "\" errors=\"" << totals.errors << "\" skipped=\""
        << totals.skipped << "\" time=\"" << time << "\">\n";
    for (const std::string& suite : suites) {
        out << "  " << suite << '\n';
    }
    out << "</testsuites>\n";
}

} // namespace kelvane::cli
