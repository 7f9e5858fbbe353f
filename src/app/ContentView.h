#pragma once

#include "app/QtEventLoop.h"
#include "scanner/ScanState.h"
#include "scanner/ScanViewModel.h"

#include <QWidget>

#include <string>

class QVBoxLayout;

namespace kelvane::views {
class ConfirmationPrompt;
class FileChooser;
class ProjectPickerView;
class ScanningResultsView;
} // namespace kelvane::views

namespace kelvane::app {

// The window's content: owns the scan view model and shows the screen its
// state calls for, wiring each screen's actions to the view model.
class ContentView : public QWidget {
public:
    // `chooser` and `prompt` must outlive the view.
    ContentView(views::FileChooser& chooser, views::ConfirmationPrompt& prompt,
                QWidget* parent = nullptr);
    ~ContentView() override;

    [[nodiscard]] ScanViewModel& viewModel() noexcept { return viewModel_; }
    // The screen on show; the typed accessors give nothing for another one.
    [[nodiscard]] QWidget* screen() const noexcept { return screen_; }
    [[nodiscard]] views::ProjectPickerView* picker() const noexcept;
    [[nodiscard]] views::ScanningResultsView* results() const noexcept;

    // Treats `path` as if it had been chosen on the picker; does nothing
    // unless the picker is showing.
    void open(const std::string& path);

    // Whether later scans read projects as Xcode builds them (every
    // configuration resolved) rather than literally, the default.
    void setReadAsBuilt(bool asBuilt);
    [[nodiscard]] bool readsAsBuilt() const noexcept { return asBuilt_; }

    // What the results header says of an as-built scan.
    static constexpr const char* kAsBuiltNote = "Read as Xcode builds it, every configuration";

private:
    void render(const ScanState& next);
    void replaceScreen(QWidget* next, std::size_t stateIndex);

    QtEventLoop loop_;
    ScanViewModel viewModel_;
    views::FileChooser& chooser_;
    views::ConfirmationPrompt& prompt_;
    QVBoxLayout* layout_;
    QWidget* screen_ = nullptr;
    std::size_t screenState_ = 0;
    std::string screenPath_;
    bool asBuilt_ = false;
    // The reading of the scan on show, which a switch flipped meanwhile
    // does not change.
    bool screenAsBuilt_ = false;
    ScanViewModel::ObserverID observer_;
};

} // namespace kelvane::app
