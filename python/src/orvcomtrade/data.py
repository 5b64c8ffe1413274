"""What a recording and its channels share."""

from __future__ import annotations

from collections.abc import Callable
from functools import cached_property
from typing import TYPE_CHECKING, Any, TypeVar

from . import _core
from .findings import ComtradeError
from .lazy import LazyModule

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    from .header import Header
else:
    np = LazyModule("numpy")

Result = TypeVar("Result")


def guarded(path: str, call: Callable[[], Result]) -> Result:
    """Call into the extension; a file that changed or can't be read any more is a ComtradeError."""
    try:
        return call()
    except RuntimeError as error:
        raise ComtradeError(f"{path}: {error}" if path not in str(error) else str(error), path) from error


def read_only(values: NDArray[Any]) -> NDArray[Any]:
    """Forbid changes."""
    values.flags.writeable = False
    return values


class Data:
    """Columns, and where they come from. Recording and channels hold it; it holds none of them."""

    def __init__(self, opened: _core.Opened, header: Header, columns: dict[str, Any]) -> None:
        self.opened = opened
        self.header = header
        self.first: int = columns["first"]
        self.time: NDArray[np.float64] = columns["time"]
        self.analog: NDArray[np.float64] = columns["analog"]
        self.a: NDArray[np.float64] = columns["a"]
        self.b: NDArray[np.float64] = columns["b"]
        self.missing: NDArray[np.int64] = columns["missing"]
        self.skew_is_applied = False
        self._change_samples: NDArray[np.int64] = columns["change_samples"]
        self._change_states: NDArray[np.uint8] = columns["change_states"]
        self._change_ends: NDArray[np.int64] = columns["change_ends"]

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

    def apply_skew(self, channels: list[int]) -> None:
        """Interpolate skewed channels at the times of the samples."""
        skews = [self.header.analog[channel].skew for channel in channels]
        if any(skews):
            analog = self.analog.copy()
            for values, skew in zip(analog, skews, strict=True):
                if skew:
                    values[:] = _core.interpolated(self.time, values.copy(), skew, self.time)
            self.analog = read_only(analog)
        self.skew_is_applied = True
