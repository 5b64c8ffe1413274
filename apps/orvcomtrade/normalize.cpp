#include "normalize.h"

#include "Failure.h"
#include "SafeFile.h"
#include "json.h"
#include "loadRecording.h"
#include "outputTarget.h"
#include "printable.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kBlockLength = 256UL * 1024;

/// A file open for reading.
class Source {
public:
    explicit Source(const std::string& path) : _path(path), _file(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (_file < 0) {
            _fail();
        }
    }
    ~Source() { close(_file); }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    Source(Source&&) = delete;
    Source& operator=(Source&&) = delete;

    void copyTo(Output& out) const {
        std::vector<char> block(kBlockLength);
        for (;;) {
            const ssize_t count = read(_file, block.data(), block.size());
            if (count == 0) {
                return;
            }
            if (count > 0) {
                out.write({block.data(), static_cast<std::size_t>(count)});
            } else if (errno != EINTR) {
                _fail();
            }
        }
    }

private:
    [[noreturn]] void _fail() const {
        throw Failure(kRecordingProblem, fmt::format("{}: cannot be read: {}", printable(_path), std::strerror(errno)));
    }

    std::string _path;
    int _file;
};

void tell(const Entry& entry, const Request& request, bool isOriginal, const std::vector<std::string>& targets,
          Job& out) {
    if (request.json) {
        Json line = recordingLine(entry.path, true);
        line["mended"] = !isOriginal;
        line["files"] = targets;
        writeLine(line, out);
        return;
    }
    out.print("{}: {} {}\n", printable(entry.path), isOriginal ? "copied to" : "mended, written to",
              printable(targets.back()));
}

} // namespace

void normalizeRecording(const Entry& entry, const Request& request, const OutputRequest& output, Job& out) {
    const std::string base = (std::filesystem::path(output.target) / entry.target).string();
    makeFolderOf(base);
    Recording recording;
    prepareRecording(recording, entry.path, request.load);
    loadPrepared(recording, entry.path); // what the library refuses is not clean
    const auto& prepared = recording.prepared;
    for (const char* const extension : {".dat", ".cfg"}) {
        refuseToReplace({prepared.cfgFile, prepared.datFile}, base + extension);
    }
    SafeFiles files(output.replace);
    SafeFile& data = files.add(base + ".dat");
    SafeFile& configuration = files.add(base + ".cfg");
    Source(recording.comtrade.datFileName).copyTo(data);
    Source(recording.comtrade.cfgFileName).copyTo(configuration);
    files.publish();
    tell(entry, request, prepared.isOriginal(), files.targets(), out);
}
