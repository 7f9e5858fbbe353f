#include "views/FixStepsDetailView.h"
#include "TestDoubles.h"
#include "views/Style.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <iostream>
#include <sstream>

using namespace kelvane;
using namespace kelvane::views;
using kelvane::testing::sampleIssue;
using kelvane::testing::ScriptedPrompt;

namespace {

// The button's text as people read it: "&&" draws a single "&".
QString shownText(const QPushButton* button) {
    return button->text().replace(QStringLiteral("&&"), QStringLiteral("&"));
}

QStringList textsOf(const QWidget& root, const QString& name) {
    QStringList texts;
    for (const QLabel* label : root.findChildren<QLabel*>(name)) {
        texts << label->text();
    }
    return texts;
}

// A fix view whose apply callback is held until the test finishes it.
struct Screen {
    explicit Screen(FixSafety safety) : issue(sampleIssue(Severity::error, safety)) {}
    DoctorIssue issue;
    ScriptedPrompt prompt;
    std::vector<DoctorIssue> applied;
    FixDone finish;
    FixStepsDetailView view{issue, *issue.fix,
                            [this](const DoctorIssue& chosen, FixDone done) {
                                applied.push_back(chosen);
                                finish = std::move(done);
                            },
                            prompt};
    QPushButton* applyButton() {
        return view.findChild<QPushButton*>(QStringLiteral("applyButton"));
    }
    QWidget* applying() { return view.findChild<QWidget*>(QStringLiteral("applyingIndicator")); }
};

} // namespace

class FixStepsDetailViewTest : public QObject {
    Q_OBJECT

private slots:
    void eachSafetyClassHasItsBadgeAndControl_data() {
        QTest::addColumn<FixSafety>("safety");
        QTest::addColumn<QString>("badge");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("dialogTitle");
        QTest::addColumn<QString>("confirmLabel");
        QTest::newRow("safe") << FixSafety::safeAuto << "SAFE"
                              << "Apply Fix"
                              << "Apply Fix"
                              << "Apply Fix";
        QTest::newRow("review") << FixSafety::requiresConfirmation << "REQUIRES REVIEW"
                                << "Preview & Apply"
                                << "Review Changes"
                                << "Apply Changes";
    }
    void eachSafetyClassHasItsBadgeAndControl() {
        QFETCH(FixSafety, safety);
        QFETCH(QString, badge);
        QFETCH(QString, button);
        QFETCH(QString, dialogTitle);
        QFETCH(QString, confirmLabel);
        Screen screen(safety);
        QCOMPARE(textsOf(screen.view, "safetyText"), QStringList{badge});
        QCOMPARE(shownText(screen.applyButton()), button);
        QTest::mouseClick(screen.applyButton(), Qt::LeftButton);
        QVERIFY(screen.view.showingConfirmation());
        QVERIFY(screen.prompt.isOpen());
        QCOMPARE(qs(screen.prompt.last->dialogTitle), dialogTitle);
        QCOMPARE(qs(screen.prompt.last->confirmLabel), confirmLabel);
        QCOMPARE(qs(screen.prompt.last->cancelLabel), QStringLiteral("Cancel"));
    }

    void aManualFixOffersNoApplyControl() {
        Screen screen(FixSafety::manualOnly);
        QCOMPARE(textsOf(screen.view, "safetyText"), QStringList{"MANUAL ONLY"});
        QVERIFY(screen.applyButton() == nullptr);
        QCOMPARE(textsOf(screen.view, "manualStepsNote"), QStringList{"Manual steps required"});
        QCOMPARE(screen.view.findChild<QLabel*>(QStringLiteral("manualSymbol"))
                     ->property("symbol")
                     .toString(),
                 QStringLiteral("hand.raised"));
    }

    void showsStepsWithTheirRowsAndSections() {
        Screen screen(FixSafety::requiresConfirmation);
        QCOMPARE(textsOf(screen.view, "stepTitle"),
                 (QStringList{"Step 1: Update Build Setting", "Step 2: Manual Instructions"}));
        QCOMPARE(textsOf(screen.view, "rowLabel"),
                 (QStringList{"Target:", "Config:", "Setting:", "Value:"}));
        QCOMPARE(textsOf(screen.view, "instruction"),
                 (QStringList{"1. Open Signing & Capabilities", "2. Refresh"}));
        QCOMPARE(textsOf(screen.view, "whatWillChangeHeading"), QStringList{"What will change"});
        QCOMPARE(textsOf(screen.view, "howThisWorksHeading"), QStringList{"How this works"});
    }

    void cancellingAppliesNothing() {
        Screen screen(FixSafety::safeAuto);
        QTest::mouseClick(screen.applyButton(), Qt::LeftButton);
        screen.prompt.answer(false);
        QVERIFY(!screen.view.showingConfirmation());
        QVERIFY(!screen.view.isApplyingFix());
        QVERIFY(screen.applied.empty());
        QVERIFY(screen.applyButton()->isVisibleTo(&screen.view));
    }

    void confirmingShowsApplyingUntilTheFixEnds() {
        Screen screen(FixSafety::safeAuto);
        QTest::mouseClick(screen.applyButton(), Qt::LeftButton);
        screen.prompt.answer(true);
        QCOMPARE(screen.applied.size(), std::size_t{1});
        QCOMPARE(screen.applied.front(), screen.issue);
        QVERIFY(screen.view.isApplyingFix());
        QVERIFY(!screen.applyButton()->isVisibleTo(&screen.view));
        QVERIFY(screen.applying()->isVisibleTo(&screen.view));
        QCOMPARE(textsOf(*screen.applying(), "applyingLabel"), QStringList{"Applying..."});
        QVERIFY(screen.applying()->findChild<QWidget*>(QStringLiteral("spinner")) != nullptr);
        // A second press while applying asks nothing.
        QTest::mouseClick(screen.applyButton(), Qt::LeftButton);
        QCOMPARE(screen.prompt.timesAsked, 1);

        screen.finish(std::nullopt);
        QVERIFY(!screen.view.isApplyingFix());
        QVERIFY(screen.applyButton()->isVisibleTo(&screen.view));
        QVERIFY(!screen.applying()->isVisibleTo(&screen.view));
    }

    void aFailedFixIsReportedOnStandardOutput() {
        Screen screen(FixSafety::requiresConfirmation);
        QTest::mouseClick(screen.applyButton(), Qt::LeftButton);
        screen.prompt.answer(true);
        std::ostringstream captured;
        std::streambuf* original = std::cout.rdbuf(captured.rdbuf());
        screen.finish(std::string("interrupted"));
        std::cout.rdbuf(original);
        QCOMPARE(captured.str(), std::string("Fix failed: interrupted\n"));
        QVERIFY(!screen.view.isApplyingFix());
    }

    void anAnswerAfterTheViewIsGoneIsHarmless() {
        auto screen = std::make_unique<Screen>(FixSafety::safeAuto);
        QTest::mouseClick(screen->applyButton(), Qt::LeftButton);
        screen->prompt.answer(true);
        FixDone finish = std::move(screen->finish);
        screen.reset();
        finish(std::nullopt);
    }
};

QTEST_MAIN(FixStepsDetailViewTest)
#include "FixStepsDetailViewTest.moc"
