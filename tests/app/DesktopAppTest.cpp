#include "TestDoubles.h"
#include "app/KelvaneApp.h"
#include "cli/ScanCommand.h"
#include "presentation/IssueText.h"
#include "views/ProjectPickerView.h"
#include "views/ScanningResultsView.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QDialog>
#include <QDragEnterEvent>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <QUrl>

#include <sstream>

using namespace kelvane;
using kelvane::testing::ScriptedChooser;
using kelvane::testing::ScriptedPrompt;
using kelvane::testing::sourcePath;

namespace {

constexpr int kScanTimeout = 5000;

class ScriptedExportChooser final : public app::ReportDestinationChooser {
public:
    void choose(QWidget* /*parent*/, const QString& suggestedName,
                std::function<void(std::optional<app::ReportDestination>)> closed) override {
        suggested = suggestedName;
        pending_ = std::move(closed);
    }
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pending_); }
    void answer(std::optional<app::ReportDestination> destination) {
        std::exchange(pending_, nullptr)(std::move(destination));
    }
    QString suggested;

private:
    std::function<void(std::optional<app::ReportDestination>)> pending_;
};

struct App {
    ScriptedChooser chooser;
    ScriptedPrompt prompt;
    ScriptedExportChooser exports;
    app::KelvaneApp app{&chooser, &prompt, &exports};
    App() { app.show(); }
    [[nodiscard]] QString screen() {
        QWidget* shown = app.content().screen();
        return shown != nullptr ? shown->objectName() : QString();
    }
    [[nodiscard]] QString subtitle() {
        auto* label = app.content().screen()->findChild<QLabel*>(QStringLiteral("scanSubtitle"));
        return label != nullptr ? label->text() : QString();
    }
    [[nodiscard]] bool enabled(const char* action) {
        return app.action(QString::fromLatin1(action))->isEnabled();
    }
    void trigger(const char* action) { app.action(QString::fromLatin1(action))->trigger(); }
    bool waitForResults() {
        return QTest::qWaitFor(
            [this] {
                return std::holds_alternative<CompletedState>(app.content().viewModel().state());
            },
            kScanTimeout);
    }
};

QString nimbusProject() {
    return sourcePath(QStringLiteral("examples/Nimbus/Nimbus.xcodeproj"));
}

// What `kelvane scan --format F` prints for the same project.
std::string terminalReport(const QString& project, cli::ScanFormat format) {
    std::ostringstream out;
    std::ostringstream err;
    cli::runScan(project.toStdString(), format, out, err);
    return out.str();
}

// Sends a drag over the window, as the platform would; whether it was taken.
bool dragOver(QWidget& window, const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent event(window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    event.setAccepted(false);
    QApplication::sendEvent(&window, &event);
    return event.isAccepted();
}

void drop(QWidget& window, const QString& path) {
    dragOver(window, path);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDropEvent event(QPointF(window.rect().center()), Qt::CopyAction, &data, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
}

QJsonDocument readJson(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll())
                                          : QJsonDocument();
}

QString readText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Each control a person can reach must be named for a screen reader.
QStringList unnamedControls(QWidget* root) {
    QStringList unnamed;
    QList<QWidget*> controls;
    for (auto* button : root->findChildren<QAbstractButton*>()) {
        controls << button;
    }
    for (auto* view : root->findChildren<QAbstractItemView*>()) {
        controls << view;
    }
    for (QWidget* control : controls) {
        if (!control->isVisibleTo(root)) {
            continue;
        }
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
        if (accessible == nullptr || accessible->text(QAccessible::Name).trimmed().isEmpty()) {
            unnamed << control->objectName();
        }
    }
    return unnamed;
}

} // namespace

class DesktopAppTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    // Every case starts as a first launch and leaves the user's settings alone.
    void init() { QSettings(QStringLiteral("Kelvane"), QStringLiteral("Kelvane")).clear(); }

    void theMenusFollowTheScanFromOpenToClose() {
        App app;
        QCOMPARE(app.app.action(QStringLiteral("openAction"))->shortcut(),
                 QKeySequence(QKeySequence::Open));
        QCOMPARE(app.app.action(QStringLiteral("rerunAction"))->shortcut(),
                 QKeySequence(Qt::CTRL | Qt::Key_R));
        QVERIFY(app.enabled("openAction"));
        for (const char* idle : {"rerunAction", "cancelAction", "exportAction", "closeAction"}) {
            QVERIFY2(!app.enabled(idle), idle);
        }

        // Open… asks the same chooser as the picker's button; a cancelled
        // scan returns to the picker.
        app.trigger("openAction");
        QVERIFY(app.chooser.isOpen());
        app.chooser.answer(nimbusProject());
        QCOMPARE(app.screen(), QStringLiteral("scanningResultsView"));
        QVERIFY(app.enabled("cancelAction"));
        QVERIFY(!app.enabled("rerunAction"));
        app.trigger("cancelAction");
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));

        // Open… from the results leaves them for the chooser.
        app.trigger("openAction");
        app.chooser.answer(nimbusProject());
        QVERIFY(app.waitForResults());
        QVERIFY(app.enabled("rerunAction"));
        QVERIFY(app.enabled("exportAction"));
        QVERIFY(!app.enabled("cancelAction"));
        app.trigger("openAction");
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));
        QVERIFY(app.chooser.isOpen());
        app.chooser.answer(nimbusProject());
        QVERIFY(app.waitForResults());

        app.trigger("rerunAction");
        QCOMPARE(app.subtitle(), QStringLiteral("0/9"));
        QVERIFY(app.waitForResults());
        app.trigger("closeAction");
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));
        QVERIFY(!app.enabled("closeAction"));
    }

    void copyAndHelpFollowTheSelectedCheck() {
        App app;
        app.app.openPath(nimbusProject());
        QVERIFY(app.waitForResults());
        views::ScanningResultsView* results = app.app.content().results();
        QVERIFY(app.app.selectedIssueText().isEmpty());
        emit app.app.menu(QStringLiteral("editMenu"))->aboutToShow();
        QVERIFY(!app.enabled("copyIssueAction"));

        results->selectCheck("watch.companion.mismatch");
        // Evidence rows name the files the scan read them from.
        const auto shows =
            results->detailWidget()->findChildren<QToolButton*>(QStringLiteral("showInFolder"));
        QCOMPARE(shows.size(), 2);
        QVERIFY(shows.front()->toolTip().endsWith(QStringLiteral("Nimbus WatchKit App/Info.plist")));
        emit app.app.menu(QStringLiteral("editMenu"))->aboutToShow();
        QVERIFY(app.enabled("copyIssueAction"));
        QGuiApplication::clipboard()->clear();
        app.trigger("copyIssueAction");
        const QString copied = QGuiApplication::clipboard()->text();
        QVERIFY(copied.startsWith(QStringLiteral(
            "\u2717 error: Watch Companion App ID Mismatch [watch.companion.mismatch]\n")));
        // Word for word what the terminal prints of the same issue.
        const std::string terminal = terminalReport(nimbusProject(), cli::ScanFormat::text);
        QVERIFY(terminal.find(copied.toStdString()) != std::string::npos);

        app.trigger("checkHelpAction");
        auto* page = app.app.window().findChild<QDialog*>(QStringLiteral("checkDocumentation"));
        QVERIFY(page != nullptr && page->isVisible());
        QVERIFY(page->findChild<QTextBrowser*>()->toPlainText().startsWith(
            QStringLiteral("watch.companion.mismatch")));
        QVERIFY(app.app.showCheckDocumentation(QStringLiteral("no.such.check")) == nullptr);
    }

    void exportWritesTheTerminalsReports() {
        App app;
        app.app.openPath(nimbusProject());
        QVERIFY(app.waitForResults());
        QTemporaryDir folder;

        // Through the dialog: the format chosen there, the file named there.
        app.trigger("exportAction");
        QVERIFY(app.exports.isOpen());
        QCOMPARE(app.exports.suggested, QStringLiteral("Nimbus-kelvane.json"));
        const QString json = folder.filePath(QStringLiteral("report.json"));
        app.exports.answer(app::ReportDestination{json, report::ExportFormat::json});
        const QJsonObject document = readJson(json).object();
        const QJsonDocument terminal = QJsonDocument::fromJson(
            QByteArray::fromStdString(terminalReport(nimbusProject(), cli::ScanFormat::json)));
        QCOMPARE(document.value(QStringLiteral("issues")),
                 terminal.object().value(QStringLiteral("issues")));
        QCOMPARE(document.value(QStringLiteral("checks")).toArray().size(), 9);

        app.trigger("exportAction");
        app.exports.answer(std::nullopt);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);

        const QString sarif = folder.filePath(QStringLiteral("report.sarif"));
        QVERIFY(app.app.exportReport({sarif, report::ExportFormat::sarif}));
        const QJsonObject run =
            readJson(sarif).object().value(QStringLiteral("runs")).toArray().first().toObject();
        const QJsonArray found = run.value(QStringLiteral("results")).toArray();
        QCOMPARE(found.size(), 9);
        // Located at the files and lines the evidence names, as the
        // terminal's SARIF is.
        const QJsonObject place = found.first()
                                      .toObject()
                                      .value(QStringLiteral("locations"))
                                      .toArray()
                                      .first()
                                      .toObject()
                                      .value(QStringLiteral("physicalLocation"))
                                      .toObject();
        QVERIFY(place.value(QStringLiteral("artifactLocation"))
                    .toObject()
                    .value(QStringLiteral("uri"))
                    .toString()
                    .endsWith(QStringLiteral("Info.plist")));
        QCOMPARE(place.value(QStringLiteral("region")).toObject().value(QStringLiteral("startLine")),
                 QJsonValue(28));

        const QString text = folder.filePath(QStringLiteral("report.txt"));
        QVERIFY(app.app.exportReport({text, report::ExportFormat::text}));
        const QString report = readText(text);
        QVERIFY(report.startsWith(QStringLiteral("Scanned Nimbus (") + nimbusProject()));
        QVERIFY(report.contains(QStringLiteral("\n5 errors \u2022 4 warnings\n")));
        QVERIFY(!report.contains(QLatin1Char('\x1b'))); // no colour in a file

        // A folder that does not exist: nothing written, and it says so.
        QVERIFY(!app.app.exportReport(
            {folder.filePath(QStringLiteral("missing/report.json")), report::ExportFormat::json}));
        app.trigger("closeAction");
        QVERIFY(!app.app.exportReport({json, report::ExportFormat::json}));
    }

    void dropsStartTheChoosersSelection() {
        QTemporaryDir folder;
        App app;
        QWidget& window = app.app.window();
        auto* hint = window.findChild<QLabel*>(QStringLiteral("dropHint"));

        // Files are not projects; folders and bundles (folders too) are.
        QVERIFY(!dragOver(window, nimbusProject() + QStringLiteral("/project.pbxproj")));
        QVERIFY(!hint->isVisible());
        QVERIFY(!app::KelvaneApp::droppablePath(
            {QUrl::fromLocalFile(nimbusProject()), QUrl::fromLocalFile(folder.path())}));
        QVERIFY(
            !app::KelvaneApp::droppablePath({QUrl(QStringLiteral("https://example.invalid/"))}));
        QVERIFY(dragOver(window, nimbusProject()));
        QVERIFY(hint->isVisible());
        QCOMPARE(hint->text(), QStringLiteral("Drop to scan Nimbus.xcodeproj"));
        drop(window, nimbusProject());
        QVERIFY(!hint->isVisible());
        QCOMPARE(app.screen(), QStringLiteral("scanningResultsView"));

        // A folder with two workspaces: the picker's own message, over a scan
        // that was running.
        const QString nimbusFolder = sourcePath(QStringLiteral("examples/Nimbus"));
        QVERIFY(dragOver(window, nimbusFolder));
        drop(window, nimbusFolder);
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));
        QVERIFY(app.app.content().picker()->errorMessage().has_value());

        // An empty folder is no project either.
        drop(window, folder.path());
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));
        QVERIFY(app.app.content().picker()->errorMessage().has_value());
    }

    void recentProjectsAreTheLastTenNewestFirstAndRemembered() {
        QTemporaryDir folder;
        {
            App app;
            ScanViewModel& model = app.app.content().viewModel();
            for (int number = 1; number <= 11; ++number) {
                model.startScan(
                    folder.filePath(QStringLiteral("P%1.xcodeproj").arg(number)).toStdString());
                model.reset();
            }
            // Opened again: moved to the top, not listed twice.
            model.startScan(folder.filePath(QStringLiteral("P5.xcodeproj")).toStdString());
            model.reset();
        }
        App app;
        const QStringList recent = app.app.recentProjects();
        QCOMPARE(recent.size(), app::KelvaneApp::kRecentLimit);
        QCOMPARE(recent.first(), folder.filePath(QStringLiteral("P5.xcodeproj")));
        QCOMPARE(recent.at(1), folder.filePath(QStringLiteral("P11.xcodeproj")));
        QCOMPARE(recent.count(folder.filePath(QStringLiteral("P5.xcodeproj"))), 1);
        QCOMPARE(recent.last(), folder.filePath(QStringLiteral("P2.xcodeproj")));
        QVERIFY(!recent.contains(folder.filePath(QStringLiteral("P1.xcodeproj"))));

        QMenu* menu = app.app.menu(QStringLiteral("recentMenu"));
        QAction* first = app.app.action(QStringLiteral("recentProject1"));
        QCOMPARE(first->text(), QStringLiteral("&1 P5.xcodeproj"));
        QCOMPARE(first->data().toString(), recent.first());
        QVERIFY(menu->actions().contains(app.app.action(QStringLiteral("recentProject10"))));

        // A project that has gone since: the picker says so, as for a choice.
        first->trigger();
        QCOMPARE(app.screen(), QStringLiteral("projectPickerView"));
        QVERIFY(app.app.content().picker()->errorMessage().has_value());

        app.app.action(QStringLiteral("clearRecentAction"))->trigger();
        QVERIFY(app.app.recentProjects().isEmpty());
        QVERIFY(!app.app.action(QStringLiteral("clearRecentAction"))->isEnabled());
    }

    void theWindowKeepsItsSizeAndPosition() {
        QRect placed;
        {
            App app;
            app.app.window().setGeometry(40, 50, 1234, 777);
            placed = app.app.window().geometry();
        }
        App app;
        QCOMPARE(app.app.window().size(), QSize(1234, 777));
        QCOMPARE(app.app.window().geometry(), placed);
    }

    void everyControlIsNamedAndRowsSayHowTheyStand() {
        App app;
        QVERIFY(unnamedControls(&app.app.window()).isEmpty());
        app.app.openPath(nimbusProject());
        QVERIFY(app.waitForResults());
        views::ScanningResultsView* results = app.app.content().results();
        results->selectCheck("bundle.identifier.collision");
        QWidget* issue = results->findChild<QWidget*>(QStringLiteral("issueDetailView"));
        QVERIFY(issue != nullptr);
        const QStringList unnamed = unnamedControls(&app.app.window());
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(QLatin1Char(' '))));

        auto* list = results->findChild<QListWidget*>(QStringLiteral("checkList"));
        QCOMPARE(list->item(4)->data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("Signing Consistency, Warning"));
        QCOMPARE(list->item(0)->data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("Watch Companion Bundle ID, Issue detected"));
        QAccessibleInterface* row = QAccessible::queryAccessibleInterface(
            results->findChild<QWidget*>(QStringLiteral("checkRow_signing.inconsistent")));
        QCOMPARE(row->text(QAccessible::Name), QStringLiteral("Signing Consistency, Warning"));
    }

    void arrowsMoveThroughTheChecksAndReturnOpensTheFix() {
        App app;
        app.app.openPath(nimbusProject());
        QVERIFY(app.waitForResults());
        views::ScanningResultsView* results = app.app.content().results();
        auto* list = results->findChild<QListWidget*>(QStringLiteral("checkList"));
        QVERIFY(list->hasFocus() || QApplication::focusWidget() == nullptr);
        QVERIFY(!results->selectedCheckID());

        // The first arrow chooses the first check, not the second.
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(results->selectedCheckID().value_or(""), "watch.companion.mismatch");
        for (int step = 0; step < 5; ++step) {
            QTest::keyClick(list, Qt::Key_Down);
        }
        QCOMPARE(results->selectedCheckID().value_or(""), "bundle.identifier.collision");
        QTest::keyClick(list, Qt::Key_Return);
        QVERIFY(app.prompt.isOpen());
        app.prompt.answer(false);

        // Signing's fix is manual only: Return has nothing to apply.
        QTest::keyClick(list, Qt::Key_Up);
        QCOMPARE(results->selectedCheckID().value_or(""), "signing.inconsistent");
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(app.prompt.timesAsked, 1);
    }
};

QTEST_MAIN(DesktopAppTest)
#include "DesktopAppTest.moc"
