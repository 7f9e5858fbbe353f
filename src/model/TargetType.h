#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// What a target builds, from its Xcode product type. Case order matters: it is
// the order product types are matched in and the order of the raw values.
enum class TargetType {
    application,
    appExtension,
    watchApp,
    watchExtension,
    widgetExtension,
    framework,
    staticLibrary,
    unitTestBundle,
    uiTestBundle,
    appClip,
    messagesExtension,
    unknown,
};

// The case name, e.g. "appExtension".
[[nodiscard]] std::string_view rawValue(TargetType type) noexcept;
// Exactly the twelve raw values, case-sensitive; anything else gives nothing.
[[nodiscard]] std::optional<TargetType> targetTypeFromRawValue(std::string_view text) noexcept;
// The Xcode product type mapping: exact match over the whole identifier;
// absent or unlisted identifiers give `unknown`.
[[nodiscard]] TargetType targetTypeForProductType(const std::string* productType) noexcept;

} // namespace kelvane
