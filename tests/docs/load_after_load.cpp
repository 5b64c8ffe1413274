// What a recording object holds after one load after another: load_after_load FOLDER makes the files in the empty
// folder.

#include "Comtrade.h"
#include "small_recording.h"
#include "support/files.h"

#include <filesystem>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string outcome(OrvComtradeLib::Comtrade& recording, const std::string& path) {
    try {
        return std::to_string(recording.load(path));
    } catch (const std::out_of_range&) {
        return "throws";
    }
}

void row(const OrvComtradeLib::Comtrade& recording, const std::string& file, const std::string& result) {
    std::cout << std::left << std::setw(15) << file << std::setw(8) << result << std::setw(8)
              << (recording.loaded ? "yes" : "no") << std::setw(10) << fs::path(recording.filePath).filename().string()
              << std::setw(13) << fs::path(recording.datFileName).filename().string() << std::setw(10)
              << recording.duration << std::setw(7) << recording.cfg.samplingRates.size() << std::setw(9)
              << recording.dat.samples.size() << recording.analogChannels.size() << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const fs::path folder = argv[1];
    std::vector<std::string> withoutType = small::cfgLines();
    withoutType.resize(small::Type - 1);
    orvtest::writeFile(folder / "good.cfg", small::joined(small::cfgLines()));
    orvtest::writeFile(folder / "good.dat", small::asciiData());
    orvtest::writeFile(folder / "broken.cfg", small::joined(withoutType));
    orvtest::writeFile(folder / "no_data.cfg", small::joined(small::cfgLines()));
    orvtest::writeFile(folder / "cut.cfg", small::joined(small::cfgLines()));
    orvtest::writeFile(folder / "cut.dat", "1,0,10,1\n");
    fs::current_path(folder);

    OrvComtradeLib::Comtrade recording;
    std::cout << "load           result  loaded  filePath  datFileName  duration  rates  samples  views\n";
    row(recording, "(none)", "");
    for (const char* file :
         {"good.cfg", "good", "notes.txt", "absent.cfg", "broken.cfg", "no_data.cfg", "cut.cfg", "good.cfg"}) {
        const std::string result = outcome(recording, file);
        row(recording, file, result);
    }
}
