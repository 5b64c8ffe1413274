#pragma once

#include "report/Findings.h"
#include "text/CfgText.h"

#include <OrvComtradeIntake/Finding.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// A field of a line: what stands between two separators.
struct CfgField {
    std::string_view raw;     ///< with its blanks and quotation marks
    std::string_view text;    ///< without them
    std::uint64_t offset = 0; ///< in the file
};

/// Whether `line`, which begins with a field, has that field within quotation marks: it ends at the mark that closes
/// it, whatever separators come before.
bool beginsWithinQuotes(std::string_view line, char separator);

/// A line cut into its fields. The line, and the name of the file, must outlive it.
class CfgLine {
public:
    CfgLine(const std::string& file, const TextLine& line, char separator);
    CfgLine(CfgLine&&) = default;
    CfgLine(const CfgLine&) = delete; // fields view the texts
    CfgLine& operator=(CfgLine&&) = default;
    CfgLine& operator=(const CfgLine&) = delete;
    ~CfgLine() = default;

    /// Number of fields up to the last that is not empty: a spreadsheet pads lines with commas.
    std::size_t count() const { return _count; }

    /// Number of all fields, including the empty ones at the end.
    std::size_t written() const { return _fields.size(); }

    /// A field; an empty one at the end of the line for an index beyond the last.
    const CfgField& operator[](std::size_t index) const { return index < _fields.size() ? _fields[index] : _end; }

    bool hasQuotes() const { return _hasQuotes; } ///< around some field

    /// Where a field stands, by its name in the standard.
    Place place(std::size_t index, const char* name) const;

    /// The text of the line from the field at `index` on, `most` fields at most.
    std::string textFrom(std::size_t index, std::size_t most = std::string_view::npos) const;

    /// Replaces `count` fields, from the one at `index` on, by one field.
    void replace(std::size_t index, std::size_t count, std::string text);

private:
    void _add(std::string_view raw, std::uint64_t offset);
    void _findLast();

    const std::string* _file;
    std::size_t _number;
    char _separator;
    std::vector<CfgField> _fields;
    std::list<std::string> _texts; ///< of fields that differ from the line; a list, so that views of them stay valid
    CfgField _end;
    std::size_t _count = 0;
    bool _hasQuotes = false;
};

/// Steps through the lines of a `.cfg`, and holds what the readers of its lines share.
struct CfgCursor {
    const CfgText& text;
    Findings& findings;
    char separator = ',';
    bool hasDecimalCommas = false; ///< a number with a decimal comma was read
    std::size_t next = 0;

    std::size_t left() const { return text.lines.size() - next; }
    bool isAtEnd() const { return left() == 0; }

    /// The line that comes after `ahead` others, which must be there.
    CfgLine peek(std::size_t ahead = 0) const;

    /// The next line, which must be there.
    CfgLine take();

    /// Where the next line is, or should be.
    Place place(const char* field) const;
};

} // namespace OrvComtradeIntake
