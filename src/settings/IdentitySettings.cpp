#include "settings/Assignment.h"

#include <algorithm>
#include <array>

namespace kelvane::settings {
namespace {

constexpr std::array<std::string_view, 18> kIdentityNames{
    "PRODUCT_BUNDLE_IDENTIFIER",
    "PRODUCT_NAME",
    "DEVELOPMENT_TEAM",
    "CODE_SIGN_STYLE",
    "CODE_SIGN_ENTITLEMENTS",
    "CODE_SIGN_IDENTITY",
    "PROVISIONING_PROFILE_SPECIFIER",
    "INFOPLIST_FILE",
    "GENERATE_INFOPLIST_FILE",
    "MARKETING_VERSION",
    "CURRENT_PROJECT_VERSION",
    "SDKROOT",
    "SUPPORTED_PLATFORMS",
    "TEST_HOST",
    "BUNDLE_LOADER",
    "TEST_TARGET_NAME",
    "SKIP_INSTALL",
    "WRAPPER_EXTENSION",
};

} // namespace

bool isIdentitySetting(std::string_view name) noexcept {
    return name.starts_with("INFOPLIST_KEY_") || name.ends_with("_DEPLOYMENT_TARGET") ||
           std::find(kIdentityNames.begin(), kIdentityNames.end(), name) != kIdentityNames.end();
}

} // namespace kelvane::settings
