#include "graph/BuiltInSettings.h"

#include "graph/TargetKind.h"

namespace kelvane {

std::vector<settings::Assignment> builtInSettings(const BuiltInContext& context) {
    const SettingOrigin origin{.file = "", .line = 0, .level = "built-in"};
    std::vector<settings::Assignment> stack;
    const auto add = [&](std::string name, std::string value) {
        stack.push_back(settings::Assignment{.name = std::move(name),
                                             .conditions = {},
                                             .value = std::move(value),
                                             .origin = origin,
                                             .unknownReason = std::nullopt,
                                             .sparesIdentity = false});
    };
    const std::string platformName(platformSettingName(context.platform));
    const bool macOS = context.platform == Platform::macOS;
    const std::string extension(wrapperExtension(context.productType));

    add("PROJECT_NAME", context.projectName);
    add("SRCROOT", context.sourceRoot);
    add("PROJECT_DIR", "$(SRCROOT)");
    add("SOURCE_ROOT", "$(SRCROOT)");
    add("PROJECT_FILE_PATH", context.projectFilePath);
    add("DEVELOPMENT_LANGUAGE", "en");
    add("SYMROOT", "$(SRCROOT)/build");
    add("BUILD_DIR", "$(SYMROOT)");
    add("BUILD_ROOT", "$(SYMROOT)");
    add("CONFIGURATION", context.configuration);
    add("PLATFORM_NAME", platformName);
    add("EFFECTIVE_PLATFORM_NAME", macOS || platformName.empty() ? "" : "-" + platformName);
    add("SDK_NAME", std::string(deviceSDKName(context.platform)));
    add("BUILT_PRODUCTS_DIR", "$(BUILD_DIR)/$(CONFIGURATION)$(EFFECTIVE_PLATFORM_NAME)");
    add("CONFIGURATION_BUILD_DIR", "$(BUILT_PRODUCTS_DIR)");
    add("TARGET_BUILD_DIR", "$(BUILT_PRODUCTS_DIR)");
    add("TARGET_NAME", context.targetName);
    add("TARGETNAME", context.targetName);
    add("PRODUCT_TYPE", context.productType);
    add("PRODUCT_MODULE_NAME", "$(PRODUCT_NAME:c99extidentifier)");
    add("EXECUTABLE_NAME", "$(PRODUCT_NAME)");
    add("WRAPPER_EXTENSION", extension);
    add("WRAPPER_SUFFIX", extension.empty() ? "" : "." + extension);
    add("WRAPPER_NAME", "$(PRODUCT_NAME)$(WRAPPER_SUFFIX)");
    add("FULL_PRODUCT_NAME", extension.empty() ? "$(EXECUTABLE_NAME)" : "$(WRAPPER_NAME)");
    add("CONTENTS_FOLDER_PATH", macOS ? "$(WRAPPER_NAME)/Contents" : "$(WRAPPER_NAME)");
    add("BUNDLE_EXECUTABLE_FOLDER_PATH", macOS ? "Contents/MacOS" : "");
    add("EXECUTABLE_FOLDER_PATH", macOS ? "$(CONTENTS_FOLDER_PATH)/MacOS" : "$(CONTENTS_FOLDER_PATH)");
    add("EXECUTABLE_PATH", "$(EXECUTABLE_FOLDER_PATH)/$(EXECUTABLE_NAME)");
    return stack;
}

} // namespace kelvane
