// Makes the example recordings: make_recordings FOLDER
//
// The same bytes come out on every machine. Nothing here calls the mathematics library, whose last bits differ from one
// to the next: sine and decay are series of additions and multiplications, noise is integer arithmetic, and every value
// is rounded to the grid of its channel.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

// --- Shapes ---------------------------------------------------------------------------------------------------------

constexpr double kTwoPi = 6.283185307179586;
constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kSqrt3 = 1.7320508075688772;
constexpr double kLineFrequency = 50.0;

/// Sine of an angle in turns.
double sine(double turns) {
    const double x = (turns - std::floor(turns + 0.5)) * kTwoPi;
    double term = x;
    double sum = x;
    for (int n = 2; n < 30; n += 2) {
        term *= -x * x / (n * (n + 1));
        sum += term;
    }
    return sum;
}

/// exp(-x) for x from 0.
double decay(double x) {
    if (x > 40.0) {
        return 0.0;
    }
    const double small = -x / 1024.0;
    double term = 1.0;
    double sum = 1.0;
    for (int n = 1; n < 12; ++n) {
        term *= small / n;
        sum += term;
    }
    for (int i = 0; i < 10; ++i) {
        sum *= sum;
    }
    return sum;
}

/// A sinusoid of the line frequency, given by its effective value and the angle of its cosine.
struct Phasor {
    double effective;
    double degrees;

    double at(double time) const { return kSqrt2 * effective * sine(kLineFrequency * time + degrees / 360.0 + 0.25); }
};

/// What a short circuit adds to a current from the instant `begin`: the sinusoid and the decaying offset that lets the
/// current of the inductive loop start from nothing.
struct FaultCurrent {
    Phasor steady;
    double begin;
    double timeConstant;

    double at(double time) const {
        if (time < begin) {
            return 0.0;
        }
        return steady.at(time) - steady.at(begin) * decay((time - begin) / timeConstant);
    }
};

using Phases = std::array<double, 3>;

/// The poles of a breaker between a source and a star of loads without earth, with a fault behind it. Once it is open,
/// each pole carries its current on to the next zero; the loads that are left then lie in series.
class Breaker {
public:
    /// Currents at the next instant. A phase takes part in the fault if its fault current is not 0. `isOpen` says
    /// whether the contacts of all three poles have parted.
    Phases carry(const Phases& load, const Phases& fault, bool isOpen) {
        if (!isOpen) {
            _conducting = {true, true, true};
        }
        Phases currents = _share(load, fault);
        for (std::size_t i = 0; isOpen && i < currents.size(); ++i) {
            if (currents[i] * _last[i] <= 0.0) {
                _conducting[i] = false;
            }
        }
        currents = _share(load, fault);
        _last = currents;
        return currents;
    }

    bool faultFlows() const { return _faultFlows; }

private:
    Phases _share(const Phases& load, const Phases& fault) {
        double sum = 0.0;
        int count = 0;
        _faultFlows = fault != Phases{};
        for (std::size_t i = 0; i < load.size(); ++i) {
            sum += _conducting[i] ? load[i] : 0.0;
            count += _conducting[i] ? 1 : 0;
            _faultFlows = _faultFlows && (_conducting[i] || fault[i] == 0.0);
        }
        Phases currents{};
        for (std::size_t i = 0; i < load.size(); ++i) {
            if (_conducting[i]) {
                currents[i] = (load[i] - sum / count) + (_faultFlows ? fault[i] : 0.0);
            }
        }
        return currents;
    }

    std::array<bool, 3> _conducting = {true, true, true};
    Phases _last{};
    bool _faultFlows = false;
};

/// Integers from -`limit` to `limit` from a linear congruential generator (Numerical Recipes, "ranqd1").
class Noise {
public:
    int upTo(int limit) {
        _state = _state * 1664525U + 1013904223U;
        return static_cast<int>((_state >> 16U) % static_cast<std::uint32_t>(2 * limit + 1)) - limit;
    }

private:
    std::uint32_t _state = 1;
};

int rounded(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

bool during(double time, double begin, double end) {
    return time >= begin && time < end;
}

// --- Files ----------------------------------------------------------------------------------------------------------

bool writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "make_recordings: cannot write %s\n", path.c_str());
    }
    return static_cast<bool>(out);
}

std::string joinLines(const std::vector<std::string>& lines, const char* lineEnd) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + lineEnd;
    }
    return text;
}

void appendLittleEndian(std::string& bytes, std::uint32_t value, int length) {
    for (int i = 0; i < length; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

/// The end of every binary record: status bits, the first channel lowest.
void appendStatusWord(std::string& bytes, const std::vector<bool>& states) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < states.size(); ++i) {
        word |= states[i] ? 1U << i : 0U;
    }
    appendLittleEndian(bytes, word, 2);
}

// --- Earth fault on a 10 kV feeder, ASCII ---------------------------------------------------------------------------

// Busbar with its neutral earthed through a reactor. Phase A of a feeder touches earth near its far end at 76 ms; the
// sound phases rise, the residual current carries an offset of 10 ms. Trip after 50 ms, three poles open, successful
// reclosure 0.36 s later.

struct FeederInstant {
    std::array<double, 4> currents; ///< A, secondary: phases and 3I0
    std::array<double, 4> voltages; ///< V, secondary: phases and 3U0
};

constexpr double kFeederFault = 0.076;
constexpr double kFeederContactsPart = 0.192;
constexpr double kFeederContactsTouch = 0.560;

FeederInstant feederAt(double time, Breaker& breaker) {
    const std::array<Phasor, 3> load = {{{2.0, -23.0}, {2.0, -143.0}, {2.0, 97.0}}};
    const FaultCurrent earthFault = {{23.11, -72.3}, kFeederFault, 0.010};
    // The motors of the feeder run up again after the reclosure.
    const double runUp = time >= kFeederContactsTouch ? 1.0 + 0.8 * decay((time - kFeederContactsTouch) / 0.060) : 1.0;
    const Phases loads = {runUp * load[0].at(time), runUp * load[1].at(time), runUp * load[2].at(time)};
    const bool isOpen = during(time, kFeederContactsPart, kFeederContactsTouch);
    const double fault = time < kFeederContactsTouch ? earthFault.at(time) : 0.0;
    const Phases carried = breaker.carry(loads, {fault, 0.0, 0.0}, isOpen);

    const double nominal = 57.74;
    const std::array<Phasor, 3> sound = {{{nominal, 0.0}, {nominal, -120.0}, {nominal, 120.0}}};
    const std::array<Phasor, 3> touched = {
        {{0.316 * nominal, -41.8}, {1.567 * nominal, -137.7}, {1.341 * nominal, 149.7}}};
    FeederInstant instant{};
    for (std::size_t phase = 0; phase < 3; ++phase) {
        instant.currents[phase] = carried[phase];
        instant.currents[3] += carried[phase];
        instant.voltages[phase] = (breaker.faultFlows() ? touched : sound)[phase].at(time);
        instant.voltages[3] += instant.voltages[phase] / kSqrt3; // windings in open delta, 100 V for an earthed phase
    }
    return instant;
}

bool makeFeederEarthFault(const std::string& base) {
    const std::vector<std::string> configuration = {
        "Ozernaya 35/10 kV,Feeder 4 bay,1999",
        "13,8A,5D",
        "1,IA,A,Feeder 4,A,0.005,0,0,-32767,32767,300,5,S",
        "2,IB,B,Feeder 4,A,0.005,0,0,-32767,32767,300,5,S",
        "3,IC,C,Feeder 4,A,0.005,0,0,-32767,32767,300,5,S",
        "4,3I0,N,Feeder 4,A,0.005,0,0,-32767,32767,300,5,S",
        "5,UA,A,Busbar 1,V,0.01,0,0,-32767,32767,10000,100,S",
        "6,UB,B,Busbar 1,V,0.01,0,0,-32767,32767,10000,100,S",
        "7,UC,C,Busbar 1,V,0.01,0,0,-32767,32767,10000,100,S",
        "8,3U0,N,Busbar 1,V,0.01,0,0,-32767,32767,10000,57.74,S",
        "1,Earth fault start,,Feeder 4,0",
        "2,Trip,,Feeder 4,0",
        "3,Breaker open,,Feeder 4,0",
        "4,Breaker closed,,Feeder 4,1",
        "5,Reclose,,Feeder 4,0",
        "50",
        "1",
        "1000,700",
        "14/03/2019,06:41:17.322000",
        "14/03/2019,06:41:17.398000",
        "ASCII",
        "1",
    };
    std::vector<std::string> data;
    Breaker breaker;
    Noise noise;
    for (int i = 0; i < 700; ++i) {
        const double time = i / 1000.0;
        const FeederInstant instant = feederAt(time, breaker);
        std::string line = std::to_string(i + 1) + "," + std::to_string(i * 1000);
        for (const double current : instant.currents) {
            line += "," + std::to_string(rounded(current / 0.005) + noise.upTo(3));
        }
        for (const double voltage : instant.voltages) {
            line += "," + std::to_string(rounded(voltage / 0.01) + noise.upTo(4));
        }
        const std::array<bool, 5> states = {
            during(i, 88, 212),     // start
            during(i, 138, 224),    // trip
            during(i, 204, 552),    // breaker open
            !(during(i, 190, 564)), // breaker closed
            during(i, 500, 600),    // reclose
        };
        for (const bool state : states) {
            line += state ? ",1" : ",0";
        }
        data.push_back(line);
    }
    return writeFile(base + ".cfg", joinLines(configuration, "\r\n")) &&
           writeFile(base + ".dat", joinLines(data, "\r\n"));
}

// --- Two-phase short circuit on a 110 kV line, BINARY, names in CP1251 ----------------------------------------------

// Phases B and C meet 20 km down the line at 60 ms. Trip after 40 ms, reclosure after a dead time of 0.9 s. The
// recorder takes 2000 samples a second for 0.4 s and 400 from then on; it scans its inputs one after the other, 25
// microseconds apart, which is the skew of each channel. Values are primary ones.

constexpr double kLineFault = 0.060;
constexpr double kLineContactsPart = 0.150;
constexpr double kLineContactsTouch = 1.060;
constexpr double kLineSkewStep = 25e-6;

Phases lineCurrentsAt(double time, Breaker& breaker) {
    const std::array<Phasor, 3> load = {{{0.210, -18.0}, {0.210, -138.0}, {0.210, 102.0}}};
    const FaultCurrent shortCircuit = {{3.382, -169.7}, kLineFault, 0.0176};
    Phases loads = {load[0].at(time), load[1].at(time), load[2].at(time)};
    double fault = 0.0;
    if (during(time, kLineFault, kLineContactsTouch)) {
        fault = shortCircuit.at(time);
        loads[1] = loads[2] = -0.5 * loads[0]; // the load sees both phases as one
    }
    return breaker.carry(loads, {0.0, fault, -fault}, during(time, kLineContactsPart, kLineContactsTouch));
}

double lineVoltageAt(double time, std::size_t phase, Breaker& breaker) {
    const double nominal = 65.2;
    const std::array<Phasor, 3> sound = {{{nominal, 0.0}, {nominal, -120.0}, {nominal, 120.0}}};
    const std::array<Phasor, 3> touched = {{{nominal, 0.0}, {0.705 * nominal, -141.2}, {0.631 * nominal, 135.5}}};
    lineCurrentsAt(time, breaker);
    return (breaker.faultFlows() ? touched : sound)[phase].at(time);
}

bool makeLineTwoPhaseFault(const std::string& base) {
    // In CP1251, as the recorder's own software would write it; the meaning stands behind each text.
    const std::string station = "\xCF\xD1 \xC7\xE0\xF0\xE5\xF7\xED\xE0\xFF 110 \xEA\xC2"; // PS Zarechnaya 110 kV
    const std::string recorder = "\xD0\xE5\xE3\xE8\xF1\xF2\xF0\xE0\xF2\xEE\xF0 2";        // Registrator 2
    const std::string line = "\xC2\xCB \xCB\xE5\xF1\xED\xE0\xFF";                         // VL Lesnaya (line)
    const std::string bus = "1\xD1\xD8 110 \xEA\xC2";                                     // 1SSh 110 kV (busbar)
    const std::string currentName = "\xD2\xEE\xEA ";                                      // Tok (current)
    const std::string voltageName = "\xCD\xE0\xEF\xF0\xFF\xE6\xE5\xED\xE8\xE5 ";          // Napryazhenie (voltage)
    const std::string start = "\xCF\xF3\xF1\xEA \xE7\xE0\xF9\xE8\xF2";                    // Pusk zashchit (start)
    const std::string trip = "\xCE\xF2\xEA\xEB\xFE\xF7\xE5\xED\xE8\xE5";                  // Otklyuchenie (trip)
    const std::string open = "\xD0\xCF\xCE";                                              // RPO (open position)
    const std::string closed = "\xD0\xCF\xC2";                                            // RPV (closed position)
    const std::string reclose = "\xC0\xCF\xC2";                                           // APV (reclosure)

    const std::string currentScale = ",kA,0.0005,0,";
    const std::string voltageScale = ",kV,0.01,0,";
    const std::string currentEnd = ",-32767,32767,600,5,P";
    const std::string voltageEnd = ",-32767,32767,110000,100,P";
    const std::vector<std::string> configuration = {
        station + "," + recorder + ",1999",
        "12,7A,5D",
        "1," + currentName + "A,A," + line + currentScale + "0" + currentEnd,
        "2," + currentName + "B,B," + line + currentScale + "25" + currentEnd,
        "3," + currentName + "C,C," + line + currentScale + "50" + currentEnd,
        "4," + currentName + "3I0,N," + line + currentScale + "75" + currentEnd,
        "5," + voltageName + "A,A," + bus + voltageScale + "100" + voltageEnd,
        "6," + voltageName + "B,B," + bus + voltageScale + "125" + voltageEnd,
        "7," + voltageName + "C,C," + bus + voltageScale + "150" + voltageEnd,
        "1," + start + ",," + line + ",0",
        "2," + trip + ",," + line + ",0",
        "3," + open + ",," + line + ",0",
        "4," + closed + ",," + line + ",1",
        "5," + reclose + ",," + line + ",0",
        "50",
        "2",
        "2000,800",
        "400,1200",
        "02/11/2021,19:05:44.610000",
        "02/11/2021,19:05:44.670000",
        "BINARY",
        "1",
    };
    std::string data;
    std::array<Breaker, 7> breakers; // one per input, since each input looks at an instant of its own
    Noise noise;
    for (int i = 0; i < 1200; ++i) {
        const int microseconds = i < 800 ? i * 500 : 400000 + (i - 800) * 2500;
        const double time = microseconds / 1e6;
        appendLittleEndian(data, static_cast<std::uint32_t>(i + 1), 4);
        appendLittleEndian(data, static_cast<std::uint32_t>(microseconds), 4);
        for (std::size_t input = 0; input < breakers.size(); ++input) {
            const double instant = time + static_cast<double>(input) * kLineSkewStep;
            int counts = 0;
            if (input < 4) {
                const Phases currents = lineCurrentsAt(instant, breakers[input]);
                const double current = input < 3 ? currents[input] : currents[0] + currents[1] + currents[2];
                counts = rounded(current / 0.0005) + noise.upTo(2);
            } else {
                counts = rounded(lineVoltageAt(instant, input - 4, breakers[input]) / 0.01) + noise.upTo(5);
            }
            appendLittleEndian(data, static_cast<std::uint32_t>(counts), 2);
        }
        appendStatusWord(data, {
                                   during(time, 0.0705, 0.1800),    // start
                                   during(time, 0.1000, 0.1900),    // trip
                                   during(time, 0.1630, 1.0500),    // open
                                   !(during(time, 0.1465, 1.0650)), // closed
                                   during(time, 0.9775, 1.1000),    // reclosure
                               });
    }
    return writeFile(base + ".cfg", joinLines(configuration, "\n")) && writeFile(base + ".dat", data);
}

// --- Inrush of a 110 kV transformer, FLOAT32, names in UTF-8 --------------------------------------------------------

// A bank of three single-phase units is switched in at 100 ms with a remanence left in its cores. The flux is the
// integral of the voltage; beyond saturation the core lets through a current that flows one way only, in humps whose
// height falls as the resistance of the circuit draws the flux back to the middle. The protection sees the second
// harmonic and blocks.

constexpr double kInrushBegin = 0.100;
constexpr int kInrushSamplesPerCycle = 40;

/// One core: per-unit flux and current at nominal voltage.
class Core {
public:
    explicit Core(double remanence) : _flux(remanence) {}

    double current() const {
        const double magnetising = 0.002 * _flux;
        if (_flux > kKnee) {
            return magnetising + (_flux - kKnee) / kAirReactance;
        }
        if (_flux < -kKnee) {
            return magnetising + (_flux + kKnee) / kAirReactance;
        }
        return magnetising;
    }

    void advance(double voltage, double step) {
        _flux += kTwoPi * kLineFrequency * step * (voltage - kResistance * current());
    }

private:
    static constexpr double kKnee = 1.2;
    static constexpr double kAirReactance = 0.30;
    static constexpr double kResistance = 0.012;

    double _flux;
};

/// Effective value of a harmonic over the last cycle of `values`, by the sums that a relay makes. The root is drawn by
/// iteration from above.
double harmonicOfLastCycle(const std::vector<double>& values, int order) {
    if (values.size() < kInrushSamplesPerCycle) {
        return 0.0;
    }
    double sineSum = 0.0;
    double cosineSum = 0.0;
    for (int k = 0; k < kInrushSamplesPerCycle; ++k) {
        const double value = values[values.size() - kInrushSamplesPerCycle + static_cast<std::size_t>(k)];
        const double turns = static_cast<double>(order * k) / kInrushSamplesPerCycle;
        sineSum += value * sine(turns);
        cosineSum += value * sine(turns + 0.25);
    }
    const double square =
        (sineSum * sineSum + cosineSum * cosineSum) * 2.0 / kInrushSamplesPerCycle / kInrushSamplesPerCycle;
    double root = square + 1.0;
    for (int i = 0; i < 40; ++i) {
        root = 0.5 * (root + square / root);
    }
    return root;
}

/// A single-precision value that is a multiple of 2^-`bits`, so that rounding to it is exact.
void appendFloat(std::string& bytes, double value, unsigned int bits, int noise) {
    const double grid = static_cast<double>(1U << bits);
    const auto number = static_cast<float>((rounded(value * grid) + noise) / grid);
    std::uint32_t pattern = 0;
    static_assert(sizeof(pattern) == sizeof(number), "single precision");
    std::memcpy(&pattern, &number, sizeof(pattern));
    appendLittleEndian(bytes, pattern, 4);
}

bool makeTransformerInrush(const std::string& base) {
    const std::string limits = ",1,0,0,-3.4028235E+38,3.4028235E+38,";
    const std::string station = std::string("S\xC3\xBC") + "derholm 110/20 kV"; // u umlaut, apart from the d behind it
    const std::string delta = "\xCE\x94";                                       // Greek capital delta
    const std::string currents = "A" + limits + "200,1,S";
    const std::string voltages = "V" + limits + "110000,100,S";
    const std::vector<std::string> configuration = {
        station + ",T1 differential,2013",
        "12,8A,4D",
        "1,I" + delta + " L1,L1,T1," + currents,
        "2,I" + delta + " L2,L2,T1," + currents,
        "3,I" + delta + " L3,L3,T1," + currents,
        "4,U L1,L1,T1," + voltages,
        "5,U L2,L2,T1," + voltages,
        "6,U L3,L3,T1," + voltages,
        "7,I" + delta + " L1 50 Hz,L1,T1," + currents,
        "8,I" + delta + " L1 100 Hz,L1,T1," + currents,
        "1,Circuit-breaker closed,,T1,1",
        "2," + delta + " start,,T1,0",
        "3,Block by 2nd harmonic,,T1,0",
        "4," + delta + " trip,,T1,0",
        "50",
        "1",
        "2000,1400",
        "21/06/2024,11:30:02.150000",
        "21/06/2024,11:30:02.250000",
        "FLOAT32",
        "1",
        "2h,2h",
        "4,0",
    };
    const double ratedPeak = kSqrt2 * 1.05; // A, secondary, of 40 MVA through 200/1
    const double nominal = 57.74;
    const std::array<double, 3> angles = {-90.0, 150.0, 30.0};
    std::array<Core, 3> cores = {Core(0.6), Core(-0.2), Core(-0.4)};
    std::vector<double> firstPhase;
    std::string data;
    Noise noise;
    for (int i = 0; i < 1400; ++i) {
        const double time = i / 2000.0;
        const bool live = time >= kInrushBegin;
        appendLittleEndian(data, static_cast<std::uint32_t>(i + 1), 4);
        appendLittleEndian(data, static_cast<std::uint32_t>(i * 500), 4);
        for (Core& core : cores) {
            appendFloat(data, live ? ratedPeak * core.current() : 0.0, 10, noise.upTo(2));
        }
        firstPhase.push_back(live ? ratedPeak * cores[0].current() : 0.0);
        for (const double angle : angles) {
            appendFloat(data, live ? Phasor{nominal, angle}.at(time) : 0.0, 6, noise.upTo(1));
        }
        const double fundamental = harmonicOfLastCycle(firstPhase, 1);
        const double second = harmonicOfLastCycle(firstPhase, 2);
        appendFloat(data, fundamental, 10, 0);
        appendFloat(data, second, 10, 0);
        const bool start = fundamental > 0.3;
        appendStatusWord(data, {time >= 0.105, start, start && second > 0.15 * fundamental, false});

        constexpr int kSteps = 20;
        const double step = 1.0 / 2000.0 / kSteps;
        for (int k = 0; live && k < kSteps; ++k) {
            for (std::size_t phase = 0; phase < cores.size(); ++phase) {
                cores[phase].advance(Phasor{1.0 / kSqrt2, angles[phase]}.at(time + (k + 0.5) * step), step);
            }
        }
    }
    return writeFile(base + ".cfg", joinLines(configuration, "\n")) && writeFile(base + ".dat", data);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_recordings FOLDER\n");
        return 2;
    }
    const std::string folder = std::string(argv[1]) + "/";
    const bool made = makeFeederEarthFault(folder + "feeder_earth_fault") &&
                      makeLineTwoPhaseFault(folder + "line_two_phase_fault") &&
                      makeTransformerInrush(folder + "transformer_inrush");
    return made ? 0 : 1;
}
