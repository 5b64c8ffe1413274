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

/// What `open` knows of a recording. It stays as it is, but for what is made when it is first asked for.
struct Recording {
    bool isReadable = false;
    Side side = Side::Recorded;
    std::string cfgFile;
    std::string datFile;
    std::optional<ByteSource> data;          ///< none: configuration only
    std::optional<ByteSource> cfgForLibrary; ///< where the library finds both files by the path that was given
    ReadCfg cfg;
    DataFacts facts;
    Findings found; ///< by `open`

    /// The configuration as the library has it when it reads the recording rightly. Throws `std::system_error` where
    /// there is no nameless memory to hand it over, or it can't be read from there.
    const OrvComtradeLib::Cfg& libraryCfg() const;

    /// All findings, those about values among them.
    const std::vector<Finding>& findings() const;

private:
    Lazy<OrvComtradeLib::Cfg> _libraryCfg;
    Lazy<std::vector<Finding>> _findings;
};

} // namespace OrvComtradeIntake
