#include "fleet/catalogueVersion.h"

#include "fleet/Database.h"
#include "fleet/schema.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

void requireKnownCatalogue(const std::string& path) {
    Database database(path, Database::Mode::Read, path);
    const std::int64_t id = database.number("PRAGMA application_id");
    const std::int64_t version = database.number("PRAGMA user_version");
    if (id != kCatalogueId) {
        throw Failure(kRecordingProblem, fmt::format("{}: not a catalogue", printable(path)));
    }
    if (version > kCatalogueVersion) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: a catalogue of version {}, and this program knows version {} at most",
                                  printable(path), version, kCatalogueVersion));
    }
}
