#include "Recording.h"

#include "cfg/libraryForm.h"
#include "data/valueCheck.h"
#include "files/FileError.h"
#include "files/NamelessFile.h"

#include <stdexcept>

namespace OrvComtradeIntake {

const OrvComtradeLib::Cfg& Recording::libraryCfg() const {
    std::call_once(_isLoaded, [this] {
        NamelessFile file;
        file.write(libraryForm(cfg, facts, side));
        file.finish();
        OrvComtradeLib::Cfg loaded;
        if (loaded.load(file.path()) != OrvComtradeLib::Enums::CfgLoaded) {
            throw std::logic_error(cfgFile + ": not written as the library reads it");
        }
        _libraryCfg = std::move(loaded);
    });
    return *_libraryCfg;
}

const std::vector<Finding>& Recording::findings() const {
    std::call_once(_isChecked, [this] {
        Findings all = found;
        if (isReadable && data) {
            try {
                checkValues(*data, cfg, facts, all);
            } catch (const FileError& error) {
                reportFileError(error, all);
            }
        }
        _findings = all.take();
    });
    return _findings;
}

} // namespace OrvComtradeIntake
