#include "presentation/IssuePresentation.h"
#include "presentation/ScanPresentation.h"

#include <QTest>

#include <string>
#include <vector>

using namespace kelvane;
using namespace kelvane::presentation;

namespace {

CheckProgress row(CheckStatus status, std::optional<Severity> severity = std::nullopt) {
    CheckProgress progress{.id = "some.check", .title = "Some Check", .status = status};
    if (severity) {
        progress.issue = DoctorIssue{.id = "some.check", .severity = *severity};
    }
    return progress;
}

// Completed rows with the given severities; nullopt is a check that returned
// nothing.
std::vector<CheckProgress> completedRows(const std::vector<std::optional<Severity>>& severities) {
    std::vector<CheckProgress> rows;
    for (const auto& severity : severities) {
        rows.push_back(row(CheckStatus::completed, severity));
    }
    return rows;
}

} // namespace

class PresentationTest : public QObject {
    Q_OBJECT

private slots:
    void subtitleWhileScanningCountsFinishedRows() {
        std::vector<CheckProgress> rows(9, row(CheckStatus::pending));
        rows[0].status = CheckStatus::running;
        QCOMPARE(scanSubtitle(rows, true), std::string("0/9"));
        rows[0].status = CheckStatus::completed;
        rows[1].status = CheckStatus::completed;
        rows[2].status = CheckStatus::completed;
        rows[3].status = CheckStatus::running;
        QCOMPARE(scanSubtitle(rows, true), std::string("3/9"));
        QCOMPARE(scanTitle(true), std::string_view("Scanning"));
        QCOMPARE(scanTitle(false), std::string_view("Scan Complete"));
    }

    void subtitleOnceCompleteCountsBySeverity_data() {
        QTest::addColumn<std::vector<std::optional<Severity>>>("severities");
        QTest::addColumn<QString>("expected");
        using S = Severity;
        const std::optional<Severity> none;
        QTest::newRow("the example")
            << std::vector<std::optional<S>>{S::error,   S::warning, S::warning,
                                             S::success, S::success, S::success,
                                             S::success, S::success, none}
            << QStringLiteral("1 error \u2022 2 warnings \u2022 5 passed");
        QTest::newRow("nine passed")
            << std::vector<std::optional<S>>(9, S::success) << QStringLiteral("9 passed");
        QTest::newRow("two errors only")
            << std::vector<std::optional<S>>{S::error, S::error} << QStringLiteral("2 errors");
        QTest::newRow("one warning, passed never pluralised")
            << std::vector<std::optional<S>>{S::warning, S::success, S::success}
            << QStringLiteral("1 warning \u2022 2 passed");
        QTest::newRow("rows without an issue count nowhere")
            << std::vector<std::optional<S>>{none, none} << QString();
        QTest::newRow("no rows") << std::vector<std::optional<S>>{} << QString();
    }
    void subtitleOnceCompleteCountsBySeverity() {
        QFETCH(std::vector<std::optional<Severity>>, severities);
        QFETCH(QString, expected);
        QCOMPARE(QString::fromStdString(scanSubtitle(completedRows(severities), false)), expected);
    }

    void rowMarksAndLabelsFollowStatusAndSeverity() {
        struct Case {
            CheckProgress row;
            RowMark mark;
            std::optional<std::string_view> label;
        };
        const std::vector<Case> cases{
            {row(CheckStatus::pending), {Tone::muted, "", false}, std::nullopt},
            {row(CheckStatus::running), {Tone::accent, "", true}, std::nullopt},
            {row(CheckStatus::completed, Severity::success),
             {Tone::success, "checkmark", false},
             "Passed"},
            {row(CheckStatus::completed, Severity::warning),
             {Tone::warning, "exclamationmark", false},
             "Warning"},
            {row(CheckStatus::completed, Severity::error),
             {Tone::failure, "xmark", false},
             "Issue detected"},
            {row(CheckStatus::completed), {Tone::success, "checkmark", false}, "Passed"},
        };
        for (const Case& each : cases) {
            QVERIFY(rowMark(each.row) == each.mark);
            QCOMPARE(rowStatusLabel(each.row), each.label);
        }
    }

    void stepTitlesFollowTheAction() {
        const std::vector<std::pair<FixAction, std::string>> cases{
            {UpdatePlistKey{}, "Step 1: Update Info.plist"},
            {SetBuildSetting{}, "Step 1: Update Build Setting"},
            {UpdateEntitlement{}, "Step 1: Update Entitlements"},
            {AddFrameworkReference{}, "Step 1: Link Framework"},
            {ManualInstruction{}, "Step 1: Manual Instructions"},
        };
        for (const auto& [action, title] : cases) {
            QCOMPARE(fixStepTitle(1, action), title);
        }
        QCOMPARE(fixStepTitle(12, ManualInstruction{}),
                 std::string("Step 12: Manual Instructions"));
    }

    void actionRowsUseTheirLabels() {
        using Rows = std::vector<LabelledRow>;
        QVERIFY((
            fixActionRows(SetBuildSetting{"Widget", "All Configurations", "SDKROOT", "iphoneos"}) ==
            Rows{{"Target:", "Widget"},
                 {"Config:", "All Configurations"},
                 {"Setting:", "SDKROOT"},
                 {"Value:", "iphoneos"}}));
        // A project-level setting names no target.
        QCOMPARE(fixActionRows(SetBuildSetting{std::nullopt, "Debug", "A", "B"}).front().label,
                 std::string_view("Config:"));
        QVERIFY((fixActionRows(AddFrameworkReference{"Widget", "WidgetKit.framework"}) ==
                 Rows{{"Target:", "Widget"}, {"Framework:", "WidgetKit.framework"}}));
        QVERIFY((fixActionRows(UpdatePlistKey{"Watch", "Info.plist", "KEY", "v"}) ==
                 Rows{{"Target:", "Watch"}, {"File:", "Info.plist"}, {"Value:", "KEY = v"}}));
        QVERIFY((fixActionRows(UpdateEntitlement{"App", "App.entitlements", "groups",
                                                 EntitlementValue::array({"a", "b"})}) ==
                 Rows{{"Target:", "App"},
                      {"File:", "App.entitlements"},
                      {"Value:", "groups = [a, b]"}}));
        QVERIFY(fixActionRows(ManualInstruction{{"one", "two"}}).empty());
        QVERIFY((manualInstructions(ManualInstruction{{"one", "two"}}) ==
                 std::vector<std::string>{"one", "two"}));
        QCOMPARE(entitlementValueText(EntitlementValue::boolean(true)), std::string("YES"));
        QCOMPARE(entitlementValueText(EntitlementValue::array({})), std::string("[]"));
    }

    void evidenceAndTargetTexts() {
        EvidenceItem item{.key = "K", .value = "v"};
        QCOMPARE(expectedValueText(item), std::nullopt);
        item.expectedValue = std::string("w");
        QCOMPARE(expectedValueText(item), std::optional<std::string>("Expected: w"));
        QCOMPARE(affectedTargetsText(0), std::string("0 target(s)"));
        QCOMPARE(affectedTargetsText(3), std::string("3 target(s)"));
    }

    void longTargetListsAreShortened() {
        const auto targets = [](std::initializer_list<const char*> names) {
            std::vector<TargetRef> refs;
            for (const char* name : names) {
                refs.push_back(TargetRef{.name = name});
            }
            return refs;
        };
        QCOMPARE(shortTargetList(targets({})), std::string());
        QCOMPARE(shortTargetList(targets({"App"})), std::string("App"));
        QCOMPARE(shortTargetList(targets({"App", "Widget"})), std::string("App, Widget"));
        QCOMPARE(shortTargetList(targets({"App", "Widget", "Watch", "Share"})),
                 std::string("App, Widget and 2 more"));
        QCOMPARE(shortTargetList(targets({"App", "Widget"}), 1), std::string("App and 1 more"));
    }
};

QTEST_APPLESS_MAIN(PresentationTest)
#include "PresentationTest.moc"
