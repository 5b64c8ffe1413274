#pragma once

#include "Cfg.h"
#include "base/Lazy.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Opened.h>

#include <optional>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// What `open` found out about a recording. Nothing in it changes later; some results are made when they are first
/// requested.
struct Recording {
    bool isReadable = false;
    Side side = Side::Recorded;
    std::string cfgFile;
    std::string datFile;
    std::optional<ByteSource> data;          ///< none: configuration only
    std::optional<ByteSource> cfgForLibrary; ///< set if the library finds both files by the path that was given
    ReadCfg cfg;
    DataFacts facts;
    Findings found; ///< by `open`

    /// The configuration that the library has when it reads the recording correctly. Throws as `libraryCfgOf` does.
    const OrvComtradeLib::Cfg& libraryCfg() const;

    /// All findings, those about values among them.
    const std::vector<Finding>& findings() const;

private:
    Lazy<OrvComtradeLib::Cfg> _libraryCfg;
    Lazy<std::vector<Finding>> _findings;
};

} // namespace OrvComtradeIntake
