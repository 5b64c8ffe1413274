#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <set>
#include <sqlite3.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

// What `index` writes down of an archive, and the catalogue that is made of it.

namespace {

namespace fs = std::filesystem;
using namespace orvtest;
using nlohmann::json;

/// Lets no file grow beyond a size while it lives, as a disk that is full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &_before);
        rlimit small = _before;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &_before); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit _before{};
};

const char* const kShard = "index/shard-0001-of-0001.jsonl";

std::string cfg(const std::string& station) {
    return station + ",R-7,1999\r\n2,1A,1D\r\n1,U,A,Line,V,1,0,0,-99999,99999,1,1,S\r\n1,Trip,,,0\r\n50\r\n1\r\n"
                     "1000,3\r\n01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.001000\r\nASCII\r\n1\r\n";
}

/// A recording as the standard asks for it, of one channel of either kind, which changes once.
void writeRecording(const TempDir& folder, const std::string& name, const std::string& station = "S") {
    fs::create_directories(fs::path(folder.file(name)).parent_path());
    folder.write(name + ".cfg", cfg(station));
    folder.write(name + ".dat", "1,0,7,0\r\n2,1000,8,1\r\n3,2000,9,1\r\n");
}

Outcome index(const TempDir& folder, const std::vector<std::string>& more = {}) {
    std::vector<std::string> words = {"index", "arc", "--output", "index"};
    words.insert(words.end(), more.begin(), more.end());
    return orvcomtradeIn(folder.path(), words);
}

Outcome catalogue(const TempDir& folder) {
    return orvcomtradeIn(folder.path(), {"catalogue", "index", "--output", "fleet.sqlite"});
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The lines of the recordings.
std::vector<json> recordingsIn(const std::string& file) {
    std::vector<json> recordings;
    for (const std::string& line : linesOf(bytesOf(file))) {
        json value = json::parse(line);
        if (value.contains("path")) {
            recordings.push_back(std::move(value));
        }
    }
    return recordings;
}

std::vector<std::string> pathsIn(const std::string& file) {
    std::vector<std::string> paths;
    for (const json& recording : recordingsIn(file)) {
        paths.push_back(recording.at("path"));
    }
    return paths;
}

/// The rows of a query, values with bars between them.
std::string query(const std::string& database, const std::string& sql) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open_v2(database.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> owner(opened, sqlite3_close);
    std::string rows;
    const auto onRow = [](void* result, int columns, char** values, char** /*names*/) {
        auto& text = *static_cast<std::string*>(result);
        for (int i = 0; i < columns; ++i) {
            text += std::string(i == 0 ? "" : "|") + (values[i] == nullptr ? "NULL" : values[i]);
        }
        text += "\n";
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), onRow, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
    return rows;
}

void change(const std::string& database, const std::string& sql) {
    sqlite3* opened = nullptr;
    EXPECT_EQ(sqlite3_open(database.c_str(), &opened), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(opened);
}

/// A catalogue of three recordings, of which one can't be read.
void writeCatalogue(const TempDir& folder) {
    writeRecording(folder, "arc/north", "North");
    writeRecording(folder, "arc/deep/south", "South");
    folder.write("arc/broken.cfg", "no recording");
    index(folder);
    ASSERT_EQ(catalogue(folder).status, 0);
}

// --- index ----------------------------------------------------------------------------------------------------------

TEST(Index, LineHasWhatIsKnownOfARecording) {
    const TempDir folder;
    writeRecording(folder, "arc/a/rec", "North");
    expectOutput(index(folder), std::string(kShard) + ": 1 recordings, 0 of them unchanged, 0 cannot be read\n");
    const json line = recordingsIn(folder.file(kShard)).at(0);
    EXPECT_EQ(line.at("path"), "a/rec.cfg");
    EXPECT_EQ(line.at("files").at(0).at("name"), "rec.cfg");
    EXPECT_EQ(line.at("files").at(0).at("bytes"), cfg("North").size());
    EXPECT_EQ(line.at("files").at(1).at("name"), "rec.dat");
    EXPECT_EQ(line.at("ok"), true);
    EXPECT_EQ(line.at("verdict"), "ok");
    EXPECT_EQ(line.at("station"), "North");
    EXPECT_EQ(line.at("start"), "2020-02-01T10:00:00.000000000");
    EXPECT_EQ(line.at("trigger"), "2020-02-01T10:00:00.001000000");
    EXPECT_EQ(line.at("duration"), 0.002);
    EXPECT_EQ(line.at("events"), json::parse(R"([{"time":0.001,"clock":"2020-02-01T10:00:00.001000000",
                                                  "number":1,"to":1}])"));
    EXPECT_EQ(line.at("findings"), json::array());
    EXPECT_EQ(line.at("analog").at(0).at("id"), "U");
    EXPECT_EQ(line.at("status").at(0).at("id"), "Trip");
}

TEST(Index, RecordingsStandInTheOrderOfTheirFolders) {
    const TempDir folder;
    for (const char* const name : {"arc/b", "arc/a/z", "arc/a/deep/c", "arc/a.b", "arc/c/x"}) {
        writeRecording(folder, name);
    }
    index(folder);
    EXPECT_EQ(pathsIn(folder.file(kShard)),
              (std::vector<std::string>{"a/deep/c.cfg", "a/z.cfg", "a.b.cfg", "b.cfg", "c/x.cfg"}));
}

TEST(Index, SameArchiveGivesTheSameBytesWhereverTheJobsRun) {
    const TempDir folder;
    for (int i = 0; i < 40; ++i) {
        writeRecording(folder, "arc/" + std::to_string(i % 7) + "/" + std::to_string(i));
    }
    index(folder, {"--jobs", "1"});
    const std::string once = bytesOf(folder.file(kShard));
    fs::remove(folder.file(kShard));
    index(folder, {"--jobs", "8"});
    EXPECT_EQ(bytesOf(folder.file(kShard)), once);
}

TEST(Index, EachRecordingIsInOneShard) {
    const TempDir folder;
    for (int i = 0; i < 60; ++i) {
        writeRecording(folder, "arc/" + std::to_string(i));
    }
    std::multiset<std::string> paths;
    for (const char* const number : {"1", "2", "3"}) {
        ASSERT_EQ(index(folder, {"--shard", std::string(number) + "/3"}).status, 0);
        const std::string file = folder.file(std::string("index/shard-000") + number + "-of-0003.jsonl");
        const std::vector<std::string> part = pathsIn(file);
        EXPECT_GE(part.size(), 10U);
        paths.insert(part.begin(), part.end());
    }
    EXPECT_EQ(paths.size(), 60U);
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), 60U);
    ASSERT_EQ(catalogue(folder).status, 0);
    EXPECT_EQ(query(folder.file("fleet.sqlite"), "SELECT COUNT(*), COUNT(DISTINCT path) FROM recording"), "60|60\n");
}

TEST(Index, ShardOfAPathIsItsHashForever) {
    const TempDir folder;
    for (const char* const name : {"a", "b", "c", "d"}) {
        writeRecording(folder, std::string("arc/") + name);
    }
    index(folder, {"--shard", "1/2"});
    EXPECT_EQ(pathsIn(folder.file("index/shard-0001-of-0002.jsonl")),
              (std::vector<std::string>{"a.cfg", "c.cfg", "d.cfg"}));
}

TEST(Index, WhatHasNotChangedStaysUntouched) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "arc/b");
    index(folder);
    struct stat before = {};
    struct stat after = {};
    ASSERT_EQ(stat(folder.file(kShard).c_str(), &before), 0);
    EXPECT_EQ(index(folder).out, std::string(kShard) + ": 2 recordings, 2 of them unchanged, 0 cannot be read\n");
    ASSERT_EQ(stat(folder.file(kShard).c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

/// What became of a change, compared with an index made from nothing.
void expectUpToDate(const TempDir& folder, const std::string& counts) {
    EXPECT_EQ(index(folder).out, std::string(kShard) + ": " + counts + "\n");
    const std::string updated = bytesOf(folder.file(kShard));
    fs::remove(folder.file(kShard));
    index(folder);
    EXPECT_EQ(updated, bytesOf(folder.file(kShard)));
}

TEST(Index, EveryKindOfChangeIsSeen) {
    const TempDir folder;
    for (const char* const name : {"arc/a", "arc/c", "arc/e"}) {
        writeRecording(folder, name);
    }
    index(folder);
    writeRecording(folder, "arc/b");
    expectUpToDate(folder, "4 recordings, 3 of them unchanged, 0 cannot be read"); // new in the middle
    writeRecording(folder, "arc/f");
    expectUpToDate(folder, "5 recordings, 4 of them unchanged, 0 cannot be read"); // new at the end
    folder.write("arc/c.dat", "1,0,7,0\r\n2,1000,8,1\r\n3,2000,9,0\r\n");
    expectUpToDate(folder, "5 recordings, 4 of them unchanged, 0 cannot be read"); // of the same size
    folder.write("arc/c.HDR", "text");
    expectUpToDate(folder, "5 recordings, 4 of them unchanged, 0 cannot be read"); // a file more
    fs::remove(folder.file("arc/c.HDR"));
    expectUpToDate(folder, "5 recordings, 4 of them unchanged, 0 cannot be read"); // one less
    fs::remove(folder.file("arc/a.cfg"));
    expectUpToDate(folder, "4 recordings, 4 of them unchanged, 0 cannot be read"); // gone at the beginning
    fs::remove(folder.file("arc/f.cfg"));
    expectUpToDate(folder, "3 recordings, 3 of them unchanged, 0 cannot be read"); // gone at the end
}

TEST(Index, RecordingThatCannotBeReadIsALineAndTriedAgain) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    folder.write("arc/b.cfg", "");
    expectOutput(index(folder), std::string(kShard) + ": 2 recordings, 0 of them unchanged, 1 cannot be read\n");
    EXPECT_EQ(recordingsIn(folder.file(kShard)).at(1).at("ok"), false);
    EXPECT_NE(recordingsIn(folder.file(kShard)).at(1).at("error").get<std::string>().find("b.cfg"), std::string::npos);
    expectOutput(index(folder), std::string(kShard) + ": 2 recordings, 1 of them unchanged, 1 cannot be read\n");
}

TEST(Index, FilesThatAreNoRecordingsAreNamedAndLeftOut) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    folder.write("arc/setup.cfg", "[metadata]\nname = tool\n");
    const Outcome outcome = index(folder);
    EXPECT_EQ(outcome.err.find("orvcomtrade: setup.cfg:2: skipped, not a recording: found "), 0U) << outcome.err;
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(pathsIn(folder.file(kShard)), (std::vector<std::string>{"a.cfg"}));
}

TEST(Index, NamesOfAnyBytesAreFoundAgain) {
    const TempDir folder;
    for (const char* const name : {"arc/quote\"back\\slash", "arc/\xD0\x9F\xD0\xA1", "arc/\xCF\xD1", "arc/tab\there",
                                   "arc/%41", "arc/e\xE2\x80\xAEgpj"}) {
        writeRecording(folder, name);
    }
    index(folder);
    EXPECT_EQ(recordingsIn(folder.file(kShard)).back().at("path"), "\xD0\x9F\xD0\xA1.cfg");
    expectUpToDate(folder, "6 recordings, 6 of them unchanged, 0 cannot be read");
    ASSERT_EQ(catalogue(folder).status, 0);
    EXPECT_EQ(query(folder.file("fleet.sqlite"), "SELECT path_bytes FROM recording WHERE path_bytes IS NOT NULL"),
              "%CF%D1.cfg\n");
}

TEST(Index, ArchiveWithoutRecordingsKeepsTheOldIndex) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder);
    const std::string before = bytesOf(folder.file(kShard));
    fs::remove(folder.file("arc/a.cfg"));
    expectComplaint(index(folder), 1,
                    "orvcomtrade: " + fs::canonical(folder.file("arc")).string() + ": no recording in this folder\n");
    EXPECT_EQ(bytesOf(folder.file(kShard)), before);
}

TEST(Index, DamagedShardIsMadeAgain) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "arc/b");
    index(folder);
    const std::string whole = bytesOf(folder.file(kShard));
    const struct {
        const char* why;
        std::string content;
    } cases[] = {
        {"empty", ""},
        {"without its end", whole.substr(0, whole.rfind("{\"end\""))},
        {"cut in a line", whole.substr(0, whole.size() / 2)},
        {"another byte", std::string(whole).replace(whole.find("Trip"), 1, "t")},
        {"of another version", std::string(whole).replace(whole.find(":1,"), 3, ":7,")},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        folder.write(kShard, row.content);
        const Outcome refused = catalogue(folder);
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.err.find(std::string("orvcomtrade: ") + kShard + ": damaged: "), 0U) << refused.err;
        EXPECT_NE(refused.err.find("; make it again with orvcomtrade index\n"), std::string::npos);
        EXPECT_FALSE(fs::exists(folder.file("fleet.sqlite")));
        EXPECT_NE(index(folder).err.find("; made again\n"), std::string::npos);
        EXPECT_EQ(bytesOf(folder.file(kShard)), whole);
    }
}

TEST(Index, FolderThatMayNotBeSearchedIsALineAndAFailure) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "arc/closed/b");
    fs::permissions(folder.file("arc/closed"), fs::perms::none);
    const Outcome outcome = orvcomtradeBoundIn(folder.path(), {"index", "arc", "--output", "index"});
    fs::permissions(folder.file("arc/closed"), fs::perms::owner_all);
    expectOutcome(outcome, 1, std::string(kShard) + ": 2 recordings, 0 of them unchanged, 1 cannot be read\n",
                  "orvcomtrade: closed: cannot be searched: Permission denied\n");
}

TEST(Index, LinksOutOfTheArchiveAreFollowedOnRequest) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "else/b");
    fs::create_directory_symlink(folder.file("else"), folder.file("arc/link"));
    fs::create_directory_symlink(folder.file("arc"), folder.file("arc/round"));
    EXPECT_EQ(index(folder).err,
              "orvcomtrade: link: not followed: it leads out of the archive; --follow-links follows it\n");
    EXPECT_EQ(pathsIn(folder.file(kShard)), (std::vector<std::string>{"a.cfg"}));
    EXPECT_EQ(index(folder, {"--follow-links"}).err, "");
    EXPECT_EQ(pathsIn(folder.file(kShard)), (std::vector<std::string>{"a.cfg", "link/b.cfg"}));
}

TEST(Index, FilesThatLeadOutOfTheArchiveAreReadOnRequest) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "else/b");
    fs::copy_file(folder.file("else/b.cfg"), folder.file("arc/b.cfg"));
    fs::create_symlink(folder.file("else/b.dat"), folder.file("arc/b.dat"));
    index(folder);
    EXPECT_NE(bytesOf(folder.file(kShard)).find("\"error\":\"b.cfg: not read: b.dat is a link, and it leads out"),
              std::string::npos);
    index(folder, {"--follow-links"});
    EXPECT_EQ(bytesOf(folder.file(kShard)).find("\"ok\":false"), std::string::npos);
}

TEST(Index, WrongShardsAreRefused) {
    const TempDir folder;
    for (const char* const shard : {"0/4", "5/4", "1", "1/0", "a/b", "1/4x", "-1/4", "1/99999999"}) {
        const Outcome outcome = index(folder, {"--shard", shard});
        EXPECT_EQ(outcome.status, 2) << shard;
        EXPECT_NE(outcome.err.find("a shard is K/N with K from 1 to N"), std::string::npos) << outcome.err;
    }
}

TEST(Index, FullDiskLeavesTheOldFile) {
    const TempDir folder;
    for (int i = 0; i < 30; ++i) {
        writeRecording(folder, "arc/" + std::to_string(i));
    }
    index(folder);
    const std::string before = bytesOf(folder.file(kShard));
    writeRecording(folder, "arc/0", "Other");
    const FileSizeLimit limit(8192);
    const Outcome outcome = index(folder);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot be written: File too large"), std::string::npos) << outcome.err;
    EXPECT_EQ(bytesOf(folder.file(kShard)), before);
}

// --- catalogue ------------------------------------------------------------------------------------------------------

TEST(Catalogue, TablesHoldWhatTheIndexSays) {
    const TempDir folder;
    writeRecording(folder, "arc/a", "North");
    writeRecording(folder, "arc/b", "South");
    folder.write("arc/c.cfg", "");
    index(folder);
    expectOutput(catalogue(folder), "fleet.sqlite: 3 recordings, 1 of them cannot be read; 2 events\n");
    const std::string file = folder.file("fleet.sqlite");
    EXPECT_EQ(query(file, "PRAGMA user_version"), "1\n");
    EXPECT_EQ(query(file, "PRAGMA integrity_check"), "ok\n");
    EXPECT_EQ(query(file, "PRAGMA foreign_key_check"), "");
    EXPECT_EQ(query(file, "SELECT path, readable, station, start, start_ns, trigger_ns - start_ns, rate, samples, "
                          "duration, events FROM recording ORDER BY path LIMIT 2"),
              "a.cfg|1|North|2020-02-01T10:00:00.000000000|1580551200000000000|1000000|1000.0|3|0.002|1\n"
              "b.cfg|1|South|2020-02-01T10:00:00.000000000|1580551200000000000|1000000|1000.0|3|0.002|1\n");
    EXPECT_EQ(query(file, "SELECT root FROM archive"), fs::canonical(folder.file("arc")).string() + "\n");
    EXPECT_EQ(query(file, "SELECT kind, number, name, unit FROM channel"),
              "analog|1|U,A,Line,V|V\nstatus|1|Trip|NULL\n"); // once for both
    EXPECT_EQ(query(file, "SELECT station, name, time, state FROM event_of_channel"),
              "North|Trip|0.001|1\nSouth|Trip|0.001|1\n");
    EXPECT_EQ(query(file, "SELECT path, code, severity FROM finding JOIN recording USING (recording)"),
              "c.cfg|empty-cfg|error\n");
}

TEST(Catalogue, ShardsThatMeanHarmAreRefused) {
    const std::string deep(1000000, '[');
    const std::string deepEnd(deep.size(), ']');
    const std::string header = R"({"orvcomtradeIndex":1,"root":)";
    for (const std::string& content :
         {header + deep + deepEnd + ",\"shard\":1,\"of\":1}\n",
          header + "\"arc\",\"shard\":1,\"of\":1}\n{\"path\":" + deep + deepEnd + "}\n",
          header + "\"arc\",\"shard\":1,\"of\":1}\n{\"path\":\"a\",\"files\":{},\"ok\":3}\n",
          header + "\"arc\",\"shard\":1,\"of\":1}\n{\"path\":\"\\uD800\",\"files\":[],\"ok\":true}\n",
          header + "7,\"shard\":1,\"of\":1}\n", header + "\"arc\",\"shard\":1,\"of\":1}\n\xFF\n"}) {
        const TempDir folder;
        fs::create_directory(folder.file("index"));
        folder.write(kShard, content);
        const Outcome outcome = catalogue(folder);
        EXPECT_EQ(outcome.status, 1) << content.substr(0, 90);
        EXPECT_EQ(outcome.err.find(std::string("orvcomtrade: ") + kShard + ": damaged: "), 0U) << outcome.err;
        EXPECT_FALSE(fs::exists(folder.file("fleet.sqlite")));
    }
}

TEST(Catalogue, WaitsForNoPipe) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder);
    ASSERT_EQ(mkfifo(folder.file("fleet.sqlite").c_str(), 0600), 0);
    expectComplaint(catalogue(folder), 1, "orvcomtrade: fleet.sqlite: no regular file; not replaced\n");
    fs::remove(folder.file("fleet.sqlite"));
    fs::remove(folder.file(kShard));
    ASSERT_EQ(mkfifo(folder.file(kShard).c_str(), 0600), 0);
    expectComplaint(catalogue(folder), 1, std::string("orvcomtrade: ") + kShard + ": no regular file\n");
    const Outcome refused = index(folder);
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find(std::string(kShard) + ": no regular file\n"), std::string::npos) << refused.err;
}

TEST(Catalogue, MissingShardLeavesTheOldCatalogue) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder, {"--shard", "1/2"});
    index(folder, {"--shard", "2/2"});
    ASSERT_EQ(catalogue(folder).status, 0);
    const std::string before = bytesOf(folder.file("fleet.sqlite"));
    fs::remove(folder.file("index/shard-0001-of-0002.jsonl"));
    expectComplaint(catalogue(folder), 1,
                    "orvcomtrade: index/shard-0001-of-0002.jsonl: missing; make it again with orvcomtrade index "
                    "--shard 1/2\n");
    EXPECT_EQ(bytesOf(folder.file("fleet.sqlite")), before);
    index(folder);
    const Outcome mixed = catalogue(folder);
    EXPECT_EQ(mixed.status, 1);
    EXPECT_NE(mixed.err.find("remove those that no longer count"), std::string::npos) << mixed.err;
}

TEST(Catalogue, AnArchiveIsTakenOnce) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder);
    fs::copy(folder.file("index"), folder.file("again"));
    const Outcome outcome = orvcomtradeIn(folder.path(), {"catalogue", "index", "again", "-o", "fleet.sqlite"});
    expectComplaint(outcome, 1,
                    "orvcomtrade: again: the index of " + fs::canonical(folder.file("arc")).string() +
                        ", which another folder has given already; name only one of them\n");
}

TEST(Catalogue, OnlyACatalogueOfAKnownVersionIsReplaced) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder);
    folder.write("fleet.sqlite", "some text that is no database at all");
    expectComplaint(catalogue(folder), 1, "orvcomtrade: fleet.sqlite: not a catalogue; not replaced\n");
    fs::remove(folder.file("fleet.sqlite"));
    ASSERT_EQ(catalogue(folder).status, 0);
    ASSERT_EQ(catalogue(folder).status, 0);
    change(folder.file("fleet.sqlite"), "PRAGMA user_version=2");
    const std::string newer = bytesOf(folder.file("fleet.sqlite"));
    expectComplaint(catalogue(folder), 1,
                    "orvcomtrade: fleet.sqlite: a catalogue of version 2, and this program knows "
                    "version 1 at most; not replaced\n");
    EXPECT_EQ(bytesOf(folder.file("fleet.sqlite")), newer);
}

TEST(Catalogue, FullDiskLeavesTheOldCatalogueAndNothingElse) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    index(folder);
    ASSERT_EQ(catalogue(folder).status, 0);
    const std::string before = bytesOf(folder.file("fleet.sqlite"));
    const FileSizeLimit limit(16384);
    const Outcome outcome = catalogue(folder);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err.find("orvcomtrade: fleet.sqlite: "), 0U) << outcome.err;
    EXPECT_EQ(bytesOf(folder.file("fleet.sqlite")), before);
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
    }
}

TEST(Catalogue, SeveralArchivesAreOneCatalogue) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "arc2/a");
    index(folder);
    orvcomtradeIn(folder.path(), {"index", "arc2", "--output", "index2"});
    expectOutput(orvcomtradeIn(folder.path(), {"catalogue", "index", "index2", "-o", "fleet.sqlite"}),
                 "fleet.sqlite: 2 recordings, 0 of them cannot be read; 2 events\n");
    EXPECT_EQ(query(folder.file("fleet.sqlite"), "SELECT COUNT(DISTINCT archive) FROM recording"), "2\n");
}

// --- what the other commands make of a catalogue -------------------------------------------------------------------

TEST(ListOfCatalogue, PrintsWhatAListOfTheFolderPrints) {
    const TempDir folder;
    writeCatalogue(folder);
    for (const std::vector<std::string>& flags :
         std::vector<std::vector<std::string>>{{},
                                               {"--csv"},
                                               {"--json"},
                                               {"--quiet"},
                                               {"--station", "nor"},
                                               {"--station", "s*h"},
                                               {"-c", "tr?p"},
                                               {"-c", "nothing"},
                                               {"--after", "2020-02-01T10:00"},
                                               {"--after", "2020-02-02"},
                                               {"--before", "2020-02-01T10:00"},
                                               {"--before", "2020-02-02", "--csv"}}) {
        SCOPED_TRACE(testing::PrintToString(flags));
        std::vector<std::string> words = {"list", "arc"};
        words.insert(words.end(), flags.begin(), flags.end());
        const Outcome ofFolder = orvcomtradeIn(folder.path(), words);
        words[1] = "fleet.sqlite";
        words.insert(words.end(), {"--root", "arc"});
        expectOutcome(orvcomtradeIn(folder.path(), words), ofFolder.status, ofFolder.out, ofFolder.err);
    }
}

TEST(ListOfCatalogue, ReadsNoRecording) {
    const TempDir folder;
    writeCatalogue(folder);
    fs::remove_all(folder.file("arc"));
    const std::string root = fs::canonical(folder.path()).string() + "/arc";
    expectOutcome(orvcomtradeIn(folder.path(), {"list", "--csv", "fleet.sqlite"}), 1,
                  "path,station,recorder,start,trigger,duration_s,samples,rates_hz,analog,status,revision,data_type,"
                  "verdict\n" +
                      root + "/broken.cfg,,,,,,,,,,,,unreadable\n" + root +
                      "/deep/south.cfg,South,R-7,2020-02-01T10:00:00.000000,"
                      "2020-02-01T10:00:00.001000,0.002,3,1000,1,1,1999,ASCII,ok\n" +
                      root +
                      "/north.cfg,North,R-7,2020-02-01T10:00:00.000000,2020-02-01T10:00:00.001000,0.002,3,1000,"
                      "1,1,1999,ASCII,ok\n",
                  "orvcomtrade: " + root +
                      "/broken.cfg:1:TT: the line of channel counts expected, found nothing: check the line, "
                      "and request the file again\n");
}

TEST(ListOfCatalogue, NamesOfAnyBytesLeadToTheirFiles) {
    const TempDir folder;
    writeRecording(folder, "arc/\xCF\xD1");
    writeRecording(folder, "arc/\xD0\x9F");
    index(folder);
    ASSERT_EQ(catalogue(folder).status, 0);
    const auto sortedLines = [&folder](const std::vector<std::string>& words) {
        const std::vector<std::string> lines = linesOf(orvcomtradeIn(folder.path(), words).out);
        return std::multiset<std::string>(lines.begin(), lines.end());
    };
    EXPECT_EQ(sortedLines({"list", "--json", "fleet.sqlite", "--root", "arc"}), sortedLines({"list", "--json", "arc"}));
    expectOutcome(orvcomtradeIn(folder.path(), {"view", "-q", "fleet.sqlite", "-o", "pages"}), 0, "", "");
    EXPECT_TRUE(fs::exists(folder.file("pages/\xCF\xD1.html")));
}

TEST(ListOfCatalogue, WhatNobodyCouldLookAtIsReported) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "else/b");
    fs::create_symlink(folder.file("else/b.cfg"), folder.file("arc/b.cfg"));
    index(folder);
    ASSERT_EQ(catalogue(folder).status, 0);
    const Outcome ofFolder = orvcomtradeIn(folder.path(), {"list", "--csv", "arc"});
    const Outcome listed = orvcomtradeIn(folder.path(), {"list", "--csv", "fleet.sqlite", "--root", "arc"});
    EXPECT_EQ(listed.out, ofFolder.out);
    EXPECT_EQ(listed.status, 1);
    EXPECT_EQ(listed.err, "orvcomtrade: arc/b.cfg: not read: b.cfg is a link, and it leads out of the archive; "
                          "--follow-links follows it\n");
    const Outcome viewed = orvcomtradeIn(folder.path(), {"view", "-q", "fleet.sqlite", "-o", "pages"});
    EXPECT_EQ(viewed.status, 1);
    EXPECT_NE(viewed.err.find("is a link, and it leads out of the archive"), std::string::npos) << viewed.err;
}

TEST(ListOfCatalogue, WhatIsNoWholeCatalogueOfAKnownVersionIsRefused) {
    const TempDir folder;
    writeCatalogue(folder);
    const std::string whole = bytesOf(folder.file("fleet.sqlite"));
    const struct {
        const char* why;
        std::string bytes;
        const char* sql;
        const char* sentence;
    } cases[] = {
        {"newer", whole, "PRAGMA user_version=9",
         "fleet.sqlite: a catalogue of version 9, and this program knows version 1 at most\n"},
        {"of another program", whole, "PRAGMA application_id=1", "fleet.sqlite: not a catalogue\n"},
        {"a text", "text", nullptr, "fleet.sqlite: not a catalogue\n"},
        {"empty", "", nullptr, "fleet.sqlite: not a catalogue\n"},
        {"cut short", whole.substr(0, whole.size() / 4), nullptr,
         "fleet.sqlite: database disk image is malformed: damaged; remove it, and make it again with orvcomtrade "
         "catalogue\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        folder.write("fleet.sqlite", row.bytes);
        if (row.sql != nullptr) {
            change(folder.file("fleet.sqlite"), row.sql);
        }
        for (const char* const flag : {"--json", "--csv", "--quiet"}) {
            expectComplaint(orvcomtradeIn(folder.path(), {"list", flag, "fleet.sqlite"}), 1,
                            std::string("orvcomtrade: ") + row.sentence);
        }
        expectComplaint(orvcomtradeIn(folder.path(), {"report", "fleet.sqlite", "-o", "site"}), 1,
                        std::string("orvcomtrade: ") + row.sentence);
        EXPECT_FALSE(fs::exists(folder.file("site")));
    }
}

TEST(ListOfCatalogue, OfADamagedOneNothingIsPrintedButWhatComesBeforeTheDamage) {
    constexpr std::size_t pageLength = 4096;
    const TempDir folder;
    for (int i = 100; i < 160; ++i) {
        writeRecording(folder, "arc/" + std::to_string(i), "A station whose name takes its room in the catalogue");
    }
    index(folder);
    ASSERT_EQ(catalogue(folder).status, 0);
    const std::string bytes = bytesOf(folder.file("fleet.sqlite"));
    const std::string whole = orvcomtradeIn(folder.path(), {"list", "fleet.sqlite"}).out;
    const std::size_t titlesLength = whole.find('\n') + 1;
    int withNothing = 0;
    int withSome = 0;
    for (std::size_t page = 1; page < bytes.size() / pageLength; ++page) {
        folder.write("fleet.sqlite", std::string(bytes).replace(page * pageLength, pageLength, pageLength, '\xA5'));
        const Outcome outcome = orvcomtradeIn(folder.path(), {"list", "fleet.sqlite"});
        if (outcome.status == 0) {
            EXPECT_EQ(outcome.out, whole) << page; // a page that it does not need
            continue;
        }
        EXPECT_EQ(outcome.err, "orvcomtrade: fleet.sqlite: database disk image is malformed: damaged; remove it, and "
                               "make it again with orvcomtrade catalogue\n");
        EXPECT_EQ(outcome.out, whole.substr(0, outcome.out.size())) << page;
        EXPECT_NE(outcome.out.size(), titlesLength) << page;
        ++(outcome.out.empty() ? withNothing : withSome);
    }
    EXPECT_GT(withNothing, 0);
    EXPECT_GT(withSome, 0);
}

TEST(ListOfCatalogue, IsForListReportAndView) {
    const TempDir folder;
    writeCatalogue(folder);
    expectComplaint(orvcomtradeIn(folder.path(), {"info", "fleet.sqlite"}), 2,
                    "orvcomtrade: fleet.sqlite: this is a catalogue; only list, report and view take one\n");
    fs::rename(folder.file("fleet.sqlite"), folder.file("fleet.db")); // known by its bytes
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"list", "--station", "north", "fleet.db"}).status, 0);
    expectComplaint(orvcomtradeIn(folder.path(), {"list", "arc", "--root", "arc"}), 2,
                    "orvcomtrade: --root is for a catalogue, and none is named\n");
    expectComplaint(orvcomtradeIn(folder.path(), {"view", "none.sqlite", "-o", "pages"}), 1,
                    "orvcomtrade: none.sqlite: No such file or directory\n");
}

TEST(ViewOfCatalogue, MakesThePagesOfWhatIsAskedFor) {
    const TempDir folder;
    writeCatalogue(folder);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "-o", "pages", "--station", "south"});
    const std::string recording = fs::canonical(folder.file("arc/deep/south.cfg")).string();
    expectOutcome(outcome, 0, recording + ": written to pages/deep/south.html\n", "");
    EXPECT_EQ(outcome.summary, "1 recording: 1 written, 0 skipped, 0 failed\n");
    expectOutcome(orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "-o", "pages", "--station", "west"}), 0, "",
                  "orvcomtrade: fleet.sqlite: no recording in it that is asked for\n");
    const Outcome ofFolder = orvcomtradeIn(folder.path(), {"view", "arc", "-o", "more", "--station", "south"});
    expectOutcome(ofFolder, 0, "arc/deep/south.cfg: written to more/deep/south.html\n", "");
    EXPECT_EQ(ofFolder.summary, "3 recordings: 1 written, 2 skipped, 0 failed\n");
}

TEST(ViewOfCatalogue, FilesThatHaveMovedAreNamed) {
    const TempDir folder;
    writeCatalogue(folder);
    fs::remove(folder.file("arc/north.cfg"));
    const std::string root = fs::canonical(folder.file("arc")).string();
    const Outcome gone = orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "-o", "pages", "--station", "north"});
    expectComplaint(gone, 1,
                    "orvcomtrade: " + root +
                        "/north.cfg: No such file or directory; it was there when the "
                        "catalogue was made\n");
    fs::rename(folder.file("arc"), folder.file("elsewhere"));
    expectComplaint(orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "-o", "pages"}), 1,
                    "orvcomtrade: fleet.sqlite: no folder " + root +
                        ", in which its recordings should be; --root FOLDER names the right one\n");
    const std::vector<std::string> words = {"view", "fleet.sqlite", "-o", "pages", "--station", "south"};
    std::vector<std::string> withRoot = words;
    withRoot.insert(withRoot.end(), {"--root", "elsewhere"});
    expectOutput(orvcomtradeIn(folder.path(), withRoot),
                 "elsewhere/deep/south.cfg: written to pages/deep/south.html\n");
}

TEST(ViewOfCatalogue, NoPathInItLeadsOutOfTheOutputFolder) {
    const TempDir folder;
    writeCatalogue(folder);
    writeRecording(folder, "out/side");
    for (const char* const path : {"../out/side.cfg", "deep/../../out/side.cfg"}) {
        SCOPED_TRACE(path);
        change(folder.file("fleet.sqlite"), std::string("UPDATE recording SET path='") + path +
                                                "' WHERE station='North'; UPDATE recording SET station='North' "
                                                "WHERE path LIKE '%side%'");
        const Outcome outcome =
            orvcomtradeIn(folder.path(), {"view", "fleet.sqlite", "-o", "site/pages", "--station", "north"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find("its path in the catalogue leads out of the archive\n"), std::string::npos)
            << outcome.err;
        EXPECT_FALSE(fs::exists(folder.file("site/out/side.html")));
        EXPECT_FALSE(fs::exists(folder.file("out/side.html")));
    }
}

TEST(ViewOfCatalogue, SeveralArchivesHaveNoOneRoot) {
    const TempDir folder;
    writeRecording(folder, "arc/a");
    writeRecording(folder, "arc2/a");
    index(folder);
    orvcomtradeIn(folder.path(), {"index", "arc2", "--output", "index2"});
    orvcomtradeIn(folder.path(), {"catalogue", "index", "index2", "-o", "fleet.sqlite"});
    expectComplaint(orvcomtradeIn(folder.path(), {"list", "fleet.sqlite", "--root", "arc", "--json"}), 2,
                    "orvcomtrade: fleet.sqlite: --root is for the catalogue of one archive, and this has 2\n");
    expectOutcome(orvcomtradeIn(folder.path(), {"view", "-q", "fleet.sqlite", "-o", "pages"}), 0, "", "");
    EXPECT_TRUE(fs::exists(folder.file("pages/arc/a.html")));
    EXPECT_TRUE(fs::exists(folder.file("pages/arc2/a.html")));
}

TEST(ReportOfCatalogue, ListsWhatIsAskedForAndWhatCannotBeRead) {
    const TempDir folder;
    writeCatalogue(folder);
    const Outcome all = orvcomtradeIn(folder.path(), {"report", "-q", "fleet.sqlite", "-o", "site"});
    EXPECT_EQ(all.status, 1);
    const std::string list = bytesOf(folder.file("site/index.html"));
    for (const char* const text : {"North", "pages/deep/south.html", "the line of channel counts expected"}) {
        EXPECT_NE(list.find(text), std::string::npos) << text;
    }
    for (const char* const of : {"fleet.sqlite", "arc"}) {
        SCOPED_TRACE(of);
        expectOutcome(orvcomtradeIn(folder.path(), {"report", "-q", of, "-o", "north", "--station", "north"}), 0, "",
                      "");
        const std::string north = bytesOf(folder.file("north/index.html"));
        EXPECT_NE(north.find("pages/north.html"), std::string::npos);
        EXPECT_EQ(north.find("south"), std::string::npos);
        EXPECT_EQ(north.find("broken"), std::string::npos);
    }
}

} // namespace
