#pragma once

#include "fleet/Database.h"
#include "input/RecordingFilter.h"
#include "input/RecordingRow.h"
#include "input/collectRecordings.h"

#include <cstdint>
#include <map>
#include <string>

/// Whether a path is that of a catalogue, or of what is meant to be one: a file with the extension `.sqlite`, or any
/// other that is no recording and begins as an SQLite database does.
bool isCatalogue(const std::string& path);

/// Which recordings of a catalogue are asked for, and where they are.
struct CatalogueRequest {
    std::string root;       ///< folder that its paths are relative to; empty: the one that it names
    RecordingFilter filter; ///< for folders too
};

/// The recordings of a catalogue, in the order of their paths, without a look at one of them. Memory does not grow with
/// their number. Throws a Failure for what is no catalogue that this program knows, or a damaged one.
class CatalogueReader {
public:
    /// `request` must outlive this object.
    CatalogueReader(const std::string& path, const CatalogueRequest& request);

    /// Goes to the next recording that is asked for, if there is one.
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

/// The recordings of a catalogue that are asked for, to be opened; `isOne`: nothing else is. One whose files have gone
/// is an entry with a problem. Throws what the reader throws, and a Failure where the folder of an archive is not
/// there.
EntryList recordingsInCatalogue(const std::string& path, const CatalogueRequest& request, bool isOne);
