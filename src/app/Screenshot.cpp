#include "app/Screenshot.h"

#include "app/KelvaneApp.h"
#include "views/IssueDetailView.h"
#include "views/ScanningResultsView.h"

#include <QApplication>
#include <QPixmap>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include <iostream>
#include <variant>

namespace kelvane::app {

namespace {

// Time for layouts and the first paint to settle before the picture.
constexpr int kSettleMilliseconds = 150;
// A scan that has not ended by then is not going to.
constexpr int kGiveUpMilliseconds = 30'000;

void capture(KelvaneApp& app, const ScreenshotRequest& request) {
    if (auto* results = app.content().results()) {
        if (request.selectCheckID) {
            results->selectCheck(*request.selectCheckID);
        }
        // Found by name: the screens carry no meta-object of their own.
        if (auto* issue = results->findChild<QWidget*>(QStringLiteral("issueDetailView"))) {
            static_cast<views::IssueDetailView*>(issue)->setEvidenceExpanded(
                request.expandEvidence);
        }
    }
    QTimer::singleShot(kSettleMilliseconds, [&app, request] {
        if (request.showFix) {
            if (auto* scroll =
                    app.window().findChild<QScrollArea*>(QStringLiteral("issueScrollArea"))) {
                if (auto* fix = scroll->widget()->findChild<QWidget*>(
                        QStringLiteral("fixStepsDetailView"))) {
                    scroll->ensureWidgetVisible(fix, 0, 40);
                    scroll->verticalScrollBar()->setValue(scroll->verticalScrollBar()->maximum());
                }
            }
        }
        QTimer::singleShot(kSettleMilliseconds, [&app, request] {
            const bool saved = app.window().grab().save(request.file, "PNG");
            if (!saved) {
                std::cerr << "kelvane-app: cannot write " << request.file.toStdString() << '\n';
            }
            QApplication::exit(saved ? 0 : 1);
        });
    });
}

} // namespace

void armScreenshot(KelvaneApp& app, const ScreenshotRequest& request) {
    if (request.afterMilliseconds) {
        QTimer::singleShot(*request.afterMilliseconds, [&app, request] { capture(app, request); });
        return;
    }
    ScanViewModel& model = app.content().viewModel();
    const bool waiting = std::holds_alternative<ScanningState>(model.state());
    if (!waiting) {
        // The picker, with or without a selection error: nothing to wait for.
        QTimer::singleShot(kSettleMilliseconds, [&app, request] { capture(app, request); });
        return;
    }
    model.addObserver([&app, request](const ScanState& next) {
        if (std::holds_alternative<CompletedState>(next) ||
            std::holds_alternative<ErrorState>(next)) {
            // After the state has changed and the screen has been rebuilt.
            QTimer::singleShot(0, [&app, request] { capture(app, request); });
        }
    });
    QTimer::singleShot(kGiveUpMilliseconds, [] {
        std::cerr << "kelvane-app: the scan did not finish\n";
        QApplication::exit(1);
    });
}

} // namespace kelvane::app
