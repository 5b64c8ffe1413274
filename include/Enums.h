#pragma once

#include <cstdint>

namespace OrvComtradeLib {

/// The enumerations of the library. They are unscoped, because the load operations return a LoadResult as `int`.
namespace Enums {

/// Encoding of the data file (IEEE C37.111-1999, 5.3.8 and clause 6; Binary32 and Float32 since the 2013 edition).
enum DataFileType : std::int32_t {
    Ascii = 0,    ///< text lines; also what an unknown type word gives
    Binary = 1,   ///< records with 16-bit integer analog values
    Binary32 = 2, ///< records with 32-bit integer analog values; no type word of a `.cfg` yields it
    Float32 = 3,  ///< records with single-precision analog values
};

/// Result of a load operation.
enum LoadResult : std::int32_t {
    Ok = 0,              ///< recording read (Dat::load, Comtrade::load)
    NotComtradeFile = 1, ///< the path's extension is not ".cfg", ".dat" or ".cff" in any case (Comtrade::load)
    CfgFileNotFound = 2, ///< no configuration file at the derived path (Cfg::load)
    CfgLoadError = 3,    ///< the configuration file could not be opened, read or parsed (Cfg::load)
    CfgLoaded = 4,       ///< configuration read (Cfg::load); Comtrade::load then goes on to the data file
    DatFileNotFound = 5, ///< no data file at the derived path (Dat::load)
    DatLoadError = 6,    ///< the data file could not be opened, does not match the declared size, or does not decode
};

} // namespace Enums
} // namespace OrvComtradeLib
