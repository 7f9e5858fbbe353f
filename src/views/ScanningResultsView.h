#pragma once

#include "scanner/CheckProgress.h"
#include "views/ApplyFix.h"
#include "views/IssueDetailView.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QListWidget;
class QPushButton;
class QVBoxLayout;

namespace kelvane::views {

class CheckProgressRow;
class ConfirmationPrompt;

// The screen shown while a scan runs and after it: the nine checks beside the
// detail of the selected one, with a title, a subtitle and the toolbar. It is
// drawn from the values it is given; the selected row is its only own state.
class ScanningResultsView : public QWidget {
public:
    struct Inputs {
        std::string projectPath{};
        std::vector<CheckProgress> checkProgress{};
        bool isScanning = false;
        ApplyFix onApplyFix{};
        std::function<void()> onCancel{};
        // Absent while scanning: there is nothing to scan again yet.
        std::function<void()> onRescan{};
        // Says how the project was read when it was not read literally; the
        // header shows it beside the path. Empty: nothing is shown.
        std::string readingNote{};
        // Files behind the evidence of the issue on show.
        EvidenceFileActions evidenceFiles{};
    };

    // `prompt` must outlive the view.
    ScanningResultsView(Inputs inputs, ConfirmationPrompt& prompt, QWidget* parent = nullptr);

    // A new progress list for the same scan: rows change in place, the
    // selection stays.
    void setCheckProgress(const std::vector<CheckProgress>& rows);
    // Selects the row with this id, or clears the selection for an unknown one.
    void selectCheck(const std::string& checkID);
    [[nodiscard]] const std::optional<std::string>& selectedCheckID() const noexcept {
        return selectedCheckID_;
    }
    // The widget the detail area shows now.
    [[nodiscard]] QWidget* detailWidget() const noexcept { return detail_; }

protected:
    // The keyboard: arrows move through the checks, Return applies the fix.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeHeader();
    void describeRows();
    void refreshHeader();
    void showDetail();

    Inputs inputs_;
    ConfirmationPrompt& prompt_;
    std::optional<std::string> selectedCheckID_;
    QLabel* title_ = nullptr;
    QLabel* subtitle_ = nullptr;
    QListWidget* list_ = nullptr;
    std::vector<CheckProgressRow*> rows_;
    QVBoxLayout* detailLayout_ = nullptr;
    QWidget* detail_ = nullptr;
};

} // namespace kelvane::views
