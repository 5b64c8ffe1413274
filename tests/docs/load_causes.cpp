// What makes a load end in a result: load_causes RESULT FOLDER makes recordings in the empty folder, each with one
// thing amiss, loads them and prints what is amiss with those that end so.

#include "Comtrade.h"
#include "small_recording.h"
#include "support/files.h"

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

namespace Enums = OrvComtradeLib::Enums;
namespace fs = std::filesystem;

/// The files of a recording, and which of them is named to the library.
struct Files {
    std::vector<std::string> cfg = small::cfgLines();
    std::string dat = small::asciiData();
    std::string lineEnd = "\n";
    std::string cfgName = "recording.cfg";
    std::string datName = "recording.dat";
    std::string named = "recording.cfg";
};

struct Cause {
    const char* what;
    std::function<void(Files&, const fs::path&)> spoil;
};

void set(Files& files, small::Line line, const char* text) {
    files.cfg.at(static_cast<std::size_t>(line) - 1) = text;
}

/// The line of the configuration file is `text`.
Cause line(const char* what, small::Line number, const char* text) {
    return {what, [=](Files& files, const fs::path& /*folder*/) { set(files, number, text); }};
}

/// The configuration file ends before the line.
Cause endsBefore(const char* what, small::Line number) {
    return {what, [=](Files& files, const fs::path&) { files.cfg.resize(static_cast<std::size_t>(number) - 1); }};
}

Cause data(const char* what, const char* type, const std::string& bytes) {
    return {what, [=](Files& files, const fs::path& /*folder*/) {
                set(files, small::Type, type);
                files.dat = bytes;
            }};
}

/// The second of three data lines is `text`.
Cause dataLine(const char* what, const std::string& text) {
    return data(what, "ASCII", "1,0,10,1,0\n" + text + "\n3,2000,30,3,0\n");
}

Cause named(const char* what, const char* path) {
    return {what, [=](Files& files, const fs::path& /*folder*/) { files.named = path; }};
}

Cause withoutFile(const char* what, std::string Files::*name) {
    return {what, [=](Files& files, const fs::path& /*folder*/) { (files.*name).clear(); }};
}

/// In place of the file there is what `make` leaves there.
Cause inPlaceOf(const char* what, std::string Files::*name, const std::function<void(const fs::path&)>& make) {
    return {what, [=](Files& files, const fs::path& folder) {
                make(folder / (files.*name));
                (files.*name).clear();
            }};
}

void makeFolder(const fs::path& path) {
    fs::create_directory(path);
}

void makePipe(const fs::path& path) {
    mkfifo(path.c_str(), 0600);
}

void makeLinkToNothing(const fs::path& path) {
    fs::create_symlink("nothing", path);
}

std::vector<Cause> causes() {
    const std::vector<Cause> names = {
        named("another extension: recording.txt", "recording.txt"),
        named("a blank behind it: recording.cfg\" \"", "recording.cfg "),
        named("the only dot is in a folder: v1.2/recording", "v1.2/recording"),
        withoutFile("no .cfg beside the file", &Files::cfgName),
        {"RECORDING.DAT is named, and beside it is RECORDING.CFG: RECORDING.cfg is looked for",
         [](Files& files, const fs::path&) {
             files.cfgName = "RECORDING.CFG";
             files.datName = "RECORDING.DAT";
             files.named = files.datName;
         }},
        {"a .cff alone",
         [](Files& files, const fs::path&) {
             files.cfgName = "recording.cff";
             files.named = files.cfgName;
         }},
        inPlaceOf("the .cfg is a link to nothing", &Files::cfgName, makeLinkToNothing),
        inPlaceOf("the .cfg is a pipe or a device", &Files::cfgName, makePipe),
        inPlaceOf("the .cfg is a folder", &Files::cfgName, makeFolder),
        withoutFile("no .dat beside the file", &Files::datName),
        {"RECORDING.CFG is named, and beside it is RECORDING.DAT: RECORDING.dat is looked for",
         [](Files& files, const fs::path&) {
             files.cfgName = "RECORDING.CFG";
             files.datName = "RECORDING.DAT";
             files.named = files.cfgName;
         }},
        inPlaceOf("the .dat is a link to nothing", &Files::datName, makeLinkToNothing),
        inPlaceOf("the .dat is a pipe or a device", &Files::datName, makePipe),
        inPlaceOf("the .dat is a folder", &Files::datName, makeFolder),
    };
    const std::vector<Cause> lines = {
        {"the file is empty", [](Files& files, const fs::path&) { files.cfg.clear(); }},
        line("station line: empty", small::Station, ""),
        line("station line: the year is no integer", small::Station, "Station,Recorder,new"),
        line("counts line: the total is 0", small::Counts, "0,0A,0D"),
        line("counts line: fewer than three fields", small::Counts, "3,2A"),
        line("counts line: a count is no integer", small::Counts, "3,A,1D"),
        line("counts line: analog and status are not the total", small::Counts, "4,2A,1D"),
        line("analog line: fewer than ten fields", small::Voltage, "1,UA,A,Bus,V,1,0,0,-32767"),
        line("analog line: a number is none", small::Voltage, "1,UA,A,Bus,V,x,0,0,-32767,32767,1,1,S"),
        line("analog line: a number is beyond a double", small::Voltage, "1,UA,A,Bus,V,1e999,0,0,-32767,32767,1,1,S"),
        line("status line: fewer than two fields", small::Status, "1"),
        line("status line: the normal state is no integer", small::Status, "1,Trip,,,x"),
        {"status line: fewer than three fields before 1999",
         [](Files& files, const fs::path&) {
             set(files, small::Station, "Station,Recorder,1991");
             set(files, small::Status, "1,Trip");
         }},
        line("fewer channel lines than counted: the next line is no channel", small::Counts, "4,2A,2D"),
        line("frequency line: no number", small::Frequency, "Hz"),
        line("number of rates: no integer", small::RateCount, "one"),
        line("number of rates: negative", small::RateCount, "-1"),
        line("rate line: no last sample number", small::Rate, "1000"),
        line("rate line: a number is none", small::Rate, "1000,all"),
        line("start line: empty", small::Start, ""),
        line("trigger line: empty", small::Trigger, ""),
        line("type line: empty", small::Type, ""),
        endsBefore("the file ends before the type line", small::Type),
        line("time multiplier: an empty line", small::Multiplier, ""),
        line("time multiplier: no number", small::Multiplier, "x"),
        endsBefore("no time multiplier line: 1 is meant", small::Multiplier),
    };
    const std::vector<Cause> contents = {
        data("BINARY: the file is empty", "BINARY", ""),
        data("BINARY: a record more than declared", "BINARY", small::binaryData(4)),
        data("BINARY: a record less than declared", "BINARY", small::binaryData(2)),
        data("BINARY: the last record is cut", "BINARY", small::binaryData(3).substr(1)),
        data("BINARY: less than a record behind the last", "BINARY", small::binaryData(3) + "tail"),
        {"BINARY: no samples declared",
         [](Files& files, const fs::path&) {
             set(files, small::Type, "BINARY");
             set(files, small::Rate, "1000,0");
         }},
        data("FLOAT32 is declared, the values have 16 bits", "FLOAT32", small::binaryData(3)),
        data("BINARY32 is declared: it is read as text", "BINARY32", small::binaryData(3)),
        {"BINARY is declared in a .cfg with CR LF line ends: it is read as text",
         [](Files& files, const fs::path&) {
             set(files, small::Type, "BINARY");
             files.lineEnd = "\r\n";
             files.dat = small::binaryData(3);
         }},
        dataLine("ASCII: fewer columns than channels", "2,1000,20,2"),
        dataLine("ASCII: a decimal point in an analog column", "2,1000,20.5,2,1"),
        dataLine("ASCII: a decimal point in the last analog column: a true state", "2,1000,20,2.5,1"),
        dataLine("ASCII: a plus sign", "2,1000,+20,2,1"),
        dataLine("ASCII: a missing analog value", "2,1000,,2,1"),
        dataLine("ASCII: a missing state: true", "2,1000,20,2,,"),
        dataLine("ASCII: a blank before a comma", "2,1000,20 ,2,1"),
        dataLine("ASCII: a line of nothing but a carriage return, and another line behind it", "\r"),
        dataLine("ASCII: an empty line between the others", ""),
        dataLine("ASCII: more columns than channels", "2,1000,20,2,1,0,0"),
        data("ASCII: more lines than declared, whatever they hold", "ASCII", small::asciiData() + "end of file\n"),
        data("ASCII: fewer lines than declared", "ASCII", "1,0,10,1,0\n"),
        data("ASCII: no lines at all", "ASCII", ""),
        data("an unknown type, the data being ASCII", "TEXT", small::asciiData()),
    };
    std::vector<Cause> all = names;
    all.insert(all.end(), lines.begin(), lines.end());
    all.insert(all.end(), contents.begin(), contents.end());
    return all;
}

int loadSpoilt(const Cause& cause, const fs::path& folder) {
    fs::create_directories(folder);
    Files files;
    cause.spoil(files, folder);
    if (!files.cfgName.empty()) {
        orvtest::writeFile(folder / files.cfgName, small::joined(files.cfg, files.lineEnd.c_str()));
    }
    if (!files.datName.empty()) {
        orvtest::writeFile(folder / files.datName, files.dat);
    }
    OrvComtradeLib::Comtrade recording;
    return recording.load((folder / files.named).string());
}

} // namespace

int main(int argc, char** argv) {
    const std::map<std::string, int> results = {
        {"Ok", Enums::Ok},
        {"NotComtradeFile", Enums::NotComtradeFile},
        {"CfgFileNotFound", Enums::CfgFileNotFound},
        {"CfgLoadError", Enums::CfgLoadError},
        {"DatFileNotFound", Enums::DatFileNotFound},
        {"DatLoadError", Enums::DatLoadError},
    };
    if (argc != 3 || results.count(argv[1]) == 0) {
        std::cerr << "usage: load_causes RESULT FOLDER\n";
        return 2;
    }
    int number = 0;
    for (const Cause& cause : causes()) {
        if (loadSpoilt(cause, fs::path(argv[2]) / std::to_string(++number)) == results.at(argv[1])) {
            std::cout << cause.what << '\n';
        }
    }
}
