#include "output/Table.h"

#include <OrvComtradePicture/characters.h>

#include <algorithm>
#include <utility>

using OrvComtradePicture::cellCount;

Table::Table(std::vector<Column> columns) : _columns(std::move(columns)) {
    for (const Column& column : _columns) {
        _widths.push_back(cellCount(column.title));
    }
}

void Table::fit(const Row& row) {
    for (std::size_t i = 0; i < _columns.size(); ++i) {
        _widths[i] = std::max(_widths[i], cellCount(row[i]));
    }
}

std::string Table::titles() const {
    Row row;
    for (const Column& column : _columns) {
        row.push_back(column.title);
    }
    return line(row);
}

std::string Table::line(const Row& row) const {
    std::string line;
    for (std::size_t i = 0; i < _columns.size(); ++i) {
        const std::string padding(_widths[i] - cellCount(row[i]), ' ');
        line += "  ";
        line += _columns[i].align == Align::Right ? padding + row[i] : row[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

void writeTable(Table table, const ForEachRow& forEachRow, const std::function<void(std::string_view)>& write) {
    forEachRow([&table](const Table::Row& row) { table.fit(row); });
    write(table.titles());
    forEachRow([&table, &write](const Table::Row& row) { write(table.line(row)); });
}
