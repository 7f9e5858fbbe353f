#include "app/Screenshot.h"

#include "app/KelvaneApp.h"
#include "views/IssueDetailView.h"
#include "views/ScanningResultsView.h"

#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

#include <iostream>
#include <variant>

namespace kelvane::app {

namespace {

// Time for layouts and the first paint to settle before the picture.
constexpr int kSettleMilliseconds = 150;
// A scan that has not ended by then is not going to.
constexpr int kGiveUpMilliseconds = 30'000;

// The window with the menus and dialogs open over it, each where it stands
// relative to the window: they are windows of their own, which a grab of the
// main window leaves out.
QPixmap windowPicture(KelvaneApp& app) {
    QWidget& window = app.window();
    QPixmap picture = window.grab();
    QPainter painter(&picture);
    const QPoint origin = window.mapToGlobal(QPoint(0, 0));
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top == &window || !top->isVisible()) {
            continue;
        }
        if (qobject_cast<QDialog*>(top) != nullptr) {
            painter.fillRect(picture.rect(), QColor(0, 0, 0, 60)); // a sheet dims the window
        }
        painter.drawPixmap(top->mapToGlobal(QPoint(0, 0)) - origin, top->grab());
    }
    return picture;
}

// Opens what the picture shows over the window: a menu, a drag, a dialog.
void openOverlays(KelvaneApp& app, const ScreenshotRequest& request) {
    if (request.openMenu) {
        auto* bar = app.window().findChild<QMenuBar*>(QStringLiteral("menuBar"));
        for (QAction* entry : bar->actions()) {
            if (entry->menu() != nullptr &&
                entry->text().remove(QLatin1Char('&')) == *request.openMenu) {
                entry->menu()->popup(bar->mapToGlobal(bar->actionGeometry(entry).bottomLeft()));
            }
        }
    }
    if (request.dragPath) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QFileInfo(*request.dragPath).absoluteFilePath())});
        QDragEnterEvent enter(app.window().rect().center(), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(&app.window(), &enter);
    }
    if (request.showExport) {
        if (QAction* exportAction = app.action(QStringLiteral("exportAction"))) {
            exportAction->trigger();
        }
        if (auto* dialog = app.window().findChild<QDialog*>(QStringLiteral("exportDialog"))) {
            // Centred over the window, as a sheet would be.
            dialog->resize(760, 460);
            const QRect frame = app.window().geometry();
            dialog->move(frame.center() - QPoint(dialog->width() / 2, dialog->height() / 2));
        }
    }
}

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
    openOverlays(app, request);
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
            const bool saved = windowPicture(app).save(request.file, "PNG");
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
