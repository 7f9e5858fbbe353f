#pragma once

#include "app/ContentView.h"
#include "views/ConfirmationPrompt.h"
#include "views/FileChooser.h"

#include <QAction>
#include <QSettings>
#include <QWidget>

#include <memory>

namespace kelvane::app {

// The application: one window whose content is a ContentView, with the real
// file chooser and confirmation dialogs behind it.
class KelvaneApp {
public:
    KelvaneApp();

    [[nodiscard]] QWidget& window() noexcept { return *window_; }
    [[nodiscard]] ContentView& content() noexcept { return *content_; }
    // View → "Read projects as Xcode builds them": off by default, remembered
    // between launches.
    [[nodiscard]] QAction& asBuiltAction() noexcept { return *asBuiltAction_; }
    void show();

    // The look the screens were drawn for: Fusion with a light palette, so the
    // window reads the same whatever the desktop's theme.
    static void applyLook();

private:
    views::DialogFileChooser chooser_;
    views::MessageBoxPrompt prompt_;
    std::unique_ptr<QWidget> window_;
    ContentView* content_;
    QAction* asBuiltAction_;
    QSettings settings_;
};

} // namespace kelvane::app
