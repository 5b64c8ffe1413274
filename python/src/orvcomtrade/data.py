"""What a recording and its channels share."""

from __future__ import annotations

import datetime as dt
import os
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


class Data:
    """Columns, and where they come from. Recording and channels hold it; it holds none of them."""

    def __init__(self, opened: _core.Opened, header: Header, wanted: Wanted) -> None:
        self.opened = opened
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

    def selection(self, channels: Any = None, start: Any = None, stop: Any = None) -> dict[str, Any]:
        """Give the channels and samples that are wanted, or a part of them, as the extension takes them."""
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
    opened, _ = open_readable(Files(header.path, cfg=content), wanted._replace(encoding="UTF-8"))
    data = Data(opened, header, wanted)
    data.__dict__["findings"] = findings
    return data
