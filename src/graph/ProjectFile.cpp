#include "graph/ProjectFile.h"

#include "model/FilePath.h"
#include "parser/ObjectTable.h"
#include "parser/ParserError.h"
#include "parser/PathExists.h"
#include "parser/SettingPositions.h"
#include "plist/PropertyListReader.h"

#include <optional>

namespace kelvane {

const plist::Dictionary& ProjectFile::objects() const {
    const plist::Dictionary* dictionary = root.asDictionary();
    const plist::Dictionary* table = dictionary ? plist::findDictionary(*dictionary, "objects") : nullptr;
    if (table == nullptr) {
        throw ParserError(ParserError::Case::failedToParseTargets);
    }
    return *table;
}

const plist::Dictionary* ProjectFile::project() const {
    const plist::Dictionary* dictionary = root.asDictionary();
    if (dictionary == nullptr) {
        return nullptr;
    }
    return findObject(objects(), plist::findString(*dictionary, "rootObject"));
}

ProjectFile readProjectFile(const std::string& projectURL, bool positions) {
    const std::string projectFile = path::join(projectURL, "project.pbxproj");
    if (!pathExists(projectFile)) {
        throw ParserError(ParserError::Case::pbxprojNotFound);
    }
    plist::KeyPositions keys = buildSettingPositions();
    ProjectFile file{projectURL,
                     plist::readPropertyListFile(projectFile, {}, positions ? &keys : nullptr)};
    if (file.root.asDictionary() == nullptr) {
        throw ParserError(ParserError::Case::invalidPbxprojFormat);
    }
    file.settingPositions = settingPositions(file.objects(), keys, projectFile);
    return file;
}

GroupTree::GroupTree(const plist::Dictionary& objects) : objects_(objects) {}

std::optional<std::string> GroupTree::pathOf(const std::string& id,
                                             const std::string& projectDir) const {
    if (!parents_) {
        parents_.emplace();
        indexParents();
    }
    return resolvedPath(id, projectDir);
}

void GroupTree::indexParents() const {
    for (const plist::DictionaryEntry& entry : objects_) {
        const plist::Dictionary* object = entry.value.asDictionary();
        if (object == nullptr) {
            continue;
        }
        const plist::Array* children = findTextList(*object, "children");
        if (children == nullptr) {
            continue;
        }
        for (const plist::Value& child : *children) {
            parents_->emplace(*child.asString(), entry.key);
        }
    }
}

std::optional<std::string> GroupTree::resolvedPath(const std::string& id,
                                                   const std::string& projectDir) const {
    // Walk up collecting `path`s until a source tree that is not "<group>"
    // anchors the chain; the main group (no parent) is the project folder.
    std::vector<std::string> components;
    std::string current = id;
    for (std::size_t steps = 0; steps < 256; ++steps) {
        const plist::Dictionary* object = findObject(objects_, &current);
        if (object == nullptr) {
            return std::nullopt;
        }
        const std::string* itemPath = plist::findString(*object, "path");
        const std::string* sourceTree = plist::findString(*object, "sourceTree");
        const std::string tree = sourceTree ? *sourceTree : "<group>";
        if (itemPath != nullptr && !itemPath->empty()) {
            components.push_back(*itemPath);
        }
        std::string base;
        if (tree == "SOURCE_ROOT") {
            base = projectDir;
        } else if (tree == "<absolute>") {
            base = "";
        } else if (tree != "<group>") {
            return std::nullopt; // BUILT_PRODUCTS_DIR, SDKROOT…: nothing in the repository
        } else {
            const auto parent = parents_->find(current);
            if (parent != parents_->end()) {
                current = parent->second;
                continue;
            }
            base = projectDir;
        }
        std::string result = base;
        for (auto it = components.rbegin(); it != components.rend(); ++it) {
            const bool absolute = it->starts_with('/');
            result = absolute || result.empty() ? *it : path::join(result, *it);
        }
        return result;
    }
    return std::nullopt;
}

} // namespace kelvane
