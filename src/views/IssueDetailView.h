#pragma once

#include "diagnostics/DoctorIssue.h"
#include "views/ApplyFix.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QToolButton;

namespace kelvane::views {

class ConfirmationPrompt;
class FixStepsDetailView;

// The file behind each evidence row, and what "Show in folder" does with it.
// A row whose file is unknown (or without these) offers no button.
struct EvidenceFileActions {
    std::function<std::optional<std::string>(const EvidenceItem&)> fileOf{};
    std::function<void(const std::string& file)> showInFolder{};
};

// A warning or an error in full: severity, headline, description, impact,
// the evidence behind it (folded away until asked for), the targets it
// concerns and, when there is one, its fix.
class IssueDetailView : public QWidget {
public:
    // `prompt` must outlive the view.
    IssueDetailView(DoctorIssue issue, ApplyFix onApplyFix, ConfirmationPrompt& prompt,
                    QWidget* parent = nullptr, EvidenceFileActions files = {});

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
    EvidenceFileActions files_;
    bool evidenceExpanded_ = false;
    QToolButton* evidenceToggle_ = nullptr;
    QWidget* evidenceList_ = nullptr;
    FixStepsDetailView* fixView_ = nullptr;
};

} // namespace kelvane::views
