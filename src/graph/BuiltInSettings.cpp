#include "graph/BuiltInSettings.h"

#include "graph/TargetKind.h"

namespace kelvane {

namespace {

struct Stack {
    std::vector<settings::Assignment> assignments;
    void add(std::string name, std::string value) {
        settings::Assignment assignment;
        assignment.name = std::move(name);
        assignment.value = std::move(value);
        assignment.origin = SettingOrigin{.file = "", .line = 0, .level = "built-in"};
        assignment.builtIn = true;
        assignments.push_back(std::move(assignment));
    }
};

} // namespace

std::vector<settings::Assignment> targetDerivedSettings(const BuiltInContext& context) {
    Stack stack;
    stack.add("TARGET_NAME", context.targetName);
    stack.add("TARGETNAME", context.targetName);
    stack.add("PRODUCT_TYPE", context.productType);
    return std::move(stack.assignments);
}

std::vector<settings::Assignment> builtInSettings(const BuiltInContext& context) {
    Stack stack;
    const auto add = [&stack](std::string name, std::string value) {
        stack.add(std::move(name), std::move(value));
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
    return std::move(stack.assignments);
}

} // namespace kelvane
