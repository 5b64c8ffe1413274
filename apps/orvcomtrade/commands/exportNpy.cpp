#include "commands/exportNpy.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Columns;

namespace {

constexpr std::size_t kAlignment = 64;

/// Magic string, version 1.0, length of the header, header: a dictionary literal, padded with blanks.
std::string arrayHeader(const char* type, std::uint64_t rows, std::size_t columns) {
    std::string header =
        fmt::format("{{'descr': '{}', 'fortran_order': False, 'shape': ({}, {}), }}", type, rows, columns);
    constexpr std::size_t kPreamble = 10;
    const std::size_t unpadded = kPreamble + header.size() + 1;
    header.append((kAlignment - unpadded % kAlignment) % kAlignment, ' ');
    header += '\n';
    const auto length = {static_cast<char>(header.size() & 0xFFU), static_cast<char>(header.size() >> 8U)};
    return std::string("\x93NUMPY\x01\x00", 8).append(length) + header;
}

constexpr std::size_t kPieceLength = 256UL * 1024; // stays in the second-level cache, and is whole pages of the file
constexpr std::size_t kRowsAtOnce = 64;            // turned over together, in the first-level cache
constexpr std::size_t kColumnsAtOnce = 8;          // and so many beside each other, 64 bytes of each row

/// An array on its way to a file: rows are made in place, and written in pieces that begin where a page of the file
/// does. Else the system fills each page between two pieces twice.
template <class Value> class ArrayPieces {
public:
    ArrayPieces(const char* type, std::uint64_t rows, std::size_t columns, Output& out)
        : _columns(columns), _out(out),
          _rowsAtOnce(std::clamp<std::size_t>(kMost / std::max<std::size_t>(columns, 1), 1, kRowsAtOnce)) {
        const std::string header = arrayHeader(type, rows, columns);
        _filled = header.size() / sizeof(Value); // whole, by its alignment
        _values.resize(kMost + _filled + _rowsAtOnce * columns);
        std::memcpy(_values.data(), header.data(), header.size());
    }

    /// Rows that there is room for at any time.
    std::size_t rowsAtOnce() const { return _rowsAtOnce; }

    /// Where the next rows are to be made.
    Value* room() { return _values.data() + _filled; }

    /// So many rows are made.
    void take(std::size_t rows) {
        _filled += rows * _columns;
        if (_filled >= kMost) {
            _send(_filled / kMost * kMost);
        }
    }

    void finish() { _send(_filled); }

private:
    static constexpr std::size_t kMost = kPieceLength / sizeof(Value);

    void _send(std::size_t count) {
        _out.write({reinterpret_cast<const char*>(_values.data()), count * sizeof(Value)});
        const auto begin = _values.begin();
        std::copy(begin + static_cast<std::ptrdiff_t>(count), begin + static_cast<std::ptrdiff_t>(_filled), begin);
        _filled -= count;
    }

    std::size_t _columns;
    Output& _out;
    std::size_t _rowsAtOnce;
    std::size_t _filled = 0;
    std::vector<Value, OrvComtradeIntake::UnsetAllocator<Value>> _values;
};

/// As they stand in the file, on any host.
void makeLittleEndian([[maybe_unused]] double* values, [[maybe_unused]] std::size_t count) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    for (double* value = values; value != values + count; ++value) {
        std::array<char, sizeof *value> bytes;
        std::memcpy(bytes.data(), value, sizeof *value);
        std::reverse(bytes.begin(), bytes.end());
        std::memcpy(value, bytes.data(), sizeof *value);
    }
#endif
}

/// Puts `count` columns, which follow each other at a distance, into rows of `width` values, where the first begins at
/// `into`.
template <std::size_t count>
void putColumns(const double* columns, std::size_t distance, std::size_t rows, std::size_t width, double* into) {
    for (std::size_t row = 0; row < rows; ++row, into += width) {
        for (std::size_t i = 0; i < count; ++i) {
            into[i] = columns[i * distance + row];
        }
    }
}

/// The time and the analog values of some samples of a block, row after row.
void turnRows(const ExportTable& table, const Columns& block, std::size_t row, std::size_t count, double* into) {
    const std::size_t channels = table.analog.size();
    const std::size_t width = 1 + channels;
    for (std::size_t i = 0; i < count; ++i) {
        into[i * width] = table.scale.shown(block.time[row + i]);
    }
    std::size_t channel = 0;
    for (; channels - channel >= kColumnsAtOnce; channel += kColumnsAtOnce) {
        putColumns<kColumnsAtOnce>(block.column(channel) + row, block.samples, count, width, into + 1 + channel);
    }
    for (; channel < channels; ++channel) {
        putColumns<1>(block.column(channel) + row, block.samples, count, width, into + 1 + channel);
    }
    makeLittleEndian(into, count * width);
}

/// Calls for every few rows of a block: the first of them, their number, and where they are to be made.
template <class Value, class Make> void addRows(const Columns& block, ArrayPieces<Value>& array, Make make) {
    for (std::size_t row = 0; row < block.samples;) {
        const std::size_t count = std::min(array.rowsAtOnce(), block.samples - row);
        make(row, count, array.room());
        array.take(count);
        row += count;
    }
}

} // namespace

void writeNpyArrays(const ExportTable& table, Output& values, Output& states) {
    const std::uint64_t samples = table.source.header.samples;
    const std::size_t channels = table.status.size();
    ArrayPieces<double> valueArray("<f8", samples, 1 + table.analog.size(), values);
    ArrayPieces<char> stateArray("|u1", samples, channels, states);
    forEachBlock(table, [&](const Columns& block) {
        addRows(block, valueArray,
                [&](std::size_t row, std::size_t count, double* into) { turnRows(table, block, row, count, into); });
        if (channels == 0) {
            return;
        }
        StateRows rows(block, {std::string_view("\0", 1), 0, '\x01'});
        addRows(block, stateArray, [&](std::size_t /*row*/, std::size_t count, char* into) {
            for (std::size_t i = 0; i < count; ++i) {
                std::memcpy(into + i * channels, rows.next().data(), channels);
            }
        });
    });
    valueArray.finish();
    stateArray.finish();
}

void writeSidecar(const ExportTable& table, const std::vector<NamedFile>& files, Output& out) {
    Json value = tableValue(table);
    for (const NamedFile& file : files) {
        setPath(value, file.member, file.name);
    }
    writeLine(value, out);
}
