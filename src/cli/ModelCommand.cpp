#include "cli/ModelCommand.h"

#include <CLI/CLI.hpp>

#include "cli/LoadFailure.h"
#include "report/ModelJson.h"
#include "cli/ModelText.h"
#include "selection/AmbiguousFolderError.h"
#include "selection/RepositoryProjects.h"

#include <memory>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

int runInspect(const std::string& path, InspectFormat format, std::ostream& out,
               std::ostream& err, const Reading& reading) {
    ProjectContext project;
    try {
        // A folder is resolved to the one top-level project beneath it, as
        // `kelvane scan` resolves it.
        project = loadProject(resolveRepositoryProject(path), reading);
    } catch (const AmbiguousFolderError& error) {
        err << "kelvane: " << error.what() << "\nPass one of them.\n";
        return kExitNotLoaded;
    } catch (const std::exception& error) {
        return reportLoadFailure(error, err);
    }
    if (format == InspectFormat::json) {
        out << toDocument(toJson(project));
    } else {
        writeProjectText(project, out);
    }
    return kExitClean;
}

void addInspectCommand(CLI::App& app, CommandIO& io) {
    struct Options {
        std::string path;
        std::string format = "text";
        Reading reading;
    };
    // CLI11 writes into the options while parsing and calls back afterwards,
    // so they must outlive this function; the command owns them.
    auto options = std::make_shared<Options>();
    CLI::App* command =
        app.add_subcommand("inspect", "Load a project and print its targets and their settings");
    command
        ->add_option("path", options->path,
                     "An .xcodeproj, an .xcworkspace or a folder holding one")
        ->required();
    command->add_option("--format", options->format, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    addReadingOptions(*command, options->reading);
    command->callback([options, &io] {
        if (const auto problem = readingProblem(options->reading)) {
            io.err << "kelvane: " << *problem << '\n';
            io.exitStatus = kExitNotLoaded;
            return;
        }
        const InspectFormat format =
            options->format == "json" ? InspectFormat::json : InspectFormat::text;
        io.exitStatus = runInspect(options->path, format, io.out, io.err, options->reading);
    });
}

} // namespace kelvane::cli
