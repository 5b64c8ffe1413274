#include "Dat.h"

#include "FilesHelper.h"
#include "LineReader.h"
#include "SampleDecoder.h"

#include <OrvCommon.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string_view>

namespace OrvComtradeLib {

namespace {

constexpr std::uint64_t kBlockLength = 256UL * 1024; // bytes read from a binary file at a time
constexpr std::uint64_t kAddressSpace = 1UL << 47U;  // bytes; more samples than these hold cannot exist

/// Length of the whole file; throws where the stream cannot tell, and leaves it at the beginning.
std::uint64_t textLength(std::ifstream& in) {
    in.seekg(0, std::ios_base::end);
    const std::streamoff length = in.tellg();
    in.seekg(0, std::ios_base::beg);
    if (length < 0 || static_cast<std::uint64_t>(length) > kAddressSpace) {
        throw std::length_error("length of the data file");
    }
    return static_cast<std::uint64_t>(length);
}

Sample& appendSample(std::vector<Sample>& samples, const Cfg& cfg) {
    const unsigned long index = samples.size();
    Sample& sample = samples.emplace_back(cfg);
    sample.index = index;
    return sample;
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
            if (!decoder.decodeRecord(block.data() + record * recordLength, appendSample(samples, cfg))) {
                return Enums::DatLoadError;
            }
        }
    }
    return Enums::Ok;
}

int Dat::_loadAsciiSamples(std::ifstream& in) {
    std::vector<Sample>().swap(samples);
    if (cfg.lastSampleNumber > kAddressSpace / sizeof(Sample)) {
        throw std::length_error("vector::reserve");
    }
    SampleDecoder decoder(cfg);
    // No more room than the file can fill, whatever number it declares.
    samples.reserve(std::min(cfg.lastSampleNumber, textLength(in) / decoder.shortestLine() + 1));
    LineReader lines(*static_cast<std::istream&>(in).rdbuf());
    int result = Enums::Ok;
    try {
        std::string_view line;
        // Deliberate: the number of lines is not compared with the declared count; fewer lines give fewer samples.
        while (result == Enums::Ok && samples.size() != cfg.lastSampleNumber && lines.next(line)) {
            if (!line.empty()) {
                const bool decoded = decoder.decodeLine(line, appendSample(samples, cfg));
                result = decoded ? Enums::Ok : Enums::DatLoadError;
            }
        }
        lines.drain(); // a file that cannot be read to its end fails, wherever its samples end
    } catch (...) {
        samples.clear();
        throw;
    }
    if (result == Enums::Ok) {
        samples.shrink_to_fit();
    }
    return result;
}

} // namespace OrvComtradeLib
