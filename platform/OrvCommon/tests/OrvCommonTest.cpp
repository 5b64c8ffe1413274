#include <OrvCommon.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace {

static_assert(std::is_same<decltype(Orv::PointF::x), float>::value, "single precision");
static_assert(std::is_same<decltype(Orv::PointF::y), float>::value, "single precision");
static_assert(sizeof(Orv::PointF) == 8, "x and y, and nothing else");

/// A folder of its own for one test; ends the program rather than waiting on a pipe or device for ever.
class OrvFiles : public testing::Test {
protected:
    OrvFiles() {
        alarm(20);
        std::string pattern = (std::filesystem::temp_directory_path() / "orvcommon-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) {
            folder = pattern;
        }
    }

    ~OrvFiles() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
        alarm(0);
    }

    void SetUp() override { ASSERT_FALSE(folder.empty()); }

    std::string path(const std::string& name) const { return folder + "/" + name; }

    std::string write(const std::string& name, const std::string& bytes = "bytes") const {
        std::ofstream(path(name), std::ios_base::binary) << bytes;
        return path(name);
    }

    static std::string contentOf(std::ifstream& in) {
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    std::string folder;
};

class OrvFileExist : public OrvFiles {};

class OrvOpenInputFile : public OrvFiles {};

TEST(OrvPointF, IsTwoFloatsXThenY) {
    const Orv::PointF point{1.5F, -2.0F};
    EXPECT_EQ(point.x, 1.5F);
    EXPECT_EQ(point.y, -2.0F);
    const Orv::PointF origin{};
    EXPECT_EQ(origin.x, 0.0F);
    EXPECT_EQ(origin.y, 0.0F);
}

TEST_F(OrvFileExist, RegularFileExists) {
    EXPECT_TRUE(Orv::fileExist(write("r.cfg")));
    EXPECT_TRUE(Orv::fileExist(write("empty.cfg", "")));
}

TEST_F(OrvFileExist, FileWithoutReadPermissionExists) {
    const std::string file = write("r.cfg");
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    EXPECT_TRUE(Orv::fileExist(file));
}

TEST_F(OrvFileExist, DirectoryExists) {
    EXPECT_TRUE(Orv::fileExist(folder));
    EXPECT_TRUE(Orv::fileExist(folder + "/"));
    EXPECT_TRUE(Orv::fileExist("/"));
}

TEST_F(OrvFileExist, MissingFileDoesNotExist) {
    EXPECT_FALSE(Orv::fileExist(path("absent.cfg")));
    EXPECT_FALSE(Orv::fileExist(path("absent/r.cfg")));
    EXPECT_FALSE(Orv::fileExist(write("r.cfg") + "/r.cfg"));
    EXPECT_FALSE(Orv::fileExist(write("r.cfg") + "/"));
}

TEST_F(OrvFileExist, NamesAreExact) {
    write("r.cfg");
    EXPECT_FALSE(Orv::fileExist(path("R.CFG")));
    EXPECT_FALSE(Orv::fileExist(path("r.cf")));
    EXPECT_FALSE(Orv::fileExist(path("r.cfg ")));
}

TEST_F(OrvFileExist, LinkStandsForWhatItLeadsTo) {
    std::filesystem::create_symlink(write("r.cfg"), path("file-link"));
    std::filesystem::create_symlink(folder, path("folder-link"));
    std::filesystem::create_symlink(path("absent"), path("dangling-link"));
    std::filesystem::create_symlink(path("own-link"), path("own-link"));
    std::filesystem::create_symlink("/dev/null", path("device-link"));
    EXPECT_TRUE(Orv::fileExist(path("file-link")));
    EXPECT_TRUE(Orv::fileExist(path("folder-link")));
    EXPECT_FALSE(Orv::fileExist(path("dangling-link")));
    EXPECT_FALSE(Orv::fileExist(path("own-link")));
    EXPECT_FALSE(Orv::fileExist(path("device-link")));
}

TEST_F(OrvFileExist, PipeIsNoFile) {
    ASSERT_EQ(mkfifo(path("pipe.cfg").c_str(), 0600), 0);
    EXPECT_FALSE(Orv::fileExist(path("pipe.cfg")));
}

TEST_F(OrvFileExist, SocketIsNoFile) {
    const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(handle, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = path("socket.cfg");
    ASSERT_LT(name.size(), sizeof address.sun_path);
    name.copy(address.sun_path, name.size());
    const int bound = bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ASSERT_EQ(bound, 0);
    EXPECT_FALSE(Orv::fileExist(name));
    close(handle);
}

TEST_F(OrvFileExist, DeviceIsNoFile) {
    EXPECT_FALSE(Orv::fileExist("/dev/null"));
    EXPECT_FALSE(Orv::fileExist("/dev/zero"));
}

TEST_F(OrvFileExist, EmptyPathIsNoFile) {
    EXPECT_FALSE(Orv::fileExist(""));
    EXPECT_FALSE(Orv::openInputFileUTF8Name("", std::ios_base::in).is_open());
}

TEST_F(OrvFileExist, NamesAreUtf8) {
    // "zapis" in Cyrillic letters, blanks, a quote and a line feed
    for (const char* const name : {"\xD0\xB7\xD0\xB0\xD0\xBF\xD0\xB8\xD1\x81\xD1\x8C.cfg", "two words.cfg", " .cfg ",
                                   "a'b\".cfg", "a\nb.cfg", "a\\b.cfg", "*.cfg"}) {
        const std::string file = write(name, "here");
        EXPECT_TRUE(Orv::fileExist(file)) << name;
        std::ifstream in = Orv::openInputFileUTF8Name(file, std::ios_base::in);
        EXPECT_EQ(contentOf(in), "here") << name;
    }
}

TEST_F(OrvFileExist, PathOfFiveThousandCharactersIsNoFile) {
    std::string one = folder + "/" + std::string(5000, 'x');
    EXPECT_FALSE(Orv::fileExist(one));
    EXPECT_FALSE(Orv::openInputFileUTF8Name(one, std::ios_base::in).is_open());
    std::string many = folder;
    while (many.size() < 5000) {
        many += "/.";
    }
    EXPECT_FALSE(Orv::fileExist(many));
}

TEST_F(OrvOpenInputFile, StreamReadsTheBytesOfTheFile) {
    const std::string bytes("a\r\nb\0c\x1A\xFF", 8);
    for (const std::ios_base::openmode mode :
         {std::ios_base::in, std::ios_base::binary, std::ios_base::in | std::ios_base::binary}) {
        std::ifstream in = Orv::openInputFileUTF8Name(write("r.dat", bytes), mode);
        ASSERT_TRUE(in.is_open()) << mode;
        EXPECT_TRUE(in.good()) << mode;
        EXPECT_EQ(in.tellg(), std::streampos(0)) << mode;
        EXPECT_EQ(contentOf(in), bytes) << mode;
    }
}

TEST_F(OrvOpenInputFile, BinaryFlagAloneLeavesTheFileAsItIs) {
    const std::string file = write("r.dat", "kept");
    { const std::ifstream in = Orv::openInputFileUTF8Name(file, std::ios_base::binary); }
    std::ifstream in = Orv::openInputFileUTF8Name(file, std::ios_base::in);
    EXPECT_EQ(contentOf(in), "kept");
}

TEST_F(OrvOpenInputFile, StreamSeeksAndTellsTheSize) {
    std::ifstream in = Orv::openInputFileUTF8Name(write("r.dat", "0123456789"), std::ios_base::binary);
    in.seekg(0, std::ios_base::end);
    EXPECT_EQ(in.tellg(), std::streampos(10));
    in.seekg(4);
    EXPECT_EQ(in.get(), '4');
}

TEST_F(OrvOpenInputFile, StreamCanBeMovedOn) {
    std::ifstream first = Orv::openInputFileUTF8Name(write("r.dat", "moved"), std::ios_base::in);
    std::ifstream second;
    second = std::move(first);
    EXPECT_EQ(contentOf(second), "moved");
}

TEST_F(OrvOpenInputFile, MissingFileGivesAFailedStreamAndNoException) {
    for (const std::ios_base::openmode mode : {std::ios_base::in, std::ios_base::binary}) {
        EXPECT_NO_THROW({
            const std::ifstream in = Orv::openInputFileUTF8Name(path("absent.dat"), mode);
            EXPECT_FALSE(in.is_open());
            EXPECT_TRUE(in.fail());
        });
        EXPECT_FALSE(std::filesystem::exists(path("absent.dat"))) << "opening for reading makes no file";
    }
}

TEST_F(OrvOpenInputFile, UnreadableFileGivesAFailedStream) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root reads everything";
    }
    const std::string file = write("r.cfg");
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    const std::ifstream in = Orv::openInputFileUTF8Name(file, std::ios_base::in);
    EXPECT_FALSE(in.is_open());
    EXPECT_TRUE(in.fail());
}

TEST_F(OrvOpenInputFile, WithoutAFileHandleTheFileExistsAndTheStreamFails) {
    const std::string file = write("r.cfg");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool exists = Orv::fileExist(file);
    const bool open = Orv::openInputFileUTF8Name(file, std::ios_base::in).is_open();
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE(exists);
    EXPECT_FALSE(open);
}

} // namespace
