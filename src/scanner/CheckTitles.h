#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace kelvane {

struct CheckTitle {
    std::string_view id;
    std::string_view title;
};

// The nine checks as people see them, in run order. Checks have no title of
// their own: progress rows, reports and `kelvane checks` all name them from
// here, so this list and makeCheckRegistry() must agree on ids and order.
inline constexpr std::array<CheckTitle, 9> kCheckTitles{{
    {"watch.companion.mismatch", "Watch Companion Bundle ID"},
    {"cloudkit.container.mismatch", "CloudKit Container Configuration"},
    {"widget.bundle.identifier.invalid", "Widget Bundle Identifier"},
    {"widgetkit.framework.missing", "WidgetKit Framework Linking"},
    {"signing.inconsistent", "Signing Consistency"},
    {"bundle.identifier.collision", "Bundle Identifier Collision"},
    {"app.group.consistency", "App Group Consistency"},
    {"deployment.target.mismatch", "Deployment Target Mismatch"},
    {"entitlement.without.capability", "Entitlement Without Capability"},
}};

// The checks only the as-built reading runs, after the nine, in run order:
// what App Store validation and the build would refuse.
inline constexpr std::array<CheckTitle, 4> kAsBuiltCheckTitles{{
    {"embedded.version.mismatch", "Embedded Versions"},
    {"embedded.bundle.identifier.duplicate", "Bundle IDs Inside an App"},
    {"test.host.missing", "Test Hosts"},
    {"usage.description.missing", "Purpose Strings"},
}};

// The title of a registered check; nothing for an unknown id.
[[nodiscard]] constexpr std::optional<std::string_view> checkTitle(std::string_view id) noexcept {
    for (const CheckTitle& entry : kCheckTitles) {
        if (entry.id == id) {
            return entry.title;
        }
    }
    for (const CheckTitle& entry : kAsBuiltCheckTitles) {
        if (entry.id == id) {
            return entry.title;
        }
    }
    return std::nullopt;
}

} // namespace kelvane
