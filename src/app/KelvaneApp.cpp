#include "app/KelvaneApp.h"

#include "report/CheckPages.h"
#include "presentation/IssueText.h"
#include "views/ProjectPickerView.h"
#include "views/ScanningResultsView.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPalette>
#include <QPointer>
#include <QSaveFile>
#include <QStyleFactory>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include <array>
#include <sstream>

namespace kelvane::app {

namespace {

const QString kAsBuiltKey = QStringLiteral("reading/asBuilt");
const QString kRecentKey = QStringLiteral("recent/projects");
const QString kGeometryKey = QStringLiteral("window/geometry");

struct ExportChoice {
    report::ExportFormat format;
    const char* filter;
};
constexpr std::array<ExportChoice, 3> kExportChoices{{
    {report::ExportFormat::json, "JSON report (*.json)"},
    {report::ExportFormat::sarif, "SARIF 2.1.0 for code scanning (*.sarif)"},
    {report::ExportFormat::text, "Text, as the terminal prints it (*.txt)"},
}};

// The format a name filter of the dialog stands for; the first for another.
report::ExportFormat formatForFilter(const QString& filter) {
    for (const ExportChoice& choice : kExportChoices) {
        if (filter == QString::fromLatin1(choice.filter)) {
            return choice.format;
        }
    }
    return kExportChoices[0].format;
}

QString qs(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

// Drops, the drag hint and the window's geometry: the window is a plain
// QWidget, so its events are watched rather than overridden.
class KelvaneApp::WindowEvents : public QObject {
public:
    explicit WindowEvents(KelvaneApp& app) : app_(app) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != app_.window_.get()) {
            return false;
        }
        switch (event->type()) {
        case QEvent::DragEnter: {
            auto* drag = static_cast<QDragEnterEvent*>(event);
            const auto path = droppablePath(drag->mimeData()->urls());
            if (path) {
                drag->acceptProposedAction();
            } else {
                drag->ignore();
            }
            app_.showDropHint(path);
            return true;
        }
        case QEvent::DragLeave:
            app_.showDropHint(std::nullopt);
            return true;
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            app_.showDropHint(std::nullopt);
            if (const auto path = droppablePath(drop->mimeData()->urls())) {
                drop->acceptProposedAction();
                app_.openPath(*path);
            }
            return true;
        }
        case QEvent::Close:
            app_.saveGeometry();
            return false;
        default:
            return false;
        }
    }

private:
    KelvaneApp& app_;
};

void DialogReportDestinationChooser::choose(
    QWidget* parent, const QString& suggestedName,
    std::function<void(std::optional<ReportDestination>)> closed) {
    auto* dialog = new QFileDialog(parent, QStringLiteral("Export Report"), suggestedName);
    dialog->setObjectName(QStringLiteral("exportDialog"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    QStringList filters;
    for (const ExportChoice& choice : kExportChoices) {
        filters << QString::fromLatin1(choice.filter);
    }
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(qs(report::exportExtension(kExportChoices[0].format)));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // The suffix follows the chosen format, so "report" saves as report.sarif.
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
        dialog->setDefaultSuffix(qs(report::exportExtension(formatForFilter(filter))));
    });
    auto answered = std::make_shared<bool>(false);
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog,
                     [dialog, closed, answered](const QString& file) {
                         *answered = true;
                         // The file's own extension wins over the filter.
                         auto format = report::exportFormatForFile(file.toStdString());
                         if (!format) {
                             format = formatForFilter(dialog->selectedNameFilter());
                         }
                         closed(ReportDestination{.path = file, .format = *format});
                     });
    QObject::connect(dialog, &QDialog::finished, dialog, [closed, answered](int) {
        if (!*answered) {
            closed(std::nullopt);
        }
    });
    dialog->open();
}

KelvaneApp::KelvaneApp(views::FileChooser* chooser, views::ConfirmationPrompt* prompt,
                       ReportDestinationChooser* exportChooser)
    : exportChooser_(exportChooser != nullptr ? *exportChooser : ownExportChooser_),
      window_(std::make_unique<QWidget>()),
      content_(new ContentView(chooser != nullptr ? *chooser : ownChooser_,
                               prompt != nullptr ? *prompt : ownPrompt_)),
      asBuiltAction_(nullptr), settings_(QStringLiteral("Kelvane"), QStringLiteral("Kelvane")),
      events_(std::make_unique<WindowEvents>(*this)) {
    window_->setObjectName(QStringLiteral("mainWindow"));
    window_->setAccessibleName(QStringLiteral("Kelvane"));
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    buildMenus(window_.get());
    layout->addWidget(content_);

    dropHint_ = new QLabel(window_.get());
    dropHint_->setObjectName(QStringLiteral("dropHint"));
    dropHint_->setAlignment(Qt::AlignCenter);
    dropHint_->setWordWrap(true);
    dropHint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    dropHint_->setStyleSheet(QStringLiteral(
        "QLabel { background: rgba(240, 246, 255, 240); border: 3px dashed #007aff;"
        " border-radius: 14px; color: #0062cc; font-size: 20px; font-weight: 600; }"));
    dropHint_->hide();
    window_->setAcceptDrops(true);
    window_->installEventFilter(events_.get());

    window_->resize(1100, 720);
    const QByteArray geometry = settings_.value(kGeometryKey).toByteArray();
    if (!geometry.isEmpty()) {
        window_->restoreGeometry(geometry);
    }

    observer_ = content_->viewModel().addObserver([this](const ScanState& next) {
        if (const auto* scanning = std::get_if<ScanningState>(&next)) {
            const auto* current = std::get_if<ScanningState>(&content_->viewModel().state());
            if (current == nullptr || current->projectPath != scanning->projectPath) {
                rememberProject(QString::fromStdString(scanning->projectPath));
            }
        }
        refreshActions(next);
    });
    refreshActions(content_->viewModel().state());
}

KelvaneApp::~KelvaneApp() {
    saveGeometry();
    content_->viewModel().removeObserver(observer_);
    window_->removeEventFilter(events_.get());
}

void KelvaneApp::buildMenus(QWidget* window) {
    auto* menus = new QMenuBar(window);
    menus->setObjectName(QStringLiteral("menuBar"));
    menus->setAccessibleName(QStringLiteral("Menu bar"));
    const auto addAction = [window](QMenu* menu, const QString& text, const QString& name,
                                    auto&& triggered) {
        QAction* action = menu->addAction(text);
        action->setObjectName(name);
        QObject::connect(action, &QAction::triggered, window, triggered);
        return action;
    };

    QMenu* file = menus->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("fileMenu"));
    addAction(file, QStringLiteral("&Open\u2026"), QStringLiteral("openAction"), [this] {
        if (!std::holds_alternative<IdleState>(content_->viewModel().state())) {
            content_->viewModel().reset();
        }
        if (auto* picker = content_->picker()) {
            picker->presentOpenPanel();
        }
    })->setShortcut(QKeySequence::Open);
    recentMenu_ = file->addMenu(QStringLiteral("Open &Recent"));
    recentMenu_->setObjectName(QStringLiteral("recentMenu"));
    rebuildRecentMenu();
    file->addSeparator();
    addAction(file, QStringLiteral("&Export Report\u2026"), QStringLiteral("exportAction"), [this] {
        exportWithDialog();
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    file->addSeparator();
    addAction(file, QStringLiteral("&Close"), QStringLiteral("closeAction"), [this] {
        content_->viewModel().reset();
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    addAction(file, QStringLiteral("&Quit"), QStringLiteral("quitAction"), [this] {
        window_->close();
    })->setShortcut(QKeySequence::Quit);

    QMenu* edit = menus->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("editMenu"));
    addAction(edit, QStringLiteral("&Copy Issue"), QStringLiteral("copyIssueAction"), [this] {
        const QString text = selectedIssueText();
        if (!text.isEmpty()) {
            QGuiApplication::clipboard()->setText(text);
        }
    })->setShortcut(QKeySequence::Copy);

    QMenu* view = menus->addMenu(QStringLiteral("&View"));
    view->setObjectName(QStringLiteral("viewMenu"));
    asBuiltAction_ = view->addAction(QStringLiteral("Read projects as Xcode builds them"));
    asBuiltAction_->setObjectName(QStringLiteral("readAsBuiltAction"));
    asBuiltAction_->setCheckable(true);
    asBuiltAction_->setToolTip(
        QStringLiteral("Resolve .xcconfig files, $(\u2026) references and conditions in every "
                       "configuration, and compare only what ships together"));
    const bool asBuilt = settings_.value(kAsBuiltKey, false).toBool();
    asBuiltAction_->setChecked(asBuilt);
    content_->setReadAsBuilt(asBuilt);
    QObject::connect(asBuiltAction_, &QAction::toggled, window, [this](bool checked) {
        content_->setReadAsBuilt(checked);
        settings_.setValue(kAsBuiltKey, checked);
    });

    QMenu* scan = menus->addMenu(QStringLiteral("&Scan"));
    scan->setObjectName(QStringLiteral("scanMenu"));
    addAction(scan, QStringLiteral("&Re-run"), QStringLiteral("rerunAction"), [this] {
        content_->viewModel().rescan();
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
    addAction(scan, QStringLiteral("&Cancel"), QStringLiteral("cancelAction"), [this] {
        if (std::holds_alternative<ScanningState>(content_->viewModel().state())) {
            content_->viewModel().reset();
        }
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Period));

    QMenu* help = menus->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("helpMenu"));
    addAction(help, QStringLiteral("&Documentation of the Selected Check"),
              QStringLiteral("checkHelpAction"),
              [this] {
                  if (const auto id = selectedCheckID()) {
                      showCheckDocumentation(QString::fromStdString(*id));
                  }
              })
        ->setShortcut(QKeySequence::HelpContents);

    // The selection lives in the results screen, which tells no one when it
    // changes: the actions that depend on it are brought up to date when a
    // menu opens, and checked again when triggered by a shortcut.
    for (QMenu* each : {edit, help}) {
        QObject::connect(each, &QMenu::aboutToShow, window, [this] { refreshSelectionActions(); });
    }
    static_cast<QVBoxLayout*>(window->layout())->setMenuBar(menus);
}

QAction* KelvaneApp::action(const QString& objectName) const {
    return window_->findChild<QAction*>(objectName);
}

QMenu* KelvaneApp::menu(const QString& objectName) const {
    return window_->findChild<QMenu*>(objectName);
}

QStringList KelvaneApp::recentProjects() const {
    return settings_.value(kRecentKey).toStringList();
}

void KelvaneApp::rememberProject(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList recent = recentProjects();
    recent.removeAll(absolute);
    recent.prepend(absolute);
    while (recent.size() > kRecentLimit) {
        recent.removeLast();
    }
    settings_.setValue(kRecentKey, recent);
    rebuildRecentMenu();
}

void KelvaneApp::rebuildRecentMenu() {
    recentMenu_->clear();
    const QStringList recent = recentProjects();
    int number = 0;
    for (const QString& path : recent) {
        ++number;
        // Numbered for the keyboard; the folder in the tooltip.
        QAction* entry = recentMenu_->addAction(
            QStringLiteral("&%1 %2").arg(number % 10).arg(QFileInfo(path).fileName()));
        entry->setObjectName(QStringLiteral("recentProject%1").arg(number));
        entry->setData(path);
        entry->setToolTip(path);
        entry->setStatusTip(path);
        QObject::connect(entry, &QAction::triggered, window_.get(),
                         [this, path] { openPath(path); });
    }
    if (!recent.isEmpty()) {
        recentMenu_->addSeparator();
    }
    QAction* clear = recentMenu_->addAction(QStringLiteral("Clear Menu"));
    clear->setObjectName(QStringLiteral("clearRecentAction"));
    clear->setEnabled(!recent.isEmpty());
    QObject::connect(clear, &QAction::triggered, window_.get(), [this] {
        settings_.remove(kRecentKey);
        rebuildRecentMenu();
    });
    recentMenu_->setEnabled(true);
}

void KelvaneApp::openPath(const QString& path) {
    if (!std::holds_alternative<IdleState>(content_->viewModel().state())) {
        content_->viewModel().reset();
    }
    content_->open(path.toStdString());
}

void KelvaneApp::refreshActions(const ScanState& state) {
    const bool scanning = std::holds_alternative<ScanningState>(state);
    const bool completed = std::holds_alternative<CompletedState>(state);
    action(QStringLiteral("rerunAction"))->setEnabled(completed);
    action(QStringLiteral("cancelAction"))->setEnabled(scanning);
    action(QStringLiteral("exportAction"))->setEnabled(completed);
    action(QStringLiteral("closeAction"))->setEnabled(!std::holds_alternative<IdleState>(state));
    // Whatever was selected belonged to the screen being replaced.
    action(QStringLiteral("copyIssueAction"))->setEnabled(completed);
    action(QStringLiteral("checkHelpAction"))->setEnabled(completed);
}

void KelvaneApp::refreshSelectionActions() {
    action(QStringLiteral("copyIssueAction"))->setEnabled(selectedIssue() != nullptr);
    action(QStringLiteral("checkHelpAction"))
        ->setEnabled(selectedCheckID() && report::checkPage(*selectedCheckID()).has_value());
}

std::optional<std::string> KelvaneApp::selectedCheckID() const {
    if (auto* results = content_->results()) {
        return results->selectedCheckID();
    }
    return std::nullopt;
}

const DoctorIssue* KelvaneApp::selectedIssue() const {
    const auto* completed = std::get_if<CompletedState>(&content_->viewModel().state());
    const auto id = selectedCheckID();
    if (completed == nullptr || !id) {
        return nullptr;
    }
    for (const CheckProgress& row : completed->result.checkProgress) {
        if (row.id == *id && row.issue) {
            return &*row.issue;
        }
    }
    return nullptr;
}

QString KelvaneApp::selectedIssueText() const {
    const DoctorIssue* issue = selectedIssue();
    return issue != nullptr ? QString::fromStdString(presentation::issueText(*issue)) : QString();
}

bool KelvaneApp::exportReport(const ReportDestination& destination) {
    const auto* completed = std::get_if<CompletedState>(&content_->viewModel().state());
    if (completed == nullptr) {
        return false;
    }
    std::ostringstream report;
    report::writeExportedReport(completed->result, destination.format, report);
    // All or nothing: a failed write leaves no half report behind.
    QSaveFile file(destination.path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const std::string text = report.str();
    file.write(text.data(), static_cast<qint64>(text.size()));
    return file.commit();
}

void KelvaneApp::exportWithDialog() {
    const auto* completed = std::get_if<CompletedState>(&content_->viewModel().state());
    if (completed == nullptr) {
        return;
    }
    const QString suggested =
        QString::fromStdString(completed->result.projectName) + QStringLiteral("-kelvane.json");
    exportChooser_.choose(
        window_.get(), suggested,
        [this,
         window = QPointer<QWidget>(window_.get())](std::optional<ReportDestination> destination) {
            if (window == nullptr || !destination) {
                return;
            }
            if (!exportReport(*destination)) {
                QMessageBox::warning(window, QStringLiteral("Export Report"),
                                     QStringLiteral("The report could not be written to %1.")
                                         .arg(destination->path));
            }
        });
}

QDialog* KelvaneApp::showCheckDocumentation(const QString& checkID) {
    const auto page = report::checkPage(checkID.toStdString());
    if (!page) {
        return nullptr;
    }
    auto* dialog = new QDialog(window_.get());
    dialog->setObjectName(QStringLiteral("checkDocumentation"));
    dialog->setWindowTitle(checkID);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(dialog);
    auto* text = new QTextBrowser(dialog);
    text->setObjectName(QStringLiteral("checkPage"));
    text->setAccessibleName(QStringLiteral("Documentation of %1").arg(checkID));
    text->setOpenExternalLinks(true);
    text->setMarkdown(qs(*page));
    layout->addWidget(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    layout->addWidget(buttons);
    dialog->resize(640, 560);
    dialog->show();
    return dialog;
}

std::optional<QString> KelvaneApp::droppablePath(const QList<QUrl>& urls) {
    if (urls.size() != 1 || !urls.constFirst().isLocalFile()) {
        return std::nullopt;
    }
    const QString path = urls.constFirst().toLocalFile();
    // Project bundles are folders too; a file is nothing the chooser takes.
    if (!QFileInfo(path).isDir()) {
        return std::nullopt;
    }
    return path;
}

void KelvaneApp::showDropHint(const std::optional<QString>& path) {
    if (!path) {
        dropHint_->hide();
        return;
    }
    dropHint_->setText(QStringLiteral("Drop to scan %1").arg(QFileInfo(*path).fileName()));
    dropHint_->setGeometry(window_->rect().adjusted(16, 16, -16, -16));
    dropHint_->raise();
    dropHint_->show();
}

void KelvaneApp::saveGeometry() {
    settings_.setValue(kGeometryKey, window_->saveGeometry());
}

void KelvaneApp::show() {
    window_->show();
}

void KelvaneApp::applyLook() {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(255, 255, 255));
    palette.setColor(QPalette::WindowText, QColor(28, 28, 30));
    palette.setColor(QPalette::Base, QColor(255, 255, 255));
    palette.setColor(QPalette::AlternateBase, QColor(246, 246, 248));
    palette.setColor(QPalette::Text, QColor(28, 28, 30));
    palette.setColor(QPalette::Button, QColor(246, 246, 248));
    palette.setColor(QPalette::ButtonText, QColor(28, 28, 30));
    palette.setColor(QPalette::Highlight, QColor(0, 122, 255));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 255));
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 255));
    palette.setColor(QPalette::ToolTipText, QColor(28, 28, 30));
    QApplication::setPalette(palette);
}

} // namespace kelvane::app
