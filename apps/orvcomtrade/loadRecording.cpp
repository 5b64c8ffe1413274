#include "loadRecording.h"

#include "Failure.h"
#include "printable.h"

#include <fmt/format.h>

namespace Enums = OrvComtradeLib::Enums;

namespace {

struct Problem {
    const std::string& file;
    const char* sentence;
    const char* codeName;
};

Problem problemOf(int code, const OrvComtradeLib::Comtrade& recording, const std::string& path) {
    switch (code) {
    case Enums::NotComtradeFile:
        return {path, "not a file of a recording: the extension is none of .cfg, .dat and .cff", "NotComtradeFile"};
    case Enums::CfgFileNotFound:
        return {recording.cfgFileName, "configuration file not found", "CfgFileNotFound"};
    case Enums::CfgLoadError:
        return {recording.cfgFileName, "configuration file cannot be read", "CfgLoadError"};
    case Enums::DatFileNotFound:
        return {recording.datFileName, "data file not found", "DatFileNotFound"};
    case Enums::DatLoadError:
        return {recording.datFileName, "data file cannot be read, or does not match its configuration", "DatLoadError"};
    default:
        return {path, "not loaded", "unknown result"};
    }
}

} // namespace

void loadRecording(OrvComtradeLib::Comtrade& recording, const std::string& path) {
    if (path.find('.') == std::string::npos) { // the library throws for such a path
        throw Failure(
            kRecordingProblem,
            fmt::format("{}: not a file of a recording: the path has no extension; name the .cfg, .dat or .cff file",
                        printable(path)));
    }
    const int code = recording.load(path);
    if (code == Enums::Ok) {
        return;
    }
    const Problem problem = problemOf(code, recording, path);
    throw Failure(kRecordingProblem,
                  fmt::format("{}: {} ({}, {})", printable(problem.file), problem.sentence, problem.codeName, code));
}
