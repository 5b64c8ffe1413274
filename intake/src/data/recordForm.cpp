#include "data/recordForm.h"

#include "data/DataLayout.h"
#include "data/watches.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kLeastBytes = 4096; // looked at
constexpr std::uint64_t kMostBytes = 256UL * 1024;
constexpr std::size_t kMostRecords = 64;           // of which the numbers are looked at
constexpr std::size_t kMostPadding = 16;           // bytes behind each record
constexpr std::size_t kLongestRecord = 8UL * 1024; // that is searched for

using Number = std::uint32_t (*)(const char*);

std::uint32_t littleEndian(const char* bytes) {
    return OrvComtradeLib::readLittleEndian<std::uint32_t>(bytes);
}

std::uint32_t bigEndian(const char* bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i) {
        number = number << 8U | static_cast<unsigned char>(bytes[i]);
    }
    return number;
}

std::vector<std::uint32_t> fieldsAt(std::string_view bytes, std::size_t offset, std::size_t distance, Number number) {
    std::vector<std::uint32_t> fields;
    for (std::size_t record = 0; record + distance <= bytes.size() && fields.size() < kMostRecords;
         record += distance) {
        fields.push_back(number(bytes.data() + record + offset));
    }
    return fields;
}

/// Steps that are equal to the one given.
std::size_t countSteps(const std::vector<std::uint32_t>& fields, std::uint32_t step) {
    std::size_t count = 0;
    for (std::size_t i = 1; i < fields.size(); ++i) {
        count += fields[i] - fields[i - 1] == step ? 1U : 0U;
    }
    return count;
}

/// Whether nearly all numbers are one more than the one before: chance does not bring that about twice.
bool numbersGoOn(std::string_view bytes, std::size_t distance, Number number = littleEndian) {
    const std::vector<std::uint32_t> numbers = fieldsAt(bytes, 0, distance, number);
    return numbers.size() > 1 && 10 * countSteps(numbers, 1) >= 9 * (numbers.size() - 1);
}

/// Whether the first numbers go on, whatever comes behind: bytes may be lost there.
bool beginWell(std::string_view bytes, std::size_t distance) {
    return bytes.size() >= 3 * distance && numbersGoOn(bytes.substr(0, 3 * distance), distance);
}

/// Whether the numbers follow any rule, or the stamps rise: some recorders leave the numbers alone.
bool makesSense(std::string_view bytes, std::size_t distance) {
    const std::vector<std::uint32_t> numbers = fieldsAt(bytes, 0, distance, littleEndian);
    if (numbers.size() < 2) {
        return true; // nothing to compare with
    }
    const bool isRegular = 2 * countSteps(numbers, numbers[1] - numbers[0]) > numbers.size() - 1;
    const std::vector<std::uint32_t> stamps = fieldsAt(bytes, DataLayout::kStampOffset, distance, littleEndian);
    const bool doStampsRise = std::is_sorted(stamps.begin(), stamps.end()) && stamps.front() != stamps.back();
    return (isRegular && numbers.size() > 2) || doStampsRise || 2 * countSteps(numbers, 1) >= numbers.size() - 1;
}

bool isOfText(char byte) {
    constexpr std::string_view others = "+-.eE, \t\r\n\x1A";
    return (byte >= '0' && byte <= '9') || others.find(byte) != std::string_view::npos;
}

bool isControlByte(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 && !isOfText(byte);
}

/// Lines of columns with commas between them, headings among them. A record's sample number has bytes that no text has.
bool isText(std::string_view bytes) {
    constexpr std::size_t enough = 256;
    bytes = bytes.substr(0, enough);
    return bytes.find(',') != std::string_view::npos && std::none_of(bytes.begin(), bytes.end(), isControlByte);
}

/// Bytes that no text has, many of them and not zero bytes alone: a file may have been made larger in front of its
/// text, and headings may be in any language.
bool isBinary(std::string_view bytes) {
    constexpr std::size_t enough = 4096;
    bytes = bytes.substr(0, enough);
    const auto controls = std::count_if(bytes.begin(), bytes.end(), isControlByte);
    const auto zeros = std::count(bytes.begin(), bytes.end(), '\0');
    const auto others =
        std::count_if(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x7F; });
    return 4 * (controls + others) > static_cast<std::ptrdiff_t>(bytes.size()) && controls != zeros;
}

bool isUtf16(std::string_view bytes) {
    const std::string_view mark = bytes.substr(0, 2);
    const bool isLittle =
        bytes.size() > 3 && isOfText(bytes[0]) && isOfText(bytes[2]) && bytes[1] == '\0' && bytes[3] == '\0';
    const bool isBig =
        bytes.size() > 3 && isOfText(bytes[1]) && isOfText(bytes[3]) && bytes[0] == '\0' && bytes[2] == '\0';
    return mark == "\xFF\xFE" || mark == "\xFE\xFF" || isLittle || isBig;
}

/// Whether values of 32 bits are singles rather than integers: small integers would be tiny singles, or none.
bool areSingles(std::string_view bytes, const DataLayout& layout) {
    std::size_t good = 0;
    std::size_t count = 0;
    for (std::size_t record = 0; record + layout.recordLength() <= bytes.size(); record += layout.recordLength()) {
        for (std::size_t i = 0; i < layout.analogs; ++i) {
            const auto value =
                OrvComtradeLib::readLittleEndian<float>(bytes.data() + record + DataLayout::kAnalogOffset + 4 * i);
            const float size = std::abs(value);
            good += value == 0.0F || (size > 1e-20F && size < 1e20F) ? 1U : 0U;
            ++count;
        }
    }
    return 10 * good >= 9 * count;
}

/// Looks for the form of the data of one configuration.
class FormFinder {
public:
    FormFinder(const ByteSource& data, const ReadCfg& cfg, Findings& findings)
        : _data(data), _cfg(cfg), _findings(findings), _declared(cfg.header.dataType),
          _bytes(data.part(0, _bytesToLookAt()).all()) {}

    std::optional<DataForm> find(bool acceptsAny) {
        return _declared == DataType::Ascii ? _findUnderText() : _findUnderRecords(acceptsAny);
    }

private:
    /// Enough for the records that are looked at, and for text.
    std::uint64_t _bytesToLookAt() const {
        const std::size_t record = _layout(DataType::Float32).recordLength() + kMostPadding;
        return std::clamp<std::uint64_t>(kMostRecords * record, kLeastBytes, kMostBytes);
    }

    std::optional<DataForm> _findUnderText() {
        const bool areRecords = isBinary(_bytes);
        if (const std::optional<DataForm> other = areRecords ? _otherType() : std::nullopt) {
            return other;
        }
        if (isUtf16(_bytes)) {
            _report(Kind::DataMismatch, "UTF-16", "text with one byte for each digit");
            return std::nullopt;
        }
        if (!areRecords) {
            return DataForm{DataType::Ascii, 0};
        }
        _report(Kind::DataMismatch, "binary data with the sample numbers " + _firstNumbers(), "lines of numbers");
        return std::nullopt;
    }

    std::optional<DataForm> _findUnderRecords(bool acceptsAny) {
        const std::size_t length = _layout(_declared).recordLength();
        if (isText(_bytes) && !numbersGoOn(_bytes, length)) {
            return _readAs(DataForm{DataType::Ascii, 0}, "lines of text");
        }
        if (_data.length() < length) {
            _findings.add(Kind::NoSamples, _place(),
                          {std::to_string(_data.length()) + " bytes", "", "records of " + _lengthText()});
            return std::nullopt;
        }
        const DataForm declared{_declared, length};
        if (numbersGoOn(_bytes, length) || beginWell(_bytes, length)) {
            return declared;
        }
        for (std::size_t stride = length + 1; stride <= length + kMostPadding; ++stride) {
            if (numbersGoOn(_bytes, stride) && _isPadding(length, stride)) {
                _findings.add(Kind::RecordPadding, _place(),
                              {"records of " + std::to_string(stride) + " bytes", "the last bytes of each skipped",
                               "records of " + _lengthText()});
                return DataForm{_declared, stride};
            }
        }
        if (const std::optional<DataForm> other = _otherType()) {
            return other;
        }
        const bool isSound = !_isOfOtherLayout() && _makesSense(declared);
        return isSound || acceptsAny ? std::optional(declared) : std::nullopt;
    }

    /// Whether the bytes behind the records are one and the same: those of channels are not.
    bool _isPadding(std::size_t length, std::size_t stride) const {
        for (std::size_t record = 0; record + stride <= _bytes.size(); record += stride) {
            const std::string_view padding = std::string_view(_bytes).substr(record + length, stride - length);
            if (padding.find_first_not_of(_bytes[length]) != std::string_view::npos) {
                return false;
            }
        }
        return true;
    }

    bool _makesSense(const DataForm& declared) {
        const bool isOneByte = _bytes.find_first_not_of(_bytes.front()) == std::string::npos;
        if (!isOneByte && makesSense(_bytes, declared.stride)) {
            return true;
        }
        _report(Kind::DataMismatch, isOneByte ? "the same byte throughout" : "sample numbers " + _firstNumbers(), "");
        return false;
    }

    /// Records in whose numbers another length, or another order of bytes, shows.
    bool _isOfOtherLayout() {
        _bytes = _data.part(0, kMostBytes).all();
        if (numbersGoOn(_bytes, _layout(_declared).recordLength(), bigEndian)) {
            _report(Kind::RecordLayout, "numbers with the high byte first", "numbers with the low byte first");
            return true;
        }
        for (std::size_t stride = DataLayout::kAnalogOffset + 1;
             stride <= kLongestRecord && 2 * stride <= _bytes.size(); ++stride) {
            const bool isClear = stride * 4 <= _bytes.size(); // four numbers in a row
            if (isClear && numbersGoOn(_bytes, stride)) {
                _report(Kind::RecordLayout, "records of " + std::to_string(stride) + " bytes",
                        "records of " + _lengthText());
                return true;
            }
        }
        return _areShifted();
    }

    /// Records that go on at other places than the first one says: bytes were lost or added in one of the first.
    bool _areShifted() {
        const std::size_t length = _layout(_declared).recordLength();
        const std::vector<std::uint32_t> numbers = fieldsAt(_bytes, 0, length, littleEndian);
        const bool areLeftAlone = countSteps(numbers, 0) + 1 == numbers.size();
        for (std::size_t at = length + 1; !areLeftAlone && at < 3 * length && at + 4 * length <= _bytes.size(); ++at) {
            const std::size_t shift = at % length;
            const bool isOwnField = shift == 0 || shift == DataLayout::kStampOffset; // stamps may count samples
            if (!isOwnField && numbersGoOn(std::string_view(_bytes).substr(at), length)) {
                _findings.add(Kind::ShiftedRecords, {_data.name(), 0, "", _data.offsetInFile(at)},
                              {"sample number " + std::to_string(littleEndian(_bytes.data() + at)), "",
                               "records of " + _lengthText() + " from the first byte on"});
                return true;
            }
        }
        return false;
    }

    /// Records of another type than declared, if the numbers go on at their length.
    std::optional<DataForm> _otherType() {
        const DataLayout narrow = _layout(DataType::Binary);
        const DataLayout wide = _layout(DataType::Float32);
        if (_declared != DataType::Binary && numbersGoOn(_bytes, narrow.recordLength())) {
            return _readAs({DataType::Binary, narrow.recordLength()}, "records with integers of 16 bits");
        }
        const bool isWide = _declared == DataType::Ascii || _declared == DataType::Binary;
        if (!isWide || !numbersGoOn(_bytes, wide.recordLength())) {
            return std::nullopt;
        }
        if (areSingles(_bytes, wide)) {
            return _readAs({DataType::Float32, wide.recordLength()}, "records with singles");
        }
        return _readAs({DataType::Binary32, wide.recordLength()}, "records with integers of 32 bits");
    }

    DataForm _readAs(const DataForm& form, const char* found) {
        _findings.add(Kind::TypeWord, {_data.name(), 0, "DAT", _data.offsetInFile(0)},
                      {found, std::string("read as ") + typeWord(form.type),
                       std::string(typeWord(_declared)) + " data as declared"});
        return form;
    }

    void _report(Kind kind, const std::string& found, const std::string& expected) {
        _findings.add(kind, _place(), {found, "", expected});
    }

    Place _place() const { return {_data.name(), 0, "", _data.offsetInFile(0)}; }

    DataLayout _layout(DataType type) const { return {_cfg.header, type}; }

    std::string _lengthText() const {
        const DataLayout layout = _layout(_declared);
        return std::to_string(layout.recordLength()) + " bytes (" + std::to_string(layout.analogs) + " analog and " +
               std::to_string(layout.statuses) + " status channels)";
    }

    std::string _firstNumbers() const {
        const DataType type = _declared == DataType::Ascii ? DataType::Binary : _declared;
        std::vector<std::uint32_t> numbers = fieldsAt(_bytes, 0, _layout(type).recordLength(), littleEndian);
        numbers.resize(std::min(numbers.size(), kShownNumbers));
        std::string text;
        for (const std::uint32_t number : numbers) {
            text += (text.empty() ? "" : ", ") + std::to_string(number);
        }
        return text;
    }

    const ByteSource& _data;
    const ReadCfg& _cfg;
    Findings& _findings;
    DataType _declared;
    std::string _bytes; ///< that the data begin with
};

} // namespace

std::optional<DataForm> formOf(const ByteSource& data, const ReadCfg& cfg, bool acceptsAny, Findings& findings) {
    return FormFinder(data, cfg, findings).find(acceptsAny);
}

} // namespace OrvComtradeIntake
