// Loads every recording of a folder, several at once: folder_in_parallel FOLDER
//
// Each thread takes the next recording from the list and loads it into an object of its own; nothing else is shared.
// A recording that does not load costs its own line and the exit status, never the rest.

#include "host.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

struct Result {
    bool loaded = false;
    std::string text;
};

bool isConfiguration(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return extension == ".cfg";
}

/// The configuration files of a folder by name. `problem` gets the reason if there may be more.
std::vector<std::filesystem::path> recordingsIn(const std::string& folder, std::error_code& problem) {
    std::vector<std::filesystem::path> paths;
    std::filesystem::directory_iterator entry(folder, problem);
    while (!problem && entry != std::filesystem::directory_iterator()) {
        if (isConfiguration(entry->path())) {
            paths.push_back(entry->path());
        }
        entry.increment(problem);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

Result loadOne(const std::filesystem::path& path) {
    OrvComtradeLib::Comtrade recording; // a fresh one each time: rates pile up over loads of one object
    const std::string problem = host::load(recording, path.string());
    if (!problem.empty()) {
        return {false, problem};
    }
    return {true, std::to_string(recording.cfg.analogChannelConfigs.size()) + " analog, " +
                      std::to_string(recording.cfg.binaryChannelConfigs.size()) + " status, " +
                      std::to_string(recording.dat.samples.size()) + " samples, " + host::exact(recording.duration) +
                      " s"};
}

std::vector<Result> loadAll(const std::vector<std::filesystem::path>& paths) {
    std::vector<Result> results(paths.size());
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < paths.size(); i = next++) {
            try {
                results[i] = loadOne(paths[i]); // every thread writes elements of its own
            } catch (const std::exception& problem) {
                results[i].text = problem.what();
            }
        }
    };
    const std::size_t wanted = std::min<std::size_t>(std::thread::hardware_concurrency(), paths.size());
    std::vector<std::thread> others;
    try {
        others.reserve(wanted);
        while (others.size() + 1 < wanted) {
            others.emplace_back(work);
        }
    } catch (const std::exception&) { // no further thread to be had: those that run, and this one, do it all
    }
    work();
    for (std::thread& other : others) {
        other.join();
    }
    return results;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: folder_in_parallel FOLDER\n";
        return 2;
    }
    std::error_code problem;
    const std::vector<std::filesystem::path> paths = recordingsIn(argv[1], problem);
    const std::vector<Result> results = loadAll(paths);
    bool allLoaded = true;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        std::cout << host::printable(paths[i].filename().string()) << ": " << results[i].text << '\n';
        allLoaded = allLoaded && results[i].loaded;
    }
    if (problem) {
        std::cerr << host::printable(argv[1]) << ": " << problem.message() << '\n';
    }
    std::cout.flush();
    return allLoaded && !problem && std::cout ? 0 : 1;
}
