#pragma once

#include "fleet/Database.h"
#include "input/RecordingFilter.h"
#include "input/RecordingRow.h"
#include "input/collectRecordings.h"

#include <cstdint>
#include <map>
#include <string>

/// Whether a path is that of a catalogue, or is meant to be one: a file with the extension `.sqlite`, or any other that
/// is not a recording and begins like an SQLite database.
bool isCatalogue(const std::string& path);

/// Which recordings of a catalogue are wanted, and where they are.
struct CatalogueRequest {
    std::string root;       ///< folder that its paths are relative to; empty: the one that it names
    RecordingFilter filter; ///< applies to folders too
};

/// The recordings of a catalogue, in the order of their paths. Their files are not looked at. Memory does not grow with
/// their number. Throws a Failure for a damaged catalogue, and for a file that is not one or has an unknown version.
class CatalogueReader {
public:
    /// `request` must outlive this object.
    CatalogueReader(const std::string& path, const CatalogueRequest& request);

    /// Goes to the next recording that is wanted, if there is one.
    bool next();

    const RecordingRow& row() const { return _row; }

    /// Folder that the path of the row is relative to.
    const std::string& root() const { return _root; }

    std::int64_t archives() const { return _archives; } ///< folders that it knows

    /// Path of the row, below its root.
    const std::string& pathBelowRoot() const { return _pathBelowRoot; }

private:
    bool _isWanted();
    bool _hasWantedChannel();
    void _takeRow();

    const CatalogueRequest& _request;
    Database _database;
    Statement _rows;
    Statement _channels;
    const std::int64_t _archives;
    std::map<std::int64_t, bool> _wantedLayouts;
    std::string _root;
    std::string _pathBelowRoot;
    RecordingRow _row;
};

/// The wanted recordings of a catalogue, as entries to open. `isOne` says that the command line names nothing else. A
/// recording whose files are gone is an entry with a problem. Throws what the reader throws, and a Failure if the
/// folder of an archive does not exist.
EntryList recordingsInCatalogue(const std::string& path, const CatalogueRequest& request, bool isOne);
