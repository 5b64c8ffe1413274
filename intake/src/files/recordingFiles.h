#pragma once

#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Intake.h>

#include <optional>
#include <string>

namespace OrvComtradeIntake {

/// The files of a recording, open.
struct RecordingFiles {
    std::string cfgFile; ///< path of the configuration, or of the `.cff`
    std::string datFile; ///< path of the data, or of the `.cff`; empty: there are none
    ByteSource cfg;
    std::optional<ByteSource> data; ///< none: a finding says why
    std::string dataFormat;         ///< words of the DAT heading of a `.cff` in upper case, or empty
    std::string hdr;                ///< bytes of the header file; none above the limit, and a finding
    std::string inf;                ///< of the information file, likewise
    bool isNamedForLibrary = false; ///< `Comtrade::load` of the path that was given leads to these two files
};

/// Finds and opens the files of the recording that has this file. Nothing, with a finding of severity Error, where
/// there is no configuration to read. Where there is one without data, a finding says so: NoData if there are none,
/// else of severity Error (they can't be read, or are something else).
std::optional<RecordingFiles> findRecording(const std::string& path, Findings& findings, const Options& options = {});

/// The same for bytes in memory, where a `.cff` is known by its first heading.
std::optional<RecordingFiles> recordingOf(const Bytes& bytes, Findings& findings, const Options& options = {});

} // namespace OrvComtradeIntake
