#pragma once

#include <string>

namespace OrvComtradeLib {

// Extensions of a recording's files: lower case, dot included. Each source file has its own copies.
const std::string cfgExtension = ".cfg"; ///< configuration file
const std::string datExtension = ".dat"; ///< data file
const std::string cffExtension = ".cff"; ///< combined file, whose contents are never read

} // namespace OrvComtradeLib
