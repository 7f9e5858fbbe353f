#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QWidget>

namespace kelvane::views {

// The indeterminate progress spinner: spokes that fade around a circle. It
// turns only while shown, so hidden rows cost nothing.
class Spinner : public QWidget {
public:
    explicit Spinner(int size = 16, QWidget* parent = nullptr,
                     QColor color = QColor(110, 110, 115));

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QBasicTimer timer_;
    QColor color_;
    int step_ = 0;
};

} // namespace kelvane::views
