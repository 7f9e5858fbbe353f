#pragma once

#include "scanner/CheckProgress.h"
#include "presentation/ScanPresentation.h"

#include <QWidget>

class QLabel;

namespace kelvane::views {

class Spinner;

// The outlined circle in front of a row: empty while pending, a spinner while
// running, the outcome's mark once finished. Its "symbol" and "markColor"
// properties say what it shows, for the tests.
class StatusMark : public QWidget {
public:
    explicit StatusMark(QWidget* parent = nullptr);
    void setMark(const presentation::RowMark& mark);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    presentation::RowMark mark_{};
    Spinner* spinner_;
};

// One check in the sidebar: the mark, the check's title and, once it has
// finished, a label saying how it went.
class CheckProgressRow : public QWidget {
public:
    explicit CheckProgressRow(const CheckProgress& check, QWidget* parent = nullptr);

    // Rows are updated in place while a scan runs, so the list keeps its
    // scroll position and selection.
    void setCheck(const CheckProgress& check);
    [[nodiscard]] const CheckProgress& check() const noexcept { return check_; }

private:
    CheckProgress check_;
    StatusMark* mark_;
    QLabel* title_;
    QLabel* statusLabel_;
};

} // namespace kelvane::views
