#pragma once

#include "Input.h"
#include "check.h"

#include <OrvComtradeIntake/Intake.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace fuzz {

#ifdef ORVCOMTRADE_LIBFUZZER
constexpr bool kIsFuzzer = true; ///< no replay of a corpus
#else
constexpr bool kIsFuzzer = false; ///< no replay of a corpus
#endif

/// A configuration file, a line "#DAT", a data file; without such a line all of it is a combined file. Behind a line
/// "#BY" the input goes on with what the target does with the recording.
struct Files {
    explicit Files(Input& input) {
        const std::string text = input.upTo("#BY\n");
        Input files(text);
        cfg = files.upTo("#DAT\n");
        dat = files.rest();
    }

    OrvComtradeIntake::Bytes bytes() const {
        OrvComtradeIntake::Bytes bytes;
        bytes.cfg = cfg;
        if (!dat.empty()) { // an empty file is not the same as none
            bytes.dat = dat;
        }
        return bytes;
    }

    std::string cfg;
    std::string dat;
};

/// What a caller may choose, at random: so many a side, now and then an encoding, limits that small recordings exceed.
inline OrvComtradeIntake::Options optionsBy(std::uint64_t hash) {
    using OrvComtradeIntake::Limits;
    using OrvComtradeIntake::Side;
    static constexpr Side kSides[] = {Side::Recorded, Side::Primary, Side::Secondary};
    static constexpr const char* kEncodings[] = {"CP866", "CP1251", "GB18030", "ISO-8859-1", "UTF-8", "UTF-16LE"};
    static constexpr std::uint64_t Limits::*kLimits[] = {&Limits::cfgBytes, &Limits::textBytes, &Limits::channels,
                                                         &Limits::rates,    &Limits::samples,   &Limits::decodedBytes,
                                                         &Limits::findings};
    OrvComtradeIntake::Options options;
    options.side = kSides[hash % 3];
    options.acceptsAnyNumbers = hash / 3 % 4 == 0;
    if (hash / 12 % 8 == 0) {
        options.encoding = kEncodings[hash / 96 % 6];
    }
    if (hash / 12 % 8 == 1) {
        options.limits.*kLimits[hash / 96 % 7] = hash / 672 % 16;
    }
    return options;
}

/// Reports the text and ends the process, unless the text is empty.
inline void expectNothing(const std::string& broken) {
    if (!broken.empty()) {
        std::fprintf(stderr, "%s\n", broken.c_str());
    }
    FUZZ_CHECK(broken.empty());
}

/// Whether an operation throws what it should.
template <class Exception, class Operation> bool throws(Operation operation) {
    try {
        operation();
    } catch (const Exception&) {
        return true;
    }
    return false;
}

} // namespace fuzz
