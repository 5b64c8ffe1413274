// One recording, asked by several threads at once: views_from_threads FILE

#include "Comtrade.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <iostream>
#include <memory>
#include <vector>

namespace {

// [peak]
/// The largest magnitude that a channel's samples reach, as its view draws them.
double peak(const OrvComtradeLib::AnalogChannel& channel, double rate) {
    double largest = 0.0;
    for (const Orv::PointF& point : channel.getPoints(0.0, -1.0, rate)) {
        largest = std::max(largest, std::fabs(static_cast<double>(point.y)));
    }
    return largest;
}

/// One task per channel. The recording must stay, and nobody may load it, until the last one is done.
std::vector<double> peaks(const OrvComtradeLib::Comtrade& recording, double rate) {
    std::vector<std::future<double>> tasks;
    tasks.reserve(recording.analogChannels.size());
    for (const OrvComtradeLib::AnalogChannel& channel : recording.analogChannels) {
        tasks.push_back(std::async(std::launch::async, [&channel, rate] { return peak(channel, rate); }));
    }
    std::vector<double> result;
    result.reserve(tasks.size());
    for (std::future<double>& task : tasks) {
        result.push_back(task.get());
    }
    return result;
}
// [/peak]

// [open]
/// A recording to keep: it stays where it is made, so that what refers to it goes on referring to it.
std::unique_ptr<OrvComtradeLib::Comtrade> open(const std::string& path) {
    auto recording = std::make_unique<OrvComtradeLib::Comtrade>();
    if (recording->load(path) != OrvComtradeLib::Enums::Ok) {
        return nullptr;
    }
    return recording;
}
// [/open]

} // namespace

int main(int argc, char** argv) {
    const std::unique_ptr<OrvComtradeLib::Comtrade> recording = argc == 2 ? open(argv[1]) : nullptr;
    if (!recording) {
        return 1;
    }
    const std::vector<double> largest = peaks(*recording, 1000.0);
    for (std::size_t i = 0; i < largest.size(); ++i) {
        std::cout << recording->analogChannels[i].name() << ": " << largest[i] << '\n';
    }
}
