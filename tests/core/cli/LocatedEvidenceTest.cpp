// Every line a report points at must hold what the evidence names: on the
// examples and on every project of the corpus, in both readings.
#include "Corpus.h"
#include "TempDir.h"
#include "report/EvidenceLocations.h"
#include "graph/AsBuiltLoading.h"
#include "parser/ProjectParser.h"
#include "scanner/CheckRegistry.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kelvane::cli {
using namespace kelvane::report;
namespace {

// The line of `file`, 1-based; empty past the end.
std::string lineOf(const std::string& file, std::size_t number) {
    std::ifstream in(file, std::ios::binary);
    std::string line;
    for (std::size_t i = 0; i < number && std::getline(in, line); ++i) {
    }
    return in ? line : std::string();
}

// What a located line must show at its column: the key as written in a
// project file or .xcconfig (a setting's name may carry a condition or
// quotes), or an XML property list's <key> element.
bool holdsKey(const std::string& line, std::size_t column, const std::string& key) {
    if (column == 0 || column > line.size() + 1) {
        return false;
    }
    const std::string at = line.substr(column - 1);
    return at.starts_with(key) || at.starts_with('"' + key) || at.starts_with("<key>" + key + "<");
}

struct Tally {
    int located = 0;
    std::vector<std::string> wrong;
};

void checkProject(const std::string& location, bool asBuilt, Tally& tally) {
    std::shared_ptr<const ProjectContext> project;
    try {
        project = std::make_shared<const ProjectContext>(
            asBuilt ? loadAsBuiltForScan(location, std::nullopt, true)
                    : ProjectParser().parseProject(location, true));
    } catch (const std::exception&) {
        return; // what cannot be loaded has nothing to locate
    }
    const EvidenceLocations locations(project);
    for (const AnyCheck& check : asBuilt ? makeAsBuiltCheckRegistry() : makeCheckRegistry()) {
        std::optional<DoctorIssue> issue;
        try {
            issue = check.run(*project);
        } catch (const std::exception&) {
            continue;
        }
        for (const EvidenceItem& item : issue ? issue->evidence : std::vector<EvidenceItem>{}) {
            const std::optional<EvidenceLocation> at = locations.locate(item);
            if (!at || at->line == 0) {
                continue;
            }
            ++tally.located;
            if (!holdsKey(lineOf(at->file, at->line), at->column, item.key)) {
                tally.wrong.push_back(at->file + ":" + std::to_string(at->line) + ":" +
                                      std::to_string(at->column) + " for " + item.key);
            }
        }
    }
}

TEST(LocatedEvidence, EachLineOfTheExamplesHoldsTheKey) {
    const auto examples = testing::sourceDir() / "examples";
    Tally tally;
    checkProject((examples / "Nimbus/Nimbus.xcodeproj").string(), false, tally);
    checkProject((examples / "Cirrus/Cirrus.xcodeproj").string(), true, tally);
    checkProject((examples / "Cirrus/Cirrus.xcodeproj").string(), false, tally);
    EXPECT_GE(tally.located, 20);
    EXPECT_EQ(tally.wrong, std::vector<std::string>{});
}

TEST(LocatedEvidence, EachLineOfTheCorpusHoldsTheKey) {
    const auto corpus = testing::corpusDir();
    if (corpus.empty()) {
        GTEST_SKIP() << "no corpus beside the repository";
    }
    Tally tally;
    for (const std::string& location : testing::projectLocations(corpus)) {
        if (location.ends_with(".xcodeproj")) {
            checkProject(location, false, tally);
            checkProject(location, true, tally);
        }
    }
    EXPECT_GE(tally.located, 100);
    EXPECT_EQ(tally.wrong, std::vector<std::string>{});
}

} // namespace
} // namespace kelvane::cli
