#include "cli/ChecksCommand.h"

#include "cli/FinishedScan.h"
#include "scanner/CheckRegistry.h"

#include <algorithm>
#include <string>

namespace kelvane::cli {

void writeCheckList(const std::vector<AnyCheck>& checks, std::ostream& out) {
    std::size_t width = 0;
    for (const AnyCheck& check : checks) {
        width = std::max(width, check.id().size());
    }
    for (const AnyCheck& check : checks) {
        const std::string id = check.id();
        out << id << std::string(width - id.size() + 2, ' ') << checkDisplayTitle(id) << '\n';
    }
}

void addChecksCommand(CLI::App& app, CommandIO& io) {
    CLI::App* command = app.add_subcommand("checks", "List the checks a scan runs, in run order");
    command->callback([&io] { writeCheckList(makeCheckRegistry(), io.out); });
}

} // namespace kelvane::cli
