#pragma once

#include "diagnostics/DoctorIssue.h"
#include "views/ConfirmationPrompt.h"
#include "views/FileChooser.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

// Stand-ins for the dialogs: they remember what they were asked and answer
// only when the test says so, as a person would, later.
namespace kelvane::testing {

class ScriptedChooser final : public views::FileChooser {
public:
    void choose(QWidget* /*parent*/, const QString& message,
                std::function<void(std::optional<QString>)> closed) override {
        ++timesAsked;
        lastMessage = message;
        pending_ = std::move(closed);
    }
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pending_); }
    void answer(std::optional<QString> path) {
        auto closed = std::exchange(pending_, nullptr);
        closed(std::move(path));
    }

    int timesAsked = 0;
    QString lastMessage;

private:
    std::function<void(std::optional<QString>)> pending_;
};

class ScriptedPrompt final : public views::ConfirmationPrompt {
public:
    void ask(QWidget* /*parent*/, const presentation::ApplyConfirmation& confirmation,
             std::function<void(bool)> answer) override {
        ++timesAsked;
        last = confirmation;
        pending_ = std::move(answer);
    }
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(pending_); }
    void answer(bool confirmed) {
        auto answer = std::exchange(pending_, nullptr);
        answer(confirmed);
    }

    int timesAsked = 0;
    std::optional<presentation::ApplyConfirmation> last;

private:
    std::function<void(bool)> pending_;
};

inline QString sourcePath(const QString& relative) {
    const QByteArray root = qgetenv("KELVANE_SOURCE_DIR");
    return QDir(root.isEmpty() ? QDir::currentPath() : QString::fromLocal8Bit(root))
        .filePath(relative);
}

inline bool copyTree(const QString& from, const QString& to) {
    const QDir source(from);
    if (!QDir().mkpath(to)) {
        return false;
    }
    for (const QFileInfo& entry :
         source.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const QString target = QDir(to).filePath(entry.fileName());
        const bool copied = entry.isDir() ? copyTree(entry.filePath(), target)
                                          : QFile::copy(entry.filePath(), target);
        if (!copied) {
            return false;
        }
    }
    return true;
}

// An issue with one evidence item of each kind (with and without an expected
// value), two targets and, if asked, a fix of the given safety.
inline DoctorIssue sampleIssue(Severity severity, std::optional<FixSafety> safety = std::nullopt) {
    DoctorIssue issue{
        .id = "bundle.identifier.collision",
        .severity = severity,
        .title = "Bundle Identifier Collision",
        .description = "Two targets share one identifier.\n\u2022 App\n\u2022 Widget",
        .impact = "Installing one replaces the other.",
        .evidence = {EvidenceItem{.source = BuildSettingSource{"App", "Debug"},
                                  .key = "PRODUCT_BUNDLE_IDENTIFIER",
                                  .value = "com.example.app"},
                     EvidenceItem{.source = PlistSource{"Watch", "Info.plist"},
                                  .key = "WKCompanionAppBundleIdentifier",
                                  .value = "com.example.other",
                                  .expectedValue = "com.example.app"}},
        .affectedTargets = {TargetRef{"App", TargetType::application, "com.example.app"},
                            TargetRef{"Widget", TargetType::widgetExtension, std::nullopt}},
    };
    if (safety) {
        issue.fix = DoctorFix{
            .summary = "Give each target its own identifier",
            .safety = *safety,
            .steps = {FixStep{"Rename the widget's identifier",
                              SetBuildSetting{"Widget", "All Configurations",
                                              "PRODUCT_BUNDLE_IDENTIFIER",
                                              "com.example.app.widget"}},
                      FixStep{"Check the provisioning profiles",
                              ManualInstruction{{"Open Signing & Capabilities", "Refresh"}}}},
        };
    }
    return issue;
}

} // namespace kelvane::testing
