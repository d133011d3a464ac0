#include "DesktopServices.h"

#include <QDesktopServices>
#include <QProcess>

namespace lumabroom::DesktopServices {

void reveal(const std::filesystem::path& item) {
    // "open -R" returns as soon as Finder has the request.
    if (!QProcess::startDetached(QStringLiteral("/usr/bin/open"),
                                 {QStringLiteral("-R"), QString::fromStdString(item.string())})) {
        QDesktopServices::openUrl(parentFolder(item));
    }
}

} // namespace lumabroom::DesktopServices
