#pragma once

#include <string>
#include <string_view>

namespace kelvane::testing {

// A project.pbxproj in the old-style form Xcode writes, around the given
// object table entries.
inline std::string pbxproj(std::string_view objects) {
    return "// !$*UTF8*$!\n{\n\tarchiveVersion = 1;\n\tclasses = {\n\t};\n\tobjectVersion = 56;\n"
           "\tobjects = {\n" +
           std::string(objects) + "\t};\n\trootObject = ROOT;\n}\n";
}

// A contents.xcworkspacedata with the given FileRef locations, in order.
inline std::string workspaceData(std::initializer_list<std::string_view> locations) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Workspace\n   version = \"1.0\">\n";
    for (const std::string_view location : locations) {
        text += "   <FileRef\n      location = \"" + std::string(location) + "\">\n   </FileRef>\n";
    }
    return text + "</Workspace>\n";
}

} // namespace kelvane::testing
