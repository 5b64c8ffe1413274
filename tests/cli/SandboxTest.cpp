// What the host program may open once it reads recordings: by its own rules in a process of their own, and seen from
// within the program. Where the kernel has no Landlock, what must still work is all that is looked at.

#include "cli/program.h"
#include "sandbox/confine.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <dirent.h>
#include <filesystem>
#include <functional>
#include <linux/landlock.h>
#include <netinet/in.h>
#include <string>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <vector>

namespace fs = std::filesystem;
using orvtest::Outcome;
using orvtest::TempDir;

namespace {

long versionOfLandlock() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

bool kernelHasLandlock() {
    return versionOfLandlock() >= 1;
}

/// What `look` gives in a process that is confined to what is selected and to these targets.
int confinedTo(const EntryList& selection, const std::vector<std::string>& targets, const std::function<int()>& look) {
    const pid_t child = fork();
    if (child == 0) {
        confine(selection, targets);
        _exit(look());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int confined(const std::vector<std::string>& recordings, const std::vector<std::string>& targets,
             const std::function<int()>& look) {
    EntryList selection;
    for (const std::string& path : recordings) {
        selection.entries.push_back({path, {}, {}});
    }
    return confinedTo(selection, targets, look);
}

/// errno of opening it, or 0.
int errorOf(const std::string& path, int flags) {
    const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
    return file < 0 ? errno : (close(file), 0);
}

/// A folder with one recording, and beside it a file and a folder that are none of its business.
struct Scene {
    Scene() {
        fs::create_directories(folder.file("in"));
        fs::create_directories(folder.file("out"));
        fs::create_directories(folder.file("elsewhere"));
        folder.write("in/rec.cfg", "a recording");
        folder.write("in/rec.dat", "its data");
        folder.write("elsewhere/secret.dat", "another's");
    }

    std::string at(const std::string& name) const { return folder.file(name); }

    TempDir folder;
};

/// The words of a command, run where its files are, with the program trying to read /etc/passwd.
Outcome tryingToReadOutside(const TempDir& folder, std::vector<std::string> words) {
    std::vector<std::string> all = {"LD_PRELOAD=" ORVCOMTRADE_TRY_OUTSIDE, "ORVCOMTRADE_TRY=/etc/passwd",
                                    ORVCOMTRADE_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return orvtest::runProgramIn(folder.path(), "/usr/bin/env", all);
}

} // namespace

TEST(SandboxConfine, OnlyWhatBelongsToTheRecordingsIsRead) {
    if (!kernelHasLandlock()) {
        GTEST_SKIP() << "the kernel has no Landlock";
    }
    const Scene scene;
    struct Row {
        const char* why;
        std::string path;
        int flags;
        int error;
    };
    const std::vector<Row> rows = {
        {"the recording", scene.at("in/rec.cfg"), O_RDONLY, 0},
        {"its companion", scene.at("in/rec.dat"), O_RDONLY, 0},
        {"its folder", scene.at("in"), O_RDONLY | O_DIRECTORY, 0},
        {"another folder's file", scene.at("elsewhere/secret.dat"), O_RDONLY, EACCES},
        {"another folder", scene.at("elsewhere"), O_RDONLY | O_DIRECTORY, EACCES},
        {"the folder above", scene.at(""), O_RDONLY | O_DIRECTORY, EACCES},
        {"the system's users", "/etc/passwd", O_RDONLY, EACCES},
        {"a device", "/dev/zero", O_RDONLY, EACCES},
        {"the recording, to write", scene.at("in/rec.cfg"), O_WRONLY, EACCES},
        {"a new file beside it", scene.at("in/new.cfg"), O_WRONLY | O_CREAT, EACCES},
        {"no such file", scene.at("in/absent.cfg"), O_RDONLY, ENOENT},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(confined({scene.at("in/rec.cfg")}, {}, [&] { return errorOf(row.path, row.flags); }), row.error)
            << row.why;
    }
}

TEST(SandboxConfine, AnArchiveIsReadAndNotItsFolder) {
    if (!kernelHasLandlock()) {
        GTEST_SKIP() << "the kernel has no Landlock";
    }
    const Scene scene;
    scene.folder.write("in/all.zip", "an archive");
    Entry entry{scene.at("in/all.zip"), {}};
    entry.archive = scene.at("in/all.zip");
    EntryList selection;
    selection.entries.push_back(entry);
    EXPECT_EQ(confinedTo(selection, {}, [&] { return errorOf(scene.at("in/all.zip"), O_RDONLY); }), 0);
    EXPECT_EQ(confinedTo(selection, {}, [&] { return errorOf(scene.at("in/rec.cfg"), O_RDONLY); }), EACCES);
}

TEST(SandboxConfine, OnlyTheFoldersOfTheTargetsAreWritten) {
    if (!kernelHasLandlock()) {
        GTEST_SKIP() << "the kernel has no Landlock";
    }
    const Scene scene;
    const std::vector<std::string> recordings = {scene.at("in/rec.cfg")};
    const auto make = [&](const std::string& name) { return errorOf(scene.at(name), O_WRONLY | O_CREAT | O_EXCL); };
    EXPECT_EQ(confined(recordings, {scene.at("out/rec")}, [&] { return make("out/rec.csv"); }), 0);
    EXPECT_EQ(confined(recordings, {scene.at("out/rec")}, [&] { return make("elsewhere/rec.csv"); }), EACCES);
    EXPECT_EQ(confined(recordings, {scene.at("out/rec")},
                       [&] { return unlink(scene.at("elsewhere/secret.dat").c_str()) == 0 ? 0 : errno; }),
              EACCES);
    EXPECT_EQ(confined(recordings, {scene.at("out/rec")},
                       [&] {
                           return rename(scene.at("out/rec.csv").c_str(), scene.at("elsewhere/x").c_str()) == 0 ? 0
                                                                                                                : errno;
                       }),
              EACCES);
    // One that is to be made is made in the deepest folder that is there.
    EXPECT_EQ(confined(recordings, {scene.at("out/new/deeper/rec")},
                       [&] {
                           fs::create_directories(scene.at("out/new/deeper"));
                           return make("out/new/deeper/rec.csv");
                       }),
              0);
    EXPECT_EQ(confined(recordings, {scene.at("out/further/deeper/rec")}, [&] { return make("elsewhere/rec.csv"); }),
              EACCES);
}

TEST(SandboxConfine, LinksCountForWhatTheyLeadTo) {
    if (!kernelHasLandlock()) {
        GTEST_SKIP() << "the kernel has no Landlock";
    }
    const Scene scene;
    fs::create_directory_symlink(scene.at("in"), scene.at("link"));
    fs::create_symlink(scene.at("elsewhere/secret.dat"), scene.at("in/linked.DAT"));
    scene.folder.write("elsewhere/other", "not asked for");
    fs::create_symlink(scene.at("elsewhere/other"), scene.at("in/other.txt"));
    const std::vector<std::string> recordings = {scene.at("link/rec.cfg")};
    const auto read = [&](const std::string& name) {
        return confined(recordings, {}, [&] { return errorOf(scene.at(name), O_RDONLY); });
    };
    EXPECT_EQ(read("link/rec.cfg"), 0);
    EXPECT_EQ(read("in/rec.dat"), 0) << "the same folder by its own name";
    EXPECT_EQ(read("link/linked.DAT"), 0) << "a file of a recording may lie elsewhere";
    EXPECT_EQ(read("in/other.txt"), EACCES) << "no file of a recording";
    fs::create_directory_symlink(scene.at("out"), scene.at("way-out"));
    EXPECT_EQ(confined(recordings, {scene.at("way-out/rec")},
                       [&] { return errorOf(scene.at("out/rec.csv"), O_WRONLY | O_CREAT); }),
              0);
}

TEST(SandboxConfine, NoProgramIsStartedAndNoConnectionMade) {
    EXPECT_EQ(confined({}, {}, [] { return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0); }), 1);
    const auto start = [] {
        execl("/bin/true", "true", nullptr);
        return errno;
    };
    const auto listen = [] {
        const int end = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return bind(end, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 ? 0 : errno; // NOLINT: as it wants
    };
    EXPECT_EQ(confined({}, {}, start), versionOfLandlock() >= 1 ? EACCES : 0);
    EXPECT_EQ(confined({}, {}, listen), versionOfLandlock() >= 4 ? EACCES : 0);
}

TEST(CliSandbox, NothingElseIsReadUnlessItIsTurnedOff) {
    const TempDir folder;
    orvtest::writeSmall(folder, "S,D", "U", "I", orvtest::kFourLines);
    for (const char* const command : {"info", "check", "events"}) {
        SCOPED_TRACE(command);
        const Outcome inside = tryingToReadOutside(folder, {command, "--jobs", "1", "rec.cfg"});
        const Outcome free = tryingToReadOutside(folder, {command, "--jobs", "1", "--no-sandbox", "rec.cfg"});
        EXPECT_EQ(inside.err, kernelHasLandlock() ? "outside: Permission denied\n" : "outside: opened\n");
        EXPECT_EQ(free.err, "outside: opened\n");
        EXPECT_EQ(inside.status, 0);
        EXPECT_EQ(inside.out, free.out);
    }
}

TEST(CliSandbox, LinkedRecordingsAndFoldersOfOutputWork) {
    const TempDir folder;
    orvtest::writeSmall(folder, "S,D", "U", "I", orvtest::kFourLines);
    fs::create_directories(folder.file("store"));
    fs::create_directories(folder.file("in/sub"));
    fs::create_directories(folder.file("far"));
    fs::rename(folder.file("rec.cfg"), folder.file("store/stored.cfg"));
    fs::rename(folder.file("rec.dat"), folder.file("store/data-of-it"));
    fs::create_symlink("../../store/stored.cfg", folder.file("in/sub/rec.cfg"));
    fs::create_symlink("../../store/data-of-it", folder.file("in/sub/rec.dat"));
    fs::create_directory_symlink("../far", folder.file("in/out"));
    for (const char* const output : {"in/out", "new/deeper", "in/out/more"}) {
        SCOPED_TRACE(output);
        const Outcome outcome =
            orvtest::orvcomtradeIn(folder.path(), {"normalize", "in/sub", "--follow-links", "--output", output});
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(fs::is_regular_file(folder.file(std::string(output) + "/rec.cfg")));
    }
    EXPECT_TRUE(fs::is_regular_file(folder.file("far/rec.dat")));
}

TEST(CliSandbox, ConvertersOfTextAreFound) {
    const TempDir folder;
    orvtest::writeSmall(folder, "\xC7\xD1,D", "U", "I", orvtest::kFourLines);
    const Outcome outcome = orvtest::orvcomtradeIn(folder.path(), {"info", "--encoding", "EUC-KR", "rec.cfg"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "Station         \xED\x95\x9C");
}
