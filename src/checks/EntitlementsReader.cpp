#include "checks/EntitlementsReader.h"

#include "plist/PropertyListReader.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace kelvane {

plist::Dictionary readEntitlements(const TargetContext& target) {
    // As built, the model already holds them expanded, or why it could not.
    if (target.built) {
        if (target.built->entitlementsError) {
            throw std::runtime_error(*target.built->entitlementsError);
        }
        return target.built->entitlements.value_or(plist::Dictionary{});
    }
    if (!target.entitlementsURL) {
        return {};
    }
    // Only a path that is certainly not there is skipped. Any other trouble
    // looking at it (a folder, no permission) is left for the read to report.
    std::error_code error;
    const auto status = std::filesystem::status(*target.entitlementsURL, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return {};
    }
    const plist::Value root = plist::readPropertyListFile(*target.entitlementsURL);
    const plist::Dictionary* dictionary = root.asDictionary();
    return dictionary ? *dictionary : plist::Dictionary{};
}

std::optional<std::vector<std::string>> identifierList(const plist::Value& value) {
    if (const std::string* text = value.asString()) {
        return std::vector<std::string>{*text};
    }
    const plist::Array* array = value.asArray();
    if (array == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> texts;
    texts.reserve(array->size());
    for (const plist::Value& element : *array) {
        const std::string* text = element.asString();
        if (text == nullptr) {
            return std::nullopt;
        }
        texts.push_back(*text);
    }
    return texts;
}

} // namespace kelvane
