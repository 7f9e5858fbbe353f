#include "app/ContentView.h"
#include "app/KelvaneApp.h"
#include "TestDoubles.h"
#include "scanner/CheckTitles.h"
#include "views/ScanningResultsView.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace kelvane;
using kelvane::testing::ScriptedChooser;
using kelvane::testing::ScriptedPrompt;
using kelvane::testing::sourcePath;

namespace {

// A whole scan with its pacing takes about 1.4 s.
constexpr int kScanTimeout = 5000;

QString labelText(const QWidget* root, const QString& name) {
    auto* label = root != nullptr ? root->findChild<QLabel*>(name) : nullptr;
    return label != nullptr ? label->text() : QString();
}

QString screenName(const app::ContentView& content) {
    return content.screen() != nullptr ? content.screen()->objectName() : QString();
}

void click(QWidget* root, const QString& name) {
    auto* button = root->findChild<QAbstractButton*>(name);
    QVERIFY2(button != nullptr, qPrintable(name));
    QVERIFY2(button->isVisible(), qPrintable(name));
    QTest::mouseClick(button, Qt::LeftButton);
}

// The Nimbus example as a folder a person might choose: without its two
// workspaces the folder holds exactly one project.
bool makeNimbusFolder(const QString& folder) {
    return testing::copyTree(sourcePath(QStringLiteral("examples/Nimbus")), folder) &&
           QDir(folder + "/Nimbus.xcworkspace").removeRecursively() &&
           QDir(folder + "/Nimbus.xcodeproj/project.xcworkspace").removeRecursively();
}

// A drag and its drop on the window, as the platform delivers them.
void dropOn(QWidget& window, const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint centre = window.rect().center();
    QDragEnterEvent enter(centre, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    QDropEvent drop(QPointF(centre), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
}

} // namespace

class ContentViewTest : public QObject {
    Q_OBJECT

    struct Window {
        ScriptedChooser chooser;
        ScriptedPrompt prompt;
        QWidget window;
        app::ContentView* content = new app::ContentView(chooser, prompt);
        Window() {
            auto* layout = new QVBoxLayout(&window);
            layout->setContentsMargins(0, 0, 0, 0);
            layout->addWidget(content);
            window.resize(1000, 700);
            window.show();
        }
        void choose(const QString& path) {
            click(content->screen(), QStringLiteral("selectProjectButton"));
            QVERIFY(chooser.isOpen());
            chooser.answer(path);
        }
    };

private slots:
    void theWindowCannotBeMadeSmallerThan900By600() {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.window));
        window.window.resize(400, 300);
        QVERIFY(window.window.width() >= 900);
        QVERIFY(window.window.height() >= 600);
        QVERIFY(window.window.minimumSizeHint().width() >= 900);
        QVERIFY(window.window.minimumSizeHint().height() >= 600);
    }

    void aVisitFromFolderToFixAndBack() {
        QTemporaryDir temp;
        const QString folder = temp.filePath(QStringLiteral("Nimbus"));
        QVERIFY(makeNimbusFolder(folder));
        Window window;
        app::ContentView& content = *window.content;
        QCOMPARE(screenName(content), QStringLiteral("projectPickerView"));

        // The folder is resolved to its project and the scan shows at once.
        window.choose(folder);
        QCOMPARE(screenName(content), QStringLiteral("scanningResultsView"));
        QCOMPARE(labelText(content.screen(), "scanTitle"), QStringLiteral("Scanning"));
        QCOMPARE(labelText(content.screen(), "scanSubtitle"), QStringLiteral("0/9"));
        QCOMPARE(labelText(content.screen(), "projectPath"),
                 folder + QStringLiteral("/Nimbus.xcodeproj"));

        // Watch the rows across the pauses: each check runs, then completes,
        // in registry order, one at a time.
        QStringList rows;
        for (const CheckTitle& check : kCheckTitles) {
            rows << QString::fromUtf8(check.id.data(), static_cast<qsizetype>(check.id.size()));
        }
        QStringList seen;
        QElapsedTimer clock;
        clock.start();
        while (labelText(content.screen(), "scanTitle") == QStringLiteral("Scanning") &&
               clock.elapsed() < kScanTimeout) {
            const QString subtitle = labelText(content.screen(), "scanSubtitle");
            if (seen.isEmpty() || seen.last() != subtitle) {
                seen << subtitle;
                const int finished = subtitle.section('/', 0, 0).toInt();
                for (int index = 0; index < 9; ++index) {
                    auto* mark =
                        content.screen()
                            ->findChild<QWidget*>(QStringLiteral("checkRow_") + rows[index])
                            ->findChild<QWidget*>(QStringLiteral("statusMark"));
                    const bool spinning =
                        mark->findChild<QWidget*>(QStringLiteral("spinner"))->isVisibleTo(mark);
                    const bool marked = !mark->property("symbol").toString().isEmpty();
                    QCOMPARE(marked, index < finished);
                    QCOMPARE(spinning, index == finished);
                }
            }
            QTest::qWait(10);
        }
        QCOMPARE(labelText(content.screen(), "scanTitle"), QStringLiteral("Scan Complete"));
        // The window repainted between checks: several counts were on screen.
        QVERIFY2(seen.size() >= 5, qPrintable(seen.join(' ')));
        QCOMPARE(labelText(content.screen(), "scanSubtitle"),
                 QStringLiteral("5 errors \u2022 4 warnings"));

        // A failing check, its evidence, and its fix applied after review.
        auto* list = content.screen()->findChild<QListWidget*>(QStringLiteral("checkList"));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(5)).center());
        QWidget* issue = content.screen()->findChild<QWidget*>(QStringLiteral("issueDetailView"));
        QVERIFY(issue != nullptr);
        QCOMPARE(labelText(issue, "issueTitle"), QStringLiteral("Bundle Identifier Collision"));
        click(issue, QStringLiteral("evidenceToggle"));
        QCOMPARE(labelText(issue, "evidenceLocation"),
                 QStringLiteral("Nimbus WatchKit App \u2192 Build Settings (Debug)"));
        click(issue, QStringLiteral("applyButton"));
        QVERIFY(window.prompt.isOpen());
        QCOMPARE(window.prompt.last->dialogTitle, std::string_view("Review Changes"));
        QElapsedTimer applying;
        applying.start();
        window.prompt.answer(true);
        auto* indicator = issue->findChild<QWidget*>(QStringLiteral("applyingIndicator"));
        QVERIFY(indicator->isVisible());
        QCOMPARE(labelText(indicator, "applyingLabel"), QStringLiteral("Applying..."));
        QTRY_VERIFY_WITH_TIMEOUT(!indicator->isVisible(), 2000);
        QVERIFY(applying.elapsed() >= 450);
        QVERIFY(issue->findChild<QWidget*>(QStringLiteral("applyButton"))->isVisible());
        // Applying changed nothing.
        QCOMPARE(labelText(content.screen(), "scanSubtitle"),
                 QStringLiteral("5 errors \u2022 4 warnings"));

        // The keyboard reaches the same fix, and each row says how it stands.
        QCOMPARE(list->item(4)->data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("Signing Consistency, Warning"));
        QTest::keyClick(list, Qt::Key_Up);
        QCOMPARE(content.results()->selectedCheckID().value_or(""), "signing.inconsistent");
        QTest::keyClick(list, Qt::Key_Return); // a manual fix: nothing to apply
        QCOMPARE(window.prompt.timesAsked, 1);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(window.prompt.timesAsked, 2);
        window.prompt.answer(false);

        click(content.screen(), QStringLiteral("backButton"));
        QCOMPARE(screenName(content), QStringLiteral("projectPickerView"));

        // A project that cannot be loaded ends on the error screen; Try Again
        // goes back to the picker without scanning again.
        window.choose(sourcePath(QStringLiteral("examples/Aurora")));
        QTRY_COMPARE_WITH_TIMEOUT(screenName(content), QStringLiteral("scanFailedView"),
                                  kScanTimeout);
        QCOMPARE(labelText(content.screen(), "failureTitle"), QStringLiteral("Scan Failed"));
        QVERIFY(labelText(content.screen(), "failureMessage")
                    .startsWith(QStringLiteral("Failed to parse project: ")));
        click(content.screen(), QStringLiteral("tryAgainButton"));
        QCOMPARE(screenName(content), QStringLiteral("projectPickerView"));
        QVERIFY(std::holds_alternative<IdleState>(content.viewModel().state()));
    }

    // The same visit as a desktop app: a drop, the menus, the clipboard and an
    // export, and the project remembered for next time.
    void aVisitThroughTheMenus() {
        QStandardPaths::setTestModeEnabled(true);
        QSettings(QStringLiteral("Kelvane"), QStringLiteral("Kelvane")).clear();
        QTemporaryDir temp;
        const QString folder = temp.filePath(QStringLiteral("Nimbus"));
        QVERIFY(makeNimbusFolder(folder));
        const QString project = folder + QStringLiteral("/Nimbus.xcodeproj");
        {
            ScriptedChooser chooser;
            ScriptedPrompt prompt;
            app::KelvaneApp app(&chooser, &prompt);
            app.show();
            dropOn(app.window(), folder);
            QCOMPARE(labelText(app.content().screen(), "projectPath"), project);
            QTRY_COMPARE_WITH_TIMEOUT(labelText(app.content().screen(), "scanTitle"),
                                      QStringLiteral("Scan Complete"), kScanTimeout);
            auto* list = app.content().screen()->findChild<QListWidget*>(
                QStringLiteral("checkList"));
            QTest::keyClick(list, Qt::Key_Down);
            app.action(QStringLiteral("copyIssueAction"))->trigger();
            QVERIFY(QGuiApplication::clipboard()->text().contains(
                QStringLiteral("[watch.companion.mismatch]")));
            const QString report = temp.filePath(QStringLiteral("report.txt"));
            QVERIFY(app.exportReport({report, report::ExportFormat::text}));
            QVERIFY(QFileInfo(report).size() > 0);
            app.action(QStringLiteral("closeAction"))->trigger();
            QCOMPARE(screenName(app.content()), QStringLiteral("projectPickerView"));
        }
        ScriptedChooser chooser;
        ScriptedPrompt prompt;
        app::KelvaneApp relaunched(&chooser, &prompt);
        QCOMPARE(relaunched.recentProjects(), QStringList{project});
        relaunched.action(QStringLiteral("recentProject1"))->trigger();
        QCOMPARE(labelText(relaunched.content().screen(), "projectPath"), project);
    }

    void cancellingAScanReturnsToThePickerAndStaysThere() {
        Window window;
        app::ContentView& content = *window.content;
        window.choose(sourcePath(QStringLiteral("examples/Aurora/Aurora.xcodeproj")));
        QCOMPARE(screenName(content), QStringLiteral("scanningResultsView"));
        click(content.screen(), QStringLiteral("cancelButton"));
        QCOMPARE(screenName(content), QStringLiteral("projectPickerView"));
        // The dropped scan finishes in the background without coming back.
        QTest::qWait(1700);
        QCOMPARE(screenName(content), QStringLiteral("projectPickerView"));
    }

    // The reading switch is off on a first launch, marks the scans it makes,
    // leaves a scan on show as it was read, and is remembered.
    void theAsBuiltSwitchMarksItsScansAndIsRemembered() {
        QStandardPaths::setTestModeEnabled(true);
        QSettings(QStringLiteral("Kelvane"), QStringLiteral("Kelvane")).clear();
        const QString cirrus = sourcePath(QStringLiteral("examples/Cirrus/Cirrus.xcodeproj"));
        {
            app::KelvaneApp app;
            app::ContentView& content = app.content();
            QVERIFY(!app.asBuiltAction().isChecked());
            content.open(cirrus.toStdString());
            QTRY_COMPARE_WITH_TIMEOUT(labelText(content.screen(), "scanTitle"),
                                      QStringLiteral("Scan Complete"), kScanTimeout);
            QCOMPARE(labelText(content.screen(), "scanSubtitle"), QStringLiteral("8 passed"));
            QVERIFY(content.screen()->findChild<QLabel*>(QStringLiteral("readingNote")) == nullptr);

            app.asBuiltAction().trigger();
            QVERIFY(content.readsAsBuilt());
            content.viewModel().reset();
            content.open(cirrus.toStdString());
            QCOMPARE(labelText(content.screen(), "readingNote"),
                     QString::fromUtf8(app::ContentView::kAsBuiltNote));
            QTRY_COMPARE_WITH_TIMEOUT(labelText(content.screen(), "scanTitle"),
                                      QStringLiteral("Scan Complete"), kScanTimeout);
            // Read as built, the widget's Release-only team is found.
            QVERIFY(labelText(content.screen(), "scanSubtitle").contains(QStringLiteral("warning")));
        }
        app::KelvaneApp relaunched;
        QVERIFY(relaunched.asBuiltAction().isChecked());
        QVERIFY(relaunched.content().readsAsBuilt());
        relaunched.asBuiltAction().trigger();
        QVERIFY(!QSettings(QStringLiteral("Kelvane"), QStringLiteral("Kelvane"))
                     .value(QStringLiteral("reading/asBuilt"))
                     .toBool());
    }

    void rescanStartsTheSameProjectAfresh() {
        Window window;
        app::ContentView& content = *window.content;
        const QString project = sourcePath(QStringLiteral("examples/Aurora/Aurora.xcodeproj"));
        window.choose(project);
        QTRY_COMPARE_WITH_TIMEOUT(labelText(content.screen(), "scanTitle"),
                                  QStringLiteral("Scan Complete"), kScanTimeout);
        QCOMPARE(labelText(content.screen(), "scanSubtitle"), QStringLiteral("8 passed"));
        click(content.screen(), QStringLiteral("rescanButton"));
        QCOMPARE(labelText(content.screen(), "scanTitle"), QStringLiteral("Scanning"));
        QCOMPARE(labelText(content.screen(), "scanSubtitle"), QStringLiteral("0/9"));
        QCOMPARE(labelText(content.screen(), "projectPath"), project);
    }
};

QTEST_MAIN(ContentViewTest)
#include "ContentViewTest.moc"
