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

constexpr std::size_t kRowsAtOnce = 64; // turned over together, in the first-level cache
constexpr StateForm kStates = {std::string_view("\0", 1), 0, '\x01'};

/// As they stand in the file, on any host.
void makeLittleEndian([[maybe_unused]] std::vector<double>& values) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    for (double& value : values) {
        std::array<char, sizeof value> bytes;
        std::memcpy(bytes.data(), &value, sizeof value);
        std::reverse(bytes.begin(), bytes.end());
        std::memcpy(&value, bytes.data(), sizeof value);
    }
#endif
}

/// Puts a column into rows of `width` values, where the first of them begins at `into`.
void putColumn(const double* values, std::size_t rows, std::size_t width, double* into) {
    for (std::size_t row = 0; row < rows; ++row, into += width) {
        *into = values[row];
    }
}

/// The time and the analog values of a block, row after row.
void turnBlock(const ExportTable& table, const Columns& block, std::vector<double>& rows) {
    const std::size_t channels = table.analog.size();
    const std::size_t width = 1 + channels;
    rows.resize(block.samples * width);
    for (std::size_t row = 0; row < block.samples; row += kRowsAtOnce) {
        const std::size_t count = std::min(kRowsAtOnce, block.samples - row);
        double* const first = rows.data() + row * width;
        for (std::size_t i = 0; i < count; ++i) {
            first[i * width] = table.scale.shown(block.time[row + i]);
        }
        for (std::size_t i = 0; i < channels; ++i) {
            putColumn(block.column(i) + row, count, width, first + 1 + i);
        }
    }
    makeLittleEndian(rows);
}

std::string_view bytesOf(const std::vector<double>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(double)};
}

} // namespace

void writeNpyArrays(const ExportTable& table, Output& values, Output& states) {
    const std::uint64_t samples = table.source.header.samples;
    writeArrayHeader("<f8", samples, 1 + table.analog.size(), values);
    writeArrayHeader("|u1", samples, table.status.size(), states);
    std::vector<double> rows;
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
