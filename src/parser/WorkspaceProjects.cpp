#include "parser/WorkspaceProjects.h"

#include "model/FilePath.h"
#include "parser/ParserError.h"
#include "parser/PathExists.h"
#include "plist/PropertyListReader.h"

#include <expat.h>

#include <climits>
#include <cstring>
#include <memory>
#include <optional>

namespace kelvane {

namespace {

constexpr std::size_t kMaxGroupDepth = 64;

struct Listing {
    std::string workspaceFolder;
    // The folder each open Group stands for; nothing for one past the depth
    // bound or with a location that names no folder.
    std::vector<std::optional<std::string>> groups;
    std::vector<std::string> projects;
    bool refused = false;
};

std::optional<std::string> attribute(const XML_Char** attributes, const char* name) {
    for (std::size_t i = 0; attributes[i] != nullptr; i += 2) {
        if (std::strcmp(attributes[i], name) == 0) {
            return std::string(attributes[i + 1]);
        }
    }
    return std::nullopt;
}

// Where a `kind:path` location points, or nothing for `self:` and unknown kinds.
std::optional<std::string> locate(const Listing& listing, const std::string& location) {
    const std::size_t colon = location.find(':');
    if (colon == std::string::npos) {
        return std::nullopt;
    }
    const std::string kind = location.substr(0, colon);
    const std::string rest = location.substr(colon + 1);
    if (kind == "absolute") {
        return rest;
    }
    if (kind == "container") {
        return rest.empty() ? listing.workspaceFolder : path::join(listing.workspaceFolder, rest);
    }
    if (kind == "group") {
        std::string base = listing.workspaceFolder;
        if (!listing.groups.empty()) {
            if (!listing.groups.back()) {
                return std::nullopt;
            }
            base = *listing.groups.back();
        }
        if (rest.starts_with('/')) {
            return rest;
        }
        return rest.empty() ? base : path::join(base, rest);
    }
    return std::nullopt;
}

void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto& listing = *static_cast<Listing*>(data);
    const std::optional<std::string> location = attribute(attributes, "location");
    if (std::strcmp(name, "Group") == 0) {
        std::optional<std::string> folder;
        if (listing.groups.size() < kMaxGroupDepth &&
            (listing.groups.empty() || listing.groups.back())) {
            folder = location ? locate(listing, *location) : listing.groups.empty()
                                                                 ? listing.workspaceFolder
                                                                 : listing.groups.back();
        }
        listing.groups.push_back(std::move(folder));
        return;
    }
    if (std::strcmp(name, "FileRef") == 0 && location) {
        const std::optional<std::string> file = locate(listing, *location);
        if (file && path::extension(path::withoutTrailingSlash(*file)) == "xcodeproj") {
            listing.projects.push_back(path::withoutTrailingSlash(*file));
        }
    }
}

void XMLCALL onEnd(void* data, const XML_Char* name) {
    auto& listing = *static_cast<Listing*>(data);
    if (std::strcmp(name, "Group") == 0 && !listing.groups.empty()) {
        listing.groups.pop_back();
    }
}

// A workspace has no business declaring entities; refusing them keeps
// expansion attacks out.
void XMLCALL onEntity(void* data, const XML_Char*, int, const XML_Char*, int, const XML_Char*,
                      const XML_Char*, const XML_Char*, const XML_Char*) {
    static_cast<Listing*>(data)->refused = true;
}

} // namespace

std::vector<std::string> workspaceProjectsIn(std::string_view xml,
                                             const std::string& workspaceFolder) {
    Listing listing{.workspaceFolder = workspaceFolder, .groups = {}, .projects = {}, .refused = false};
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    if (!parser) {
        throw ParserError(ParserError::Case::workspaceParsingFailed);
    }
    XML_SetUserData(parser.get(), &listing);
    XML_SetElementHandler(parser.get(), &onStart, &onEnd);
    XML_SetEntityDeclHandler(parser.get(), &onEntity);
    std::size_t offset = 0;
    do {
        const std::size_t length = std::min<std::size_t>(xml.size() - offset, INT_MAX / 2);
        const bool final = offset + length == xml.size();
        if (XML_Parse(parser.get(), xml.data() + offset, static_cast<int>(length),
                      final ? XML_TRUE : XML_FALSE) == XML_STATUS_ERROR ||
            listing.refused) {
            throw ParserError(ParserError::Case::workspaceParsingFailed);
        }
        offset += length;
    } while (offset < xml.size());
    return listing.projects;
}

std::vector<std::string> workspaceProjects(const std::string& workspaceURL) {
    const std::string dataPath = path::join(workspaceURL, "contents.xcworkspacedata");
    if (!pathExists(dataPath)) {
        throw ParserError(ParserError::Case::workspaceParsingFailed);
    }
    return workspaceProjectsIn(plist::readFile(dataPath), path::parent(workspaceURL));
}

} // namespace kelvane
