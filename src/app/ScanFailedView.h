#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace kelvane::app {

// What the window shows when a scan could not run: the reason, as the scan
// gave it, and the way back to the picker.
class ScanFailedView : public QWidget {
public:
    ScanFailedView(const QString& message, std::function<void()> onTryAgain,
                   QWidget* parent = nullptr);
};

} // namespace kelvane::app
