#pragma once

#include <QString>
#include <QWidget>

namespace kelvane::views {

// The detail of a check that passed: a large green mark and a few calm words.
class CompactStatusView : public QWidget {
public:
    explicit CompactStatusView(const QString& checkTitle, QWidget* parent = nullptr);

    // For a check that finished without any result (it did not apply to the
    // project, or it could not run): the same calm layout, saying so.
    [[nodiscard]] static CompactStatusView* withoutResult(const QString& checkTitle,
                                                          QWidget* parent = nullptr);

private:
    CompactStatusView(const QString& headline, const QString& body, const QString& note,
                      QWidget* parent);
};

} // namespace kelvane::views
