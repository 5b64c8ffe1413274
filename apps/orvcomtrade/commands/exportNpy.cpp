#include "commands/exportNpy.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

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

void writeDouble(double value, Output& out) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::array<char, sizeof bits> bytes = {};
    for (char& byte : bytes) {
        byte = static_cast<char>(bits & 0xFFU);
        bits >>= 8U;
    }
    out.write({bytes.data(), bytes.size()});
}

} // namespace

void writeNpyArrays(const ExportTable& table, Output& values, Output& states) {
    const std::uint64_t samples = table.source.header.samples;
    writeArrayHeader("<f8", samples, 1 + table.analog.size(), values);
    writeArrayHeader("|u1", samples, table.status.size(), states);
    forEachRow(table, [&table, &values, &states](const Row& row) {
        writeDouble(table.scale.shown(row.time()), values);
        for (std::size_t i = 0; i < table.analog.size(); ++i) {
            writeDouble(row.analog(i), values);
        }
        for (std::size_t i = 0; i < table.status.size(); ++i) {
            states.put(row.status(i) ? '\x01' : '\x00');
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
