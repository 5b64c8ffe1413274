#pragma once

#include <memory>

namespace OrvComtradeIntake {

/// Remembers which files are in a folder, so that a folder of many recordings is listed once and not for each of them
/// (`Options::folders`). A file that comes into being afterwards is only found under the usual names. It holds the
/// names of the folders asked for last, and may be used by several threads.
class Folders {
public:
    Folders();
    ~Folders();
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;
    Folders(Folders&&) = delete;
    Folders& operator=(Folders&&) = delete;

    struct Listings; // of the intake's own

    Listings& listings() const { return *_listings; }

private:
    std::unique_ptr<Listings> _listings;
};

} // namespace OrvComtradeIntake
