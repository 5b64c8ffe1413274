#pragma once

#include "Options.h"
#include "PreparedRecording.h"

#include <string>

/// The intake: turns what devices write into what OrvComtradeLib reads. `prepare` is where a host begins.
namespace OrvComtradeIntake {

/// Makes of whatever a device wrote a pair of files that `OrvComtradeLib::Comtrade` reads with the right values and
/// times, and tells everything that it had to mend. `path` names any file of the recording (`.cfg`, `.dat`, `.cff`, in
/// any case). The original files are never changed, and are used as they are where nothing needs mending; otherwise a
/// private folder receives a new `.cfg` and a link to the data, or new data.
///
/// A recording that can't be read is no exception: `path` of the result is empty and a finding says where and why.
/// Throws `std::invalid_argument` for an encoding in `options` that iconv does not know, `std::system_error` if the
/// private folder or its files can't be written, `std::bad_alloc` for want of memory.
/// Memory stays within a small multiple of the `.cfg`; data are read in blocks. Different recordings may be prepared
/// from several threads.
PreparedRecording prepare(const std::string& path, const Options& options = {});

} // namespace OrvComtradeIntake
