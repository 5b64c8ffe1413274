#include "Recording.h"

#include "cfg/libraryForm.h"
#include "data/valueCheck.h"
#include "files/FileError.h"
#include "files/LibraryCall.h"
#include "files/NamelessFile.h"

#include <stdexcept>

namespace OrvComtradeIntake {

const OrvComtradeLib::Cfg& Recording::libraryCfg() const {
    return _libraryCfg.get([this] {
        NamelessFile file;
        file.write(libraryForm(cfg, facts, side));
        file.finish();
        OrvComtradeLib::Cfg loaded;
        const LibraryCall call;
        const bool isLoaded = loaded.load(file.path()) == OrvComtradeLib::Enums::CfgLoaded;
        call.check(isLoaded, cfgFile);
        if (!isLoaded) {
            throw std::logic_error(cfgFile + ": not written as the library reads it");
        }
        return loaded;
    });
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
