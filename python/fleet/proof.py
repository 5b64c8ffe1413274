"""proof PROGRAM FOLDER: an archive of 1,000 recordings gives the same rows by one thread of Spark, by a cluster of
Spark of which an executor is killed in the middle, by Dask of which a worker is killed, and by the tool's catalogue.
Everything listens on this machine alone; what is started is ended by its process number."""

from __future__ import annotations

import json
import os
import shutil
import signal
import sqlite3
import subprocess
import sys
import threading
import time
from pathlib import Path
from typing import Any

from cluster import Cluster, children, session
from pyspark.sql import SparkSession

import orvcomtrade as oc
from orvcomtrade import spark as comtrade
from orvcomtrade.spark import path_bytes

ROOT = Path(__file__).resolve().parents[2]
RECORDINGS = 1000
COLUMNS = ("path", "station", "start", "samples", "rate", "bytes", "findings")
Rows = list[tuple[Any, ...]]


def make_archive(folder: Path) -> None:
    """Copy the examples, the twins and, where ORV_CORPUS_DIR names them, real recordings until there are enough."""
    sources = [ROOT / "examples" / "recordings", ROOT / "tests" / "recordings"]
    if corpus := os.environ.get("ORV_CORPUS_DIR"):
        sources.append(Path(corpus))
    found = [Path(path) for source in sources for path in oc.find(source)]
    for number in range(RECORDINGS - 2):
        main = found[number % len(found)]
        into = folder / f"{number % 37:02}" / f"{number:04}"
        into.mkdir(parents=True)
        for other in main.parent.iterdir():
            if other.stem.lower() == main.stem.lower():
                shutil.copy(other, into / other.name)
    (folder / "unreadable.cfg").write_text("")
    for extension in (".cfg", ".dat"):
        shutil.copy(found[0].with_suffix(extension), os.fsencode(folder) + b"/\xcf\xd1" + extension.encode())


def row_of(root: Path, row: Any) -> tuple[Any, ...]:
    """Give what the catalogue has as well."""
    path = row.path_bytes or path_bytes(row.path) or row.path
    findings = sorted((finding.code, finding.places) for finding in row.findings or ())
    start = None if row.start is None else row.start.isoformat(timespec="microseconds")
    short = path.removeprefix(f"{root}/")
    return (short, row.station, start, row.samples, row.rate, row.bytes, json.dumps(findings), row.error is None)


def rows_of_spark(session: SparkSession, root: Path) -> Rows:
    comtrade.register(session)
    frame = session.read.format("comtrade").option("batchBytes", str(1 << 20)).load(str(root))
    return sorted((row_of(root, row) for row in frame.collect()), key=str)


def rows_of_catalogue(program: str, root: Path, folder: Path) -> Rows:
    for words in (("index", str(root), "-o", "index"), ("catalogue", "index", "-o", "fleet.sqlite")):
        subprocess.run([program, *words], cwd=folder, check=True, stdout=subprocess.DEVNULL)
    database = sqlite3.connect(folder / "fleet.sqlite")
    findings: dict[int, list[tuple[str, int]]] = {}
    for number, code, places in database.execute("SELECT recording, code, places FROM finding"):
        findings.setdefault(number, []).append((code, places))
    rows = []
    for number, path, raw, station, start, samples, rate, size, readable in database.execute(
        "SELECT recording, path, path_bytes, station, start, samples, rate, bytes, readable FROM recording"
    ):
        kinds = json.dumps(sorted(findings.get(number, [])) if readable else [])
        known = (station, start[:26] if start else None, samples, rate) if readable else (None,) * 4
        rows.append((raw or path, *known, size, kinds, bool(readable)))
    return sorted(rows, key=str)


def kill_an_executor(killed: list[int], stop: threading.Event) -> None:
    """Kill one of the executors that are below this process, once it is at work."""
    while not stop.wait(0.05):
        for number in children(os.getpid()):
            try:
                words = Path(f"/proc/{number}/cmdline").read_bytes()
            except OSError:
                continue
            # It has begun a Python worker, so it reads recordings.
            if b"CoarseGrainedExecutorBackend" in words and children(number):
                time.sleep(1)
                os.kill(number, signal.SIGKILL)
                killed.append(number)
                return


def rows_of_dask(root: Path) -> Rows:
    import dask
    from dask_recipe import facts, places_in_batches
    from distributed import Client, LocalCluster

    dask.config.set({"distributed.scheduler.allowed-failures": 10})
    with (
        LocalCluster(n_workers=2, threads_per_worker=1, host="127.0.0.1", dashboard_address=None) as cluster,
        Client(cluster) as client,
    ):
        work = client.map(facts, places_in_batches(str(root), 8), pure=False)
        while sum(future.done() for future in work) < 20:
            time.sleep(0.01)
        os.kill(next(iter(client.run(os.getpid).values())), signal.SIGKILL)
        return sorted((row for rows in client.gather(work) for row in rows), key=str)


def compare(name: str, found: Rows, expected: Rows) -> None:
    print(f"{name}: {len(found)} rows", flush=True)
    if found != expected:
        different = [pair for pair in zip(found, expected, strict=False) if pair[0] != pair[1]]
        sys.exit(f"{name} differs: {len(found)} rows, not {len(expected)}; {different[:3]}")


def main() -> None:
    program, folder = sys.argv[1], Path(sys.argv[2]).resolve()
    root = folder / "archive"
    make_archive(root)
    local = session("local[1]")
    expected = rows_of_spark(local, root)
    local.stop()
    print(f"local[1]: {len(expected)} rows, {sum(not row[-1] for row in expected)} with an error", flush=True)
    compare("catalogue", rows_of_catalogue(program, root, folder), expected)
    killed: list[int] = []
    stop = threading.Event()
    with Cluster(folder) as master:
        remote = session(master, spark_executor_memory="512m", spark_executor_cores="1")
        killer = threading.Thread(target=kill_an_executor, args=(killed, stop))
        killer.start()
        found = rows_of_spark(remote, root)
        stop.set()
        killer.join()
        remote.stop()
    compare(f"cluster, executor {killed} killed", found, expected)
    assert killed, "no executor was killed"
    compare("dask, a worker killed", list(rows_of_dask(root)), [(row[0], row[3]) for row in expected])
    time.sleep(2)
    left = children(os.getpid())
    names = [Path(f"/proc/{number}/cmdline").read_bytes()[:80] for number in left if Path(f"/proc/{number}").exists()]
    assert not [name for name in names if b"deploy" in name or b"Executor" in name], names
    for path in root.rglob("*"):
        assert not path.name.startswith((".orvcomtrade", "spark-", "dask-")), path


if __name__ == "__main__":  # workers of Dask import this file
    main()
