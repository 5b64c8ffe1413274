#pragma once

#include <OrvComtradeIntake/Intake.h>

#include <functional>
#include <optional>
#include <string>

/// The files of a recording, in memory.
struct HeldFiles {
    std::string name;               ///< path of the configuration, without extension, for findings
    std::string cfg;                ///< or a whole `.cff`
    std::optional<std::string> dat; ///< nothing if there is only a configuration
    std::string hdr;
    std::string inf;
    bool isStream = false; ///< `name` alone names them: they come from no file

    /// A view of them.
    OrvComtradeIntake::Bytes bytes() const {
        OrvComtradeIntake::Bytes view;
        view.cfg = cfg;
        view.dat = dat ? std::string_view(*dat) : std::string_view();
        view.hdr = hdr;
        view.inf = inf;
        view.name = name;
        view.isStream = isStream;
        return view;
    }
};

/// Reads the files of a recording that is not in a folder. Throws a Failure. Several threads may call it, for different
/// recordings.
using ReadFiles = std::function<HeldFiles()>;
