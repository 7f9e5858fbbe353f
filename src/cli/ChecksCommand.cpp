#include "cli/ChecksCommand.h"

#include <CLI/CLI.hpp>

#include "report/FinishedScan.h"
#include "scanner/CheckRegistry.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <string>

namespace kelvane::cli {

// The reports are the terminal's output; their names read as its own.
using namespace kelvane::report;

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

void writeCheckListJson(const std::vector<AnyCheck>& checks, std::ostream& out) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const AnyCheck& check : checks) {
        list.push_back({{"id", check.id()}, {"title", checkDisplayTitle(check.id())}});
    }
    out << list.dump(2) << '\n';
}

void addChecksCommand(CLI::App& app, CommandIO& io) {
    auto format = std::make_shared<std::string>("text");
    CLI::App* command = app.add_subcommand("checks", "List the checks a scan runs, in run order");
    command->add_option("--format", *format, "Output format")
        ->check(CLI::IsMember({"text", "json"}))
        ->capture_default_str();
    auto asBuilt = std::make_shared<bool>(false);
    command->add_flag("--as-built", *asBuilt,
                      "The checks a scan runs as built: the nine, then those only that reading has");
    command->callback([format, asBuilt, &io] {
        const std::vector<AnyCheck> checks = *asBuilt ? makeAsBuiltCheckRegistry() : makeCheckRegistry();
        if (*format == "json") {
            writeCheckListJson(checks, io.out);
        } else {
            writeCheckList(checks, io.out);
        }
    });
}

} // namespace kelvane::cli
