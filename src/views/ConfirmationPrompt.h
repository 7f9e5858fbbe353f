#pragma once

#include "presentation/IssuePresentation.h"

#include <functional>

class QWidget;

namespace kelvane::views {

// Asks the user to confirm before a fix is applied. The screens get one
// passed in, so tests can answer it instead of a dialog; `answer` is called
// once, later, with true for the confirming button.
class ConfirmationPrompt {
public:
    ConfirmationPrompt() = default;
    ConfirmationPrompt(const ConfirmationPrompt&) = delete;
    ConfirmationPrompt& operator=(const ConfirmationPrompt&) = delete;
    virtual ~ConfirmationPrompt();

    virtual void ask(QWidget* parent, const presentation::ApplyConfirmation& confirmation,
                     std::function<void(bool confirmed)> answer) = 0;
};

// A message box that does not block: it is opened as a sheet over the window
// and answers when it closes.
class MessageBoxPrompt final : public ConfirmationPrompt {
public:
    void ask(QWidget* parent, const presentation::ApplyConfirmation& confirmation,
             std::function<void(bool confirmed)> answer) override;
};

} // namespace kelvane::views
