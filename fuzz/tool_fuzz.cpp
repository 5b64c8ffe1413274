// A recording (support/recordings.h), then a byte for the command, one for how its output is taken, and free text (a
// channel, a number, an encoding): the tool itself, in this process. It ends with one of its statuses; what it prints
// is UTF-8 that no terminal takes for a command, JSON where that was asked for, and the same whatever pieces the system
// takes it in; a failing read is reported.

#include "support/ScratchFolder.h"
#include "support/failingReads.h"
#include "support/recordings.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

int orvcomtradeMain(int argc, char** argv); // main of the tool, by another name

namespace {

using Words = std::vector<std::string>;

/// What the tool writes to its two streams while this lives, taken in pieces of all lengths.
struct Capture {
    explicit Capture(std::uint8_t pieces) : step(pieces) { current = this; }
    ~Capture() { current = nullptr; }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    Capture(Capture&&) = delete;
    Capture& operator=(Capture&&) = delete;

    static Capture* current;

    ssize_t take(int stream, std::string_view bytes) {
        const std::lock_guard<std::mutex> lock(mutex);
        const bool isWhole = step == 0 || bytes.empty();
        if (!isWhole && ++calls % 3 == 0) {
            errno = EINTR;
            return -1;
        }
        bytes = isWhole ? bytes : bytes.substr(0, 1 + calls * step % bytes.size());
        (stream == STDOUT_FILENO ? out : err) += bytes;
        return static_cast<ssize_t>(bytes.size());
    }

    std::uint8_t step;
    std::size_t calls = 0;
    std::string out;
    std::string err;
    int status = 0;
    std::mutex mutex;
};

Capture* Capture::current = nullptr;

Words commandBy(std::uint8_t choice, const std::string& text, const std::string& folder) {
    const Words commands[] = {
        {"info", "rec.cfg"},
        {"info", "--json", "rec.cfg"},
        {"check", "rec.cfg"},
        {"check", "--json", "rec.cfg"},
        {"check", "--as-is", "rec.cfg"},
        {"events", "rec.cfg"},
        {"events", "--json", "--force", "rec.cfg"},
        {"export", "rec.cfg", "--side", "primary"},
        {"export", "--format", "jsonl", "rec.cfg"},
        {"export", "--format", "npy", "rec.cfg", "--output", folder + "/out/"},
        {"points", "rec.cfg", "--channel", text},
        {"points", "rec.cfg", "--json", "--channel", "1", "--rate", text},
        {"points", "rec.cfg", "--channel", "1", "--start", text, "--end", "1"},
        {"points", "rec.cfg", "--status", "--channel", text},
        {"normalize", "rec.cfg", "--output", folder + "/out"},
        {"info", "--encoding", text, "rec.cfg"},
        {"check", "--limit", text, "rec.cfg"},
        {"info", "--as-is", "rec.cfg"},
    };
    Words words = commands[choice % (sizeof commands / sizeof *commands)];
    for (std::string& word : words) {
        word = word == "rec.cfg" ? folder + "/rec.cfg" : word;
    }
    words.insert(words.end(), {"--jobs", "1", "--no-sandbox"});
    words.insert(words.begin(), "orvcomtrade");
    return words;
}

void run(Words words, Capture& capture) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    capture.status = orvcomtradeMain(static_cast<int>(words.size()), arguments.data());
}

/// Neither control bytes nor anything but UTF-8; the JSON library checks the second.
void checkPrintable(const std::string& text) {
    FUZZ_CHECK(std::all_of(text.begin(), text.end(),
                           [](char letter) { return letter == '\n' || static_cast<unsigned char>(letter) >= 0x20; }));
    FUZZ_CHECK(text.find("\xC2\x9B") == std::string::npos); // the one byte that begins commands of terminals, in UTF-8
    const std::string quoted = nlohmann::json(text).dump(); // throws where it is no UTF-8
    FUZZ_CHECK(quoted.size() > text.size());
}

void checkJson(const std::string& text) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        FUZZ_CHECK(end != std::string::npos);
        FUZZ_CHECK(nlohmann::json::accept(text.begin() + static_cast<std::ptrdiff_t>(begin),
                                          text.begin() + static_cast<std::ptrdiff_t>(end)));
        begin = end + 1;
    }
}

bool has(const Words& words, const char* word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

void checkOutput(const Words& words, const Capture& capture) {
    FUZZ_CHECK(capture.status >= 0 && capture.status <= 2);
    checkPrintable(capture.out);
    checkPrintable(capture.err);
    FUZZ_CHECK(capture.status == 0 || capture.out.size() + capture.err.size() > 0);
    if (has(words, "--json") || has(words, "jsonl")) {
        checkJson(capture.out);
    }
}

} // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" ssize_t write(int file, const void* bytes, std::size_t count) {
    const bool isTaken = Capture::current != nullptr && (file == STDOUT_FILENO || file == STDERR_FILENO);
    return isTaken ? Capture::current->take(file, {static_cast<const char*>(bytes), count})
                   : syscall(SYS_write, file, bytes, count);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchFolder folder;
    fuzz::Input input(data, size);
    const fuzz::Files files(input);
    const std::uint8_t choice = input.u8();
    const std::uint8_t pieces = input.u8();
    const std::string text = input.rest().substr(0, 64);
    const std::string cfg = folder.write("rec.cfg", files.cfg);
    const std::string dat = files.dat.empty() ? "" : folder.write("rec.dat", files.dat);
    const Words words = commandBy(choice, text.c_str(), folder.path()); // as far as a command line goes
    Capture whole(0);
    run(words, whole);
    checkOutput(words, whole);
    std::filesystem::remove_all(folder.path() + "/out");
    if (pieces % 4 == 0) {
        Capture torn(static_cast<std::uint8_t>(pieces / 4 + 1));
        run(words, torn);
        FUZZ_CHECK(torn.out == whole.out && torn.err == whole.err && torn.status == whole.status);
    } else if (pieces % 4 == 1) {
        Capture failed(0);
        const fuzz::FailingRead failing(pieces / 4 % 16, fuzz::ReadFailure::Error);
        run(words, failed);
        checkOutput(words, failed);
        const bool isReported = (failed.out + failed.err).find("Input/output error") != std::string::npos;
        if (!isReported) {
            fuzz::expectNothing(failed.out == whole.out && failed.status == whole.status ? ""
                                                                                         : failed.out + failed.err);
        }
    }
    std::filesystem::remove_all(folder.path() + "/out");
    std::remove(cfg.c_str());
    std::remove(dat.c_str());
    return 0;
}
