"""Many recordings at once."""

from __future__ import annotations

import glob
import os
from collections import deque
from collections.abc import Callable, Iterable, Iterator, Mapping
from typing import Any, TypeVar

from . import _core
from .archives import Store
from .findings import ComtradeError, Finding, RecordingNotFoundError, unreadable
from .header import Header
from .opening import Wanted, findings_of, guarded, open_readable
from .sources import Content, Files, Source, gather, open_files

Result = TypeVar("Result")


def read_header(
    source: Source | None = None,
    *,
    cfg: Content | None = None,
    dat: Content | None = None,
    encoding: str | None = None,
    accept_any_numbers: bool = False,
) -> Header:
    """Read what a configuration records, without the values.

    The data are walked over once, so that their type and the number of samples are those of the data, not as declared.

    >>> import orvcomtrade as oc
    >>> head = oc.read_header(recordings / "feeder_earth_fault.cfg")
    >>> head.samples, head.sampling_rates[0].rate, head.analog[0].id
    (700, 1000.0, 'IA')

    :param source: as for `orvcomtrade.read`.
    :raises ComtradeError: if the recording can't be read.
    """
    files = gather(source, cfg, dat, None, None, None)
    return open_readable(files, Wanted(encoding=encoding, accept_any_numbers=accept_any_numbers))[1]


def check(
    source: Source | None = None,
    *,
    cfg: Content | None = None,
    dat: Content | None = None,
    encoding: str | None = None,
) -> tuple[Finding, ...]:
    """Return everything that is wrong with a recording, whether it can be read or not.

    >>> import orvcomtrade as oc
    >>> [finding.code for finding in oc.check(recordings / "line_two_phase_fault.cfg")]
    ['line-ends', 'encoding']

    :param source: as for `orvcomtrade.read`.
    :raises FileNotFoundError: if there is no such file.
    """
    files = gather(source, cfg, dat, None, None, None)
    opened: _core.Opened = guarded(
        files.path, lambda: open_files(files, side="recorded", encoding=encoding, accept_any_numbers=False)
    )
    findings = findings_of(opened, files.path)
    if any(finding.code == "no-such-file" for finding in findings):
        raise unreadable(files.path, findings)
    return findings


def find(
    folder: str | os.PathLike[str], recursive: bool = True, *, storage_options: Mapping[str, Any] | None = None
) -> list[str]:
    """Return the sorted paths of all recordings of a folder: the ``.cfg`` or ``.cff`` of each.

    :param folder: a path, a pattern of paths (``"archive/2024-*"``, ``"archive/**/T1*.cfg"``), or a URL of fsspec
        (``"s3://bucket/folder"``), which is always searched to any depth, with the archives (``.zip``) in it.
    :param storage_options: of the file system of a URL.
    :raises FileNotFoundError: if there is no such folder, or nothing fits the pattern.
    """
    top = os.fspath(folder)
    if "://" in top:
        return sorted(place.path for place in Store(top, storage_options).places())
    if os.path.isdir(top):
        return sorted(_in_folder(top, recursive))
    found: set[str] = set()
    for one in glob.iglob(top, recursive=True):
        found.update(_in_folder(one, recursive) if os.path.isdir(one) else [one] if _is_recording(one) else [])
    if not found:
        raise RecordingNotFoundError(f"{top}: no such folder, and no recording", top)
    return sorted(found)


def _is_recording(path: str) -> bool:
    return path.lower().endswith((".cfg", ".cff")) and not os.path.basename(path).startswith("._")


def _in_folder(top: str, recursive: bool) -> Iterator[str]:
    for path, folders, names in os.walk(top):
        yield from (os.path.join(path, name) for name in names if _is_recording(name))
        if not recursive:
            folders.clear()


def scan(
    source: str | os.PathLike[str] | Iterable[str | os.PathLike[str]],
    function: Callable[[str], Result] | None = None,
    *,
    workers: int | None = None,
    recursive: bool = True,
    storage_options: Mapping[str, Any] | None = None,
) -> Iterator[tuple[str, Header | Result | ComtradeError]]:
    """Go through the recordings of a folder, several at once, in the order of their paths.

    >>> import orvcomtrade as oc
    >>> for path, result in oc.scan(recordings):
    ...     if not isinstance(result, oc.ComtradeError):
    ...         print(result.station, result.samples)
    Ozernaya 35/10 kV 700
    ...

    :param source: a folder, a pattern, a URL of a folder, or paths.
    :param function: called with the path of each recording in a worker thread (``oc.read``, ``oc.check``); None: reads
        its header.
    :param workers: number of threads; None: as many as there are processors, 8 at most.
    :param recursive: whether subfolders are searched.
    :param storage_options: of the file system of a URL.
    :return: pairs of path and result. A recording that can't be read has the `ComtradeError` as its result, and the
        others are still read. Results are made as they are taken, only a few ahead.
    :raises FileNotFoundError: if there is no such folder.
    """
    single = isinstance(source, (str, os.PathLike))
    if single and "://" in os.fspath(source):  # type: ignore[arg-type]
        store = Store(os.fspath(source), storage_options)  # type: ignore[arg-type]
        places = {place.path: place for place in store.places()}
        return _results(sorted(places), function, workers or 8, lambda path: store.files(places[path]))
    paths = find(source, recursive) if single else [os.fspath(path) for path in source]  # type: ignore[arg-type,union-attr]
    count = workers or min(8, os.cpu_count() or 1)
    if count < 1:
        raise ValueError(f"at least one worker, not {workers}")
    return _results(paths, function, count, lambda path: Files(path, os.fsencode(path)))


def _results(
    paths: list[str], function: Callable[[str], Result] | None, workers: int, files: Callable[[str], Files]
) -> Iterator[tuple[str, Header | Result | ComtradeError]]:
    from concurrent.futures import Future, ThreadPoolExecutor

    folders = _core.Folders()

    def one(path: str) -> Header | Result | ComtradeError:
        try:
            if function is not None:
                return function(path)
            return open_readable(files(path), Wanted(), folders)[1]
        except ComtradeError as error:
            return error

    with ThreadPoolExecutor(workers, "orvcomtrade") as pool:
        waiting: deque[tuple[str, Future[Header | Result | ComtradeError]]] = deque()
        try:
            for path in paths:
                waiting.append((path, pool.submit(one, path)))
                if len(waiting) > 2 * workers:
                    done, result = waiting.popleft()
                    yield done, result.result()
            while waiting:
                done, result = waiting.popleft()
                yield done, result.result()
        finally:
            for _, left in waiting:
                left.cancel()
