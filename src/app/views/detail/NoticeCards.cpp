#include "RuleDetailPanel.h"

#include "CardParts.h"
#include "DetailLook.h"
#include "DetailValues.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumabroom {

using namespace CardParts;

QWidget* RuleDetailPanel::orbStackLoadingBanner() {
    QWidget* card = DetailRows::card(nullptr, DetailLook::orange());
    columnOf(card)->addWidget(
        hbox(card,
             {DetailRows::spinner(text("正在读取 Docker 占用分解…"), nullptr),
              vbox(nullptr, {label(text("正在读取 Docker 占用分解…"), nullptr),
                             label(text("docker system df 需要几秒,镜像/容器/数据卷越多越慢"), nullptr, kSecondary)})},
             true));
    return card;
}

QWidget* RuleDetailPanel::orbStackOffBanner() {
    QWidget* card = DetailRows::card(nullptr, DetailLook::orange());
    QLabel* detail =
        label(text("虚拟磁盘是 Linux 文件系统镜像,macOS 无法直接解析内部构成;启动后会自动细分并可执行清理"), nullptr,
              kSecondary);
    detail->setWordWrap(true);
    QWidget* end;
    if (model_.isStartingOrbStack()) {
        end = hbox(nullptr, {DetailRows::spinner(text("启动中…"), nullptr), label(text("启动中…"), nullptr)});
    } else {
        QPushButton* start = button(text("启动 OrbStack"), nullptr);
        connect(start, &QPushButton::clicked, this, [this] { model_.startOrbStack(); });
        end = start;
    }
    auto* row =
        hbox(card, {label(QStringLiteral("☾"), nullptr, QStringLiteral("color:%1;").arg(DetailLook::orange().name())),
                    vbox(nullptr, {label(text("OrbStack 未在运行"), nullptr), detail})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    end->setParent(row);
    row->layout()->addWidget(end);
    columnOf(card)->addWidget(row);
    return card;
}

QWidget* RuleDetailPanel::reportOnlyBox(const RuleScanResult& result) {
    QWidget* card = DetailRows::card(nullptr);
    QLabel* note = label(q(result.rule.note()), nullptr, kSecondary);
    note->setWordWrap(true);
    auto* row = hbox(
        card,
        {label(QStringLiteral("ⓘ"), nullptr, QStringLiteral("color:%1;").arg(DetailLook::accent().name())),
         vbox(nullptr, {label(text("此项只统计大小,不直接删除"), nullptr, QStringLiteral("font-weight:500;")), note})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    if (const std::optional<std::string> command = DetailValues::embeddedCommand(result.rule.note())) {
        QPushButton* copy = button(text("复制命令"), row);
        copy->setIcon(DetailRows::icon(Icon::copy));
        connect(copy, &QPushButton::clicked, this, [command = *command] { DetailLook::copyToClipboard(command); });
        row->layout()->addWidget(copy);
    }
    columnOf(card)->addWidget(row);
    return card;
}

QWidget* RuleDetailPanel::maintenanceCard(const MaintenanceCommand& command) {
    QWidget* card = DetailRows::card(nullptr);
    QLabel* line = label(q(command.command), nullptr);
    line->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QLabel* detail = label(q(command.detail), nullptr, kSecondary);
    detail->setWordWrap(true);
    auto* row = hbox(card, {label(QStringLiteral(">_"), nullptr), vbox(nullptr, {line, detail})});
    static_cast<QHBoxLayout*>(row->layout())->setStretch(1, 1);
    if (model_.runningCommandRuleID() == command.id) {
        row->layout()->addWidget(DetailRows::spinner(text("执行中…"), row));
        row->layout()->addWidget(label(text("执行中…"), row));
    } else {
        QPushButton* run = button(text("运行"), row);
        run->setEnabled(!model_.isBusy() && !model_.runningCommandRuleID());
        connect(run, &QPushButton::clicked, this, [this, command] { model_.runMaintenance(command); });
        row->layout()->addWidget(run);
    }
    columnOf(card)->addWidget(row);
    return card;
}

} // namespace lumabroom
