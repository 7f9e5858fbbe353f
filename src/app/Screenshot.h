#pragma once

#include <QString>

#include <optional>
#include <string>

namespace kelvane::app {

class KelvaneApp;

// What `--screenshot` asks for: a picture of the window once the scan has
// finished (or after a fixed time), with a row selected if named.
struct ScreenshotRequest {
    QString file{};
    std::optional<std::string> selectCheckID{};
    // Take the picture this long after the start, whatever the state.
    std::optional<int> afterMilliseconds{};
    bool expandEvidence = false;
    // Scroll the issue detail down to its fix.
    bool showFix = false;
    // Open this menu of the menu bar ("File", "Scan"…) for the picture.
    std::optional<QString> openMenu{};
    // Hold a drag of this path over the window, as before a drop.
    std::optional<QString> dragPath{};
    // Open File → Export Report… for the picture.
    bool showExport = false;
};

// Arms the window to save the picture and quit the application; the exit
// code says whether the file was written.
void armScreenshot(KelvaneApp& app, const ScreenshotRequest& request);

} // namespace kelvane::app
