#include "HostileFiles.h"
#include "KelvaneProcess.h"
#include "TempDir.h"
#include "cli/ScanCommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace kelvane::testing {
namespace {

std::string readText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Reads "<line>:<column>: " at the start of `text`; zeros when it is not there.
std::pair<std::size_t, std::size_t> position(std::string_view text) {
    std::size_t line = 0;
    std::size_t column = 0;
    const char* end = text.data() + text.size();
    auto [afterLine, lineError] = std::from_chars(text.data(), end, line);
    if (lineError != std::errc() || afterLine == end || *afterLine != ':') {
        return {0, 0};
    }
    auto [afterColumn, columnError] = std::from_chars(afterLine + 1, end, column);
    if (columnError != std::errc() ||
        std::string_view(afterColumn, end - afterColumn).rfind(": ", 0) != 0) {
        return {0, 0};
    }
    return {line, column};
}

// A download cut short, or a merge tool that gave up, leaves a project file
// that ends anywhere. Cut a real project file just before and just after
// every character where its structure turns, and scan each piece: every
// one must be refused with the place where the text ran out or went wrong.
// The scan runs in-process (the executable adds only its main()), so the
// thousands of pieces take seconds, not minutes.
TEST(TruncatedProject, EveryCutIsRefusedWithAPlaceInsideThePiece) {
    const std::string whole =
        readText(sourceDir() / "examples/Aurora/Aurora.xcodeproj/project.pbxproj");
    ASSERT_GT(whole.size(), 1000u);
    const std::size_t lastBrace = whole.rfind('}');
    std::set<std::size_t> cuts;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        if (std::string_view("{}();=\"").find(whole[i]) != std::string_view::npos) {
            cuts.insert(i);
            cuts.insert(i + 1);
        }
    }
    // Past the root's closing brace only blanks remain; that piece is whole.
    cuts.erase(cuts.upper_bound(lastBrace), cuts.end());

    const TempDir dir;
    const std::string project = hostile::writeProject(dir, "");
    const std::string file = dir.file("App.xcodeproj/project.pbxproj");
    std::size_t written = 0;
    const std::string prefix = "kelvane: Failed to parse project: ";
    auto slowest = std::chrono::steady_clock::duration::zero();
    for (const std::size_t cut : cuts) {
        const std::string piece = whole.substr(0, cut);
        SCOPED_TRACE("cut at byte " + std::to_string(cut));
        // Each piece extends the last, so the file only grows: truncating a
        // file thousands of times costs seconds on some file systems.
        std::ofstream(file, std::ios::binary | std::ios::app)
            .write(whole.data() + written, static_cast<std::streamsize>(cut - written));
        written = cut;
        std::ostringstream out;
        std::ostringstream err;
        const auto start = std::chrono::steady_clock::now();
        const int status = cli::runScan(project, cli::ScanFormat::json, out, err);
        slowest = std::max(slowest, std::chrono::steady_clock::now() - start);

        EXPECT_EQ(status, 2);
        EXPECT_EQ(out.str(), "");
        const std::string message = err.str();
        if (piece.find('{') == std::string::npos && cut > 0) {
            // Only the encoding comment: an empty dictionary, with no objects.
            EXPECT_EQ(message, prefix + "Failed to extract targets from project\n");
            continue;
        }
        ASSERT_EQ(message.rfind(prefix + file + ":", 0), 0u) << message;
        const std::string_view rest =
            std::string_view(message).substr(prefix.size() + file.size() + 1);
        const auto [line, column] = position(rest);
        const std::size_t pieceLines =
            static_cast<std::size_t>(std::count(piece.begin(), piece.end(), '\n')) + 1;
        EXPECT_GE(line, 1u) << message;
        EXPECT_LE(line, pieceLines) << message;
        EXPECT_GE(column, 1u) << message;
        EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 1) << message;
        // A reason follows the place.
        EXPECT_GT(rest.size(), rest.find(": ") + 3) << message;
        if (HasFailure()) {
            break; // one broken piece tells enough; thousands would bury it
        }
    }
    EXPECT_LT(std::chrono::duration<double>(slowest).count(), 1.0 * slowdown());
    std::printf("%zu pieces, slowest %.1f ms\n", cuts.size(),
                std::chrono::duration<double, std::milli>(slowest).count());
}

} // namespace
} // namespace kelvane::testing
