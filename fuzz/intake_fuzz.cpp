// A configuration file, a line "#DAT", a data file; without such a line all of it is a combined file. Whatever the
// bytes, what opens keeps its promises: the findings say why if nothing can be read; load and columns, whole and in
// blocks, agree to the last bit; written in the standard's form, as two files and as one, the recording opens to the
// same, with no finding that is worse and new; in the library's form the library alone gives the same. From files on a
// disk it is the same as from memory.

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/Input.h"
#include "support/ScratchFolder.h"
#include "support/check.h"

#include <OrvComtradeIntake/Intake.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using namespace OrvComtradeIntake;
namespace Enums = OrvComtradeLib::Enums;

void expectNothing(const std::string& broken) {
    if (!broken.empty()) {
        std::fprintf(stderr, "%s\n", broken.c_str());
    }
    FUZZ_CHECK(broken.empty());
}

/// Where the library is said to suffice, it does.
void checkLibrary(const Opened& opened, const std::string& path) {
    if (!opened.librarySuffices()) {
        return;
    }
    OrvComtradeLib::Comtrade alone;
    OrvComtradeLib::Comtrade loaded;
    FUZZ_CHECK(alone.load(path) == Enums::Ok && opened.load(loaded) == Enums::Ok);
    expectNothing(orvtest::firstDifference(alone, loaded));
}

void checkPairOfFiles(const Opened& opened, const Options& options, const Bytes& bytes,
                      const fuzz::ScratchFolder& folder) {
    const std::string path = folder.write("a.cfg", bytes.cfg);
    const std::string datPath = folder.write("a.dat", bytes.dat);
    const Opened fromFiles = open(path, options);
    FUZZ_CHECK(fromFiles.readable() == opened.readable());
    FUZZ_CHECK(orvtest::codesOf(fromFiles) == orvtest::codesOf(opened));
    if (opened.readable()) {
        expectNothing(orvtest::firstDifference(fromFiles.header(), opened.header()));
        expectNothing(orvtest::firstDifference(fromFiles.columns(), opened.columns()));
        checkLibrary(fromFiles, path);
    }
    std::filesystem::remove(path); // to write over a file waits for the disk
    std::filesystem::remove(datPath);
}

Options optionsBy(std::uint64_t hash) {
    static constexpr Side kSides[] = {Side::Recorded, Side::Primary, Side::Secondary};
    Options options;
    options.side = kSides[hash % 3];
    options.acceptsAnyNumbers = hash / 3 % 4 == 0;
    return options;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    fuzz::Input input(data, size);
    const std::string cfg = input.upTo("#DAT\n");
    const std::string dat = input.rest();
    const Options options = optionsBy(fuzz::hashOf(cfg));

    Bytes bytes;
    bytes.cfg = cfg;
    if (!dat.empty()) {
        bytes.dat = dat;
    }
    const Opened opened = open(bytes, options);
    expectNothing(orvtest::firstBrokenPromise(opened, options, folder.path()));
    if (!dat.empty()) {
        checkPairOfFiles(opened, options, bytes, folder);
    }
    return 0;
}
