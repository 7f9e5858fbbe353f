#include "ProjectGenerator.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace kelvane::bench {

namespace {

struct ProductKind {
    std::string_view productType;
    std::string_view extension;
    std::string_view fileType;
};

// Every product type Kelvane tells apart, plus one it does not.
constexpr std::array<ProductKind, 12> kProductKinds = {{
    {"com.apple.product-type.application", "app", "wrapper.application"},
    {"com.apple.product-type.app-extension", "appex", "wrapper.app-extension"},
    {"com.apple.product-type.watchkit2-app", "app", "wrapper.application"},
    {"com.apple.product-type.watchkit2-extension", "appex", "wrapper.app-extension"},
    {"com.apple.product-type.app-extension.widgetkit-extension", "appex", "wrapper.app-extension"},
    {"com.apple.product-type.framework", "framework", "wrapper.framework"},
    {"com.apple.product-type.library.static", "a", "archive.ar"},
    {"com.apple.product-type.bundle.unit-test", "xctest", "wrapper.cfbundle"},
    {"com.apple.product-type.bundle.ui-testing", "xctest", "wrapper.cfbundle"},
    {"com.apple.product-type.application.on-demand-install-capable", "app", "wrapper.application"},
    {"com.apple.product-type.app-extension.messages", "appex", "wrapper.app-extension"},
    {"com.apple.product-type.tool", "", "compiled.mach-o.executable"},
}};

constexpr std::array<std::string_view, 8> kSystemFrameworks = {
    "UIKit", "SwiftUI", "WidgetKit", "CloudKit", "StoreKit", "CoreData", "Combine", "MapKit"};

constexpr std::array<std::string_view, 12> kWords = {"Account",  "Session", "Feed",   "Profile",
                                                     "Settings", "Search",  "Player", "Library",
                                                     "Upload",   "Network", "Cache",  "Onboarding"};

constexpr std::array<std::string_view, 6> kSuffixes = {"View",  "ViewModel", "Service",
                                                       "Store", "Cell",      "Controller"};

// Ids as Xcode writes them: 24 upper-case hexadecimal digits, drawn from a
// fixed-seed generator so that a size always produces the same file.
class IdSource {
public:
    std::string next() {
        constexpr char digits[] = "0123456789ABCDEF";
        std::string id(24, '0');
        const std::uint64_t high = mix();
        const std::uint64_t low = mix();
        for (int i = 0; i < 16; ++i) {
            id[static_cast<std::size_t>(i)] = digits[(high >> (4 * i)) & 0xF];
        }
        for (int i = 0; i < 8; ++i) {
            id[static_cast<std::size_t>(16 + i)] = digits[(low >> (4 * i)) & 0xF];
        }
        return id;
    }

private:
    std::uint64_t mix() { // splitmix64
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    std::uint64_t state_ = 2001;
};

// A file name or setting value as Xcode writes it: bare when every character
// may stand unquoted, otherwise in double quotes with escapes.
std::string written(std::string_view text) {
    bool bare = !text.empty();
    for (const char c : text) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '_' || c == '$' || c == '/' || c == ':' ||
                           c == '.' || c == '-';
        bare = bare && plain;
    }
    if (bare) {
        return std::string(text);
    }
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        out += c;
    }
    out += '"';
    return out;
}

struct Sections {
    std::string buildFiles, containerProxies, fileReferences, frameworksPhases, groups,
        nativeTargets, project, resourcesPhases, shellScriptPhases, sourcesPhases,
        targetDependencies, buildConfigurations, configurationLists;
};

struct Member {
    std::string fileId;
    std::string buildFileId;
    std::string name;
};

void appendList(std::string& out, std::string_view indent, std::string_view key,
                const std::vector<std::string>& items) {
    out.append(indent).append(key).append(" = (\n");
    for (const auto& item : items) {
        out.append(indent).append("\t").append(item).append(",\n");
    }
    out.append(indent).append(");\n");
}

std::string sourceName(std::size_t target, std::size_t index) {
    std::string name(kWords[(target + index) % kWords.size()]);
    name += kSuffixes[index % kSuffixes.size()];
    name += std::to_string(index);
    // Names that need quotes and escapes, as real projects have a few.
    if (index % 97 == 13) {
        name += " Copy";
    } else if (index % 211 == 17) {
        name = "Caf\xC3\xA9" + name; // "Café", UTF-8
    }
    return name + (index % 5 == 4 ? ".m" : ".swift");
}

class Generator {
public:
    explicit Generator(std::size_t approxBytes) : approxBytes_(approxBytes) {}

    std::string run() {
        projectId_ = ids_.next();
        mainGroupId_ = ids_.next();
        productsGroupId_ = ids_.next();
        for (const auto framework : kSystemFrameworks) {
            const std::string id = ids_.next();
            frameworkRefs_.push_back({id, "", std::string(framework) + ".framework"});
            s_.fileReferences += "\t\t" + id + " /* " + std::string(framework) +
                                 ".framework */ = {isa = PBXFileReference; lastKnownFileType = "
                                 "wrapper.framework; name = " +
                                 std::string(framework) +
                                 ".framework; path = System/Library/"
                                 "Frameworks/" +
                                 std::string(framework) + ".framework; sourceTree = SDKROOT; };\n";
        }
        // Targets until the text reaches the requested size; at least one.
        do {
            addTarget(targetNames_.size());
        } while (size() < approxBytes_);
        addProject();
        return assemble();
    }

private:
    std::size_t size() const {
        return s_.buildFiles.size() + s_.containerProxies.size() + s_.fileReferences.size() +
               s_.frameworksPhases.size() + s_.groups.size() + s_.nativeTargets.size() +
               s_.resourcesPhases.size() + s_.shellScriptPhases.size() + s_.sourcesPhases.size() +
               s_.targetDependencies.size() + s_.buildConfigurations.size() +
               s_.configurationLists.size();
    }

    std::string buildFile(const std::string& fileId, const std::string& name,
                          std::string_view phase) {
        const std::string id = ids_.next();
        s_.buildFiles += "\t\t" + id + " /* " + name + " in " + std::string(phase) +
                         " */ = {isa = PBXBuildFile; fileRef = " + fileId + " /* " + name +
                         " */; };\n";
        return id;
    }

    std::string phase(std::string& section, std::string_view isa, std::string_view comment,
                      const std::vector<Member>& members) {
        const std::string id = ids_.next();
        std::vector<std::string> files;
        files.reserve(members.size());
        for (const auto& member : members) {
            files.push_back(member.buildFileId + " /* " + member.name + " in " +
                            std::string(comment) + " */");
        }
        section += "\t\t" + id + " /* " + std::string(comment) +
                   " */ = {\n\t\t\tisa = " + std::string(isa) +
                   ";\n\t\t\tbuildActionMask = 2147483647;\n";
        appendList(section, "\t\t\t", "files", files);
        section += "\t\t\trunOnlyForDeploymentPostprocessing = 0;\n\t\t};\n";
        return id + " /* " + std::string(comment) + " */";
    }

    std::string configuration(const std::string& target, std::size_t index, const ProductKind& kind,
                              bool debug) {
        const std::string id = ids_.next();
        const std::string name = debug ? "Debug" : "Release";
        std::vector<std::pair<std::string, std::string>> settings = {
            {"ALWAYS_SEARCH_USER_PATHS", "NO"},
            {"ASSETCATALOG_COMPILER_APPICON_NAME", "AppIcon"},
            {"ASSETCATALOG_COMPILER_GLOBAL_ACCENT_COLOR_NAME", "AccentColor"},
            {"CLANG_ANALYZER_NONNULL", "YES"},
            {"CLANG_CXX_LANGUAGE_STANDARD", "\"gnu++20\""},
            {"CLANG_ENABLE_MODULES", "YES"},
            {"CLANG_ENABLE_OBJC_ARC", "YES"},
            {"CLANG_WARN_BLOCK_CAPTURE_AUTORELEASING", "YES"},
            {"CLANG_WARN_BOOL_CONVERSION", "YES"},
            {"CLANG_WARN_DOCUMENTATION_COMMENTS", "YES"},
            {"CLANG_WARN_UNGUARDED_AVAILABILITY", "YES_AGGRESSIVE"},
            {"CODE_SIGN_ENTITLEMENTS", target + "/" + target + ".entitlements"},
            {"CODE_SIGN_IDENTITY", "\"Apple Development\""},
            {"\"CODE_SIGN_IDENTITY[sdk=iphoneos*]\"", "\"iPhone Developer\""},
            {"CODE_SIGN_STYLE", index % 3 == 0 ? "Manual" : "Automatic"},
            {"COPY_PHASE_STRIP", debug ? "NO" : "YES"},
            {"CURRENT_PROJECT_VERSION", std::to_string(100 + index)},
            {"DEBUG_INFORMATION_FORMAT", debug ? "dwarf" : "\"dwarf-with-dsym\""},
            {"DEVELOPMENT_TEAM", index % 4 == 0 ? "ABCDE12345" : "ZYXWV98765"},
            {"ENABLE_STRICT_OBJC_MSGSEND", "YES"},
            {"ENABLE_TESTABILITY", debug ? "YES" : "NO"},
            {"GCC_C_LANGUAGE_STANDARD", "gnu11"},
            {"GCC_OPTIMIZATION_LEVEL", debug ? "0" : "s"},
            {"GCC_PREPROCESSOR_DEFINITIONS",
             debug ? "(\n\t\t\t\t\t\"DEBUG=1\",\n\t\t\t\t\t\"$(inherited)\",\n\t\t\t\t)"
                   : "(\n\t\t\t\t\t\"$(inherited)\",\n\t\t\t\t)"},
            {"GCC_WARN_64_TO_32_BIT_CONVERSION", "YES"},
            {"GENERATE_INFOPLIST_FILE", "YES"},
            {"INFOPLIST_FILE", target + "/Info.plist"},
            {"INFOPLIST_KEY_CFBundleDisplayName", written(target + " \xE2\x80\xA2 Beta")},
            {"INFOPLIST_KEY_NSCameraUsageDescription", written("Scans \"QR\" codes\nfor sign-in")},
            {"IPHONEOS_DEPLOYMENT_TARGET", index % 2 == 0 ? "17.0" : "16.4"},
            {"LD_RUNPATH_SEARCH_PATHS",
             "(\n\t\t\t\t\t\"$(inherited)\",\n\t\t\t\t\t\"@executable_path/Frameworks\",\n"
             "\t\t\t\t)"},
            {"MARKETING_VERSION", "2.4.1"},
            {"MTL_ENABLE_DEBUG_INFO", debug ? "INCLUDE_SOURCE" : "NO"},
            {"OTHER_SWIFT_FLAGS", written("-D FEATURE_" + std::to_string(index) +
                                          " -Xfrontend \"-warn-long-expression\"")},
            {"PRODUCT_BUNDLE_IDENTIFIER", "com.example.generated." + target},
            {"PRODUCT_NAME", "\"$(TARGET_NAME)\""},
            {"SDKROOT",
             kind.productType.find("watch") != std::string_view::npos ? "watchos" : "iphoneos"},
            {"SWIFT_ACTIVE_COMPILATION_CONDITIONS", debug ? "DEBUG" : "\"\""},
            {"SWIFT_EMIT_LOC_STRINGS", "YES"},
            {"SWIFT_OPTIMIZATION_LEVEL", debug ? "\"-Onone\"" : "\"-O\""},
            {"SWIFT_VERSION", "5.0"},
            {"TARGETED_DEVICE_FAMILY", "\"1,2\""},
        };
        std::string& out = s_.buildConfigurations;
        out += "\t\t" + id + " /* " + name +
               " */ = {\n\t\t\tisa = XCBuildConfiguration;\n"
               "\t\t\tbuildSettings = {\n";
        for (const auto& [key, value] : settings) {
            out += "\t\t\t\t" + key + " = " + value + ";\n";
        }
        out += "\t\t\t};\n\t\t\tname = " + name + ";\n\t\t};\n";
        return id + " /* " + name + " */";
    }

    std::string configurationList(const std::string& owner, std::vector<std::string> configs) {
        const std::string id = ids_.next();
        const std::string comment = "Build configuration list for " + owner;
        s_.configurationLists += "\t\t" + id + " /* " + comment +
                                 " */ = {\n\t\t\tisa = "
                                 "XCConfigurationList;\n";
        appendList(s_.configurationLists, "\t\t\t", "buildConfigurations", configs);
        s_.configurationLists += "\t\t\tdefaultConfigurationIsVisible = 0;\n\t\t\t"
                                 "defaultConfigurationName = Release;\n\t\t};\n";
        return id + " /* " + comment + " */";
    }

    void addTarget(std::size_t index) {
        const ProductKind& kind = kProductKinds[index % kProductKinds.size()];
        const std::string name = "Module" + std::to_string(index);
        const std::string targetId = ids_.next();
        const std::size_t sourceCount = 150 + index % 60;
        const std::size_t resourceCount = 12 + index % 8;

        std::vector<Member> sources;
        std::vector<Member> resources;
        std::vector<std::string> children;
        for (std::size_t i = 0; i < sourceCount + resourceCount; ++i) {
            const bool isSource = i < sourceCount;
            const std::string file = isSource ? sourceName(index, i)
                                              : std::string(kWords[i % kWords.size()]) +
                                                    std::string(i % 2 ? ".xib" : ".xcassets");
            const std::string fileId = ids_.next();
            const std::string fileType = !isSource ? (i % 2 ? "file.xib" : "folder.assetcatalog")
                                         : file.ends_with(".m") ? "sourcecode.c.objc"
                                                                : "sourcecode.swift";
            s_.fileReferences += "\t\t" + fileId + " /* " + file +
                                 " */ = {isa = PBXFileReference; lastKnownFileType = " + fileType +
                                 "; path = " + written(file) + "; sourceTree = \"<group>\"; };\n";
            children.push_back(fileId + " /* " + file + " */");
            const std::string phaseName = isSource ? "Sources" : "Resources";
            (isSource ? sources : resources)
                .push_back({fileId, buildFile(fileId, file, phaseName), file});
        }

        std::vector<Member> frameworks;
        for (std::size_t i = 0; i < 3; ++i) {
            const Member& framework = frameworkRefs_[(index + i * 3) % frameworkRefs_.size()];
            frameworks.push_back({framework.fileId,
                                  buildFile(framework.fileId, framework.name, "Frameworks"),
                                  framework.name});
        }

        const std::string groupId = ids_.next();
        s_.groups += "\t\t" + groupId + " /* " + name + " */ = {\n\t\t\tisa = PBXGroup;\n";
        appendList(s_.groups, "\t\t\t", "children", children);
        s_.groups += "\t\t\tpath = " + name + ";\n\t\t\tsourceTree = \"<group>\";\n\t\t};\n";
        mainChildren_.push_back(groupId + " /* " + name + " */");

        std::vector<std::string> phases = {
            phase(s_.sourcesPhases, "PBXSourcesBuildPhase", "Sources", sources),
            phase(s_.frameworksPhases, "PBXFrameworksBuildPhase", "Frameworks", frameworks),
            phase(s_.resourcesPhases, "PBXResourcesBuildPhase", "Resources", resources),
        };
        if (index % 3 == 0) {
            const std::string id = ids_.next();
            s_.shellScriptPhases +=
                "\t\t" + id +
                " /* SwiftLint */ = {\n\t\t\tisa = PBXShellScriptBuildPhase;\n\t\t\t"
                "buildActionMask = 2147483647;\n\t\t\tfiles = (\n\t\t\t);\n\t\t\tinputPaths = "
                "(\n\t\t\t);\n\t\t\tname = SwiftLint;\n\t\t\toutputPaths = (\n\t\t\t);\n\t\t\t"
                "runOnlyForDeploymentPostprocessing = 0;\n\t\t\tshellPath = /bin/sh;\n\t\t\t"
                "shellScript = \"if which swiftlint > /dev/null; then\\n  swiftlint\\nelse\\n  "
                "echo \\\"warning: SwiftLint not installed\\\"\\nfi\\n\";\n\t\t};\n";
            phases.push_back(id + " /* SwiftLint */");
        }

        std::vector<std::string> dependencies;
        if (index > 0 && kind.extension == "appex") {
            // Extensions depend on the first target, the app, as Xcode makes them.
            const std::string proxyId = ids_.next();
            const std::string dependencyId = ids_.next();
            s_.containerProxies += "\t\t" + proxyId +
                                   " /* PBXContainerItemProxy */ = {\n\t\t\tisa = "
                                   "PBXContainerItemProxy;\n\t\t\tcontainerPortal = " +
                                   projectId_ +
                                   " /* Project object */;\n\t\t\tproxyType = 1;\n\t\t\t"
                                   "remoteGlobalIDString = " +
                                   targetIds_.front() +
                                   ";\n\t\t\tremoteInfo = " + targetNames_.front() + ";\n\t\t};\n";
            s_.targetDependencies += "\t\t" + dependencyId +
                                     " /* PBXTargetDependency */ = {\n\t\t\tisa = "
                                     "PBXTargetDependency;\n\t\t\ttarget = " +
                                     targetIds_.front() + " /* " + targetNames_.front() +
                                     " */;\n\t\t\ttargetProxy = " + proxyId +
                                     " /* PBXContainerItemProxy */;\n\t\t};\n";
            dependencies.push_back(dependencyId + " /* PBXTargetDependency */");
        }

        const std::string product =
            kind.extension.empty() ? name : name + "." + std::string(kind.extension);
        const std::string productId = ids_.next();
        s_.fileReferences +=
            "\t\t" + productId + " /* " + product +
            " */ = {isa = PBXFileReference; explicitFileType = " + std::string(kind.fileType) +
            "; includeInIndex = 0; path = " + product + "; sourceTree = BUILT_PRODUCTS_DIR; };\n";
        productChildren_.push_back(productId + " /* " + product + " */");

        const std::string list = configurationList(
            "PBXNativeTarget \"" + name + "\"",
            {configuration(name, index, kind, true), configuration(name, index, kind, false)});

        std::string& out = s_.nativeTargets;
        out += "\t\t" + targetId + " /* " + name +
               " */ = {\n\t\t\tisa = PBXNativeTarget;\n"
               "\t\t\tbuildConfigurationList = " +
               list + ";\n";
        appendList(out, "\t\t\t", "buildPhases", phases);
        appendList(out, "\t\t\t", "buildRules", {});
        appendList(out, "\t\t\t", "dependencies", dependencies);
        out += "\t\t\tname = " + name + ";\n\t\t\tproductName = " + name +
               ";\n\t\t\tproductReference = " + productId + " /* " + product +
               " */;\n\t\t\tproductType = \"" + std::string(kind.productType) + "\";\n\t\t};\n";
        targetIds_.push_back(targetId);
        targetNames_.push_back(name);
    }

    void addProject() {
        s_.groups += "\t\t" + mainGroupId_ + " = {\n\t\t\tisa = PBXGroup;\n";
        mainChildren_.push_back(productsGroupId_ + " /* Products */");
        appendList(s_.groups, "\t\t\t", "children", mainChildren_);
        s_.groups += "\t\t\tsourceTree = \"<group>\";\n\t\t};\n";
        s_.groups += "\t\t" + productsGroupId_ + " /* Products */ = {\n\t\t\tisa = PBXGroup;\n";
        appendList(s_.groups, "\t\t\t", "children", productChildren_);
        s_.groups += "\t\t\tname = Products;\n\t\t\tsourceTree = \"<group>\";\n\t\t};\n";

        const std::string list = configurationList(
            "PBXProject \"Generated\"", {configuration("Generated", 0, kProductKinds[0], true),
                                         configuration("Generated", 0, kProductKinds[0], false)});
        std::vector<std::string> targets;
        std::string attributes;
        for (std::size_t i = 0; i < targetIds_.size(); ++i) {
            targets.push_back(targetIds_[i] + " /* " + targetNames_[i] + " */");
            attributes += "\t\t\t\t\t" + targetIds_[i] +
                          " = {\n\t\t\t\t\t\tCreatedOnToolsVersion = 15.0;\n\t\t\t\t\t};\n";
        }
        std::string& out = s_.project;
        out += "\t\t" + projectId_ +
               " /* Project object */ = {\n\t\t\tisa = PBXProject;\n\t\t\tattributes = {\n"
               "\t\t\t\tBuildIndependentTargetsInParallel = 1;\n\t\t\t\tLastSwiftUpdateCheck = "
               "1500;\n\t\t\t\tLastUpgradeCheck = 1500;\n\t\t\t\tTargetAttributes = {\n" +
               attributes + "\t\t\t\t};\n\t\t\t};\n\t\t\tbuildConfigurationList = " + list +
               ";\n\t\t\tcompatibilityVersion = \"Xcode 14.0\";\n\t\t\tdevelopmentRegion = en;\n"
               "\t\t\thasScannedForEncodings = 0;\n\t\t\tknownRegions = (\n\t\t\t\ten,\n\t\t\t\t"
               "Base,\n\t\t\t);\n\t\t\tmainGroup = " +
               mainGroupId_ + ";\n\t\t\tproductRefGroup = " + productsGroupId_ +
               " /* Products */;\n\t\t\tprojectDirPath = \"\";\n\t\t\tprojectRoot = \"\";\n";
        appendList(out, "\t\t\t", "targets", targets);
        out += "\t\t};\n";
    }

    std::string assemble() const {
        std::string out;
        out.reserve(size() + 4096);
        out += "// !$*UTF8*$!\n{\n\tarchiveVersion = 1;\n\tclasses = {\n\t};\n"
               "\tobjectVersion = 56;\n\tobjects = {\n";
        const std::pair<std::string_view, const std::string*> sections[] = {
            {"PBXBuildFile", &s_.buildFiles},
            {"PBXContainerItemProxy", &s_.containerProxies},
            {"PBXFileReference", &s_.fileReferences},
            {"PBXFrameworksBuildPhase", &s_.frameworksPhases},
            {"PBXGroup", &s_.groups},
            {"PBXNativeTarget", &s_.nativeTargets},
            {"PBXProject", &s_.project},
            {"PBXResourcesBuildPhase", &s_.resourcesPhases},
            {"PBXShellScriptBuildPhase", &s_.shellScriptPhases},
            {"PBXSourcesBuildPhase", &s_.sourcesPhases},
            {"PBXTargetDependency", &s_.targetDependencies},
            {"XCBuildConfiguration", &s_.buildConfigurations},
            {"XCConfigurationList", &s_.configurationLists},
        };
        for (const auto& [isa, body] : sections) {
            if (body->empty()) {
                continue;
            }
            out.append("\n/* Begin ").append(isa).append(" section */\n");
            out += *body;
            out.append("/* End ").append(isa).append(" section */\n");
        }
        out += "\t};\n\trootObject = " + projectId_ + " /* Project object */;\n}\n";
        return out;
    }

    std::size_t approxBytes_;
    IdSource ids_;
    Sections s_;
    std::string projectId_, mainGroupId_, productsGroupId_;
    std::vector<Member> frameworkRefs_;
    std::vector<std::string> targetIds_, targetNames_, mainChildren_, productChildren_;
};

} // namespace

std::string generateProject(std::size_t approxBytes) {
    return Generator(approxBytes).run();
}

void writeProject(const std::filesystem::path& xcodeproj, std::size_t approxBytes) {
    std::filesystem::create_directories(xcodeproj);
    const std::string text = generateProject(approxBytes);
    std::ofstream out(xcodeproj / "project.pbxproj", std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out) {
        throw std::runtime_error("cannot write " + (xcodeproj / "project.pbxproj").string());
    }
}

} // namespace kelvane::bench
