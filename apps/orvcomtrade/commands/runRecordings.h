#pragma once

#include "input/collectRecordings.h"
#include "output/OrderedPrinter.h"
#include "output/Output.h"

#include <cstddef>
#include <functional>
#include <string>

/// What one recording's work prints. It is printed in the order of the recordings, whichever is ready first.
class Job : public Output {
public:
    Job(OrderedPrinter& printer, std::size_t number) : _printer(printer), _number(number) {}

    /// A sentence for standard error.
    void note(const std::string& sentence);

    /// Ends well or not; the reason has been printed.
    void setStatus(int status) { _status = status; }

    int status() const { return _status; }
    const std::string& notes() const { return _notes; }

protected:
    void send(std::string_view piece) override { _printer.write(_number, piece); }

private:
    OrderedPrinter& _printer;
    const std::size_t _number;
    std::string _notes;
    int _status = 0;
};

struct RunOptions {
    std::size_t jobs = 1;     ///< recordings worked on side by side
    bool json = false;        ///< a failure is reported as a JSON line
    bool writesFiles = false; ///< the work goes on when nobody reads what is printed any more
};

/// Does the work for every entry; the failure of one (any exception) is reported and stops no other. What is no
/// recording and was only met in a search is left out, with a note. Gives the exit status. Throws a Failure when
/// standard output can't be written.
int runRecordings(const Selection& selection, const RunOptions& options,
                  const std::function<void(const Entry&, Job&)>& work);
