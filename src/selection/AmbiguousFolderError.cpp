#include "selection/AmbiguousFolderError.h"

namespace kelvane {
namespace {

std::string describe(const std::string& folder, const std::vector<std::string>& candidates) {
    std::string text = std::to_string(candidates.size()) + " projects in " + folder + ":";
    for (const std::string& candidate : candidates) {
        text += "\n  " + candidate;
    }
    return text;
}

} // namespace

AmbiguousFolderError::AmbiguousFolderError(std::string folder, std::vector<std::string> candidates)
    : std::runtime_error(describe(folder, candidates)), folder_(std::move(folder)),
      candidates_(std::move(candidates)) {}

} // namespace kelvane
