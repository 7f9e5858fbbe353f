#include "views/CheckProgressRow.h"

#include "views/Spinner.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace kelvane::views {

namespace {
constexpr int kMarkSize = 22;
constexpr qreal kStrokeWidth = 2.0;
} // namespace

StatusMark::StatusMark(QWidget* parent)
    : QWidget(parent), spinner_(new Spinner(12, this, toneColor(Tone::accent))) {
    setObjectName(QStringLiteral("statusMark"));
    setFixedSize(kMarkSize, kMarkSize);
    spinner_->move((kMarkSize - spinner_->width()) / 2, (kMarkSize - spinner_->height()) / 2);
    setMark(mark_);
}

void StatusMark::setMark(const RowMark& mark) {
    mark_ = mark;
    spinner_->setVisible(mark.spinner);
    setProperty("symbol", qs(mark.symbol));
    setProperty("markColor", toneColor(mark.tone));
    update();
}

void StatusMark::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = toneColor(mark_.tone);
    QPen pen(color);
    pen.setWidthF(kStrokeWidth);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const qreal inset = kStrokeWidth / 2.0 + 0.5;
    painter.drawEllipse(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    if (!mark_.symbol.empty()) {
        const int symbolSize = 12;
        const QPixmap symbol = symbolPixmap(mark_.symbol, color, symbolSize, devicePixelRatioF());
        painter.drawPixmap((width() - symbolSize) / 2, (height() - symbolSize) / 2, symbol);
    }
}

CheckProgressRow::CheckProgressRow(const CheckProgress& check, QWidget* parent)
    : QWidget(parent), mark_(new StatusMark(this)),
      title_(makeLabel(qs(check.title), TextStyle::subheadline, palette().color(QPalette::Text),
                       QStringLiteral("checkTitle"), this, QFont::Medium)),
      statusLabel_(makeLabel(QString(), TextStyle::caption, secondaryTextColor(),
                             QStringLiteral("statusLabel"), this)) {
    setObjectName(QStringLiteral("checkRow_") + qs(check.id));
    // Rows keep one height whether or not the label shows yet.
    QSizePolicy policy = statusLabel_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    statusLabel_->setSizePolicy(policy);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(title_);
    texts->addWidget(statusLabel_);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 7, 8, 7);
    layout->setSpacing(10);
    layout->addWidget(mark_, 0, Qt::AlignVCenter);
    layout->addLayout(texts, 1);
    setCheck(check);
}

void CheckProgressRow::setCheck(const CheckProgress& check) {
    check_ = check;
    title_->setText(qs(check.title));
    const RowMark mark = rowMark(check);
    mark_->setMark(mark);
    const auto label = rowStatusLabel(check);
    statusLabel_->setVisible(label.has_value());
    statusLabel_->setText(label ? qs(*label) : QString());
    setLabelColor(statusLabel_, toneColor(mark.tone));
    setAccessibleName(qs(rowAccessibleName(check)));
}

} // namespace kelvane::views
