#include "Dat.h"

#include "FilesHelper.h"
#include "SampleDecoder.h"

#include <OrvCommon.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <stdexcept>

namespace OrvComtradeLib {

namespace {

constexpr std::uint64_t kBlockLength = 256UL * 1024; // bytes read from a binary file at a time
constexpr std::uint64_t kAddressSpace = 1UL << 47U;  // bytes; more samples than these hold cannot exist

/// A text file as a whole.
struct Text {
    std::unique_ptr<char[]> bytes; // left unset before the read, unlike a string
    std::size_t length = 0;

    const char* begin() const { return bytes.get(); }
    const char* end() const { return bytes.get() + length; }
};

/// Reads until the file ends, wherever that is by now; throws on a read error.
Text readText(std::ifstream& in) {
    in.seekg(0, std::ios_base::end);
    const std::streamoff expected = in.tellg();
    in.seekg(0, std::ios_base::beg);
    if (expected < 0 || static_cast<std::uint64_t>(expected) > kAddressSpace) {
        throw std::length_error("length of the data file");
    }
    std::streambuf& buffer = *in.rdbuf();
    std::size_t capacity = static_cast<std::size_t>(expected);
    Text text{std::unique_ptr<char[]>(new char[capacity]), 0};
    for (;;) {
        const auto room = static_cast<std::streamsize>(capacity - text.length);
        const auto read = static_cast<std::size_t>(buffer.sgetn(text.bytes.get() + text.length, room));
        text.length += read;
        if (text.length < capacity || buffer.sgetc() == std::streambuf::traits_type::eof()) {
            return text;
        }
        capacity = 2 * capacity + kBlockLength;
        std::unique_ptr<char[]> larger(new char[capacity]);
        std::copy(text.begin(), text.end(), larger.get());
        text.bytes = std::move(larger);
    }
}

/// Hands the lines on, each without its line feed, until `onLine` gives false. The last may lack a line feed.
template <class OnLine> void forEachLine(const Text& text, OnLine onLine) {
    const char* line = text.begin();
    while (line != text.end()) {
        const auto rest = static_cast<std::size_t>(text.end() - line);
        const auto* const feed = static_cast<const char*>(std::memchr(line, '\n', rest));
        const char* const lineEnd = feed != nullptr ? feed : text.end();
        if (!onLine(line, lineEnd)) {
            return;
        }
        line = feed != nullptr ? feed + 1 : lineEnd;
    }
}

/// Number of lines that are not empty, counted up to `most`.
std::size_t countLines(const Text& text, std::uint64_t most) {
    std::size_t count = 0;
    forEachLine(text, [&](const char* begin, const char* end) {
        count += begin != end ? 1 : 0;
        return count < most;
    });
    return std::min<std::uint64_t>(count, most);
}

} // namespace

Dat::Dat(const Cfg& configuration) : cfg(configuration) {}

int Dat::load(const std::string& path) {
    try {
        if (!Orv::fileExist(path)) {
            return Enums::DatFileNotFound;
        }
        const bool ascii = cfg.dataFileType == Enums::Ascii;
        std::ifstream in = Orv::openInputFileUTF8Name(path, ascii ? std::ios_base::in : std::ios_base::binary);
        if (!in.is_open() || in.bad()) {
            return Enums::DatLoadError;
        }
        const int result = ascii ? _loadAsciiSamples(in) : _loadBinarySamles(in);
        if (result != Enums::Ok) {
            samples.clear();
        }
        lastSampleTime = samples.empty() ? -1.0 : samples.back().time;
        return result;
    } catch (const std::exception&) {
        return Enums::DatLoadError;
    }
}

int Dat::_loadBinarySamles(std::ifstream& in) {
    const std::int64_t length = FilesHelper::fileLenght(in);
    if (length < 1 || cfg.lastSampleNumber == 0 || cfg.recordLength == 0) {
        return Enums::DatLoadError;
    }
    // Less than a record behind the last one is ignored; one record more or less than declared is an error.
    const std::uint64_t recordLength = cfg.recordLength;
    if (static_cast<std::uint64_t>(length) / recordLength != cfg.lastSampleNumber) {
        return Enums::DatLoadError;
    }
    SampleDecoder decoder(cfg);
    if (!decoder.recordsAreWhole()) {
        return Enums::DatLoadError;
    }
    samples.clear();
    samples.reserve(cfg.lastSampleNumber);
    const std::uint64_t recordsPerBlock =
        std::min(std::max<std::uint64_t>(kBlockLength / recordLength, 1), cfg.lastSampleNumber);
    std::vector<char> block(recordsPerBlock * recordLength);
    while (samples.size() < cfg.lastSampleNumber) {
        const std::uint64_t records = std::min(recordsPerBlock, cfg.lastSampleNumber - samples.size());
        const auto wanted = static_cast<std::streamsize>(records * recordLength);
        if (!in.read(block.data(), wanted)) {
            return Enums::DatLoadError;
        }
        for (std::uint64_t record = 0; record < records; ++record) {
            const unsigned long index = samples.size();
            Sample& sample = samples.emplace_back(cfg);
            sample.index = index;
            if (!decoder.decodeRecord(block.data() + record * recordLength, sample)) {
                return Enums::DatLoadError;
            }
        }
    }
    return Enums::Ok;
}

// Deliberate: the number of lines is not compared with the declared count; fewer lines give fewer samples.
int Dat::_loadAsciiSamples(std::ifstream& in) {
    std::vector<Sample>().swap(samples);
    if (cfg.lastSampleNumber > kAddressSpace / sizeof(Sample)) {
        throw std::length_error("vector::reserve");
    }
    const Text text = readText(in);
    samples.reserve(countLines(text, cfg.lastSampleNumber));
    SampleDecoder decoder(cfg);
    bool decoded = true;
    forEachLine(text, [&](const char* begin, const char* end) {
        if (samples.size() == cfg.lastSampleNumber) {
            return false;
        }
        if (begin == end) {
            return true;
        }
        const unsigned long index = samples.size();
        Sample& sample = samples.emplace_back(cfg);
        sample.index = index;
        decoded = decoder.decodeLine(begin, end, sample);
        return decoded;
    });
    return decoded ? Enums::Ok : Enums::DatLoadError;
}

} // namespace OrvComtradeLib
