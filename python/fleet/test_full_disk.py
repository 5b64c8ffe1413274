"""A full disk ends a job of a cluster with a sentence that says so, and nothing half-written looks complete. With room
the same job gives everything. The disks are small file systems in memory, so this needs the right to mount them."""

from __future__ import annotations

import shutil
import subprocess
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import numpy as np
import pytest
from cluster import Cluster, session

import orvcomtrade as oc
from orvcomtrade import spark as comtrade

EXAMPLES = Path(__file__).resolve().parents[2] / "examples" / "recordings"
COPIES = 12
FULL = "No space left on device"


class Disk:
    """A small disk that can grow."""

    def __init__(self, folder: Path, size: str) -> None:
        folder.mkdir()
        self.folder = folder
        words = ["mount", "-t", "tmpfs", "-o", f"size={size}", "orvcomtrade", str(folder)]
        done = subprocess.run(words, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            pytest.skip(f"mounting is not allowed here: {done.stderr.strip()}")

    def grow(self) -> None:
        subprocess.run(["mount", "-o", "remount,size=256m", str(self.folder)], check=True)

    def __enter__(self) -> Disk:
        return self

    def __exit__(self, *_: object) -> None:
        subprocess.run(["umount", str(self.folder)], check=True)


@pytest.fixture(scope="module")
def folder(tmp_path_factory: pytest.TempPathFactory) -> Path:
    return tmp_path_factory.mktemp("full")


@pytest.fixture(scope="module")
def local(folder: Path) -> Iterator[Disk]:
    """Give the disk on which the worker keeps what does not fit into its memory."""
    with Disk(folder / "local", "1m") as disk:
        yield disk


@pytest.fixture(scope="module")
def spark(folder: Path, local: Disk) -> Iterator[Any]:
    with Cluster(folder, workers=1, environment={"SPARK_LOCAL_DIRS": str(local.folder)}) as master:
        made = session(master, spark_executor_memory="512m", spark_task_maxFailures="2")
        comtrade.register(made)
        yield made
        made.stop()


@pytest.fixture(scope="module")
def samples(spark: Any, folder: Path) -> Any:
    for number in range(COPIES):
        shutil.copytree(EXAMPLES, folder / "archive" / f"{number}")
    return spark.read.format("comtrade").options(shape="samples").load(str(folder / "archive"))


def number_of_samples() -> int:
    return COPIES * sum(np.asarray(oc.read(path)).size for path in oc.find(EXAMPLES))


def test_full_output_leaves_nothing_that_looks_complete(spark: Any, samples: Any, folder: Path) -> None:
    with Disk(folder / "disk", "256k") as disk:
        output = disk.folder / "samples"
        with pytest.raises(Exception, match=FULL):
            samples.write.mode("overwrite").parquet(str(output))
        assert list(output.rglob("*")) == []
        disk.grow()
        samples.write.mode("overwrite").parquet(str(output))
        assert (output / "_SUCCESS").exists()
        assert spark.read.parquet(str(output)).count() == number_of_samples()


def test_full_output_of_workers_that_write_leaves_nothing(spark: Any, samples: Any, folder: Path) -> None:
    with Disk(folder / "other", "256k") as disk:
        output = disk.folder / "samples"
        options = {"shape": "samples", "batchBytes": str(1 << 20)}
        with pytest.raises(Exception, match=FULL):
            comtrade.write_parquet(spark, str(folder / "archive"), str(output), **options)
        assert list(output.rglob("*")) == []
        disk.grow()
        written = comtrade.write_parquet(spark, str(folder / "archive"), str(output), **options)
        assert (output / "_SUCCESS").exists()
        assert written == spark.read.parquet(str(output)).count() == number_of_samples()


def test_full_disk_of_a_worker_ends_the_job(spark: Any, samples: Any, local: Disk, folder: Path) -> None:
    output = folder / "sorted"
    # Rows of one path go to one task, so every one of them passes the worker's disk.
    by_path = samples.repartition(2, "path").sortWithinPartitions("path", "channel", "time")
    with pytest.raises(Exception, match=FULL):
        by_path.write.mode("overwrite").parquet(str(output))
    assert list(output.rglob("*")) == []
    local.grow()
    by_path.write.mode("overwrite").parquet(str(output))
    assert (output / "_SUCCESS").exists()
    assert spark.read.parquet(str(output)).count() == number_of_samples()
