#include "cli/ChecksCommand.h"
#include "cli/CommandIO.h"
#include "cli/ExplainCommand.h"
#include "cli/ModelCommand.h"
#include "cli/ScanCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>

int main(int argc, char** argv) {
    using namespace kelvane::cli;
    CLI::App app("Kelvane finds misconfigured targets, signing and entitlements in Xcode projects.",
                 "kelvane");
    app.set_version_flag("--version", KELVANE_VERSION);
    app.require_subcommand(1);

    CommandIO io{std::cout, std::cerr};
    addScanCommand(app, io);
    addInspectCommand(app, io);
    addChecksCommand(app, io);
    addExplainCommand(app, io);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // Help and version are successes; a malformed command line is not a
        // project that loaded, so it must not exit with the clean status.
        const int status = app.exit(error, std::cout, std::cerr);
        return status == 0 ? kExitClean : kExitNotLoaded;
    }
    return io.exitStatus;
}
