"""Archives as tables of Spark: scripts/fleet runs these, where Spark is installed."""

from __future__ import annotations

import errno
import importlib
import shutil
import zipfile
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pytest

pytest.importorskip("pyspark")

import pyarrow as pa
import pyspark.sql
import pyspark.sql.types
from conftest import EXAMPLES, ROOT

import orvcomtrade as oc
from orvcomtrade import spark as comtrade
from orvcomtrade.archives import Store


@pytest.fixture(scope="module")
def session() -> Iterator[Any]:
    builder = pyspark.sql.SparkSession.builder.master("local[1]")
    for name, value in {
        "spark.ui.enabled": "false",
        "spark.driver.host": "127.0.0.1",
        "spark.driver.bindAddress": "127.0.0.1",
        "spark.sql.shuffle.partitions": "1",
    }.items():
        builder = builder.config(name, value)
    made = builder.getOrCreate()
    comtrade.register(made)
    yield made
    made.stop()


@pytest.fixture
def archive(tmp_path: Path, feeder: Path, line: Path) -> Path:
    """Give two recordings, one of them in an archive, an empty one, one of a name in another code page, settings."""
    for extension in (".cfg", ".dat"):
        shutil.copy(feeder.with_suffix(extension), tmp_path / f"a{extension.upper()}")
        shutil.copy(bytes(feeder.with_suffix(extension)), bytes(tmp_path) + b"/\xcf\xd1" + extension.encode())
    with zipfile.ZipFile(tmp_path / "packed.zip", "w") as packed:
        packed.write(line, "in/Line.CFG")
        packed.write(line.with_suffix(".dat"), "in/line.dat")
    (tmp_path / "empty.cfg").touch()
    (tmp_path / "setup.cfg").write_text("[metadata]\nname = tool\n")
    return tmp_path


def load(session: Any, path: Path | str, **options: str) -> list[Any]:
    rows: list[Any] = session.read.format("comtrade").options(**options).load(str(path)).collect()
    return rows


def test_recordings_are_rows_and_so_are_errors(session: Any, archive: Path) -> None:
    rows = {row.path.removeprefix(f"{archive}/"): row for row in load(session, archive)}
    assert sorted(rows) == ["a.CFG", "empty.cfg", "packed.zip/in/Line.CFG", "\ufffd\ufffd.cfg"]
    assert rows["empty.cfg"].error.startswith(f"{archive}/empty.cfg: empty-cfg")
    assert rows["empty.cfg"].station is None
    assert rows["\ufffd\ufffd.cfg"].path_bytes == f"{archive}/%CF%D1.cfg"
    feeder = rows["a.CFG"]
    assert (feeder.error, feeder.station, feeder.samples, feeder.rate) == (None, "Ozernaya 35/10 kV", 700, 1000.0)
    assert feeder.start.isoformat() == "2019-03-14T06:41:17.322000"
    assert [channel.name for channel in feeder.channels][:2] == ["IA", "IB"]
    found = [(finding.code, finding.places) for finding in rows["packed.zip/in/Line.CFG"].findings]
    assert found == [("line-ends", 22), ("encoding", 13)]


def test_samples_are_those_of_read(session: Any, archive: Path, feeder: Path) -> None:
    options = {"shape": "samples", "channels": "IB,Trip", "start": "0.1", "stop": "0.102"}
    rows = [row for row in load(session, archive, **options) if row.path.endswith("/a.CFG")]
    part = oc.read(feeder, channels=["IB", "Trip"], start=0.1, stop=0.102)
    expected: list[tuple[str, str | None, Any, Any]]
    expected = [("IB", "A", t, v) for t, v in zip(part.time, part.analog[0].values, strict=True)]
    expected += [("Trip", None, t, float(v)) for t, v in zip(part.time, part.status[0].values, strict=True)]
    assert [(row.channel, row.unit, row.time, row.value) for row in rows] == expected


def test_wide_has_a_column_for_each_channel(session: Any, archive: Path, feeder: Path) -> None:
    rows = load(session, archive, shape="wide", channels="IB,none,Trip", start="0.138", stop="0.138")
    rows = [row for row in rows if row.path.endswith("/a.CFG")]
    value = float(oc.read(feeder).analog["IB"].values[138])
    assert [(row.time, row.IB, row.none, row.Trip) for row in rows] == [(0.138, value, None, 1.0)]


def test_events_are_those_of_the_recording(session: Any, archive: Path, feeder: Path) -> None:
    rows = [row for row in load(session, archive, shape="events") if row.path.endswith("/a.CFG")]
    expected = [(event.time, event.channel, event.state) for event in oc.read(feeder).events()]
    assert [(row.time, row.channel, row.state) for row in rows] == expected


@pytest.mark.parametrize(
    ("options", "sentence"),
    [
        ({"shape": "long"}, "shape is one of recordings, samples, wide, events"),
        ({"shape": "wide"}, "the shape wide needs channels"),
        ({"chanels": "IA"}, "no option chanels"),
        ({"batchBytes": "0"}, "batchBytes is a number of bytes above 0"),
    ],
)
def test_wrong_options_are_refused(session: Any, archive: Path, options: dict[str, str], sentence: str) -> None:
    with pytest.raises(Exception, match=sentence):
        load(session, archive, **options)


def test_folder_that_is_not_there_is_an_error(session: Any, tmp_path: Path) -> None:
    with pytest.raises(Exception, match="cannot be listed"):
        load(session, tmp_path / "none")


@pytest.mark.parametrize(
    ("error", "fails"),
    [
        (OSError(errno.ENOSPC, "No space left on device"), True),
        (ConnectionRefusedError("refused"), True),
        (TimeoutError(), True),
        (PermissionError(errno.EACCES, "Permission denied"), False),
        (OSError(errno.EIO, "Input/output error"), False),
    ],
)
def test_worker_without_room_or_connection_fails_its_task(
    session: Any, archive: Path, monkeypatch: pytest.MonkeyPatch, error: Exception, fails: bool
) -> None:
    def files(*_: Any) -> Any:
        raise error

    monkeypatch.setattr(Store, "files", files)
    source = comtrade.ComtradeSource({"path": str(archive)})
    reader = source.reader(pyspark.sql.types.StructType.fromDDL(source.schema()))
    batch = reader.partitions()[0]
    if fails:
        with pytest.raises(type(error)):
            list(reader.read(batch))
    else:
        assert [rows.to_pylist()[0]["error"] for rows in reader.read(batch)] == [str(error)] * len(batch.places)


def test_parquet_of_an_archive_is_read_by_others(session: Any, archive: Path, tmp_path: Path, feeder: Path) -> None:
    duckdb = pytest.importorskip("duckdb")
    polars = pytest.importorskip("polars")
    frame = session.read.format("comtrade").option("shape", "samples").option("channels", "IA").load(str(archive))
    frame.write.partitionBy("station").parquet(str(tmp_path / "parquet"))
    expected = 2 * float(oc.read(feeder).analog["IA"].values.sum())
    files = f"{tmp_path}/parquet/station=Ozernaya*/*.parquet"
    assert duckdb.read_parquet(files).sum("value").fetchall()[0][0] == pytest.approx(expected)
    assert polars.scan_parquet(files).collect()["value"].sum() == pytest.approx(expected)


@pytest.mark.parametrize("shape", ["recordings", "samples", "events"])
def test_parquet_that_workers_write_has_the_same_rows(session: Any, archive: Path, tmp_path: Path, shape: str) -> None:
    target = tmp_path / "parquet" / shape
    rows = comtrade.write_parquet(session, str(archive), str(target), shape=shape)
    table = session.read.format("comtrade").option("shape", shape).load(str(archive))
    written = session.read.parquet(str(target))
    assert written.schema == table.schema
    assert rows == written.count()
    assert sorted(map(str, written.collect())) == sorted(map(str, table.collect()))
    assert {path.suffix for path in target.iterdir() if path.name != "_SUCCESS"} == {".parquet"}
    with pytest.raises(FileExistsError):
        comtrade.write_parquet(session, str(archive), str(target), shape=shape)


def test_short_batches_are_merged() -> None:
    schema = pa.schema({"n": pa.int64()})
    parts = [pa.record_batch([pa.array([n] * 30_000)], schema=schema) for n in range(5)]
    found = list(comtrade.merged(iter(parts)))
    assert [batch.num_rows for batch in found] == [90_000, 60_000]
    assert [batch.column(0)[0].as_py() for batch in found] == [0, 3]
    assert list(comtrade.merged(iter([]))) == []


def rounded(rows: list[Any]) -> list[Any]:
    """Give the rows in one order; engines add up in different ones."""
    return sorted((tuple(round(v, 6) if isinstance(v, float) else v for v in row) for row in rows), key=str)


def test_questions_of_the_document_have_the_same_answers_in_duckdb(
    session: Any, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    duckdb = pytest.importorskip("duckdb")
    monkeypatch.syspath_prepend(str(ROOT / "docs" / "site"))
    document = importlib.import_module("project_markdown").Document(ROOT / "docs" / "fleet.md")
    shutil.copytree(EXAMPLES, tmp_path / "recordings")
    (tmp_path / "recordings" / "empty.cfg").touch()
    names: dict[str, Any] = {}
    questions = []
    for block in document.blocks:
        if block.directive == "python":
            # The session was begun in another folder.
            text = block.text
            for before in ('load("', 'f"', 'spark, "', 'recordings", "'):
                text = text.replace(f"{before}recordings", f"{before}{tmp_path}/recordings")
                text = text.replace(f"{before}parquet", f"{before}{tmp_path}/parquet")
            exec(compile(text, "fleet.md", "exec"), names)  # noqa: S102 - that is what it is for
        if block.directive == "spark sql":
            questions.append(block.text)
    database = duckdb.connect()
    for name in ("recordings", "samples", "events"):
        database.read_parquet(f"{tmp_path}/parquet/{name}/*.parquet").create_view(name)
    assert len(questions) == 10
    for question in questions:
        answer = rounded([tuple(row) for row in session.sql(question).collect()])
        assert answer == rounded(database.sql(question).fetchall()), question
        assert answer or "COUNT(DISTINCT" in question, question
