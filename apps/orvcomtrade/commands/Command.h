#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <string>
#include <vector>

/// A use of a command, in a folder with the recordings of examples/recordings.
struct Example {
    std::string purpose; ///< "What a recording holds"
    std::string line;    ///< the command line
};

/// What help, manual page, documents and completion say of a command beside its flags.
struct Description {
    std::string name;
    std::string summary;                           ///< one line, without a full stop
    std::vector<std::string> details;              ///< paragraphs for the manual page and the documents
    std::vector<Example> examples;                 ///< for all three; a test runs them
    std::vector<std::string> usages = {"PATH..."}; ///< what stands behind the flags
};

/// A command of the program: what it is called, which flags it takes, what it does.
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

    /// The words of the line that are no flags.
    std::vector<std::string>& words() { return request.paths; }

    /// Whether words or lists name what to read.
    bool hasInput() const { return !request.paths.empty() || !request.lists.empty(); }

    /// Does the work, by default `perform` for every recording that the words lead to. Gives the exit status. Throws a
    /// Failure.
    virtual int run();

protected:
    void add(Flag flag) { _flags.push_back(std::move(flag)); }
    void add(std::vector<Flag> flags);

    /// Adds the paths that lists name to those of the line. Throws a Failure.
    void readLists();

    /// Takes the catalogues out of the paths. Throws a Failure where the command takes none.
    std::vector<std::string> takeCatalogues();

    /// Where the recordings are looked for.
    Search search() const;

    /// Before anything is looked for: throws a Failure for wrong usage.
    virtual void prepare() {}

    /// Folder for what is written, which no search enters, or nothing.
    virtual std::string outputFolder() const { return {}; }

    /// What will be written of the recordings found, without extensions; nothing where that is standard output. May
    /// turn entries into problems. Called once more when archives have been opened.
    virtual std::vector<std::string> targets() { return {}; }

    /// Opens, once the targets are known, what the program may not open any more when it reads recordings.
    virtual void openOutputs() {}

    /// What becomes of recordings, counted in a summary behind several; the last is that of a failure. None: no
    /// summary.
    virtual std::vector<std::string> outcomes() const { return {}; }

    /// What stands above what the recordings print, or nothing.
    virtual std::string heading() const { return {}; }

    /// The work on one recording; several at once, each with a job of its own.
    virtual void perform(const Entry& /*entry*/, Job& /*out*/) {}

    /// Whether a recording is one of those that the user asks for. Opens it, unless a catalogue has chosen it.
    bool isWanted(const Entry& entry) const;

    Request request;

private:
    void _collect();

    const Description _description;
    std::vector<Flag> _flags;
};
