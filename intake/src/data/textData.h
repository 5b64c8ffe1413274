#pragma once

#include "Configuration.h"
#include "DataSource.h"

#include <string_view>

namespace OrvComtradeIntake {

/// Whether a text is in UTF-16: told by its mark, or by the zero byte that each letter has.
bool isUtf16(std::string_view bytes);

/// The same of the data. Throws `std::system_error` if they can't be read.
bool isUtf16Data(const DataSource& source);

/// Whether data that ought to be binary records begin with lines of numbers instead (a record's sample number has bytes
/// that no text has) and are not as long as the records declared.
bool isTextData(const DataSource& source, const Configuration& configuration);

} // namespace OrvComtradeIntake
