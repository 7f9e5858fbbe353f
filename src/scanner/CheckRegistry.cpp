#include "scanner/CheckRegistry.h"

#include "checks/AppGroupConsistencyCheck.h"
#include "checks/BundleIdentifierCollisionCheck.h"
#include "checks/CloudKitEntitlementCheck.h"
#include "checks/DeploymentTargetMismatchCheck.h"
#include "checks/EmbeddedBundleIdentifierCheck.h"
#include "checks/EmbeddedVersionCheck.h"
#include "checks/TestHostCheck.h"
#include "checks/UsageDescriptionCheck.h"
#include "checks/EntitlementWithoutCapabilityCheck.h"
#include "checks/SigningConsistencyCheck.h"
#include "checks/WatchCompanionMismatchCheck.h"
#include "checks/WidgetBundleIdentifierCheck.h"
#include "checks/WidgetKitFrameworkCheck.h"

namespace kelvane {

std::vector<AnyCheck> makeCheckRegistry() {
    // One line per check, in the order of kCheckTitles; a test holds the two
    // lists to the same ids and order.
    return {
        WatchCompanionMismatchCheck{"watch.companion.mismatch"},
        CloudKitEntitlementCheck{"cloudkit.container.mismatch",
                                 "com.apple.developer.icloud-container-identifiers"},
        WidgetBundleIdentifierCheck{},
        WidgetKitFrameworkCheck{},
        SigningConsistencyCheck{},
        BundleIdentifierCollisionCheck{},
        AppGroupConsistencyCheck{"com.apple.security.application-groups"},
        DeploymentTargetMismatchCheck{},
        // In this order the lines of one target are listed.
        EntitlementWithoutCapabilityCheck{{
            {"aps-environment", "Push Notifications"},
            {"com.apple.developer.associated-domains", "Associated Domains"},
            {"com.apple.developer.icloud-container-identifiers", "iCloud"},
            {"com.apple.developer.icloud-services", "iCloud"},
            {"com.apple.developer.in-app-payments", "Apple Pay"},
            {"com.apple.developer.healthkit", "HealthKit"},
            {"com.apple.developer.homekit", "HomeKit"},
            {"com.apple.developer.networking.networkextension", "Network Extensions"},
            {"com.apple.developer.networking.vpn.api", "Personal VPN"},
            {"com.apple.developer.siri", "Siri"},
            {"com.apple.external-accessory.wireless-configuration",
             "Wireless Accessory Configuration"},
            {"com.apple.developer.game-center", "Game Center"},
            {"com.apple.developer.ClassKit-environment", "ClassKit"},
        }},
    };
}

std::vector<AnyCheck> makeAsBuiltCheckRegistry() {
    std::vector<AnyCheck> checks = makeCheckRegistry();
    checks.insert(checks.end(), {EmbeddedVersionCheck{}, EmbeddedBundleIdentifierCheck{},
                                 TestHostCheck{}, UsageDescriptionCheck{}});
    return checks;
}

} // namespace kelvane
