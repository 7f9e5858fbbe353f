#include "app/KelvaneApp.h"

#include <QApplication>
#include <QMenuBar>
#include <QPalette>
#include <QStyleFactory>
#include <QVBoxLayout>

namespace kelvane::app {

namespace {
const QString kAsBuiltKey = QStringLiteral("reading/asBuilt");
} // namespace

KelvaneApp::KelvaneApp()
    : window_(std::make_unique<QWidget>()), content_(new ContentView(chooser_, prompt_)),
      asBuiltAction_(nullptr), settings_(QStringLiteral("Kelvane"), QStringLiteral("Kelvane")) {
    window_->setObjectName(QStringLiteral("mainWindow"));
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    auto* menus = new QMenuBar(window_.get());
    menus->setObjectName(QStringLiteral("menuBar"));
    QMenu* view = menus->addMenu(QStringLiteral("&View"));
    asBuiltAction_ = view->addAction(QStringLiteral("Read projects as Xcode builds them"));
    asBuiltAction_->setObjectName(QStringLiteral("readAsBuiltAction"));
    asBuiltAction_->setCheckable(true);
    asBuiltAction_->setToolTip(
        QStringLiteral("Resolve .xcconfig files, $(…) references and conditions in every "
                       "configuration, and compare only what ships together"));
    const bool asBuilt = settings_.value(kAsBuiltKey, false).toBool();
    asBuiltAction_->setChecked(asBuilt);
    content_->setReadAsBuilt(asBuilt);
    QObject::connect(asBuiltAction_, &QAction::toggled, window_.get(), [this](bool checked) {
        content_->setReadAsBuilt(checked);
        settings_.setValue(kAsBuiltKey, checked);
    });
    layout->setMenuBar(menus);
    layout->addWidget(content_);
    window_->resize(1100, 720);
}

void KelvaneApp::show() {
    window_->show();
}

void KelvaneApp::applyLook() {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(255, 255, 255));
    palette.setColor(QPalette::WindowText, QColor(28, 28, 30));
    palette.setColor(QPalette::Base, QColor(255, 255, 255));
    palette.setColor(QPalette::AlternateBase, QColor(246, 246, 248));
    palette.setColor(QPalette::Text, QColor(28, 28, 30));
    palette.setColor(QPalette::Button, QColor(246, 246, 248));
    palette.setColor(QPalette::ButtonText, QColor(28, 28, 30));
    palette.setColor(QPalette::Highlight, QColor(0, 122, 255));
    palette.setColor(QPalette::HighlightedText, QColor(255, 255, 255));
    palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 255));
    palette.setColor(QPalette::ToolTipText, QColor(28, 28, 30));
    QApplication::setPalette(palette);
}

} // namespace kelvane::app
