// What loads give, printed by name where an expectation fails.

#pragma once

#include "Enums.h"

#include <ostream>

namespace OrvComtradeLib {
namespace Enums {

inline const char* nameOf(LoadResult result) {
    switch (result) {
    case Ok:
        return "Ok";
    case NotComtradeFile:
        return "NotComtradeFile";
    case CfgFileNotFound:
        return "CfgFileNotFound";
    case CfgLoadError:
        return "CfgLoadError";
    case CfgLoaded:
        return "CfgLoaded";
    case DatFileNotFound:
        return "DatFileNotFound";
    case DatLoadError:
        return "DatLoadError";
    }
    return "no result";
}

/// GoogleTest finds this beside the enumeration.
inline void PrintTo(LoadResult result, std::ostream* out) {
    *out << nameOf(result) << " (" << static_cast<int>(result) << ')';
}

} // namespace Enums
} // namespace OrvComtradeLib

namespace orvtest {

/// The result that the `int` of a load means.
inline OrvComtradeLib::Enums::LoadResult resultOf(int code) {
    return static_cast<OrvComtradeLib::Enums::LoadResult>(code);
}

} // namespace orvtest
