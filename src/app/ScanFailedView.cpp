#include "app/ScanFailedView.h"

#include "views/Style.h"
#include "views/Symbols.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelvane::app {

using views::makeLabel;
using views::TextStyle;

ScanFailedView::ScanFailedView(const QString& message, std::function<void()> onTryAgain,
                               QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("scanFailedView"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(16);
    layout->addStretch(1);
    layout->addWidget(views::makeSymbolLabel("exclamationmark.triangle",
                                             views::toneColor(views::Tone::failure), 48,
                                             QStringLiteral("failureSymbol"), this),
                      0, Qt::AlignHCenter);
    layout->addWidget(makeLabel(QStringLiteral("Scan Failed"), TextStyle::title2,
                                palette().color(QPalette::Text), QStringLiteral("failureTitle"),
                                this, QFont::DemiBold),
                      0, Qt::AlignHCenter);
    auto* text = makeLabel(message, TextStyle::body, views::secondaryTextColor(),
                           QStringLiteral("failureMessage"), this);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignHCenter);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    views::fitWidth(text, 620);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    auto* tryAgain = new QPushButton(QStringLiteral("Try Again"), this);
    tryAgain->setObjectName(QStringLiteral("tryAgainButton"));
    tryAgain->setCursor(Qt::PointingHandCursor);
    tryAgain->setFont(views::textFont(TextStyle::body, QFont::DemiBold));
    tryAgain->setStyleSheet(QStringLiteral(
        "QPushButton { background: #007aff; color: white; border: none; border-radius: 6px;"
        " padding: 6px 18px; }"
        "QPushButton:pressed { background: #0062cc; }"));
    QObject::connect(tryAgain, &QPushButton::clicked, this, [onTryAgain = std::move(onTryAgain)] {
        if (onTryAgain) {
            onTryAgain();
        }
    });
    layout->addWidget(tryAgain, 0, Qt::AlignHCenter);
    layout->addStretch(1);
}

} // namespace kelvane::app
