#pragma once

#include "CfgText.h"
#include "Configuration.h"
#include "Findings.h"
#include "numbers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// A field of a line: what stands between two commas.
struct CfgField {
    std::string_view raw;     ///< with its blanks
    std::string_view text;    ///< without them
    std::uint64_t offset = 0; ///< in the file
};

/// Severity, code and the texts of a finding; the rest comes from the place.
struct Told {
    Severity severity = Severity::Warning;
    const char* code = "";
    std::string expected;
    std::string done;
    bool isMended = false;
};

/// A line cut into its fields, which tells what is wrong with them.
class CfgLine {
public:
    CfgLine(const CfgText& text, const TextLine& line, Findings& findings);
    CfgLine(CfgLine&&) = default;
    CfgLine(const CfgLine&) = delete;
    CfgLine& operator=(const CfgLine&) = delete;
    CfgLine& operator=(CfgLine&&) = delete;
    ~CfgLine() = default;

    std::size_t count() const { return _fields.size(); }
    bool has(std::size_t index) const { return index < _fields.size(); }

    /// The field; beyond the last one an empty one at the end of the line.
    const CfgField& operator[](std::size_t index) const { return has(index) ? _fields[index] : _end; }

    /// The fields as the library counts them: none behind a comma at the end of the line.
    std::size_t libraryCount() const;

    /// A finding about the field, of which `found` is what stands there.
    void tell(std::size_t index, const char* name, const Told& told) const;
    void tell(std::size_t index, const char* name, const Told& told, std::string found) const;

    /// The field as a text: blanks around it are a finding.
    std::string textOf(std::size_t index, const char* name) const;

    /// The field as a number, or `otherwise` where there is none (a finding, with `done` for what is done about it).
    /// Where the library takes the field for the same number, or never reads it, nothing is mended.
    ReadNumber numberOf(std::size_t index, const char* name, double otherwise, const char* done,
                        bool isReadByLibrary = true) const;

    /// Makes one text of `count` fields from the field at `index` on.
    void join(std::size_t index, std::size_t count, const char* name);

    /// Makes one number of the field at `index` and the next, which are its halves.
    void joinDecimal(std::size_t index, const char* name);

    /// What stands in the line from the field at `index` on.
    std::string textFrom(std::size_t index) const;

private:
    std::string _rawOf(std::size_t index, std::size_t count) const;
    void _replace(std::size_t index, std::size_t count, std::string text);

    const std::string& _file;
    const TextLine& _line;
    Findings& _findings;
    std::vector<CfgField> _fields;
    std::vector<std::string> _joined;
    CfgField _end;
};

/// Steps through the lines of a `.cfg`.
struct CfgCursor {
    const CfgText& text;
    Findings& findings;
    std::size_t next = 0;

    bool isAtEnd() const { return next >= text.lines.size(); }
    std::size_t left() const { return text.lines.size() - next; }
    const TextLine& line() const { return text.lines[next]; }
    CfgLine take() { return {text, text.lines[next++], findings}; }

    /// A finding about a line that isn't there; its place is where it should be.
    void tellMissing(const char* field, const Told& told) const;
};

/// Number of fields of a line.
std::size_t fieldCount(const TextLine& line);

} // namespace OrvComtradeIntake
