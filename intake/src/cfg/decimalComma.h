#pragma once

#include "CfgLine.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// How the numbers of an analog line are to be taken where some have a decimal comma, which parts each into two fields.
struct DecimalCommas {
    std::size_t first = 0;             ///< index of the field in which `a` begins
    std::vector<std::size_t> fieldsOf; ///< 1 or 2 for each number from `a` on
    std::size_t count = 0;             ///< numbers of two fields
    int oddity = 0;                    ///< 0: nothing about the numbers is unusual
    bool isOneOfSeveral = false;       ///< the commas can be taken otherwise about as well
};

/// The likeliest way to take the line's numbers, as many of `numbers` as there are between the unit, which is no
/// number, and the field `end`. Nothing where none is likely.
std::optional<DecimalCommas> findDecimalCommas(const CfgLine& line, std::size_t end,
                                               const std::vector<std::size_t>& numbers);

/// Joins the two fields of each number.
void joinDecimals(CfgLine& line, const DecimalCommas& commas);

/// Whether these neighbouring fields can be a number with a decimal comma: digits on both sides of it.
bool areHalves(const CfgField& whole, const CfgField& fraction);

} // namespace OrvComtradeIntake
