// Runs a fuzz target over files: every one named, and every one in a folder named. Takes the place of libFuzzer's main
// in builds without it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void addFiles(const std::filesystem::path& path, std::vector<std::filesystem::path>& files) {
    if (!std::filesystem::is_directory(path)) {
        files.push_back(path);
        return;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
}

bool replay(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios_base::in | std::ios_base::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    // A copy of exactly this length, so that a sanitizer sees every byte read behind it.
    const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[bytes.size()]);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        exact[i] = static_cast<std::uint8_t>(bytes[i]);
    }
    LLVMFuzzerTestOneInput(exact.get(), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    try {
        std::vector<std::filesystem::path> files;
        for (int i = 1; i < argc; ++i) {
            addFiles(argv[i], files);
        }
        bool readable = true;
        for (const std::filesystem::path& path : files) {
            std::fprintf(stderr, "%s\n", path.c_str()); // names the culprit when the next step ends the process
            readable = replay(path) && readable;
        }
        std::printf("%zu inputs\n", files.size());
        return readable && !files.empty() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
