#include "html.h"
#include "pageAssets.h"

#include <OrvComtradePage/Index.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace OrvComtradePage {

namespace {

constexpr int kHeight = 32; // of a picture, in its units
constexpr int kWidth = 120;

constexpr std::array<std::string_view, 8> kHeads = {"Start",    "Station",  "Recorder", "File",
                                                    "Duration", "Channels", "Operated", "Check"};

double greatestOf(const PageSummary& summary) {
    double greatest = 0.0;
    for (const Trace& trace : summary.traces) {
        for (const Extremes& part : trace.parts) {
            if (part.least <= part.greatest) {
                greatest = std::max({greatest, std::abs(part.least), std::abs(part.greatest)});
            }
        }
    }
    return greatest;
}

std::string cell(const std::string& text, const std::string& sortKey = {}) {
    const std::string key = sortKey.empty() ? "" : " data-key=\"" + htmlText(sortKey) + "\"";
    return "<td" + key + "><bdi>" + htmlText(text) + "</bdi></td>";
}

/// In a form that sorts as text and as a number alike, since the script takes it for a number.
std::string numberText(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6g", number);
    std::string plain(text.data());
    std::replace(plain.begin(), plain.end(), ',', '.'); // whatever the locale
    return plain;
}

std::string operatedText(const IndexRow& row) {
    std::string text;
    for (const std::string& name : row.operated) {
        text += (text.empty() ? "" : "; ") + name;
    }
    const std::size_t more = row.operatedCount - row.operated.size();
    return more == 0 ? text : text + " and " + std::to_string(more) + " more";
}

/// A relative address, whatever is in the names.
std::string linkText(const std::string& link) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char character : link) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isPlain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= 'a' && byte <= 'z') ||
                             std::string_view("-._~/").find(character) != std::string_view::npos;
        if (isPlain) {
            text += character;
        } else {
            text += '%';
            text += digits[byte >> 4U];
            text += digits[byte & 15U];
        }
    }
    return text;
}

std::string rowText(const IndexRow& row) {
    const std::string name = "<bdi>" + htmlText(row.file) + "</bdi>";
    const std::string linked = row.link.empty() ? name : "<a href=\"" + linkText(row.link) + "\">" + name + "</a>";
    const std::string file = "<th scope=\"row\">" + linked + "</th>";
    if (!row.error.empty()) {
        return "<tr class=\"failed\"><td></td><td></td><td></td>" + file +
               "<td></td><td></td><td></td><td colspan=\"2\">" + htmlText(row.error) + "</td></tr>\n";
    }
    const std::string channels = std::to_string(row.analog) + " + " + std::to_string(row.status);
    const std::string operated =
        row.operatedCount == 0 ? "" : std::to_string(row.operatedCount) + ": " + operatedText(row);
    return "<tr>" + cell(row.start) + cell(row.station) + cell(row.recorder) + file +
           cell(numberText(row.duration) + " s", numberText(row.duration)) +
           cell(channels, std::to_string(row.analog + row.status)) + cell(operated, std::to_string(row.operatedCount)) +
           "<td class=\"" + htmlText(row.verdict) + "\">" + htmlText(row.sentence) + "</td><td>" + row.picture +
           "</td></tr>\n";
}

} // namespace

std::string pictureOf(const PageSummary& summary) {
    const double greatest = greatestOf(summary);
    if (!(greatest > 0.0)) {
        return {};
    }
    std::string svg = "<svg viewBox=\"0 0 120 32\" aria-hidden=\"true\">";
    const auto place = [greatest](double value) {
        return std::to_string(std::lround((1.0 - value / greatest) * (kHeight / 2.0 - 1.0)) + 1);
    };
    for (const Trace& trace : summary.traces) {
        std::string path;
        for (std::size_t i = 0; i < trace.parts.size(); ++i) {
            const Extremes& part = trace.parts[i];
            if (part.least > part.greatest) {
                continue;
            }
            const std::string top = place(part.greatest);
            std::string bottom = place(part.least);
            if (top == bottom) {
                bottom = std::to_string(std::stol(bottom) + 1);
            }
            path += 'M';
            path += std::to_string(i * kWidth / trace.parts.size());
            path += ' ';
            path += top;
            path += 'V';
            path += bottom;
        }
        svg += "<path d=\"" + path + "\"/>";
    }
    return svg + "</svg>";
}

void writeIndex(const std::string& title, const std::vector<IndexRow>& rows, const OrvComtradeIntake::Sink& sink) {
    sink("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src 'unsafe-inline'; "
         "style-src 'unsafe-inline'\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n<title>");
    sink(htmlText(title));
    sink("</title>\n<style>\n");
    sink(kIndexStyle);
    sink("</style>\n</head>\n<body>\n<header><h1>");
    sink(htmlText(title));
    sink("</h1><label>Search <input type=\"search\" id=\"search\"></label><output id=\"count\">");
    sink(std::to_string(rows.size()) + " recordings");
    sink(
        "</output></header>\n<main tabindex=\"0\" aria-label=\"Recordings\"><table><caption class=\"unseen\">Recordings"
        "</caption><thead><tr>");
    for (const std::string_view head : kHeads) {
        sink("<th scope=\"col\"><button type=\"button\">" + std::string(head) + "</button></th>");
    }
    sink("<th scope=\"col\">Picture</th></tr></thead><tbody id=\"rows\">\n");
    for (const IndexRow& row : rows) {
        sink(rowText(row));
    }
    sink("</tbody></table></main>\n<script>\n\"use strict\";\n(() => {\n");
    sink(kIndexScript);
    sink("})();\n</script>\n</body>\n</html>\n");
}

} // namespace OrvComtradePage
