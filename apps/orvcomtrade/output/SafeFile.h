#pragma once

#include "output/Output.h"
#include "output/TemporaryName.h"

#include <memory>
#include <string>
#include <vector>

/// A file that stands under its name only when it is complete: it is written without a name, or under a temporary one
/// beside its target where the disk has no files without a name, and leaves nothing when it is given up or interrupted.
class SafeFile : public Output {
public:
    /// Throws a Failure if the target exists (unless it may be replaced), or can't be written.
    SafeFile(std::string target, bool replace);
    ~SafeFile() override;
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    SafeFile(SafeFile&&) = delete;
    SafeFile& operator=(SafeFile&&) = delete;

    const std::string& target() const { return _target; }

    /// Writes what is pending; the file is complete, but still without its name. Throws a Failure.
    void complete();

    /// Gives the complete file its name. Throws a Failure, also if the target has come into being meanwhile.
    void publish();

protected:
    void send(std::string_view piece) override;

private:
    void _open();
    int _link(const char* name) const;
    [[noreturn]] void _fail(int error) const;

    const std::string _target;
    const bool _replace;
    TemporaryName _name; ///< of the file until it is published, if it has any
    int _file = -1;
};

/// Files that are published all together or not at all.
class SafeFiles {
public:
    explicit SafeFiles(bool replace) : _replace(replace) {}

    /// A new file; the last one added is published last. Throws as SafeFile does.
    SafeFile& add(const std::string& target);

    /// Completes and publishes them. Throws a Failure; then none of them has come into being (one that was replaced
    /// stays replaced).
    void publish();

    /// The targets, in order.
    std::vector<std::string> targets() const;

private:
    const bool _replace;
    std::vector<std::unique_ptr<SafeFile>> _files;
};

/// Throws a Failure if the target is one of these files: a recording is never replaced by what is made of it.
void refuseToReplace(const std::vector<std::string>& originals, const std::string& target);

/// Makes the folder that the target lies in. Throws a Failure.
void makeFolderOf(const std::string& target);
