#include "Comtrade.h"
#include "toUtf8.h"

#ifdef CONSUMER_NAMES_THE_FOLDER
#include <OrvComtradeLib/Comtrade.h>
#include <OrvComtradeLib/Enums.h>
#endif

#include <cstdio>

int main(int argc, char** argv) {
    OrvComtradeLib::Comtrade recording;
    const int result = recording.load(argc > 1 ? argv[1] : "absent.cfg");
    std::printf("%d %zu %s\n", result, recording.analogChannels.size(), toUtf8::detectAndConvert("\xCF").c_str());
    return result == OrvComtradeLib::Enums::Ok && !recording.analogChannels.empty() ? 0 : 1;
}
