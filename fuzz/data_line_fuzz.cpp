// Five bytes that make a configuration, then a text: as one data line, and as the lines of a data file.

#include "Dat.h"
#include "Sample.h"
#include "support/Input.h"
#include "support/ScratchFolder.h"
#include "support/check.h"
#include "support/configurations.h"
#include "support/reference.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using OrvComtradeLib::Cfg;
using OrvComtradeLib::Dat;
using OrvComtradeLib::Sample;

enum Flags : std::uint8_t {
    LacksARecord = 1,      // fewer analog records than channels
    OtherTotal = 2,        // a total that is not the sum
    ExtremeCounts = 4,     // counts that nothing can hold
    ShortDeclaration = 24, // two bits: how many lines are declared
    FarBehind = 224,       // all three bits: the text lies where the reader's first block of the file ends
};

constexpr std::size_t kBlockLength = 256UL * 1024; // what the data file reader reads at a time

struct Line {
    double time = 0.0;
    std::vector<double> analogValues;
    std::vector<bool> states;
};

bool isSpace(char character) {
    return std::string_view("\t\n\v\f\r ").find(character) != std::string_view::npos;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Reads one data line step by step, as the format's description says; nothing if it is refused.
std::optional<Line> slowLine(std::string_view text, const Cfg& cfg, std::uint64_t index) {
    const auto expected = static_cast<std::uint32_t>(cfg.totalChannelCount) + 2U;
    const auto firstStatus = static_cast<std::uint32_t>(cfg.analogChannelCount) + 2U;
    if (text.empty()) {
        return std::nullopt;
    }
    Line line;
    const auto result = [&line](bool complete) { return complete ? std::optional<Line>(line) : std::nullopt; };
    std::uint32_t field = 0;
    std::size_t at = 0;
    for (;;) {
        while (at < text.size() && isSpace(text[at])) {
            ++at;
        }
        if (at == text.size()) {
            return result(field >= expected);
        }
        if (field >= firstStatus) {
            line.states.push_back(text[at] != '0');
            ++at;
        } else {
            const bool negative = text[at] == '-';
            at += negative ? 1U : 0U;
            if (at == text.size() || !isDigit(text[at])) {
                return std::nullopt;
            }
            std::uint64_t value = 0;
            for (; at < text.size() && isDigit(text[at]); ++at) {
                value = 10 * value + static_cast<std::uint64_t>(text[at] - '0');
            }
            value = negative ? ~value + 1 : value;
            if (field == 1) {
                line.time = fuzz::slowTime(cfg, static_cast<std::uint32_t>(value & 0xFFFFFFFFU), index);
            } else if (field >= 2) {
                if (field - 2 >= cfg.analogChannelConfigs.size()) {
                    return std::nullopt;
                }
                const double raw = static_cast<double>(static_cast<std::int64_t>(value));
                line.analogValues.push_back(fuzz::slowValue(cfg.analogChannelConfigs[field - 2], raw));
            }
        }
        if (at == text.size()) {
            return result(field + 1 >= expected);
        }
        ++field;
        if (text[at] == ',') {
            ++at;
            if (at == text.size()) {
                return result(field >= expected);
            }
        }
        if (field >= expected) {
            return line;
        }
    }
}

void checkSample(const Sample& sample, const Line& line, std::uint64_t index) {
    FUZZ_CHECK(sample.index == index);
    FUZZ_CHECK(fuzz::same(sample.time, line.time));
    FUZZ_CHECK(fuzz::same(sample.analogValues, line.analogValues));
    FUZZ_CHECK(sample.binaryValues == line.states);
}

/// `text` alone, as a string of its length and as one that ends in a zero byte.
void checkLine(const std::string& text, const Cfg& cfg, std::uint64_t index) {
    const std::optional<Line> expected = slowLine(text, cfg, index);
    Sample sample(cfg);
    FUZZ_CHECK(sample.load(text, index) == expected.has_value());
    if (expected) {
        checkSample(sample, *expected, index);
    }
    const std::string literal = text.substr(0, text.find('\0'));
    Sample other(cfg);
    FUZZ_CHECK(other.load(literal.c_str(), index) == slowLine(literal, cfg, index).has_value());
}

/// `text` as the data file, behind `front`: blanks, which belong to its first line, or empty lines.
void checkFile(const std::string& front, const std::string& text, const Cfg& cfg) {
    static const fuzz::ScratchFolder folder;
    std::vector<Line> expected;
    bool accepted = true;
    const bool emptyLines = front.rfind('\n', 0) == 0;
    for (const std::string& line : fuzz::cut(emptyLines ? text : front + text, '\n')) {
        if (expected.size() == cfg.lastSampleNumber) {
            break;
        }
        if (line.empty()) {
            continue;
        }
        std::optional<Line> parsed = slowLine(line, cfg, expected.size());
        if (!parsed) {
            accepted = false;
            break;
        }
        expected.push_back(*parsed);
    }
    Dat dat(cfg);
    const int result = dat.load(folder.write("a.dat", front + text));
    FUZZ_CHECK(result == (accepted ? OrvComtradeLib::Enums::Ok : OrvComtradeLib::Enums::DatLoadError));
    FUZZ_CHECK(dat.samples.size() == (accepted ? expected.size() : 0));
    for (std::size_t i = 0; i < dat.samples.size(); ++i) {
        checkSample(dat.samples[i], expected[i], i);
    }
    FUZZ_CHECK(fuzz::same(dat.lastSampleTime, dat.samples.empty() ? -1.0 : dat.samples.back().time));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::uint8_t analogCount = input.u8() % 24;
    const std::uint8_t statusCount = input.u8() % 96;
    const std::uint8_t times = input.u8();
    const std::uint8_t salt = input.u8();
    const std::uint8_t flags = input.u8();
    const std::string text = input.rest();

    Cfg cfg;
    fuzz::addRecords(cfg, analogCount, statusCount, salt);
    fuzz::addTimes(cfg, times);
    cfg.analogChannelCount = analogCount + ((flags & LacksARecord) != 0 ? 1 : 0);
    cfg.binaryChannelCount = statusCount;
    if ((flags & ExtremeCounts) != 0) {
        static constexpr int kCounts[] = {-1, -2, INT_MAX, INT_MIN, 1000000};
        cfg.analogChannelCount = kCounts[salt % 5];
        cfg.binaryChannelCount = kCounts[salt / 5 % 5];
    }
    cfg.totalChannelCount = static_cast<int>(static_cast<unsigned int>(cfg.analogChannelCount) +
                                             static_cast<unsigned int>(cfg.binaryChannelCount));
    if ((flags & OtherTotal) != 0) {
        cfg.totalChannelCount = salt % 40 - 4;
    }
    static constexpr std::uint64_t kDeclared[] = {1000000000000, 3, 1, 0};
    cfg.lastSampleNumber = kDeclared[(flags & ShortDeclaration) >> 3U];

    checkLine(text, cfg, salt);
    std::uint64_t index = 0;
    for (const std::string& line : fuzz::cut(text, '\n')) {
        checkLine(line, cfg, index++);
    }
    checkFile("", text, cfg);
    if ((flags & FarBehind) == FarBehind) {
        const std::string front(kBlockLength - salt, salt % 2 == 0 ? '\n' : ' '); // empty lines, or one long line
        checkFile(front, text, cfg);
    }
    return 0;
}
