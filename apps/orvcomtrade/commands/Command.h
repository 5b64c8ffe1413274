#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <string>
#include <vector>

/// An example of a command, for a folder with the recordings of examples/recordings.
struct Example {
    std::string purpose; ///< "What a recording holds"
    std::string line;    ///< the command line
};

/// What help, manual page, documents and completion say of a command, apart from its flags.
struct Description {
    std::string name;
    std::string summary;                           ///< one line, without a full stop
    std::vector<std::string> details;              ///< paragraphs for the manual page and the documents
    std::vector<Example> examples;                 ///< for all three; a test runs them
    std::vector<std::string> usages = {"PATH..."}; ///< what follows the flags
};

/// A command of the program: its name, its flags, and what it does.
class Command {
public:
    explicit Command(Description description) : _description(std::move(description)) {}
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    Command(Command&&) = delete;
    Command& operator=(Command&&) = delete;

    const Description& description() const { return _description; }
    const std::vector<Flag>& flags() const { return _flags; }

    /// The words of the line that are not flags.
    std::vector<std::string>& words() { return request.paths; }

    /// Whether words or lists name what to read.
    bool hasInput() const { return !request.paths.empty() || !request.lists.empty(); }

    /// Does the work; by default, `perform` for every recording that the words lead to. Returns the exit status. Throws
    /// a Failure.
    virtual int run();

protected:
    void add(Flag flag) { _flags.push_back(std::move(flag)); }
    void add(std::vector<Flag> flags);

    /// Adds the paths that lists name to those of the line. Throws a Failure.
    void readLists();

    /// Removes the catalogues from the paths and returns them. Throws a Failure if the command takes none.
    std::vector<std::string> takeCatalogues();

    /// Where the recordings are looked for.
    Search search() const;

    /// Called before recordings are searched for. Throws a Failure for wrong usage.
    virtual void prepare() {}

    /// Folder for output, which no search enters, or empty.
    virtual std::string outputFolder() const { return {}; }

    /// Paths, without extensions, of the files that will be written for the recordings found; empty if they go to
    /// standard output. May turn entries into problems. Called once more after archives have been opened.
    virtual std::vector<std::string> targets() { return {}; }

    /// Opens output that can no longer be opened once recordings are read: the program then confines itself. Called
    /// when the targets are known.
    virtual void openOutputs() {}

    /// Words for what becomes of recordings, which the summary after several recordings counts; the last one is that of
    /// a failure. Without any, there is no summary.
    virtual std::vector<std::string> outcomes() const { return {}; }

    /// What stands above what the recordings print, or nothing.
    virtual std::string heading() const { return {}; }

    /// The work on one recording; several at once, each with a job of its own.
    virtual void perform(const Entry& /*entry*/, Job& /*out*/) {}

    /// Whether a recording is one of those that the user wants. Opens it, unless a catalogue has chosen it.
    bool isWanted(const Entry& entry) const;

    Request request;

private:
    void _collect();

    const Description _description;
    std::vector<Flag> _flags;
};
