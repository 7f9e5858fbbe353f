#include "views/ProjectPickerView.h"

#include "selection/ProjectSelection.h"
#include "selection/ProjectSelectionError.h"
#include "views/FileChooser.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <exception>

namespace kelvane::views {

namespace {
constexpr int kSymbolSize = 64;
constexpr int kSubtitleWidth = 400;
constexpr int kErrorWidth = 450;
const QString kChooserMessage =
    QStringLiteral("Select an Xcode project, workspace, or folder containing a project");
} // namespace

ProjectPickerView::ProjectPickerView(FileChooser& chooser, ProjectSelected onProjectSelected,
                                     QWidget* parent)
    : QWidget(parent), chooser_(chooser), onProjectSelected_(std::move(onProjectSelected)) {
    setObjectName(QStringLiteral("projectPickerView"));
    const QColor text = palette().color(QPalette::Text);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(0);
    layout->addStretch(1);
    layout->addWidget(makeSymbolLabel("stethoscope", toneColor(Tone::accent), kSymbolSize,
                                      QStringLiteral("appSymbol"), this),
                      0, Qt::AlignHCenter);
    layout->addSpacing(18);
    auto* title = makeLabel(QStringLiteral("Kelvane"), TextStyle::largeTitle, text,
                            QStringLiteral("appTitle"), this, QFont::DemiBold);
    layout->addWidget(title, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    auto* subtitle =
        makeLabel(QStringLiteral("Scan your Xcode project for common configuration issues"),
                  TextStyle::body, secondaryTextColor(), QStringLiteral("appSubtitle"), this);
    subtitle->setWordWrap(true);
    subtitle->setAlignment(Qt::AlignHCenter);
    fitWidth(subtitle, kSubtitleWidth);
    layout->addWidget(subtitle, 0, Qt::AlignHCenter);
    layout->addSpacing(28);

    auto* button = new QPushButton(QStringLiteral("Select Xcode Project"), this);
    button->setObjectName(QStringLiteral("selectProjectButton"));
    button->setIcon(symbolIcon("folder", Qt::white, 18));
    button->setIconSize(QSize(18, 18));
    button->setFont(textFont(TextStyle::headline));
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(40);
    button->setStyleSheet(QStringLiteral(
        "QPushButton { background: #007aff; color: white; border: none; border-radius: 8px;"
        " padding: 8px 22px; }"
        "QPushButton:hover { background: #0a84ff; }"
        "QPushButton:pressed { background: #0062cc; }"));
    QObject::connect(button, &QPushButton::clicked, this, [this] { presentOpenPanel(); });
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addSpacing(20);

    errorBox_ = new TintedBox(toneColor(Tone::failure), 8, 0.1, this);
    errorBox_->setObjectName(QStringLiteral("errorBox"));
    auto* errorLayout = new QHBoxLayout(errorBox_);
    errorLayout->setContentsMargins(14, 10, 14, 10);
    errorLabel_ = makeLabel(QString(), TextStyle::callout, toneColor(Tone::failure),
                            QStringLiteral("errorMessage"), errorBox_);
    errorLabel_->setWordWrap(true);
    errorLabel_->setAlignment(Qt::AlignHCenter);
    errorLabel_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    errorLayout->addWidget(errorLabel_);
    layout->addWidget(errorBox_, 0, Qt::AlignHCenter);
    layout->addStretch(1);
    setErrorMessage(std::nullopt);
}

void ProjectPickerView::presentOpenPanel() {
    chooser_.choose(this, kChooserMessage,
                    [view = QPointer<ProjectPickerView>(this)](std::optional<QString> path) {
                        // Cancelled, or the screen has gone: the message stays.
                        if (view == nullptr || !path) {
                            return;
                        }
                        view->select(path->toStdString());
                    });
}

void ProjectPickerView::select(const std::string& chosenPath) {
    std::string resolved;
    try {
        resolved = resolveSelection(chosenPath);
    } catch (const ProjectSelectionError& error) {
        setErrorMessage(error.what());
        return;
    } catch (const std::exception& error) {
        // Whatever else the file system throws still reaches the user.
        setErrorMessage(error.what());
        return;
    }
    setErrorMessage(std::nullopt);
    if (onProjectSelected_) {
        onProjectSelected_(resolved);
    }
}

void ProjectPickerView::setErrorMessage(std::optional<std::string> message) {
    errorMessage_ = std::move(message);
    errorLabel_->setText(errorMessage_ ? QString::fromStdString(*errorMessage_) : QString());
    // The box is at most 450 wide, its padding included.
    fitWidth(errorLabel_, kErrorWidth - 28);
    errorBox_->setVisible(errorMessage_.has_value());
}

} // namespace kelvane::views
