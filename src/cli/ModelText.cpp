#include "cli/ModelText.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::cli {

namespace {

constexpr std::string_view kAbsent = "-";

// Columns line up by characters, not bytes, so names in any script align.
std::size_t displayWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string_view orAbsent(const std::optional<std::string>& text) {
    return text ? std::string_view(*text) : kAbsent;
}

using Row = std::array<std::string_view, 6>;

void writeTable(const std::vector<Row>& rows, std::ostream& out) {
    Row::size_type columns = Row().size();
    std::vector<std::size_t> widths(columns, 0);
    for (const Row& row : rows) {
        for (std::size_t c = 0; c < columns; ++c) {
            widths[c] = std::max(widths[c], displayWidth(row[c]));
        }
    }
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t c = 0; c < columns; ++c) {
            line += row[c];
            if (c + 1 < columns) {
                line.append(widths[c] - displayWidth(row[c]) + 2, ' ');
            }
        }
        out << line << '\n';
    }
}

} // namespace

void writeProjectText(const ProjectContext& project, std::ostream& out) {
    out << "Project  " << project.projectURL << '\n';
    out << "Targets  " << project.targets.size() << '\n';
    if (project.targets.empty()) {
        return;
    }

    std::vector<Row> rows{{"Name", "Type", "Bundle identifier", "Deployment", "Team", "Signing"}};
    for (const TargetContext& target : project.targets) {
        rows.push_back({target.name, rawValue(target.type), orAbsent(target.bundleIdentifier),
                        orAbsent(target.deploymentTarget), orAbsent(target.developmentTeam),
                        orAbsent(target.codeSignStyle)});
    }
    out << '\n';
    writeTable(rows, out);

    for (const TargetContext& target : project.targets) {
        out << '\n' << target.name << '\n';
        out << "  Info.plist         " << orAbsent(target.infoPlistURL) << '\n';
        out << "  Entitlements       " << orAbsent(target.entitlementsURL) << '\n';
        out << "  Linked frameworks  ";
        if (target.linkedFrameworks.empty()) {
            out << kAbsent;
        }
        for (std::size_t i = 0; i < target.linkedFrameworks.size(); ++i) {
            out << (i == 0 ? "" : ", ") << target.linkedFrameworks[i];
        }
        out << '\n';
    }
}

} // namespace kelvane::cli
