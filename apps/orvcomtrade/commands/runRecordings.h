#pragma once

#include "input/collectRecordings.h"
#include "output/OrderedPrinter.h"
#include "output/Output.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Output of the work on one recording. Outputs are printed in the order of the recordings, whichever is ready first.
class Job : public Output {
public:
    Job(OrderedPrinter& printer, std::size_t number, bool isQuiet)
        : _printer(printer), _number(number), _isQuiet(isQuiet) {}

    /// A sentence for standard error, unless the user wants quiet.
    void note(const std::string& sentence);

    /// The same, whatever the user wants.
    void complain(const std::string& sentence);

    /// One of the outcomes that are counted; the first of them if it is not set.
    void setOutcome(std::string outcome) { _outcome = std::move(outcome); }

    /// Exit status for this recording. The reason must have been printed.
    void setStatus(int status) { _status = status; }

    int status() const { return _status; }
    const std::string& notes() const { return _notes; }
    const std::string& outcome() const { return _outcome; }

protected:
    void send(std::string_view piece) override { _printer.write(_number, piece); }

private:
    OrderedPrinter& _printer;
    const std::size_t _number;
    const bool _isQuiet;
    std::string _notes;
    std::string _outcome;
    int _status = 0;
};

struct RunOptions {
    std::size_t jobs = 1;     ///< recordings worked on side by side
    bool json = false;        ///< a failure is reported as a JSON line
    bool writesFiles = false; ///< the work goes on when nobody reads what is printed any more
    bool quiet = false;       ///< neither notes nor progress nor a summary
    std::vector<std::string>
        outcomes;        ///< counted in a summary behind several recordings; the last is that of a failure
    std::string heading; ///< above the first output; where there is none, it is printed only if nothing failed
};

/// Does the work for every entry. The failure of one (any exception) is reported and stops no other. A file that a
/// search found but that is not a recording is left out, with a note. Returns the exit status. Throws a Failure if
/// standard output cannot be written. The summary is a line on standard error; with `json`, an object.
int runRecordings(const EntryList& selection, const RunOptions& options,
                  const std::function<void(const Entry&, Job&)>& work);
