#include "Intake.h"

#include "Comtrade.h"

#include <cstdio>

int main(int argc, char** argv) {
    const OrvComtradeIntake::PreparedRecording prepared = OrvComtradeIntake::prepare(argc > 1 ? argv[1] : "absent.cfg");
    OrvComtradeLib::Comtrade recording;
    const int result = recording.load(prepared.path);
    std::printf("%d %zu %zu\n", result, recording.analogChannels.size(), prepared.findings.size());
    return result == OrvComtradeLib::Enums::Ok && prepared.start ? 0 : 1;
}
