// Opens a recording as a device wrote it: the intake prepares it, tells what it mended, and the library reads the rest.

#include "Comtrade.h"
#include "Intake.h"
#include "host.h"

#include <exception>
#include <iostream>
#include <string>

namespace {

// [open]
bool open(const std::string& path) {
    const OrvComtradeIntake::PreparedRecording prepared = OrvComtradeIntake::prepare(path);
    for (const OrvComtradeIntake::Finding& finding : prepared.findings) {
        std::cout << finding.code << ", line " << finding.line << ": "
                  << (finding.found.empty() ? "nothing" : host::printable(finding.found))
                  << (finding.done.empty() ? "" : "; ") << host::printable(finding.done) << '\n';
    }
    OrvComtradeLib::Comtrade recording;
    if (!prepared.readable() || recording.load(prepared.path) != OrvComtradeLib::Enums::Ok) {
        std::cout << "not readable\n";
        return false;
    }
    std::cout << (prepared.isOriginal() ? "read as it is: " : "read after mending: ") << recording.dat.samples.size()
              << " samples of " << recording.analogChannels.size() << " analog and " << recording.binaryChannels.size()
              << " status channels\n";
    if (prepared.start) {
        std::cout << "begins at " << prepared.start->text() << '\n';
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
