#pragma once

#include "diagnostics/DoctorIssue.h"
#include "views/ApplyFix.h"

#include <QWidget>

class QPushButton;

namespace kelvane::views {

class ConfirmationPrompt;

// An issue's fix: its safety class, its numbered steps, what they change, and
// the one control its safety class allows. Applying goes through `onApplyFix`
// after the user confirmed; this view only shows that it is under way.
class FixStepsDetailView : public QWidget {
public:
    // `prompt` must outlive the view.
    FixStepsDetailView(DoctorIssue issue, DoctorFix fix, ApplyFix onApplyFix,
                       ConfirmationPrompt& prompt, QWidget* parent = nullptr);

    [[nodiscard]] bool isApplyingFix() const noexcept { return isApplyingFix_; }
    [[nodiscard]] bool showingConfirmation() const noexcept { return showingConfirmation_; }

private:
    QWidget* makeStep(std::size_t number, const FixStep& step);
    QWidget* makeControl();
    void requestApply();
    void apply();
    void setApplying(bool applying);

    DoctorIssue issue_;
    DoctorFix fix_;
    ApplyFix onApplyFix_;
    ConfirmationPrompt& prompt_;
    bool isApplyingFix_ = false;
    bool showingConfirmation_ = false;
    QPushButton* applyButton_ = nullptr;
    QWidget* applyingIndicator_ = nullptr;
};

} // namespace kelvane::views
