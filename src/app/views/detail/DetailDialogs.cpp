#include "DetailDialogs.h"

#include "DetailText.h"

#include <QMessageBox>
#include <QPushButton>

namespace lumabroom::DetailDialogs {

QMessageBox* confirm(QWidget* parent, const QString& title, const QString& message, const QString& destructive,
                     std::function<void()> onConfirm, std::function<void()> onDismiss) {
    auto* box = new QMessageBox(parent);
    box->setObjectName(QStringLiteral("confirmation"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIcon(QMessageBox::Warning);
    box->setWindowTitle(title);
    box->setText(title);
    box->setAccessibleName(title);
    if (!message.isEmpty()) box->setInformativeText(message);
    QPushButton* destroy = box->addButton(destructive, QMessageBox::DestructiveRole);
    destroy->setAccessibleName(destructive);
    destroy->setAutoDefault(false);
    QPushButton* cancel = box->addButton(DetailText::text("取消"), QMessageBox::RejectRole);
    cancel->setAccessibleName(cancel->text());
    box->setDefaultButton(cancel);
    box->setEscapeButton(cancel);
    QObject::connect(box, &QMessageBox::finished, box,
                     [box, destroy, onConfirm = std::move(onConfirm), onDismiss = std::move(onDismiss)] {
                         if (box->clickedButton() == destroy) onConfirm();
                         else onDismiss();
                     });
    box->open();
    return box;
}

} // namespace lumabroom::DetailDialogs
