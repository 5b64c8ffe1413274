#pragma once

#include "cfg/CfgLine.h"
#include "report/Findings.h"
#include "text/CfgText.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Steps through the lines of a `.cfg`, and holds what the readers of its lines share.
struct CfgCursor {
    const CfgText& text;
    Findings& findings;
    char separator = ',';
    bool hasDecimalCommas = false; ///< a number was read that is written with one
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
