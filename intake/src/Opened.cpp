#include "Comtrade.h"
#include "Recording.h"
#include "cfg/libraryReads.h"
#include "cfg/scaling.h"
#include "cfg/units.h"
#include "data/columns.h"
#include "feedLibrary.h"
#include "write.h"

#include <OrvComtradeIntake/Opened.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

const Recording& requireReadable(const Recording& recording) {
    if (!recording.isReadable) {
        throw std::logic_error(recording.cfgFile + ": not readable");
    }
    return recording;
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
    if (!readable() || !_recording->isNamedForLibrary || !_recording->facts.libraryReads) {
        return false;
    }
    OrvComtradeLib::Cfg original;
    return original.load(_recording->cfgFile) == OrvComtradeLib::Enums::CfgLoaded &&
           libraryReads(original, _recording->libraryCfg());
}

Side Opened::sideOf(std::size_t analogChannel) const {
    const Header& header = _recording->cfg.header;
    return givenSide(header.analog.at(analogChannel), header.revision, _recording->side);
}

std::string Opened::unitOf(std::size_t analogChannel) const {
    return baseUnit(_recording->cfg.header.analog.at(analogChannel).unit).name;
}

int Opened::load(OrvComtradeLib::Comtrade& comtrade) const {
    return feedLibrary(*_recording, comtrade);
}

Columns Opened::columns(const Selection& selection) const {
    const Recording& recording = requireReadable(*_recording);
    return readColumns(
        {recording.data ? &*recording.data : nullptr, recording.cfg.header, recording.facts, recording.libraryCfg()},
        selection);
}

void Opened::columns(const Selection& selection, std::size_t most,
                     const std::function<bool(const Columns&)>& onBlock) const {
    const Recording& recording = requireReadable(*_recording);
    readColumns(
        {recording.data ? &*recording.data : nullptr, recording.cfg.header, recording.facts, recording.libraryCfg()},
        selection, most, onBlock);
}

void Opened::write(const Sink& cfg, const Sink& dat, const Form& form) const {
    writeRecording(requireReadable(*_recording), cfg, dat, form);
}

} // namespace OrvComtradeIntake
