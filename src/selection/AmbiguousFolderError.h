#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace kelvane {

// A folder that holds more than one top-level project, so which one is meant
// is the user's call. what() names the folder and lists the candidates, one
// per line; what to do about it depends on the command, so it is not said.
class AmbiguousFolderError : public std::runtime_error {
public:
    AmbiguousFolderError(std::string folder, std::vector<std::string> candidates);

    [[nodiscard]] const std::string& folder() const noexcept { return folder_; }
    // Paths relative to the folder, in walk order.
    [[nodiscard]] const std::vector<std::string>& candidates() const noexcept {
        return candidates_;
    }

private:
    std::string folder_;
    std::vector<std::string> candidates_;
};

} // namespace kelvane
