"""What a recording and its channels share."""

from __future__ import annotations

import datetime as dt
import os
import threading
import weakref
from collections import OrderedDict
from functools import cached_property
from typing import TYPE_CHECKING, Any

from . import _core
from .findings import ComtradeError, Finding
from .lazy import LazyModule
from .naming import select
from .opening import Wanted, findings_of, guarded, open_readable
from .sources import Files

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    from .header import Header
else:
    np = LazyModule("numpy")


def read_only(values: NDArray[Any]) -> NDArray[Any]:
    """Forbid changes."""
    values.flags.writeable = False
    return values


Stamp = tuple[int, int, int, int] | None


def _stamps_of(opened: _core.Opened) -> tuple[Stamp, Stamp]:
    """Return what identifies the files of a recording: it differs if other files have taken their place."""

    def stamp(path: str) -> Stamp:
        try:
            found = os.stat(path)
        except (OSError, ValueError):
            return None
        return found.st_dev, found.st_ino, found.st_size, found.st_mtime_ns

    return stamp(opened.cfg_file), stamp(opened.dat_file)


class _OpenFiles:
    """Recordings whose files are open: few of them, since a process may open a thousand files or so."""

    MOST = 32

    def __init__(self) -> None:
        self._opened: OrderedDict[int, _core.Opened] = OrderedDict()
        self._lock = threading.RLock()  # a recording may go away while another one is taken in

    def get(self, key: int) -> _core.Opened | None:
        with self._lock:
            opened = self._opened.get(key)
            if opened is not None:
                self._opened.move_to_end(key)
            return opened

    def put(self, key: int, opened: _core.Opened) -> None:
        with self._lock:
            self._opened[key] = opened
            while len(self._opened) > self.MOST:
                self._opened.popitem(last=False)

    def drop(self, key: int) -> None:
        with self._lock:
            self._opened.pop(key, None)


_open_files = _OpenFiles()


class Data:
    """Columns, and where they come from. A recording and its channels refer to it; it does not refer to them."""

    def __init__(self, opened: _core.Opened, header: Header, wanted: Wanted, files: Files) -> None:
        self._files = files
        self._in_memory = opened if files.disk is None else None
        self._stamps = _stamps_of(opened)
        if files.disk is not None:
            _open_files.put(id(self), opened)
            weakref.finalize(self, _open_files.drop, id(self))
        self.header = header
        self.wanted = wanted
        self.analog_channels, self.status_channels = select(wanted.channels, header)
        columns = guarded(
            header.path, lambda: opened.columns(**self.selection(), missing_as_nan=wanted.missing == "nan")
        )
        self.first: int = columns["first"]
        self.time: NDArray[np.float64] = columns["time"]
        self.analog: NDArray[np.float64] = columns["analog"]
        self.a: NDArray[np.float64] = columns["a"]
        self.b: NDArray[np.float64] = columns["b"]
        self.missing: NDArray[np.int64] = columns["missing"]
        self._change_samples: NDArray[np.int64] = columns["change_samples"]
        self._change_states: NDArray[np.uint8] = columns["change_states"]
        self._change_ends: NDArray[np.int64] = columns["change_ends"]
        self.skew_is_applied = wanted.skew == "apply"
        if self.skew_is_applied:
            self._apply_skew()

    @property
    def opened(self) -> _core.Opened:
        """Where the columns come from; opened again if many others were read since.

        :raises ComtradeError: if the files are no longer those that were read.
        """
        opened = self._in_memory or _open_files.get(id(self))
        if opened is None:
            opened, _ = open_readable(self._files, self.wanted)
            if _stamps_of(opened) != self._stamps:
                path = self.header.path
                raise ComtradeError(f"{path}: the files have changed since they were read", path)
            _open_files.put(id(self), opened)
        return opened

    def selection(self, channels: Any = None, start: Any = None, stop: Any = None) -> dict[str, Any]:
        """Return the channels and samples that are wanted, or a part of them, as the extension takes them."""
        names = self.wanted.channels if channels is None else channels
        analog, status = select(names, self.header)
        begin, end = (self.wanted.start if start is None else start), (self.wanted.stop if stop is None else stop)
        first, count = guarded(self.header.path, lambda: sample_range(self.opened, self.header, begin, end))
        every = names is None
        return {
            "analog": None if every else analog,
            "status": None if every else status,
            "first": first,
            "count": count,
        }

    def svg(self, channels: Any, start: Any, stop: Any, **style: Any) -> str:
        """Draw the channels and samples that are wanted, or a part of them."""
        names = self.wanted.channels if channels is None else channels
        analog, status = (None, None) if names is None else select(names, self.header)
        moments = (self.wanted.start if start is None else start, self.wanted.stop if stop is None else stop)
        begin, end = (None if moment is None else _seconds(moment, self.header) for moment in moments)
        name = os.path.basename(self.header.path)
        return guarded(
            self.header.path,
            lambda: self.opened.svg(analog=analog, status=status, start=begin, end=end, name=name, **style),
        )

    @cached_property
    def findings(self) -> tuple[Finding, ...]:
        """What is wrong with the recording."""
        return findings_of(self.opened, self.header.path)

    def __reduce__(self) -> tuple[Any, ...]:
        parts: list[bytes] = []
        guarded(self.header.path, lambda: self.opened.write(parts.append, parts.append, combined=True))
        return _unpickled, (b"".join(parts), self.header, self.findings, self.wanted)

    def changes(self, column: int) -> tuple[NDArray[np.int64], NDArray[np.bool_]]:
        """Positions in `time` and states of a status column; the first entry is the state at the beginning."""
        begin = int(self._change_ends[column - 1]) if column else 0
        end = int(self._change_ends[column])
        return self._change_samples[begin:end] - self.first, self._change_states[begin:end].view(np.bool_)

    def raw(self, channel: int) -> NDArray[np.float64]:
        """Read the recorded values of an analog channel."""
        columns = guarded(
            self.header.path,
            lambda: self.opened.columns(
                analog=[channel], status=[], first=self.first, count=len(self.time), raw=True, missing_as_nan=True
            ),
        )
        values: NDArray[np.float64] = columns["analog"][0]
        return values

    @cached_property
    def datetime(self) -> NDArray[np.datetime64]:
        """Times by the recorder's clock."""
        if self.header.start is None:
            raise ComtradeError(f"{self.header.path}: the recording does not say when it begins", self.header.path)
        return read_only(self.header.start + np.rint(self.time * 1e9).astype("timedelta64[ns]"))

    def _apply_skew(self) -> None:
        """Interpolate skewed channels at the times of the samples."""
        skews = [self.header.analog[channel].skew for channel in self.analog_channels]
        if not any(skews):
            return
        analog = self.analog.copy()
        for values, skew in zip(analog, skews, strict=True):
            if skew:
                values[:] = _core.interpolated(self.time, values.copy(), skew, self.time)
        self.analog = read_only(analog)


def _seconds(moment: Any, header: Header) -> float:
    """Seconds from the first sample to a time, or of one."""
    if hasattr(moment, "to_datetime64"):  # of pandas
        moment = moment.to_datetime64()
    if not isinstance(moment, (str, dt.datetime, np.datetime64)):
        return float(moment)
    if header.start is None:
        raise ComtradeError(f"{header.path}: no date can be found: the start is not recorded", header.path)
    instant: np.datetime64 = np.datetime64(moment).astype("datetime64[ns]")
    return int((instant - header.start).astype("int64")) / 1e9


def sample_range(opened: _core.Opened, header: Header, start: Any, stop: Any) -> tuple[int, int | None]:
    """First sample and number of samples from `start` to `stop`."""
    if start is None and stop is None:
        return 0, None
    time = opened.columns(analog=[], status=[])["time"]
    if len(time) == 0:
        return 0, 0
    inside = np.ones(len(time), dtype=bool)
    near = 1e-6 * float(time[-1] - time[0]) / len(time)  # a sample's own time may be off by rounding
    if start is not None:
        inside &= time >= _seconds(start, header) - near
    if stop is not None:
        inside &= time <= _seconds(stop, header) + near
    samples = np.flatnonzero(inside)
    return (int(samples[0]), int(samples[-1] - samples[0]) + 1) if len(samples) else (0, 0)


def _unpickled(content: bytes, header: Header, findings: tuple[Finding, ...], wanted: Wanted) -> Data:
    files = Files(header.path, cfg=content)
    opened, _ = open_readable(files, wanted._replace(encoding="UTF-8"))
    data = Data(opened, header, wanted, files)
    data.__dict__["findings"] = findings
    return data
