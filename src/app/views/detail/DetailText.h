#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Lookups of the detail panel's keys, in its own table context, as Qt strings for the widgets.
namespace lumabroom::DetailText {

QString text(std::string_view key);
QString formatted(std::string_view key, const std::vector<std::string>& values);
QString counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values = {});

} // namespace lumabroom::DetailText
