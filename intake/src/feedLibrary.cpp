#include "feedLibrary.h"

#include "files/NamelessFile.h"
#include "write.h"

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

namespace Enums = OrvComtradeLib::Enums;

/// One view per record, in file order.
template <class View, class Config>
void makeViews(std::vector<View>& views, std::vector<Config>& configs,
               const std::vector<OrvComtradeLib::Sample>& samples) {
    views.clear();
    views.reserve(configs.size());
    for (Config& config : configs) {
        views.emplace_back(config, samples);
    }
}

/// The data as they are, if the library reads them rightly; else written anew.
int loadData(const Recording& recording, OrvComtradeLib::Dat& dat) {
    const std::string original = recording.data ? recording.data->pathOfWholeFile() : std::string();
    if (recording.facts.libraryReads && !original.empty()) {
        return dat.load(original);
    }
    NamelessFile file;
    writeLibraryData(recording, [&file](std::string_view bytes) { file.write(bytes); });
    file.finish();
    return dat.load(file.path());
}

} // namespace

int feedLibrary(const Recording& recording, OrvComtradeLib::Comtrade& comtrade) {
    comtrade.loaded = false;
    comtrade.cfgFileName = recording.cfgFile;
    comtrade.datFileName = recording.datFile;
    if (!recording.isReadable) {
        return recording.cfg.header.rates.empty() ? Enums::CfgLoadError : Enums::DatLoadError;
    }
    comtrade.cfg = recording.libraryCfg();
    const int result = loadData(recording, comtrade.dat);
    if (result != Enums::Ok) {
        return result;
    }
    comtrade.loaded = true;
    comtrade.filePath = recording.cfgFile;
    comtrade.duration = comtrade.cfg.samplingRateKnown ? comtrade.cfg.duration : comtrade.dat.lastSampleTime;
    makeViews(comtrade.analogChannels, comtrade.cfg.analogChannelConfigs, comtrade.dat.samples);
    makeViews(comtrade.binaryChannels, comtrade.cfg.binaryChannelConfigs, comtrade.dat.samples);
    return Enums::Ok;
}

} // namespace OrvComtradeIntake
