#pragma once

#include "cfg/CfgLine.h"

#include <cstddef>
#include <vector>

namespace OrvComtradeIntake {

/// Joins `count` fields, from the one at `index` on, into one text that has commas. That is a finding.
void joinText(CfgCursor& cursor, CfgLine& line, std::size_t index, std::size_t count, const char* name);

/// Joins the parts of name, phase and component (fields 1 to 3 of a channel line), which commas in them have cut into
/// three and `surplus` fields. The field that looks like a phase shows which belong together.
void joinTexts(CfgCursor& cursor, CfgLine& line, std::size_t surplus);

/// How the numbers of an analog line can be understood if decimal commas cut some of them in two.
struct DecimalCommas {
    std::size_t first = 0;       ///< field in which the number `a` begins
    std::vector<bool> areJoined; ///< for each number whether it has two fields; empty: there is no way
    bool isOneOfSeveral = false; ///< another way gives other numbers
};

/// Looks for the ways to read the fields after the unit, which is not a number, and before the field `end` as `numbers`
/// numbers.
DecimalCommas findDecimalCommas(const CfgLine& line, std::size_t end, std::size_t numbers);

/// Whether the numbers from `a` on can be those of a channel in use: factor and ratio are not 0, and min is not above
/// max.
bool isSensibleChannel(const std::vector<double>& numbers);

/// Joins the two fields of each number.
void joinDecimals(CfgCursor& cursor, CfgLine& line, const DecimalCommas& commas);

/// Joins the field at `index` and the next, which are the halves of a number.
void joinDecimal(CfgCursor& cursor, CfgLine& line, std::size_t index, const char* name);

/// Whether the field at `index` and the next can be a number with a decimal comma: digits on both sides of it.
bool areHalves(const CfgLine& line, std::size_t index);

} // namespace OrvComtradeIntake
