#pragma once

#include "diagnostics/DoctorIssue.h"
#include "views/ApplyFix.h"

#include <QWidget>

class QToolButton;

namespace kelvane::views {

class ConfirmationPrompt;
class FixStepsDetailView;

// A warning or an error in full: severity, headline, description, impact,
// the evidence behind it (folded away until asked for), the targets it
// concerns and, when there is one, its fix.
class IssueDetailView : public QWidget {
public:
    // `prompt` must outlive the view.
    IssueDetailView(DoctorIssue issue, ApplyFix onApplyFix, ConfirmationPrompt& prompt,
                    QWidget* parent = nullptr);

    void setEvidenceExpanded(bool expanded);
    [[nodiscard]] bool evidenceExpanded() const noexcept { return evidenceExpanded_; }
    // The fix's own view; nothing when the issue has no fix.
    [[nodiscard]] FixStepsDetailView* fixView() const noexcept { return fixView_; }
    [[nodiscard]] bool isApplyingFix() const noexcept;
    [[nodiscard]] bool showingConfirmation() const noexcept;

private:
    QWidget* makeEvidenceSection();
    QWidget* makeTargetsSection();

    DoctorIssue issue_;
    bool evidenceExpanded_ = false;
    QToolButton* evidenceToggle_ = nullptr;
    QWidget* evidenceList_ = nullptr;
    FixStepsDetailView* fixView_ = nullptr;
};

} // namespace kelvane::views
