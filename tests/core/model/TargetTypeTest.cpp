#include "model/TargetType.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(TargetType, RawValuesRoundTripAndAreCaseSensitive) {
    for (int i = 0; i <= static_cast<int>(TargetType::unknown); ++i) {
        const auto type = static_cast<TargetType>(i);
        EXPECT_EQ(targetTypeFromRawValue(rawValue(type)), type) << rawValue(type);
    }
    EXPECT_EQ(targetTypeFromRawValue("appExtension"), TargetType::appExtension);
    EXPECT_EQ(targetTypeFromRawValue("appextension"), std::nullopt);
    EXPECT_EQ(targetTypeFromRawValue("APPLICATION"), std::nullopt);
    EXPECT_EQ(targetTypeFromRawValue(""), std::nullopt);
    // The product type identifier is not a raw value.
    EXPECT_EQ(targetTypeFromRawValue("com.apple.product-type.application"), std::nullopt);
}

TEST(TargetType, ProductTypesMatchExactly) {
    struct Case {
        const char* productType;
        TargetType expected;
    };
    const Case cases[] = {
        {"com.apple.product-type.application", TargetType::application},
        {"com.apple.product-type.app-extension", TargetType::appExtension},
        {"com.apple.product-type.watchkit2-app", TargetType::watchApp},
        {"com.apple.product-type.watchkit2-extension", TargetType::watchExtension},
        {"com.apple.product-type.app-extension.widgetkit-extension", TargetType::widgetExtension},
        {"com.apple.product-type.framework", TargetType::framework},
        {"com.apple.product-type.library.static", TargetType::staticLibrary},
        {"com.apple.product-type.bundle.unit-test", TargetType::unitTestBundle},
        {"com.apple.product-type.bundle.ui-testing", TargetType::uiTestBundle},
        {"com.apple.product-type.application.on-demand-install-capable", TargetType::appClip},
        {"com.apple.product-type.app-extension.messages", TargetType::messagesExtension},
        // Older kinds, suffixes and other cases are all unknown.
        {"com.apple.product-type.application.watchapp2", TargetType::unknown},
        {"com.apple.product-type.watchkit-extension", TargetType::unknown},
        {"com.apple.product-type.Application", TargetType::unknown},
        {"com.apple.product-type.framework.static", TargetType::unknown},
        {"", TargetType::unknown},
    };
    for (const auto& c : cases) {
        const std::string text = c.productType;
        EXPECT_EQ(targetTypeForProductType(&text), c.expected) << text;
    }
    EXPECT_EQ(targetTypeForProductType(nullptr), TargetType::unknown);
}

} // namespace
} // namespace kelvane
