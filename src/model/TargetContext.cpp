#include "model/TargetContext.h"

#include "plist/PropertyListReader.h"

#include <stdexcept>

namespace kelvane {

std::optional<plist::Value> TargetContext::infoPlistValue(std::string_view key) const {
    if (built) {
        if (built->infoPlistError) {
            throw std::runtime_error(*built->infoPlistError);
        }
        const plist::Value* value = built->infoPlist ? built->infoPlist->find(key) : nullptr;
        return value ? std::optional<plist::Value>(*value) : std::nullopt;
    }
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
