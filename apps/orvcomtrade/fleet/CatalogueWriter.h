#pragma once

#include "fleet/Database.h"
#include "output/json.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Numbers of rows in a catalogue.
struct CatalogueCounts {
    std::int64_t archives = 0;
    std::int64_t recordings = 0;
    std::int64_t unreadable = 0;
    std::int64_t events = 0;
};

/// Fills an empty database with the tables of a catalogue. Memory does not grow with the number of recordings.
class CatalogueWriter {
public:
    /// All members throw a Failure that names `shown` if something fails.
    CatalogueWriter(const std::string& path, const std::string& shown);

    /// Whether an archive of this folder has been added.
    bool hasArchive(const std::string& root) const { return _roots.count(root) != 0; }

    /// Adds an archive, the first of its folder, and returns its number.
    std::int64_t addArchive(const Json& header);

    /// Adds a line of a shard's file. Throws what the JSON library throws if it is not one.
    void addRecording(std::int64_t archive, std::string_view line);

    /// Makes the indexes and commits: everything is one transaction.
    CatalogueCounts finish();

private:
    bool _isNewLayout(std::int64_t layout);
    void _addRates(const std::vector<double>& rates);
    void _addLayout(std::int64_t layout, const Json& line);
    void _addRow(std::int64_t archive, const Json& line, const std::optional<std::int64_t>& layout);
    void _addEvents(const Json& line);
    void _addFindings(const Json& line);

    Database _database;
    Statement _archive;
    Statement _recording;
    Statement _knownLayout;
    Statement _layout;
    Statement _channel;
    Statement _event;
    Statement _finding;
    std::set<std::string> _roots; ///< of the archives
    CatalogueCounts _counts;
};
