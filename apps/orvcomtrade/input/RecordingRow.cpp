#include "input/RecordingRow.h"

using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;

void addRate(double rate, std::vector<double>& rates) {
    if (rate > 0.0 && (rates.empty() || rates.back() != rate)) {
        rates.push_back(rate);
    }
}

RecordingRow rowOf(const std::string& path, const Recording& recording) {
    const Header& header = recording.header;
    RecordingRow row;
    row.path = path;
    row.verdict = recording.reader->verdict().name;
    row.problem = recording.problem;
    row.station = header.station;
    row.recorder = header.recorder;
    row.start = header.start;
    row.trigger = header.trigger;
    if (row.problem.empty()) {
        row.duration = recording.reader->duration();
    }
    row.samples = header.samples;
    for (const RateInfo& rate : header.ratesInUse()) {
        addRate(rate.rate, row.rates);
    }
    row.analog = header.analog.size();
    row.status = header.status.size();
    row.revision = header.revision;
    row.dataType = typeWord(header.dataType);
    return row;
}
