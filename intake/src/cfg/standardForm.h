#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Header.h>

#include <string>

namespace OrvComtradeIntake {

/// The `.cfg` in the form of the standard: UTF-8, CR LF, everything as recorded, in the layout of `header.revision`.
/// What the standard has no place for is written so that it reads without a finding: the year is 1999 or 2013, channels
/// are numbered from 1 on, a side that is not known is S with ratio 1, end samples are those of `header.samples`
/// samples, if there are any.
///
/// Revision 1991 has no year, side, ratio, nor phase and component of status channels. A time multiplier that is not 1
/// is written nevertheless: the times depend on it.
std::string standardForm(const Header& header);

/// The header for revision 1991, 1999 or 2013: what that has no place for is dropped, dates are cut to microseconds
/// before 2013, and the time multiplier keeps the times of the stamps.
Header withRevision(Header header, int revision);

/// What of the header a revision has no place for, and `withRevision` drops.
Losses lostTo(const Header& header, int revision);

/// Whether stamps count nanoseconds: where dates have nine digits, since revision 2013 (IEEE C37.111-2013, 7.4.8).
bool countsNanoseconds(const Header& header);

} // namespace OrvComtradeIntake
