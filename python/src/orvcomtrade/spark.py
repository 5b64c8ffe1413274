"""Archives of recordings as tables of Apache Spark 4.

    from orvcomtrade import spark as comtrade

    comtrade.register(spark)
    recordings = spark.read.format("comtrade").load("s3a://bucket/archive")
    samples = spark.read.format("comtrade").option("shape", "samples").option("channels", "IA,IB").load("/archive")

A recording that can't be read is a row with its ``error``, never a failed job. A worker that has no room or no
connection fails its task, so that another one reads the recordings. Options:

========================  =============================================================================================
``shape``                 ``recordings`` (a row each), ``samples`` (a row per channel and sample), ``wide`` (a row per
                          sample, a column for each of ``channels``), ``events`` (a row per change of a status channel)
``channels``              names of channels with commas between them; a recording that lacks one has no rows for it
``start``, ``stop``       seconds from the first sample, or dates by the recorder's clock; only these samples are read
``side``                  ``recorded``, ``primary`` or ``secondary``
``encoding``              of the texts; detected if it is not given
``batchBytes``            bytes of recordings that a task reads (128 MiB)
``storageOptions``        of fsspec's file system, as a JSON object
========================  =============================================================================================

The package has to be installed where the executors run.
"""

from __future__ import annotations

import errno
import json
import os
import urllib.parse
from collections.abc import Iterator, Mapping
from typing import TYPE_CHECKING, Any

import pyarrow as pa
from pyspark.sql.datasource import DataSource, DataSourceReader, InputPartition

from .archives import Place, Store
from .data import Data
from .findings import ComtradeError
from .opening import Wanted, findings_of, open_readable
from .recording import Recording
from .sources import Files

if TYPE_CHECKING:
    from pyspark.sql import SparkSession

BATCH_BYTES = 128 << 20
#: Rows that go to Spark at once: a batch costs time of its own, however short.
BATCH_ROWS = 1 << 16
#: Tasks that a small archive is divided into, so that more than one processor has something to do.
LEAST_TASKS = 16

RECORDINGS = """
    path string, path_bytes string, error string, station string, recorder string, revision int, data_type string,
    start timestamp_ntz, `trigger` timestamp_ntz, time_code string, line_frequency double, rate double,
    samples bigint, samples_declared bigint, encoding string,
    channels array<struct<kind: string, number: int, name: string, unit: string, side: string>>,
    findings array<struct<code: string, severity: string, places: bigint>>, bytes bigint, modified timestamp_ntz
"""
SAMPLES = "path string, error string, station string, channel string, unit string, time double, value double"
EVENTS = "path string, error string, station string, channel string, time double, clock timestamp_ntz, state boolean"
SHAPES = ("recordings", "samples", "wide", "events")
#: What a worker lacks: a disk with room, files that it may open.
LACKING = (errno.ENOSPC, errno.EDQUOT, errno.EMFILE, errno.ENFILE)
#: What clients of stores raise if there is no connection; they are imported only where they are used.
UNCONNECTED = (
    "aiohttp.client_exceptions.ClientConnectionError",
    "botocore.exceptions.ConnectionError",
    "botocore.exceptions.HTTPClientError",
    "botocore.exceptions.NoCredentialsError",
)

Row = dict[str, Any]


class Batch(InputPartition):
    """Recordings that one task reads."""

    def __init__(self, places: list[Place]) -> None:
        super().__init__(None)
        self.places = places


def batches(places: Iterator[Place], most: int) -> list[Batch]:
    """Divide recordings into batches of about as many bytes, in order."""
    every = list(places)
    total = sum(place.bytes for place in every)
    limit = min(most, total // LEAST_TASKS + 1)
    divided: list[Batch] = []
    held: list[Place] = []
    size = 0
    for place in every:
        if held and size + place.bytes > limit:
            divided.append(Batch(held))
            held, size = [], 0
        held.append(place)
        size += place.bytes
    return [*divided, Batch(held)] if held else divided


def shown(path: str) -> str:
    """Return a path as UTF-8; other bytes become U+FFFD."""
    return os.fsencode(path).decode("utf-8", "replace")


def path_bytes(path: str) -> str | None:
    """Return the bytes of a path that is not UTF-8, percent-encoded."""
    raw = os.fsencode(path)
    return None if raw == shown(path).encode() else urllib.parse.quote_from_bytes(raw, "/-._~")


class ComtradeSource(DataSource):
    """The data source ``comtrade``."""

    def __init__(self, options: Mapping[str, str]) -> None:
        super().__init__(dict(options))
        self.wanted = _Options(options)

    @classmethod
    def name(cls) -> str:
        """Name that ``format`` takes."""
        return "comtrade"

    def schema(self) -> str:
        """Columns of the shape."""
        if self.wanted.shape == "recordings":
            return RECORDINGS
        if self.wanted.shape == "samples":
            return SAMPLES
        if self.wanted.shape == "events":
            return EVENTS
        columns = [f"`{name.replace('`', '``')}` double" for name in self.wanted.channels or ()]
        return "path string, error string, station string, time double, " + ", ".join(columns)

    def reader(self, schema: Any) -> ComtradeReader:
        """Return what plans and reads."""
        return ComtradeReader(self.wanted, schema)


class _Options:
    """The options, understood."""

    def __init__(self, given: Mapping[str, str]) -> None:
        options = {name.lower(): value for name, value in given.items()}
        known = {
            "path",
            "paths",
            "shape",
            "channels",
            "start",
            "stop",
            "side",
            "encoding",
            "batchbytes",
            "storageoptions",
        }
        unknown = sorted(set(options) - known)
        if unknown:
            raise ValueError(f"no option {', '.join(unknown)}; there are {', '.join(sorted(known - {'paths'}))}")
        self.shape = options.get("shape", "recordings")
        if self.shape not in SHAPES:
            raise ValueError(f"shape is one of {', '.join(SHAPES)}, not {self.shape!r}")
        names = [name.strip() for name in options.get("channels", "").split(",") if name.strip()]
        self.channels = tuple(names) or None
        if self.shape == "wide" and not self.channels:
            raise ValueError("the shape wide needs channels: they are its columns")
        self.start, self.stop = (_moment(options.get(name)) for name in ("start", "stop"))
        self.side: Any = options.get("side", "recorded")
        self.encoding = options.get("encoding")
        self.batch_bytes = int(options.get("batchbytes", BATCH_BYTES))
        if self.batch_bytes < 1:
            raise ValueError(f"batchBytes is a number of bytes above 0, not {self.batch_bytes}")
        self.storage_options: dict[str, Any] = json.loads(options.get("storageoptions", "{}"))
        paths = json.loads(options["paths"]) if "paths" in options else [options.get("path", "")]
        if not paths or not all(paths):
            raise ValueError('a folder is needed: load("/archive")')
        self.stores = [Store(path, self.storage_options) for path in paths]


def _moment(text: str | None) -> float | str | None:
    if text is None:
        return None
    try:
        return float(text)
    except ValueError:
        return text


class ComtradeReader(DataSourceReader):
    """Plans batches where the driver runs, and reads them where executors do."""

    def __init__(self, wanted: _Options, schema: Any) -> None:
        from pyspark.sql.pandas.types import to_arrow_schema

        self.wanted = wanted
        self.schema: pa.Schema = to_arrow_schema(schema)

    def partitions(self) -> list[InputPartition]:
        """Divide the recordings into tasks; fails where the archive can't be listed."""
        planned: list[InputPartition] = []
        for number, store in enumerate(self.wanted.stores):
            for batch in batches(store.places(), self.wanted.batch_bytes):
                batch.value = number
                planned.append(batch)
        return planned

    def read(self, partition: InputPartition) -> Iterator[pa.RecordBatch]:
        """Read a batch."""
        return merged(self._read_each(partition))

    def _read_each(self, partition: InputPartition) -> Iterator[pa.RecordBatch]:
        if not isinstance(partition, Batch):  # of an archive without recordings
            return
        store = self.wanted.stores[partition.value]
        give = {"recordings": self._recording, "samples": self._samples, "wide": self._wide, "events": self._events}
        for place in partition.places:
            try:
                columns = list(give[self.wanted.shape](store, place))
            except MemoryError:
                raise
            except Exception as error:  # whatever a client of a store raises
                if is_of_the_worker(error):
                    raise
                if is_no_recording(error, place):
                    continue
                row: Row = {"path": shown(place.path), "error": str(error) or type(error).__name__}
                if self.wanted.shape == "recordings":
                    row |= _facts_of(place)
                columns = [{name: [value] for name, value in row.items()}]
            for found in columns:
                yield self._batch(found)

    def _batch(self, columns: Row) -> pa.RecordBatch:
        """Make a batch of the columns that there are; the others are null."""
        length = next(len(values) for values in columns.values())
        arrays = []
        for field in self.schema:
            values = columns.get(field.name)
            if values is None:
                arrays.append(pa.nulls(length, field.type))
            elif isinstance(values, pa.Array):
                arrays.append(values.cast(field.type))
            else:
                arrays.append(pa.array(values, field.type))
        return pa.RecordBatch.from_arrays(arrays, schema=self.schema)

    def _open(self, files: Files) -> tuple[Any, Any]:
        return open_readable(files, Wanted(self.wanted.side, self.wanted.encoding))

    def _read(self, store: Store, place: Place, *, status_only: bool = False) -> Recording | None:
        """Read the channels and samples that are wanted; None if the recording has none of the channels."""
        files = store.files(place)
        opened, header = self._open(files)
        infos = [*([] if status_only else header.analog), *header.status]
        names = self.wanted.channels
        if names is None:
            labels = [info.label for info in (header.status if status_only else header.analog)]
        else:
            labels = [info.label for info in infos if info.label in names or info.id in names]
        if not labels:
            return None
        wanted = Wanted(self.wanted.side, self.wanted.encoding, tuple(labels), self.wanted.start, self.wanted.stop)
        return Recording(Data(opened, header, wanted, files))

    def _recording(self, store: Store, place: Place) -> Iterator[Row]:
        opened, header = self._open(store.files(place))
        kinds: dict[tuple[str, str], int] = {}
        for finding in findings_of(opened, header.path):
            key = (finding.code, finding.severity)
            kinds[key] = kinds.get(key, 0) + finding.places
        channels = [
            {"kind": kind, "number": info.index + 1, "name": info.label}
            | ({"unit": info.unit, "side": info.side} if kind == "analog" else {"unit": None, "side": None})
            for kind, infos in (("analog", header.analog), ("status", header.status))
            for info in infos
        ]
        row: Row = _facts_of(place) | {
            "path": shown(place.path),
            "station": header.station,
            "recorder": header.recorder,
            "revision": header.revision,
            "data_type": header.data_type,
            "start": None if header.start is None else header.start.astype("datetime64[us]").item(),
            "trigger": None if header.trigger is None else header.trigger.astype("datetime64[us]").item(),
            "time_code": header.time_code or None,
            "line_frequency": header.line_frequency,
            "rate": None if header.times_are_stamped else max(rate.rate for rate in header.sampling_rates),
            "samples": header.samples,
            "samples_declared": header.samples_declared,
            "encoding": header.encoding,
            "channels": channels,
            "findings": [
                {"code": code, "severity": severity, "places": places} for (code, severity), places in kinds.items()
            ],
        }
        yield {name: [value] for name, value in row.items()}

    def _samples(self, store: Store, place: Place) -> Iterator[Row]:
        recording = self._read(store, place)
        if recording is None or len(recording) == 0:
            return
        time = pa.array(recording.time)
        for channel in [*recording.analog, *recording.status]:
            yield {
                "path": _repeated(shown(place.path), len(recording)),
                "station": _repeated(recording.station, len(recording)),
                "channel": _repeated(channel.label, len(recording)),
                "unit": _repeated(getattr(channel, "unit", None), len(recording)),
                "time": time,
                "value": pa.array(channel.values, pa.float64(), from_pandas=True)
                if channel.values.dtype != bool
                else pa.array(channel.values.astype("float64")),
            }

    def _wide(self, store: Store, place: Place) -> Iterator[Row]:
        recording = self._read(store, place)
        if recording is None or len(recording) == 0:
            return
        columns: Row = {
            "path": _repeated(shown(place.path), len(recording)),
            "station": _repeated(recording.station, len(recording)),
            "time": pa.array(recording.time),
        }
        for channel in [*recording.analog, *recording.status]:
            name = channel.label if channel.label in (self.wanted.channels or ()) else channel.id
            columns.setdefault(name, pa.array(channel.values.astype("float64"), from_pandas=True))
        yield columns

    def _events(self, store: Store, place: Place) -> Iterator[Row]:
        recording = self._read(store, place, status_only=True)
        events = [] if recording is None else recording.events()
        if recording is None or not events:
            return
        yield {
            "path": _repeated(shown(place.path), len(events)),
            "station": _repeated(recording.station, len(events)),
            "channel": [event.channel for event in events],
            "time": [event.time for event in events],
            "clock": [
                None if event.datetime is None else event.datetime.astype("datetime64[us]").item() for event in events
            ],
            "state": [event.state for event in events],
        }


def merged(parts: Iterator[pa.RecordBatch]) -> Iterator[pa.RecordBatch]:
    """Return the same rows in batches of at least `BATCH_ROWS` rows; only the last may be shorter."""
    held: list[pa.RecordBatch] = []
    rows = 0
    for part in parts:
        held.append(part)
        rows += part.num_rows
        if rows >= BATCH_ROWS:
            yield from pa.Table.from_batches(held).combine_chunks().to_batches()
            held, rows = [], 0
    if held:
        yield from pa.Table.from_batches(held).combine_chunks().to_batches()


def _facts_of(place: Place) -> Row:
    """Return what is known without opening the recording."""
    import datetime as dt

    modified = None
    if place.modified is not None:
        modified = dt.datetime.fromtimestamp(place.modified, dt.UTC).replace(tzinfo=None)
    return {"path_bytes": path_bytes(place.path), "bytes": place.bytes, "modified": modified}


def _repeated(text: str | None, count: int) -> pa.Array:
    return pa.repeat(pa.scalar(text, pa.string()), count)


def is_no_recording(error: Exception, place: Place) -> bool:
    """Whether what was taken for a configuration is something else, such as the settings of a program."""
    findings = error.findings if isinstance(error, ComtradeError) else ()
    configuration = posix_stem(place.path)
    return any(
        finding.code == "not-a-recording" and posix_stem(finding.file) == configuration and not is_data(finding.file)
        for finding in findings
    )


def is_of_the_worker(error: Exception) -> bool:
    """Whether a worker lacks room or a connection, so that the recording may be read at another time or place."""
    if isinstance(error, OSError) and error.errno in LACKING:
        return True
    bases = {f"{base.__module__}.{base.__qualname__}" for base in type(error).__mro__}
    return isinstance(error, (ConnectionError, TimeoutError)) or not bases.isdisjoint(UNCONNECTED)


def posix_stem(path: str) -> str:
    """Return a path without its extension, in lower case."""
    return os.path.splitext(shown(path))[0].lower()


def is_data(path: str) -> bool:
    """Whether it is the path of a data file."""
    return path.lower().endswith(".dat")


def register(session: SparkSession) -> None:
    """Make the format ``comtrade`` known to a session."""
    session.dataSource.register(ComtradeSource)


def write_parquet(session: SparkSession, source: str, target: str, **options: str) -> int:
    """Write an archive as files of Parquet: what ``DataFrame.write`` of its table gives, for less processor time.

    Workers write what they read, and no row passes Spark's own engine. The table is as it was read: to select or sort,
    use ``DataFrame.write``. A file appears in `target` once the job has succeeded, and ``_SUCCESS`` after all of them.

        comtrade.write_parquet(spark, "/archive", "/parquet/samples", shape="samples", channels="IA,IB")

    :param session: of Spark itself, not of Spark Connect.
    :param source: folder or URL of the recordings.
    :param target: folder or URL that all workers can reach; it must be empty.
    :param options: those of the data source; ``storageOptions`` apply to `source` and to `target`.
    :return: number of rows.
    :raises FileExistsError: if there is something in `target`.
    """
    from . import spark_writing

    return spark_writing.write_parquet(session, source, target, options)
