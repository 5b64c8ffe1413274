#pragma once

#include <OrvComtradeIntake/Intake.h>

#include <functional>
#include <optional>
#include <string>

/// The files of a recording, in memory.
struct HeldFiles {
    std::string name;               ///< path of the configuration, without extension, for findings
    std::string cfg;                ///< or a whole `.cff`
    std::optional<std::string> dat; ///< none: configuration only
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

/// Reads them from where they are, for recordings that are not files of a folder. Throws a Failure. May be called by
/// several threads, for different recordings.
using ReadFiles = std::function<HeldFiles()>;
