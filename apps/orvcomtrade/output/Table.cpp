#include "output/Table.h"

#include "output/printable.h"

#include <algorithm>
#include <cstddef>
#include <utility>

Table::Table(std::vector<Column> columns) : _columns(std::move(columns)) {
    std::vector<std::string> titles;
    for (const Column& column : _columns) {
        titles.push_back(column.title);
    }
    addRow(std::move(titles));
}

void Table::addRow(std::vector<std::string> cells) {
    cells.resize(_columns.size());
    _rows.push_back(std::move(cells));
}

std::string Table::text() const {
    std::vector<std::size_t> widths(_columns.size());
    for (const auto& row : _rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], characterCount(row[i]));
        }
    }
    std::string result;
    for (const auto& row : _rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - characterCount(row[i]), ' ');
            line += "  ";
            line += _columns[i].align == Align::Right ? padding + row[i] : row[i] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        result += line + "\n";
    }
    return result;
}
