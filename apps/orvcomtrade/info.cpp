#include "info.h"

#include "Comtrade.h"
#include "Table.h"
#include "loadRecording.h"
#include "printable.h"
#include "toUtf8.h"

#include <fmt/format.h>

#include <cstddef>

using namespace OrvComtradeLib;

namespace {

constexpr double kMicrosecondsPerSecond = 1000000.0;

std::string number(double value) {
    return fmt::format("{:.9g}", value);
}

/// The station line stays in the bytes of the file, so it is converted here, as channel lines are by the library.
std::string stationText(const std::string& bytes) {
    return printable(toUtf8::detectAndConvert(bytes));
}

const char* typeName(Enums::DataFileType type) {
    switch (type) {
    case Enums::Ascii:
        return "ASCII";
    case Enums::Binary:
        return "BINARY";
    case Enums::Binary32:
        return "BINARY32";
    case Enums::Float32:
        return "FLOAT32";
    }
    return "unknown";
}

std::string ratesText(const Cfg& cfg) {
    if (!cfg.samplingRateKnown) {
        return "not fixed, the data file gives the times";
    }
    std::string text;
    for (const SamplingRate& entry : cfg.samplingRates) {
        if (!text.empty()) {
            text += ", then ";
        }
        text += number(entry.rate) + " Hz";
        if (cfg.samplingRates.size() > 1) {
            text += fmt::format(" to sample {}", entry.endSample);
        }
    }
    return text;
}

std::string samplesText(const Comtrade& recording) {
    const std::size_t read = recording.dat.samples.size();
    const unsigned long declared = recording.cfg.lastSampleNumber;
    return read == declared ? fmt::format("{}", read) : fmt::format("{} of {} declared", read, declared);
}

std::string ratioText(const AnalogChannelConfig& channel) {
    return number(channel.primary) + "/" + number(channel.secondary);
}

void printSummary(const Comtrade& recording, Output& out) {
    const Cfg& cfg = recording.cfg;
    out.print("Station         {}\n", stationText(cfg.stationName));
    out.print("Recorder        {}\n", stationText(cfg.recorderId));
    out.print("Revision        {}\n", cfg.revisionYear);
    out.print("Data type       {}\n", typeName(cfg.dataFileType));
    out.print("Sampling rate   {}\n", ratesText(cfg));
    out.print("Line frequency  {} Hz\n", number(cfg.lineFrequency));
    out.print("Duration        {} s\n", number(recording.duration));
    out.print("Samples         {}\n", samplesText(recording));
}

void printAnalogChannels(const Cfg& cfg, Output& out) {
    out.print("\nAnalog channels: {}\n", cfg.analogChannelConfigs.size());
    if (cfg.analogChannelConfigs.empty()) {
        return;
    }
    using Align = Table::Align;
    Table table({{"No", Align::Right},
                 {"Name", Align::Left},
                 {"Unit", Align::Left},
                 {"a", Align::Right},
                 {"b", Align::Right},
                 {"Skew, us", Align::Right},
                 {"Side", Align::Left},
                 {"Ratio", Align::Right}});
    for (const AnalogChannelConfig& channel : cfg.analogChannelConfigs) {
        table.addRow({fmt::format("{}", channel.index + 1), printable(channel.name()), printable(channel.unit),
                      number(channel.a), number(channel.b), number(channel.skew * kMicrosecondsPerSecond),
                      channel.secondaryValues ? "secondary" : "primary", ratioText(channel)});
    }
    out.write(table.text());
}

void printStatusChannels(const Cfg& cfg, Output& out) {
    out.print("\nStatus channels: {}\n", cfg.binaryChannelConfigs.size());
    if (cfg.binaryChannelConfigs.empty()) {
        return;
    }
    Table table({{"No", Table::Align::Right}, {"Name", Table::Align::Left}, {"Normal", Table::Align::Right}});
    for (const BinaryChannelConfig& channel : cfg.binaryChannelConfigs) {
        table.addRow(
            {fmt::format("{}", channel.index + 1), printable(channel.name()), fmt::format("{}", channel.normalState)});
    }
    out.write(table.text());
}

} // namespace

void printInfo(const std::string& path, Output& out) {
    Comtrade recording;
    loadRecording(recording, path);
    printSummary(recording, out);
    printAnalogChannels(recording.cfg, out);
    printStatusChannels(recording.cfg, out);
}
