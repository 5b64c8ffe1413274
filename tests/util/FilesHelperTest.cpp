#include "FilesHelper.h"

#include "FileExtensions.h"
#include "support/BoundByPermissions.h"
#include "support/TempDir.h"
#include "support/WhatOf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>

using OrvComtradeLib::FilesHelper;
using orvtest::BoundByPermissions;
using orvtest::TempDir;
using orvtest::whatOf;

namespace {

const char* const kPathsWithoutDot[] = {"", "rec", "/data/rec", "reccfg", "/"};

/// The start of the range error's text up to its first colon and blank; the positions behind it are the library's own
/// affair.
template <class Operation> std::string rangeErrorOf(Operation operation) {
    const std::string what = whatOf<std::out_of_range>(operation);
    return what.substr(0, what.find(": "));
}

} // namespace

TEST(FileExtensions, AreLowerCaseWithTheirDot) {
    EXPECT_EQ(OrvComtradeLib::cfgExtension, ".cfg");
    EXPECT_EQ(OrvComtradeLib::datExtension, ".dat");
    EXPECT_EQ(OrvComtradeLib::cffExtension, ".cff");
}

TEST(FilesHelperGetFileExtension, IsTheTextFromTheLastDot) {
    const struct {
        const char* why;
        std::string path;
        std::string expected;
    } rows[] = {
        {"plain", "rec.cfg", ".cfg"},
        {"the last of several dots", "a.b.cfg", ".cfg"},
        {"a dot at the end", "rec.", "."},
        {"nothing but a dot", ".", "."},
        {"two dots at the end", "rec..", "."},
        {"a name that begins with its dot", ".cfg", ".cfg"},
        {"the case is kept", "REC.CFG", ".CFG"},
        {"a trailing blank belongs to it", "rec.cfg ", ".cfg "},
        {"directories are searched as well", "/data/v1.2/rec", ".2/rec"},
        {"a relative path", "../rec", "./rec"},
        {"the file's own dot comes last", "/data/v1.2/rec.dat", ".dat"},
        {"a backslash is an ordinary character", "C:\\v1.2\\rec", ".2\\rec"},
        {"a zero byte too", std::string("a.c\0d", 5), std::string(".c\0d", 4)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FilesHelper::getFileExtension(row.path), row.expected) << row.why;
}

TEST(FilesHelperGetFileExtension, PathWithoutDotIsTheRangeErrorOfSubstr) {
    for (const std::string path : kPathsWithoutDot)
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::getFileExtension(path); }), "basic_string::substr") << path;
}

TEST(FilesHelperGetfileNameWithoutExtension, IsTheTextBeforeTheLastDotOrTheWholePath) {
    const struct {
        const char* why;
        std::string path;
        std::string expected;
    } rows[] = {
        {"plain", "rec.cfg", "rec"},
        {"the last of several dots", "a.b.cfg", "a.b"},
        {"no dot: the whole path", "rec", "rec"},
        {"no dot: an empty path", "", ""},
        {"a dot at the end", "rec.", "rec"},
        {"two dots at the end", "rec..", "rec."},
        {"nothing before the dot", ".cfg", ""},
        {"directories are searched as well", "/data/v1.2/rec", "/data/v1"},
        {"directories stay in front", "/data/rec.DAT", "/data/rec"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FilesHelper::getfileNameWithoutExtension(row.path), row.expected) << row.why;
}

TEST(FilesHelperIsFile, ExtensionDecidesInAnyCase) {
    const struct {
        const char* path;
        bool cfg;
        bool dat;
        bool cff;
    } rows[] = {
        // The three kinds
        {"rec.cfg", true, false, false},
        {"rec.CFG", true, false, false},
        {"rec.Cfg", true, false, false},
        {"rec.cFg", true, false, false},
        {"rec.dat", false, true, false},
        {"rec.DAT", false, true, false},
        {"rec.dAt", false, true, false},
        {"x.cff", false, false, true},
        {"x.CFF", false, false, true},
        {"x.Cff", false, false, true},
        {".cfg", true, false, false},
        {"/data/v1.2/rec.dat", false, true, false},
        {"a.dat.cfg", true, false, false},
        // None of them
        {"x.txt", false, false, false},
        {"rec.cfg ", false, false, false},
        {"rec. cfg", false, false, false},
        {"rec.cfg\r", false, false, false},
        {"rec.cf", false, false, false},
        {"rec.cfgx", false, false, false},
        {"rec.da", false, false, false},
        {"rec.dat2", false, false, false},
        {"rec.cfff", false, false, false},
        {"rec.hdr", false, false, false},
        {"rec.", false, false, false},
        {".", false, false, false},
        {"/data.cfg/rec", false, false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FilesHelper::isCfgFile(row.path), row.cfg) << row.path;
        EXPECT_EQ(FilesHelper::isDatFile(row.path), row.dat) << row.path;
        EXPECT_EQ(FilesHelper::isCffFile(row.path), row.cff) << row.path;
    }
}

TEST(FilesHelperIsComtradeFile, IsAnyOfTheThreeKinds) {
    for (const std::string path : {"x.cfg", "x.CFG", "x.dat", "x.Dat", "x.cff", "x.CFF"})
        EXPECT_TRUE(FilesHelper::isComtradeFile(path)) << path;
    for (const std::string path : {"x.txt", "x.", "x.cfg ", "x.hdr", "x.inf", "/v.cfg/x"})
        EXPECT_FALSE(FilesHelper::isComtradeFile(path)) << path;
}

TEST(FilesHelperIsFile, PathWithoutDotIsTheRangeErrorOfSubstr) {
    const std::string expected = "basic_string::substr";
    for (const std::string path : kPathsWithoutDot) {
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::isCfgFile(path); }), expected) << path;
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::isDatFile(path); }), expected) << path;
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::isCffFile(path); }), expected) << path;
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::isComtradeFile(path); }), expected) << path;
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::cfgFileName(path); }), expected) << path;
        EXPECT_EQ(rangeErrorOf([&] { FilesHelper::datFileName(path); }), expected) << path;
    }
}

TEST(FilesHelperFileNames, AnyFileOfTheRecordingLeadsToBoth) {
    const struct {
        const char* why;
        std::string path;
        std::string cfg;
        std::string dat;
    } rows[] = {
        {"configuration file", "x.cfg", "x.cfg", "x.dat"},
        {"its extension keeps its case, the derived one is lower case", "x.CFG", "x.CFG", "x.dat"},
        {"the base name keeps its case", "REC.CFG", "REC.CFG", "REC.dat"},
        {"data file", "x.dat", "x.cfg", "x.dat"},
        {"its extension keeps its case, the derived one is lower case", "REC.DAT", "REC.cfg", "REC.DAT"},
        {"mixed case counts as its own kind", "x.Dat", "x.cfg", "x.Dat"},
        {"combined file: the two separate ones", "x.cff", "x.cfg", "x.dat"},
        {"combined file in upper case", "X.CFF", "X.cfg", "X.dat"},
        {"any other path", "x.txt", "x.cfg", "x.dat"},
        {"a trailing blank makes it another path", "x.cfg ", "x.cfg", "x.dat"},
        {"only the last dot counts", "a.b.cff", "a.b.cfg", "a.b.dat"},
        {"a dot at the end", "x.", "x.cfg", "x.dat"},
        {"a dot in a directory", "/data/v1.2/rec", "/data/v1.cfg", "/data/v1.dat"},
        {"directories are kept", "/data/v1.2/rec.cff", "/data/v1.2/rec.cfg", "/data/v1.2/rec.dat"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FilesHelper::cfgFileName(row.path), row.cfg) << row.why;
        EXPECT_EQ(FilesHelper::datFileName(row.path), row.dat) << row.why;
    }
}

TEST(FilesHelperIsFileExist, TellsWhetherTheFileOpens) {
    const TempDir folder;
    const std::string path = folder.write("rec.cfg", "S\n");
    EXPECT_TRUE(FilesHelper::isFileExist(path));
    EXPECT_TRUE(FilesHelper::isFileExist(folder.write("empty", "")));
    EXPECT_TRUE(FilesHelper::isFileExist(folder.write("\xD0\xB0.cfg", ""))) << "Cyrillic small letter a";
    EXPECT_FALSE(FilesHelper::isFileExist(folder.file("missing.cfg")));
    EXPECT_FALSE(FilesHelper::isFileExist(folder.file("missing/rec.cfg")));
    EXPECT_FALSE(FilesHelper::isFileExist(path + "/rec.cfg"));
    EXPECT_FALSE(FilesHelper::isFileExist(""));
    EXPECT_FALSE(FilesHelper::isFileExist("rec")) << "no dot, no exception";
}

TEST(FilesHelperIsFileExist, MissingFileIsNotCreated) {
    const TempDir folder;
    const std::string path = folder.file("missing.cfg");
    FilesHelper::isFileExist(path);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(FilesHelperIsFileExist, FileWithoutReadPermissionDoesNot) {
    const BoundByPermissions bound;
    const TempDir folder;
    const std::string path = folder.write("rec.cfg", "S\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_write);
    EXPECT_FALSE(FilesHelper::isFileExist(path));
    EXPECT_EQ(FilesHelper::fileLenght(path), -1);
}

TEST(FilesHelperFileLenght, CountsTheBytesOfANamedFile) {
    const TempDir folder;
    EXPECT_EQ(FilesHelper::fileLenght(folder.write("empty", "")), 0);
    EXPECT_EQ(FilesHelper::fileLenght(folder.write("one", "x")), 1);
    EXPECT_EQ(FilesHelper::fileLenght(folder.write("lines", "a\r\nb\n")), 5) << "line ends count as they are";
    EXPECT_EQ(FilesHelper::fileLenght(folder.write("zeros", std::string(100000, '\0'))), 100000);
}

TEST(FilesHelperFileLenght, FileThatDoesNotOpenIsMinusOne) {
    const TempDir folder;
    EXPECT_EQ(FilesHelper::fileLenght(folder.file("missing")), -1);
    EXPECT_EQ(FilesHelper::fileLenght(std::string()), -1);
}

TEST(FilesHelperFileLenght, LengthBeyond32BitsIsWhole) {
    const TempDir folder;
    const std::string path = folder.write("sparse.dat", "");
    std::filesystem::resize_file(path, 5368709121U);
    EXPECT_EQ(FilesHelper::fileLenght(path), std::int64_t{5368709121});
}

TEST(FilesHelperFileLenght, StreamKeepsItsReadingPosition) {
    const TempDir folder;
    std::ifstream stream(folder.write("rec.dat", "0123456789"), std::ios_base::in | std::ios_base::binary);
    EXPECT_EQ(FilesHelper::fileLenght(stream), 10);
    EXPECT_EQ(stream.tellg(), std::streampos(0));
    stream.seekg(3);
    EXPECT_EQ(FilesHelper::fileLenght(stream), 10) << "of the whole file, not of the rest";
    EXPECT_EQ(stream.tellg(), std::streampos(3));
    EXPECT_EQ(stream.get(), '3');
    EXPECT_TRUE(stream.good());
    EXPECT_TRUE(stream.is_open());
}

TEST(FilesHelperFileLenght, StreamAtItsLastByteStaysThere) {
    const TempDir folder;
    std::ifstream stream(folder.write("rec.dat", "01"));
    stream.seekg(0, std::ios_base::end);
    EXPECT_EQ(FilesHelper::fileLenght(stream), 2);
    EXPECT_EQ(stream.tellg(), std::streampos(2));
}

TEST(FilesHelperFileLenght, EmptyStreamIsZero) {
    const TempDir folder;
    std::ifstream stream(folder.write("empty", ""));
    EXPECT_EQ(FilesHelper::fileLenght(stream), 0);
}

TEST(FilesHelperFileLenght, FailedStreamIsMinusOne) {
    const TempDir folder;
    std::ifstream neverOpened;
    EXPECT_EQ(FilesHelper::fileLenght(neverOpened), -1);

    std::ifstream missing(folder.file("missing"));
    EXPECT_EQ(FilesHelper::fileLenght(missing), -1);

    std::ifstream failed(folder.write("rec.dat", "0123"));
    failed.setstate(std::ios_base::failbit);
    EXPECT_EQ(FilesHelper::fileLenght(failed), -1);

    std::ifstream bad(folder.file("rec.dat"));
    bad.setstate(std::ios_base::badbit);
    EXPECT_EQ(FilesHelper::fileLenght(bad), -1);

    std::ifstream readPastItsEnd(folder.file("rec.dat"));
    std::string word;
    readPastItsEnd >> word >> word;
    EXPECT_EQ(FilesHelper::fileLenght(readPastItsEnd), -1);
}

TEST(FilesHelperFileLenght, ThrowingStreamIsMinusOneAndNoException) {
    std::ifstream stream;
    stream.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    std::int64_t length = 0;
    EXPECT_NO_THROW(length = FilesHelper::fileLenght(stream));
    EXPECT_EQ(length, -1);
}
