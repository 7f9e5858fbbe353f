#include "diagnostics/FixSafety.h"
#include "diagnostics/Severity.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kelvane {
namespace {

TEST(RawValue, SeverityAcceptsOnlyExactCaseNames) {
    const std::vector<std::pair<std::string, std::optional<Severity>>> cases{
        {"success", Severity::success}, {"warning", Severity::warning}, {"error", Severity::error},
        {"Error", std::nullopt},        {"ERROR", std::nullopt},        {"", std::nullopt},
        {"error ", std::nullopt},       {"fatal", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(severityFromRawValue(text), expected) << '"' << text << '"';
    }
}

TEST(RawValue, FixSafetyAcceptsOnlyExactCaseNames) {
    const std::vector<std::pair<std::string, std::optional<FixSafety>>> cases{
        {"safeAuto", FixSafety::safeAuto},
        {"requiresConfirmation", FixSafety::requiresConfirmation},
        {"manualOnly", FixSafety::manualOnly},
        {"safeauto", std::nullopt},
        {"manual", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(fixSafetyFromRawValue(text), expected) << '"' << text << '"';
    }
}

TEST(RawValue, EveryCaseRoundTripsThroughItsText) {
    for (auto severity : {Severity::success, Severity::warning, Severity::error}) {
        EXPECT_EQ(severityFromRawValue(rawValue(severity)), severity);
    }
    for (auto safety :
         {FixSafety::safeAuto, FixSafety::requiresConfirmation, FixSafety::manualOnly}) {
        EXPECT_EQ(fixSafetyFromRawValue(rawValue(safety)), safety);
    }
}

TEST(SeverityOrder, RanksSuccessBelowWarningBelowError) {
    const std::vector<Severity> ranked{Severity::success, Severity::warning, Severity::error};
    for (std::size_t i = 0; i < ranked.size(); ++i) {
        for (std::size_t j = 0; j < ranked.size(); ++j) {
            EXPECT_EQ(ranked[i] < ranked[j], i < j) << i << " vs " << j;
            EXPECT_EQ(ranked[i] >= ranked[j], i >= j) << i << " vs " << j;
        }
    }
}

} // namespace
} // namespace kelvane
