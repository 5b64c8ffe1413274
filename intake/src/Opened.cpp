#include "Comtrade.h"
#include "Recording.h"
#include "cfg/libraryForm.h"
#include "cfg/scaling.h"
#include "cfg/units.h"
#include "data/columns.h"
#include "files/LibraryCall.h"
#include "write.h"

#include <OrvComtradeIntake/Opened.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

namespace Enums = OrvComtradeLib::Enums;

const Recording& requireReadable(const Recording& recording) {
    if (!recording.isReadable) {
        throw std::logic_error(recording.cfgFile + ": not readable");
    }
    return recording;
}

ColumnSource columnSource(const Recording& recording) {
    requireReadable(recording);
    return {recording.data ? &*recording.data : nullptr, recording.cfg.header, recording.facts, recording.libraryCfg()};
}

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

/// By the library where it reads the file rightly; else decoded for it.
int loadData(const Recording& recording, OrvComtradeLib::Dat& dat) {
    const std::string original = recording.data ? recording.data->pathOfWholeFile() : std::string();
    if (recording.facts.libraryReads && !original.empty()) {
        const LibraryCall call;
        const int result = dat.load(original);
        call.check(result == Enums::Ok, recording.datFile);
        recording.data->requireUnchanged();
        return result;
    }
    std::vector<OrvComtradeLib::Sample>().swap(dat.samples);
    dat.lastSampleTime = -1.0;
    if (!recording.data) {
        return Enums::Ok;
    }
    try {
        if (fillSamples(*recording.data, recording.cfg.header, recording.facts, dat)) {
            dat.lastSampleTime = dat.samples.back().time;
            return Enums::Ok;
        }
    } catch (...) {
        dat.samples.clear();
        throw;
    }
    dat.samples.clear();
    return Enums::DatLoadError;
}

} // namespace

Opened::Opened(std::shared_ptr<const Recording> recording) : _recording(std::move(recording)) {}
Opened::Opened(Opened&& other) noexcept = default;
Opened& Opened::operator=(Opened&& other) noexcept = default;
Opened::~Opened() = default;

bool Opened::readable() const {
    return _recording->isReadable;
}

const std::vector<Finding>& Opened::findings() const {
    return _recording->findings();
}

const Header& Opened::header() const {
    return _recording->cfg.header;
}

const std::string& Opened::cfgFile() const {
    return _recording->cfgFile;
}

const std::string& Opened::datFile() const {
    return _recording->datFile;
}

bool Opened::librarySuffices() const {
    if (!readable() || !_recording->cfgForLibrary || !_recording->facts.libraryReads) {
        return false;
    }
    const ByteSource& file = *_recording->cfgForLibrary;
    OrvComtradeLib::Cfg original;
    const LibraryCall call;
    const bool isLoaded = original.load(file.pathOfWholeFile()) == Enums::CfgLoaded;
    call.check(isLoaded, _recording->cfgFile);
    file.requireUnchanged();
    return isLoaded && libraryReads(original, _recording->libraryCfg());
}

Side Opened::sideOf(std::size_t analogChannel) const {
    const Header& header = _recording->cfg.header;
    return givenSide(header.analog.at(analogChannel), header.revision, _recording->side);
}

Scale Opened::scaleOf(std::size_t analogChannel, Side side) const {
    const Recording& recording = *_recording;
    const Header& header = recording.cfg.header;
    const std::vector<int>& exponents = recording.facts.exponents;
    const int exponent = exponents.empty() ? 0 : exponents.at(analogChannel);
    const AnalogInfo made = channelForLibrary(header.analog.at(analogChannel), recording.cfg.analog.at(analogChannel),
                                              header.revision, side, exponent);
    return {made.a, made.b, made.side};
}

std::string Opened::unitOf(std::size_t analogChannel) const {
    return baseUnit(_recording->cfg.header.analog.at(analogChannel).unit).name;
}

int Opened::load(OrvComtradeLib::Comtrade& comtrade) const {
    const Recording& recording = *_recording;
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

Columns Opened::columns(const Selection& selection) const {
    Columns all;
    columns(selection, all);
    return all;
}

void Opened::columns(const Selection& selection, Columns& into) const {
    readColumns(columnSource(*_recording), selection, into);
}

void Opened::columns(const Selection& selection, std::size_t most,
                     const std::function<bool(const Columns&)>& onBlock) const {
    readColumns(columnSource(*_recording), selection, most, onBlock);
}

Losses Opened::write(const Sink& cfg, const Sink& dat, const Form& form) const {
    return writeRecording(requireReadable(*_recording), cfg, dat, form);
}

} // namespace OrvComtradeIntake
