#pragma once

#include <functional>
#include <string>

/// A temporary name of a file. The file of that name is removed with the object, and when the program ends, also by
/// SIGHUP, SIGINT, SIGQUIT, SIGTERM or SIGXCPU.
class TemporaryName {
public:
    /// No name.
    TemporaryName() = default;

    /// Chooses a name in the folder. `create` makes a file of the name that it gets, which must not exist yet, and
    /// returns errno or 0. Returns the same.
    int take(const std::string& folder, const std::function<int(const char* name)>& create);

    ~TemporaryName();
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;
    TemporaryName(TemporaryName&&) = delete;
    TemporaryName& operator=(TemporaryName&&) = delete;

    bool isTaken() const { return !_path.empty(); }
    const std::string& path() const { return _path; }

    /// To be called when the file has its final name, or when it keeps this one: it is no longer removed.
    void release();

    /// Removes every file that has such a name, and prevents new ones. For a program that is about to end.
    static void removeAll();

private:
    std::string _path;
};

/// Holds these signals back while it lives, so that what is done meanwhile is not interrupted. For short work only.
class Uninterrupted {
public:
    Uninterrupted();
    ~Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    Uninterrupted(Uninterrupted&&) = delete;
    Uninterrupted& operator=(Uninterrupted&&) = delete;
};
