#include "diagnostics/Severity.h"

#include "model/RawValues.h"

namespace kelvane {

namespace {
using namespace std::string_view_literals;
constexpr std::array kRawValues{"success"sv, "warning"sv, "error"sv};
} // namespace

std::string_view rawValue(Severity severity) noexcept {
    return kRawValues[static_cast<std::size_t>(severity)];
}

std::optional<Severity> severityFromRawValue(std::string_view text) noexcept {
    return enumFromRawValue<Severity>(kRawValues, text);
}

} // namespace kelvane
