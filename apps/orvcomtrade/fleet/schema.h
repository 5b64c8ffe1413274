#pragma once

/// Marks a file as a catalogue: the application ID in the header of an SQLite file, "ORVC".
constexpr int kCatalogueId = 0x4F525643;

/// To be raised with every change of the tables after which an older program would read them wrongly.
constexpr int kCatalogueVersion = 1;

/// Tables of a catalogue; docs/fleet.md says what they hold.
constexpr const char* kCatalogueTables = R"sql(
CREATE TABLE archive (
    archive INTEGER PRIMARY KEY,
    root TEXT NOT NULL UNIQUE,
    root_bytes TEXT
);
CREATE TABLE layout (
    layout INTEGER PRIMARY KEY,
    analog_channels INTEGER NOT NULL,
    status_channels INTEGER NOT NULL
);
CREATE TABLE channel (
    layout INTEGER NOT NULL REFERENCES layout,
    kind TEXT NOT NULL CHECK (kind IN ('analog', 'status')),
    number INTEGER NOT NULL,
    name TEXT NOT NULL,
    id TEXT NOT NULL,
    phase TEXT NOT NULL,
    component TEXT NOT NULL,
    unit TEXT,
    side TEXT,
    primary_factor REAL,
    secondary_factor REAL,
    skew REAL,
    normal INTEGER,
    PRIMARY KEY (layout, kind, number)
) WITHOUT ROWID;
CREATE TABLE recording (
    recording INTEGER PRIMARY KEY,
    archive INTEGER NOT NULL REFERENCES archive,
    path TEXT NOT NULL,
    path_bytes TEXT,
    readable INTEGER NOT NULL,
    verdict TEXT,
    error TEXT,
    station TEXT,
    recorder TEXT,
    revision INTEGER,
    data_type TEXT,
    start TEXT,
    "trigger" TEXT,
    start_ns INTEGER,
    trigger_ns INTEGER,
    time_code TEXT,
    local_code TEXT,
    time_quality TEXT,
    leap_second TEXT,
    line_frequency REAL,
    rate REAL,
    rates TEXT,
    samples INTEGER,
    samples_declared INTEGER,
    duration REAL,
    encoding TEXT,
    layout INTEGER REFERENCES layout,
    events INTEGER,
    bytes INTEGER NOT NULL,
    modified TEXT,
    digest TEXT,
    tool TEXT NOT NULL
);
CREATE TABLE event (
    recording INTEGER NOT NULL REFERENCES recording,
    number INTEGER NOT NULL,
    time REAL NOT NULL,
    clock TEXT,
    state INTEGER NOT NULL
);
CREATE TABLE finding (
    recording INTEGER NOT NULL REFERENCES recording,
    code TEXT NOT NULL,
    severity TEXT NOT NULL,
    places INTEGER NOT NULL
);
)sql";

/// Indexes are made after the tables are filled, which is faster.
constexpr const char* kCatalogueIndexes = R"sql(
CREATE UNIQUE INDEX recording_path ON recording (archive, path, path_bytes);
CREATE INDEX recording_station_start ON recording (station, start);
CREATE INDEX recording_start ON recording (start);
CREATE INDEX recording_trigger ON recording (trigger_ns);
CREATE INDEX recording_recorder ON recording (recorder, start);
CREATE INDEX recording_layout ON recording (layout);
CREATE INDEX recording_digest ON recording (digest);
CREATE INDEX channel_name ON channel (name);
CREATE INDEX event_recording ON event (recording, time);
CREATE INDEX finding_recording ON finding (recording);
CREATE INDEX finding_code ON finding (code, recording);
CREATE VIEW event_of_channel AS
    SELECT event.recording, recording.station, recording.recorder, recording.path, event.time, event.clock,
           event.number, channel.name, channel.normal, event.state
    FROM event JOIN recording USING (recording)
    JOIN channel ON channel.layout = recording.layout AND channel.kind = 'status' AND channel.number = event.number;
CREATE VIEW channel_of_recording AS
    SELECT recording.recording, recording.station, recording.recorder, recording.path, channel.*
    FROM recording JOIN channel USING (layout);
)sql";
