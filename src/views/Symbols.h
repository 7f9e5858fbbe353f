#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>

#include <string_view>

class QLabel;
class QWidget;

// The symbols the screens name ("folder", "checkmark.circle.fill", ...),
// drawn as SVGs in the resources under their own names. Each is drawn in
// "currentColor", which is replaced by the colour asked for, so one file
// serves every tone; white parts stay white.
namespace kelvane::views {

// Empty for a name the resources do not hold, so a typo shows as a gap
// rather than a crash.
[[nodiscard]] QPixmap symbolPixmap(std::string_view name, const QColor& color, int size,
                                   qreal devicePixelRatio = 1.0);
[[nodiscard]] QIcon symbolIcon(std::string_view name, const QColor& color, int size = 16);
[[nodiscard]] bool hasSymbol(std::string_view name);

// A label showing one symbol. The symbol's name and colour are kept as the
// label's "symbol" and "symbolColor" properties, for the tests.
QLabel* makeSymbolLabel(std::string_view name, const QColor& color, int size,
                        const QString& objectName, QWidget* parent = nullptr);

} // namespace kelvane::views
