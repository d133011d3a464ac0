#include "StandIns.h"

#include "text/Localization.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QLabel>
#include <QUrl>

namespace lumabroom::StandIns {

QWidget* ruleIconTile(const CleanRule& rule, QWidget* parent) {
    auto* tile = new QLabel(QString::fromStdString(rule.name()).left(1), parent);
    tile->setFixedSize(44, 44);
    tile->setAlignment(Qt::AlignCenter);
    tile->setStyleSheet(QStringLiteral("background:%1;color:white;border-radius:10px;font-weight:bold;")
                            .arg(ruleColor(rule).name()));
    tile->setAccessibleName(QString::fromStdString(rule.name()));
    return tile;
}

QWidget* safetyBadge(SafetyLevel safety, QWidget* parent) {
    auto* badge = new QLabel(QString::fromStdString(displayName(safety)), parent);
    const QColor colour = safety == SafetyLevel::safe ? green() : safety == SafetyLevel::caution ? orange() : accent();
    badge->setStyleSheet(QStringLiteral("color:%1;border:1px solid %1;border-radius:6px;padding:0 4px;").arg(colour.name()));
    badge->setAccessibleName(badge->text());
    return badge;
}

QColor ruleColor(const CleanRule& rule) {
    return QColor::fromHsv(static_cast<int>(std::hash<std::string>{}(rule.id) % 360), 150, 200);
}
QColor accent() { return QColor(0x3b, 0x82, 0xf6); }
QColor rowHover() { return QColor(128, 128, 128, 30); }
QColor orange() { return QColor(0xf5, 0x9e, 0x0b); }
QColor green() { return QColor(0x22, 0xc5, 0x5e); }

void reveal(const std::filesystem::path& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path.parent_path().string())));
}

void copyToClipboard(const std::string& text) {
    QGuiApplication::clipboard()->clear();
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

} // namespace lumabroom::StandIns
