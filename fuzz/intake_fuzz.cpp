// A recording (support/recordings.h). Whatever the bytes, what opens keeps its promises: the findings say why if
// nothing can be read; load and columns, whole and in blocks, agree to the last bit; written in the standard's form, as
// two files and as one, the recording opens to the same, with no finding that is worse and new; in the library's form
// the library alone gives the same. From files on a disk it is the same as from memory.

#include "Comtrade.h"
#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/ScratchFolder.h"
#include "support/recordings.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace {

using namespace OrvComtradeIntake;
namespace Enums = OrvComtradeLib::Enums;

/// Where the library is said to suffice, it does.
void checkLibrary(const Opened& opened, const std::string& path) {
    if (!opened.librarySuffices()) {
        return;
    }
    OrvComtradeLib::Comtrade alone;
    OrvComtradeLib::Comtrade loaded;
    FUZZ_CHECK(alone.load(path) == Enums::Ok && opened.load(loaded) == Enums::Ok);
    fuzz::expectNothing(orvtest::firstDifference(alone, loaded));
}

void checkPairOfFiles(const Opened& opened, const Options& options, const Bytes& bytes,
                      const fuzz::ScratchFolder& folder) {
    const std::string path = folder.write("a.cfg", bytes.cfg);
    const std::string datPath = folder.write("a.dat", bytes.dat);
    const Opened fromFiles = open(path, options);
    FUZZ_CHECK(fromFiles.readable() == opened.readable());
    FUZZ_CHECK(orvtest::codesOf(fromFiles) == orvtest::codesOf(opened));
    if (opened.readable()) {
        fuzz::expectNothing(orvtest::firstDifference(fromFiles.header(), opened.header()));
        fuzz::expectNothing(orvtest::firstDifference(fromFiles.columns(), opened.columns()));
        checkLibrary(fromFiles, path);
    }
    std::filesystem::remove(path); // to write over a file waits for the disk
    std::filesystem::remove(datPath);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    fuzz::Input input(data, size);
    const fuzz::Files files(input);
    const std::uint64_t hash = fuzz::hashOf(files.cfg);
    Options options = fuzz::optionsBy(hash);
    options.limits = {}; // what is written may be beyond them
    const Bytes bytes = files.bytes();
    const Opened opened = open(bytes, options);
    fuzz::expectNothing(orvtest::firstBrokenFinding(opened));
    const std::uint64_t part = hash >> 32U & 3U; // a fuzzer has many inputs, a replay few
    if (!fuzz::kIsFuzzer || part == 0) {
        fuzz::expectNothing(orvtest::firstBrokenLoad(opened));
    }
    if (!fuzz::kIsFuzzer || part == 0) {
        const auto openInto = [&](OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection) {
            return open(bytes, columns, selection, options);
        };
        fuzz::expectNothing(orvtest::firstBrokenReading(opened, openInto));
    }
    if (!fuzz::kIsFuzzer || part == 1) {
        fuzz::expectNothing(orvtest::firstBrokenWriting(opened, options, folder.path()));
    }
    if (!files.dat.empty() && (!fuzz::kIsFuzzer || part > 1)) {
        checkPairOfFiles(opened, options, bytes, folder);
    }
    return 0;
}
