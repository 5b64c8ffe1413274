#include "pages.h"

#include "sink.h"

#include <OrvComtradePage/Page.h>

#include <thread>

void writePageTo(const OrvComtradeIntake::Opened& opened, const nanobind::callable& write, const std::string& name,
                 const std::string& verdict, const std::string& program) {
    OrvComtradePage::PageOptions options;
    options.name = name;
    options.verdict = verdict;
    options.program = program;
    options.threads = std::thread::hardware_concurrency();
    const OrvComtradeIntake::Sink sink = sinkInto(write);
    const nanobind::gil_scoped_release others;
    OrvComtradePage::writePage(opened, options, sink);
}
