#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace kelvane {

// Why a chosen path cannot be turned into one project location. what() is the
// text shown on the start screen, word for word.
class ProjectSelectionError : public std::runtime_error {
public:
    // Order is that of the messages table the start screen was designed from.
    enum class Case {
        multipleWorkspacesFound,
        multipleProjectsFound,
        pathDoesNotExist,
        invalidSelection,
        cannotEnumerateFolder,
        noProjectsFound,
    };

    // For the two "multiple" cases; `names` are the candidates' last path
    // components, already joined with ", " in walk order.
    ProjectSelectionError(Case errorCase, std::string names);
    explicit ProjectSelectionError(Case errorCase);

    [[nodiscard]] Case errorCase() const noexcept { return case_; }
    // Empty for every case but the two "multiple" ones.
    [[nodiscard]] const std::string& names() const noexcept { return names_; }

private:
    Case case_;
    std::string names_;
};

} // namespace kelvane
