#pragma once

// An opened recording against the slow reader's, and against itself by another way out. Differences come as texts,
// empty where there is none, so that a property test can use them as well.

#include "Comtrade.h"
#include "intake/slowReader.h"

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Options.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvtest {

constexpr long double kHalfUlp = 0x1p-53L;

slow::Side slowSide(OrvComtradeIntake::Side side);

/// Equal to the last bit; any not-a-number equals any other.
bool same(double left, double right);

std::string textOf(const std::optional<std::int64_t>& nanoseconds);
std::string textOf(const std::optional<OrvComtradeIntake::Instant>& instant);

/// Consecutive missing values as "channel:first+count".
std::string missingText(const slow::Recording& recording);
std::string missingText(const std::vector<OrvComtradeIntake::MissingRun>& missing);

/// Names, units, skews and normal states of a loaded recording; blanks around texts may have stayed.
std::string firstTextDifference(const OrvComtradeLib::Comtrade& loaded, const slow::Recording& expected);

/// Values to within so many half units in the last place of the largest term, times to 1e-12 of themselves, states.
std::string firstValueDifference(const OrvComtradeLib::Comtrade& loaded, const slow::Recording& expected,
                                 OrvComtradeIntake::Side side, int halfUlps);

/// Everything that the configuration records.
std::string firstHeaderDifference(const OrvComtradeIntake::Header& header, const slow::Recording& expected);

/// Everything that two headers hold, save for what changes as a recording is written anew: type, encoding, time
/// multiplier, ranges, and how many samples were declared. What the revision found has no place for is not there.
std::string firstDifference(const OrvComtradeIntake::Header& found, const OrvComtradeIntake::Header& expected);

/// States of a column of status changes, sample by sample.
std::vector<bool> statesOf(const OrvComtradeIntake::Columns& columns, std::size_t status);

/// Columns of a selection against the samples that a load gave, to the last bit; all columns by default.
std::string firstDifference(const OrvComtradeIntake::Columns& columns, const OrvComtradeLib::Comtrade& loaded,
                            const OrvComtradeIntake::Selection& selection = {});

/// Two columns of the same selection, to the last bit.
std::string firstDifference(const OrvComtradeIntake::Columns& found, const OrvComtradeIntake::Columns& expected);

/// Samples of two loads, to the last bit.
std::string firstDifference(const OrvComtradeLib::Comtrade& found, const OrvComtradeLib::Comtrade& expected);

} // namespace orvtest
