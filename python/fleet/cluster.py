"""Spark on this machine alone: sessions, and a cluster of which every part is a process of its own."""

from __future__ import annotations

import os
import socket
import subprocess
from collections.abc import Mapping
from pathlib import Path

import pyspark
from pyspark.sql import SparkSession


def session(master: str, **options: str) -> SparkSession:
    """Begin a session; an option's name has `_` for each dot."""
    settings = {
        "spark.ui.enabled": "false",
        "spark.driver.host": "127.0.0.1",
        "spark.driver.bindAddress": "127.0.0.1",
        **{name.replace("_", "."): value for name, value in options.items()},
    }
    builder = SparkSession.builder.master(master).appName("fleet")
    for name, value in settings.items():
        builder = builder.config(name, value)
    made = builder.getOrCreate()
    made.sparkContext.setLogLevel("ERROR")
    return made


def free_port() -> int:
    """Give a port that nothing listens on."""
    with socket.create_server(("127.0.0.1", 0)) as server:
        return int(server.getsockname()[1])


class Cluster:
    """A master and workers of Spark, ended by their process numbers. Gives the master's URL."""

    def __init__(self, folder: Path, *, workers: int = 2, environment: Mapping[str, str] | None = None) -> None:
        self._folder = folder
        self._workers = workers
        self._environment = os.environ | {"SPARK_LOCAL_IP": "127.0.0.1"} | dict(environment or {})
        self._started: list[subprocess.Popen[bytes]] = []

    def __enter__(self) -> str:
        port = str(free_port())
        self._start("master", "Master", "--host", "127.0.0.1", "--port", port, "--webui-port", "0")
        for number in range(self._workers):
            place = str(self._folder / f"worker{number}")
            self._start(
                f"worker{number}", "Worker", "--host", "127.0.0.1", "--cores", "1", "--memory", "1g",
                "--webui-port", "0", "--work-dir", place, f"spark://127.0.0.1:{port}",
            )  # fmt: skip
        return f"spark://127.0.0.1:{port}"

    def _start(self, name: str, kind: str, *words: str) -> None:
        home = Path(pyspark.__file__).parent
        command = [str(home / "bin" / "spark-class"), f"org.apache.spark.deploy.{kind.lower()}.{kind}", *words]
        with (self._folder / f"{name}.log").open("wb") as log:
            made = subprocess.Popen(command, stdout=log, stderr=log, env=self._environment, start_new_session=True)
        self._started.append(made)

    def __exit__(self, *_: object) -> None:
        for process in reversed(self._started):
            process.terminate()
            process.wait(60)


def children(parent: int) -> list[int]:
    """Give the numbers of all processes below one."""
    parents: dict[int, list[int]] = {}
    for status in Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = status.read_text().rpartition(")")[2].split()
        except OSError:  # it has ended
            continue
        parents.setdefault(int(fields[1]), []).append(int(status.parent.name))
    found, left = [], [parent]
    while left:
        below = parents.get(left.pop(), [])
        found += below
        left += below
    return found
