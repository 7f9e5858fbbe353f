#include "Corpus.h"
#include "KelvaneProcess.h"
#include "scanner/ProjectScanner.h"
#include "scanner/SleepingLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <optional>
#include <sstream>
#include <string>

namespace kelvane::testing {
namespace {

namespace fs = std::filesystem;

bool isVague(const std::string& message) {
    if (message.empty()) {
        return true;
    }
    for (const char* vague : {"std::exception", "basic_string", "unknown error", "bad_alloc"}) {
        if (message.find(vague) != std::string::npos) {
            return true;
        }
    }
    return false;
}

// A message with the file it names left out, so that the same fault in many
// projects counts once: "<file>:12:5: expected ';'" becomes
// "<file>: expected ';'".
std::string withoutFile(const std::string& message, const std::string& corpus) {
    const std::size_t path = message.find(corpus);
    if (path == std::string::npos) {
        return message;
    }
    std::size_t reason = message.find(": ", path);
    if (reason == std::string::npos) {
        return message;
    }
    return message.substr(0, path) + "<file>" + message.substr(reason);
}

std::string plural(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// Real projects, as people clone them: every one scans, or is refused with a
// message that says which file and what is wrong with it. Checks that fail on
// a project's own files are listed too; they must name the file as well.
TEST(CorpusScan, EveryRealProjectScansOrIsRefusedSpecifically) {
    const fs::path corpus = corpusDir();
    if (corpus.empty()) {
        GTEST_SKIP() << "no project corpus beside the repository";
    }
    const std::string corpusText = corpus.string();
    const std::vector<std::string> locations = projectLocations(corpus);
    ASSERT_FALSE(locations.empty());

    std::size_t scanned = 0;
    std::map<std::string, std::size_t> refusals;
    std::map<std::string, std::size_t> checkFailures;
    auto slowest = std::chrono::steady_clock::duration::zero();
    std::string slowestLocation;
    const auto start = std::chrono::steady_clock::now();
    for (const std::string& location : locations) {
        SleepingLoop loop;
        std::ostringstream failureLog;
        const ProjectScanner scanner(loop, failureLog, makeCheckRegistry(),
                                     std::chrono::milliseconds{0});
        std::optional<ScanCompletion> completion;
        const auto began = std::chrono::steady_clock::now();
        scanner.scan(location, {}, [&](ScanCompletion done) { completion = std::move(done); });
        loop.runUntilIdle();
        if (const auto took = std::chrono::steady_clock::now() - began; took > slowest) {
            slowest = took;
            slowestLocation = location;
        }
        ASSERT_TRUE(completion.has_value()) << location;

        if (const auto* error = std::get_if<ScanError>(&*completion)) {
            const std::string message = error->what();
            EXPECT_EQ(error->errorCase(), ScanError::Case::parsingFailed) << location;
            EXPECT_FALSE(isVague(error->underlyingDescription())) << location << ": " << message;
            // A platform error names the file it is about, which lies in
            // the folder that holds the bundle (or a workspace's project).
            if (message.find(corpusText) != std::string::npos) {
                EXPECT_NE(message.find(fs::path(location).parent_path().string()),
                          std::string::npos)
                    << location << ": " << message;
            }
            ++refusals[withoutFile(message, corpusText)];
            continue;
        }
        ++scanned;
        const auto& report = std::get<ScanReport>(*completion);
        EXPECT_EQ(report.checks.size(), 9u) << location;
        for (const CheckOutcome& check : report.checks) {
            if (!check.failure) {
                continue;
            }
            EXPECT_FALSE(isVague(*check.failure)) << location << ": " << check.checkID;
            EXPECT_NE(check.failure->find(corpusText), std::string::npos)
                << location << ": " << *check.failure;
            EXPECT_NE(failureLog.str().find("Check " + check.checkID +
                                            " failed: " + *check.failure + "\n"),
                      std::string::npos)
                << location;
            ++checkFailures[check.checkID + ": " + withoutFile(*check.failure, corpusText)];
        }
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    std::size_t refused = 0;
    for (const auto& [message, count] : refusals) {
        refused += count;
    }
    std::printf("%zu locations: %zu scanned, %zu refused, in %.1f s (slowest %.0f ms: %s)\n",
                locations.size(), scanned, refused, seconds,
                std::chrono::duration<double, std::milli>(slowest).count(),
                slowestLocation.c_str());
    for (const auto& [message, count] : refusals) {
        std::printf("  refused %s: %s\n", plural(count, "time").c_str(), message.c_str());
    }
    for (const auto& [failure, count] : checkFailures) {
        std::printf("  check failed %s: %s\n", plural(count, "time").c_str(), failure.c_str());
    }
    EXPECT_GT(scanned, 0u);
    EXPECT_LT(seconds, 60.0 * slowdown());
}

} // namespace
} // namespace kelvane::testing
