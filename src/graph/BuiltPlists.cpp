#include "graph/BuiltPlists.h"

#include "plist/PropertyListReader.h"
#include "settings/BooleanSetting.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace kelvane {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kKeyPrefix = "INFOPLIST_KEY_";

// Keys whose setting Xcode writes as a boolean or as a list; every other
// generated key is text.
constexpr std::array kBooleanKeys{
    "ITSAppUsesNonExemptEncryption"sv, "LSBackgroundOnly"sv, "LSUIElement"sv,
    "UIStatusBarHidden"sv, "UIRequiresFullScreen"sv, "LSSupportsOpeningDocumentsInPlace"sv,
    "UISupportsDocumentBrowser"sv, "UIApplicationSupportsIndirectInputEvents"sv,
    "NSSupportsLiveActivities"sv, "WKRunsIndependentlyOfCompanionApp"sv, "WKWatchOnly"sv,
    "WKApplication"sv, "GCSupportsControllerUserInteraction"sv, "MetalCaptureEnabled"sv,
};
constexpr std::array kListKeys{"UISupportedInterfaceOrientations"sv,
                               "UIRequiredDeviceCapabilities"sv};
// Xcode generates only the keys it knows; a custom INFOPLIST_KEY_ is ignored.
constexpr std::array kGeneratedKeys{
    "CFBundleDisplayName"sv, "LSApplicationCategoryType"sv, "NSHumanReadableCopyright"sv,
    "NSPrincipalClass"sv, "ITSEncryptionExportComplianceCode"sv, "NSMainNibFile"sv,
    "NSMainStoryboardFile"sv, "UILaunchStoryboardName"sv, "UIMainStoryboardFile"sv,
    "UIUserInterfaceStyle"sv, "UIStatusBarStyle"sv, "NSStickerSharingLevel"sv,
};
// Emptied identity keys are removed rather than shipped empty.
constexpr std::array kDroppedWhenEmpty{
    "CFBundleIdentifier"sv, "CFBundleName"sv, "CFBundleExecutable"sv, "CFBundleVersion"sv,
    "CFBundleShortVersionString"sv, "CFBundleDevelopmentRegion"sv, "CFBundlePackageType"sv,
    "CFBundleIconFile"sv, "NSPrincipalClass"sv, "NSMainNibFile"sv, "NSHumanReadableCopyright"sv,
};

template <std::size_t N>
bool contains(const std::array<std::string_view, N>& list, std::string_view key) {
    for (const std::string_view item : list) {
        if (item == key) {
            return true;
        }
    }
    return false;
}

bool isGeneratedKey(std::string_view key) {
    const std::string_view base = key.substr(0, key.find('~'));
    return contains(kGeneratedKeys, base) || contains(kBooleanKeys, base) ||
           contains(kListKeys, base) || base.starts_with("WK") || base.starts_with("GCSupports") ||
           (base.starts_with("NS") && base.ends_with("UsageDescription"));
}

struct Expander {
    const settings::SettingsScope& scope;
    const ExtraValues& extra;
    bool expandKeys;
    std::vector<UnknownSetting>& unknown;
    std::string fileLabel;

    std::optional<plist::Value> value(const plist::Value& input, const std::string& keyPath) {
        if (const std::string* text = input.asString()) {
            if (text->find('$') == std::string::npos) {
                return input;
            }
            const settings::Resolved resolved = scope.expand(*text, extra);
            if (resolved.unknownReason) {
                unknown.push_back({fileLabel + " " + keyPath, *resolved.unknownReason});
                return std::nullopt;
            }
            return plist::Value(resolved.value);
        }
        if (const plist::Array* array = input.asArray()) {
            plist::Array out;
            out.reserve(array->size());
            for (const plist::Value& element : *array) {
                if (auto expanded = value(element, keyPath)) {
                    out.push_back(std::move(*expanded));
                }
            }
            return plist::Value(std::move(out));
        }
        if (const plist::Dictionary* dictionary = input.asDictionary()) {
            return plist::Value(this->dictionary(*dictionary, keyPath));
        }
        return input;
    }

    plist::Dictionary dictionary(const plist::Dictionary& input, const std::string& keyPath) {
        plist::Dictionary out;
        out.reserve(input.size());
        for (const plist::DictionaryEntry& entry : input) {
            std::string key = entry.key;
            if (expandKeys && key.find('$') != std::string::npos) {
                const settings::Resolved resolved = scope.expand(key, extra);
                if (resolved.unknownReason) {
                    unknown.push_back({fileLabel + " key " + key, *resolved.unknownReason});
                    continue;
                }
                key = resolved.value;
            }
            const std::string path = keyPath.empty() ? key : keyPath + "." + key;
            if (auto expanded = value(entry.value, path)) {
                out.insert(std::move(key), std::move(*expanded));
            }
        }
        return out;
    }
};

// Reads a property list a setting names; a missing file is no file.
BuiltPlist readPlist(const std::optional<std::string>& file) {
    BuiltPlist result;
    if (!file) {
        return result;
    }
    try {
        const plist::Value root = plist::readPropertyListFile(*file);
        const plist::Dictionary* dictionary = root.asDictionary();
        result.dictionary = dictionary ? *dictionary : plist::Dictionary{};
    } catch (const std::exception& error) {
        result.error = error.what();
    }
    return result;
}

void mergeGenerated(plist::Dictionary& target, const std::string& key, plist::Value generated) {
    const plist::Value* existing = target.find(key);
    if (existing != nullptr && existing->asArray() && generated.asArray()) {
        plist::Array joined = *existing->asArray();
        for (const plist::Value& item : *generated.asArray()) {
            bool present = false;
            for (const plist::Value& have : joined) {
                present = present || have == item;
            }
            if (!present) {
                joined.push_back(item);
            }
        }
        generated = plist::Value(std::move(joined));
    }
    target.insert(key, std::move(generated));
}

void dropEmptyIdentityKeys(plist::Dictionary& dictionary) {
    plist::Dictionary kept;
    kept.reserve(dictionary.size());
    for (const plist::DictionaryEntry& entry : dictionary) {
        const std::string* text = entry.value.asString();
        if (text != nullptr && text->empty() && contains(kDroppedWhenEmpty, entry.key)) {
            continue;
        }
        kept.insert(entry.key, entry.value);
    }
    dictionary = std::move(kept);
}

} // namespace

BuiltPlist builtInfoPlist(const std::optional<std::string>& file, bool generate,
                          const settings::SettingsScope& scope,
                          const std::vector<std::string>& assignedNames) {
    BuiltPlist result = readPlist(file);
    if (result.error || (!result.dictionary && !generate)) {
        return result;
    }
    plist::Dictionary source = result.dictionary.value_or(plist::Dictionary{});
    ExtraValues extra;
    // The file may refer to its own bundle id, which may itself hold references.
    if (const std::string* own = plist::findString(source, "CFBundleIdentifier")) {
        const settings::Resolved resolved = scope.expand(*own);
        if (!resolved.unknownReason) {
            extra.emplace("CFBundleIdentifier", resolved.value);
        }
    }
    Expander expander{scope, extra, false, result.unknown, "Info.plist"};
    plist::Dictionary built = expander.dictionary(source, "");

    if (generate) {
        constexpr std::array kFromSettings{
            std::pair{"CFBundleIdentifier"sv, "PRODUCT_BUNDLE_IDENTIFIER"sv},
            std::pair{"CFBundleName"sv, "PRODUCT_NAME"sv},
            std::pair{"CFBundleExecutable"sv, "EXECUTABLE_NAME"sv},
            std::pair{"CFBundleVersion"sv, "CURRENT_PROJECT_VERSION"sv},
            std::pair{"CFBundleShortVersionString"sv, "MARKETING_VERSION"sv},
            std::pair{"CFBundleDevelopmentRegion"sv, "DEVELOPMENT_LANGUAGE"sv},
        };
        for (const auto& [key, setting] : kFromSettings) {
            const settings::Resolved resolved = scope.evaluate(setting);
            if (resolved.unknownReason) {
                // Dropped with the empty keys below rather than shipped as a guess.
                built.insert(std::string(key), plist::Value(std::string()));
                result.unknown.push_back({std::string(setting), *resolved.unknownReason});
                continue;
            }
            // Their declared default is empty, which counts as assigned: a
            // version written in the file gives way even to an empty one.
            built.insert(std::string(key), plist::Value(resolved.value));
        }
        for (const std::string& name : assignedNames) {
            if (!name.starts_with(kKeyPrefix)) {
                continue;
            }
            std::string key = name.substr(kKeyPrefix.size());
            if (key.ends_with("_iPad")) {
                key = key.substr(0, key.size() - 5) + "~ipad";
            } else if (key.ends_with("_iPhone")) {
                key = key.substr(0, key.size() - 7) + "~iphone";
            }
            if (!isGeneratedKey(key)) {
                continue;
            }
            const settings::Resolved resolved = scope.evaluate(name);
            if (resolved.unknownReason) {
                result.unknown.push_back({name, *resolved.unknownReason});
                continue;
            }
            const std::string base = key.substr(0, key.find('~'));
            if (contains(kBooleanKeys, base)) {
                mergeGenerated(built, key, plist::Value(settings::isYes(resolved.value)));
            } else if (contains(kListKeys, base)) {
                plist::Array items;
                std::size_t start = 0;
                while ((start = resolved.value.find_first_not_of(" \t", start)) != std::string::npos) {
                    const std::size_t end = resolved.value.find_first_of(" \t", start);
                    items.emplace_back(resolved.value.substr(start, end - start));
                    start = end;
                }
                mergeGenerated(built, key, plist::Value(std::move(items)));
            } else {
                mergeGenerated(built, key, plist::Value(resolved.value));
            }
        }
    }
    dropEmptyIdentityKeys(built);
    result.dictionary = std::move(built);
    return result;
}

BuiltPlist builtEntitlements(const std::optional<std::string>& file,
                             const settings::SettingsScope& scope, const ExtraValues& extra) {
    BuiltPlist result = readPlist(file);
    if (!result.dictionary) {
        return result;
    }
    Expander expander{scope, extra, true, result.unknown, "entitlements"};
    result.dictionary = expander.dictionary(*result.dictionary, "");
    return result;
}

} // namespace kelvane
