#pragma once

#include <memory>

namespace OrvComtradeIntake {

/// Remembers which files are in a folder. Pass the same object for many recordings (`Options::folders`): their folder
/// is then listed once, instead of once per recording. A file that is created later is found only under the usual
/// names. Only the folders used last are remembered. Several threads may share an object.
class Folders {
public:
    Folders();
    ~Folders();
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;
    Folders(Folders&&) = delete;
    Folders& operator=(Folders&&) = delete;

    struct Listings; // internal

    Listings& listings() const { return *_listings; }

private:
    std::unique_ptr<Listings> _listings;
};

} // namespace OrvComtradeIntake
