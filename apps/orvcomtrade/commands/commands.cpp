#include "commands/commands.h"

#include "commands/catalogue.h"
#include "commands/check.h"
#include "commands/compare.h"
#include "commands/cut.h"
#include "commands/events.h"
#include "commands/export.h"
#include "commands/index.h"
#include "commands/info.h"
#include "commands/list.h"
#include "commands/normalize.h"
#include "commands/plot.h"
#include "commands/points.h"
#include "commands/report.h"
#include "commands/stats.h"
#include "commands/view.h"

// A new command is a class in a file of its own in this folder (events.cpp is a short one): its description with
// examples, its flags, and `perform`, or `run` where it does not go recording by recording. It gets a line below and
// one in CMakeLists.txt. Help, completion and --describe follow; `scripts/reference` then writes its part of the manual
// page and of docs/orvcomtrade.md.
std::vector<std::unique_ptr<Command>> allCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(makeList());
    commands.push_back(makeInfo());
    commands.push_back(makeCheck());
    commands.push_back(makePoints());
    commands.push_back(makeEvents());
    commands.push_back(makePlot());
    commands.push_back(makeStats());
    commands.push_back(makeCompare());
    commands.push_back(makeExport());
    commands.push_back(makeCut());
    commands.push_back(makeNormalize());
    commands.push_back(makeView());
    commands.push_back(makeReport());
    commands.push_back(makeIndex());
    commands.push_back(makeCatalogue());
    return commands;
}
