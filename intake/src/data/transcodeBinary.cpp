#include "DataLayout.h"
#include "LineText.h"
#include "OutputFile.h"
#include "RecordReader.h"
#include "stamps.h"
#include "transcode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint32_t kMissingSingle = 0x7FC00000; // NaN
constexpr std::size_t kStatesOfWord = 16;
constexpr std::array<std::int64_t, 2> kPowers = {1, 10};

class RecordWriter {
public:
    RecordWriter(const Configuration& configuration, const DataSurvey& survey, OutputFile& out)
        : _layout(configuration), _survey(survey), _out(out), _from(configuration.encoding),
          _stamped(configuration.timesAreStamped()), _stamps(survey) {}

    void write(const char* record) {
        if (_survey.encoding == DataEncoding::Ascii) {
            _writeLine(record);
        } else {
            _writeRecord(record);
        }
        _out.flushIfLarge();
    }

private:
    std::uint64_t _stampOf(const char* record) {
        const std::uint32_t stamp = littleEndian32(record + DataLayout::kStampOffset);
        if (!_stamped) {
            return stamp;
        }
        return _stamps.next(stamp == kMissingStamp ? std::nullopt : std::optional<std::int64_t>(stamp));
    }

    void _writeRecord(const char* record) {
        std::string& bytes = _out.buffer();
        const std::size_t begin = bytes.size();
        bytes.append(record, _layout.recordLength());
        char* const written = bytes.data() + begin;
        putLittleEndian32(written + DataLayout::kStampOffset, static_cast<std::uint32_t>(_stampOf(record)));
        if (_from == DataEncoding::Binary32) {
            _makeSingles(written + DataLayout::kAnalogOffset);
        }
    }

    void _makeSingles(char* values) const {
        for (std::size_t i = 0; i < _layout.analogs; ++i, values += 4) {
            const std::uint32_t bits = littleEndian32(values);
            const auto single = static_cast<float>(static_cast<std::int32_t>(bits));
            std::uint32_t singleBits = 0;
            std::memcpy(&singleBits, &single, sizeof singleBits);
            putLittleEndian32(values, bits == kMissing32 ? kMissingSingle : singleBits);
        }
    }

    void _writeLine(const char* record) {
        LineText line(_out.buffer(), 2 + _layout.analogs, _layout.statuses);
        line.addNumber(littleEndian32(record));
        line.addNumber(static_cast<std::int64_t>(_stampOf(record)));
        for (std::size_t i = 0; i < _layout.analogs; ++i) {
            const std::uint32_t bits = littleEndian32(record + DataLayout::kAnalogOffset + 4 * i);
            line.addNumber(bits == kMissing32 ? kMissingText : static_cast<std::int32_t>(bits) * _factor(i));
        }
        const char* const words = record + _layout.statusOffset();
        for (std::size_t i = 0; i < _layout.statuses; i += kStatesOfWord) {
            line.addStates(littleEndian16(words + i / 8), std::min(_layout.statuses - i, kStatesOfWord));
        }
        line.finish();
    }

    std::int64_t _factor(std::size_t channel) const {
        return _survey.exponents.empty() ? 1 : kPowers.at(static_cast<std::size_t>(_survey.exponents[channel]));
    }

    DataLayout _layout;
    const DataSurvey& _survey;
    OutputFile& _out;
    DataEncoding _from;
    bool _stamped;
    StampWriter _stamps;
};

} // namespace

void transcodeBinary(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
                     OutputFile& out) {
    RecordWriter writer(configuration, survey, out);
    RecordReader reader(source, survey.recordStride);
    std::uint64_t written = 0;
    while (const std::size_t present = reader.next()) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(present, survey.samples - written));
        for (std::size_t i = 0; i < count; ++i) {
            writer.write(reader.records() + i * survey.recordStride);
        }
        written += count;
        if (written == survey.samples) {
            return;
        }
    }
}

} // namespace OrvComtradeIntake
