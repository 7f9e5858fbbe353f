#pragma once

#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace kelvane::views {

// The platform's file chooser, behind an interface so tests can answer it.
// `closed` is called once, later: with the chosen path, or with nothing when
// the user cancelled.
class FileChooser {
public:
    FileChooser() = default;
    FileChooser(const FileChooser&) = delete;
    FileChooser& operator=(const FileChooser&) = delete;
    virtual ~FileChooser();

    virtual void choose(QWidget* parent, const QString& message,
                        std::function<void(std::optional<QString> path)> closed) = 0;
};

// A file dialog that accepts a file or a folder alike (project bundles are
// folders) and does not block the window.
class DialogFileChooser final : public FileChooser {
public:
    void choose(QWidget* parent, const QString& message,
                std::function<void(std::optional<QString> path)> closed) override;
};

} // namespace kelvane::views
