// Recordings in .zip archives, from standard input and from lists of paths. Archives come from elsewhere, so they may
// be damaged, huge once unpacked, encrypted, or name files that lie outside.

#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>
#include <zip.h>

namespace {

using namespace orvtest;
namespace fs = std::filesystem;

const char* const kCfg =
    "S,R,1999\r\n2,1A,1D\r\n1,U,,,V,1,0,0,-99999,99999,1,1,S\r\n1,Trip,,,0\r\n50\r\n1\r\n1000,3\r\n"
    "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.001000\r\nASCII\r\n1\r\n";
const char* const kDat = "1,0,7,0\r\n2,1000,8,1\r\n3,2000,9,1\r\n";
const char* const kCff =
    "--- file type: CFG ---\r\nIn one,R,2013\r\n2,1A,1D\r\n1,U,,,V,1,0,0,-99999,99999,1,1,S\r\n"
    "1,Trip,,,0\r\n50\r\n1\r\n1000,1\r\n01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.000000\r\n"
    "ASCII\r\n1\r\n0,0\r\n0,0\r\n--- file type: DAT ASCII ---\r\n1,0,5,0\r\n";

using Members = std::vector<std::pair<std::string, std::string>>;

void writeArchive(const std::string& path, const Members& members, bool isEncrypted = false) {
    int error = 0;
    zip_t* const zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    for (const auto& [name, bytes] : members) {
        zip_source_t* const source = zip_source_buffer(zip, bytes.data(), bytes.size(), 0);
        const zip_int64_t index = zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8);
        if (isEncrypted) {
            zip_file_set_encryption(zip, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256, "secret");
        }
    }
    if (zip_close(zip) != 0) {
        throw std::runtime_error("cannot write " + path);
    }
}

/// Little-endian, as archives have numbers.
void put(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        bytes[at + i] = static_cast<char>(value >> 8 * i);
    }
}

/// As a shell has it, with standard input.
Outcome shellIn(const TempDir& folder, const std::string& line) {
    return runProgramIn(folder.path(), "/bin/sh", {"-c", "PATH=" ORVCOMTRADE_FOLDER ":$PATH; " + line});
}

const Members kTwo = {
    {"b/Rec.CFG", kCfg}, {"b/rec.DAT", kDat}, {"b/rec.hdr", "Seen.\r\n"}, {"a.cff", kCff}, {"readme.txt", "x"}};

TEST(Archive, IsReadAsAFolderOfItsFilesIs) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), kTwo);
    expectOutput(orvcomtradeIn(folder.path(), {"check", "all.zip"}), "all.zip/a.cff: OK\nall.zip/b/Rec.CFG: OK\n");
    const std::string stats = orvcomtradeIn(folder.path(), {"info", "all.zip"}).out;
    EXPECT_NE(stats.find("Station         In one"), std::string::npos) << stats;
    EXPECT_NE(stats.find("Header file (.hdr)\n  Seen.\n"), std::string::npos) << stats;
}

TEST(Archive, APathMayGoOnWithinIt) {
    const TempDir folder;
    writeArchive(folder.file("all.ZIP"), kTwo);
    for (const char* const path : {"all.ZIP/b/Rec.CFG", "all.ZIP/b/rec.DAT", "all.ZIP//b"}) {
        const Outcome outcome = orvcomtradeIn(folder.path(), {"stats", "--json", path});
        EXPECT_NE(outcome.out.find("\"mean\":8.0"), std::string::npos) << path << outcome.out << outcome.err;
        EXPECT_EQ(outcome.status, 0) << path;
    }
    expectComplaint(orvcomtradeIn(folder.path(), {"info", "all.ZIP/c"}), 1,
                    "orvcomtrade: all.ZIP/c: no recording of this name in the archive\n");
}

TEST(Archive, InAFolderIsReadIfAskedFor) {
    const TempDir folder;
    fs::create_directory(folder.file("in"));
    writeArchive(folder.file("in/all.zip"), kTwo);
    folder.write("in/plain.cfg", kCfg);
    folder.write("in/plain.dat", kDat);
    expectOutput(orvcomtradeIn(folder.path(), {"check", "in"}), "in/plain.cfg: OK\n");
    expectOutput(orvcomtradeIn(folder.path(), {"check", "in", "--archives", "--jobs", "3"}),
                 "in/all.zip/a.cff: OK\nin/all.zip/b/Rec.CFG: OK\nin/plain.cfg: OK\n");
}

TEST(Archive, WhatIsWrittenOfItStaysInTheFolderOfTheOutput) {
    const TempDir folder;
    fs::create_directory(folder.file("in"));
    writeArchive(folder.file("in/all.zip"), {{"../../up.cfg", kCfg},
                                             {"../../up.dat", kDat},
                                             {"/etc/root.cfg", kCfg},
                                             {"/etc/root.dat", kDat},
                                             {"..\\..\\back.cff", kCff}});
    const Outcome outcome = orvcomtradeIn(folder.path(), {"normalize", "in/all.zip", "--output", "in/out/put"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
        if (entry.is_regular_file() && entry.path().extension() == ".cfg") {
            files.push_back(fs::relative(entry.path(), folder.path()).string());
        }
    }
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<std::string>{"in/out/put/back.cfg", "in/out/put/etc/root.cfg", "in/out/put/up.cfg"}));
}

TEST(Archive, NamesInItAreShownAsPrintableText) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"aX[31mb.cff", kCff}});
    std::string bytes = bytesOf(folder.file("all.zip"));
    for (std::size_t at = bytes.find("aX["); at != std::string::npos; at = bytes.find("aX[", at)) {
        bytes[at + 1] = '\x1B';
    }
    folder.write("all.zip", bytes);
    expectOutput(orvcomtradeIn(folder.path(), {"check", "all.zip"}), "all.zip/a\\x1B[31mb.cff: OK\n");
}

TEST(Archive, AFileThatBecomesTooLargeIsAnErrorThatStopsNoOther) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cfg", kCfg}, {"a.dat", std::string(5000000, ' ')}, {"b.cff", kCff}});
    expectOutcome(orvcomtradeIn(folder.path(), {"check", "all.zip", "--limit", "member-bytes=4000000"}), 1,
                  "all.zip/b.cff: OK\n",
                  "orvcomtrade: all.zip/a.dat: 5000000 bytes unpacked, more than the limit member-bytes allows "
                  "(4000000)\n");
}

TEST(Archive, AFileThatUnpacksToAnotherSizeThanDeclaredIsAnError) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff + std::string(5000, ' ')}});
    std::string bytes = bytesOf(folder.file("all.zip"));
    put(bytes, bytes.find("PK\1\2") + 24, 100, 4); // the size of the first file in the list of all
    folder.write("all.zip", bytes);
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "all.zip"}), 1,
                    "orvcomtrade: all.zip/a.cff: unpacks to more than the 100 bytes declared\n");
}

TEST(Archive, ADamagedFileIsAnErrorThatStopsNoOther) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff}, {"b.cff", kCff}});
    std::string bytes = bytesOf(folder.file("all.zip"));
    bytes[60] = static_cast<char>(bytes[60] ^ 0x55);
    folder.write("all.zip", bytes);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "all.zip"});
    EXPECT_EQ(outcome.out, "all.zip/b.cff: OK\n");
    EXPECT_EQ(outcome.err.substr(0, 45), "orvcomtrade: all.zip/a.cff: cannot be unpacke") << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

/// The bytes, with each occurrence of a text replaced by one of the same length.
std::string replaced(std::string bytes, const std::string& from, const std::string& to) {
    for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at)) {
        bytes.replace(at, from.size(), to);
    }
    return bytes;
}

TEST(Archive, TwoFilesOfOneNameAreAnErrorThatStopsNoOther) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff}, {"b.cff", kCff}, {"c.cff", kCff}});
    folder.write("all.zip", replaced(bytesOf(folder.file("all.zip")), "c.cff", "a.cff"));
    expectOutcome(orvcomtradeIn(folder.path(), {"check", "all.zip"}), 1, "all.zip/b.cff: OK\n",
                  "orvcomtrade: all.zip/a.cff: the archive has more than one file of this name\n");
}

TEST(Archive, OfNothingButZerosIsUnpackedNoFurtherThanItsLimit) {
    const TempDir folder;
    writeArchive(folder.file("inner.zip"), {{"a.cff", kCff}});
    writeArchive(
        folder.file("all.zip"),
        {{"a.cfg", std::string(40000000, '\0')}, {"b.cff", kCff}, {"inner.zip", bytesOf(folder.file("inner.zip"))}});
    EXPECT_LT(fs::file_size(folder.file("all.zip")), 50000U);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "all.zip", "--limit", "member-bytes=1000000"});
    EXPECT_EQ(outcome.out, "all.zip/b.cff: OK\n"); // and no other of the archive in it
    EXPECT_EQ(outcome.err,
              "orvcomtrade: all.zip/a.cfg: 40000000 bytes unpacked, more than the limit member-bytes allows "
              "(1000000)\n");
}

TEST(Archive, AnyByteOfItMayBeAnother) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff}});
    const std::string bytes = bytesOf(folder.file("all.zip"));
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::string other = bytes;
        other[i] = static_cast<char>(other[i] ^ (i % 2 == 0 ? 0xFF : 0x01));
        folder.write("other.zip", other);
        const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "other.zip"});
        EXPECT_TRUE(outcome.status == 0 ? outcome.err.empty() : outcome.err.substr(0, 20) == "orvcomtrade: other.z")
            << i << ": " << outcome.status << ' ' << outcome.err;
    }
}

TEST(Archive, AnyCutOfItEndsWithASentence) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff}});
    const std::string bytes = bytesOf(folder.file("all.zip"));
    for (std::size_t length = 0; length < bytes.size(); length += 7) {
        folder.write("cut.zip", bytes.substr(0, length));
        const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "cut.zip"});
        EXPECT_EQ(outcome.status, 1) << length;
        EXPECT_EQ(outcome.err.substr(0, 20), "orvcomtrade: cut.zip") << outcome.err;
    }
}

TEST(Archive, AnEncryptedFileIsAnError) {
    const TempDir folder;
    writeArchive(folder.file("all.zip"), {{"a.cff", kCff}}, true);
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "all.zip"}), 1,
                    "orvcomtrade: all.zip/a.cff: it is encrypted: unpack the archive first\n");
}

TEST(Archive, ThatDeclaresFilesWithoutEndIsAnErrorBeforeThereIsRoomForThem) {
    const TempDir folder;
    std::string end64("PK\6\6", 4);
    end64.resize(56);
    put(end64, 4, 44, 8);
    put(end64, 24, 5000000, 8);
    put(end64, 32, 5000000, 8);
    std::string locator("PK\6\7", 4);
    locator.resize(20);
    std::string end("PK\5\6", 4);
    end.resize(22);
    folder.write("all.zip", end64 + locator + end);
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "all.zip"}), 1,
                    "orvcomtrade: all.zip: it declares 5000000 files, more than the limit members allows (1000000)\n");
}

TEST(Archive, ThatIsNoneOrHoldsNoneIsAnError) {
    const TempDir folder;
    folder.write("text.zip", "hello");
    writeArchive(folder.file("other.zip"), {{"readme.txt", "x"}});
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "text.zip"}), 1,
                    "orvcomtrade: text.zip: Not a zip archive\n");
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "other.zip"}), 1,
                    "orvcomtrade: other.zip: no recording in this archive\n");
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "absent.zip"}), 1,
                    "orvcomtrade: absent.zip: No such file or directory\n");
}

TEST(StandardInput, IsARecordingInOneFile) {
    const TempDir folder;
    folder.write("a.cff", kCff);
    expectOutput(shellIn(folder, "orvcomtrade check - < a.cff"), "standard input: OK\n");
    expectComplaint(shellIn(folder, "orvcomtrade check - --limit member-bytes=100 < a.cff"), 1,
                    "orvcomtrade: standard input: more than 100 bytes; --limit member-bytes=NUMBER allows more\n");
    EXPECT_EQ(shellIn(folder, "orvcomtrade check - - < a.cff").status, 2);
}

TEST(StandardInput, IsCalledSoInSentencesAndADashInJson) {
    const TempDir folder;
    folder.write("a.cff", kCff);
    EXPECT_EQ(shellIn(folder, "orvcomtrade list - --json < a.cff | cut -d , -f 1").out, "{\"path\":\"-\"\n");
    expectComplaint(shellIn(folder, "orvcomtrade info - < /dev/null"), 1,
                    "orvcomtrade: standard input: a configuration expected, found an empty file: request the file "
                    "again\n");
    expectOutput(
        shellIn(folder, "sed -n '/CFG/,/DAT/p' a.cff | sed '1d;$d' | orvcomtrade check - | grep no-data"),
        "standard input: warning: a .cff expected, found a .cfg alone: name the .cfg, so that its .dat is found "
        "[no-data]\n");
}

TEST(CliList, HasNoHeadingAboveAMereError) {
    const TempDir folder;
    folder.write("a.cff", kCff);
    folder.write("text.zip", "hello");
    const TempDir empty;
    for (const std::string& path : {std::string("absent"), std::string("text.zip"), empty.path()}) {
        const auto outcome = orvcomtradeIn(folder.path(), {"list", path});
        EXPECT_EQ(outcome.status, 1) << path;
        EXPECT_EQ(outcome.out, "") << path;
    }
    const std::string some = shellIn(folder, "orvcomtrade list absent a.cff --csv").out;
    EXPECT_EQ(some.substr(0, some.find(',')), "path");
    EXPECT_EQ(shellIn(folder, "orvcomtrade list a.cff --station none --csv").out.substr(0, 4), "path");
}

TEST(FilesFrom, NamesPathsInLinesOrWithNulls) {
    const TempDir folder;
    folder.write("a b.cff", kCff);
    folder.write("c.cff", kCff);
    folder.write("list", "a b.cff\r\n\nc.cff");
    const std::string both = "a b.cff: OK\nc.cff: OK\n";
    expectOutput(orvcomtradeIn(folder.path(), {"check", "--files-from", "list"}), both);
    expectOutput(shellIn(folder, "orvcomtrade check --files-from - < list"), both);
    expectOutput(shellIn(folder, "printf 'a b.cff\\0c.cff\\0' | orvcomtrade check -0 --files-from -"), both);
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "--files-from", "absent"}), 2,
                    "orvcomtrade: absent: No such file or directory\n");
}

// --- archives that an index looks into ------------------------------------------------------------------------------

Outcome index(const TempDir& folder) {
    return orvcomtradeIn(folder.path(), {"index", "arc", "--archives", "--output", "index"});
}

const char* const kIndexFile = "index/shard-0001-of-0001.jsonl";

/// Two recordings in an archive, and two beside it, one of them in a folder of a name like the archive's.
void writeFolderWithArchive(const TempDir& folder) {
    fs::create_directories(folder.file("arc/all.zip.d"));
    writeArchive(folder.file("arc/all.zip"), kTwo);
    folder.write("arc/z.cff", kCff);
    folder.write("arc/all.zip.d/a.cff", kCff);
}

TEST(IndexOfArchives, HasWhatAListOfThemHas) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    fs::rename(folder.file("arc/all.zip.d"), folder.file("arc/b")); // whatever the order of a dot and a slash
    expectOutput(index(folder), std::string(kIndexFile) + ": 4 recordings, 0 of them unchanged, 0 cannot be read\n");
    expectOutput(orvcomtradeIn(folder.path(), {"catalogue", "index", "-o", "fleet.sqlite"}),
                 "fleet.sqlite: 4 recordings, 0 of them cannot be read; 1 events\n");
    const Outcome listed = orvcomtradeIn(folder.path(), {"list", "--csv", "--archives", "arc"});
    EXPECT_NE(listed.out.find("arc/all.zip/b/Rec.CFG,S,R,"), std::string::npos) << listed.out;
    expectOutput(orvcomtradeIn(folder.path(), {"list", "--csv", "fleet.sqlite", "--root", "arc"}), listed.out);
    expectOutcome(orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "--root", "arc", "-o", "pages", "-c", "Trip"}),
                  0,
                  "arc/all.zip/a.cff: written to pages/all/a.html\n"
                  "arc/all.zip/b/Rec.CFG: written to pages/all/b/Rec.html\n"
                  "arc/b/a.cff: written to pages/b/a.html\n"
                  "arc/z.cff: written to pages/z.html\n",
                  "");
}

TEST(IndexOfArchives, FilesOfARecordingAreThoseInTheArchive) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    index(folder);
    const std::string lines = bytesOf(folder.file(kIndexFile));
    const std::size_t begin = lines.find(R"({"path":"all.zip/b/Rec.CFG",)");
    ASSERT_NE(begin, std::string::npos) << lines;
    const std::string line = lines.substr(begin, lines.find('\n', begin) - begin);
    for (const char* const text :
         {R"({"name":"Rec.CFG","bytes":146,)", R"({"name":"rec.DAT","bytes":33,)", R"({"name":"rec.hdr","bytes":7,)",
          R"("digest":"3677c0da121092b9c48ec0907e12566b")"}) {
        EXPECT_NE(line.find(text), std::string::npos) << text << " in " << line;
    }
}

TEST(IndexOfArchives, OneThatHasNotChangedIsNotUnpackedAgain) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    index(folder);
    const std::string before = bytesOf(folder.file(kIndexFile));
    EXPECT_EQ(index(folder).out, std::string(kIndexFile) + ": 4 recordings, 4 of them unchanged, 0 cannot be read\n");
    EXPECT_EQ(bytesOf(folder.file(kIndexFile)), before);
    writeArchive(folder.file("arc/all.zip"), {{"b/Rec.CFG", kCfg}, {"b/rec.DAT", kDat}, {"new.cff", kCff}});
    EXPECT_EQ(index(folder).out, std::string(kIndexFile) + ": 4 recordings, 2 of them unchanged, 0 cannot be read\n");
    const std::string updated = bytesOf(folder.file(kIndexFile));
    fs::remove(folder.file(kIndexFile));
    index(folder);
    EXPECT_EQ(bytesOf(folder.file(kIndexFile)), updated);
}

TEST(IndexOfArchives, OneThatCannotBeOpenedIsALine) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    folder.write("arc/bad.zip", "no archive");
    expectOutput(index(folder), std::string(kIndexFile) + ": 5 recordings, 0 of them unchanged, 1 cannot be read\n");
    orvcomtradeIn(folder.path(), {"catalogue", "index", "-o", "fleet.sqlite"});
    const Outcome listed = orvcomtradeIn(folder.path(), {"list", "--json", "fleet.sqlite", "--root", "arc"});
    EXPECT_EQ(listed.status, 1);
    EXPECT_NE(listed.out.find(R"({"path":"arc/bad.zip","ok":false,"error":"arc/bad.zip: Not a zip archive"})"),
              std::string::npos)
        << listed.out;
}

TEST(IndexOfArchives, TheyAreLeftAloneUnlessAskedFor) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    expectOutput(orvcomtradeIn(folder.path(), {"index", "arc", "--output", "index"}),
                 std::string(kIndexFile) + ": 2 recordings, 0 of them unchanged, 0 cannot be read\n");
}

TEST(IndexOfArchives, RecordingThatHasLeftTheArchiveIsNamed) {
    const TempDir folder;
    writeFolderWithArchive(folder);
    index(folder);
    orvcomtradeIn(folder.path(), {"catalogue", "index", "-o", "fleet.sqlite"});
    writeArchive(folder.file("arc/all.zip"), {{"a.cff", kCff}});
    const Outcome viewed = orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "--root", "arc", "-o", "pages"});
    EXPECT_EQ(viewed.status, 1);
    EXPECT_EQ(viewed.err, "orvcomtrade: arc/all.zip/b/Rec.CFG: no recording of this name in the archive\n");
    EXPECT_EQ(viewed.summary, "4 recordings: 3 written, 0 skipped, 1 failed\n");
}

} // namespace
