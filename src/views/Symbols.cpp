#include "views/Symbols.h"

#include "views/Style.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QLabel>
#include <QPainter>
#include <QSvgRenderer>

// Resources of a static library must be registered by hand.
static void registerSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace kelvane::views {

namespace {

QString resourcePath(std::string_view name) {
    return QStringLiteral(":/symbols/") + qs(name) + QStringLiteral(".svg");
}

// The SVG text of a symbol, read once.
const QByteArray& symbolSource(std::string_view name) {
    static const bool registered = (registerSymbols(), true);
    Q_UNUSED(registered);
    static QHash<QString, QByteArray> sources;
    const QString path = resourcePath(name);
    auto found = sources.find(path);
    if (found == sources.end()) {
        QFile file(path);
        found =
            sources.insert(path, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }
    return found.value();
}

} // namespace

bool hasSymbol(std::string_view name) {
    return !symbolSource(name).isEmpty();
}

QPixmap symbolPixmap(std::string_view name, const QColor& color, int size, qreal devicePixelRatio) {
    const QByteArray& source = symbolSource(name);
    if (source.isEmpty() || size <= 0) {
        return {};
    }
    QByteArray coloured = source;
    coloured.replace("currentColor", color.name(QColor::HexRgb).toUtf8());
    QSvgRenderer renderer(coloured);
    const int pixels = qRound(size * devicePixelRatio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(color.alphaF());
        renderer.render(&painter);
    }
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QIcon symbolIcon(std::string_view name, const QColor& color, int size) {
    QIcon icon;
    icon.addPixmap(symbolPixmap(name, color, size, 1.0));
    icon.addPixmap(symbolPixmap(name, color, size, 2.0));
    return icon;
}

QLabel* makeSymbolLabel(std::string_view name, const QColor& color, int size,
                        const QString& objectName, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    const qreal ratio = qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0;
    label->setPixmap(symbolPixmap(name, color, size, ratio));
    label->setFixedSize(size, size);
    label->setProperty("symbol", qs(name));
    label->setProperty("symbolColor", color);
    return label;
}

} // namespace kelvane::views
