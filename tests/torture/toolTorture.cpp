// Runs the tool again and again, each time with another call failing, and looks how it ends.

#include "torture/Tally.h"
#include "torture/programServer.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/personality.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>
#include <zip.h>

namespace fs = std::filesystem;
using namespace orvtest;

namespace {

using Tree = std::map<std::string, std::string>; ///< files by path, with their bytes

struct Scenario {
    std::string name;
    std::vector<std::string> arguments;
    Tree before;                 ///< what is in the folder that it works in
    bool isToldInOutput = false; ///< a recording that can't be read is what the command prints
    bool isOfSeveral = false;    ///< recordings: the failure of one stops no other

    /// The folder of the recording, or its archive.
    std::string source() const {
        for (const std::string& argument : arguments) {
            if (before.find(argument) != before.end() && fs::path(argument).extension() == ".zip") {
                return argument;
            }
            if (argument.front() == '/') {
                return fs::is_directory(argument) ? argument : fs::path(argument).parent_path().string();
            }
        }
        return {};
    }
};

constexpr const char* kOld = "what was here before\n";

std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The bytes of an archive of the files in a folder; every second one is not compressed.
std::string archiveOf(const std::string& folder) {
    std::string path = (fs::temp_directory_path() / "torture-XXXXXX").string();
    const int file = mkstemp(path.data());
    zip_t* const zip = file < 0 ? nullptr : zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    if (zip == nullptr) {
        throw std::runtime_error("cannot write " + path);
    }
    close(file);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        zip_source_t* const source = zip_source_file(zip, entry.path().c_str(), 0, -1);
        const zip_int64_t index = zip_file_add(zip, entry.path().filename().c_str(), source, ZIP_FL_ENC_UTF_8);
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), index % 2 == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                                 0);
    }
    const bool isWritten = zip_close(zip) == 0;
    std::string bytes = bytesOf(path);
    fs::remove(path);
    if (!isWritten || bytes.empty()) {
        throw std::runtime_error("cannot write " + path);
    }
    return bytes;
}

std::vector<Scenario> scenariosFor(const std::string& root) {
    const std::vector<std::pair<std::string, std::string>> recordings = {
        {"ascii", root + "/tests/recordings/1991-ascii-cp866/rec.cfg"},
        {"binary", root + "/tests/recordings/2001-binary/test1.cfg"},
        {"binary32", root + "/tests/recordings/upper-case-binary32-crlf/RECORD_2.CFG"},
        {"float32", root + "/tests/recordings/float32-nanoseconds/float.cfg"},
        {"cff", root + "/tests/recordings/cff-base64-padding/CODED.CFF"},
        {"gbk", root + "/tests/recordings/gbk-binary-4-rates/bay.cfg"},
        {"texts", root + "/tests/recordings/header-and-information/rec.cfg"},
        {"example", root + "/examples/recordings/feeder_earth_fault.cfg"},
    };
    std::vector<Scenario> all;
    for (const auto& [kind, path] : recordings) {
        all.push_back({"info " + kind, {"info", path}, {}});
        all.push_back({"check " + kind, {"check", path}, {}, true});
        all.push_back({"export csv " + kind, {"export", path}, {}});
        all.push_back({"export jsonl " + kind, {"export", "--format", "jsonl", path}, {}});
        all.push_back({"normalize " + kind, {"normalize", path, "--output", "out"}, {}});
        all.push_back({"events " + kind, {"events", path}, {}});
        all.push_back({"points " + kind, {"points", path, "1"}, {}});
    }
    const std::string& ascii = recordings.front().second;
    const std::string& text = recordings.back().second;
    all.push_back({"export to a file", {"export", ascii, "--output", "out/new.csv"}, {}});
    all.push_back({"export over a file", {"export", ascii, "--force", "--output", "out.csv"}, {{"out.csv", kOld}}});
    all.push_back({"export three files", {"export", ascii, "--format", "npy", "--output", "out/"}, {}});
    all.push_back({"normalize over files",
                   {"normalize", ascii, "--force", "--output", "out"},
                   {{"out/rec.cfg", kOld}, {"out/rec.dat", kOld}}});
    all.push_back({"normalize for the library", {"normalize", text, "--for", "library", "--output", "out"}, {}});
    all.push_back({"info --json", {"info", "--json", ascii}, {}, true});
    all.push_back({"check a folder", {"check", "--jobs", "1", root + "/examples/recordings"}, {}, true, true});
    all.push_back({"normalize a folder",
                   {"normalize", "--jobs", "2", root + "/examples/recordings", "--output", "out"},
                   {},
                   false,
                   true});
    all.push_back({"check --as-is", {"check", "--as-is", ascii}, {}, true});
    const Tree archives = {{"in/all.zip", archiveOf(root + "/tests/recordings/header-and-information")}};
    all.push_back({"info archive", {"info", "in/all.zip"}, archives});
    all.push_back({"check archive", {"check", "in/all.zip"}, archives, true});
    all.push_back({"export csv archive", {"export", "in/all.zip/rec.cfg"}, archives});
    all.push_back({"normalize archive", {"normalize", "in/all.zip", "--output", "out"}, archives});
    all.push_back({"check a folder of archives", {"check", "--archives", "--jobs", "1", "in"}, archives, true, true});
    all.push_back({"--help", {"--help"}, {}});
    return all;
}

Tree treeOf(const std::string& folder) {
    Tree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_directory()) {
            tree[fs::relative(entry.path(), folder)] = bytesOf(entry.path());
        }
    }
    return tree;
}

struct Outcome {
    int status = 0; ///< as wait(2) has it
    std::string out;
    std::string err;
    Tree tree;
};

/// The program, ready to run in a folder of its own.
class Server {
public:
    Server(const std::string& program, const std::string& library, const Scenario& scenario)
        : _scenario(scenario), _calls(_memory()) {
        std::string pattern = (fs::temp_directory_path() / "torture-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr || socketpair(AF_UNIX, SOCK_STREAM, 0, _ends.data()) != 0) {
            throw std::runtime_error("no folder, or no socket");
        }
        _folder = pattern;
        fs::create_directory(_folder + "/current");
        fs::create_directory(_folder + "/tmp");
        _process = fork();
        if (_process == 0) {
            _exec(program, library);
        }
        close(_ends[1]);
    }

    ~Server() {
        close(_ends[0]);
        waitpid(_process, nullptr, 0);
        munmap(_calls, sizeof(Calls));
        close(_file);
        fs::remove_all(_folder);
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    Outcome run(const Plan& plan) {
        _prepare();
        Reply status = 0;
        if (write(_ends[0], &plan, sizeof plan) != static_cast<ssize_t>(sizeof plan) ||
            read(_ends[0], &status, sizeof status) != static_cast<ssize_t>(sizeof status)) {
            throw std::runtime_error("the program does not answer: is it " + _scenario.name + "?");
        }
        Outcome outcome{status, bytesOf(_folder + "/out"), bytesOf(_folder + "/err"), treeOf(_folder + "/current")};
        for (const auto& [name, bytes] : treeOf(_folder + "/tmp")) {
            outcome.tree["TMPDIR/" + name] = bytes;
        }
        return outcome;
    }

    const Calls& calls() const { return *_calls; }

private:
    Calls* _memory() {
        _file = memfd_create("calls", 0);
        void* const memory = ftruncate(_file, sizeof(Calls)) == 0
                                 ? mmap(nullptr, sizeof(Calls), PROT_READ | PROT_WRITE, MAP_SHARED, _file, 0)
                                 : MAP_FAILED;
        if (memory == MAP_FAILED) {
            throw std::runtime_error("no shared memory");
        }
        return new (memory) Calls();
    }

    [[noreturn]] void _exec(const std::string& program, const std::string& library) const {
        close(_ends[0]);
        const int out = open((_folder + "/out").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        const int err = open((_folder + "/err").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        close(out);
        close(err);
        setenv("TMPDIR", (_folder + "/tmp").c_str(), 1);
        setenv("LD_PRELOAD", library.c_str(), 1);
        setenv(kServerVariable, (std::to_string(_file) + "," + std::to_string(_ends[1])).c_str(), 1);
        std::vector<std::string> words = _scenario.arguments;
        words.insert(words.begin(), program);
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        // The same addresses in all scenarios, so that chains of calls can be compared.
        if (chdir((_folder + "/current").c_str()) == 0 && personality(ADDR_NO_RANDOMIZE) >= 0) {
            execv(arguments[0], arguments.data());
        }
        _exit(127);
    }

    void _prepare() const {
        truncate((_folder + "/out").c_str(), 0);
        truncate((_folder + "/err").c_str(), 0);
        for (const char* const name : {"/current", "/tmp"}) {
            for (const fs::directory_entry& entry : fs::directory_iterator(_folder + name)) {
                fs::remove_all(entry.path());
            }
        }
        for (const auto& [name, bytes] : _scenario.before) {
            const std::string path = _folder + "/current/" + name;
            fs::create_directories(fs::path(path).parent_path());
            std::ofstream(path, std::ios::binary) << bytes;
        }
    }

    const Scenario& _scenario;
    std::string _folder;
    int _file = -1;
    Calls* _calls;
    std::array<int, 2> _ends = {-1, -1};
    pid_t _process = -1;
};

struct Judgement {
    End end;
    std::string detail;
};

std::string shown(const std::string& text) {
    constexpr std::size_t kMost = 300;
    return text.size() > kMost ? text.substr(0, kMost) + "..." : text;
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// Whether what is printed names the cause, and nothing else as the cause.
bool isCauseReported(const std::string& reported, Call call, const std::string& source) {
    if (infoOf(call).error == ENOMEM && (has(reported, "out of memory") || has(reported, "no memory"))) {
        return true;
    }
    const bool blamesAnother = has(reported, "ermission") || has(reported, "TMPDIR");
    const bool isFileNamed = call != Call::Read || has(reported, source);
    return has(reported, std::strerror(infoOf(call).error)) && !blamesAnother && isFileNamed;
}

/// "3 recordings: 2 clean, 1 unreadable", which counts and complains of nothing.
bool isSummary(const std::string& line) {
    const std::size_t number = line.find_first_not_of("0123456789");
    return number > 0 && number != std::string::npos && line.compare(number, 10, " recording") == 0;
}

/// What of the text is not in the reference, line by line; without the summary.
std::vector<std::string> newLines(std::string_view text, const std::string& reference) {
    const std::string known = "\n" + reference;
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::string line(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        std::string whole = "\n";
        whole.append(line).append("\n");
        if (!has(known, whole) && !isSummary(line)) {
            lines.push_back(line);
        }
    }
    return lines;
}

Judgement judge(const Scenario& scenario, const Plan& plan, const Outcome& outcome, const Outcome& reference) {
    if (WIFSIGNALED(outcome.status)) {
        const int signal = WTERMSIG(outcome.status);
        return {signal == SIGALRM ? End::Hung : End::Aborted,
                "signal " + std::to_string(signal) + ", " + shown(outcome.err)};
    }
    const bool isSameTree = outcome.tree == reference.tree;
    if (outcome.status == reference.status && outcome.out == reference.out && outcome.err == reference.err &&
        isSameTree) {
        return {End::Same, {}};
    }
    const int exitCode = WEXITSTATUS(outcome.status);
    const std::string words = "exit " + std::to_string(exitCode) + ", " + shown(outcome.err);
    if (exitCode != 1) {
        return {End::Wrong, words};
    }
    for (const auto& [name, bytes] : outcome.tree) {
        const auto complete = reference.tree.find(name);
        const auto old = scenario.before.find(name);
        const bool isOld = old != scenario.before.end() && old->second == bytes;
        // Of several recordings, those that could be written are.
        const bool isComplete = complete != reference.tree.end() && complete->second == bytes;
        // What can't be put back stays beside its place, and is named.
        const bool isSetAside = plan.call == Call::Name && plan.isLasting && has(outcome.err, name);
        if (!isOld && !isComplete && !isSetAside) {
            return {End::LeftBehind, name + ", " + words};
        }
    }
    const bool isPrefix = scenario.isOfSeveral ? newLines(outcome.out, reference.out).empty()
                                               : reference.out.compare(0, outcome.out.size(), outcome.out) == 0;
    const std::vector<std::string> complaints = newLines(outcome.err, reference.err);
    const std::string output = scenario.isToldInOutput ? outcome.out : "";
    if (plan.call == Call::Write && complaints.empty() && (plan.isLasting || !reference.err.empty())) {
        return {End::Silent, {}};
    }
    const std::string source = scenario.source();
    const bool isTold = complaints.empty()
                            ? isCauseReported(output, plan.call, source)
                            : std::all_of(complaints.begin(), complaints.end(), [&](const std::string& one) {
                                  return isCauseReported(one, plan.call, source);
                              });
    if (!isTold || (complaints.size() > 1 && !scenario.isOfSeveral)) {
        return {End::Unreported, words + (output.empty() ? "" : " / " + shown(output))};
    }
    if (!isPrefix && !scenario.isToldInOutput) {
        return {End::Wrong, "output " + shown(outcome.out)};
    }
    const bool isUntouched = outcome.tree == scenario.before;
    return {isUntouched ? End::Reported : End::Written, words};
}

/// Files of one recording come into being together.
bool isTorn(const Tree& tree, const Scenario& scenario, const Tree& complete) {
    const auto isNew = [&](const std::string& name) {
        const auto file = tree.find(name);
        const auto old = scenario.before.find(name);
        return file != tree.end() && (old == scenario.before.end() || old->second != file->second);
    };
    for (const auto& [name, bytes] : complete) {
        const std::string stem = name.substr(0, name.find('.'));
        for (const auto& [other, otherBytes] : complete) {
            if (other.substr(0, other.find('.')) == stem && isNew(other) != isNew(name)) {
                return true;
            }
        }
    }
    return false;
}

struct Torture {
    const TortureOptions& options;
    const std::vector<Scenario>& scenarios;
    Tally& tally;

    void run(std::size_t index, unsigned int worker, Chains& chains) const {
        const Scenario& scenario = scenarios[index];
        Server server(options.words[0], options.words[1], scenario);
        const Outcome reference = server.run({});
        if (WIFSIGNALED(reference.status) || WEXITSTATUS(reference.status) > 1) {
            throw std::runtime_error(scenario.name + ": does not work: " + reference.err);
        }
        for (const Plan& plan : plansFor(server.calls(), options, worker, chains)) {
            const Outcome outcome = server.run(plan);
            Judgement judgement = judge(scenario, plan, outcome, reference);
            const bool isSetAside = plan.isLasting && has(outcome.err, "; what stood at ");
            if (!isFault(judgement.end) && !isSetAside && isTorn(outcome.tree, scenario, reference.tree)) {
                judgement = {End::LeftBehind, "some of the files, " + shown(outcome.err)};
            }
            tally.add(index, plan, judgement.end, judgement.detail);
            if (options.number != 0) {
                std::fprintf(stderr, "%s\n%s", judgement.detail.c_str(), outcome.err.c_str());
            }
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    const TortureOptions options = TortureOptions::of(argc, argv, "tool_torture PROGRAM LIBRARY SOURCES", 3);
    return runTorture<Torture>(options, scenariosFor(options.words[2]));
}
