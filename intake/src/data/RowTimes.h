#pragma once

#include "Cfg.h"
#include "data/Block.h"
#include "src/data/SampleClock.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Times of the rows of consecutive blocks.
class RowTimes {
public:
    explicit RowTimes(const OrvComtradeLib::Cfg& cfg) : _cfg(cfg), _clock(cfg) {}

    void put(const Block& block, double* times) {
        if (_cfg.samplingRateKnown) {
            _clock.timesOf(static_cast<unsigned long>(block.first), block.rows, times);
            return;
        }
        for (std::size_t row = 0; row < block.rows; ++row) {
            times[row] = of(block, row);
        }
    }

    double of(const Block& block, std::size_t row) {
        return _cfg.samplingRateKnown
                   ? _clock.timeOf(static_cast<unsigned long>(block.first + row))
                   : OrvComtradeLib::stampTime(static_cast<std::uint32_t>(block.stamps[row]), _cfg.timeMultiplier);
    }

private:
    const OrvComtradeLib::Cfg& _cfg;
    OrvComtradeLib::SampleClock _clock;
};

} // namespace OrvComtradeIntake
