#include "commands/exportNpy.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Values;

namespace {

constexpr std::size_t kAlignment = 64;

/// Magic string, version 1.0, length of the header, header: a dictionary literal, padded with blanks.
void writeArrayHeader(const char* type, std::uint64_t rows, std::size_t columns, Output& out) {
    std::string header =
        fmt::format("{{'descr': '{}', 'fortran_order': False, 'shape': ({}, {}), }}", type, rows, columns);
    constexpr std::size_t kPreamble = 10;
    const std::size_t unpadded = kPreamble + header.size() + 1;
    header.append((kAlignment - unpadded % kAlignment) % kAlignment, ' ');
    header += '\n';
    out.write({"\x93NUMPY\x01\x00", 8});
    out.put(static_cast<char>(header.size() & 0xFFU));
    out.put(static_cast<char>(header.size() >> 8U));
    out.write(header);
}

constexpr std::size_t kRowsAtOnce = 64;   // turned over together, in the first-level cache
constexpr std::size_t kColumnsAtOnce = 8; // and so many beside each other, 64 bytes of each row
constexpr StateForm kStates = {std::string_view("\0", 1), 0, '\x01'};

/// As they stand in the file, on any host.
void makeLittleEndian([[maybe_unused]] Values& values) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    for (double& value : values) {
        std::array<char, sizeof value> bytes;
        std::memcpy(bytes.data(), &value, sizeof value);
        std::reverse(bytes.begin(), bytes.end());
        std::memcpy(&value, bytes.data(), sizeof value);
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

/// The time and the analog values of a block, row after row.
void turnBlock(const ExportTable& table, const Columns& block, Values& rows) {
    const std::size_t channels = table.analog.size();
    const std::size_t width = 1 + channels;
    rows.resize(block.samples * width);
    for (std::size_t row = 0; row < block.samples; row += kRowsAtOnce) {
        const std::size_t count = std::min(kRowsAtOnce, block.samples - row);
        double* const first = rows.data() + row * width;
        for (std::size_t i = 0; i < count; ++i) {
            first[i * width] = table.scale.shown(block.time[row + i]);
        }
        std::size_t channel = 0;
        for (; channels - channel >= kColumnsAtOnce; channel += kColumnsAtOnce) {
            putColumns<kColumnsAtOnce>(block.column(channel) + row, block.samples, count, width, first + 1 + channel);
        }
        for (; channel < channels; ++channel) {
            putColumns<1>(block.column(channel) + row, block.samples, count, width, first + 1 + channel);
        }
    }
    makeLittleEndian(rows);
}

std::string_view bytesOf(const Values& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(double)};
}

} // namespace

void writeNpyArrays(const ExportTable& table, Output& values, Output& states) {
    const std::uint64_t samples = table.source.header.samples;
    writeArrayHeader("<f8", samples, 1 + table.analog.size(), values);
    writeArrayHeader("|u1", samples, table.status.size(), states);
    Values rows;
    forEachBlock(table, [&](const Columns& block) {
        turnBlock(table, block, rows);
        values.write(bytesOf(rows));
        StateRows stateRows(block, kStates);
        for (std::size_t row = 0; row < block.samples; ++row) {
            states.write(stateRows.next());
        }
    });
}

void writeSidecar(const ExportTable& table, const std::vector<NamedFile>& files, Output& out) {
    Json value = tableValue(table);
    for (const NamedFile& file : files) {
        setPath(value, file.member, file.name);
    }
    writeLine(value, out);
}
