#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

// Everything lumabroom-scan prints goes through here: JSON lines for scripts, aligned tables for people.
namespace lumabroom::Output {

using Json = nlohmann::ordered_json; // the order of the keys is part of the output

// One value on one line. Bytes of a name that are not UTF-8 become U+FFFD, so the line always parses.
std::string jsonText(const Json& value);
// The line, flushed, so that a reader sees each line as soon as it is known.
void writeJsonLine(std::ostream& out, const Json& value);

// A value that may be missing, as JSON null when it is.
template <typename T>
Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

enum class Align { left, right };

struct Column {
    std::string title; // the line of titles is printed when any column has one
    Align align = Align::left;
    std::size_t minWidth = 0; // in terminal cells
};

// One line of a table. A row with fewer cells than columns ends early: its last cell runs on
// unpadded and does not widen its column, which suits a path under a row's name.
struct Row {
    std::vector<std::string> cells; // as shown: names already quoted for the terminal
    std::string lead = "  ";        // what comes before the first cell, such as a mark
};

// Rows with their cells padded by terminal cells, so that wide characters line up, two blanks
// between columns and none at the end of a line; each line ends with a line break.
std::string table(const std::vector<Column>& columns, const std::vector<Row>& rows);

// The size column that every readable listing starts with.
inline Column sizeColumn(std::string title = {}) { return Column{std::move(title), Align::right, 10}; }

// A path under the home folder with "~" in place of the home, quoted for the terminal.
std::string displayPath(const std::filesystem::path& path, const std::string& home);

} // namespace lumabroom::Output
