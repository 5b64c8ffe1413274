#include "commandLine.h"

#include "commands/Request.h"
#include "commands/check.h"
#include "commands/events.h"
#include "commands/export.h"
#include "commands/info.h"
#include "commands/normalize.h"
#include "commands/outputTarget.h"
#include "commands/points.h"
#include "commands/runRecordings.h"
#include "input/collectRecordings.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/printable.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <iconv.h>
#include <map>
#include <memory>
#include <new>
#include <sstream>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

using OrvComtradeIntake::Limits;
using OrvComtradeIntake::Reader;
using OrvComtradeIntake::Side;

namespace {

constexpr std::size_t kMostJobs = 256;

const std::map<std::string, Side> kSides = {
    {"recorded", Side::Recorded}, {"primary", Side::Primary}, {"secondary", Side::Secondary}};
const std::map<std::string, ExportFormat> kFormats = {
    {"csv", ExportFormat::Csv}, {"jsonl", ExportFormat::JsonLines}, {"npy", ExportFormat::Npy}};
const std::map<std::string, Reader> kReaders = {{"standard", Reader::Standard}, {"library", Reader::Library}};

const std::map<std::string, std::uint64_t Limits::*> kLimits = {
    {"cfg-bytes", &Limits::cfgBytes}, {"channels", &Limits::channels},          {"rates", &Limits::rates},
    {"samples", &Limits::samples},    {"decoded-bytes", &Limits::decodedBytes}, {"findings", &Limits::findings}};

/// The names alone: CLI11 would show the numbers of the enumerators beside them.
template <class Value> std::vector<std::string> namesIn(const std::map<std::string, Value>& values) {
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const auto& [name, value] : values) {
        names.push_back(name);
    }
    return names;
}

template <class Value>
CLI::Option* addChoice(CLI::App& command, const std::string& option, const std::map<std::string, Value>& values,
                       Value& value, const std::string& description) {
    return command
        .add_option_function<std::string>(
            option, [&values, &value](const std::string& name) { value = values.at(name); }, description)
        ->check(CLI::IsMember(namesIn(values)));
}

std::string problemOfEncoding(const std::string& name) {
    errno = 0;
    iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (name.empty() || converter == reinterpret_cast<iconv_t>(-1)) { // NOLINT: how iconv fails
        if (!name.empty() && errno == ENOMEM) {
            throw std::bad_alloc();
        }
        return "no encoding is called " + name;
    }
    iconv_close(converter);
    return {};
}

std::string problemOfTarget(const std::string& name) {
    return name.empty() ? "the name is empty" : "";
}

/// Sets the limit that "NAME=VALUE" names. Throws where that is wrong.
void setLimit(const std::string& text, Limits& limits) {
    const std::size_t sign = text.find('=');
    const auto limit = kLimits.find(text.substr(0, sign));
    if (sign == std::string::npos || limit == kLimits.end()) {
        throw CLI::ValidationError("--limit", fmt::format("a limit is NAME=VALUE, with one of the names {}",
                                                          fmt::join(namesIn(kLimits), ", ")));
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + sign + 1, end, limits.*limit->second);
    if (error != std::errc() || stop != end) {
        throw CLI::ValidationError("--limit", "not a whole number: " + text.substr(sign + 1));
    }
}

/// The arguments of every command, and what to do for each.
class CommandLine {
public:
    CommandLine() {
        _app.set_version_flag("--version", "orvcomtrade " ORVCOMTRADE_VERSION, "Print the version and exit");
        _app.footer("PATH is a file of a recording (.cfg, .dat or .cff, in any case), or a folder, which is searched "
                    "to any depth.\nExit status: 0 all good, 1 a recording cannot be read or is damaged, or a file "
                    "cannot be written, 2 wrong usage.");
        _app.require_subcommand(1);
        _request.jobs = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
        _request.load.intake.folders = std::make_shared<OrvComtradeIntake::Folders>();
        _addInfo();
        _addCheck();
        _addPoints();
        _addExport();
        _addEvents();
        _addNormalize();
    }

    /// Whether there is work to do: not so after a request for help.
    bool parse(int argc, char** argv) {
        std::vector<std::string> words(argv + 1, argv + argc);
        // CLI11 takes no more words behind "--" once the first of a list was there.
        const auto mark = std::find(words.begin(), words.end(), "--");
        const std::vector<std::string> rest(mark == words.end() ? mark : mark + 1, words.end());
        words.erase(mark, words.end());
        std::reverse(words.begin(), words.end()); // as CLI11 wants them
        try {
            _app.parse(std::move(words));
        } catch (const CLI::ParseError& outcome) {
            if (outcome.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
                _refuse(outcome.what());
            }
            std::ostringstream text;
            errno = 0;
            _app.exit(outcome, text, text); // help or version
            if (errno == ENOMEM) {
                throw std::bad_alloc(); // a stream makes a shorter text of it
            }
            StandardOutput out;
            out.write(text.str());
            out.flush();
            return false;
        }
        _request.paths.insert(_request.paths.end(), rest.begin(), rest.end());
        if (_request.paths.empty()) {
            _refuse("PATH is required");
        }
        return true;
    }

    int run() {
        const auto* const command = _app.get_subcommands().front();
        return _actions.at(command)();
    }

private:
    using Work = std::function<void(const Entry&, Job&)>;

    [[noreturn]] static void _refuse(const std::string& sentence) {
        throw Failure(kWrongUsage, printable(sentence) + "\nTry orvcomtrade --help.");
    }

    /// Adds a command with the options that all have. `asIs` says whether it may leave the intake out.
    CLI::App* _add(const std::string& name, const std::string& description, bool asIs) {
        CLI::App* const command = _app.add_subcommand(name, description);
        command->add_option("PATH", _request.paths, "Files of recordings, and folders");
        CLI::Option* const side = addChoice(*command, "--side", kSides, _request.load.intake.side,
                                            "Side of the values (default: as recorded)");
        CLI::Option* const encoding = command
                                          ->add_option("--encoding", _request.load.intake.encoding,
                                                       "Encoding of the texts, as iconv names it (default: detected)")
                                          ->check(CLI::Validator(problemOfEncoding, ""));
        CLI::Option* const limit = command
                                       ->add_option_function<std::vector<std::string>>(
                                           "--limit",
                                           [this](const std::vector<std::string>& all) {
                                               for (const std::string& one : all) {
                                                   setLimit(one, _request.load.intake.limits);
                                               }
                                           },
                                           "The most that is read of a recording, NAME=VALUE (may be given again)")
                                       ->allow_extra_args(false);
        if (asIs) {
            command
                ->add_flag("--as-is", _request.load.asIs,
                           "Read the files untouched, as the library does without the intake")
                ->excludes(side) // by name it takes memory in a function that may not throw
                ->excludes(encoding)
                ->excludes(limit);
        }
        command->add_option("--jobs", _request.jobs, "Recordings read side by side (default: hardware threads)")
            ->check(CLI::Range(std::size_t{1}, kMostJobs));
        command->add_flag("--json", _request.json, "Print a JSON object per recording, each on a line");
        command->add_flag("--follow-links", _request.followsLinks,
                          "Follow links that lead out of a folder that is searched");
        command->add_flag("--no-sandbox", _request.unconfined,
                          "Keep the right to open other files while recordings are read (Linux takes it otherwise)");
        return command;
    }

    void _addForce(CLI::App& command) {
        command.add_flag("--force", _request.load.intake.acceptsAnyNumbers,
                         "Read data even if neither their sample numbers nor their time stamps make sense");
    }

    /// Of a command that writes files.
    void _addForce(CLI::App& command, bool& replace) {
        command.add_flag_callback(
            "--force",
            [this, &replace] {
                replace = true;
                _request.load.intake.acceptsAnyNumbers = true;
            },
            "Replace files that exist, and read data even if neither their sample numbers nor their time stamps make "
            "sense");
    }

    void _addInfo() {
        CLI::App* const command = _add("info", "Print what each recording is and which channels it has", true);
        _addForce(*command);
        _actions[command] = [this] {
            return _forEach([this](const Entry& entry, Job& job) { printInfo(entry, _request, job); });
        };
    }

    void _addCheck() {
        CLI::App* const command = _add(
            "check", "Print what deviates from the standard or is damaged in each recording, and how it is read", true);
        _addForce(*command);
        _actions[command] = [this] {
            return _forEach([this](const Entry& entry, Job& job) { printCheck(entry, _request, job); });
        };
    }

    void _addPoints() {
        CLI::App* const command = _add("points", "Print the plot points of one channel as CSV", true);
        command->footer("The last word is the CHANNEL, unless --channel names it.\n"
                        "CHANNEL is a number from 1, a name as info prints it, or an identifier (in this order).\n"
                        "Values are in base units (V and A, also where the file says kV and kA).");
        CLI::Option* const channel =
            command->add_option("--channel", _points.channel, "The channel (default: the last word)");
        command->add_option("--start", _points.start, "First instant in seconds (default 0)");
        command->add_option("--end", _points.end, "Last instant in seconds (default: the last sample)");
        CLI::Option* const rate =
            command->add_option("--rate", _points.rate, "Points per second (default: about 1000 points in all)");
        command->add_flag("--status", _points.status, "Take a status channel and print its steps")->excludes(rate);
        _addForce(*command);
        _actions[command] = [this, channel] {
            if (channel->count() == 0) {
                _takeChannelFromPaths();
            }
            checkRange(_points);
            return _forEach([this](const Entry& entry, Job& job) { printPoints(entry, _request, _points, job); });
        };
    }

    void _takeChannelFromPaths() {
        if (_request.paths.size() < 2) {
            _refuse("CHANNEL is required");
        }
        _points.channel = std::move(_request.paths.back());
        _request.paths.pop_back();
    }

    void _addExport() {
        CLI::App* const command = _add("export", "Write every sample of each recording", true);
        addChoice(*command, "--format", kFormats, _export.format, "csv (default), jsonl, or npy with a JSON sidecar");
        command
            ->add_option("--output", _export.output.target,
                         "File, or folder (for several: always); default standard output")
            ->check(CLI::Validator(problemOfTarget, ""));
        command->add_flag("--raw", _export.raw,
                          "Write texts as they are into CSV, also where a spreadsheet takes them for formulas");
        _addForce(*command, _export.output.replace);
        _actions[command] = [this] {
            _collect();
            checkExport(_request, _export);
            refuseSharedTargets(_request.selection, endingsOf(_export.format));
            return _run([this](const Entry& entry, Job& job) { exportRecording(entry, _request, _export, job); },
                        exportTargets(_request, _export));
        };
    }

    void _addEvents() {
        CLI::App* const command = _add("events", "Print the changes of the status channels", true);
        _addForce(*command);
        _actions[command] = [this] {
            return _forEach([this](const Entry& entry, Job& job) { printEvents(entry, _request, job); });
        };
    }

    void _addNormalize() {
        CLI::App* const command =
            _add("normalize", "Write each recording as a clean pair of .cfg and .dat into a folder", false);
        command->add_option("--output", _normalize.output.target, "Folder, made if it is not there")
            ->required()
            ->check(CLI::Validator(problemOfTarget, ""));
        addChoice(*command, "--for", kReaders, _normalize.form.reader,
                  "Who is to read it: standard (default), or library for the library alone");
        _addForce(*command, _normalize.output.replace);
        _actions[command] = [this] {
            checkNormalize(_request, _normalize);
            _collect(_normalize.output.target);
            refuseSharedTargets(_request.selection, {".cfg", ".dat"});
            return _run([this](const Entry& entry, Job& job) { normalizeRecording(entry, _request, _normalize, job); },
                        normalizeTargets(_request, _normalize));
        };
    }

    void _collect(const std::string& outputFolder = {}) {
        _request.selection = collectRecordings(_request.paths, _request.followsLinks, outputFolder);
        for (const std::string& note : _request.selection.notes) {
            writeWhole(STDERR_FILENO, "orvcomtrade: " + note + "\n");
        }
    }

    /// `targets` are what will be written, without extensions; none where that is standard output.
    int _run(const Work& work, const std::vector<std::string>& targets = {}) {
        if (!_request.unconfined) {
            confine(_request.selection, targets);
        }
        return runRecordings(_request.selection, {_request.jobs, _request.json, !targets.empty()}, work);
    }

    int _forEach(const Work& work) {
        _collect();
        return _run(work);
    }

    CLI::App _app{"Reads COMTRADE disturbance recordings (IEEE C37.111).", "orvcomtrade"};
    Request _request;
    PointsRequest _points;
    ExportRequest _export;
    NormalizeRequest _normalize;
    std::map<const CLI::App*, std::function<int()>> _actions;
};

} // namespace

std::function<int()> readCommandLine(int argc, char** argv) {
    const auto line = std::make_shared<CommandLine>();
    if (!line->parse(argc, argv)) {
        return [] { return 0; };
    }
    return [line] { return line->run(); };
}
