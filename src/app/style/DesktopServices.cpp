#include "DesktopServices.h"

#include <QClipboard>
#include <QGuiApplication>

namespace lumabroom::DesktopServices {

QUrl parentFolder(const std::filesystem::path& item) {
    const std::filesystem::path parent = item.has_relative_path() ? item.parent_path() : item;
    return QUrl::fromLocalFile(QString::fromStdString(parent.string()));
}

void copyToClipboard(const QString& text) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setText(text, QClipboard::Clipboard);
    if (clipboard->supportsSelection()) {
        clipboard->setText(text, QClipboard::Selection);
    }
}

} // namespace lumabroom::DesktopServices
