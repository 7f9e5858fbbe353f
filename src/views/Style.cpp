#include "views/Style.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QWidget>

namespace kelvane::views {

namespace {

// Pixel sizes close to the platform's text styles at their default sizes.
int pixelSize(TextStyle style) {
    switch (style) {
    case TextStyle::largeTitle:
        return 30;
    case TextStyle::title:
        return 24;
    case TextStyle::title2:
        return 20;
    case TextStyle::headline:
    case TextStyle::body:
        return 13;
    case TextStyle::callout:
    case TextStyle::subheadline:
        return 13;
    case TextStyle::caption:
        break;
    }
    return 11;
}

} // namespace

QFont textFont(TextStyle style, QFont::Weight weight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(pixelSize(style));
    font.setWeight(style == TextStyle::headline && weight == QFont::Normal ? QFont::DemiBold
                                                                           : weight);
    return font;
}

QFont monospaceFont(TextStyle style) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize(style));
    return font;
}

QColor toneColor(Tone tone) {
    switch (tone) {
    case Tone::muted: {
        QColor gray(142, 142, 147);
        gray.setAlphaF(0.3F);
        return gray;
    }
    case Tone::accent:
        return {0, 122, 255};
    case Tone::success:
        return {40, 167, 69};
    case Tone::warning:
        return {255, 149, 0};
    case Tone::failure:
        break;
    }
    return {255, 59, 48};
}

QColor secondaryTextColor() {
    return {110, 110, 115};
}
QColor tertiaryTextColor() {
    return {160, 160, 166};
}
QColor separatorColor() {
    return {222, 222, 226};
}

QLabel* makeLabel(const QString& text, TextStyle style, const QColor& color,
                  const QString& objectName, QWidget* parent, QFont::Weight weight) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setFont(textFont(style, weight));
    label->setTextFormat(Qt::PlainText);
    setLabelColor(label, color);
    return label;
}

void setLabelColor(QLabel* label, const QColor& color) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    label->setStyleSheet(QStringLiteral("color: rgba(%1, %2, %3, %4);")
                             .arg(color.red())
                             .arg(color.green())
                             .arg(color.blue())
                             .arg(color.alpha()));
}

void fitWidth(QLabel* label, int maxWidth) {
    int widest = 0;
    const QFontMetrics metrics(label->font());
    for (const QString& line : label->text().split(QLatin1Char('\n'))) {
        widest = qMax(widest, metrics.horizontalAdvance(line));
    }
    // A little slack: the advance of a line can round below its drawn width.
    const int width = qMin(maxWidth, widest + 8);
    label->setWordWrap(widest + 8 > maxWidth);
    label->setFixedWidth(width);
    label->setMinimumHeight(label->wordWrap() ? label->heightForWidth(width)
                                              : label->sizeHint().height());
}

TintedBox::TintedBox(const QColor& tone, int radius, double fillAlpha, QWidget* parent)
    : QWidget(parent), fill_(tone), radius_(radius) {
    fill_.setAlphaF(static_cast<float>(fillAlpha));
}

void TintedBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill_);
    painter.drawRoundedRect(QRectF(rect()), radius_, radius_);
}

} // namespace kelvane::views
