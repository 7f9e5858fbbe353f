#include "views/IssueRowView.h"

#include "presentation/IssuePresentation.h"
#include "views/Style.h"
#include "views/Symbols.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kelvane::views {

IssueRowView::IssueRowView(const DoctorIssue& issue, Severity severity, QWidget* parent)
    : QWidget(parent) {
    setObjectName(QStringLiteral("issueRowView"));
    const Badge badge = severityBadge(severity);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(makeLabel(qs(issue.title), TextStyle::subheadline,
                               palette().color(QPalette::Text), QStringLiteral("issueRowTitle"),
                               this, QFont::Medium));
    if (!issue.affectedTargets.empty()) {
        texts->addWidget(makeLabel(QString::fromStdString(shortTargetList(issue.affectedTargets)),
                                   TextStyle::caption, secondaryTextColor(),
                                   QStringLiteral("issueRowTargets"), this));
    }
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(8);
    layout->addWidget(makeSymbolLabel(badge.symbol, toneColor(badge.tone), 16,
                                      QStringLiteral("issueRowSymbol"), this),
                      0, Qt::AlignTop);
    layout->addLayout(texts, 1);
}

} // namespace kelvane::views
