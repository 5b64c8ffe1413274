#pragma once

#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <linux/capability.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

// How the tests of the host program run it. ORVCOMTRADE_PROGRAM and ORVCOMTRADE_RECORDINGS come from the build.
namespace orvtest {

inline const std::string kRecordings = ORVCOMTRADE_RECORDINGS;
inline const std::string kFeeder = kRecordings + "/feeder_earth_fault.cfg";
inline const std::string kLine = kRecordings + "/line_two_phase_fault.cfg";
inline const std::string kInrush = kRecordings + "/transformer_inrush.cfg";

struct Outcome {
    int status; ///< exit status, or minus the number of the signal
    std::string out;
    std::string err;
    std::string summary; ///< the last line of standard error where it says how many recordings there were
};

/// Takes the summary from the end of standard error.
inline std::string takeSummary(std::string& err) {
    const std::size_t begin = err.size() < 2 ? 0 : err.rfind('\n', err.size() - 2) + 1;
    const std::string last = err.substr(begin);
    const std::size_t digits = last.find_first_not_of("0123456789");
    const bool isSummary = last.rfind("{\"recordings\":", 0) == 0 ||
                           (digits != 0 && digits != std::string::npos && last.compare(digits, 10, " recording") == 0);
    if (!isSummary) {
        return {};
    }
    err.resize(begin);
    return last;
}

inline int openForOutput(const std::string& path) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
}

/// Takes from a process what lets root read and write whatever the permissions say; from others there is nothing to
/// take. Holds from the next exec on.
inline bool bindByPermissions() {
    return geteuid() != 0 ||
           (prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) == 0 && prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH) == 0);
}

/// As exec takes them; they point into the words.
inline std::vector<char*> argumentsOf(std::vector<std::string>& words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    return arguments;
}

/// Runs a program in `folder` with standard output and standard error on the two descriptors, which are closed here.
inline int runWith(const std::string& folder, std::vector<std::string> words, int out, int err,
                   bool boundByPermissions = false) {
    const std::vector<char*> arguments = argumentsOf(words);
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        if (chdir(folder.c_str()) != 0 || dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0 ||
            (boundByPermissions && !bindByPermissions())) {
            _exit(126);
        }
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    close(out);
    close(err);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// Runs a program in a folder, which stays as it is but for what the program does.
inline Outcome runProgramIn(const std::string& place, const std::string& program,
                            const std::vector<std::string>& arguments, bool boundByPermissions = false) {
    const TempDir folder;
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::string out = folder.file("stdout");
    const std::string err = folder.file("stderr");
    const int status = runWith(place, std::move(words), openForOutput(out), openForOutput(err), boundByPermissions);
    Outcome outcome = {status, bytesOf(out), bytesOf(err), {}};
    outcome.summary = takeSummary(outcome.err);
    return outcome;
}

inline Outcome runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    const TempDir folder;
    return runProgramIn(folder.path(), program, arguments);
}

inline Outcome orvcomtrade(const std::vector<std::string>& arguments) {
    return runProgram(ORVCOMTRADE_PROGRAM, arguments);
}

inline Outcome orvcomtradeIn(const std::string& folder, const std::vector<std::string>& arguments) {
    return runProgramIn(folder, ORVCOMTRADE_PROGRAM, arguments);
}

/// As a user whom permissions bind, also where root runs the tests.
inline Outcome orvcomtradeBoundIn(const std::string& folder, const std::vector<std::string>& arguments) {
    return runProgramIn(folder, ORVCOMTRADE_PROGRAM, arguments, true);
}

inline void expectOutcome(const Outcome& outcome, int status, const std::string& out, const std::string& err) {
    EXPECT_EQ(outcome.out, out);
    EXPECT_EQ(outcome.err, err);
    EXPECT_EQ(outcome.status, status);
}

inline void expectOutput(const Outcome& outcome, const std::string& out) {
    expectOutcome(outcome, 0, out, "");
}

inline void expectComplaint(const Outcome& outcome, int status, const std::string& err) {
    expectOutcome(outcome, status, "", err);
}

/// A recording of two analog channels and one status channel, written to "rec.cfg" and "rec.dat".
inline void writeSmall(const TempDir& folder, const std::string& station, const std::string& firstId,
                       const std::string& secondId, const std::string& data) {
    folder.write("rec.cfg", station + ",1999\n3,2A,1D\n1," + firstId + ",,,V,1,0,0,-9,9,1,1,S\n2," + secondId +
                                ",,,A,0.5,0,0,-9,9,1,1,S\n1,S,,,0\n50\n1\n1000,4\n"
                                "01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\nASCII\n1\n");
    folder.write("rec.dat", data);
}

inline const char* const kFourLines = "1,0,0,2,0\n2,1000,10,4,0\n3,2000,20,6,1\n4,3000,30,8,1\n";

} // namespace orvtest
