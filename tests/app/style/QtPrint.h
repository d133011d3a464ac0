#pragma once

#include <QString>

#include <ostream>

// Readable failures for Qt strings.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
