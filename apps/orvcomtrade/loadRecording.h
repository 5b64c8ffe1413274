#pragma once

#include "Comtrade.h"
#include "Intake.h"

#include <cstddef>
#include <string>

/// How the command line wants recordings to be read.
struct LoadOptions {
    bool asIs = false; ///< the files go to the library untouched
    OrvComtradeIntake::Options intake;
};

/// A recording as the library has it, and what the intake knows beside it (nothing of one that is loaded as it is).
struct Recording {
    OrvComtradeIntake::PreparedRecording prepared;
    OrvComtradeLib::Comtrade comtrade;
    LoadOptions options;
};

/// The library's verdict on files that it is given untouched.
struct Verdict {
    int code = 0;         ///< OrvComtradeLib::Enums::LoadResult
    std::string codeName; ///< "Ok", "CfgLoadError", ...
    std::string sentence; ///< what is wrong with which file, or empty
};

/// Loads the recording; a Failure that names the file and what is wrong with it when that does not work.
void loadRecording(Recording& recording, const std::string& path, const LoadOptions& options);

/// The two halves of it. The files stay as long as `recording.prepared`; a recording that can't be read has findings
/// that say why, and a Failure is thrown by the second half.
void prepareRecording(Recording& recording, const std::string& path, const LoadOptions& options);
void loadPrepared(Recording& recording, const std::string& path);

/// Loads the files untouched.
Verdict loadAsIs(OrvComtradeLib::Comtrade& recording, const std::string& path);

/// Side of the values that the library gives of an analog channel: "primary", "secondary", or "unknown".
const char* sideName(const Recording& recording, std::size_t channel);

/// Name of a side as files declare it.
const char* sideName(OrvComtradeIntake::Side side);

/// Station or recorder in UTF-8: the library leaves it in the bytes of the file.
std::string stationText(const std::string& bytes);
