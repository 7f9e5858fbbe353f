#include "parser/ObjectTable.h"

namespace kelvane {

const plist::Dictionary* findObject(const plist::Dictionary& objects, const std::string* id) {
    if (id == nullptr) {
        return nullptr;
    }
    const plist::Value* object = objects.find(*id);
    return object ? object->asDictionary() : nullptr;
}

const plist::Array* findTextList(const plist::Dictionary& dictionary, std::string_view key) {
    const plist::Array* list = plist::findArray(dictionary, key);
    if (list == nullptr) {
        return nullptr;
    }
    for (const plist::Value& element : *list) {
        if (element.asString() == nullptr) {
            return nullptr;
        }
    }
    return list;
}

std::string_view isaOf(const plist::Dictionary& object) {
    const std::string* isa = plist::findString(object, "isa");
    return isa ? std::string_view(*isa) : std::string_view();
}

} // namespace kelvane
