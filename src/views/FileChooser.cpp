#include "views/FileChooser.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

namespace kelvane::views {

namespace {

// Qt's dialogs choose either files or folders. This one takes whatever is
// selected when the user confirms, so an .xcodeproj bundle (a folder) and a
// plain file can both be chosen; a double click still opens a folder.
class FileOrFolderDialog final : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    void accept() override {
        const QStringList selected = selectedFiles();
        if (!selected.isEmpty() && QFileInfo::exists(selected.constFirst())) {
            QDialog::accept();
            return;
        }
        QFileDialog::accept();
    }
};

} // namespace

FileChooser::~FileChooser() = default;

void DialogFileChooser::choose(QWidget* parent, const QString& message,
                               std::function<void(std::optional<QString> path)> closed) {
    auto* dialog = new FileOrFolderDialog(parent, message);
    dialog->setObjectName(QStringLiteral("fileChooser"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // The platform dialogs cannot take both files and folders in one panel.
    dialog->setOption(QFileDialog::DontUseNativeDialog, true);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Open"));
    if (auto* grid = qobject_cast<QGridLayout*>(dialog->layout())) {
        auto* label = new QLabel(message, dialog);
        label->setObjectName(QStringLiteral("chooserMessage"));
        grid->addWidget(label, grid->rowCount(), 0, 1, grid->columnCount());
    }
    QObject::connect(dialog, &QDialog::finished, dialog,
                     [dialog, closed = std::move(closed)](int result) {
                         const QStringList selected = dialog->selectedFiles();
                         if (result != QDialog::Accepted || selected.isEmpty()) {
                             closed(std::nullopt);
                             return;
                         }
                         closed(selected.constFirst());
                     });
    dialog->open();
}

} // namespace kelvane::views
