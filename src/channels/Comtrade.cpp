#include "Comtrade.h"

#include "FilesHelper.h"

namespace OrvComtradeLib {

namespace {

/// One view per record, in file order.
template <class View, class Record>
void makeViews(std::vector<View>& views, std::vector<Record>& records, const std::vector<Sample>& samples) {
    views.clear();
    views.reserve(records.size());
    for (Record& record : records) {
        views.emplace_back(record, samples);
    }
}

} // namespace

Comtrade::Comtrade() : dat(cfg) {}

Comtrade::~Comtrade() = default;

int Comtrade::load(const std::string& path) {
    if (!FilesHelper::isComtradeFile(path)) {
        return Enums::NotComtradeFile;
    }
    const int result = _loadCfgDat(path);
    loaded = result == Enums::Ok;
    if (!loaded) {
        return result;
    }
    filePath = path;
    duration = cfg.samplingRateKnown ? cfg.duration : dat.lastSampleTime;
    _initChannels();
    return Enums::Ok;
}

void Comtrade::_setCfgDatFileNames(const std::string& path) {
    cfgFileName = FilesHelper::cfgFileName(path);
    datFileName = FilesHelper::datFileName(path);
}

int Comtrade::_loadCfgDat(const std::string& path) {
    _setCfgDatFileNames(path);
    const int result = cfg.load(cfgFileName);
    return result == Enums::CfgLoaded ? dat.load(datFileName) : result;
}

void Comtrade::_initChannels() {
    _initAnalogChannels();
    _initBinaryChannels();
}

void Comtrade::_initAnalogChannels() {
    makeViews(analogChannels, cfg.analogChannelConfigs, dat.samples);
}

void Comtrade::_initBinaryChannels() {
    makeViews(binaryChannels, cfg.binaryChannelConfigs, dat.samples);
}

} // namespace OrvComtradeLib
