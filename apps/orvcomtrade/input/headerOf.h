#pragma once

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeLib {
class Comtrade;
}

/// What the library keeps of a configuration. Factors are those of its values, which are secondary; times, codes and
/// the encoding are not there.
OrvComtradeIntake::Header headerOf(const OrvComtradeLib::Comtrade& comtrade);
