#pragma once

#include <functional>
#include <string>

/// The name of a file until it gets the one that it is written for. It vanishes with the object, and with the program,
/// also where SIGHUP, SIGINT, SIGQUIT, SIGTERM or SIGXCPU ends that.
class TemporaryName {
public:
    /// No name.
    TemporaryName() = default;

    /// A name in the folder. `create` makes a file of the name that it is given, where nothing may stand, and gives
    /// errno, or 0; this gives the same.
    int take(const std::string& folder, const std::function<int(const char* name)>& create);

    ~TemporaryName();
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;
    TemporaryName(TemporaryName&&) = delete;
    TemporaryName& operator=(TemporaryName&&) = delete;

    bool isTaken() const { return !_path.empty(); }
    const std::string& path() const { return _path; }

    /// The file has its own name now, or shall keep this one.
    void release();

    /// Removes every file that has such a name, for a program that is about to end, and lets no more come into being.
    static void removeAll();

private:
    std::string _path;
};

/// While one lives, these signals wait: what is done meanwhile is done as a whole. Short work only.
class Uninterrupted {
public:
    Uninterrupted();
    ~Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    Uninterrupted(Uninterrupted&&) = delete;
    Uninterrupted& operator=(Uninterrupted&&) = delete;
};
