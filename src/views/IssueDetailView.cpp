#include "views/IssueDetailView.h"

#include "diagnostics/EvidenceSource.h"
#include "model/TargetType.h"
#include "views/FixStepsDetailView.h"
#include "presentation/IssuePresentation.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace kelvane::views {

namespace {

QLabel* wrapped(QLabel* label) {
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QFrame* separator(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, separatorColor());
    line->setPalette(palette);
    return line;
}

QWidget* makeSeverityBadge(Severity severity, QWidget* parent) {
    const Badge badge = severityBadge(severity);
    const QColor color = toneColor(badge.tone);
    auto* box = new TintedBox(color, 5, 0.12, parent);
    box->setObjectName(QStringLiteral("severityBadge"));
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(7, 3, 9, 3);
    layout->setSpacing(5);
    layout->addWidget(makeSymbolLabel(badge.symbol, color, 14, QStringLiteral("severitySymbol")));
    layout->addWidget(makeLabel(qs(badge.text), TextStyle::caption, color,
                                QStringLiteral("severityText"), box, QFont::Bold));
    return box;
}

} // namespace

IssueDetailView::IssueDetailView(DoctorIssue issue, ApplyFix onApplyFix, ConfirmationPrompt& prompt,
                                 QWidget* parent, EvidenceFileActions files)
    : QWidget(parent), issue_(std::move(issue)), files_(std::move(files)) {
    setObjectName(QStringLiteral("issueDetailView"));
    const QColor text = palette().color(QPalette::Text);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 24);
    layout->setSpacing(8);

    auto* badgeRow = new QHBoxLayout;
    badgeRow->addWidget(makeSeverityBadge(issue_.severity, this));
    badgeRow->addStretch(1);
    layout->addLayout(badgeRow);
    layout->addWidget(wrapped(makeLabel(qs(issue_.title), TextStyle::title2, text,
                                        QStringLiteral("issueTitle"), this, QFont::DemiBold)));
    layout->addSpacing(6);

    layout->addWidget(makeLabel(QStringLiteral("Description"), TextStyle::headline, text,
                                QStringLiteral("descriptionHeading"), this));
    layout->addWidget(wrapped(makeLabel(qs(issue_.description), TextStyle::body, text,
                                        QStringLiteral("descriptionText"), this)));
    layout->addSpacing(6);
    layout->addWidget(makeLabel(QStringLiteral("Impact"), TextStyle::headline, text,
                                QStringLiteral("impactHeading"), this));
    layout->addWidget(wrapped(makeLabel(qs(issue_.impact), TextStyle::body, secondaryTextColor(),
                                        QStringLiteral("impactText"), this)));
    layout->addSpacing(6);
    layout->addWidget(separator(this));
    layout->addWidget(makeEvidenceSection());
    layout->addWidget(separator(this));
    layout->addWidget(makeTargetsSection());

    if (issue_.fix) {
        layout->addWidget(separator(this));
        layout->addSpacing(4);
        fixView_ = new FixStepsDetailView(issue_, *issue_.fix, std::move(onApplyFix), prompt, this);
        layout->addWidget(fixView_);
    }
    layout->addStretch(1);
}

QWidget* IssueDetailView::makeEvidenceSection() {
    auto* section = new QWidget(this);
    section->setObjectName(QStringLiteral("evidenceSection"));
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);

    evidenceToggle_ = new QToolButton(section);
    evidenceToggle_->setObjectName(QStringLiteral("evidenceToggle"));
    evidenceToggle_->setText(QStringLiteral("Evidence"));
    evidenceToggle_->setIcon(
        symbolIcon("doc.text.magnifyingglass", palette().color(QPalette::Text), 16));
    evidenceToggle_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    evidenceToggle_->setAutoRaise(true);
    evidenceToggle_->setFont(textFont(TextStyle::headline));
    evidenceToggle_->setCursor(Qt::PointingHandCursor);
    auto* chevron = makeSymbolLabel("chevron.right", secondaryTextColor(), 11,
                                    QStringLiteral("evidenceChevron"));
    auto* count = makeLabel(QStringLiteral("(%1)").arg(issue_.evidence.size()), TextStyle::callout,
                            tertiaryTextColor(), QStringLiteral("evidenceCount"), section);
    auto* header = new QHBoxLayout;
    header->setSpacing(2);
    header->addWidget(chevron);
    header->addWidget(evidenceToggle_);
    header->addWidget(count);
    header->addStretch(1);
    layout->addLayout(header);

    evidenceList_ = new QWidget(section);
    evidenceList_->setObjectName(QStringLiteral("evidenceList"));
    auto* list = new QVBoxLayout(evidenceList_);
    list->setContentsMargins(16, 0, 0, 4);
    list->setSpacing(8);
    int number = 0;
    for (const EvidenceItem& item : issue_.evidence) {
        auto* box = new TintedBox(secondaryTextColor(), 6, 0.07, evidenceList_);
        box->setObjectName(QStringLiteral("evidenceItem%1").arg(++number));
        auto* itemLayout = new QVBoxLayout(box);
        itemLayout->setContentsMargins(10, 7, 10, 7);
        itemLayout->setSpacing(3);
        auto* where = new QHBoxLayout;
        where->addWidget(wrapped(makeLabel(
                             qs(locationDescription(item.source)), TextStyle::caption,
                             secondaryTextColor(), QStringLiteral("evidenceLocation"), box,
                             QFont::Medium)),
                         1);
        const std::optional<std::string> file =
            files_.fileOf && files_.showInFolder ? files_.fileOf(item) : std::nullopt;
        if (file) {
            auto* show = new QToolButton(box);
            show->setObjectName(QStringLiteral("showInFolder"));
            show->setText(QStringLiteral("Show in folder"));
            show->setToolTip(qs(*file));
            show->setAccessibleName(QStringLiteral("Show %1 in folder").arg(qs(*file)));
            show->setAutoRaise(true);
            show->setFont(textFont(TextStyle::caption));
            show->setCursor(Qt::PointingHandCursor);
            QObject::connect(show, &QToolButton::clicked, this,
                             [this, path = *file] { files_.showInFolder(path); });
            where->addWidget(show, 0, Qt::AlignTop);
        }
        itemLayout->addLayout(where);
        auto* keyValue = new QHBoxLayout;
        keyValue->setSpacing(8);
        auto* key = makeLabel(qs(item.key), TextStyle::callout, palette().color(QPalette::Text),
                              QStringLiteral("evidenceKey"), box);
        key->setFont(monospaceFont(TextStyle::caption));
        auto* value =
            wrapped(makeLabel(qs(item.value), TextStyle::callout, palette().color(QPalette::Text),
                              QStringLiteral("evidenceValue"), box, QFont::DemiBold));
        keyValue->addWidget(key, 0, Qt::AlignTop);
        keyValue->addWidget(value, 1);
        itemLayout->addLayout(keyValue);
        if (const auto expected = expectedValueText(item)) {
            itemLayout->addWidget(
                wrapped(makeLabel(qs(*expected), TextStyle::caption, toneColor(Tone::success),
                                  QStringLiteral("evidenceExpected"), box)));
        }
        list->addWidget(box);
    }
    layout->addWidget(evidenceList_);
    evidenceList_->setVisible(false);

    QObject::connect(evidenceToggle_, &QToolButton::clicked, this,
                     [this] { setEvidenceExpanded(!evidenceExpanded_); });
    return section;
}

void IssueDetailView::setEvidenceExpanded(bool expanded) {
    evidenceExpanded_ = expanded;
    evidenceList_->setVisible(expanded);
    if (auto* chevron = findChild<QLabel*>(QStringLiteral("evidenceChevron"))) {
        chevron->setPixmap(symbolPixmap(expanded ? "chevron.down" : "chevron.right",
                                        secondaryTextColor(), 11, devicePixelRatioF()));
    }
}

QWidget* IssueDetailView::makeTargetsSection() {
    auto* section = new QWidget(this);
    section->setObjectName(QStringLiteral("targetsSection"));
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 4, 0, 4);
    layout->setSpacing(4);
    auto* header = new QHBoxLayout;
    header->addWidget(makeLabel(QStringLiteral("Affected Targets"), TextStyle::headline,
                                palette().color(QPalette::Text), QStringLiteral("targetsHeading"),
                                section));
    header->addStretch(1);
    header->addWidget(makeLabel(qs(affectedTargetsText(issue_.affectedTargets.size())),
                                TextStyle::callout, secondaryTextColor(),
                                QStringLiteral("targetsCount"), section));
    layout->addLayout(header);
    for (const TargetRef& target : issue_.affectedTargets) {
        QString line = QStringLiteral("\u2022 ") + qs(target.name) + QStringLiteral("  (") +
                       qs(rawValue(target.type)) + QStringLiteral(")");
        if (target.bundleID) {
            line += QStringLiteral("  ") + qs(*target.bundleID);
        }
        layout->addWidget(
            wrapped(makeLabel(line, TextStyle::callout, palette().color(QPalette::Text),
                              QStringLiteral("targetName"), section)));
    }
    return section;
}

bool IssueDetailView::isApplyingFix() const noexcept {
    return fixView_ != nullptr && fixView_->isApplyingFix();
}

bool IssueDetailView::showingConfirmation() const noexcept {
    return fixView_ != nullptr && fixView_->showingConfirmation();
}

} // namespace kelvane::views
