#pragma once

#include "app/ContentView.h"
#include "report/ReportExport.h"
#include "views/ConfirmationPrompt.h"
#include "views/FileChooser.h"

#include <QAction>
#include <QMenu>
#include <QSettings>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QDialog;
class QLabel;

namespace kelvane::app {

// Where File → Export Report… writes, and as what.
struct ReportDestination {
    QString path;
    report::ExportFormat format = report::ExportFormat::json;
};

// The save dialog of File → Export Report…, behind an interface so tests can
// answer it. `closed` is called once, later: with the destination, or with
// nothing when the user cancelled.
class ReportDestinationChooser {
public:
    ReportDestinationChooser() = default;
    ReportDestinationChooser(const ReportDestinationChooser&) = delete;
    ReportDestinationChooser& operator=(const ReportDestinationChooser&) = delete;
    virtual ~ReportDestinationChooser() = default;

    virtual void choose(QWidget* parent, const QString& suggestedName,
                        std::function<void(std::optional<ReportDestination>)> closed) = 0;
};

// A non-blocking save dialog offering JSON, SARIF and text.
class DialogReportDestinationChooser final : public ReportDestinationChooser {
public:
    void choose(QWidget* parent, const QString& suggestedName,
                std::function<void(std::optional<ReportDestination>)> closed) override;
};

// The application: one window whose content is a ContentView, with the real
// file chooser and confirmation dialogs behind it, and the menus, shortcuts,
// recent projects and drops a desktop app has around it.
class KelvaneApp {
public:
    // Dialogs left out are the platform's own; tests pass scripted ones.
    explicit KelvaneApp(views::FileChooser* chooser = nullptr,
                        views::ConfirmationPrompt* prompt = nullptr,
                        ReportDestinationChooser* exportChooser = nullptr);
    ~KelvaneApp();
    KelvaneApp(const KelvaneApp&) = delete;
    KelvaneApp& operator=(const KelvaneApp&) = delete;

    [[nodiscard]] QWidget& window() noexcept { return *window_; }
    [[nodiscard]] ContentView& content() noexcept { return *content_; }
    // View → "Read projects as Xcode builds them": off by default, remembered
    // between launches.
    [[nodiscard]] QAction& asBuiltAction() noexcept { return *asBuiltAction_; }
    void show();

    // The menu actions, by object name ("openAction", "copyIssueAction"…).
    [[nodiscard]] QAction* action(const QString& objectName) const;
    [[nodiscard]] QMenu* menu(const QString& objectName) const;

    // The projects scanned last, most recent first, at most kRecentLimit.
    [[nodiscard]] QStringList recentProjects() const;
    static constexpr int kRecentLimit = 10;

    // Leaves whatever is on show and runs the chooser's selection rules on
    // `path`: what File → Open Recent, a drop and Open… all end in.
    void openPath(const QString& path);

    // Writes the scan on show; false (and nothing written) when there is
    // none or the file cannot be written.
    bool exportReport(const ReportDestination& destination);
    // The selected issue as the terminal prints it; empty without one.
    [[nodiscard]] QString selectedIssueText() const;
    // Shows the documentation of `checkID` in a dialog; nothing for an id
    // without a page.
    QDialog* showCheckDocumentation(const QString& checkID);

    // Whether a drag carrying these paths would be taken: one folder, which
    // project bundles are.
    [[nodiscard]] static std::optional<QString> droppablePath(const QList<QUrl>& urls);

    // The look the screens were drawn for: Fusion with a light palette, so the
    // window reads the same whatever the desktop's theme.
    static void applyLook();

private:
    class WindowEvents;

    void buildMenus(QWidget* window);
    void rememberProject(const QString& path);
    void rebuildRecentMenu();
    void refreshActions(const ScanState& state);
    void refreshSelectionActions();
    void exportWithDialog();
    void saveGeometry();
    void showDropHint(const std::optional<QString>& path);
    [[nodiscard]] std::optional<std::string> selectedCheckID() const;
    [[nodiscard]] const DoctorIssue* selectedIssue() const;

    views::DialogFileChooser ownChooser_;
    views::MessageBoxPrompt ownPrompt_;
    DialogReportDestinationChooser ownExportChooser_;
    ReportDestinationChooser& exportChooser_;
    std::unique_ptr<QWidget> window_;
    ContentView* content_;
    QAction* asBuiltAction_;
    QMenu* recentMenu_ = nullptr;
    QLabel* dropHint_ = nullptr;
    QSettings settings_;
    ScanViewModel::ObserverID observer_{};
    std::unique_ptr<WindowEvents> events_;
};

} // namespace kelvane::app
