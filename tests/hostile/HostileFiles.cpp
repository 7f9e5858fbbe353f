#include "HostileFiles.h"

#include "PlistWriters.h"
#include "ProjectFiles.h"

#include <vector>

namespace kelvane::testing::hostile {

namespace {

using plist::testing::assembleBinary;
using plist::testing::bigEndian;
using plist::testing::marker;

constexpr std::uint8_t kArray = 0xA;
constexpr std::uint8_t kDictionary = 0xD;
constexpr std::uint8_t kAscii = 0x5;

std::string ascii(std::string_view text) {
    return marker(kAscii, text.size()) + std::string(text);
}

std::string xmlPlist(std::string_view body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n" +
           std::string(body) + "\n</plist>\n";
}

std::string target(std::string_view id, std::string_view name, std::string_view productType,
                   std::string_view settings) {
    const std::string list = std::string(id) + "LIST";
    const std::string debug = std::string(id) + "DEBUG";
    return "\t\t" + std::string(id) + " = {isa = PBXNativeTarget; name = " + std::string(name) +
           "; productType = \"" + std::string(productType) +
           "\"; buildConfigurationList = " + list + "; buildPhases = (); };\n\t\t" + list +
           " = {isa = XCConfigurationList; buildConfigurations = (" + debug + "); };\n\t\t" +
           debug + " = {isa = XCBuildConfiguration; name = Debug; buildSettings = {" +
           std::string(settings) + "}; };\n";
}

} // namespace

std::string writeProject(const TempDir& dir, std::string_view bytes) {
    dir.write("App.xcodeproj/project.pbxproj", bytes);
    return dir.file("App.xcodeproj");
}

std::string writeProjectReading(const TempDir& dir, std::string_view entitlements,
                                std::string_view watchInfoPlist) {
    dir.write(kEntitlementsFile, entitlements);
    dir.write(kWatchInfoPlistFile, watchInfoPlist);
    return writeProject(dir,
                        pbxproj(target("APP", "App", "com.apple.product-type.application",
                                       "CODE_SIGN_ENTITLEMENTS = App/App.entitlements; "
                                       "PRODUCT_BUNDLE_IDENTIFIER = com.example.app; "
                                       "IPHONEOS_DEPLOYMENT_TARGET = 17.0;") +
                                target("WATCH", "Watch", "com.apple.product-type.watchkit2-app",
                                       "INFOPLIST_FILE = Watch/Info.plist; "
                                       "PRODUCT_BUNDLE_IDENTIFIER = com.example.app.watchkitapp; "
                                       "WATCHOS_DEPLOYMENT_TARGET = 10.0;")));
}

std::string goodEntitlements() {
    return xmlPlist("<dict>\n<key>com.apple.security.application-groups</key>\n"
                    "<array><string>group.com.example.app</string></array>\n</dict>");
}

std::string goodWatchInfoPlist() {
    return xmlPlist("<dict>\n<key>WKCompanionAppBundleIdentifier</key>\n"
                    "<string>com.example.app</string>\n</dict>");
}

std::string nestedArrays(std::size_t depth, bool closed) {
    std::string text = "// !$*UTF8*$!\n{\n\tobjects = {\n\t};\n\tdeep = ";
    text.append(depth, '(');
    if (closed) {
        text.append(depth, ')');
        text += ";\n}\n";
    }
    return text;
}

std::string hugeQuotedString(std::size_t size, bool closed) {
    std::string text = "// !$*UTF8*$!\n{\n\tobjects = {\n\t};\n\thuge = \"";
    text.reserve(text.size() + size + 8);
    text.append(size, 'x');
    if (closed) {
        text += "\";\n}\n";
    }
    return text;
}

std::string danglingAndSelfReferences() {
    return pbxproj(
        // Its configuration list is the target itself; its phases are itself,
        // a phase whose files include the phase, and an id nothing defines.
        "\t\tLOOP = {isa = PBXNativeTarget; name = Loop; "
        "productType = \"com.apple.product-type.application\"; buildConfigurationList = LOOP; "
        "buildPhases = (LOOP, PHASE, NOWHERE); };\n"
        "\t\tPHASE = {isa = PBXFrameworksBuildPhase; files = (PHASE, SELFREF, TOTARGET, NOWHERE); "
        "};\n"
        "\t\tSELFREF = {isa = PBXBuildFile; fileRef = SELFREF; };\n"
        "\t\tTOTARGET = {isa = PBXBuildFile; fileRef = LOOP; };\n"
        // Every reference points at an id that is not in the table.
        "\t\tLOST = {isa = PBXNativeTarget; name = Lost; buildConfigurationList = NOWHERE; "
        "buildPhases = NOWHERE; };\n"
        // A configuration list that lists itself as its configuration.
        "\t\tSELFLIST = {isa = XCConfigurationList; buildConfigurations = (SELFLIST); };\n"
        "\t\tLISTED = {isa = PBXNativeTarget; name = Listed; buildConfigurationList = SELFLIST; "
        "buildPhases = (LISTED); };\n"
        // The project object names targets that do not exist.
        "\t\tROOT = {isa = PBXProject; targets = (NOWHERE, ROOT); };\n");
}

std::string binaryOffsetPastEnd() {
    std::string bytes = assembleBinary(
        {marker(kDictionary, 1) + "\x01\x02", ascii("aps-environment"), ascii("development")});
    // The offset table holds one byte per object, just before the trailer.
    bytes[bytes.size() - 32 - 1] = static_cast<char>(0xF0);
    return bytes;
}

std::string binaryCycle() {
    // A dictionary whose value is an array that holds the dictionary.
    return assembleBinary({marker(kDictionary, 1) + std::string("\x01\x02", 2),
                           ascii("com.apple.security.application-groups"),
                           marker(kArray, 1) + std::string(1, '\0')});
}

std::string binaryExpansion() {
    constexpr int kLevels = 24;
    std::vector<std::string> objects;
    for (int level = 0; level < kLevels; ++level) {
        const char next = static_cast<char>(level + 1);
        objects.push_back(marker(kArray, 2) + next + next);
    }
    objects.push_back(ascii(std::string(47, 'x')));
    return assembleBinary(objects);
}

std::string binaryCountPastEnd() {
    // An array that claims 2^32 elements in a file of a few dozen bytes.
    return assembleBinary({"\xAF\x12" + bigEndian(0xFFFFFFFF, 4) + "\x01", ascii("x")});
}

std::string xmlUnclosed() {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
           "<key>com.apple.security.application-groups</key>\n<array>\n"
           "<string>group.com.example.app</string>\n";
}

std::string xmlWithByteOrderMark() {
    return "\xEF\xBB\xBF" + goodEntitlements();
}

std::string xmlBillionLaughs() {
    std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE plist [\n"
                       "<!ENTITY l0 \"lollollollollollollollollollol\">\n";
    for (int level = 1; level < 10; ++level) {
        text += "<!ENTITY l" + std::to_string(level) + " \"";
        for (int copy = 0; copy < 10; ++copy) {
            text += "&l" + std::to_string(level - 1) + ";";
        }
        text += "\">\n";
    }
    return text + "]>\n<plist version=\"1.0\"><dict><key>WKCompanionAppBundleIdentifier</key>"
                  "<string>&l9;</string></dict></plist>\n";
}

std::string xmlIntegerNotANumber() {
    return xmlPlist("<dict>\n<key>com.apple.developer.healthkit</key>\n<integer>abc</integer>\n"
                    "</dict>");
}

std::string xmlKeyWithoutValue() {
    return xmlPlist("<dict>\n<key>aps-environment</key>\n</dict>");
}

} // namespace kelvane::testing::hostile
