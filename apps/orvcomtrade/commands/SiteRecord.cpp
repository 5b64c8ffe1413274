#include "commands/SiteRecord.h"

#include "input/fileTime.h"
#include "output/json.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <sys/stat.h>

namespace {

constexpr const char* kMaker = "orvcomtrade " ORVCOMTRADE_VERSION;

std::optional<SourceFile> sourceAt(const std::string& path) {
    struct stat status = {};
    if (path.empty() || stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return SourceFile{path, static_cast<std::uint64_t>(status.st_size), modifiedAt(status)};
}

Json rowValue(const OrvComtradePage::IndexRow& row) {
    return {{"file", row.file},
            {"link", row.link},
            {"error", row.error},
            {"start", row.start},
            {"station", row.station},
            {"recorder", row.recorder},
            {"duration", row.duration},
            {"analog", row.analog},
            {"status", row.status},
            {"operated", row.operated},
            {"operatedCount", row.operatedCount},
            {"verdict", row.verdict},
            {"sentence", row.sentence},
            {"picture", row.picture}};
}

OrvComtradePage::IndexRow rowOf(const Json& value) {
    OrvComtradePage::IndexRow row;
    row.file = value.at("file");
    row.link = value.at("link");
    row.error = value.at("error");
    row.start = value.at("start");
    row.station = value.at("station");
    row.recorder = value.at("recorder");
    row.duration = value.at("duration");
    row.analog = value.at("analog");
    row.status = value.at("status");
    row.operated = value.at("operated").get<std::vector<std::string>>();
    row.operatedCount = value.at("operatedCount");
    row.verdict = value.at("verdict");
    row.sentence = value.at("sentence");
    row.picture = value.at("picture");
    return row;
}

SitePage pageOf(const Json& value) {
    SitePage page;
    page.row = rowOf(value.at("row"));
    for (const Json& source : value.at("sources")) {
        page.sources.push_back({source.at(0), source.at(1), source.at(2)});
    }
    return page;
}

} // namespace

std::vector<SourceFile> sourcesOf(const std::string& cfgFile, const std::string& datFile) {
    std::vector<std::string> paths = {cfgFile, datFile};
    for (const char* const extension : {".hdr", ".HDR", ".inf", ".INF"}) {
        paths.push_back(std::filesystem::path(cfgFile).replace_extension(extension).string());
    }
    std::vector<SourceFile> sources;
    for (const std::string& path : paths) {
        std::optional<SourceFile> source = sourceAt(path);
        if (source) {
            sources.push_back(std::move(*source));
        }
    }
    return sources;
}

SiteRecord SiteRecord::read(const std::string& file, const std::string& options) {
    SiteRecord record;
    std::ifstream stream(file);
    std::stringstream text;
    text << stream.rdbuf();
    constexpr bool throws = false;
    const std::string bytes = text.str();
    if (isNestedDeeply(bytes)) {
        return {};
    }
    const Json value = Json::parse(bytes, nullptr, throws);
    try {
        if (!value.is_object() || value.at("program") != kMaker || value.at("options") != options) {
            return {};
        }
        for (const auto& [path, page] : value.at("pages").items()) {
            record.add(path, pageOf(page));
        }
    } catch (const Json::exception&) { // not what this program writes
        return {};
    }
    return record;
}

const SitePage* SiteRecord::current(const std::string& path) const {
    const auto page = _pages.find(path);
    if (page == _pages.end() || page->second.sources.size() < 2) {
        return nullptr; // data that were not there may be there now
    }
    const std::vector<SourceFile>& sources = page->second.sources;
    return sourcesOf(sources[0].path, sources[1].path) == sources ? &page->second : nullptr;
}

std::string SiteRecord::text(const std::string& options) const {
    Json value = {{"program", kMaker}, {"options", options}, {"pages", Json::object()}};
    for (const auto& [path, page] : _pages) {
        Json sources = Json::array();
        for (const SourceFile& source : page.sources) {
            sources.push_back({source.path, source.size, source.modified});
        }
        value["pages"][path] = {{"row", rowValue(page.row)}, {"sources", std::move(sources)}};
    }
    constexpr int noIndent = -1;
    constexpr bool isAscii = true;
    return value.dump(noIndent, ' ', isAscii, Json::error_handler_t::replace) + "\n";
}
