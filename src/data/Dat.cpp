#include "Dat.h"

#include "FilesHelper.h"
#include "LineReader.h"
#include "SampleDecoder.h"
#include "hugePages.h"

#include <OrvCommon.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string_view>

namespace OrvComtradeLib {

namespace {

constexpr std::uint64_t kBlockLength = 256UL * 1024; // bytes read from a binary file at a time
constexpr std::uint64_t kAddressSpace = 1UL << 47U;  // bytes; more samples than these hold cannot exist

/// What reading functions of the stream read from, whoever set it.
std::streambuf& bufferOf(std::istream& in) {
    return *in.rdbuf();
}

/// Length of the whole file; throws if the stream cannot give it. The stream is left at the beginning.
std::uint64_t textLength(std::ifstream& in) {
    in.seekg(0, std::ios_base::end);
    const std::streamoff length = in.tellg();
    in.seekg(0, std::ios_base::beg);
    if (length < 0 || static_cast<std::uint64_t>(length) > kAddressSpace) {
        throw std::length_error("length of the data file");
    }
    return static_cast<std::uint64_t>(length);
}

/// Number of lines that are not empty, counted up to `most`; leaves the stream at the beginning.
std::uint64_t countLines(std::ifstream& in, std::uint64_t most) {
    LineReader lines(bufferOf(in));
    std::string_view line;
    std::uint64_t count = 0;
    while (count < most && lines.next(line)) {
        count += line.empty() ? 0U : 1U;
    }
    in.seekg(0, std::ios_base::beg);
    return count;
}

/// How many samples to make room for: the declared ones, unless the file is too short to hold as many lines.
std::uint64_t samplesToExpect(std::ifstream& in, std::uint64_t declared, std::uint64_t shortestLine) {
    const std::uint64_t most = textLength(in) / shortestLine + 1; // the last line may lack its line feed
    return declared <= most ? declared : countLines(in, declared);
}

/// Room for so many samples in a vector that has none.
void reserve(std::vector<Sample>& samples, std::uint64_t count) {
    samples.reserve(count);
    adviseHugePages(samples.data(), samples.capacity() * sizeof(Sample));
}

/// std::vector::shrink_to_fit would copy every sample, since samples do not move; their values do.
void shrinkToFit(std::vector<Sample>& samples, const Cfg& cfg) {
    if (samples.size() == samples.capacity()) {
        return;
    }
    std::vector<Sample> fitting;
    try {
        reserve(fitting, samples.size());
    } catch (const std::bad_alloc&) {
        return; // the room to spare stays
    }
    for (Sample& sample : samples) {
        Sample& moved = fitting.emplace_back(cfg);
        moved.index = sample.index;
        moved.time = sample.time;
        moved.analogValues.swap(sample.analogValues);
        moved.binaryValues.swap(sample.binaryValues);
    }
    samples.swap(fitting);
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
    reserve(samples, cfg.lastSampleNumber);
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
    reserve(samples, samplesToExpect(in, cfg.lastSampleNumber, decoder.shortestLine()));
    LineReader lines(bufferOf(in));
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
        shrinkToFit(samples, cfg);
    }
    return result;
}

} // namespace OrvComtradeLib
