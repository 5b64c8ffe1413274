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
    std::string datFile; ///< path of the data, or of the `.cff`; empty if there are no data
    ByteSource cfg;
    std::optional<ByteSource> data; ///< nothing if there are no data: a finding says why
    std::string dataFormat;         ///< words of the DAT heading of a `.cff` in upper case, or empty
    std::string hdr;                ///< bytes of the header file; empty above the limit, which is a finding
    std::string inf;                ///< the same for the information file
    bool isNamedForLibrary = false; ///< `Comtrade::load` of the path that was given finds these two files
};

/// Finds and opens the files of the recording that has this file. Returns nothing, with a finding of severity Error, if
/// there is no configuration to read. If there are no data, the finding is NoData; if data cannot be read or are
/// something else, it is one of severity Error.
std::optional<RecordingFiles> findRecording(const std::string& path, Findings& findings, const Options& options = {});

/// The same for bytes in memory. A `.cff` is recognised by its first heading.
std::optional<RecordingFiles> recordingOf(const Bytes& bytes, Findings& findings, const Options& options = {});

} // namespace OrvComtradeIntake
