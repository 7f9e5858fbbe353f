#include "views/Spinner.h"

#include <QPainter>
#include <QTimerEvent>

namespace kelvane::views {

namespace {
constexpr int kSpokes = 8;
constexpr int kStepMilliseconds = 90;
} // namespace

Spinner::Spinner(int size, QWidget* parent, QColor color) : QWidget(parent), color_(color) {
    setObjectName(QStringLiteral("spinner"));
    setFixedSize(size, size);
    setAttribute(Qt::WA_TranslucentBackground);
}

void Spinner::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = qMin(width(), height());
    painter.translate(width() / 2.0, height() / 2.0);
    QPen pen(color_);
    pen.setWidthF(qMax(1.5, side / 9.0));
    pen.setCapStyle(Qt::RoundCap);
    for (int i = 0; i < kSpokes; ++i) {
        // The spoke at the current step is the darkest; the others trail off.
        const int age = (step_ - i + kSpokes) % kSpokes;
        QColor spoke = color_;
        spoke.setAlphaF(1.0F - 0.8F * static_cast<float>(age) / kSpokes);
        pen.setColor(spoke);
        painter.setPen(pen);
        painter.save();
        painter.rotate(360.0 * i / kSpokes);
        painter.drawLine(QPointF(0, -side * 0.22), QPointF(0, -side * 0.42));
        painter.restore();
    }
}

void Spinner::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    step_ = (step_ + 1) % kSpokes;
    update();
}

void Spinner::showEvent(QShowEvent* event) {
    timer_.start(kStepMilliseconds, this);
    QWidget::showEvent(event);
}

void Spinner::hideEvent(QHideEvent* event) {
    timer_.stop();
    QWidget::hideEvent(event);
}

} // namespace kelvane::views
