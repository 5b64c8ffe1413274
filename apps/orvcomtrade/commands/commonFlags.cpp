#include "commands/commonFlags.h"

#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <iconv.h>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

using OrvComtradeIntake::Limits;
using OrvComtradeIntake::Side;

namespace {

const std::map<std::string, Side> kSides = {
    {"recorded", Side::Recorded}, {"primary", Side::Primary}, {"secondary", Side::Secondary}};

using LimitIn = std::uint64_t& (*)(LoadOptions&);

template <auto Member> std::uint64_t& ofIntake(LoadOptions& options) {
    return options.intake.limits.*Member;
}

template <auto Member> std::uint64_t& ofArchives(LoadOptions& options) {
    return options.archive.*Member;
}

const std::map<std::string, LimitIn> kLimits = {
    {"cfg-bytes", ofIntake<&Limits::cfgBytes>},      {"text-bytes", ofIntake<&Limits::textBytes>},
    {"channels", ofIntake<&Limits::channels>},       {"rates", ofIntake<&Limits::rates>},
    {"samples", ofIntake<&Limits::samples>},         {"decoded-bytes", ofIntake<&Limits::decodedBytes>},
    {"findings", ofIntake<&Limits::findings>},       {"member-bytes", ofArchives<&ArchiveLimits::memberBytes>},
    {"members", ofArchives<&ArchiveLimits::members>}};

const std::map<std::string, bool> kOrigins = {{"relative", false}, {"trigger", true}};

const std::map<std::string, TimeBase> kTimeBases = {{"relative", TimeBase::Relative},
                                                    {"trigger", TimeBase::Trigger},
                                                    {"absolute", TimeBase::Absolute},
                                                    {"utc", TimeBase::Utc}};
const std::map<std::string, bool> kSkews = {{"keep", true}, {"apply", false}};

/// Those that real recordings have.
const std::vector<std::string> kEncodings = {"UTF-8",  "ISO-8859-1", "ISO-8859-2", "CP1250",  "CP1251",
                                             "CP1252", "CP866",      "KOI8-R",     "GB18030", "BIG5",
                                             "CP932",  "CP949",      "UTF-16LE",   "UTF-16BE"};

std::vector<std::string> limitWords() {
    std::vector<std::string> words;
    words.reserve(kLimits.size());
    for (const auto& [name, limit] : kLimits) {
        words.push_back(name + "=");
    }
    return words;
}

std::string problemOfEncoding(const std::string& name) {
    errno = 0;
    iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (name.empty() || converter == reinterpret_cast<iconv_t>(-1)) { // NOLINT: how iconv fails
        if (!name.empty() && errno == ENOMEM) {
            throw std::bad_alloc();
        }
        return "unknown encoding: " + name;
    }
    iconv_close(converter);
    return {};
}

/// Sets the limit that "NAME=VALUE" names. Gives what is wrong with it.
std::string setLimit(const std::string& text, LoadOptions& options) {
    const std::size_t sign = text.find('=');
    const auto limit = kLimits.find(text.substr(0, sign));
    if (sign == std::string::npos || limit == kLimits.end()) {
        return fmt::format("{}: a limit is NAME=VALUE, where NAME is one of {}", printable(text), [] {
            std::vector<std::string> names;
            names.reserve(kLimits.size());
            for (const auto& known : kLimits) {
                names.push_back(known.first);
            }
            return fmt::format("{}", fmt::join(names, ", "));
        }());
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + sign + 1, end, limit->second(options));
    return error != std::errc() || stop != end ? "not a whole number: " + text.substr(sign + 1) : "";
}

Flag encodingFlag(Request& request) {
    Flag flag{"--encoding", "NAME", "Encoding of the texts, as iconv names it (default: detected)",
              [&request](const std::string& name) {
                  request.load.intake.encoding = name;
                  return problemOfEncoding(name);
              }};
    return std::move(flag).of(ValueKind::Suggestion, kEncodings);
}

Flag limitFlag(Request& request) {
    Flag flag{"--limit", "NAME=VALUE", "Limit for what is read of a recording (may be given again)",
              [&request](const std::string& text) { return setLimit(text, request.load); }};
    flag.repeats = true;
    return std::move(flag)
        .of(ValueKind::Suggestion, limitWords())
        .with("Limits protect against damaged and hostile recordings. Names and defaults: cfg-bytes (16777216), "
              "text-bytes "
              "(16777216; a header or information file), channels "
              "(50000), rates (10000), samples (1000000000), decoded-bytes (1073741824; data in base64, decoded), "
              "findings (10000, not counting errors), member-bytes (268435456; a file in an archive, unpacked, or "
              "standard input) and members (1000000; files in an archive). No real recording comes near them.");
}

Flag listFlag(Request& request) {
    return textsFlag("--files-from", "FILE", "Read more paths from a file, one per line; - is standard input",
                     request.lists)
        .of(ValueKind::File);
}

bool isStandardOutput(const std::string& target) {
    return target == "-" || target == "/dev/stdout" || target == "/dev/fd/1" || target == "/proc/self/fd/1";
}

constexpr const char* kForceDetails =
    "Without it, such data count as those of another recording, or of none, and the recording fails. Each recording "
    "that only this option makes readable is named on the standard error output.";

} // namespace

std::size_t Request::defaultJobs() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
}

std::vector<Flag> readingFlags(Request& request, bool mayBeAsIs) {
    request.load.intake.folders = std::make_shared<OrvComtradeIntake::Folders>();
    std::vector<Flag> flags;
    flags.push_back(
        choiceFlag("--side", "SIDE", "Side of the values (default: as recorded)", kSides, request.load.intake.side)
            .with("Side of the instrument transformers: recorded, primary or secondary. By default each channel keeps "
                  "the side that its line declares. A channel without a usable ratio always keeps it."));
    flags.push_back(encodingFlag(request));
    flags.push_back(limitFlag(request));
    if (mayBeAsIs) {
        flags.push_back(
            switchFlag("--as-is", "Read the files untouched, as the library does without the intake", request.load.asIs)
                .with("Their names must be in lower case, their contents are read as they are, and the values are of "
                      "the secondary side.")
                .without({"--side", "--encoding", "--limit"}));
    }
    flags.push_back(countFlag("-j,--jobs", "Recordings read at the same time (default: hardware threads)", 1,
                              Request::kMostJobs, request.jobs)
                        .with("It does not change what is printed."));
    flags.push_back(switchFlag("--json", "Print one JSON object per recording, one on a line", request.json)
                        .with("The objects are in the order of the recordings. They always have the members path and "
                              "ok. If ok is false, error gives the reason (for check, the findings give it if there "
                              "was a file to look at). A path that is not UTF-8 is also in pathBytes, percent-encoded. "
                              "Invisible characters are escaped. A number that is not finite is null."));
    flags.push_back(
        switchFlag("-q,--quiet", "Print only failures on standard error", request.quiet)
            .with("No notes, no progress, no summary, and no lines on standard output about files that are written."));
    flags.push_back(switchFlag("-v,--verbose", "Print on standard error how each recording was read", request.verbose)
                        .with("Its files, the encoding of its texts, and its warnings and errors as check prints them.")
                        .without({"--quiet"}));
    flags.push_back(listFlag(request));
    flags.push_back(switchFlag("-0,--null", "The paths of --files-from end in NUL, as find -print0 writes them",
                               request.listsHaveNuls));
    flags.push_back(
        switchFlag("--archives", "Also read the .zip archives in folders that are searched", request.entersArchives)
            .with("An archive named on the command line is always read."));
    flags.push_back(
        switchFlag("--follow-links", "Follow links that lead out of a folder that is searched", request.followsLinks)
            .with("Without it, such links are named on the standard error output and not followed; a recording with "
                  "such a link among its files fails. Links within the folder, and links named on the command line, "
                  "are always followed."));
    flags.push_back(
        switchFlag("--no-sandbox", "Keep the right to open other files while reading (Linux gives it up)",
                   request.unconfined)
            .with("Without this option, and if the kernel has Landlock (Linux 5.13 or later), the program gives up "
                  "every right that it does not need before it reads a recording. It can then read only the folders of "
                  "the recordings that were found (with the files that links there lead to) and what converts texts. "
                  "It can write only below the folders of its output. It cannot start a program that has more rights. "
                  "Use this option on a system where that gets in the way."));
    return flags;
}

std::vector<Flag> readingFlags(Request& request, const std::vector<std::string>& names) {
    std::vector<Flag> flags = readingFlags(request, false);
    const auto isOther = [&names](const Flag& flag) {
        return std::find(names.begin(), names.end(), flag.longName()) == names.end();
    };
    flags.erase(std::remove_if(flags.begin(), flags.end(), isOther), flags.end());
    return flags;
}

Flag timeFlag(TimeBase& base) {
    return choiceFlag("--time", "BASE", "relative (default), trigger, absolute or utc", kTimeBases, base)
        .with("Seconds from the first sample or from the trigger, or date and time as ISO 8601. absolute is the "
              "recorder's clock, with its offset from UTC if the recording has a time code. utc needs a time code.");
}

Flag skewFlag(bool& keeps, std::string summary) {
    return choiceFlag("--skew", "WAY", std::move(summary), kSkews, keeps)
        .with("The skew is how long after the time of a sample the value of a channel was taken.");
}

std::vector<Flag> csvFlags(CsvStyle& style) {
    Flag excel{"--excel", "", "Write CSV that Excel opens on a double click where the decimal sign is a comma",
               [&style](const std::string& /*none*/) {
                   style.separator = kExcelStyle.separator;
                   style.point = kExcelStyle.point;
                   style.mark = kExcelStyle.mark;
                   return std::string();
               }};
    Flag digits{"--digits", "NUMBER", "Significant digits of the values (default: all that they have)",
                [&style](const std::string& text) {
                    std::size_t number = 0;
                    std::string problem = countFlag("", "", 1, 17, number).take(text);
                    style.digits = static_cast<int>(number);
                    return problem;
                }};
    std::vector<Flag> flags;
    flags.push_back(std::move(excel).with("It begins with a UTF-8 mark and has semicolons and decimal commas."));
    flags.push_back(std::move(digits));
    flags.push_back(
        switchFlag("--raw", "Write texts into CSV unchanged, even if a spreadsheet takes them for formulas", style.raw)
            .with("Without it, a text that begins with = + - @, a tab or a carriage return gets an apostrophe in "
                  "front."));
    return flags;
}

Flag outputFlag(OutputRequest& output, std::string summary, std::string details) {
    Flag flag{"-o,--output", "FILE", std::move(summary), [&output](const std::string& target) {
                  output.target = isStandardOutput(target) ? "" : target;
                  return std::string(target.empty() ? "the name is empty" : "");
              }};
    return std::move(flag).of(ValueKind::File).with(std::move(details));
}

Flag fullBytesFlag(std::size_t& bytes) {
    return countFlag("--full-bytes", "Bytes of recorded values that a page holds in full (default: 100000000)", 0,
                     std::numeric_limits<std::size_t>::max(), bytes)
        .with("Of a larger recording the page keeps the least and the greatest of every 16 samples, and every sample "
              "around the trigger: up to 1000000 of them. The page says so.");
}

Flag forceFlag(Request& request) {
    return switchFlag("--force", "Read data even if neither their sample numbers nor their time stamps make sense",
                      request.load.intake.acceptsAnyNumbers)
        .with(kForceDetails);
}

Flag forceFlag(Request& request, OutputRequest& output) {
    Flag force{"--force", "", "Replace existing files, and read data even if their numbers make no sense",
               [&request, &output](const std::string& /*none*/) {
                   output.existing = output.existing == Existing::Refuse ? Existing::Replace : output.existing;
                   request.load.intake.acceptsAnyNumbers = true;
                   return std::string();
               }};
    return std::move(force).with("Data make no sense if neither their sample numbers nor their time stamps do. " +
                                 std::string(kForceDetails) +
                                 " Without it, existing files are kept, and the recording fails. A file of the "
                                 "recording itself is never replaced.");
}

std::vector<Flag> forceFlags(Request& request, OutputRequest& output) {
    const auto existing = [&output](Existing wanted) {
        return [&output, wanted](const std::string& /*none*/) {
            output.existing = wanted;
            return std::string();
        };
    };
    Flag skip{"--skip-existing", "", "Skip recordings whose files exist", existing(Existing::Skip)};
    Flag update{"--update", "", "The same, but replace files that are older than their recording",
                existing(Existing::Update)};
    std::vector<Flag> flags;
    flags.push_back(std::move(skip).with("This continues an interrupted run. The exit status is 0."));
    flags.push_back(std::move(update).without({"--skip-existing"}));
    flags.push_back(forceFlag(request, output));
    return flags;
}

std::vector<Flag> channelFlags(ChannelWishes& wishes) {
    return {textsFlag("-c,--channel", "CHANNEL", "A channel, or several; may be given again (default: all)", wishes.any)
                .of(ValueKind::Channel)
                .with("The number of an analog channel, from 1; a name as info prints it, or an identifier, in any "
                      "case; a pattern of these with * and ?; or a list of these with commas. If channels are named, "
                      "the others are left out."),
            textsFlag("--status", "CHANNEL", "The same for status channels, whose numbers only this option takes",
                      wishes.status)
                .of(ValueKind::Channel)
                .with("Names of status channels may also be given with --channel.")};
}

std::vector<Flag> windowFlags(WindowRequest& window) {
    return {numberFlag("-s,--start", "SECONDS", "First instant in seconds (default: the first sample)", window.start),
            numberFlag("-e,--end", "SECONDS", "Last instant in seconds (default: the last sample)", window.end)
                .with("Both ends belong to the window. A time that differs from that of a sample by less than a "
                      "thousandth of the step between samples is that of the sample."),
            choiceFlag("--time", "TIMES", "What times count from: relative (default: the start), or trigger", kOrigins,
                       window.fromTrigger)
                .with("Instants before the trigger are negative.")};
}
