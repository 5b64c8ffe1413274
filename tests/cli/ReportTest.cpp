#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>

// The site that `report` writes: its list, its pages, and what it remembers of them. tests/site looks at sites in a
// browser.

namespace {

namespace fs = std::filesystem;
using namespace orvtest;

/// Two recordings, one of them in a folder below.
void writeArchive(const TempDir& folder) {
    fs::create_directories(folder.file("in/sub"));
    for (const char* const extension : {".cfg", ".dat"}) {
        fs::copy_file(fs::path(kFeeder).replace_extension(extension),
                      folder.file(std::string("in/feeder") + extension));
        fs::copy_file(fs::path(kInrush).replace_extension(extension),
                      folder.file(std::string("in/sub/inrush") + extension));
    }
}

Outcome report(const TempDir& folder) {
    return orvcomtradeIn(folder.path(), {"report", "in", "--output", "site"});
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Report, ListAndPagesLeadToEachOther) {
    const TempDir folder;
    writeArchive(folder);
    expectOutput(report(folder), "in/feeder.cfg: written to site/pages/feeder.html\n"
                                 "in/sub/inrush.cfg: written to site/pages/sub/inrush.html\n");
    const std::string list = bytesOf(folder.file("site/index.html"));
    EXPECT_TRUE(has(list, "\"pages/feeder.html\""));
    EXPECT_TRUE(has(list, "\"pages/sub/inrush.html\""));
    EXPECT_TRUE(has(bytesOf(folder.file("site/pages/feeder.html")), "\"../index.html\""));
    EXPECT_TRUE(has(bytesOf(folder.file("site/pages/sub/inrush.html")), "\"../../index.html\""));
}

TEST(Report, MakesOnlyPagesOfRecordingsThatHaveChanged) {
    const TempDir folder;
    writeArchive(folder);
    ASSERT_EQ(report(folder).status, 0);
    const std::string list = bytesOf(folder.file("site/index.html"));
    expectOutput(report(folder), "in/feeder.cfg: unchanged, site/pages/feeder.html\n"
                                 "in/sub/inrush.cfg: unchanged, site/pages/sub/inrush.html\n");
    EXPECT_EQ(bytesOf(folder.file("site/index.html")), list);
    folder.write("in/feeder.hdr", "Seen.\n"); // which the page shows
    expectOutput(report(folder), "in/feeder.cfg: written to site/pages/feeder.html\n"
                                 "in/sub/inrush.cfg: unchanged, site/pages/sub/inrush.html\n");
    EXPECT_TRUE(has(bytesOf(folder.file("site/pages/feeder.html")), "Seen."));
}

TEST(Report, MakesAllPagesAgainWhereItsRecordIsNotItsOwn) {
    const TempDir folder;
    writeArchive(folder);
    ASSERT_EQ(report(folder).status, 0);
    const std::string sound = bytesOf(folder.file("site/report.json"));
    const std::size_t row = sound.find("\"row\":{");
    ASSERT_NE(row, std::string::npos);
    const std::size_t version = sound.find("\"program\":\"") + 11;
    for (const std::string& record :
         {std::string(), std::string("[1]"), sound.substr(0, sound.size() / 2), std::string(sound).insert(version, "x"),
          std::string(sound).replace(row, 7, "\"row\":7,\"was\":{"),
          "{\"program\":" + std::string(1000000, '[') + std::string(1000000, ']') + "}"}) {
        folder.write("site/report.json", record);
        const Outcome outcome = report(folder);
        EXPECT_EQ(outcome.out, "in/feeder.cfg: written to site/pages/feeder.html\n"
                               "in/sub/inrush.cfg: written to site/pages/sub/inrush.html\n")
            << record.substr(0, 100);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(bytesOf(folder.file("site/report.json")), sound);
    }
}

} // namespace
