#include "views/IssueDetailView.h"
#include "TestDoubles.h"
#include "views/FixStepsDetailView.h"
#include "views/IssueRowView.h"

#include <QLabel>
#include <QTest>
#include <QToolButton>

using namespace kelvane;
using namespace kelvane::views;
using kelvane::testing::sampleIssue;
using kelvane::testing::ScriptedPrompt;

namespace {

QStringList textsOf(const QWidget& root, const QString& name) {
    QStringList texts;
    for (const QLabel* label : root.findChildren<QLabel*>(name)) {
        texts << label->text();
    }
    return texts;
}

} // namespace

class IssueDetailViewTest : public QObject {
    Q_OBJECT

private slots:
    void theBadgeFollowsTheSeverity_data() {
        QTest::addColumn<Severity>("severity");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("error") << Severity::error << "ERROR"
                               << "xmark.circle.fill";
        QTest::newRow("warning") << Severity::warning << "WARNING"
                                 << "exclamationmark.triangle.fill";
    }
    void theBadgeFollowsTheSeverity() {
        QFETCH(Severity, severity);
        QFETCH(QString, text);
        QFETCH(QString, symbol);
        ScriptedPrompt prompt;
        IssueDetailView view(sampleIssue(severity), {}, prompt);
        QCOMPARE(textsOf(view, "severityText"), QStringList{text});
        QCOMPARE(view.findChild<QLabel*>(QStringLiteral("severitySymbol"))
                     ->property("symbol")
                     .toString(),
                 symbol);
    }

    void showsTheIssuesTextsUnderTheirHeadings() {
        ScriptedPrompt prompt;
        IssueDetailView view(sampleIssue(Severity::error), {}, prompt);
        QCOMPARE(textsOf(view, "issueTitle"), QStringList{"Bundle Identifier Collision"});
        QCOMPARE(textsOf(view, "descriptionHeading"), QStringList{"Description"});
        QCOMPARE(textsOf(view, "descriptionText"),
                 QStringList{"Two targets share one identifier.\n\u2022 App\n\u2022 Widget"});
        QCOMPARE(textsOf(view, "impactHeading"), QStringList{"Impact"});
        QCOMPARE(textsOf(view, "impactText"), QStringList{"Installing one replaces the other."});
        QCOMPARE(textsOf(view, "targetsCount"), QStringList{"2 target(s)"});
        // Without a fix there is no fix section and nothing to apply.
        QVERIFY(view.fixView() == nullptr);
        QVERIFY(view.findChild<QWidget*>(QStringLiteral("applyButton")) == nullptr);
    }

    void evidenceOpensAndClosesOnItsToggle() {
        ScriptedPrompt prompt;
        IssueDetailView view(sampleIssue(Severity::warning), {}, prompt);
        auto* toggle = view.findChild<QToolButton*>(QStringLiteral("evidenceToggle"));
        auto* list = view.findChild<QWidget*>(QStringLiteral("evidenceList"));
        QCOMPARE(toggle->text(), QStringLiteral("Evidence"));
        QVERIFY(!view.evidenceExpanded());
        QVERIFY(!list->isVisibleTo(&view));

        QTest::mouseClick(toggle, Qt::LeftButton);
        QVERIFY(view.evidenceExpanded());
        QVERIFY(list->isVisibleTo(&view));
        QCOMPARE(textsOf(*list, "evidenceLocation"),
                 (QStringList{"App \u2192 Build Settings (Debug)", "Watch \u2192 Info.plist"}));
        QCOMPARE(textsOf(*list, "evidenceKey"),
                 (QStringList{"PRODUCT_BUNDLE_IDENTIFIER", "WKCompanionAppBundleIdentifier"}));
        QCOMPARE(textsOf(*list, "evidenceValue"),
                 (QStringList{"com.example.app", "com.example.other"}));
        // Only the item that knows what it expected says so.
        QCOMPARE(textsOf(*list, "evidenceExpected"), QStringList{"Expected: com.example.app"});

        QTest::mouseClick(toggle, Qt::LeftButton);
        QVERIFY(!view.evidenceExpanded());
        QVERIFY(!list->isVisibleTo(&view));
    }

    // Only rows whose file is known offer the button; it hands over the file.
    void evidenceRowsWithAFileShowItsFolder() {
        ScriptedPrompt prompt;
        std::vector<std::string> shown;
        EvidenceFileActions files{
            .fileOf = [](const EvidenceItem& item) -> std::optional<std::string> {
                if (std::holds_alternative<PlistSource>(item.source)) {
                    return "/projects/Watch/Info.plist";
                }
                return std::nullopt;
            },
            .showInFolder = [&shown](const std::string& file) { shown.push_back(file); },
        };
        IssueDetailView view(sampleIssue(Severity::warning), {}, prompt, nullptr, files);
        const auto buttons = view.findChildren<QToolButton*>(QStringLiteral("showInFolder"));
        QCOMPARE(buttons.size(), 1);
        QCOMPARE(buttons.front()->text(), QStringLiteral("Show in folder"));
        QCOMPARE(buttons.front()->accessibleName(),
                 QStringLiteral("Show /projects/Watch/Info.plist in folder"));
        QVERIFY(buttons.front()->parentWidget()->objectName() == QStringLiteral("evidenceItem2"));
        view.setEvidenceExpanded(true);
        QTest::mouseClick(buttons.front(), Qt::LeftButton);
        QCOMPARE(shown, std::vector<std::string>{"/projects/Watch/Info.plist"});

        // Without a way to show a folder there is no button at all.
        IssueDetailView bare(sampleIssue(Severity::warning), {}, prompt, nullptr,
                             {.fileOf = files.fileOf, .showInFolder = {}});
        QVERIFY(bare.findChildren<QToolButton*>(QStringLiteral("showInFolder")).isEmpty());
    }

    void theRowViewIsOneCompactLine() {
        IssueRowView row(sampleIssue(Severity::warning), Severity::warning);
        QCOMPARE(textsOf(row, "issueRowTitle"), QStringList{"Bundle Identifier Collision"});
        QCOMPARE(textsOf(row, "issueRowTargets"), QStringList{"App, Widget"});
        QCOMPARE(
            row.findChild<QLabel*>(QStringLiteral("issueRowSymbol"))->property("symbol").toString(),
            QStringLiteral("exclamationmark.triangle.fill"));
    }
};

QTEST_MAIN(IssueDetailViewTest)
#include "IssueDetailViewTest.moc"
