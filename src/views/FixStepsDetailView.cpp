#include "views/FixStepsDetailView.h"

#include "views/ConfirmationPrompt.h"
#include "presentation/IssuePresentation.h"
#include "views/Spinner.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <iostream>

namespace kelvane::views {

namespace {

QWidget* makeBadge(const Badge& badge, QWidget* parent) {
    const QColor color = badge.tone == Tone::muted ? secondaryTextColor() : toneColor(badge.tone);
    auto* box = new TintedBox(color, 5, 0.12, parent);
    box->setObjectName(QStringLiteral("safetyBadge"));
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(7, 3, 8, 3);
    layout->setSpacing(4);
    layout->addWidget(makeSymbolLabel(badge.symbol, color, 13, QStringLiteral("safetySymbol")));
    layout->addWidget(makeLabel(qs(badge.text), TextStyle::caption, color,
                                QStringLiteral("safetyText"), box, QFont::Medium));
    return box;
}

QLabel* wrapped(QLabel* label) {
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

FixStepsDetailView::FixStepsDetailView(DoctorIssue issue, DoctorFix fix, ApplyFix onApplyFix,
                                       ConfirmationPrompt& prompt, QWidget* parent)
    : QWidget(parent), issue_(std::move(issue)), fix_(std::move(fix)),
      onApplyFix_(std::move(onApplyFix)), prompt_(prompt) {
    setObjectName(QStringLiteral("fixStepsDetailView"));
    const QColor text = palette().color(QPalette::Text);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);

    auto* header = new QHBoxLayout;
    header->setSpacing(10);
    header->addWidget(wrapped(makeLabel(qs(fix_.summary), TextStyle::headline, text,
                                        QStringLiteral("fixSummary"), this)),
                      1);
    header->addWidget(makeBadge(safetyBadge(fix_.safety), this), 0, Qt::AlignTop);
    layout->addLayout(header);

    if (fix_.warningMessage) {
        auto* caution = new TintedBox(toneColor(Tone::warning), 8, 0.12, this);
        caution->setObjectName(QStringLiteral("fixWarning"));
        auto* cautionLayout = new QHBoxLayout(caution);
        cautionLayout->setContentsMargins(10, 8, 10, 8);
        cautionLayout->addWidget(makeSymbolLabel("exclamationmark.triangle.fill",
                                                 toneColor(Tone::warning), 16,
                                                 QStringLiteral("fixWarningSymbol")),
                                 0, Qt::AlignTop);
        cautionLayout->addWidget(wrapped(makeLabel(qs(*fix_.warningMessage), TextStyle::callout,
                                                   text, QStringLiteral("fixWarningText"))),
                                 1);
        layout->addWidget(caution);
    }

    layout->addSpacing(4);
    layout->addWidget(makeLabel(QStringLiteral("What will change"), TextStyle::headline, text,
                                QStringLiteral("whatWillChangeHeading"), this));
    for (std::size_t index = 0; index < fix_.steps.size(); ++index) {
        layout->addWidget(makeStep(index + 1, fix_.steps[index]));
    }

    layout->addSpacing(4);
    layout->addWidget(makeLabel(QStringLiteral("How this works"), TextStyle::headline, text,
                                QStringLiteral("howThisWorksHeading"), this));
    layout->addWidget(
        wrapped(makeLabel(qs(howThisWorksText(fix_.safety)), TextStyle::callout,
                          secondaryTextColor(), QStringLiteral("howThisWorksText"), this)));
    layout->addSpacing(6);
    layout->addWidget(makeControl());
}

QWidget* FixStepsDetailView::makeStep(std::size_t number, const FixStep& step) {
    auto* box = new QWidget(this);
    box->setObjectName(QStringLiteral("fixStep%1").arg(number));
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(12, 4, 0, 4);
    layout->setSpacing(4);
    layout->addWidget(makeLabel(qs(fixStepTitle(number, step.action)), TextStyle::caption,
                                secondaryTextColor(), QStringLiteral("stepTitle"), box,
                                QFont::Medium));
    layout->addWidget(
        wrapped(makeLabel(qs(step.description), TextStyle::body, palette().color(QPalette::Text),
                          QStringLiteral("stepDescription"), box)));
    const auto rows = fixActionRows(step.action);
    if (!rows.empty()) {
        auto* grid = new QGridLayout;
        grid->setHorizontalSpacing(10);
        grid->setVerticalSpacing(3);
        grid->setColumnStretch(1, 1);
        for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
            const LabelledRow& entry = rows[static_cast<std::size_t>(row)];
            grid->addWidget(makeLabel(qs(entry.label), TextStyle::caption, secondaryTextColor(),
                                      QStringLiteral("rowLabel"), box),
                            row, 0, Qt::AlignLeft | Qt::AlignTop);
            auto* value = wrapped(makeLabel(qs(entry.value), TextStyle::caption,
                                            palette().color(QPalette::Text),
                                            QStringLiteral("rowValue"), box));
            value->setFont(monospaceFont(TextStyle::caption));
            grid->addWidget(value, row, 1);
        }
        layout->addLayout(grid);
    }
    int line = 0;
    for (const std::string& instruction : manualInstructions(step.action)) {
        ++line;
        layout->addWidget(wrapped(makeLabel(QStringLiteral("%1. ").arg(line) + qs(instruction),
                                            TextStyle::callout, palette().color(QPalette::Text),
                                            QStringLiteral("instruction"), box)));
    }
    return box;
}

QWidget* FixStepsDetailView::makeControl() {
    auto* control = new QWidget(this);
    control->setObjectName(QStringLiteral("applyControl"));
    auto* layout = new QHBoxLayout(control);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    const auto confirmation = applyConfirmation(fix_.safety);
    if (!confirmation) {
        layout->addWidget(makeSymbolLabel("hand.raised", secondaryTextColor(), 16,
                                          QStringLiteral("manualSymbol")));
        layout->addWidget(makeLabel(qs(kManualStepsLabel), TextStyle::caption, secondaryTextColor(),
                                    QStringLiteral("manualStepsNote"), control));
        layout->addStretch(1);
        return control;
    }
    // "&" would otherwise mark a keyboard shortcut ("Preview & Apply").
    applyButton_ = new QPushButton(
        qs(confirmation->buttonLabel).replace(QLatin1Char('&'), QStringLiteral("&&")), control);
    applyButton_->setObjectName(QStringLiteral("applyButton"));
    applyButton_->setCursor(Qt::PointingHandCursor);
    applyButton_->setMinimumHeight(30);
    if (fix_.safety == FixSafety::safeAuto) {
        // The prominent style: the accent colour behind white text.
        applyButton_->setIcon(symbolIcon("checkmark.circle", Qt::white, 16));
        applyButton_->setStyleSheet(QStringLiteral(
            "QPushButton { background: #007aff; color: white; border: none; border-radius: 6px;"
            " padding: 5px 14px; font-weight: 600; }"
            "QPushButton:pressed { background: #0062cc; }"));
    } else {
        applyButton_->setStyleSheet(QStringLiteral(
            "QPushButton { background: white; color: #007aff; border: 1px solid #c7c7cc;"
            " border-radius: 6px; padding: 5px 14px; font-weight: 600; }"
            "QPushButton:pressed { background: #eef4ff; }"));
    }
    QObject::connect(applyButton_, &QPushButton::clicked, this, [this] { requestApply(); });

    applyingIndicator_ = new QWidget(control);
    applyingIndicator_->setObjectName(QStringLiteral("applyingIndicator"));
    auto* applyingLayout = new QHBoxLayout(applyingIndicator_);
    applyingLayout->setContentsMargins(4, 0, 0, 0);
    applyingLayout->setSpacing(8);
    applyingLayout->addWidget(new Spinner(16, applyingIndicator_));
    applyingLayout->addWidget(makeLabel(qs(kApplyingLabel), TextStyle::callout,
                                        secondaryTextColor(), QStringLiteral("applyingLabel"),
                                        applyingIndicator_));
    applyingIndicator_->hide();

    layout->addWidget(applyButton_);
    layout->addWidget(applyingIndicator_);
    layout->addStretch(1);
    return control;
}

void FixStepsDetailView::requestApply() {
    const auto confirmation = applyConfirmation(fix_.safety);
    if (!confirmation || isApplyingFix_ || showingConfirmation_) {
        return;
    }
    showingConfirmation_ = true;
    // The prompt answers later; the view may be gone by then.
    prompt_.ask(this, *confirmation, [view = QPointer<FixStepsDetailView>(this)](bool confirmed) {
        if (view == nullptr) {
            return;
        }
        view->showingConfirmation_ = false;
        if (confirmed) {
            view->apply();
        }
    });
}

void FixStepsDetailView::apply() {
    setApplying(true);
    if (!onApplyFix_) {
        setApplying(false);
        return;
    }
    onApplyFix_(issue_,
                [view = QPointer<FixStepsDetailView>(this)](std::optional<std::string> failure) {
                    if (failure) {
                        std::cout << kFixFailedPrefix << *failure << std::endl;
                    }
                    if (view != nullptr) {
                        view->setApplying(false);
                    }
                });
}

void FixStepsDetailView::setApplying(bool applying) {
    isApplyingFix_ = applying;
    if (applyButton_ != nullptr) {
        applyButton_->setVisible(!applying);
        applyingIndicator_->setVisible(applying);
    }
}

} // namespace kelvane::views
