#pragma once

#include "AnalogChannel.h"
#include "BinaryChannel.h"
#include "Cfg.h"
#include "Dat.h"
#include "OrvComtradeExport.h"

#include <string>
#include <vector>

/// The reader of COMTRADE recordings (IEEE C37.111); Comtrade is where a host begins.
namespace OrvComtradeLib {

/// One recording: its configuration, its samples and a view per channel.
///
/// Everything is owned here and refers to each other, so a recording is neither copied nor moved. A load must not
/// overlap with queries of the same object; the const queries of the views may run side by side.
class ORVCOMTRADE_API Comtrade {
public:
    /// An empty recording: not loaded, no channels, `duration` -1.0.
    Comtrade();
    ~Comtrade();
    Comtrade(const Comtrade&) = delete;
    Comtrade& operator=(const Comtrade&) = delete;
    Comtrade(Comtrade&&) = delete;
    Comtrade& operator=(Comtrade&&) = delete;

    /// Loads the recording that the UTF-8 path of any of its files names (`.cfg`, `.dat` or `.cff`, any case; of a
    /// `.cff` only the two separate files beside it). Gives an Enums::LoadResult. Throws `std::out_of_range` for a path
    /// without any '.', with nothing changed.
    ///
    /// After a failure past the check of the extension the views of an earlier load must not be used. Sampling rates
    /// pile up over loads of one object (see Cfg::load): take a fresh one for another recording.
    int load(const std::string& path);

    std::string filePath;    ///< path given to the last successful load
    double duration = -1.0;  ///< time of the last sample in seconds, of the last successful load
    bool enabled = true;     ///< for the host's use; the library neither reads nor changes it
    bool loaded = false;     ///< whether the last load that got past the check of the extension gave `Ok`
    std::string cfgFileName; ///< configuration file looked for by the last load
    std::string datFileName; ///< data file looked for by the last load

    Cfg cfg;                                   ///< the configuration, as the last load left it
    Dat dat;                                   ///< the samples, bound to `cfg`
    std::vector<AnalogChannel> analogChannels; ///< one view per analog channel, in file order
    std::vector<BinaryChannel> binaryChannels; ///< one view per status channel, in file order

private:
    void _setCfgDatFileNames(const std::string& path);
    int _loadCfgDat(const std::string& path);
    void _initChannels();
    void _initAnalogChannels();
    void _initBinaryChannels();
};

} // namespace OrvComtradeLib
