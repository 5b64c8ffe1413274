#pragma once

#include "AnalogChannel.h"
#include "BinaryChannel.h"
#include "Cfg.h"
#include "Dat.h"
#include "OrvComtradeExport.h"

#include <string>
#include <vector>

/// The reader of COMTRADE recordings (IEEE C37.111). Start with Comtrade.
namespace OrvComtradeLib {

/// One recording: its configuration, its samples and a view of each channel.
///
/// The object owns all of them, and they refer to each other, so it cannot be copied or moved. Do not query an object
/// while another thread loads it. The const queries of the views may run at the same time.
class ORVCOMTRADE_API Comtrade {
public:
    /// An empty recording: not loaded, no channels, `duration` -1.0.
    Comtrade();
    ~Comtrade();
    Comtrade(const Comtrade&) = delete;
    Comtrade& operator=(const Comtrade&) = delete;
    Comtrade(Comtrade&&) = delete;
    Comtrade& operator=(Comtrade&&) = delete;

    /// Loads the recording of which `path` (UTF-8) names any file: `.cfg`, `.dat` or `.cff`, in any case. For a `.cff`
    /// only the two separate files beside it are read. Returns an Enums::LoadResult. Throws `std::out_of_range` for a
    /// path without any '.', and then changes nothing.
    ///
    /// After any failure but `NotComtradeFile`, do not use the views of an earlier load. Sampling rates accumulate over
    /// loads of one object (see Cfg::load): use a new object for each recording.
    int load(const std::string& path);

    std::string filePath;    ///< path given to the last successful load
    double duration = -1.0;  ///< time of the last sample in seconds, of the last successful load
    bool enabled = true;     ///< for the host program; the library neither reads nor changes it
    bool loaded = false;     ///< whether the last load returned `Ok`; `NotComtradeFile` does not change it
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
