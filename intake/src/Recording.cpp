#include "Recording.h"

#include "cfg/libraryCfg.h"
#include "data/valueCheck.h"
#include "files/FileError.h"

namespace OrvComtradeIntake {

const OrvComtradeLib::Cfg& Recording::libraryCfg() const {
    return _libraryCfg.get([this] { return libraryCfgOf(cfg, facts, side); });
}

const std::vector<Finding>& Recording::findings() const {
    return _findings.get([this] {
        Findings all = found;
        if (isReadable && data) {
            try {
                checkValues(*data, cfg, facts, all);
            } catch (const FileError& error) {
                reportFileError(error, all);
            }
        }
        return all.take();
    });
}

} // namespace OrvComtradeIntake
