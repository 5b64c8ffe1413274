#include <OrvComtradeIntake/Intake.h>

#include <OrvComtradeLib/Comtrade.h>
#include <cstdio>

int main(int argc, char** argv) {
    const OrvComtradeIntake::Opened opened = OrvComtradeIntake::open(argc > 1 ? argv[1] : "absent.cfg");
    OrvComtradeLib::Comtrade recording;
    const int result = opened.load(recording);
    std::printf("%d %zu %zu\n", result, recording.analogChannels.size(), opened.findings().size());
    return result == OrvComtradeLib::Enums::Ok && opened.header().start ? 0 : 1;
}
