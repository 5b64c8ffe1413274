// A configuration file, a line "#DAT", a data file; without such a line all of it is a combined file. What the intake
// hands out loads, and preparing that once more finds nothing to mend; the files stay as they are and nothing is left
// behind.

#include "Comtrade.h"
#include "Intake.h"
#include "support/Input.h"
#include "support/ScratchFolder.h"
#include "support/check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
namespace Enums = OrvComtradeLib::Enums;
namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

fs::path folderOf(const fuzz::ScratchFolder& folder) {
    return fs::path(folder.write("kept", "")).parent_path();
}

bool isError(const Finding& finding) {
    return finding.severity == Severity::Error;
}

bool isMended(const Finding& finding) {
    return finding.mended;
}

bool any(const PreparedRecording& prepared, bool (*condition)(const Finding&)) {
    return std::any_of(prepared.findings.begin(), prepared.findings.end(), condition);
}

/// Missing values lie inside the recording, by channel and then sample, and do not touch.
void checkMissing(const PreparedRecording& prepared) {
    const MissingRun* before = nullptr;
    for (const MissingRun& run : prepared.missing) {
        FUZZ_CHECK(run.channel < prepared.analog.size() && run.count > 0);
        FUZZ_CHECK(run.sample + run.count <= prepared.samplesPresent);
        FUZZ_CHECK(before == nullptr || before->channel < run.channel ||
                   (before->channel == run.channel && before->sample + before->count < run.sample));
        before = &run;
    }
}

void checkFindings(const PreparedRecording& prepared) {
    for (const Finding& finding : prepared.findings) {
        FUZZ_CHECK(!finding.code.empty() && finding.places > 0);
        FUZZ_CHECK(!finding.mended || !finding.done.empty());
    }
    FUZZ_CHECK(prepared.readable() || (any(prepared, isError) && prepared.scratch.path().empty()));
    FUZZ_CHECK(!prepared.readable() || prepared.isOriginal() != any(prepared, isMended));
}

void checkLoads(const PreparedRecording& prepared) {
    OrvComtradeLib::Comtrade recording;
    FUZZ_CHECK(recording.load(prepared.path) == Enums::Ok);
    FUZZ_CHECK(recording.analogChannels.size() == prepared.analog.size());
    FUZZ_CHECK(recording.dat.samples.size() == prepared.samplesPresent);
}

void checkPreparedAgain(const PreparedRecording& prepared, const Options& options) {
    static const fuzz::ScratchFolder folder;
    fs::path dat = prepared.path;
    folder.write("a.dat", bytesOf(dat.replace_extension(".dat")));
    const PreparedRecording again = prepare(folder.write("a.cfg", bytesOf(prepared.path)), options);
    checkFindings(again);
    FUZZ_CHECK(!any(again, isMended) && again.isOriginal());
    FUZZ_CHECK(again.samplesPresent == prepared.samplesPresent && again.missing.size() == prepared.missing.size());
    FUZZ_CHECK(again.start == prepared.start && again.trigger == prepared.trigger);
}

void check(const std::string& path, const Options& options) {
    const PreparedRecording prepared = prepare(path, options);
    checkFindings(prepared);
    checkMissing(prepared);
    if (prepared.readable()) {
        checkLoads(prepared);
        checkPreparedAgain(prepared, options);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder pairs;
    static const fuzz::ScratchFolder combined;
    static const fuzz::ScratchFolder scratch;
    static const fs::path scratchFolder = folderOf(scratch);

    fuzz::Input input(data, size);
    const std::string cfg = input.upTo("#DAT\n");
    const bool isPair = cfg.size() < size;
    const std::string bytes = input.rest();
    const std::string path = isPair ? pairs.write("a.cfg", cfg) : combined.write("a.cff", cfg);
    const std::string datPath = isPair ? pairs.write("a.dat", bytes) : "";

    Options options;
    options.scratchFolder = scratchFolder.string();
    static constexpr Side kSides[] = {Side::Recorded, Side::Primary, Side::Secondary};
    options.side = kSides[fuzz::hashOf(cfg) % 3];
    check(path, options);

    FUZZ_CHECK(bytesOf(path) == cfg && (!isPair || bytesOf(datPath) == bytes));
    FUZZ_CHECK(std::distance(fs::directory_iterator(scratchFolder), fs::directory_iterator()) == 1); // "kept"
    return 0;
}
