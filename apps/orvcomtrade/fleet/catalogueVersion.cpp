#include "fleet/catalogueVersion.h"

#include "fleet/Database.h"
#include "fleet/schema.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

void requireKnownCatalogue(const std::string& path) {
    std::int64_t id = 0;
    std::int64_t version = 0;
    try {
        Database database(path, Database::Mode::Read, path);
        id = database.number("PRAGMA application_id");
        version = database.number("PRAGMA user_version");
    } catch (const Failure& failure) {
        throw Failure(failure.status, fmt::format("{}: not a catalogue", failure.what()));
    }
    if (id != kCatalogueId) {
        throw Failure(kRecordingProblem, fmt::format("{}: not a catalogue", printable(path)));
    }
    if (version > kCatalogueVersion) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: a catalogue of version {}, and this program knows version {} at most",
                                  printable(path), version, kCatalogueVersion));
    }
}
