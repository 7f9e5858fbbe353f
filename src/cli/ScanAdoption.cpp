#include "cli/ScanAdoption.h"

#include <CLI/CLI.hpp>

#include "adoption/CheckSelection.h"
#include "adoption/ConfigFile.h"
#include "cli/CommandIO.h"
#include "model/FilePath.h"
#include "scanner/CheckRegistry.h"

#include <filesystem>

namespace kelvane::cli {

namespace {

std::vector<std::string> knownChecks() {
    // The as-built registry holds every check there is.
    std::vector<std::string> ids;
    for (const AnyCheck& check : makeAsBuiltCheckRegistry()) {
        ids.push_back(check.id());
    }
    return ids;
}

std::string listed(const std::vector<std::string>& ids) {
    std::string text;
    for (const std::string& id : ids) {
        text += (text.empty() ? "" : ", ") + id;
    }
    return text;
}

std::vector<std::string> texts(const std::vector<adoption::ConfigValue>& values) {
    std::vector<std::string> result;
    for (const adoption::ConfigValue& value : values) {
        result.push_back(value.text);
    }
    return result;
}

// A check list from the command line, or else from the file, each id known.
std::vector<std::string> checkList(const std::vector<std::string>& given,
                                   const std::vector<adoption::ConfigValue>& inFile,
                                   const std::string& option, const std::string& configPath,
                                   const std::vector<std::string>& known) {
    if (!given.empty()) {
        if (const auto unknown = adoption::unknownCheck(given, known)) {
            throw AdoptionError("--" + option + ": unknown check '" + *unknown +
                                "' (known: " + listed(known) + ")");
        }
        return given;
    }
    for (const adoption::ConfigValue& id : inFile) {
        if (adoption::unknownCheck({id.text}, known)) {
            throw AdoptionError(configPath + ":" + std::to_string(id.line) + ": unknown check '" +
                                id.text + "' in " + option + " (known: " + listed(known) + ")");
        }
    }
    return texts(inFile);
}

bool isBundle(const std::string& path) {
    const std::string trimmed = path::withoutTrailingSlash(path);
    const std::string_view extension = path::extension(trimmed);
    return extension == "xcodeproj" || extension == "xcworkspace";
}

} // namespace

void addAdoptionOptions(CLI::App& command, AdoptionOptions& options) {
    command.add_option("--skip", options.skip, "Do not run this check (repeatable)")
        ->option_text("ID")
        ->allow_extra_args(false);
    command.add_option("--only", options.only, "Run only this check (repeatable)")
        ->option_text("ID")
        ->allow_extra_args(false);
    command
        .add_option("--baseline", options.baseline,
                    "Report only findings that FILE (from --write-baseline) does not hold")
        ->option_text("FILE");
    command
        .add_option("--write-baseline", options.writeBaseline,
                    "Record this run's findings in FILE, to pass to --baseline later")
        ->option_text("FILE");
}

std::vector<AnyCheck> AdoptedScan::checks(std::vector<AnyCheck> registry) const {
    return adoption::selectChecks(std::move(registry), only, skip);
}

std::string configFolder(const std::string& path) {
    return path.empty() || isBundle(path) ? std::string(".") : path;
}

AdoptedScan adoptScan(const std::string& path, const AdoptionOptions& options, Reading& reading) {
    const std::string folder = configFolder(path);
    const std::string configPath = adoption::configDisplayPath(folder);
    std::optional<adoption::ScanConfig> config;
    try {
        config = adoption::readScanConfig(folder);
    } catch (const adoption::ConfigError& error) {
        throw AdoptionError(error.what());
    }
    const adoption::ScanConfig file = config.value_or(adoption::ScanConfig{});

    if (!reading.asBuilt && file.asBuilt) {
        reading.asBuilt = *file.asBuilt;
    }
    if (!reading.configuration && file.configuration) {
        if (!reading.asBuilt) {
            throw AdoptionError(configPath + ":" + std::to_string(file.configuration->line) +
                                ": 'configuration' needs 'reading: as-built'");
        }
        reading.configuration = file.configuration->text;
    }

    const std::vector<std::string> known = knownChecks();
    const std::vector<std::string> only = checkList(options.only, file.only, "only", configPath, known);
    const std::vector<std::string> skip = checkList(options.skip, file.skip, "skip", configPath, known);

    AdoptedScan scan{
        .only = only,
        .skip = skip,
        .adoption = {.writeBaselineTo = options.writeBaseline,
                     .root = folder,
                     .exclude = file.exclude,
                     .requestedPath = path}};
    const std::string baseline =
        !options.baseline.empty() ? options.baseline
                                  : (file.baseline ? file.baseline->text : std::string());
    if (!baseline.empty()) {
        try {
            scan.adoption.baseline = adoption::readBaseline(baseline);
        } catch (const adoption::BaselineError& error) {
            throw AdoptionError(error.what());
        }
    }
    return scan;
}

std::optional<std::string> excludedSelection(const std::string& projectPath,
                                             const ReportAdoption& adoption) {
    if (adoption.exclude.empty() || isBundle(adoption.requestedPath)) {
        return std::nullopt;
    }
    namespace fs = std::filesystem;
    const fs::path relative =
        fs::path(projectPath).lexically_normal().lexically_relative(fs::path(adoption.root).lexically_normal());
    for (const std::string& folder : adoption.exclude) {
        const fs::path excluded(folder);
        auto inside = relative.begin();
        bool under = true;
        for (const fs::path& part : excluded) {
            if (inside == relative.end() || *inside != part) {
                under = false;
                break;
            }
            ++inside;
        }
        if (under) {
            return "the project found, " + relative.string() + ", is in '" + folder +
                   "', which " + adoption::configDisplayPath(adoption.root) +
                   " excludes; pass the project itself to scan it";
        }
    }
    return std::nullopt;
}

int recordBaseline(const adoption::Baseline& findings, const std::string& path, std::ostream& err) {
    try {
        adoption::writeBaseline(findings, path);
    } catch (const adoption::BaselineError& error) {
        err << "kelvane: " << error.what() << '\n';
        return kExitNotLoaded;
    }
    err << "kelvane: recorded " << findings.size()
        << (findings.size() == 1 ? " finding in " : " findings in ") << path << '\n';
    return kExitClean;
}

int adoptReport(ScanReport& report, const ReportAdoption& adoption, std::ostream& err) {
    if (adoption.gathered) {
        adoption.gathered->merge(adoption::Baseline::of(report));
    } else if (!adoption.writeBaselineTo.empty()) {
        if (const int status = recordBaseline(adoption::Baseline::of(report),
                                              adoption.writeBaselineTo, err);
            status != kExitClean) {
            return status;
        }
    }
    if (adoption.baseline) {
        report = adoption::withoutKnownFindings(std::move(report), *adoption.baseline);
    }
    return kExitClean;
}

} // namespace kelvane::cli
