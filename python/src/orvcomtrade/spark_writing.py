"""Parquet written where recordings are read: no row passes Spark's own engine."""

from __future__ import annotations

import posixpath
import uuid
from collections.abc import Iterable, Mapping
from typing import TYPE_CHECKING, Any

import pyarrow as pa
import pyarrow.parquet

from .lazy import optional
from .spark import Batch, ComtradeReader, ComtradeSource

if TYPE_CHECKING:
    from pyspark.sql import SparkSession

#: Rows of a row group, at least, unless there are no more.
GROUP_ROWS = 1 << 18
#: Folder in the target of files that are not complete; readers take no name with an underscore.
TEMPORARY = "_temporary"


class Target:
    """A folder for files of Parquet. Pickles as what it was made of."""

    def __init__(self, url: str, storage_options: Mapping[str, Any]) -> None:
        self._made_of = (url, dict(storage_options))
        core = optional("fsspec.core", "write_parquet")
        self.system, self.path = core.url_to_fs(url, **storage_options)

    def __reduce__(self) -> tuple[Any, ...]:
        return Target, self._made_of

    def below(self, *names: str) -> str:
        """Return the path of what is in it."""
        return posixpath.join(self.path, *names)

    def begin(self) -> None:
        """Make the folder.

        :raises FileExistsError: if there is something in it.
        """
        if self.system.exists(self.path) and self.system.ls(self.path, detail=False):
            raise FileExistsError(17, "there is something in the folder", self.path)
        self.system.makedirs(self.below(TEMPORARY), exist_ok=True)

    def finish(self, names: Iterable[str]) -> None:
        """Show the files of these names, and drop those of tasks that ran twice."""
        for name in names:
            self.system.mv(self.below(TEMPORARY, name), self.below(name))
        self.abandon()
        self.system.touch(self.below("_SUCCESS"))

    def abandon(self) -> None:
        """Drop what is not complete."""
        if self.system.exists(self.below(TEMPORARY)):
            self.system.rm(self.below(TEMPORARY), recursive=True)


class Task:
    """Writes the file of a batch, where a worker runs."""

    def __init__(self, reader: ComtradeReader, target: Target) -> None:
        self._reader = reader
        self._target = target

    def __call__(self, numbered: tuple[int, Batch]) -> tuple[str, int]:
        """Return the name of the file, which no other attempt has, and the number of its rows."""
        number, batch = numbered
        name = f"part-{number:05}-{uuid.uuid4().hex}.parquet"
        rows = 0
        with (
            self._target.system.open(self._target.below(TEMPORARY, name), "wb") as file,
            pyarrow.parquet.ParquetWriter(file, self._reader.schema) as writer,
        ):
            held: list[pa.RecordBatch] = []
            count = 0
            for part in self._reader.read(batch):
                held.append(part)
                count += part.num_rows
                if count >= GROUP_ROWS:
                    writer.write_table(pa.Table.from_batches(held))
                    rows += count
                    held, count = [], 0
            if held:
                writer.write_table(pa.Table.from_batches(held))
        return name, rows + count


def write_parquet(session: SparkSession, source: str, target: str, options: Mapping[str, str]) -> int:
    """See `orvcomtrade.spark.write_parquet`."""
    from pyspark.sql.types import StructType

    made = ComtradeSource({**options, "path": source})
    reader = made.reader(StructType.fromDDL(made.schema()))
    batches = [batch for batch in reader.partitions() if isinstance(batch, Batch)]
    to = Target(target, made.wanted.storage_options)
    to.begin()
    try:
        planned = session.sparkContext.parallelize(list(enumerate(batches)), max(1, len(batches)))
        written: list[tuple[str, int]] = planned.map(Task(reader, to)).collect()
        to.finish(name for name, _ in written)
    except BaseException:
        to.abandon()
        raise
    return sum(rows for _, rows in written)
