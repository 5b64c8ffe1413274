#pragma once

#include <string>
#include <vector>

/// Text in columns, two blanks apart, under a line of titles.
class Table {
public:
    enum class Align { Left, Right };

    struct Column {
        std::string title;
        Align align;
    };

    explicit Table(std::vector<Column> columns);

    /// Adds a row of printable texts, one per column.
    void addRow(std::vector<std::string> cells);

    std::string text() const;

private:
    std::vector<Column> _columns;
    std::vector<std::vector<std::string>> _rows; ///< the titles first
};
