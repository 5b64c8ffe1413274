#pragma once

#include "output/Output.h"
#include "output/TemporaryName.h"

#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

/// A file that stands under its name only when it is complete and on the disk: it is written without a name, or under a
/// temporary one beside its target where the disk has no files without a name, and leaves nothing when it is given up
/// or interrupted. One that replaces another gets the owner, group and permissions of that.
class SafeFile : public Output {
public:
    /// Throws a Failure if the target exists (unless it may be replaced), or can't be written. `isNamed` asks for a
    /// temporary name in any case, for a library that writes the file by its path.
    SafeFile(std::string target, bool replace, bool isNamed = false);
    ~SafeFile() override;
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    SafeFile(SafeFile&&) = delete;
    SafeFile& operator=(SafeFile&&) = delete;

    const std::string& target() const { return _target; }

    /// The temporary name, or empty.
    const std::string& temporaryPath() const { return _name.path(); }

    /// Writes what is pending to the disk; the file is complete, but still without its name. Throws a Failure.
    void complete();

    /// Gives the complete file its name. Throws a Failure, also if the target has come into being meanwhile. What it
    /// replaces is set aside for `rollBack`, on a disk without links only if it is one of several; it goes with this
    /// object.
    void publish(bool isOneOfSeveral);

    /// Puts things back as they were before `publish`, however far that went.
    void rollBack();

    /// Where the file is that was replaced and could not be put back, or empty.
    const std::string& leftAside() const { return _leftAside; }

protected:
    void send(std::string_view piece) override;

private:
    void _open(bool isNamed);
    void _takeOverAccess() const;
    int _link(const char* name) const;
    int _setAside(bool isOneOfSeveral);
    int _giveName();
    void _close();
    [[noreturn]] void _fail(int error) const;

    const std::string _target;
    const bool _replace;
    struct stat _replaced = {};  ///< a regular file, or mode 0: there is none
    TemporaryName _name;         ///< of the file until it is published, if it has any
    TemporaryName _replacedName; ///< of the file that was replaced, where that is set aside
    std::string _leftAside;
    bool _isNew = false; ///< published where nothing stood
    int _file = -1;
};

/// Files that are published all together or not at all.
class SafeFiles {
public:
    explicit SafeFiles(bool replace) : _replace(replace) {}

    /// A new file; the last one added is published last. Throws as SafeFile does.
    SafeFile& add(const std::string& target, bool isNamed = false);

    /// Completes and publishes them, without an interruption in between. Throws a Failure; then none of them has come
    /// into being, and what was to be replaced is there.
    void publish();

    /// The targets, in order.
    std::vector<std::string> targets() const;

private:
    void _rollBack();
    std::string _leftAside() const;

    const bool _replace;
    std::vector<std::unique_ptr<SafeFile>> _files;
};

/// Throws a Failure if the target is one of these files: a recording is never replaced by what is made of it.
void refuseToReplace(const std::vector<std::string>& originals, const std::string& target);

/// Makes the folder that the target lies in. Throws a Failure.
void makeFolderOf(const std::string& target);
