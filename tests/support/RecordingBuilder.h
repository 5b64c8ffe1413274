#pragma once

#include "support/LittleEndianBytes.h"
#include "support/files.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {

/// Composes the two files of a recording from lines of the caller. Lines that are not given have a plain default. The
/// counts line and the number of rates follow from the lines added, unless they are given as well.
///
///     RecordingBuilder()
///         .analog("1,Ua,A,,V,1,0,0,-32767,32767,1,1,S")
///         .status("1,Trip,,,0")
///         .rate("1000,2")
///         .type("BINARY")
///         .record(0, {100}, {false})
///         .record(1000, {-100}, {true})
///         .write(dir.path(), "feeder");
class RecordingBuilder {
public:
    RecordingBuilder& station(std::string line) { return set(stationLine, std::move(line)); }
    RecordingBuilder& frequency(std::string line) { return set(frequencyLine, std::move(line)); }
    RecordingBuilder& startTime(std::string line) { return set(startLine, std::move(line)); }
    RecordingBuilder& triggerTime(std::string line) { return set(triggerLine, std::move(line)); }
    RecordingBuilder& type(std::string word) { return set(typeLine, std::move(word)); }
    RecordingBuilder& lineEnd(std::string bytes) { return set(lineEnding, std::move(bytes)); }

    RecordingBuilder& analog(std::string line) { return add(analogLines, std::move(line)); }
    RecordingBuilder& status(std::string line) { return add(statusLines, std::move(line)); }
    RecordingBuilder& rate(std::string line) { return add(rateLines, std::move(line)); }

    /// Replaces the counts line that the channel lines give.
    RecordingBuilder& counts(std::string line) { return replaceBy(countsLines, std::move(line)); }

    /// Replaces the number of rates that the rate lines give.
    RecordingBuilder& rateCount(std::string line) { return replaceBy(rateCountLines, std::move(line)); }

    RecordingBuilder& multiplier(std::string line) { return replaceBy(lastLines, std::move(line)); }

    /// Ends the configuration with the type line.
    RecordingBuilder& withoutMultiplier() {
        lastLines.clear();
        return *this;
    }

    /// A line behind the time multiplier (time code, time quality and so on).
    RecordingBuilder& extraLine(std::string line) { return add(lastLines, std::move(line)); }

    /// A data line as it stands, without its line end.
    RecordingBuilder& asciiLine(std::string line) { return add(Row{Row::Line, std::move(line), 0, {}, {}}); }

    /// Bytes of the data file as they stand.
    RecordingBuilder& rawBytes(std::string bytes) { return add(Row{Row::Raw, std::move(bytes), 0, {}, {}}); }

    /// One sample in the encoding of the type word (a line for any word but "binary", "binary32" and "float32").
    RecordingBuilder& record(std::uint32_t timestamp, std::vector<double> rawAnalogs, std::vector<bool> bits) {
        return add(Row{Row::Record, {}, timestamp, std::move(rawAnalogs), std::move(bits)});
    }

    /// The lines of the configuration file, without their line ends.
    std::vector<std::string> cfgLines() const {
        const std::string analogCount = std::to_string(analogLines.size());
        const std::string statusCount = std::to_string(statusLines.size());
        const std::string total = std::to_string(analogLines.size() + statusLines.size());
        std::vector<std::string> lines{stationLine};
        append(lines, countsLines, total + "," + analogCount + "A," + statusCount + "D");
        lines.insert(lines.end(), analogLines.begin(), analogLines.end());
        lines.insert(lines.end(), statusLines.begin(), statusLines.end());
        lines.push_back(frequencyLine);
        append(lines, rateCountLines, std::to_string(rateLines.size()));
        lines.insert(lines.end(), rateLines.begin(), rateLines.end());
        lines.insert(lines.end(), {startLine, triggerLine, typeLine});
        lines.insert(lines.end(), lastLines.begin(), lastLines.end());
        return lines;
    }

    std::string cfgText() const {
        std::string text;
        for (const std::string& line : cfgLines()) {
            text += line + lineEnding;
        }
        return text;
    }

    std::string datBytes() const {
        std::string word = typeLine;
        std::transform(word.begin(), word.end(), word.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        std::string bytes;
        std::uint32_t number = 0;
        for (const Row& row : rows) {
            switch (row.kind) {
            case Row::Line:
                bytes += row.text + lineEnding;
                break;
            case Row::Raw:
                bytes += row.text;
                break;
            case Row::Record:
                ++number;
                bytes += word == "binary" || word == "binary32" || word == "float32" ? binaryRecord(row, number, word)
                                                                                     : asciiRecord(row, number);
                break;
            }
        }
        return bytes;
    }

    /// Writes base.cfg and base.dat and gives the path of the former.
    std::string write(const std::string& directory, const std::string& base) const {
        const std::string stem = directory + "/" + base;
        writeFile(stem + ".cfg", cfgText());
        writeFile(stem + ".dat", datBytes());
        return stem + ".cfg";
    }

private:
    struct Row {
        enum Kind { Line, Raw, Record };
        Kind kind;
        std::string text;
        std::uint32_t timestamp;
        std::vector<double> analogs;
        std::vector<bool> bits;
    };

    RecordingBuilder& set(std::string& line, std::string value) {
        line = std::move(value);
        return *this;
    }

    RecordingBuilder& add(std::vector<std::string>& lines, std::string line) {
        lines.push_back(std::move(line));
        return *this;
    }

    RecordingBuilder& add(Row row) {
        rows.push_back(std::move(row));
        return *this;
    }

    RecordingBuilder& replaceBy(std::vector<std::string>& lines, std::string line) {
        lines.assign(1, std::move(line));
        return *this;
    }

    static void append(std::vector<std::string>& lines, const std::vector<std::string>& given,
                       const std::string& otherwise) {
        lines.push_back(given.empty() ? otherwise : given.front());
    }

    std::string asciiRecord(const Row& row, std::uint32_t number) const {
        std::string line = std::to_string(number) + "," + std::to_string(row.timestamp);
        for (const double value : row.analogs) {
            line += "," + std::to_string(static_cast<std::int64_t>(value));
        }
        for (const bool bit : row.bits) {
            line += bit ? ",1" : ",0";
        }
        return line + lineEnding;
    }

    static std::string binaryRecord(const Row& row, std::uint32_t number, const std::string& word) {
        LittleEndianBytes bytes;
        bytes.u32(number).u32(row.timestamp);
        for (const double value : row.analogs) {
            if (word == "binary") {
                bytes.i16(static_cast<std::int16_t>(value));
            } else if (word == "binary32") {
                bytes.i32(static_cast<std::int32_t>(value));
            } else {
                bytes.f32(static_cast<float>(value));
            }
        }
        for (std::size_t first = 0; first < row.bits.size(); first += 16) {
            unsigned int statusWord = 0;
            for (std::size_t bit = 0; bit < 16 && first + bit < row.bits.size(); ++bit) {
                statusWord |= (row.bits[first + bit] ? 1U : 0U) << bit;
            }
            bytes.u16(static_cast<std::uint16_t>(statusWord));
        }
        return bytes.bytes();
    }

    std::string stationLine = "Station,Recorder,1999";
    std::string frequencyLine = "50";
    std::string startLine = "01/02/2003,04:05:06.000000";
    std::string triggerLine = "01/02/2003,04:05:06.100000";
    std::string typeLine = "ASCII";
    std::string lineEnding = "\n";
    std::vector<std::string> countsLines;
    std::vector<std::string> rateCountLines;
    std::vector<std::string> analogLines;
    std::vector<std::string> statusLines;
    std::vector<std::string> rateLines;
    std::vector<std::string> lastLines{"1"};
    std::vector<Row> rows;
};

} // namespace orvtest
