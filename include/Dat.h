#pragma once

#include "Cfg.h"
#include "OrvComtradeExport.h"
#include "Sample.h"

#include <fstream>
#include <string>
#include <vector>

namespace OrvComtradeLib {

/// The data file of a recording (IEEE C37.111-1999, clause 6), read into samples. Do not use an object while another
/// thread loads it.
class ORVCOMTRADE_API Dat {
public:
    /// A reader that decodes by `configuration`, which must outlive it and its samples.
    explicit Dat(const Cfg& configuration);

    /// Reads the data file at a UTF-8 path in the encoding that `cfg` declares. Returns `Ok`, `DatFileNotFound` or
    /// `DatLoadError`. Throws nothing derived from `std::exception`.
    ///
    /// A binary file must have exactly `cfg.lastSampleNumber` whole records. An ASCII file may have fewer lines; lines
    /// beyond that number are not read. If the file is missing or does not open, the earlier samples stay. Any other
    /// failure leaves no samples, or part of them if memory ran out.
    int load(const std::string& path);

    const Cfg& cfg;               ///< what the data file is decoded by, not owned
    double lastSampleTime = -1.0; ///< seconds; -1.0 when the last load ended without a sample
    std::vector<Sample> samples;  ///< in file order: samples[i].index is i; owned here, replaced by the next load

private:
    int _loadBinarySamles(std::ifstream& in);
    int _loadAsciiSamples(std::ifstream& in);
};

} // namespace OrvComtradeLib
