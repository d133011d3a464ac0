#include "text/Formatting.h"

#include <QLocale>

namespace lumabroom::Formatting {

std::string bytes(std::int64_t count) {
    // Precision grows with the unit, as file managers show it: 512 bytes, 35 kB, 12.3 MB, 1.16 GB.
    const std::int64_t magnitude = count < 0 ? -count : count;
    int precision = magnitude < 1'000'000 ? 0 : magnitude < 1'000'000'000 ? 1 : 2;
    QLocale locale(QLocale::English);
    return locale.formattedDataSize(count, precision, QLocale::DataSizeSIFormat).toStdString();
}

} // namespace lumabroom::Formatting
