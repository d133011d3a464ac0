#include "Output.h"

#include "text/Formatting.h"
#include "text/Strings.h"

#include <algorithm>
#include <ostream>

namespace lumabroom::Output {

namespace {
std::string padded(const std::string& text, std::size_t width, Align align) {
    const std::size_t cells = Strings::displayWidth(text);
    if (cells >= width) return text;
    const std::string blanks(width - cells, ' ');
    return align == Align::right ? blanks + text : text + blanks;
}

// The cells of a row that take part in the alignment: all of a full row, all but the last of a short one.
std::size_t alignedCells(const Row& row, std::size_t columns) {
    const std::size_t cells = std::min(row.cells.size(), columns);
    return cells < columns && cells > 0 ? cells - 1 : cells;
}

std::string line(const std::vector<Column>& columns, const std::vector<std::size_t>& widths, const Row& row) {
    std::string out = row.lead;
    const std::size_t aligned = alignedCells(row, columns.size());
    for (std::size_t i = 0; i < std::min(row.cells.size(), columns.size()); ++i) {
        if (i > 0) out += "  ";
        // Nothing follows the last cell, so it gets no blanks after it.
        const bool trailing = i + 1 == row.cells.size() || i + 1 == columns.size();
        if (i >= aligned || (trailing && columns[i].align == Align::left)) out += row.cells[i];
        else out += padded(row.cells[i], widths[i], columns[i].align);
    }
    return out + "\n";
}
} // namespace

std::string jsonText(const Json& value) { return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace); }

void writeJsonLine(std::ostream& out, const Json& value) { out << jsonText(value) << "\n" << std::flush; }

std::string table(const std::vector<Column>& columns, const std::vector<Row>& rows) {
    std::vector<std::size_t> widths;
    Row titles;
    for (const Column& column : columns) {
        widths.push_back(std::max(column.minWidth, Strings::displayWidth(column.title)));
        titles.cells.push_back(column.title);
    }
    for (const Row& row : rows)
        for (std::size_t i = 0; i < alignedCells(row, columns.size()); ++i)
            widths[i] = std::max(widths[i], Strings::displayWidth(row.cells[i]));

    std::string out;
    if (std::ranges::any_of(columns, [](const Column& c) { return !c.title.empty(); }))
        out += line(columns, widths, titles);
    for (const Row& row : rows) out += line(columns, widths, row);
    return out;
}

std::string displayPath(const std::filesystem::path& path, const std::string& home) {
    return Strings::quotedForTerminal(Formatting::homeShortened(path.string(), home));
}

} // namespace lumabroom::Output
