#pragma once

#include "Opened.h"
#include "Options.h"

#include <string>
#include <string_view>

/// The intake reads recordings as devices really write them. Start with `open`.
namespace OrvComtradeIntake {

/// The files of a recording as bytes in memory. They must outlive what `open` returns.
struct Bytes {
    std::string_view cfg = {};      ///< configuration, or a whole `.cff`; the other files are then ignored
    std::string_view dat = {};      ///< data; leave the default if there is no data file ("" is an empty one)
    std::string_view hdr = {};      ///< header file
    std::string_view inf = {};      ///< information file
    std::string name = "recording"; ///< what findings call the files: "recording.cfg", "recording.dat", "recording.cff"
    bool isStream = false;          ///< `name` alone names all: they come from no file, such as standard input
};

/// Opens a recording. `path` names any of its files: `.cfg`, `.dat` or `.cff`, in upper or lower case. No file is
/// changed.
///
/// It does not throw for a recording that cannot be read: `Opened::readable` is then false, and a finding says where
/// and why. Throws `std::invalid_argument` for an encoding in `options` that iconv does not know, and `std::bad_alloc`
/// if memory runs out. Memory stays within a small multiple of the `.cfg`, since data are read in blocks. Several
/// threads may open recordings at the same time.
Opened open(const std::string& path, const Options& options = {});

/// The same for bytes in memory; no file is touched.
Opened open(const Bytes& bytes, const Options& options = {});

/// Opens a recording and reads columns of it, like `open` followed by `Opened::columns`. The data are read only once if
/// they need no repair and times come from the rates. The storage of `columns` is reused if it is large enough. If the
/// recording is not readable, `columns` becomes empty. Throws what `open` and `Opened::columns` throw.
Opened open(const std::string& path, Columns& columns, const Selection& selection = {}, const Options& options = {});
Opened open(const Bytes& bytes, Columns& columns, const Selection& selection = {}, const Options& options = {});

} // namespace OrvComtradeIntake
