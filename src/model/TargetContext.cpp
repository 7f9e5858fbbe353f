#include "model/TargetContext.h"

#include "plist/PropertyListReader.h"

namespace kelvane {

std::optional<plist::Value> TargetContext::infoPlistValue(std::string_view key) const {
    if (!infoPlistURL) {
        return std::nullopt;
    }
    const plist::Value root = plist::readPropertyListFile(*infoPlistURL);
    const plist::Dictionary* dictionary = root.asDictionary();
    if (dictionary == nullptr) {
        return std::nullopt;
    }
    const plist::Value* value = dictionary->find(key);
    return value ? std::optional<plist::Value>(*value) : std::nullopt;
}

} // namespace kelvane
