#include "views/ScanningResultsView.h"

#include "views/CheckProgressRow.h"
#include "views/CompactStatusView.h"
#include "views/IssueDetailView.h"
#include "presentation/ScanPresentation.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvane::views {

namespace {

constexpr int kSidebarWidth = 290;

QPushButton* makeToolbarButton(const QString& text, const QString& objectName,
                               std::string_view symbol, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setCursor(Qt::PointingHandCursor);
    if (!symbol.empty()) {
        button->setIcon(symbolIcon(symbol, QColor(60, 60, 67), 14));
    }
    button->setStyleSheet(QStringLiteral(
        "QPushButton { background: white; border: 1px solid #d1d1d6; border-radius: 6px;"
        " padding: 4px 12px; color: #1c1c1e; }"
        "QPushButton:hover { background: #f2f2f7; }"
        "QPushButton:pressed { background: #e5e5ea; }"));
    return button;
}

// The detail area's two placeholders: a symbol over one line of text.
QWidget* makePlaceholder(std::string_view symbol, const QColor& symbolColor, const QString& text,
                         const QColor& textColor, const QString& objectName) {
    auto* placeholder = new QWidget;
    placeholder->setObjectName(objectName);
    auto* layout = new QVBoxLayout(placeholder);
    layout->setSpacing(14);
    layout->addStretch(1);
    layout->addWidget(makeSymbolLabel(symbol, symbolColor, 44, QStringLiteral("placeholderSymbol")),
                      0, Qt::AlignHCenter);
    auto* label = makeLabel(text, TextStyle::title, textColor, QStringLiteral("placeholderText"));
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    layout->addWidget(label);
    layout->addStretch(1);
    return placeholder;
}

} // namespace

ScanningResultsView::ScanningResultsView(Inputs inputs, ConfirmationPrompt& prompt, QWidget* parent)
    : QWidget(parent), inputs_(std::move(inputs)), prompt_(prompt) {
    setObjectName(QStringLiteral("scanningResultsView"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());

    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("splitView"));
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(1);
    splitter->setStyleSheet(QStringLiteral("QSplitter::handle { background: #dcdce0; }"));

    list_ = new QListWidget(splitter);
    list_->setObjectName(QStringLiteral("checkList"));
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setMinimumWidth(240);
    list_->setAccessibleName(QStringLiteral("Checks"));
    list_->installEventFilter(this);
    list_->setStyleSheet(
        QStringLiteral("QListWidget { background: #f4f4f6; padding: 6px; outline: 0; }"
                       "QListWidget::item { border-radius: 7px; margin: 1px 0; }"
                       "QListWidget::item:selected { background: #dde8fb; }"
                       "QListWidget::item:hover:!selected { background: #ececf0; }"));
    for (const CheckProgress& check : inputs_.checkProgress) {
        auto* item = new QListWidgetItem(list_);
        auto* row = new CheckProgressRow(check);
        item->setSizeHint(row->sizeHint() + QSize(0, 4));
        list_->setItemWidget(item, row);
        rows_.push_back(row);
    }
    // Selection, not the current row: the list makes its first row current
    // when it gains focus, and that must not count as choosing it.
    QObject::connect(list_, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem*> selected = list_->selectedItems();
        const int row = selected.isEmpty() ? -1 : list_->row(selected.constFirst());
        if (row >= 0 && row < static_cast<int>(rows_.size())) {
            selectedCheckID_ = rows_[static_cast<std::size_t>(row)]->check().id;
        } else {
            selectedCheckID_.reset();
        }
        showDetail();
    });

    auto* detailArea = new QWidget(splitter);
    detailArea->setObjectName(QStringLiteral("detailArea"));
    detailArea->setAutoFillBackground(true);
    QPalette palette = detailArea->palette();
    palette.setColor(QPalette::Window, Qt::white);
    detailArea->setPalette(palette);
    detailLayout_ = new QVBoxLayout(detailArea);
    detailLayout_->setContentsMargins(0, 0, 0, 0);

    splitter->addWidget(list_);
    splitter->addWidget(detailArea);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({kSidebarWidth, 700});
    layout->addWidget(splitter, 1);

    describeRows();
    refreshHeader();
    showDetail();
}

void ScanningResultsView::describeRows() {
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        list_->item(static_cast<int>(index))
            ->setData(Qt::AccessibleTextRole, rows_[index]->accessibleName());
    }
}

void ScanningResultsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    list_->setFocus(Qt::OtherFocusReason);
}

bool ScanningResultsView::eventFilter(QObject* watched, QEvent* event) {
    if (watched != list_ || event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<QKeyEvent*>(event)->key();
    if ((key == Qt::Key_Down || key == Qt::Key_Up) && list_->selectedItems().isEmpty() &&
        list_->count() > 0) {
        // Focus made a row current without choosing it; the first arrow
        // chooses the end it points from rather than skipping a row.
        list_->setCurrentRow(key == Qt::Key_Down ? 0 : list_->count() - 1);
        return true;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        auto* apply = detail_ != nullptr
                          ? detail_->findChild<QPushButton*>(QStringLiteral("applyButton"))
                          : nullptr;
        if (apply != nullptr && apply->isVisible() && apply->isEnabled()) {
            apply->click();
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

QWidget* ScanningResultsView::makeHeader() {
    auto* header = new QWidget(this);
    header->setObjectName(QStringLiteral("toolbar"));
    header->setAutoFillBackground(true);
    QPalette palette = header->palette();
    palette.setColor(QPalette::Window, QColor(250, 250, 252));
    header->setPalette(palette);
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(16, 10, 16, 10);
    layout->setSpacing(8);

    if (inputs_.isScanning) {
        auto* cancel =
            makeToolbarButton(QStringLiteral("Cancel"), QStringLiteral("cancelButton"), {}, header);
        QObject::connect(cancel, &QPushButton::clicked, this, [this] {
            if (inputs_.onCancel) {
                inputs_.onCancel();
            }
        });
        layout->addWidget(cancel, 0, Qt::AlignVCenter);
    } else {
        auto* back = makeToolbarButton(QStringLiteral("Back"), QStringLiteral("backButton"),
                                       "chevron.left", header);
        back->setToolTip(QStringLiteral("Return to project picker"));
        QObject::connect(back, &QPushButton::clicked, this, [this] {
            if (inputs_.onCancel) {
                inputs_.onCancel();
            }
        });
        layout->addWidget(back, 0, Qt::AlignVCenter);
    }
    layout->addSpacing(8);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    title_ = makeLabel(QString(), TextStyle::headline, palette.color(QPalette::Text),
                       QStringLiteral("scanTitle"), header);
    title_->setFont(textFont(TextStyle::title2, QFont::DemiBold));
    subtitle_ = makeLabel(QString(), TextStyle::subheadline, secondaryTextColor(),
                          QStringLiteral("scanSubtitle"), header);
    texts->addWidget(title_);
    texts->addWidget(subtitle_);
    layout->addLayout(texts);
    layout->addStretch(1);

    if (!inputs_.readingNote.empty()) {
        auto* note = makeLabel(qs(inputs_.readingNote), TextStyle::caption, secondaryTextColor(),
                               QStringLiteral("readingNote"), header);
        note->setAccessibleName(qs(inputs_.readingNote));
        layout->addWidget(note, 0, Qt::AlignVCenter);
        layout->addSpacing(12);
    }
    auto* path = makeLabel(qs(inputs_.projectPath), TextStyle::caption, tertiaryTextColor(),
                           QStringLiteral("projectPath"), header);
    path->setToolTip(qs(inputs_.projectPath));
    layout->addWidget(path, 0, Qt::AlignVCenter);

    if (!inputs_.isScanning) {
        auto* rescan = makeToolbarButton(QStringLiteral("Re-run Scan"),
                                         QStringLiteral("rescanButton"), "arrow.clockwise", header);
        rescan->setToolTip(QStringLiteral("Scan this project again"));
        rescan->setEnabled(static_cast<bool>(inputs_.onRescan));
        QObject::connect(rescan, &QPushButton::clicked, this, [this] {
            if (inputs_.onRescan) {
                inputs_.onRescan();
            }
        });
        layout->addSpacing(8);
        layout->addWidget(rescan, 0, Qt::AlignVCenter);
    }

    auto* frame = new QWidget(this);
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    frameLayout->setSpacing(0);
    frameLayout->addWidget(header);
    auto* line = new QWidget(frame);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    QPalette linePalette = line->palette();
    linePalette.setColor(QPalette::Window, separatorColor());
    line->setPalette(linePalette);
    frameLayout->addWidget(line);
    return frame;
}

void ScanningResultsView::refreshHeader() {
    title_->setText(qs(scanTitle(inputs_.isScanning)));
    subtitle_->setText(
        QString::fromStdString(scanSubtitle(inputs_.checkProgress, inputs_.isScanning)));
}

void ScanningResultsView::setCheckProgress(const std::vector<CheckProgress>& rows) {
    inputs_.checkProgress = rows;
    const std::size_t shared = std::min(rows.size(), rows_.size());
    for (std::size_t index = 0; index < shared; ++index) {
        rows_[index]->setCheck(rows[index]);
    }
    describeRows();
    refreshHeader();
    showDetail();
}

void ScanningResultsView::selectCheck(const std::string& checkID) {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const CheckProgressRow* row) {
        return row->check().id == checkID;
    });
    if (found == rows_.end()) {
        list_->clearSelection();
        return;
    }
    list_->setCurrentRow(static_cast<int>(found - rows_.begin()));
}

void ScanningResultsView::showDetail() {
    if (inputs_.isScanning && detail_ != nullptr &&
        detail_->objectName() == QLatin1String("runningPlaceholder")) {
        return; // nothing in it changes while the scan runs
    }
    QWidget* next = nullptr;
    const auto row = std::find_if(inputs_.checkProgress.begin(), inputs_.checkProgress.end(),
                                  [&](const CheckProgress& each) {
                                      return selectedCheckID_ && each.id == *selectedCheckID_;
                                  });
    if (inputs_.isScanning) {
        next = makePlaceholder("hourglass", secondaryTextColor(),
                               QStringLiteral("Running diagnostics..."), secondaryTextColor(),
                               QStringLiteral("runningPlaceholder"));
    } else if (row == inputs_.checkProgress.end()) {
        next = makePlaceholder("arrow.left", secondaryTextColor(),
                               QStringLiteral("Select a check to view details"),
                               tertiaryTextColor(), QStringLiteral("selectPlaceholder"));
    } else if (!row->issue) {
        next = CompactStatusView::withoutResult(qs(row->title));
    } else if (row->issue->severity == Severity::success) {
        next = new CompactStatusView(qs(row->title));
    } else {
        auto* scroll = new QScrollArea;
        scroll->setObjectName(QStringLiteral("issueScrollArea"));
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        // A thin overlay-style bar instead of the style's arrows and trough.
        scroll->verticalScrollBar()->setStyleSheet(QStringLiteral(
            "QScrollBar:vertical { width: 10px; background: transparent; margin: 2px; }"
            "QScrollBar::handle:vertical { background: #c7c7cc; border-radius: 3px;"
            " min-height: 30px; }"
            "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
            "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }"));
        auto* issueView = new IssueDetailView(*row->issue, inputs_.onApplyFix, prompt_, nullptr,
                                              inputs_.evidenceFiles);
        QPalette palette = issueView->palette();
        palette.setColor(QPalette::Window, Qt::white);
        scroll->viewport()->setPalette(palette);
        scroll->setWidget(issueView);
        next = scroll;
    }
    if (detail_ != nullptr) {
        detailLayout_->removeWidget(detail_);
        // Later: the old detail may be the one whose button brought us here.
        detail_->hide();
        detail_->deleteLater();
    }
    detail_ = next;
    detailLayout_->addWidget(detail_);
    // At once, not on the next turn of the event loop as a layout would.
    detail_->show();
}

} // namespace kelvane::views
