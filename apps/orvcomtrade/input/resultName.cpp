#include "input/resultName.h"

#include "Enums.h"

namespace Enums = OrvComtradeLib::Enums;

const char* resultName(int code) {
    switch (code) {
    case Enums::Ok:
        return "Ok";
    case Enums::NotComtradeFile:
        return "NotComtradeFile";
    case Enums::CfgFileNotFound:
        return "CfgFileNotFound";
    case Enums::CfgLoadError:
        return "CfgLoadError";
    case Enums::CfgLoaded:
        return "CfgLoaded";
    case Enums::DatFileNotFound:
        return "DatFileNotFound";
    case Enums::DatLoadError:
        return "DatLoadError";
    default:
        return "unknown result";
    }
}
