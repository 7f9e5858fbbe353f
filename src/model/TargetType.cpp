#include "model/TargetType.h"

#include "model/RawValues.h"

#include <array>
#include <utility>

namespace kelvane {

namespace {
using namespace std::string_view_literals;

constexpr std::array kRawValues{
    "application"sv,    "appExtension"sv,   "watchApp"sv,       "watchExtension"sv,
    "widgetExtension"sv, "framework"sv,     "staticLibrary"sv,  "unitTestBundle"sv,
    "uiTestBundle"sv,   "appClip"sv,        "messagesExtension"sv, "unknown"sv,
};

constexpr std::array kProductTypes{
    std::pair{"com.apple.product-type.application"sv, TargetType::application},
    std::pair{"com.apple.product-type.app-extension"sv, TargetType::appExtension},
    std::pair{"com.apple.product-type.watchkit2-app"sv, TargetType::watchApp},
    std::pair{"com.apple.product-type.watchkit2-extension"sv, TargetType::watchExtension},
    std::pair{"com.apple.product-type.app-extension.widgetkit-extension"sv,
              TargetType::widgetExtension},
    std::pair{"com.apple.product-type.framework"sv, TargetType::framework},
    std::pair{"com.apple.product-type.library.static"sv, TargetType::staticLibrary},
    std::pair{"com.apple.product-type.bundle.unit-test"sv, TargetType::unitTestBundle},
    std::pair{"com.apple.product-type.bundle.ui-testing"sv, TargetType::uiTestBundle},
    std::pair{"com.apple.product-type.application.on-demand-install-capable"sv,
              TargetType::appClip},
    std::pair{"com.apple.product-type.app-extension.messages"sv, TargetType::messagesExtension},
};
} // namespace

std::string_view rawValue(TargetType type) noexcept {
    return kRawValues[static_cast<std::size_t>(type)];
}

std::optional<TargetType> targetTypeFromRawValue(std::string_view text) noexcept {
    return enumFromRawValue<TargetType>(kRawValues, text);
}

TargetType targetTypeForProductType(const std::string* productType) noexcept {
    if (productType != nullptr) {
        for (const auto& [identifier, type] : kProductTypes) {
            if (identifier == *productType) {
                return type;
            }
        }
    }
    return TargetType::unknown;
}

} // namespace kelvane
