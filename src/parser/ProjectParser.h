#pragma once

#include "model/ProjectContext.h"

#include <string>

namespace kelvane {

// Turns the location of an .xcodeproj or .xcworkspace bundle into the project
// it holds. Holds no state; one parser may load any number of projects.
class ProjectParser {
public:
    // `url` is used as given (a trailing "/" aside): every path in the result
    // is joined lexically from it. Throws ParserError, and passes through
    // plist::FileReadError and plist::ParseError from the files it reads.
    // With `positions`, the result also says where each build setting is
    // written, at some cost in speed.
    [[nodiscard]] ProjectContext parseProject(const std::string& url, bool positions = false) const;
};

} // namespace kelvane
