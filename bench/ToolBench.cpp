#include "cases.h"
#include "childProcess.h"
#include "inputs.h"

#include <OrvComtradeIntake/Intake.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace orvbench {

namespace {

namespace fs = std::filesystem;

void require(bool isDone, const char* what) {
    if (!isDone) {
        throw std::runtime_error(what);
    }
}

void writeAtOnce(const std::string& path, std::string_view bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        require(count > 0, "cannot write");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    close(file);
}

/// As `cp` does where the disk has no faster way.
void copyFile(const std::string& from, const std::string& to) {
    std::vector<char> piece(128UL * 1024);
    const int in = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const int out = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    for (ssize_t length = 0; (length = read(in, piece.data(), piece.size())) > 0;) {
        require(write(out, piece.data(), static_cast<std::size_t>(length)) == length, "cannot write");
    }
    close(in);
    close(out);
}

/// An export by the program, against a copy of what it wrote.
class ExportWork : public Work {
private:
    TemporaryFolder _folder; // before what is written into it

public:
    ExportWork(const Shape& shape, const std::string& format)
        : recording(writeRecording(shape, _folder.path())), target(_folder.path() + "/output." + format),
          _format(format) {
        runLibrary();
        for (const auto& entry : fs::directory_iterator(_folder.path())) {
            if (entry.path().filename().string().rfind("output", 0) == 0 && entry.path().extension() != ".json") {
                written.push_back(entry.path().string());
                bytes += static_cast<double>(entry.file_size());
            }
        }
        values = static_cast<double>(shape.analogs * shape.samples);
    }

    double runLibrary() override {
        for (const std::string& file : written) {
            fs::remove(file);
        }
        fs::remove(_folder.path() + "/output.json");
        const Cost cost = costOf(
            {ORV_PROGRAM, "export", recording.cfg, "--format", _format, "--output", target, "--no-sandbox", "--quiet"});
        peakBytes = cost.peakBytes;
        return cost.seconds;
    }

    double runFloor() override {
        const double begin = now();
        for (const std::string& file : written) {
            copyFile(file, file + ".copy");
        }
        const double seconds = now() - begin;
        for (const std::string& file : written) {
            fs::remove(file + ".copy");
        }
        return seconds;
    }

    bool agree() override { return !written.empty(); } // what is written is for the tests of the program

protected:
    Recording recording;
    std::string target;
    std::vector<std::string> written;

private:
    std::string _format;
};

/// Arrays for NumPy, against reading the recording and writing arrays that are there by one call each.
class NpyWork : public ExportWork {
public:
    explicit NpyWork(const Shape& shape) : ExportWork(shape, "npy") {}

    double runFloor() override {
        std::vector<std::string> arrays;
        for (const std::string& file : written) {
            arrays.emplace_back(fs::file_size(file), '\0');
        }
        std::vector<char> piece(256UL * 1024);
        const double begin = now();
        std::ifstream in(recording.dat, std::ios_base::binary);
        while (in.rdbuf()->sgetn(piece.data(), static_cast<std::streamsize>(piece.size())) > 0) {
        }
        for (std::size_t i = 0; i < arrays.size(); ++i) {
            writeAtOnce(written[i] + ".copy", arrays[i]);
        }
        const double seconds = now() - begin;
        for (const std::string& file : written) {
            fs::remove(file + ".copy");
        }
        return seconds;
    }
};

/// A command for a folder of recordings of 60 kB, one after another, against reading all the files. Times are of one.
class FolderWork : public Work {
public:
    FolderWork(std::string command, unsigned long recordings)
        : _command(std::move(command)), _count(static_cast<double>(recordings)) {
        const Shape shape{8, 16, 2300, Encoding::Binary, StatusBits::Seldom, Rates::One};
        const Recording first = writeRecording(shape, _folder.path());
        bytes = static_cast<double>(first.datBytes + first.cfgBytes);
        for (unsigned long i = 1; i < recordings; ++i) {
            const std::string name = fmt::format("{}/recording{:05}", _folder.path(), i);
            fs::copy_file(first.cfg, name + ".cfg");
            fs::copy_file(first.dat, name + ".dat");
        }
    }

    double runLibrary() override {
        const Cost cost = costOf({ORV_PROGRAM, _command, "--quiet", "--jobs", "1", _folder.path()});
        peakBytes = cost.peakBytes;
        return cost.seconds / _count;
    }

    double runFloor() override {
        const double begin = now();
        std::vector<char> piece(128UL * 1024);
        for (const auto& entry : fs::directory_iterator(_folder.path())) {
            const int file = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
            while (read(file, piece.data(), piece.size()) > 0) {
            }
            close(file);
        }
        return (now() - begin) / _count;
    }

    bool agree() override { return true; }

private:
    TemporaryFolder _folder;
    std::string _command;
    double _count;
};

Shape resized(Shape shape, unsigned long multiple, unsigned long divisor) {
    shape.samples = std::max(shape.samples * multiple / divisor, 20UL);
    return shape;
}

Case exportCase(const std::string& name, const std::string& format, const Shape& shape) {
    return {name, 0.0, [shape, format](unsigned long multiple, unsigned long divisor) {
                return std::make_unique<ExportWork>(resized(shape, multiple, divisor), format);
            }};
}

Case npyCase(const std::string& name, const Shape& shape) {
    constexpr double target = 1.5;
    return {name, target, [shape](unsigned long multiple, unsigned long divisor) {
                return std::make_unique<NpyWork>(resized(shape, multiple, divisor));
            }};
}

Case folderCase(const std::string& command) {
    constexpr unsigned long recordings = 3000;
    return {"folder/" + command + "/3000x60kB", 0.0, [command](unsigned long multiple, unsigned long divisor) {
                return std::make_unique<FolderWork>(command, std::max(recordings * multiple / divisor, 3UL));
            }};
}

} // namespace

std::vector<Case> toolCases() {
    const Shape binary{32, 64, 200000, Encoding::Binary, StatusBits::Seldom, Rates::One};
    const Shape ascii{32, 64, 100000, Encoding::Ascii, StatusBits::Seldom, Rates::One};
    const Shape narrow{3, 0, 1000000, Encoding::Binary, StatusBits::Seldom, Rates::One};
    return {
        npyCase("export-npy/binary/32+64x200000", binary),
        npyCase("export-npy/binary/3+0x1000000", narrow),
        exportCase("export-csv/binary/32+64x200000", "csv", binary),
        exportCase("export-csv/ascii/32+64x100000", "csv", ascii),
        exportCase("export-jsonl/binary/32+64x200000", "jsonl", binary),
        folderCase("info"),
        folderCase("check"),
    };
}

} // namespace orvbench
