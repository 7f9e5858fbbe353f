#include "app/ContentView.h"

#include "app/ScanFailedView.h"
#include "report/EvidenceLocations.h"
#include "graph/AsBuiltLoading.h"
#include "parser/ProjectParser.h"
#include "views/ProjectPickerView.h"
#include "views/ScanningResultsView.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>
#include <QVBoxLayout>

#include <iostream>

namespace kelvane::app {

namespace {
constexpr int kMinimumWidth = 900;
constexpr int kMinimumHeight = 600;
} // namespace

ContentView::ContentView(views::FileChooser& chooser, views::ConfirmationPrompt& prompt,
                         QWidget* parent)
    : QWidget(parent), viewModel_(loop_, std::cout), chooser_(chooser), prompt_(prompt),
      layout_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("contentView"));
    setMinimumSize(kMinimumWidth, kMinimumHeight);
    layout_->setContentsMargins(0, 0, 0, 0);
    // The view model tells before it changes: draw from the state it is about
    // to take, not from state().
    observer_ = viewModel_.addObserver([this](const ScanState& next) { render(next); });
    render(viewModel_.state());
}

ContentView::~ContentView() {
    viewModel_.removeObserver(observer_);
}

views::ProjectPickerView* ContentView::picker() const noexcept {
    return screen_ != nullptr && screenState_ == 0 ? static_cast<views::ProjectPickerView*>(screen_)
                                                   : nullptr;
}

views::ScanningResultsView* ContentView::results() const noexcept {
    return screen_ != nullptr && (screenState_ == 1 || screenState_ == 2)
               ? static_cast<views::ScanningResultsView*>(screen_)
               : nullptr;
}

void ContentView::open(const std::string& path) {
    if (auto* pickerView = picker()) {
        pickerView->select(path);
    }
}

void ContentView::setReadAsBuilt(bool asBuilt) {
    asBuilt_ = asBuilt;
    // Positions are read too, so an exported report points at lines.
    if (!asBuilt) {
        viewModel_.setReading(makeCheckRegistry(), [](const std::string& projectPath) {
            return ProjectParser().parseProject(projectPath, true);
        });
        return;
    }
    viewModel_.setReading(makeAsBuiltCheckRegistry(), [](const std::string& projectPath) {
        return loadAsBuiltForScan(projectPath, std::nullopt, true);
    });
}

void ContentView::render(const ScanState& next) {
    const std::size_t index = next.index();
    if (const auto* scanning = std::get_if<ScanningState>(&next)) {
        // Progress of the scan on show updates its rows; the selection stays.
        if (screen_ != nullptr && screenState_ == index && screenPath_ == scanning->projectPath) {
            results()->setCheckProgress(scanning->checkProgress);
            return;
        }
        views::ScanningResultsView::Inputs inputs{
            .projectPath = scanning->projectPath,
            .checkProgress = scanning->checkProgress,
            .isScanning = true,
        };
        screenPath_ = scanning->projectPath;
        screenAsBuilt_ = asBuilt_;
        inputs.readingNote = screenAsBuilt_ ? kAsBuiltNote : "";
        inputs.onCancel = [this] {
            viewModel_.reset();
        };
        inputs.onApplyFix = [this](const DoctorIssue& issue, views::FixDone done) {
            viewModel_.applyFix(issue, [done = std::move(done)] { done(std::nullopt); });
        };
        replaceScreen(new views::ScanningResultsView(std::move(inputs), prompt_), index);
        return;
    }
    if (const auto* completed = std::get_if<CompletedState>(&next)) {
        views::ScanningResultsView::Inputs inputs{
            .projectPath = completed->result.projectPath,
            .checkProgress = completed->result.checkProgress,
            .isScanning = false,
        };
        screenPath_ = completed->result.projectPath;
        inputs.readingNote = screenAsBuilt_ ? kAsBuiltNote : "";
        inputs.onCancel = [this] {
            viewModel_.reset();
        };
        inputs.onRescan = [this] {
            viewModel_.rescan();
        };
        // Evidence is located in the project the scan read; the folder opens
        // in the desktop's file manager.
        inputs.evidenceFiles.fileOf =
            [locations = std::make_shared<const report::EvidenceLocations>(completed->result.project)](
                const EvidenceItem& item) -> std::optional<std::string> {
            const auto at = locations->locate(item);
            return at ? std::optional<std::string>(at->file) : std::nullopt;
        };
        inputs.evidenceFiles.showInFolder = [](const std::string& file) {
            const QFileInfo info(QString::fromStdString(file));
            QDesktopServices::openUrl(QUrl::fromLocalFile(info.absolutePath()));
        };
        inputs.onApplyFix = [this](const DoctorIssue& issue, views::FixDone done) {
            viewModel_.applyFix(issue, [done = std::move(done)] { done(std::nullopt); });
        };
        replaceScreen(new views::ScanningResultsView(std::move(inputs), prompt_), index);
        return;
    }
    screenPath_.clear();
    if (const auto* failed = std::get_if<ErrorState>(&next)) {
        replaceScreen(new ScanFailedView(QString::fromStdString(failed->message),
                                         [this] { viewModel_.reset(); }),
                      index);
        return;
    }
    replaceScreen(new views::ProjectPickerView(
                      chooser_, [this](const std::string& path) { viewModel_.startScan(path); }),
                  index);
}

void ContentView::replaceScreen(QWidget* next, std::size_t stateIndex) {
    if (screen_ != nullptr) {
        layout_->removeWidget(screen_);
        // Later, not now: the old screen's own button may have led here.
        screen_->hide();
        screen_->deleteLater();
    }
    screen_ = next;
    screenState_ = stateIndex;
    layout_->addWidget(screen_);
    // At once, not on the next turn of the event loop as a layout would.
    screen_->show();
}

} // namespace kelvane::app
