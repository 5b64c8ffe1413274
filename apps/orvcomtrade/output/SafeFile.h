#pragma once

#include "output/Output.h"
#include "output/TemporaryName.h"

#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

/// A file that gets its name only when it is complete and on the disk. Until then it has no name, or a temporary one
/// next to its target if the file system has no files without a name. If it is given up or interrupted, nothing is
/// left. A file that replaces another gets its owner, group and permissions.
class SafeFile : public Output {
public:
    /// Throws a Failure if the target exists (unless it may be replaced), or cannot be written. With `isNamed`, it has
    /// a temporary name in any case, for a library that writes the file by its path.
    SafeFile(std::string target, bool replace, bool isNamed = false);
    ~SafeFile() override;
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    SafeFile(SafeFile&&) = delete;
    SafeFile& operator=(SafeFile&&) = delete;

    const std::string& target() const { return _target; }

    /// The temporary name, or empty.
    const std::string& temporaryPath() const { return _name.path(); }

    /// Writes what is pending to the disk. The file is then complete, but still without its name. Throws a Failure.
    void complete();

    /// Gives the complete file its name. Throws a Failure, also if the target has been created meanwhile. The file that
    /// it replaces is set aside for `rollBack`, in a file system without links only if there are several files; it is
    /// removed with this object.
    void publish(bool isOneOfSeveral);

    /// Puts things back as they were before `publish`, however far that went.
    void rollBack();

    /// Path of the replaced file if it could not be put back, or empty.
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
    struct stat _replaced = {};  ///< of the regular file that is replaced; mode 0 if there is none
    TemporaryName _name;         ///< of the file until it is published, if it has one
    TemporaryName _replacedName; ///< of the replaced file, if that is set aside
    std::string _leftAside;
    bool _isNew = false; ///< published where nothing stood
    int _file = -1;
};

/// Files that are published all together or not at all.
class SafeFiles {
public:
    explicit SafeFiles(bool replace) : _replace(replace) {}

    /// Adds a new file. The last one added is published last. Throws as SafeFile does.
    SafeFile& add(const std::string& target, bool isNamed = false);

    /// Completes and publishes all files without an interruption in between. If it throws a Failure, none of them
    /// exists, and the files to be replaced are still there.
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
