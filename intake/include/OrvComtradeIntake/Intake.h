#pragma once

#include "Opened.h"
#include "Options.h"

#include <string>
#include <string_view>

/// The intake reads recordings as devices really write them. Start with `open`.
namespace OrvComtradeIntake {

/// The files of a recording as bytes in memory. They must outlive what `open` returns.
struct Bytes {
    std::string_view cfg = {};      ///< configuration, or a whole `.cff` (then the others are not looked at)
    std::string_view dat = {};      ///< data; a view of nothing (not of an empty string) if there are none
    std::string_view hdr = {};      ///< header file
    std::string_view inf = {};      ///< information file
    std::string name = "recording"; ///< of the files in findings: "recording.cfg", "recording.dat" or "recording.cff"
    bool isStream = false;          ///< `name` alone names all: they come from no file, such as standard input
};

/// Opens the recording of which `path` names any file: `.cfg`, `.dat` or `.cff`, in any case. The files are only read.
///
/// A recording that cannot be read does not make it throw: `readable` is false, and a finding says where and why.
/// Throws `std::invalid_argument` for an encoding in `options` that iconv does not know, `std::bad_alloc` if memory
/// runs out. Memory stays within a small multiple of the `.cfg`; data are read in blocks. Several threads may open
/// recordings at the same time.
Opened open(const std::string& path, const Options& options = {});

/// The same for bytes in memory; no file is touched.
Opened open(const Bytes& bytes, const Options& options = {});

/// Opens a recording and reads columns of it, as `open` and then `Opened::columns` do. The data are read only once if
/// they need no repair and times come from the rates. The storage of `columns` is reused if it is large enough. Without
/// a readable recording they are empty. Throws what the two throw.
Opened open(const std::string& path, Columns& columns, const Selection& selection = {}, const Options& options = {});
Opened open(const Bytes& bytes, Columns& columns, const Selection& selection = {}, const Options& options = {});

} // namespace OrvComtradeIntake
