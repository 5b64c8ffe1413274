// Writes every channel of a recording as CSV: all_channels_to_csv FILE > recording.csv
//
// One row per sample, read from the samples themselves, so that the numbers are exact and every status channel is its
// own bit (the status views all plot the first one).

#include "host.h"

#include <iostream>
#include <string>

namespace {

/// A field as RFC 4180 has it.
std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char letter : text) {
        result += letter == '"' ? "\"\"" : std::string(1, letter);
    }
    return result + "\"";
}

void writeHeader(const OrvComtradeLib::Cfg& cfg) {
    std::cout << "time [s]";
    for (const auto& channel : cfg.analogChannelConfigs) {
        std::cout << ',' << quoted(host::label(channel) + " [" + host::baseUnit(channel) + "]");
    }
    for (const auto& channel : cfg.binaryChannelConfigs) {
        std::cout << ',' << quoted(host::label(channel));
    }
    std::cout << '\n';
}

void writeRow(const OrvComtradeLib::Sample& sample) {
    std::cout << host::exact(sample.time);
    for (const double value : sample.analogValues) {
        std::cout << ',' << host::exact(value);
    }
    for (const bool state : sample.binaryValues) {
        std::cout << (state ? ",1" : ",0");
    }
    std::cout << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: all_channels_to_csv FILE\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    std::ios::sync_with_stdio(false);
    writeHeader(recording.cfg);
    for (const auto& sample : recording.dat.samples) {
        writeRow(sample);
    }
    std::cout.flush();
    return std::cout ? 0 : 1; // a full disk is no success
}
