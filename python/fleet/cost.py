"""cost [RECORDINGS]: the processor time of the samples of an archive as Parquet: by one process with `oc.read` and
pyarrow, and in two ways by `local[2]` of Spark. The recordings have 60 kB: 16 currents, 32 states and 1,360 samples.
The time of all processes counts, from when the session is ready."""

from __future__ import annotations

import os
import shutil
import sys
import tempfile
import time
from collections.abc import Callable
from pathlib import Path
from typing import Any

import numpy as np
import pyarrow as pa
import pyarrow.parquet
from cluster import children, session

import orvcomtrade as oc
from orvcomtrade import spark as comtrade

ANALOG, STATUS, SAMPLES = 16, 32, 1360


def make_archive(folder: Path, recordings: int) -> None:
    lines = [f"Station,Recorder,1999\n{ANALOG + STATUS},{ANALOG}A,{STATUS}D"]
    lines += [f"{n},I{n},,,A,0.01,0,0,-32767,32767,1000,1,S" for n in range(1, ANALOG + 1)]
    lines += [f"{n},State {n},,,0" for n in range(1, STATUS + 1)]
    lines += ["50", "1", f"1000,{SAMPLES}", *["01/02/2024,03:04:05.000000"] * 2, "BINARY", "1", ""]
    columns = [("n", "<i4"), ("stamp", "<i4"), ("values", "<i2", ANALOG), ("states", "<u2", STATUS // 16)]
    random = np.random.default_rng(1)
    data = np.zeros(SAMPLES, columns)
    data["n"] = np.arange(1, SAMPLES + 1)
    data["stamp"] = np.arange(SAMPLES) * 1000
    turns = np.arange(SAMPLES)[:, None] * 0.05 + np.arange(ANALOG) / ANALOG
    for number in range(recordings):
        data["values"] = 8000 * np.sin(2 * np.pi * turns) + random.normal(0, 50, (SAMPLES, ANALOG))
        place = folder / f"{number // 100:03}"
        place.mkdir(parents=True, exist_ok=True)
        (place / f"{number:05}.cfg").write_text("\r\n".join(lines))
        (place / f"{number:05}.dat").write_bytes(data.tobytes())


def processor_time() -> float:
    """Give the seconds of this process and of all below it, also of those that have ended."""
    ticks = 0
    for number in [os.getpid(), *children(os.getpid())]:
        try:
            status = Path(f"/proc/{number}/stat").read_text()
        except OSError:  # it has ended, and its parent has its time
            continue
        ticks += sum(int(field) for field in status.rpartition(")")[2].split()[11:15])
    return ticks / os.sysconf("SC_CLK_TCK")


def repeated(text: str, count: int) -> pa.Array:
    return pa.repeat(pa.scalar(text), count)


def write_alone(folder: Path, to: Path) -> None:
    to.mkdir()
    fields = dict.fromkeys(("path", "station", "channel", "unit"), pa.string())
    schema = pa.schema(fields | {"time": pa.float64(), "value": pa.float64()})
    with pyarrow.parquet.ParquetWriter(to / "samples.parquet", schema) as writer:
        for path, rec in oc.scan(folder, oc.read, workers=1):
            columns = [
                (
                    repeated(path, len(rec)), repeated(rec.station, len(rec)), repeated(channel.label, len(rec)),
                    repeated(channel.unit, len(rec)), pa.array(rec.time), pa.array(channel.values),
                )
                for channel in rec.analog
            ]  # fmt: skip
            parts = [pa.record_batch(list(arrays), schema=schema) for arrays in columns]
            writer.write_table(pa.Table.from_batches(parts))


def main() -> None:
    recordings = int(sys.argv[1]) if len(sys.argv) > 1 else 3000
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        archive = folder / "archive"
        make_archive(archive, recordings)
        made = session("local[2]", spark_driver_memory="2g")
        comtrade.register(made)
        samples = made.read.format("comtrade").options(shape="samples").load(str(archive))
        ways: dict[str, Callable[[Path], Any]] = {
            "one process": lambda to: write_alone(archive, to),
            "write_parquet": lambda to: comtrade.write_parquet(made, str(archive), str(to), shape="samples"),
            "DataFrame.write": lambda to: samples.write.parquet(str(to)),
        }
        least = 0.0
        for way, write in ways.items():
            begin, clock = processor_time(), time.monotonic()
            write(folder / "parquet")
            took, clock = processor_time() - begin, time.monotonic() - clock
            least = least or took
            rows = made.read.parquet(str(folder / "parquet")).count()
            print(
                f"{way}: {rows} rows, {took:.1f} s of processors in {clock:.1f} s, {took / least:.2f} times", flush=True
            )
            shutil.rmtree(folder / "parquet")
        made.stop()


if __name__ == "__main__":
    main()
