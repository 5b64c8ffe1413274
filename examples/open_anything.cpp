// Opens a recording as a device wrote it, reports what is wrong with it, and loads it.

#include "Comtrade.h"
#include "host.h"

#include <OrvComtradeIntake/Intake.h>

#include <exception>
#include <iostream>
#include <string>

namespace {

// [open]
bool open(const std::string& path) {
    const OrvComtradeIntake::Opened opened = OrvComtradeIntake::open(path);
    for (const OrvComtradeIntake::Finding& finding : opened.findings()) {
        std::cout << finding.code << ", line " << finding.place.line << ": " << host::printable(finding.found) << '\n';
    }
    OrvComtradeLib::Comtrade recording;
    if (opened.load(recording) != OrvComtradeLib::Enums::Ok) {
        std::cout << "not readable\n";
        return false;
    }
    std::cout << recording.dat.samples.size() << " samples of " << recording.analogChannels.size() << " analog and "
              << recording.binaryChannels.size() << " status channels\n";
    if (opened.header().start) {
        std::cout << "begins at " << opened.header().start->text() << '\n';
    }
    return true;
}
// [/open]

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: open_anything FILE\n";
        return 2;
    }
    try {
        const bool opened = open(argv[1]);
        std::cout.flush();
        return opened && std::cout ? 0 : 1;
    } catch (const std::exception& problem) {
        std::cerr << host::printable(problem.what()) << '\n';
        return 1;
    }
}
