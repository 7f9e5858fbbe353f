#include "views/Symbols.h"
#include "presentation/IssuePresentation.h"
#include "presentation/ScanPresentation.h"
#include "views/Style.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace kelvane;
using namespace kelvane::views;

namespace {

// Every symbol a screen asks for by name.
const QStringList kNamedSymbols{
    "stethoscope",
    "folder",
    "exclamationmark.triangle",
    "chevron.left",
    "arrow.clockwise",
    "hourglass",
    "arrow.left",
    "checkmark.circle.fill",
    "checkmark.circle",
    "doc.text.magnifyingglass",
    "hand.raised",
    "chevron.right",
    "chevron.down",
};

int opaquePixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class SymbolsTest : public QObject {
    Q_OBJECT

private slots:
    void everyNamedSymbolIsDrawnInTheColourAskedFor() {
        QStringList names = kNamedSymbols;
        // And every symbol the presentation rules hand out.
        for (const Severity severity : {Severity::success, Severity::warning, Severity::error}) {
            names << qs(severityBadge(severity).symbol);
            names << qs(rowMark(CheckProgress{.status = CheckStatus::completed,
                                              .issue = DoctorIssue{.severity = severity}})
                            .symbol);
        }
        for (const FixSafety safety :
             {FixSafety::safeAuto, FixSafety::requiresConfirmation, FixSafety::manualOnly}) {
            names << qs(safetyBadge(safety).symbol);
        }
        const QColor red(255, 0, 0);
        QImage sheet(names.size() * 40, 40, QImage::Format_ARGB32);
        sheet.fill(Qt::white);
        QPainter painter(&sheet);
        for (int index = 0; index < names.size(); ++index) {
            const QString& name = names[index];
            QVERIFY2(hasSymbol(name.toStdString()), qPrintable(name));
            const QImage image = symbolPixmap(name.toStdString(), red, 32).toImage();
            QVERIFY2(opaquePixels(image) > 20, qPrintable(name));
            // The colour replaces currentColor: no black is left.
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb pixel = image.pixel(x, y);
                    if (qAlpha(pixel) == 255) {
                        QVERIFY2(qRed(pixel) > 200, qPrintable(name));
                    }
                }
            }
            painter.drawImage(index * 40 + 4, 4, image);
        }
        painter.end();
        // A contact sheet to look at: KELVANE_SYMBOL_SHEET=/tmp/symbols.png.
        if (const QByteArray path = qgetenv("KELVANE_SYMBOL_SHEET"); !path.isEmpty()) {
            QVERIFY(sheet.save(QString::fromLocal8Bit(path)));
        }
    }

    void anUnknownNameDrawsNothing() {
        QVERIFY(!hasSymbol("no.such.symbol"));
        QVERIFY(symbolPixmap("no.such.symbol", Qt::black, 16).isNull());
    }
};

QTEST_MAIN(SymbolsTest)
#include "SymbolsTest.moc"
