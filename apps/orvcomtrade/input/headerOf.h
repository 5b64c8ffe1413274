#pragma once

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeLib {
class Comtrade;
}

/// What the library keeps of a configuration. Factors are those of its values, which are secondary. Times, codes and
/// the encoding are not set, since the library does not keep them.
OrvComtradeIntake::Header headerOf(const OrvComtradeLib::Comtrade& comtrade);
