#include "Corpus.h"
#include "parser/ParserError.h"
#include "parser/ProjectParser.h"
#include "plist/ParseError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace kelvane {
namespace {

namespace fs = std::filesystem;

// Project bundle path -> native target count, for the projects the corpus
// notes as well-formed.
std::map<std::string, std::size_t> expectedTargetCounts(const fs::path& corpus) {
    std::map<std::string, std::size_t> counts;
    std::ifstream manifest(corpus / "MANIFEST.tsv");
    std::string line;
    std::getline(manifest, line); // header
    while (std::getline(manifest, line)) {
        std::vector<std::string> fields;
        std::stringstream row(line);
        for (std::string field; std::getline(row, field, '\t');) {
            fields.push_back(field);
        }
        if (fields.size() > 8 && fields[2] == "xcodeproj" && fields[8] == "ok") {
            // "owner/name" is stored as "owner__name".
            std::string repo = fields[0];
            repo.replace(repo.find('/'), 1, "__");
            counts[(corpus / repo / fields[3]).string()] = std::stoul(fields[6]);
        }
    }
    return counts;
}

TEST(Corpus, EveryProjectLoadsOrFailsWithASpecificMessage) {
    const fs::path corpus = testing::corpusDir();
    if (corpus.empty()) {
        GTEST_SKIP() << "no project corpus beside the repository";
    }
    const auto expected = expectedTargetCounts(corpus);
    const auto locations = testing::projectLocations(corpus);
    ASSERT_FALSE(locations.empty());

    std::size_t loaded = 0;
    std::size_t checked = 0;
    const ProjectParser parser;
    for (const std::string& location : locations) {
        const auto count = expected.find(location);
        try {
            const ProjectContext project = parser.parseProject(location);
            ++loaded;
            if (count != expected.end()) {
                ++checked;
                EXPECT_EQ(project.targets.size(), count->second) << location;
            }
        } catch (const ParserError& error) {
            EXPECT_EQ(count, expected.end()) << location << ": " << error.what();
        } catch (const plist::ParseError& error) {
            EXPECT_EQ(count, expected.end()) << location << ": " << error.what();
            EXPECT_FALSE(error.reason().empty()) << location;
        } catch (const plist::FileReadError& error) {
            ADD_FAILURE() << location << ": the corpus is readable, yet: " << error.what();
        } catch (const std::exception& error) {
            ADD_FAILURE() << location << ": unexpected " << error.what();
        }
    }
    EXPECT_EQ(checked, expected.size()) << "projects the manifest lists were not found";
    EXPECT_GT(loaded, 0u);
}

} // namespace
} // namespace kelvane
