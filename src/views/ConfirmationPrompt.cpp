#include "views/ConfirmationPrompt.h"

#include "views/Style.h"

#include <QMessageBox>
#include <QPushButton>

namespace kelvane::views {

ConfirmationPrompt::~ConfirmationPrompt() = default;

void MessageBoxPrompt::ask(QWidget* parent, const ApplyConfirmation& confirmation,
                           std::function<void(bool confirmed)> answer) {
    auto* box = new QMessageBox(QMessageBox::Question, qs(confirmation.dialogTitle),
                                qs(confirmation.dialogMessage), QMessageBox::NoButton, parent);
    box->setObjectName(QStringLiteral("confirmationDialog"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* confirm = box->addButton(qs(confirmation.confirmLabel), QMessageBox::AcceptRole);
    QPushButton* cancel = box->addButton(qs(confirmation.cancelLabel), QMessageBox::RejectRole);
    box->setDefaultButton(confirm);
    box->setEscapeButton(cancel);
    QObject::connect(box, &QMessageBox::finished, box,
                     [box, confirm, answer = std::move(answer)](int /*result*/) {
                         answer(box->clickedButton() == confirm);
                     });
    box->open();
}

} // namespace kelvane::views
