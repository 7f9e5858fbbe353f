#include "cli/ModelText.h"

#include "diagnostics/EvidenceSource.h"

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

using Row = std::vector<std::string_view>;

void writeTable(const std::vector<Row>& rows, std::ostream& out) {
    const std::size_t columns = rows.front().size();
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

void writeList(const std::vector<std::string>& items, std::ostream& out) {
    if (items.empty()) {
        out << kAbsent;
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        out << (i == 0 ? "" : ", ") << items[i];
    }
    out << '\n';
}

// As built: the same table with platform and role, then for each target its
// files, what it embeds or runs in, where its identity came from and what
// could not be known.
void writeBuiltProjectText(const ProjectContext& project, std::ostream& out) {
    out << "Project        " << project.projectURL << '\n';
    out << "Configuration  " << *project.configuration << " (of ";
    for (std::size_t i = 0; i < project.configurations.size(); ++i) {
        out << (i == 0 ? "" : ", ") << project.configurations[i];
    }
    out << ")\n";
    out << "Targets        " << project.targets.size() << '\n';
    if (project.targets.empty()) {
        return;
    }
    std::vector<Row> rows{{"Name", "Type", "Platform", "Role", "Bundle identifier", "Deployment",
                           "Team", "Signing"}};
    for (const TargetContext& target : project.targets) {
        const BuiltFacts& facts = *target.built;
        rows.push_back({target.name, rawValue(target.type), platformName(facts.platform),
                        facts.mainApp ? std::string_view("app (main)") : roleName(facts.role),
                        orAbsent(target.bundleIdentifier), orAbsent(target.deploymentTarget),
                        orAbsent(target.developmentTeam), orAbsent(target.codeSignStyle)});
    }
    out << '\n';
    writeTable(rows, out);

    for (const TargetContext& target : project.targets) {
        const BuiltFacts& facts = *target.built;
        out << '\n' << target.name << "  (" << facts.productType << ")\n";
        out << "  Info.plist         " << orAbsent(target.infoPlistURL) << '\n';
        out << "  Entitlements       " << orAbsent(target.entitlementsURL) << '\n';
        out << "  Linked frameworks  ";
        writeList(target.linkedFrameworks, out);
        out << "  Host               " << orAbsent(facts.host) << '\n';
        out << "  Embeds             ";
        writeList(facts.embeds, out);
        for (const std::string_view name : {"PRODUCT_BUNDLE_IDENTIFIER", "DEVELOPMENT_TEAM"}) {
            if (const TracedValue* value = facts.setting(name)) {
                out << "  " << name << " set at " << originDescription(value->origin) << '\n';
            }
        }
        for (const UnknownSetting& unknown : facts.unknown) {
            out << "  Unknown " << unknown.name << ": " << unknown.reason << '\n';
        }
    }
}

} // namespace

void writeProjectText(const ProjectContext& project, std::ostream& out) {
    if (project.configuration) {
        writeBuiltProjectText(project, out);
        return;
    }
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
        writeList(target.linkedFrameworks, out);
    }
}

} // namespace kelvane::cli
