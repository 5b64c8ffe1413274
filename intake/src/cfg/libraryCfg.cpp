#include "cfg/libraryCfg.h"

#include "cfg/libraryForm.h"
#include "files/LibraryCall.h"
#include "files/NamelessFile.h"

#include <stdexcept>

namespace OrvComtradeIntake {

OrvComtradeLib::Cfg libraryCfgOf(const ReadCfg& cfg, const DataFacts& facts, Side wanted) {
    NamelessFile file;
    file.write(libraryForm(cfg, facts, wanted));
    file.finish();
    OrvComtradeLib::Cfg loaded;
    const LibraryCall call;
    const bool isLoaded = loaded.load(file.path()) == OrvComtradeLib::Enums::CfgLoaded;
    call.check(isLoaded, cfg.file);
    if (!isLoaded) {
        throw std::logic_error(cfg.file + ": not written as the library reads it");
    }
    return loaded;
}

} // namespace OrvComtradeIntake
