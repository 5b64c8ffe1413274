#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Text in columns, two blanks apart, under a line of titles. No row is kept.
class Table {
public:
    enum class Align { Left, Right };

    struct Column {
        std::string title;
        Align align;
    };

    using Row = std::vector<std::string>; ///< printable texts, one per column

    explicit Table(std::vector<Column> columns);

    /// Measures how much room a row needs. Call it for all rows first, then `line` for all of them.
    void fit(const Row& row);

    std::string titles() const;
    std::string line(const Row& row) const;

private:
    std::vector<Column> _columns;
    std::vector<std::size_t> _widths;
};

/// Calls its argument for every row, in order.
using ForEachRow = std::function<void(const std::function<void(const Table::Row&)>&)>;

/// Writes the titles and the rows, which it goes through twice.
void writeTable(Table table, const ForEachRow& forEachRow, const std::function<void(std::string_view)>& write);
