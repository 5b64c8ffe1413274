#pragma once

#include "cfg/CfgLine.h"

#include <cstddef>
#include <vector>

namespace OrvComtradeIntake {

/// Makes one text of `count` fields from the one at `index` on, where it has commas (a finding).
void joinText(CfgCursor& cursor, CfgLine& line, std::size_t index, std::size_t count, const char* name);

/// Fields 1 to 3 of a channel line (name, phase, component) came in `surplus` more than three, for commas in them:
/// joins those that belong together, going by which field looks like a phase.
void joinTexts(CfgCursor& cursor, CfgLine& line, std::size_t surplus);

/// How the numbers of an analog line can be taken where commas in them make two fields of one.
struct DecimalCommas {
    std::size_t first = 0;       ///< field in which the number `a` begins
    std::vector<bool> areJoined; ///< for each number whether it has two fields; empty: there is no way
    bool isOneOfSeveral = false; ///< another way gives other numbers
};

/// Looks for the ways to take the fields from behind the unit, which is no number, up to the field `end` as `numbers`
/// numbers.
DecimalCommas findDecimalCommas(const CfgLine& line, std::size_t end, std::size_t numbers);

/// Whether the numbers from `a` on are what a line says of a channel in use: neither factor nor ratio are 0, the range
/// is not the wrong way round.
bool isSensibleChannel(const std::vector<double>& numbers);

/// Joins the two fields of each number.
void joinDecimals(CfgCursor& cursor, CfgLine& line, const DecimalCommas& commas);

/// Makes one number of the field at `index` and the next, which are its halves.
void joinDecimal(CfgCursor& cursor, CfgLine& line, std::size_t index, const char* name);

/// Whether the field at `index` and the next can be a number with a decimal comma: digits on both sides of it.
bool areHalves(const CfgLine& line, std::size_t index);

} // namespace OrvComtradeIntake
