#pragma once

#include "Enums.h"
#include "OrvComtradeExport.h"

#include <string>

namespace OrvComtradeLib {

/// Conversion of `.cfg` words to enumerations. Stateless; safe from any thread.
class ORVCOMTRADE_API Converters {
public:
    /// Encoding named by the data-file-type word (IEEE C37.111-1999, 5.3.8), in any case. The whole word is compared,
    /// with any blanks. An unknown word gives `Ascii`, and so does "binary32". `text` is not changed.
    static Enums::DataFileType toDataFileType(std::string& text);
};

} // namespace OrvComtradeLib
