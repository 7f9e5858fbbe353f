#include "parser/SettingPositions.h"

#include "parser/ObjectTable.h"

namespace kelvane {

plist::KeyPositions buildSettingPositions() {
    return plist::KeyPositions([](const plist::KeyPositions::Path& path) {
        return path.size() == 3 && path[2] == "buildSettings" && path[0] == "objects";
    });
}

namespace {

void appendList(std::vector<SettingPosition>& out, const plist::Dictionary& objects,
                const std::string* listID, const std::string& targetName,
                const plist::KeyPositions& positions, const std::string& projectFile) {
    const plist::Dictionary* list = findObject(objects, listID);
    const plist::Array* ids = list ? findTextList(*list, "buildConfigurations") : nullptr;
    if (ids == nullptr) {
        return;
    }
    for (const plist::Value& id : *ids) {
        const plist::Dictionary* configuration = findObject(objects, id.asString());
        const plist::Dictionary* settings =
            configuration ? plist::findDictionary(*configuration, "buildSettings") : nullptr;
        if (settings == nullptr) {
            continue;
        }
        const std::string* name = plist::findString(*configuration, "name");
        for (const plist::DictionaryEntry& entry : *settings) {
            if (const auto at = positions.find({"objects", *id.asString(), "buildSettings", entry.key})) {
                out.push_back({projectFile, targetName, name ? *name : "", entry.key, at->line,
                               at->column});
            }
        }
    }
}

} // namespace

std::vector<SettingPosition> settingPositions(const plist::Dictionary& objects,
                                              const plist::KeyPositions& positions,
                                              const std::string& projectFile) {
    std::vector<SettingPosition> result;
    if (positions.size() == 0) {
        return result;
    }
    for (const plist::DictionaryEntry& entry : objects) {
        const plist::Dictionary* object = entry.value.asDictionary();
        if (object == nullptr) {
            continue;
        }
        const std::string_view isa = isaOf(*object);
        const std::string* listID = plist::findString(*object, "buildConfigurationList");
        if (isa == "PBXProject") {
            appendList(result, objects, listID, "", positions, projectFile);
        } else if (isa.ends_with("Target")) {
            if (const std::string* name = plist::findString(*object, "name")) {
                appendList(result, objects, listID, *name, positions, projectFile);
            }
        }
    }
    return result;
}

} // namespace kelvane
