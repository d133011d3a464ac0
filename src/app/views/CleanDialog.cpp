#include "CleanDialog.h"

#include "ViewParts.h"
#include "model/AppModel.h"
#include "model/AppText.h"
#include "text/Formatting.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumabroom {

using ViewParts::text;

CleanDialog::CleanDialog(AppModel& model, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("cleanDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setPalette(parent->window()->palette());
    setWindowModality(Qt::WindowModal);
    const QString title = ViewParts::qs(AppText::counted("清理选中的 %n 项,共 %1?", model.selectedEntryCount(),
                                                         {Formatting::bytes(model.selectedBytes())}));
    setWindowTitle(title);
    auto* column = new QVBoxLayout(this);
    auto* head = new QLabel(title, this);
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    head->setWordWrap(true);
    column->addWidget(head);
    auto* message = new QLabel(text("标记为「安全」的缓存删除后会由对应工具自动重建。"), this);
    message->setWordWrap(true);
    column->addWidget(message);

    auto* buttons = new QDialogButtonBox(this);
    auto* trash = buttons->addButton(text("移到废纸篓"), QDialogButtonBox::AcceptRole);
    trash->setObjectName(QStringLiteral("trash"));
    auto* remove = buttons->addButton(text("直接删除(立即释放空间)"), QDialogButtonBox::DestructiveRole);
    remove->setObjectName(QStringLiteral("delete"));
    auto* cancel = buttons->addButton(text("取消"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancel"));
    // A destructive choice is never the one Return picks.
    for (QPushButton* b : {trash, remove, cancel}) b->setAutoDefault(false);
    trash->setDefault(true);
    for (const auto& [button, method] :
         {std::pair{trash, CleanMethod::trash}, std::pair{remove, CleanMethod::delete_}}) {
        connect(button, &QPushButton::clicked, this, [this, m = &model, how = method] {
            accept();
            m->clean(how);
        });
    }
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    column->addWidget(buttons);
}

} // namespace lumabroom
