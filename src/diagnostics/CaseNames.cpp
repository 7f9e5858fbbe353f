#include "diagnostics/EntitlementValue.h"
#include "diagnostics/FixAction.h"

#include <array>

namespace kelvane {

std::string_view caseName(const EntitlementValue& value) noexcept {
    using namespace std::string_view_literals;
    static constexpr std::array kNames{"boolean"sv, "string"sv, "array"sv};
    return kNames[value.value.index()];
}

std::string_view caseName(const FixAction& action) noexcept {
    return std::visit([](const auto& payload) { return payload.kind; }, action);
}

} // namespace kelvane
