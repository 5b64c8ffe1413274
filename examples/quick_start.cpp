// The least that a host does: loads the recording named on the command line and looks at its analog channels.

// [quick_start]
#include "Comtrade.h"

#include <iostream>

int main(int argc, char** argv) {
    OrvComtradeLib::Comtrade recording;
    if (argc < 2 || recording.load(argv[1]) != OrvComtradeLib::Enums::Ok) {
        return 1;
    }
    for (const auto& channel : recording.analogChannels) {
        const auto points = channel.getPoints(0.0, -1.0, 1000.0); // the whole recording, 1000 points a second
        std::cout << channel.name() << ": " << points.size() << " points\n";
    }
}
// [/quick_start]
