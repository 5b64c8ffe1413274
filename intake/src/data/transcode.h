#pragma once

#include "dataSurvey.h"

namespace OrvComtradeIntake {

class OutputFile;

/// Writes the first `count` bytes of the data as they are.
void copyPrefix(const DataSource& source, std::uint64_t count, OutputFile& out);

/// Writes BINARY, BINARY32 or FLOAT32 data in the encoding of the survey.
void transcodeBinary(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
                     OutputFile& out);

/// Writes ASCII data as plain lines.
void transcodeAscii(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
                    OutputFile& out);

} // namespace OrvComtradeIntake
