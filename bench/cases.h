#pragma once

/// What is measured: the benchmarks of Google Benchmark and the table run the same cases.

#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvbench {

/// One operation of the library on one input, and its floor. The constructor makes the input. Destroying the result is
/// not part of the measured time.
class Work {
public:
    virtual ~Work() = default;

    virtual double runLibrary() = 0; ///< CPU seconds of one run
    virtual double runFloor() = 0;   ///< CPU seconds of one run

    /// Whether library and floor yield the same, to the last bit.
    virtual bool agree() = 0;

    double bytes = 0.0;      ///< of the file that is read, or 0
    double values = 0.0;     ///< of the result
    double structures = 0.0; ///< bytes that the result occupies, or 0 where memory is not of interest
    double fileCopy = 0.0;   ///< bytes of the file that may be in memory at the same time
    double peakBytes = 0.0;  ///< of a program that was run last, or 0: of this process, above what it held before
};

struct Case {
    std::string name;
    double target; ///< greatest allowed ratio of library to floor
    /// Makes the inputs, `multiple` times the shape's size and divided by `divisor`.
    std::function<std::unique_ptr<Work>(unsigned long multiple, unsigned long divisor)> make;
};

std::vector<Case> loadCases();
std::vector<Case> cfgCases();
std::vector<Case> pointsCases();
std::vector<Case> intakeCases();
std::vector<Case> columnCases();
std::vector<Case> toolCases();
std::vector<Case> pageCases();

/// CPU seconds of this process since its creation: other programs on the machine disturb them least.
inline double now() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct TableOptions {
    std::vector<std::string> shapes; ///< parts of names; none means all cases
    int repetitions = 11;
    unsigned long divisor = 1;
};

/// Both throw if the results of library and floor differ.
void printTable(const TableOptions& options);
void printScaling(const TableOptions& options);

} // namespace orvbench
