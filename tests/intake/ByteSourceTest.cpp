#include "files/ByteSource.h"

#include "support/FailingReads.h"
#include "support/FileLimits.h"
#include "support/OpenFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::ByteSource;
using orvtest::openFiles;
using orvtest::TempDir;
using namespace std::chrono_literals;

std::string messageOf(const std::function<void()>& failing) {
    try {
        failing();
    } catch (const std::system_error& failure) {
        return failure.what();
    }
    return "no failure";
}

/// Everything that a source gives, whatever it is of.
struct Row {
    const char* why;
    std::function<ByteSource(const std::string& bytes, const TempDir& folder)> make;
    std::uint64_t offsetOfThird; ///< in the file
};

const Row kRows[] = {
    {"a file", [](const std::string& bytes, const TempDir& f) { return ByteSource::ofFile(f.write("a", bytes)); }, 2},
    {"memory", [](const std::string& bytes, const TempDir&) { return ByteSource::ofMemory(bytes, "a"); }, 2},
    {"decoded text", [](const std::string& bytes, const TempDir&) { return ByteSource::ofText(bytes, "a", 100); }, 100},
    {"a part of a file",
     [](const std::string& bytes, const TempDir& f) {
         return ByteSource::ofFile(f.write("a", "before" + bytes + "behind")).part(6, bytes.size());
     },
     8},
    {"a part of a part",
     [](const std::string& bytes, const TempDir& f) {
         return ByteSource::ofFile(f.write("a", "before" + bytes)).part(2, 100).part(4, 100);
     },
     8},
    {"a part of decoded text",
     [](const std::string& bytes, const TempDir&) { return ByteSource::ofText("xx" + bytes, "a", 100).part(2, 50); },
     100},
};

TEST(ByteSource, GivesTheSameBytesWhateverItIsOf) {
    const std::string bytes("\x00\n\xFF\r\n\x1A-9", 8);
    for (const Row& row : kRows) {
        const TempDir folder;
        const ByteSource source = row.make(bytes, folder);
        EXPECT_EQ(source.length(), 8U) << row.why;
        EXPECT_EQ(source.all(), bytes) << row.why;
        EXPECT_EQ(source.offsetInFile(2), row.offsetOfThird) << row.why;
        char some[4] = {};
        EXPECT_EQ(source.read(5, some, 2), 2U) << row.why;
        EXPECT_EQ(std::string(some), "\x1A-") << row.why;
        EXPECT_EQ(source.read(6, some, 4), 2U) << row.why;
        EXPECT_EQ(source.read(8, some, 4), 0U) << row.why;
        EXPECT_EQ(source.read(UINT64_MAX, some, 4), 0U) << row.why;
        EXPECT_EQ(source.part(6, UINT64_MAX).all(), "-9") << row.why;
        EXPECT_EQ(source.part(UINT64_MAX, 4).all(), "") << row.why;
        EXPECT_EQ(source.part(3, 0).length(), 0U) << row.why;
    }
}

TEST(ByteSource, HasTheNameThatFindingsShow) {
    const TempDir folder;
    EXPECT_EQ(ByteSource::ofFile(folder.write("a.cfg", "x")).part(0, 1).name(), folder.file("a.cfg"));
    EXPECT_EQ(ByteSource::ofMemory("x", "recording").part(0, 1).name(), "recording");
    EXPECT_EQ(ByteSource::ofText("x", "a.cff", 7).name(), "a.cff");
}

TEST(ByteSource, KeepsTextThatItOwnsInItsCopies) {
    std::optional<ByteSource> text = ByteSource::ofText(std::string(1000, 'x'), "a", 0);
    const ByteSource part = text->part(10, 5);
    text.reset();
    EXPECT_EQ(part.all(), "xxxxx");
}

TEST(ByteSourceOfFile, FailsForWhatIsNoRegularFile) {
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    const std::pair<std::string, int> rows[] = {
        {folder.file("nothing"), ENOENT},
        {folder.path(), EISDIR},
        {folder.file("pipe"), ENOTSUP},
        {"/dev/zero", ENOTSUP},
        {folder.file(std::string(300, 'x')), ENAMETOOLONG},
    };
    const orvtest::Deadline deadline(20);
    const std::ptrdiff_t before = openFiles();
    for (const auto& [path, error] : rows) {
        try {
            ByteSource::ofFile(path);
            ADD_FAILURE() << path;
        } catch (const std::system_error& failure) {
            EXPECT_EQ(failure.code().value(), error) << path;
        }
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(ByteSourceOfFile, OpensItOnceAndClosesItWithTheLastCopy) {
    const TempDir folder;
    const std::string path = folder.write("a", "abc");
    const std::ptrdiff_t before = openFiles();
    {
        std::optional<ByteSource> source = ByteSource::ofFile(path);
        const ByteSource part = source->part(1, 2);
        EXPECT_EQ(openFiles(), before + 1);
        source.reset();
        fs::remove(path);
        EXPECT_EQ(part.all(), "bc");
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(ByteSourceRead, ThrowsWhereTheFileHasChanged) {
    const struct {
        std::function<void(const std::string& path)> change;
        const char* message;
    } rows[] = {
        {[](const std::string& path) { fs::resize_file(path, 4); }, "a file that became shorter"},
        {[](const std::string& path) { fs::resize_file(path, 11); }, "a file that became longer"},
        {[](const std::string& path) { fs::last_write_time(path, fs::file_time_type::clock::now() + 1h); },
         "a file that was written to"},
    };
    for (const auto& row : rows) {
        const TempDir folder;
        const std::string path = folder.write("a", "0123456789");
        const ByteSource source = ByteSource::ofFile(path);
        const ByteSource part = source.part(1, 2);
        EXPECT_EQ(part.all(), "12");
        source.requireUnchanged();
        row.change(path);
        EXPECT_EQ(messageOf([&] { source.all(); }), path + ": " + row.message);
        EXPECT_EQ(messageOf([&] { part.all(); }), path + ": " + row.message);
        EXPECT_EQ(messageOf([&] { source.requireUnchanged(); }), path + ": " + row.message);
    }
}

TEST(ByteSourceRead, GoesOnInTheFileThatWasOpenedWhateverHasItsNameNow) {
    const std::function<void(const std::string& path)> changes[] = {
        [](const std::string& path) { fs::remove(path); },
        [](const std::string& path) {
            fs::remove(path);
            mkfifo(path.c_str(), 0600);
        },
        [](const std::string& path) {
            fs::remove(path);
            fs::create_symlink("/dev/zero", path);
        },
    };
    const orvtest::Deadline deadline(20);
    for (const auto& change : changes) {
        const TempDir folder;
        const std::string path = folder.write("a", "0123456789");
        const ByteSource source = ByteSource::ofFile(path);
        change(path);
        EXPECT_EQ(source.all(), "0123456789");
        EXPECT_EQ(ByteSource::ofFile(source.pathOfWholeFile()).all(), "0123456789");
    }
}

TEST(ByteSourceRead, TakesLackOfMemoryForWhatItIs) {
    const TempDir folder;
    const ByteSource source = ByteSource::ofFile(folder.write("a", "0123456789"));
    orvtest::FailingReads reads;
    reads.withErrors({ENOMEM});
    EXPECT_THROW(source.all(), std::bad_alloc);
}

TEST(ByteSourceRead, GoesOnAfterSignalsAndShortReads) {
    const TempDir folder;
    const ByteSource source = ByteSource::ofFile(folder.write("a", "0123456789"));
    orvtest::FailingReads reads;
    reads.withErrors({EINTR, EINTR}).inPieces(3);
    EXPECT_EQ(source.all(), "0123456789");
}

TEST(ByteSourceRead, ThrowsWhereTheDiskFails) {
    const TempDir folder;
    const ByteSource source = ByteSource::ofFile(folder.write("a", "0123456789"));
    orvtest::FailingReads reads;
    reads.withErrors({EIO});
    char byte = '\0';
    EXPECT_THROW(source.read(0, &byte, 1), std::system_error);
    EXPECT_EQ(source.read(0, &byte, 1), 1U);
}

TEST(ByteSourcePlace, CountsFromTheFirstLine) {
    using OrvComtradeIntake::Place;
    const auto text = [](const Place& place) {
        return place.file + ':' + std::to_string(place.line) + ' ' + place.field + " @" + std::to_string(place.offset);
    };
    const ByteSource part = ByteSource::ofMemory("0123456789", "a").part(4, 6).withFirstLine(12);
    EXPECT_EQ(text(part.place(1, "n", 0)), "a:12 n @4");
    EXPECT_EQ(text(part.place(3, "n", 5)), "a:14 n @9");
    EXPECT_EQ(text(part.place(0, "n", 5)), "a:0 n @9");
    EXPECT_EQ(text(part.part(1, 2).place(1, "n", 0)), "a:12 n @5");
    const ByteSource decoded = ByteSource::ofText("01234", "a", 100).withFirstLine(12);
    EXPECT_EQ(text(decoded.place(3, "n", 5)), "a:12 n @100");
    EXPECT_EQ(text(decoded.place(0, "n", 5)), "a:0 n @100");
    const ByteSource narrow = ByteSource::ofText("01234", "a", 100, 2).withFirstLine(12);
    EXPECT_EQ(text(narrow.part(1, 3).place(3, "n", 2)), "a:14 n @106");
}

TEST(ByteSourcePathOfWholeFile, OpensTheFileThatWasOpenedEvenIfItsNameIsAnothersNow) {
    const TempDir folder;
    const ByteSource source = ByteSource::ofFile(folder.write("a", "first"));
    fs::remove(folder.file("a"));
    folder.write("a", "second");
    EXPECT_EQ(ByteSource::ofFile(source.pathOfWholeFile()).all(), "first");
}

TEST(ByteSourcePathOfWholeFile, IsEmptyForAnythingElse) {
    const TempDir folder;
    const ByteSource file = ByteSource::ofFile(folder.write("a", "0123"));
    EXPECT_EQ(file.part(0, 3).pathOfWholeFile(), "");
    EXPECT_EQ(file.part(1, 3).pathOfWholeFile(), "");
    EXPECT_EQ(ByteSource::ofMemory("0123", "a").pathOfWholeFile(), "");
    EXPECT_EQ(ByteSource::ofText("0123", "a", 0).pathOfWholeFile(), "");
    EXPECT_EQ(ByteSource().pathOfWholeFile(), "");
}

} // namespace
