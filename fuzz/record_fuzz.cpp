// Five bytes that make a configuration, then records: the first of them alone, and all as a data file. A flag makes the
// configuration one that no file yields, its lengths taken from the input; such a one meets only the data file reader,
// which must refuse what does not lie inside a record.

#include "Dat.h"
#include "Sample.h"
#include "support/Input.h"
#include "support/ScratchFolder.h"
#include "support/check.h"
#include "support/configurations.h"
#include "support/reference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using OrvComtradeLib::Cfg;
using OrvComtradeLib::Dat;
using OrvComtradeLib::Sample;
namespace Enums = OrvComtradeLib::Enums;

enum Flags : std::uint8_t {
    Inconsistent = 4, // the two bits below are the type
    HugeLengths = 8,
    LacksARecord = 16,
    MoreDeclared = 32,
    FewerDeclared = 64,
    ManyRecords = 96, // both: as declared, but (where they are long) more of them than the reader takes at a time
    OtherType = 128,
};

constexpr std::size_t kBlockLength = 256UL * 1024; // what the data file reader reads at a time

/// The little-endian number of `length` bytes; what lies behind the record is a finding.
std::uint32_t field(std::string_view record, std::uint64_t offset, unsigned int length) {
    FUZZ_CHECK(offset + length <= record.size());
    std::uint32_t value = 0;
    for (unsigned int i = 0; i < length; ++i) {
        value += static_cast<std::uint32_t>(static_cast<unsigned char>(record[offset + i])) << (8 * i);
    }
    return value;
}

double rawValue(std::string_view record, std::uint64_t offset, Enums::DataFileType type) {
    switch (type) {
    case Enums::Binary: {
        const std::uint32_t word = field(record, offset, 2);
        return static_cast<double>(word) - (word >= 0x8000 ? 65536.0 : 0.0);
    }
    case Enums::Binary32: {
        const std::uint32_t word = field(record, offset, 4);
        return static_cast<double>(word) - (word >= 0x80000000U ? 4294967296.0 : 0.0); // 2^31 and 2^32
    }
    case Enums::Float32: {
        const std::uint32_t word = field(record, offset, 4);
        float value = 0.0F;
        std::memcpy(&value, &word, sizeof value);
        return static_cast<double>(value);
    }
    default:
        return 0.0;
    }
}

void checkSample(const Sample& sample, std::string_view record, std::uint64_t index) {
    const Cfg& cfg = sample.cfg;
    FUZZ_CHECK(sample.index == index);
    FUZZ_CHECK(fuzz::same(sample.time, fuzz::slowTime(cfg, field(record, 4, 4), index)));
    std::vector<double> values;
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(cfg.analogChannelCount); ++i) {
        const std::uint64_t offset = 8 + std::uint64_t{i} * cfg.analogValueLength;
        values.push_back(fuzz::slowValue(cfg.analogChannelConfigs.at(i), rawValue(record, offset, cfg.dataFileType)));
    }
    FUZZ_CHECK(fuzz::same(sample.analogValues, values));
    std::vector<bool> states;
    const std::uint32_t words = cfg.binaryChannelCount == 0 ? 0 : cfg.statusWordCount;
    for (std::uint32_t group = 0; group < words; ++group) {
        const std::uint32_t left = static_cast<std::uint32_t>(cfg.binaryChannelCount) - 16 * group;
        for (std::uint32_t bit = 0; bit < std::min<std::uint32_t>(left, 16); ++bit) {
            const std::uint64_t offset = 8 + std::uint64_t{cfg.analogValuesLength} + 2 * std::uint64_t{group};
            states.push_back((field(record, offset, 2) >> bit) % 2 == 1);
        }
    }
    FUZZ_CHECK(sample.binaryValues == states);
}

void checkRecord(const std::string& bytes, const Cfg& cfg) {
    const std::size_t length = cfg.recordLength;
    const std::unique_ptr<char[]> record(
        new char[length]()); // exactly as long, so that a sanitizer sees what is behind
    std::copy_n(bytes.data(), std::min(length, bytes.size()), record.get());
    Sample sample(cfg);
    const bool complete = static_cast<std::size_t>(cfg.analogChannelCount) <= cfg.analogChannelConfigs.size();
    FUZZ_CHECK(sample.load(record.get(), 3) == complete);
    if (complete) {
        checkSample(sample, {record.get(), length}, 3);
    }
}

void checkFile(const std::string& bytes, const Cfg& cfg, bool consistent) {
    static const fuzz::ScratchFolder folder;
    Dat dat(cfg);
    const int result = dat.load(folder.write("a.dat", bytes));
    const bool matches = !bytes.empty() && cfg.lastSampleNumber != 0 && cfg.recordLength != 0 &&
                         bytes.size() / cfg.recordLength == cfg.lastSampleNumber;
    const bool complete = static_cast<std::uint32_t>(cfg.analogChannelCount) <= cfg.analogChannelConfigs.size();
    FUZZ_CHECK(result == Enums::Ok || result == Enums::DatLoadError);
    FUZZ_CHECK(result == Enums::DatLoadError || matches);
    FUZZ_CHECK(!consistent || (result == Enums::Ok) == (matches && complete));
    FUZZ_CHECK(dat.samples.size() == (result == Enums::Ok ? cfg.lastSampleNumber : 0));
    for (std::size_t i = 0; i < dat.samples.size(); ++i) {
        checkSample(dat.samples[i], std::string_view(bytes).substr(i * cfg.recordLength, cfg.recordLength), i);
    }
    FUZZ_CHECK(fuzz::same(dat.lastSampleTime, dat.samples.empty() ? -1.0 : dat.samples.back().time));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint8_t analogCount = input.u8() % 40;
    const std::uint8_t statusCount = input.u8();
    const std::uint8_t times = input.u8();
    const std::uint8_t salt = input.u8();
    const std::uint8_t flags = input.u8();

    Cfg cfg;
    fuzz::addRecords(cfg, analogCount, statusCount, salt);
    fuzz::addTimes(cfg, times);
    cfg.analogChannelCount = analogCount + ((flags & LacksARecord) != 0 ? 1 : 0);
    cfg.binaryChannelCount = statusCount;
    cfg.totalChannelCount = cfg.analogChannelCount + cfg.binaryChannelCount;
    cfg.dataFileType = static_cast<Enums::DataFileType>((flags & 3U) + ((flags & OtherType) != 0 ? 4U : 0U));
    cfg.analogValueLength = cfg.dataFileType == Enums::Binary32 || cfg.dataFileType == Enums::Float32 ? 4 : 2;
    cfg.analogValuesLength = cfg.analogValueLength * static_cast<std::uint32_t>(cfg.analogChannelCount);
    cfg.statusWordCount = (statusCount + 15U) / 16;
    cfg.statusWordsLength = 2 * cfg.statusWordCount;
    cfg.recordLength = 8 + cfg.analogValuesLength + cfg.statusWordsLength;
    const bool consistent = (flags & Inconsistent) == 0;
    if (!consistent) {
        const auto length = [&] { return (flags & HugeLengths) != 0 ? input.u32() : input.u8(); };
        cfg.analogValueLength = length();
        cfg.analogValuesLength = length();
        cfg.statusWordCount = length();
        cfg.recordLength = length();
        if ((flags & HugeLengths) != 0) {
            cfg.analogChannelCount = static_cast<int>(input.u32());
            cfg.binaryChannelCount = static_cast<int>(input.u32());
        }
    }
    std::string bytes = input.rest();
    if ((flags & ManyRecords) == ManyRecords && cfg.recordLength >= 128 && !bytes.empty()) {
        const std::string once = bytes;
        while (bytes.size() <= kBlockLength) {
            bytes += once;
        }
    }
    cfg.lastSampleNumber = bytes.size() / std::max(cfg.recordLength, 1U);
    cfg.lastSampleNumber += (flags & MoreDeclared) != 0 ? 1U : 0U;
    cfg.lastSampleNumber -= (flags & FewerDeclared) != 0 ? 1U : 0U;

    if (consistent) {
        checkRecord(bytes, cfg);
    }
    if (cfg.dataFileType != Enums::Ascii) {
        checkFile(bytes, cfg, consistent);
    }
    return 0;
}
