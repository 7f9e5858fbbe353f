#pragma once

#include "diagnostics/DoctorIssue.h"

#include <QWidget>

namespace kelvane::views {

// One issue on one line: its severity's symbol, its title and the targets it
// concerns, shortened when there are many. For lists of issues, where the
// full detail would be too much.
class IssueRowView : public QWidget {
public:
    IssueRowView(const DoctorIssue& issue, Severity severity, QWidget* parent = nullptr);
};

} // namespace kelvane::views
