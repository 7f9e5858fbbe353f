#include "views/CompactStatusView.h"

#include "views/Style.h"
#include "views/Symbols.h"

#include <QLabel>
#include <QVBoxLayout>

namespace kelvane::views {

namespace {
constexpr int kSymbolSize = 56;
} // namespace

CompactStatusView::CompactStatusView(const QString& checkTitle, QWidget* parent)
    : CompactStatusView(QStringLiteral("No Issues Found"),
                        checkTitle + QStringLiteral(" passed successfully."),
                        QStringLiteral("Everything looks good with this check."), parent) {}

CompactStatusView* CompactStatusView::withoutResult(const QString& checkTitle, QWidget* parent) {
    return new CompactStatusView(
        QStringLiteral("Nothing to Report"),
        checkTitle + QStringLiteral(" found nothing to look at in this project."),
        QStringLiteral("It did not apply here or could not run, so it counts nowhere."), parent);
}

CompactStatusView::CompactStatusView(const QString& headline, const QString& body,
                                     const QString& note, QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("compactStatusView"));
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addStretch(1);
    layout->addWidget(makeSymbolLabel("checkmark.circle.fill", toneColor(Tone::success),
                                      kSymbolSize, QStringLiteral("statusSymbol")),
                      0, Qt::AlignHCenter);
    layout->addSpacing(6);
    for (QLabel* label : {
             makeLabel(headline, TextStyle::title, palette().color(QPalette::Text),
                       QStringLiteral("statusHeadline"), this, QFont::Medium),
             makeLabel(body, TextStyle::body, secondaryTextColor(), QStringLiteral("statusBody"),
                       this),
             makeLabel(note, TextStyle::callout, tertiaryTextColor(), QStringLiteral("statusNote"),
                       this),
         }) {
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    layout->addStretch(1);
}

} // namespace kelvane::views
