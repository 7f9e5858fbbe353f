#pragma once

#include <stdexcept>
#include <string_view>

namespace kelvane {

// A project location that cannot be turned into a project. Each case has one
// fixed description, which is what the user sees (what()).
class ParserError : public std::runtime_error {
public:
    enum class Case {
        invalidProjectPath,
        pbxprojNotFound,
        invalidPbxprojFormat,
        failedToParseTargets,
        workspaceParsingFailed,
        noProjectInWorkspace,
    };

    explicit ParserError(Case errorCase);

    [[nodiscard]] Case errorCase() const noexcept { return case_; }
    [[nodiscard]] static std::string_view description(Case errorCase) noexcept;

private:
    Case case_;
};

} // namespace kelvane
