#include "diagnostics/FixSafety.h"

#include "model/RawValues.h"

namespace kelvane {

namespace {
using namespace std::string_view_literals;
constexpr std::array kRawValues{"safeAuto"sv, "requiresConfirmation"sv, "manualOnly"sv};
} // namespace

std::string_view rawValue(FixSafety safety) noexcept {
    return kRawValues[static_cast<std::size_t>(safety)];
}

std::optional<FixSafety> fixSafetyFromRawValue(std::string_view text) noexcept {
    return enumFromRawValue<FixSafety>(kRawValues, text);
}

} // namespace kelvane
