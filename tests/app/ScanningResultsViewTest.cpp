#include "views/ScanningResultsView.h"
#include "TestDoubles.h"
#include "scanner/ScanViewModel.h"
#include "views/IssueDetailView.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using namespace kelvane;
using namespace kelvane::views;
using kelvane::testing::sampleIssue;
using kelvane::testing::ScriptedPrompt;

namespace {

std::vector<CheckProgress> finishedRows(const std::vector<std::optional<Severity>>& severities) {
    std::vector<CheckProgress> rows = ScanViewModel::initialProgress();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows[index].status = CheckStatus::completed;
        if (index < severities.size() && severities[index]) {
            rows[index].issue = sampleIssue(*severities[index]);
            rows[index].issue->id = rows[index].id;
        }
    }
    return rows;
}

QString textOf(const QWidget& root, const QString& name) {
    auto* label = root.findChild<QLabel*>(name);
    return label != nullptr ? label->text() : QStringLiteral("<no %1>").arg(name);
}

QWidget* row(const QWidget& view, std::size_t index) {
    const auto id = ScanViewModel::initialProgress().at(index).id;
    return view.findChild<QWidget*>(QStringLiteral("checkRow_") + QString::fromStdString(id));
}

} // namespace

class ScanningResultsViewTest : public QObject {
    Q_OBJECT

private slots:
    void aScanJustStartedShowsTheFirstCheckRunning() {
        ScriptedPrompt prompt;
        bool cancelled = false;
        ScanningResultsView view({.projectPath = "a/App.xcodeproj",
                                  .checkProgress = ScanViewModel::initialProgress(),
                                  .isScanning = true,
                                  .onCancel =
                                      [&] {
                                          cancelled = true;
                                      }},
                                 prompt);
        QCOMPARE(textOf(view, "scanTitle"), QStringLiteral("Scanning"));
        QCOMPARE(textOf(view, "scanSubtitle"), QStringLiteral("0/9"));
        auto* first = row(view, 0)->findChild<QWidget*>(QStringLiteral("statusMark"));
        QVERIFY(first->findChild<QWidget*>(QStringLiteral("spinner"))->isVisibleTo(first));
        QCOMPARE(first->property("markColor").value<QColor>(), QColor(0, 122, 255));
        for (std::size_t index = 1; index < 9; ++index) {
            auto* mark = row(view, index)->findChild<QWidget*>(QStringLiteral("statusMark"));
            QCOMPARE(mark->property("symbol").toString(), QString());
            QVERIFY(!mark->findChild<QWidget*>(QStringLiteral("spinner"))->isVisibleTo(mark));
            QCOMPARE(mark->property("markColor").value<QColor>().alpha(), 77); // 30 %
        }
        // Only Cancel while scanning, and the detail waits.
        QVERIFY(view.findChild<QPushButton*>(QStringLiteral("backButton")) == nullptr);
        QVERIFY(view.findChild<QPushButton*>(QStringLiteral("rescanButton")) == nullptr);
        QCOMPARE(textOf(*view.detailWidget(), "placeholderText"),
                 QStringLiteral("Running diagnostics..."));
        QTest::mouseClick(view.findChild<QPushButton*>(QStringLiteral("cancelButton")),
                          Qt::LeftButton);
        QVERIFY(cancelled);
    }

    void progressUpdatesRowsInPlaceAndKeepsTheSelection() {
        ScriptedPrompt prompt;
        ScanningResultsView view(
            {.checkProgress = ScanViewModel::initialProgress(), .isScanning = true}, prompt);
        view.selectCheck("signing.inconsistent");
        auto rows = ScanViewModel::initialProgress();
        rows[0].status = CheckStatus::completed;
        rows[0].issue = sampleIssue(Severity::warning);
        rows[1].status = CheckStatus::running;
        QWidget* firstRow = row(view, 0);
        view.setCheckProgress(rows);
        QCOMPARE(row(view, 0), firstRow);
        QCOMPARE(textOf(view, "scanSubtitle"), QStringLiteral("1/9"));
        QCOMPARE(textOf(*firstRow, "statusLabel"), QStringLiteral("Warning"));
        QCOMPARE(firstRow->findChild<QWidget*>(QStringLiteral("statusMark"))
                     ->property("symbol")
                     .toString(),
                 QStringLiteral("exclamationmark"));
        QCOMPARE(view.selectedCheckID(), std::optional<std::string>("signing.inconsistent"));
    }

    void aCompletedScanCountsItsRowsAndOffersBackAndRescan() {
        ScriptedPrompt prompt;
        int backs = 0;
        int rescans = 0;
        ScanningResultsView view({.checkProgress = finishedRows(
                                      std::vector<std::optional<Severity>>(9, Severity::success)),
                                  .isScanning = false,
                                  .onCancel = [&] { ++backs; },
                                  .onRescan =
                                      [&] {
                                          ++rescans;
                                      }},
                                 prompt);
        QCOMPARE(textOf(view, "scanTitle"), QStringLiteral("Scan Complete"));
        QCOMPARE(textOf(view, "scanSubtitle"), QStringLiteral("9 passed"));
        QVERIFY(view.findChild<QPushButton*>(QStringLiteral("cancelButton")) == nullptr);
        auto* back = view.findChild<QPushButton*>(QStringLiteral("backButton"));
        auto* rescan = view.findChild<QPushButton*>(QStringLiteral("rescanButton"));
        QCOMPARE(back->text(), QStringLiteral("Back"));
        QCOMPARE(back->toolTip(), QStringLiteral("Return to project picker"));
        QCOMPARE(rescan->text(), QStringLiteral("Re-run Scan"));
        QCOMPARE(rescan->toolTip(), QStringLiteral("Scan this project again"));
        QTest::mouseClick(back, Qt::LeftButton);
        QTest::mouseClick(rescan, Qt::LeftButton);
        QCOMPARE(backs, 1);
        QCOMPARE(rescans, 1);
        QCOMPARE(textOf(*view.detailWidget(), "placeholderText"),
                 QStringLiteral("Select a check to view details"));

        // Focus makes the first row current; it must not select it.
        auto* list = view.findChild<QListWidget*>(QStringLiteral("checkList"));
        QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
        QApplication::sendEvent(list, &focus);
        QCOMPARE(list->currentRow(), 0);
        QCOMPARE(view.selectedCheckID(), std::nullopt);
        QCOMPARE(textOf(*view.detailWidget(), "placeholderText"),
                 QStringLiteral("Select a check to view details"));
    }

    void theDetailFollowsTheSelectedRow() {
        ScriptedPrompt prompt;
        const std::optional<Severity> none;
        ScanningResultsView view(
            {.checkProgress =
                 finishedRows({Severity::success, none, Severity::error, Severity::warning}),
             .isScanning = false},
            prompt);
        QCOMPARE(textOf(view, "scanSubtitle"),
                 QStringLiteral("1 error \u2022 1 warning \u2022 1 passed"));
        auto* list = view.findChild<QListWidget*>(QStringLiteral("checkList"));
        const auto clickRow = [&](int index) {
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualItemRect(list->item(index)).center());
        };
        view.resize(1000, 700);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));

        clickRow(0);
        QCOMPARE(view.selectedCheckID(), std::optional<std::string>("watch.companion.mismatch"));
        QCOMPARE(textOf(*view.detailWidget(), "statusHeadline"), QStringLiteral("No Issues Found"));
        QCOMPARE(textOf(*view.detailWidget(), "statusBody"),
                 QStringLiteral("Watch Companion Bundle ID passed successfully."));

        // A check that returned nothing still gets a calm detail.
        clickRow(1);
        QVERIFY(view.detailWidget() != nullptr);
        QCOMPARE(textOf(*view.detailWidget(), "statusHeadline"),
                 QStringLiteral("Nothing to Report"));

        clickRow(2);
        auto* issue = view.detailWidget()->findChild<QWidget*>(QStringLiteral("issueDetailView"));
        QVERIFY(issue != nullptr);
        QCOMPARE(textOf(*issue, "severityText"), QStringLiteral("ERROR"));
        clickRow(3);
        QCOMPARE(textOf(*view.detailWidget(), "severityText"), QStringLiteral("WARNING"));

        view.selectCheck("no.such.check");
        QCOMPARE(view.selectedCheckID(), std::nullopt);
        QCOMPARE(textOf(*view.detailWidget(), "placeholderText"),
                 QStringLiteral("Select a check to view details"));
    }
};

QTEST_MAIN(ScanningResultsViewTest)
#include "ScanningResultsViewTest.moc"
