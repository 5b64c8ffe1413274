#pragma once

#include <memory>

namespace OrvComtradeIntake {

/// Remembers which files are in a folder, so that a folder of many recordings is listed once instead of once per
/// recording (`Options::folders`). A file that is created later is found only under the usual names. The names of the
/// folders used last are kept. Several threads may share an object.
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
