#include "scanner/CheckRegistry.h"

#include "checks/BundleIdentifierCollisionCheck.h"
#include "checks/DeploymentTargetMismatchCheck.h"
#include "checks/SigningConsistencyCheck.h"
#include "checks/WidgetBundleIdentifierCheck.h"
#include "checks/WidgetKitFrameworkCheck.h"

namespace kelvane {

std::vector<AnyCheck> makeCheckRegistry() {
    // One line per check, in the order of kCheckTitles; a test holds the two
    // lists to the same ids and order.
    return {
        WidgetBundleIdentifierCheck{},
        WidgetKitFrameworkCheck{},
        SigningConsistencyCheck{},
        BundleIdentifierCollisionCheck{},
        DeploymentTargetMismatchCheck{},
    };
}

} // namespace kelvane
