// Uses the intake again and again, each time with another call failing, and looks how it ends.

#include "Comtrade.h"
#include "torture/Tally.h"

#include <OrvComtradeIntake/Intake.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <exception>
#include <fstream>
#include <functional>
#include <iconv.h>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <uchardet/uchardet.h>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace OrvComtradeIntake;
using namespace orvtest;

namespace {

constexpr unsigned int kMostSeconds = 20;

std::int64_t lostByDetector = 0;  // blocks
std::int64_t exceptionBlocks = 1; // that an exception takes while it is under way; none where all is lacking

/// Adds what is allocated while it lives, and remains.
class Remaining {
public:
    Remaining() : _before(liveBlocks()) {}
    ~Remaining() { lostByDetector += liveBlocks() - _before - (std::uncaught_exceptions() > 0 ? exceptionBlocks : 0); }
    Remaining(const Remaining&) = delete;
    Remaining& operator=(const Remaining&) = delete;

private:
    const std::int64_t _before;
};

/// All that a use of the intake gives, and what it says of it.
struct Gained {
    std::string result;
    std::string errors; ///< sentences of findings of severity Error
};

/// Everything by a text that is the same for the same.
class Digest {
public:
    Digest& operator<<(std::string_view text) {
        _text.append(text);
        _text += '|';
        return *this;
    }

    template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>> Digest& operator<<(Number number) {
        char bytes[sizeof number];
        std::memcpy(bytes, &number, sizeof number);
        _text.append(bytes, sizeof number);
        return *this;
    }

    std::string take() { return std::move(_text); }

private:
    std::string _text;
};

void add(Digest& digest, const Header& header) {
    digest << header.station << header.recorder << header.revision << header.lineFrequency << header.encoding
           << header.hdr << header.inf << header.samples << header.samplesDeclared << header.timeCode;
    for (const AnalogInfo& channel : header.analog) {
        digest << channel.id << channel.component << channel.unit << channel.a << channel.b << channel.skew;
    }
    for (const StatusInfo& channel : header.status) {
        digest << channel.id << channel.component << channel.normalState;
    }
    for (const RateInfo& rate : header.rates) {
        digest << rate.rate << rate.endSample;
    }
}

void add(Digest& digest, const Columns& columns) {
    digest << columns.samples;
    for (const double time : columns.time) {
        digest << time;
    }
    for (const double value : columns.analog) {
        digest << value;
    }
    for (const auto& changes : columns.states) {
        for (const StateChange& change : changes) {
            digest << change.sample << change.state;
        }
    }
    digest << columns.missing.size();
}

void add(Digest& digest, const OrvComtradeLib::Comtrade& comtrade) {
    digest << comtrade.duration << comtrade.cfg.stationName << comtrade.analogChannels.size();
    for (const OrvComtradeLib::Sample& sample : comtrade.dat.samples) {
        digest << sample.time;
        for (const double value : sample.analogValues) {
            digest << value;
        }
        for (const bool state : sample.binaryValues) {
            digest << state;
        }
    }
}

using Use = std::function<void(const Opened&, Digest&)>;

const std::vector<std::pair<std::string, Use>>& uses() {
    static const std::vector<std::pair<std::string, Use>> all = {
        {"findings",
         [](const Opened& opened, Digest& digest) {
             for (const Finding& finding : opened.findings()) {
                 digest << finding.code << finding.found << finding.repair << finding.places << finding.place.line;
             }
         }},
        {"load",
         [](const Opened& opened, Digest& digest) {
             OrvComtradeLib::Comtrade comtrade;
             digest << opened.load(comtrade);
             add(digest, comtrade);
         }},
        {"columns", [](const Opened& opened, Digest& digest) { add(digest, opened.columns()); }},
        {"blocks",
         [](const Opened& opened, Digest& digest) {
             opened.columns({}, 7, [&digest](const Columns& block) {
                 add(digest, block);
                 return true;
             });
         }},
        {"write",
         [](const Opened& opened, Digest& digest) {
             std::string cfg;
             std::string dat;
             opened.write([&cfg](std::string_view bytes) { cfg += bytes; },
                          [&dat](std::string_view bytes) { dat += bytes; });
             digest << cfg << dat;
         }},
        {"write cff",
         [](const Opened& opened, Digest& digest) {
             std::string cff;
             Form form;
             form.combined = true;
             form.encoding = "GB18030";
             form.dataType = DataType::Float32;
             form.revision = 2013;
             opened.write([&cff](std::string_view bytes) { cff += bytes; }, nullptr, form);
             digest << cff;
         }},
        {"write for the library",
         [](const Opened& opened, Digest& digest) {
             std::string cfg;
             std::string dat;
             Form form;
             form.reader = Reader::Library;
             opened.write([&cfg](std::string_view bytes) { cfg += bytes; },
                          [&dat](std::string_view bytes) { dat += bytes; }, form);
             digest << cfg << dat;
         }},
        {"librarySuffices", [](const Opened& opened, Digest& digest) { digest << opened.librarySuffices(); }},
    };
    return all;
}

struct Scenario {
    std::string name;
    std::string path;
    std::string encoding;
    const Use* use;
};

std::vector<Scenario> scenariosFor(const std::string& root) {
    const std::string recordings = root + "/tests/recordings/";
    const std::vector<std::array<std::string, 3>> sources = {
        {"ascii", recordings + "1991-ascii-cp866/rec.cfg", ""},
        {"binary", recordings + "2001-binary/test1.cfg", ""},
        {"binary32", recordings + "upper-case-binary32-crlf/RECORD_2.CFG", ""},
        {"float32", recordings + "float32-nanoseconds/float.cfg", ""},
        {"cff", recordings + "cff-base64-padding/CODED.CFF", ""},
        {"cff text", recordings + "cff-ascii-bom/COMBINED.CFF", ""},
        {"gbk", recordings + "gbk-ascii-stamps-begin-again/test2.cfg", ""},
        {"gbk named", recordings + "gbk-binary-4-rates/bay.cfg", "GB18030"},
        {"latin", recordings + "latin1-station/station.cfg", ""},
        {"texts", recordings + "header-and-information/rec.cfg", ""},
        {"names in mixed case", recordings + "mixed-case-names/RUN-2.DAT", ""},
    };
    std::vector<Scenario> all;
    for (const auto& [kind, path, encoding] : sources) {
        for (const auto& [name, use] : uses()) {
            std::string scenario = name;
            scenario.append(", ").append(kind);
            all.push_back({scenario, path, encoding, &use});
        }
    }
    return all;
}

Gained gain(const Scenario& scenario) {
    Options options;
    options.encoding = scenario.encoding;
    const Opened opened = open(scenario.path, options);
    Digest digest;
    digest << opened.readable() << opened.cfgFile() << opened.datFile();
    Gained gained;
    add(digest, opened.header());
    if (opened.readable()) {
        (*scenario.use)(opened, digest);
    }
    for (const Finding& finding : opened.findings()) {
        if (finding.severity == Severity::Error) {
            gained.errors.append(finding.place.file).append(": ").append(finding.found).append("; ");
        }
    }
    gained.result = digest.take();
    return gained;
}

struct Judgement {
    End end = End::Same;
    std::string detail;
};

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

int openFiles() {
    DIR* const folder = opendir("/proc/self/fd");
    int count = 0;
    while (readdir(folder) != nullptr) {
        ++count;
    }
    closedir(folder);
    return count;
}

/// Lack of memory as the C library loads a converter: it remembers that there is none.
bool isOfConverter(const Plan& plan, const std::string& reported) {
    return plan.call == Call::Allocation && has(reported, "no memory to load it");
}

/// One use by a plan.
Judgement attempt(const Scenario& scenario, const Plan& plan, Calls& calls, const std::string& expected) {
    const int error = infoOf(plan.call).error;
    exceptionBlocks = plan.isLasting ? 0 : 1;
    try {
        failBy(plan, calls);
        const Gained gained = gain(scenario);
        failNothing();
        if (gained.result == expected) {
            return {};
        }
        const bool isReported = has(gained.errors, std::strerror(error)) || isOfConverter(plan, gained.errors);
        return {isReported ? End::Reported : gained.errors.empty() ? End::Wrong : End::Unreported, gained.errors};
    } catch (const std::bad_alloc&) {
        failNothing();
        return {error == ENOMEM ? End::Reported : End::Unreported, "std::bad_alloc"};
    } catch (const std::system_error& problem) {
        failNothing();
        return {problem.code().value() == error ? End::Reported : End::Unreported, problem.what()};
    } catch (const std::exception& problem) {
        failNothing();
        return {isOfConverter(plan, problem.what()) ? End::Reported : End::Unreported, problem.what()};
    }
}

/// A call of the detector of encodings. It loses what it has as memory runs out in it, which is its own affair.
template <class Call> auto watchingDetector(const Call& call) {
    const Remaining remaining;
    return call();
}

template <class Function> Function detectorFunction(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name)); // NOLINT: as dlsym gives functions
}

/// The C library unloads a converter when others were used often enough, unless somebody has it open.
void keepConverters() {
    for (const char* const name : {"GB18030", "ISO-8859-1", "UTF-16LE", "WINDOWS-1252"}) {
        for (const bool isFrom : {true, false}) {
            [[maybe_unused]] const iconv_t kept = iconv_open(isFrom ? "UTF-8" : name, isFrom ? name : "UTF-8");
        }
    }
}

/// In a process of its own. What the C library and others keep for good is there already if it is warm.
Judgement attemptAndCheck(const Scenario& scenario, const Plan& plan, Calls& calls, const std::string& expected,
                          bool isWarm) {
    const int files = openFiles();
    std::int64_t blocks = 0;
    Judgement judgement;
    {
        const std::int64_t before = liveBlocks();
        judgement = attempt(scenario, plan, calls, expected);
        blocks =
            liveBlocks() - before - lostByDetector - (judgement.detail.capacity() > std::string().capacity() ? 1 : 0);
    }
    if (isFault(judgement.end)) {
        return judgement;
    }
    if (openFiles() != files) {
        return {End::LeftBehind, std::to_string(openFiles() - files) + " descriptors, " + judgement.detail};
    }
    if (isWarm && blocks != 0) {
        return {End::LeftBehind, std::to_string(blocks) + " blocks, " + judgement.detail};
    }
    if (isOfConverter(plan, judgement.detail)) {
        return judgement;
    }
    try {
        const Gained again = gain(scenario);
        if (again.result != expected) {
            return {End::Wrong, "another result afterwards"};
        }
    } catch (const std::exception& problem) {
        return {End::Wrong, std::string("afterwards: ") + problem.what()};
    }
    return judgement;
}

struct Torture {
    const TortureOptions& options;
    const std::vector<Scenario>& scenarios;
    Tally& tally;

    void run(std::size_t index, unsigned int worker, Chains& chains) const {
        for (const bool isWarm : {false, true}) {
            const Shared<Calls> calls;
            const pid_t child = fork();
            if (child == 0) {
                _run(index, worker, isWarm, *calls, chains);
                std::fflush(nullptr);
                _exit(0);
            }
            int status = 0;
            if (waitpid(child, &status, 0) != child || status != 0) {
                throw std::runtime_error(scenarios[index].name + " does not work");
            }
        }
    }

private:
    struct Reference {
        std::size_t length;
        char bytes[1UL << 20U];
    };

    void _run(std::size_t index, unsigned int worker, bool isWarm, Calls& calls, Chains& chains) const {
        const Scenario& scenario = scenarios[index];
        if (isWarm) {
            keepConverters();
            gain(scenario);
        }
        const Shared<Reference> reference;
        const pid_t first = fork();
        if (first == 0) {
            failBy({}, calls);
            const std::string result = gain(scenario).result;
            failNothing();
            if (result.size() > sizeof reference->bytes) {
                _exit(1);
            }
            reference->length = result.size();
            std::memcpy(reference->bytes, result.data(), result.size());
            _exit(0);
        }
        int status = 0;
        if (waitpid(first, &status, 0) != first || status != 0) {
            _exit(1);
        }
        const std::string expected(reference->bytes, reference->length);
        for (const Plan& plan : plansFor(calls, options, worker, chains)) {
            _runOne(index, plan, calls, expected, isWarm);
        }
    }

    void _runOne(std::size_t index, const Plan& plan, Calls& calls, const std::string& expected, bool isWarm) const {
        const pid_t child = fork();
        if (child == 0) {
            alarm(kMostSeconds);
            const Judgement judgement = attemptAndCheck(scenarios[index], plan, calls, expected, isWarm);
            tally.add(index, plan, judgement.end, judgement.detail);
            if (options.number != 0) {
                std::fprintf(stderr, "%s\n", judgement.detail.c_str());
            }
            std::fflush(nullptr);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (WIFSIGNALED(status)) {
            const int signal = WTERMSIG(status);
            tally.add(index, plan, signal == SIGALRM ? End::Hung : End::Aborted,
                      "signal " + std::to_string(signal) + (isWarm ? ", warm" : ", cold"));
        }
    }
};

} // namespace

extern "C" uchardet_t uchardet_new() {
    static const auto real = detectorFunction<uchardet_t (*)()>("uchardet_new");
    return watchingDetector([] { return real(); });
}

extern "C" int uchardet_handle_data(uchardet_t ud, const char* data, std::size_t len) {
    static const auto real = detectorFunction<int (*)(uchardet_t, const char*, std::size_t)>("uchardet_handle_data");
    return watchingDetector([&] { return real(ud, data, len); });
}

extern "C" void uchardet_data_end(uchardet_t ud) {
    static const auto real = detectorFunction<void (*)(uchardet_t)>("uchardet_data_end");
    watchingDetector([&] { real(ud); });
}

extern "C" void uchardet_delete(uchardet_t ud) {
    static const auto real = detectorFunction<void (*)(uchardet_t)>("uchardet_delete");
    const std::int64_t before = liveBlocks();
    real(ud);
    lostByDetector += liveBlocks() - before;
}

int main(int argc, char** argv) {
    const TortureOptions options = TortureOptions::of(argc, argv, "intake_torture SOURCES", 1);
    return runTorture<Torture>(options, scenariosFor(options.words[0]));
}
