#include "model/BuiltFacts.h"

#include <array>

namespace kelvane {

namespace {
using namespace std::string_view_literals;
constexpr std::array kPlatformNames{"iOS"sv,      "macOS"sv,     "watchOS"sv, "tvOS"sv,
                                    "visionOS"sv, "DriverKit"sv, "unknown"sv};
constexpr std::array kRoleNames{"app"sv,     "embedded"sv, "testBundle"sv,
                                "library"sv, "tool"sv,     "other"sv};
} // namespace

std::string_view platformName(Platform platform) noexcept {
    return kPlatformNames[static_cast<std::size_t>(platform)];
}

std::string_view roleName(TargetRole role) noexcept {
    return kRoleNames[static_cast<std::size_t>(role)];
}

const TracedValue* BuiltFacts::setting(std::string_view name) const {
    const auto found = settings.find(name);
    return found == settings.end() ? nullptr : &found->second;
}

} // namespace kelvane
