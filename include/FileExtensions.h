#pragma once

#include <string>

namespace OrvComtradeLib {

/// Extensions of a recording's files: lower case, dot included. Each source file has its own copies.
const std::string cfgExtension = ".cfg";
const std::string datExtension = ".dat";
const std::string cffExtension = ".cff";

} // namespace OrvComtradeLib
