#include "views/ProjectPickerView.h"
#include "TestDoubles.h"

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace kelvane;
using namespace kelvane::views;
using kelvane::testing::ScriptedChooser;
using kelvane::testing::sourcePath;

class ProjectPickerViewTest : public QObject {
    Q_OBJECT

    struct Screen {
        ScriptedChooser chooser;
        std::vector<std::string> selected;
        // What the red box said at the moment the owner was told.
        std::vector<bool> errorShownWhenSelected;
        ProjectPickerView view{chooser, [this](const std::string& path) {
                                   selected.push_back(path);
                                   errorShownWhenSelected.push_back(errorBox()->isVisibleTo(&view));
                               }};
        QWidget* errorBox() { return view.findChild<QWidget*>(QStringLiteral("errorBox")); }
        QString errorText() {
            return view.findChild<QLabel*>(QStringLiteral("errorMessage"))->text();
        }
        void choose(std::optional<QString> path) {
            QTest::mouseClick(view.findChild<QPushButton*>(QStringLiteral("selectProjectButton")),
                              Qt::LeftButton);
            QVERIFY(chooser.isOpen());
            chooser.answer(std::move(path));
        }
    };

private slots:
    void showsItsTextsAndNoErrorAtFirst() {
        Screen screen;
        for (const auto& [name, text] : std::vector<std::pair<QString, QString>>{
                 {"appTitle", "Kelvane"},
                 {"appSubtitle", "Scan your Xcode project for common configuration issues"}}) {
            auto* label = screen.view.findChild<QLabel*>(name);
            QVERIFY2(label != nullptr, qPrintable(name));
            QCOMPARE(label->text(), text);
        }
        QCOMPARE(screen.view.findChild<QLabel*>(QStringLiteral("appSymbol"))
                     ->property("symbol")
                     .toString(),
                 QStringLiteral("stethoscope"));
        QCOMPARE(screen.view.findChild<QPushButton*>(QStringLiteral("selectProjectButton"))->text(),
                 QStringLiteral("Select Xcode Project"));
        QVERIFY(!screen.errorBox()->isVisibleTo(&screen.view));
    }

    void opensTheChooserWithItsMessageAndWithoutBlocking() {
        Screen screen;
        QTest::mouseClick(
            screen.view.findChild<QPushButton*>(QStringLiteral("selectProjectButton")),
            Qt::LeftButton);
        // Still open when the click has returned: nothing waited for it.
        QVERIFY(screen.chooser.isOpen());
        QCOMPARE(screen.chooser.lastMessage,
                 QStringLiteral("Select an Xcode project, workspace, or folder containing a "
                                "project"));
    }

    void refusalsStayOnTheScreen_data() {
        QTest::addColumn<QString>("relative");
        QTest::addColumn<QString>("message");
        QTest::newRow("deleted path") << QStringLiteral("examples/Gone.xcodeproj")
                                      << QStringLiteral("The selected path does not exist.");
        QTest::newRow("plain file")
            << QStringLiteral("examples/README.md")
            << QStringLiteral(
                   "Please select an .xcodeproj, .xcworkspace, or a folder containing a project.");
        QTest::newRow("two workspaces")
            << QStringLiteral("examples/Nimbus")
            << QStringLiteral("Multiple workspaces found: project.xcworkspace, "
                              "Nimbus.xcworkspace\n\nPlease select a specific workspace directly.");
    }
    void refusalsStayOnTheScreen() {
        QFETCH(QString, relative);
        QFETCH(QString, message);
        Screen screen;
        screen.choose(sourcePath(relative));
        QVERIFY(screen.selected.empty());
        QVERIFY(screen.errorBox()->isVisibleTo(&screen.view));
        QCOMPARE(screen.errorText(), message);
    }

    void cancellingKeepsTheLastMessage() {
        Screen screen;
        screen.choose(sourcePath(QStringLiteral("examples/Gone")));
        screen.choose(std::nullopt);
        QVERIFY(screen.selected.empty());
        QCOMPARE(screen.errorText(), QStringLiteral("The selected path does not exist."));
    }

    void aGoodChoiceClearsTheMessageBeforeTheOwnerHears() {
        Screen screen;
        screen.choose(sourcePath(QStringLiteral("examples/Gone")));
        const QString project = sourcePath(QStringLiteral("examples/Nimbus/Nimbus.xcodeproj"));
        screen.choose(project);
        QCOMPARE(screen.selected, std::vector<std::string>{project.toStdString()});
        QCOMPARE(screen.errorShownWhenSelected, std::vector<bool>{false});
        QCOMPARE(screen.view.errorMessage(), std::nullopt);
    }

    void aFolderResolvesToItsOneProject() {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("sub/App.xcodeproj")));
        Screen screen;
        screen.choose(folder.path());
        QCOMPARE(screen.selected,
                 std::vector<std::string>{(folder.path() + "/sub/App.xcodeproj").toStdString()});
    }
};

QTEST_MAIN(ProjectPickerViewTest)
#include "ProjectPickerViewTest.moc"
