#pragma once

#include "presentation/ScanPresentation.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QWidget>

#include <string_view>

class QLabel;

// The look of the window in one place: the platform's text styles and
// system colours, mapped to the nearest fixed equivalents so the screens
// read the same on Linux and macOS.
namespace kelvane::views {

// The screens draw what the presentation rules decide, so those rules read
// as the views' own words here.
using namespace kelvane::presentation;

enum class TextStyle {
    largeTitle,
    title,
    title2,
    headline,
    body,
    callout,
    subheadline,
    caption,
};

[[nodiscard]] QFont textFont(TextStyle style, QFont::Weight weight = QFont::Normal);
[[nodiscard]] QFont monospaceFont(TextStyle style);

[[nodiscard]] QColor toneColor(Tone tone);
[[nodiscard]] QColor secondaryTextColor();
[[nodiscard]] QColor tertiaryTextColor();
[[nodiscard]] QColor separatorColor();

[[nodiscard]] inline QString qs(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// A label in one text style and colour, named for the tests that read it.
QLabel* makeLabel(const QString& text, TextStyle style, const QColor& color,
                  const QString& objectName, QWidget* parent = nullptr,
                  QFont::Weight weight = QFont::Normal);

// Sets a label's text colour in a way style sheets on its ancestors (the
// sidebar list has one) cannot override.
void setLabelColor(QLabel* label, const QColor& color);

// Word-wrapped labels in a centred column ask for too little width; give the
// label its text's natural width, up to `maxWidth`.
void fitWidth(QLabel* label, int maxWidth);

// A rounded box filled with a tone at a low opacity: badges, the picker's
// error box, the caution above a fix.
class TintedBox : public QWidget {
public:
    TintedBox(const QColor& tone, int radius, double fillAlpha, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor fill_;
    int radius_;
};

} // namespace kelvane::views
