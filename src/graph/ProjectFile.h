#pragma once

#include "model/SettingPosition.h"
#include "plist/Value.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelvane {

// One project.pbxproj as read, with the lookups every as-built step needs.
struct ProjectFile {
    // The .xcodeproj location, as the user's path led to it.
    std::string projectURL;
    plist::Value root;
    // Where each build setting is written; read only when asked for.
    std::vector<SettingPosition> settingPositions{};

    // The object table; throws ParserError when there is none.
    [[nodiscard]] const plist::Dictionary& objects() const;
    // The PBXProject object; nullptr when the root names none.
    [[nodiscard]] const plist::Dictionary* project() const;
};

// Reads the project.pbxproj of an .xcodeproj. Throws ParserError,
// plist::FileReadError and plist::ParseError as the literal reading does.
[[nodiscard]] ProjectFile readProjectFile(const std::string& projectURL, bool positions = false);

// Which group holds each file and group, so a file reference's path can be
// resolved through its parents.
class GroupTree {
public:
    explicit GroupTree(const plist::Dictionary& objects);
    // The file or folder a reference or group stands for, relative paths
    // joined onto `projectDir`; nothing for build-time source trees or a
    // chain of parents that loops.
    [[nodiscard]] std::optional<std::string> pathOf(const std::string& id,
                                                    const std::string& projectDir) const;

private:
    void indexParents() const;
    [[nodiscard]] std::optional<std::string> resolvedPath(const std::string& id,
                                                          const std::string& projectDir) const;

    const plist::Dictionary& objects_;
    // Built on the first lookup: most projects name no file through a
    // group, and a large one has 100,000s of children to index.
    mutable std::optional<std::unordered_map<std::string, std::string>> parents_;
};

} // namespace kelvane
