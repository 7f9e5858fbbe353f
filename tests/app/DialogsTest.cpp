#include "TestDoubles.h"
#include "views/ConfirmationPrompt.h"
#include "views/FileChooser.h"

#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace kelvane;
using namespace kelvane::views;
using namespace kelvane::presentation;

// The real dialogs behind the two interfaces: both must return at once and
// answer later, and the chooser must take a folder as readily as a file.
class DialogsTest : public QObject {
    Q_OBJECT

    struct Chosen {
        int calls = 0;
        std::optional<QString> path;
    };

    static QFileDialog* openChooser(QWidget& parent, Chosen& chosen) {
        DialogFileChooser chooser;
        chooser.choose(&parent, QStringLiteral("Pick one"), [&chosen](std::optional<QString> path) {
            ++chosen.calls;
            chosen.path = std::move(path);
        });
        return parent.findChild<QFileDialog*>(QStringLiteral("fileChooser"));
    }

private slots:
    void theChooserTakesAFolderOrAFileWithoutBlocking_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("project bundle (a folder)") << QStringLiteral("App.xcodeproj") << true;
        QTest::newRow("plain file") << QStringLiteral("notes.txt") << false;
    }
    void theChooserTakesAFolderOrAFileWithoutBlocking() {
        QFETCH(QString, name);
        QFETCH(bool, isFolder);
        QTemporaryDir temp;
        const QString path = temp.filePath(name);
        if (isFolder) {
            QVERIFY(QDir().mkpath(path));
        } else {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QWidget parent;
        parent.show();
        Chosen chosen;
        QFileDialog* dialog = openChooser(parent, chosen);
        QVERIFY(dialog != nullptr);
        QVERIFY(dialog->isVisible());
        QCOMPARE(chosen.calls, 0);
        QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("chooserMessage"))->text(),
                 QStringLiteral("Pick one"));

        dialog->setDirectory(temp.path());
        dialog->selectFile(name);
        static_cast<QDialog*>(dialog)->accept(); // the confirming button
        QCOMPARE(chosen.calls, 1);
        QVERIFY(chosen.path);
        QCOMPARE(QFileInfo(*chosen.path).canonicalFilePath(), QFileInfo(path).canonicalFilePath());
    }

    void cancellingTheChooserChoosesNothing() {
        QWidget parent;
        parent.show();
        Chosen chosen;
        QFileDialog* dialog = openChooser(parent, chosen);
        dialog->reject();
        QCOMPARE(chosen.calls, 1);
        QCOMPARE(chosen.path, std::nullopt);
    }

    void thePromptAnswersWithTheButtonPressed_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("confirmed");
        QTest::newRow("confirm") << QStringLiteral("Apply Changes") << true;
        QTest::newRow("cancel") << QStringLiteral("Cancel") << false;
    }
    void thePromptAnswersWithTheButtonPressed() {
        QFETCH(QString, button);
        QFETCH(bool, confirmed);
        QWidget parent;
        parent.show();
        MessageBoxPrompt prompt;
        std::vector<bool> answers;
        prompt.ask(&parent, *applyConfirmation(FixSafety::requiresConfirmation),
                   [&answers](bool yes) { answers.push_back(yes); });
        auto* box = parent.findChild<QMessageBox*>(QStringLiteral("confirmationDialog"));
        QVERIFY(box != nullptr);
        QVERIFY(answers.empty());
        QCOMPARE(box->windowTitle(), QStringLiteral("Review Changes"));
        QCOMPARE(box->text(), QStringLiteral("Review the changes above before applying."));
        QPushButton* pressed = nullptr;
        for (QAbstractButton* each : box->buttons()) {
            if (each->text() == button) {
                pressed = qobject_cast<QPushButton*>(each);
            }
        }
        QVERIFY(pressed != nullptr);
        pressed->click();
        QCOMPARE(answers, std::vector<bool>{confirmed});
    }
};

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
