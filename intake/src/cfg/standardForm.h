#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Header.h>

#include <string>

namespace OrvComtradeIntake {

/// The `.cfg` in the form of the standard: UTF-8, CR LF, everything as recorded, in the layout of `header.revision`.
/// Where the standard has no place for what is recorded, the text is such that it reads without a finding: the year is
/// 1999 or 2013, channels are numbered from 1 on, an unknown side is S with ratio 1, and end samples fit
/// `header.samples`, if there are samples.
///
/// Revision 1991 has no year, side or ratio, and no phase or component of status channels. A time multiplier that is
/// not 1 is written all the same: the times depend on it.
std::string standardForm(const Header& header);

/// The header for revision 1991, 1999 or 2013. Everything that the revision has no place for is dropped. Before 2013,
/// dates are cut to microseconds, and the time multiplier changes so that stamps keep their times.
Header withRevision(Header header, int revision);

/// What `withRevision` drops because the revision has no place for it.
Losses lostTo(const Header& header, int revision);

/// Whether stamps count nanoseconds: since revision 2013, if dates have nine digits (IEEE C37.111-2013, 7.4.8).
bool countsNanoseconds(const Header& header);

} // namespace OrvComtradeIntake
