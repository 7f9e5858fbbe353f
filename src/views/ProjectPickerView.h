#pragma once

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QLabel;
class QPushButton;

namespace kelvane::views {

class FileChooser;

// The start screen: what Kelvane does and one button that opens the file
// chooser. A choice that cannot be turned into one project stays on this
// screen as a red message; a good one goes to `onProjectSelected`.
class ProjectPickerView : public QWidget {
public:
    using ProjectSelected = std::function<void(const std::string& projectPath)>;

    // `chooser` must outlive the view.
    ProjectPickerView(FileChooser& chooser, ProjectSelected onProjectSelected,
                      QWidget* parent = nullptr);

    // Opens the chooser without blocking; its answer is handled by select().
    void presentOpenPanel();
    // Runs the selection rules on a chosen path, as if it came from the
    // chooser.
    void select(const std::string& chosenPath);

    [[nodiscard]] const std::optional<std::string>& errorMessage() const noexcept {
        return errorMessage_;
    }

private:
    void setErrorMessage(std::optional<std::string> message);

    FileChooser& chooser_;
    ProjectSelected onProjectSelected_;
    std::optional<std::string> errorMessage_;
    QWidget* errorBox_ = nullptr;
    QLabel* errorLabel_ = nullptr;
};

} // namespace kelvane::views
