#include "cli/ExplainCommand.h"

#include <CLI/CLI.hpp>

#include "report/CheckPages.h"

#include <memory>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

int runExplain(const std::string& id, std::ostream& out, std::ostream& err) {
    const std::optional<std::string_view> page = checkPage(id);
    if (!page) {
        err << "kelvane: no check '" << id << "'; the checks are:\n";
        for (const CheckPage& each : checkPages()) {
            err << "  " << each.id << '\n';
        }
        return kExitNotLoaded;
    }
    out << *page;
    if (!page->empty() && page->back() != '\n') {
        out << '\n';
    }
    return kExitClean;
}

void addExplainCommand(CLI::App& app, CommandIO& io) {
    auto id = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("explain", "Print a check's documentation: what it reads and reports");
    command->add_option("id", *id, "A check id, as `kelvane checks` lists them")->required();
    command->callback([id, &io] { io.exitStatus = runExplain(*id, io.out, io.err); });
}

} // namespace kelvane::cli
