#include <OrvComtradePage/Index.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradePage::IndexRow;
using OrvComtradePage::PageSummary;
using OrvComtradePage::pictureOf;

std::string indexOf(const std::vector<IndexRow>& rows) {
    std::string html;
    OrvComtradePage::writeIndex("Recordings", rows, [&html](std::string_view text) { html += text; });
    return html;
}

TEST(WriteIndex, EscapesTextsAndAddresses) {
    IndexRow row;
    row.file = "a<b>";
    row.link = "pages/a b#?<\xD0\xA2.html";
    row.station = "<script>&\"";
    const std::string html = indexOf({row});
    EXPECT_NE(html.find("<bdi>a&lt;b&gt;</bdi>"), std::string::npos);
    EXPECT_NE(html.find("href=\"pages/a%20b%23%3F%3C%D0%A2.html\""), std::string::npos);
    EXPECT_NE(html.find("&lt;script&gt;&amp;&quot;"), std::string::npos);
}

TEST(WriteIndex, ARecordingThatFailedIsARowWithItsReason) {
    IndexRow row;
    row.file = "bad.cfg";
    row.error = "bad.cfg: cannot be read";
    const std::string html = indexOf({row});
    EXPECT_NE(html.find("<tr class=\"failed\">"), std::string::npos);
    EXPECT_NE(html.find("bad.cfg: cannot be read"), std::string::npos);
    EXPECT_EQ(html.find("href"), std::string::npos);
}

TEST(PictureOf, DrawsAStrokeForEachPartThatHasAValue) {
    PageSummary summary;
    EXPECT_EQ(pictureOf(summary), "");
    summary.traces = {{0, {{-1, 1}, {5, -5}, {0, 0}}}};
    EXPECT_EQ(pictureOf(summary),
              "<svg viewBox=\"0 0 120 32\" aria-hidden=\"true\"><path d=\"M0 1V31M80 16V17\"/></svg>");
}

} // namespace
} // namespace orvtest
