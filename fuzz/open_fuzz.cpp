// A recording (support/recordings.h), opened from memory and, for some inputs, from files under names of several kinds,
// while an allocation fails, or while a read does. Whatever the bytes, there is a recording or an error that says why;
// files give what their bytes in memory give; a failure is reported as such, or has no effect.

#include "intake/comparison.h"
#include "intake/openedChecks.h"
#include "support/AllocationBudget.h"
#include "support/ScratchFolder.h"
#include "support/failingReads.h"
#include "support/recordings.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;

/// All that opening gives, and what it says of it.
std::string accountOf(const Opened& opened) {
    return std::to_string(static_cast<int>(opened.readable())) + opened.cfgFile() + opened.datFile() +
           orvtest::text(opened);
}

/// Files under names that lead to each other; removed at the end.
class FilesOnDisk {
public:
    FilesOnDisk(const fuzz::ScratchFolder& folder, const fuzz::Files& files, std::uint64_t hash) {
        static constexpr const char* kNames[][3] = {{"a.cfg", "a.dat", "a.hdr"},
                                                    {"A.CFG", "A.DAT", "A.HDR"},
                                                    {"a.Cfg", "A.dat", "a.inf"},
                                                    {"rec.1.cfg", "rec.1.DAT", "rec.1.INF"}};
        const auto& names = kNames[hash % 4];
        _paths.push_back(folder.write(names[0], files.cfg));
        if (!files.dat.empty()) {
            _paths.push_back(folder.write(names[1], files.dat));
        }
        _given = _paths[hash / 4 % _paths.size()];
        if (hash / 8 % 2 == 0) {
            _text = files.dat.substr(0, 64);
            _isInformation = hash % 4 >= 2;
            _paths.push_back(folder.write(names[2], _text));
        }
    }

    ~FilesOnDisk() {
        for (const std::string& path : _paths) { // to write over a file waits for the disk
            std::remove(path.c_str());
        }
    }

    FilesOnDisk(const FilesOnDisk&) = delete;
    FilesOnDisk& operator=(const FilesOnDisk&) = delete;
    FilesOnDisk(FilesOnDisk&&) = delete;
    FilesOnDisk& operator=(FilesOnDisk&&) = delete;

    const std::string& given() const { return _given; }

    /// The same in memory, the text next to them too; neither may go before what is opened.
    Bytes bytes(const fuzz::Files& files) const {
        Bytes bytes = files.bytes();
        (_isInformation ? bytes.inf : bytes.hdr) = _text;
        return bytes;
    }

private:
    std::vector<std::string> _paths;
    std::string _given;
    std::string _text;
    bool _isInformation = false;
};

void checkFiles(const Options& options, const fuzz::Files& files, const FilesOnDisk& onDisk) {
    const Opened opened = open(onDisk.bytes(files), options);
    const Opened fromFiles = open(onDisk.given(), options);
    FUZZ_CHECK(fromFiles.readable() == opened.readable());
    FUZZ_CHECK(orvtest::codesOf(fromFiles) == orvtest::codesOf(opened));
    fuzz::expectNothing(orvtest::firstDifference(fromFiles.header(), opened.header()));
    if (opened.readable() && !files.dat.empty()) {
        fuzz::expectNothing(orvtest::firstDifference(fromFiles.columns(), opened.columns()));
    }
}

void checkFailingAllocation(const Options& options, const Bytes& bytes, std::uint64_t hash) {
    const std::string expected = accountOf(open(bytes, options));
    std::optional<Opened> opened;
    try {
        const orvtest::AllocationBudget budget(hash / 2 % 700,
                                               hash % 2 == 0 ? orvtest::Failing::Once : orvtest::Failing::FromThenOn);
        opened.emplace(open(bytes, options));
        opened->findings();
    } catch (const std::bad_alloc&) {
        FUZZ_CHECK(accountOf(open(bytes, options)) == expected);
    }
    FUZZ_CHECK(!opened || accountOf(*opened) == expected); // also where only its findings failed
}

void checkFailingRead(const Options& options, const std::string& path, std::uint64_t hash) {
    const std::string expected = accountOf(open(path, options));
    const bool isError = hash / 16 % 2 == 0;
    const fuzz::FailingRead failing(hash % 16, isError ? fuzz::ReadFailure::Error : fuzz::ReadFailure::Short);
    const std::string found = accountOf(open(path, options));
    FUZZ_CHECK(found == expected || (isError && found.find("Input/output error") != std::string::npos));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    fuzz::Input input(data, size);
    const fuzz::Files files(input);
    const std::uint64_t hash = fuzz::hashOf(files.cfg) ^ fuzz::hashOf(files.dat);
    const Options options = fuzz::optionsBy(hash);
    const Bytes bytes = files.bytes();
    const std::uint64_t choice = hash >> 20U;
    try {
        const Opened opened = open(bytes, options);
        fuzz::expectNothing(orvtest::firstBrokenFinding(opened));
        if (choice % 16 == 0) {
            const FilesOnDisk onDisk(folder, files, choice / 16);
            checkFiles(options, files, onDisk);
        } else if (choice % 16 == 1) {
            checkFailingAllocation(options, bytes, choice / 16);
        } else if (choice % 16 == 2) {
            const FilesOnDisk onDisk(folder, files, choice / 16);
            checkFailingRead(options, onDisk.given(), choice / 256);
        }
    } catch (const std::invalid_argument&) {
        FUZZ_CHECK(!options.encoding.empty());
    }
    return 0;
}
