#include <OrvComtradeIntake/Intake.h>
#include <OrvComtradePage/Page.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradeIntake::Bytes;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Side;
using OrvComtradePage::PageOptions;
using OrvComtradePage::PageSummary;
using OrvComtradePage::writePage;

const std::string kExamples = ORV_SOURCE_DIR "/examples/recordings/";

struct Written {
    PageSummary summary;
    std::string html;
};

Written pageOf(const Opened& opened, const PageOptions& options = {}) {
    Written written;
    written.summary = writePage(opened, options, [&written](std::string_view text) { written.html += text; });
    return written;
}

nlohmann::json modelIn(const std::string& html) {
    const std::string begin = "id=\"recording\">";
    const std::size_t from = html.find(begin) + begin.size();
    return nlohmann::json::parse(html.substr(from, html.find("</script>", from) - from));
}

std::string named(const std::string& name) {
    return name + ",R,1999\r\n2,1A,1D\r\n1,A,,,V,0.5,1,0,-99,99,100,1,S\r\n1,D,,,0\r\n50\r\n1\r\n1000,4\r\n"
                  "01/01/2020,00:00:00.000000\r\n01/01/2020,00:00:00.001000\r\nASCII\r\n1\r\n";
}

constexpr std::string_view kData = "1,0,3,0\r\n2,1000,99999,0\r\n3,2000,5,1\r\n4,3000,-5,1\r\n";

Opened openNamed(const std::string& configuration) {
    Bytes bytes;
    bytes.cfg = configuration;
    bytes.dat = kData;
    return OrvComtradeIntake::open(bytes);
}

TEST(WritePage, HoldsWhatTheRecordingHolds) {
    const std::string configuration = named("S");
    const Written page = pageOf(openNamed(configuration));
    const nlohmann::json model = modelIn(page.html);
    EXPECT_EQ(model["form"], 2);
    EXPECT_EQ(model["header"]["timeMultiplier"], 1.0);
    EXPECT_EQ(model["header"]["station"], "S");
    EXPECT_EQ(model["header"]["trigger"], "2020-01-01T00:00:00.001000000");
    EXPECT_EQ(model["time"]["kind"], "rates");
    EXPECT_EQ(model["analog"][0]["values"]["type"], "i16");
    EXPECT_EQ(model["analog"][0]["values"]["count"], 4);
    EXPECT_EQ(model["analog"][0]["missing"], nlohmann::json::parse("[[1,1]]"));
    EXPECT_EQ(model["analog"][0]["onPrimary"]["a"], 50);
    EXPECT_EQ(model["analog"][0]["onPrimary"]["side"], "primary");
    EXPECT_EQ(model["analog"][0]["recorded"]["b"], 1);
    EXPECT_EQ(model["status"][0]["changes"], nlohmann::json::parse("[2]"));
    EXPECT_EQ(page.summary.bytes, page.html.size());
    EXPECT_EQ(page.summary.lastTime, 0.003);
    EXPECT_EQ(page.summary.operated, std::vector<std::size_t>{0});
}

TEST(WritePage, HoldsStampsWhereThereIsNoRate) {
    std::string configuration = named("S");
    configuration.replace(configuration.find("1\r\n1000,4"), 9, "0\r\n0,4");
    Bytes bytes;
    bytes.cfg = configuration;
    bytes.dat = "1,0,3,0\r\n2,1000,4,0\r\n3,2500,5,1\r\n4,3000,-5,1\r\n";
    const Written page = pageOf(OrvComtradeIntake::open(bytes));
    const nlohmann::json model = modelIn(page.html);
    EXPECT_EQ(model["time"]["kind"], "stamps");
    EXPECT_EQ(model["time"]["numbers"]["count"], 4);
    EXPECT_EQ(model["time"]["multiplier"], 1.0);
    EXPECT_EQ(page.summary.lastTime, 0.003);
}

TEST(WritePage, SummaryLeavesOutWhatIsMissing) {
    const std::string configuration = named("S");
    const Written page = pageOf(openNamed(configuration));
    ASSERT_EQ(page.summary.traces.size(), 1U);
    ASSERT_EQ(page.summary.traces[0].parts.size(), 4U);
    EXPECT_EQ(page.summary.traces[0].parts[0].greatest, 2.5);
    EXPECT_LT(page.summary.traces[0].parts[1].greatest, page.summary.traces[0].parts[1].least);
    EXPECT_EQ(page.summary.traces[0].parts[3].least, -1.5);
}

TEST(WritePage, NamesAreNeverMarkup) {
    const std::string name = "</title></script><!--<script>&\"'";
    const std::string configuration = named(name);
    const Written page = pageOf(openNamed(configuration));
    EXPECT_EQ(page.html.find("</title></script>"), std::string::npos);
    EXPECT_EQ(page.html.find("<!--"), std::string::npos);
    EXPECT_EQ(modelIn(page.html)["header"]["station"], name);
}

TEST(WritePage, IsAsciiButForTheTitle) {
    const std::string configuration = named("\xD0\xA2\xE2\x80\xA8");
    const Written page = pageOf(openNamed(configuration));
    EXPECT_EQ(modelIn(page.html)["header"]["station"], "\xD0\xA2\xE2\x80\xA8");
    const std::size_t body = page.html.find("</title>");
    for (const char character : page.html.substr(body)) {
        ASSERT_GE(character, 0);
    }
}

TEST(WritePage, DoesNotShowTheFoldersOfItsMaker) {
    const Opened opened = OrvComtradeIntake::open(kExamples + "line_two_phase_fault.cfg");
    const Written page = pageOf(opened);
    EXPECT_FALSE(opened.findings().empty());
    EXPECT_EQ(modelIn(page.html)["findings"][0]["file"], "line_two_phase_fault.cfg");
    EXPECT_EQ(page.html.find(kExamples), std::string::npos);
}

TEST(WritePage, ReducesWhatIsLargerThanItsOptionSays) {
    const Opened opened = OrvComtradeIntake::open(kExamples + "line_two_phase_fault.cfg"); // 1200 samples, 7 channels
    PageOptions options;
    options.fullBytes = 7 * 4 * 64; // 64 samples in full, the trigger is at 120
    const Written page = pageOf(opened, options);
    EXPECT_TRUE(page.summary.isReduced);
    EXPECT_EQ(modelIn(page.html)["pieces"], nlohmann::json::parse("[[0,10,8],[80,64,1],[144,132,8]]"));
    EXPECT_EQ(modelIn(page.html)["analog"][0]["values"]["count"], 206);
    EXPECT_EQ(modelIn(page.html)["time"]["kind"], "rates");
    EXPECT_FALSE(pageOf(opened).summary.isReduced);
}

struct Files {
    std::string cfg;
    std::string dat;
};

/// A BINARY recording of so many samples of 32 analog channels: waves of 30 to 15,000 steps with noise of 2.
Files noisyWaves(std::size_t samples) {
    Files files;
    files.cfg = "S,R,1999\r\n32,32A,0D\r\n";
    for (int channel = 1; channel <= 32; ++channel) {
        files.cfg += std::to_string(channel) + ",I,,,A,1,0,0,-32767,32767,1,1,S\r\n";
    }
    files.cfg += "50\r\n1\r\n4800," + std::to_string(samples) +
                 "\r\n01/01/2020,00:00:00.000000\r\n01/01/2020,00:00:00.001000\r\nBINARY\r\n1\r\n";
    unsigned state = 1;
    for (std::size_t sample = 0; sample < samples; ++sample) {
        const auto append = [&files](std::size_t value, int length) {
            for (int byte = 0; byte < length; ++byte) {
                files.dat += static_cast<char>(static_cast<unsigned char>(value >> 8 * byte));
            }
        };
        append(sample + 1, 4);
        append(sample * 208, 4);
        for (int channel = 0; channel < 32; ++channel) {
            state = state * 1664525U + 1013904223U;
            const double wave = (30 << channel % 10) * std::sin(static_cast<double>(sample) * 0.02 + channel);
            append(static_cast<std::size_t>(std::lround(wave) + static_cast<int>(state >> 16U) % 5 - 2), 2);
        }
    }
    return files;
}

TEST(WritePage, IsMuchSmallerThanTheDataOfNoisyWaves) {
    const Files files = noisyWaves(20000);
    Bytes bytes;
    bytes.cfg = files.cfg;
    bytes.dat = files.dat;
    const Written page = pageOf(OrvComtradeIntake::open(bytes));
    const auto data = static_cast<double>(files.dat.size());
    EXPECT_LT(static_cast<double>(page.html.size()), 0.6 * data) << "with 0.15 MB of scripts";
}

TEST(WritePage, ThrowsWhatTheSinkThrows) {
    const Opened opened = OrvComtradeIntake::open(kExamples + "feeder_earth_fault.cfg");
    const auto full = [](std::string_view) { throw std::runtime_error("full"); };
    EXPECT_THROW(writePage(opened, {}, full), std::runtime_error);
}

TEST(OpenedScaleOf, IsThatOfTheColumnsOfASide) {
    for (const char* const name : {"line_two_phase_fault.cfg", "feeder_earth_fault.cfg", "transformer_inrush.cfg"}) {
        const Opened recorded = OrvComtradeIntake::open(kExamples + name);
        for (const Side side : {Side::Recorded, Side::Primary, Side::Secondary}) {
            OrvComtradeIntake::Options options;
            options.side = side;
            const Opened opened = OrvComtradeIntake::open(kExamples + name, options);
            const OrvComtradeIntake::Columns columns = opened.columns();
            for (std::size_t channel = 0; channel < columns.a.size(); ++channel) {
                const OrvComtradeIntake::Scale scale = recorded.scaleOf(channel, side);
                EXPECT_EQ(scale.a, columns.a[channel]) << name << ' ' << channel;
                EXPECT_EQ(scale.b, columns.b[channel]) << name << ' ' << channel;
                EXPECT_EQ(scale.side, opened.sideOf(channel)) << name << ' ' << channel;
            }
        }
    }
}

} // namespace
} // namespace orvtest
