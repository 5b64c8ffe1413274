#include "input/libraryRecording.h"

#include "Comtrade.h"
#include "input/channelNames.h"
#include "input/columnsOf.h"
#include "input/headerOf.h"
#include "input/resultName.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

namespace Enums = OrvComtradeLib::Enums;
using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::Side;
using OrvComtradeLib::Comtrade;

namespace {

/// What the system said as the library failed, in brackets, or nothing: the library has one code for all causes.
std::string reasonOf(int error) {
    const bool isOfSystem = error == EIO || error == EMFILE || error == ENFILE || error == EACCES;
    return isOfSystem ? fmt::format(" ({})", std::strerror(error)) : "";
}

std::string problemOf(int code, int error, const Comtrade& comtrade, const std::string& path) {
    const char* sentence = "not loaded";
    std::string file = path;
    switch (code) {
    case Enums::NotComtradeFile:
        sentence = "not a file of a recording: the extension is not .cfg, .dat or .cff";
        break;
    case Enums::CfgFileNotFound:
        sentence = "configuration file not found";
        file = comtrade.cfgFileName;
        break;
    case Enums::CfgLoadError:
        sentence = "configuration file cannot be read";
        file = comtrade.cfgFileName;
        break;
    case Enums::DatFileNotFound:
        sentence = "data file not found";
        file = comtrade.datFileName;
        break;
    case Enums::DatLoadError:
        sentence = "data file cannot be read, or does not match its configuration";
        file = comtrade.datFileName;
        break;
    default:
        break;
    }
    return fmt::format("{}: {} ({}, {}){}", printable(file), sentence, resultName(code), code, reasonOf(error));
}

Verdict verdictOn(int code, int error, const Comtrade& comtrade, const std::string& path) {
    Verdict verdict;
    verdict.isReadable = code == Enums::Ok;
    verdict.name = resultName(code);
    verdict.sentence = verdict.isReadable ? fmt::format("{}: {} ({})", printable(path), verdict.name, code)
                                          : problemOf(code, error, comtrade, path);
    verdict.code = code;
    return verdict;
}

class LibraryReader : public RecordingReader {
public:
    LibraryReader(Verdict verdict, std::unique_ptr<const Comtrade> comtrade)
        : _verdict(std::move(verdict)), _comtrade(std::move(comtrade)) {}

    const std::vector<Finding>* findings() const override { return nullptr; }
    Verdict verdict() const override { return _verdict; }
    double duration() const override { return _comtrade->duration; }
    const Comtrade& comtrade() const override { return *_comtrade; }

    Columns columns(const Selection& selection) const override {
        Columns all;
        columnsOf(*_comtrade, selection, _comtrade->dat.samples.size(), [&all](const Columns& block) {
            all = block;
            return true;
        });
        return all;
    }

    void columns(const Selection& selection, std::size_t most, const OnBlock& onBlock) const override {
        columnsOf(*_comtrade, selection, most, onBlock);
    }

private:
    const Verdict _verdict;
    const std::unique_ptr<const Comtrade> _comtrade;
};

} // namespace

Recording libraryRecording(const std::string& path) {
    Recording recording;
    auto comtrade = std::make_unique<Comtrade>();
    errno = 0;
    const int code = comtrade->load(path);
    const int error = errno;
    if (code != Enums::Ok && error == ENOMEM) {
        throw std::bad_alloc(); // the library has the same code for this and for damage
    }
    const Verdict verdict = verdictOn(code, error, *comtrade, path);
    if (verdict.isReadable) {
        recording.header = headerOf(*comtrade);
        for (const AnalogInfo& channel : recording.header.analog) {
            recording.analog.push_back({analogName(channel, channel.unit), channel.unit, Side::Secondary});
        }
    } else {
        recording.problem = verdict.sentence;
    }
    recording.cfgFile = comtrade->cfgFileName;
    recording.datFile = comtrade->datFileName;
    recording.reader = std::make_unique<LibraryReader>(verdict, std::move(comtrade));
    return recording;
}
