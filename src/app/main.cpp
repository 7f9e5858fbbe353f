#include "app/KelvaneApp.h"
#include "app/Screenshot.h"

#include <QApplication>
#include <QCommandLineParser>

#include <iostream>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kelvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Kelvane"));
    kelvane::app::KelvaneApp::applyLook();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Finds configuration problems in an Xcode project."));
    parser.addHelpOption();
    parser.addPositionalArgument(
        QStringLiteral("path"),
        QStringLiteral("An .xcodeproj, an .xcworkspace, or a folder holding one; scanned at once."),
        QStringLiteral("[path]"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Save a PNG of the window once the scan has ended, then quit."),
        QStringLiteral("file"));
    const QCommandLineOption select(QStringLiteral("select"),
                                    QStringLiteral("With --screenshot: select this check first."),
                                    QStringLiteral("check-id"));
    const QCommandLineOption after(
        QStringLiteral("screenshot-after-ms"),
        QStringLiteral("With --screenshot: take it this long after the start, scan or not."),
        QStringLiteral("milliseconds"));
    const QCommandLineOption evidence(
        QStringLiteral("expand-evidence"),
        QStringLiteral("With --screenshot: unfold the selected issue's evidence."));
    const QCommandLineOption fix(QStringLiteral("show-fix"),
                                 QStringLiteral("With --screenshot: scroll to the issue's fix."));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("The window's size, e.g. 1100x720."),
                                  QStringLiteral("WxH"));
    const QCommandLineOption menu(QStringLiteral("open-menu"),
                                  QStringLiteral("With --screenshot: open this menu, e.g. File."),
                                  QStringLiteral("title"));
    const QCommandLineOption drag(
        QStringLiteral("drag"),
        QStringLiteral("With --screenshot: hold a drag of this path over the window."),
        QStringLiteral("path"));
    const QCommandLineOption exportDialog(
        QStringLiteral("show-export"),
        QStringLiteral("With --screenshot: open File > Export Report once the scan has ended."));
    parser.addOptions({screenshot, select, after, evidence, fix, size, menu, drag, exportDialog});
    parser.process(application);

    kelvane::app::KelvaneApp app;
    if (parser.isSet(size)) {
        const QStringList parts = parser.value(size).split(QLatin1Char('x'));
        if (parts.size() == 2) {
            app.window().resize(parts[0].toInt(), parts[1].toInt());
        }
    }
    app.show();
    const QStringList paths = parser.positionalArguments();
    if (paths.size() > 1) {
        std::cerr << "kelvane-app: give one project path at most\n";
        return 2;
    }
    if (!paths.isEmpty()) {
        app.content().open(paths.constFirst().toStdString());
    }
    if (parser.isSet(screenshot)) {
        kelvane::app::ScreenshotRequest request{.file = parser.value(screenshot)};
        if (parser.isSet(select)) {
            request.selectCheckID = parser.value(select).toStdString();
        }
        if (parser.isSet(after)) {
            request.afterMilliseconds = parser.value(after).toInt();
        }
        request.expandEvidence = parser.isSet(evidence);
        request.showFix = parser.isSet(fix);
        if (parser.isSet(menu)) {
            request.openMenu = parser.value(menu);
        }
        if (parser.isSet(drag)) {
            request.dragPath = parser.value(drag);
        }
        request.showExport = parser.isSet(exportDialog);
        kelvane::app::armScreenshot(app, request);
    }
    return QApplication::exec();
}
