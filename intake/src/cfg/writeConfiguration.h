#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Header.h>

#include <string>

namespace OrvComtradeIntake {

/// The lines of a `.cfg` in UTF-8, as the header has them: numbers in the shortest form that reads back exactly,
/// channels numbered from 1 on. For the standard's reader lines end in CR LF, and the first one has a year since
/// revision 1999; the library needs LF, and the year always.
std::string writeConfiguration(const Header& header, Reader reader);

} // namespace OrvComtradeIntake
