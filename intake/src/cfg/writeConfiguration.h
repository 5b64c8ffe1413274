#pragma once

#include <OrvComtradeIntake/Form.h>
#include <OrvComtradeIntake/Header.h>

#include <string>

namespace OrvComtradeIntake {

/// The lines of a `.cfg` in UTF-8, as the header has them. Numbers have the shortest form that reads back exactly, and
/// channels are numbered from 1 on. For Reader::Standard, lines end in CR LF, the first one has a year since revision
/// 1999, and a text that would be read without its quotation marks is written within others. The library needs LF,
/// always a year, and takes quotation marks as they are.
std::string writeConfiguration(const Header& header, Reader reader);

} // namespace OrvComtradeIntake
