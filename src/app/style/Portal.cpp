#include "Portal.h"

#include <QDBusArgument>
#include <QDBusVariant>

namespace lumabroom::Portal {

std::optional<bool> prefersDark(const QVariant& colorScheme) {
    QVariant value = colorScheme;
    // A broken reply could nest without end; a handful of levels is all the portal ever sends.
    for (int depth = 0; depth < 4; ++depth) {
        if (value.userType() == qMetaTypeId<QDBusVariant>()) {
            value = value.value<QDBusVariant>().variant();
        } else if (value.userType() == qMetaTypeId<QDBusArgument>()) {
            // An inner variant that arrived undemarshalled.
            QDBusVariant inner;
            value.value<QDBusArgument>() >> inner;
            value = inner.variant();
        } else {
            break;
        }
    }
    if (value.userType() != QMetaType::UInt && value.userType() != QMetaType::Int) {
        return std::nullopt;
    }
    switch (value.toInt()) {
    case 1: return true;
    case 2: return false;
    default: return std::nullopt;
    }
}

bool isColorScheme(const QString& settingNamespace, const QString& key) {
    return settingNamespace == QLatin1String(kNamespace) && key == QLatin1String(kKey);
}

} // namespace lumabroom::Portal
