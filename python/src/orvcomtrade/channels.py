"""Channels of a recording, and how they are found by name."""

from __future__ import annotations

import operator
from collections.abc import Iterator, Sequence
from functools import cached_property
from typing import TYPE_CHECKING, Any, Generic, NamedTuple, SupportsIndex, TypeVar, overload

from . import _core
from .data import Data, read_only
from .findings import ChannelError
from .header import AnalogInfo, Side, StatusInfo
from .lazy import LazyModule
from .naming import ambiguous, matching, unknown

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import DTypeLike, NDArray
else:
    np = LazyModule("numpy")

MOST_POINTS = 100_000_000


class _Described:
    """What analog and status channels have in common."""

    info: AnalogInfo | StatusInfo
    _data: Data

    @property
    def id(self) -> str:
        """Channel identifier ("IA")."""
        return self.info.id

    @property
    def label(self) -> str:
        """Name that no other channel of the recording has ("IA", the next one "IA#2")."""
        return self.info.label

    @property
    def number(self) -> int:
        """Channel number as written."""
        return self.info.number

    @property
    def index(self) -> int:
        """0-based position among the channels of its kind in the configuration."""
        return self.info.index

    @property
    def phase(self) -> str:
        """Phase identification ("A")."""
        return self.info.phase

    @property
    def component(self) -> str:
        """Circuit component being monitored."""
        return self.info.component

    @property
    def values(self) -> NDArray[Any]:
        """One per sample."""
        raise NotImplementedError

    def __len__(self) -> int:
        return len(self._data.time)

    def __getitem__(self, samples: Any) -> Any:
        """Return ``values[samples]``."""
        return self.values[samples]

    def __iter__(self) -> Iterator[Any]:
        return iter(self.values)

    def __array__(self, dtype: DTypeLike | None = None, copy: bool | None = None) -> NDArray[Any]:
        return as_array(self.values, dtype, copy)

    @property
    def name(self) -> str:
        """Identifier, phase and component, as far as they are not empty ("IA A LINE 1")."""
        return " ".join(part for part in (self.label, self.phase, self.component) if part)


class AnalogChannel(_Described):
    """An analog channel: values in the base unit (V, A) on the side that `orvcomtrade.read` was called with.

    >>> import orvcomtrade as oc
    >>> channel = oc.read(recordings / "feeder_earth_fault.cfg").analog["IB"]
    >>> channel
    <AnalogChannel 'IB' phase B, Feeder 4, A, secondary, 700 samples>
    >>> float(abs(channel.values).max())
    4.795
    """

    def __init__(self, data: Data, info: AnalogInfo, column: int) -> None:
        self.info: AnalogInfo = info
        self._data = data
        self._column = column

    @property
    def values(self) -> NDArray[np.float64]:
        """Values in `unit`, one per sample: read-only, a view of the recording's columns."""
        values: NDArray[np.float64] = self._data.analog[self._column]
        return values

    @cached_property
    def raw(self) -> NDArray[np.float64]:
        """Values as recorded, without factor: ``values == raw * a + b``. Read from the files when first used."""
        return self._data.raw(self.index)

    @property
    def time(self) -> NDArray[np.float64]:
        """Seconds of the values, with the channel's skew."""
        skew = 0.0 if self._data.skew_is_applied else self.skew
        return self._data.time if skew == 0.0 else read_only(self._data.time + skew)

    @property
    def a(self) -> float:
        """Factor: ``values == raw * a + b``. ``info.a`` is the one written in the configuration."""
        return float(self._data.a[self._column])

    @property
    def b(self) -> float:
        """Offset: ``values == raw * a + b``. ``info.b`` is the one written in the configuration."""
        return float(self._data.b[self._column])

    @property
    def unit(self) -> str:
        """Unit of the values, without prefix ("V" of a channel that was recorded in kV)."""
        return self.info.unit

    @property
    def side(self) -> Side:
        """Side of the values: "primary", "secondary", or "recorded" if the configuration does not say."""
        return self.info.side

    @property
    def primary(self) -> float:
        """Transformer ratio, primary factor."""
        return self.info.primary

    @property
    def secondary(self) -> float:
        """Transformer ratio, secondary factor."""
        return self.info.secondary

    @property
    def skew(self) -> float:
        """Seconds from the time of a sample to that of this channel's value."""
        return self.info.skew

    @property
    def min(self) -> float:
        """Lower end of the range of raw values, as declared."""
        return self.info.min

    @property
    def max(self) -> float:
        """Upper end of the range of raw values, as declared."""
        return self.info.max

    @property
    def is_missing(self) -> NDArray[np.bool_]:
        """Whether a sample has no value, one per sample."""
        mask = np.zeros(len(self), dtype=bool)
        for column, sample, count in self._data.missing:
            if column == self._column:
                mask[sample - self._data.first :][:count] = True
        return mask

    def points(
        self, start: float | None = None, stop: float | None = None, rate: float | None = None
    ) -> tuple[NDArray[np.float64], NDArray[np.float64]]:
        """Return times (seconds) and values from `start` to `stop`, both included.

        With a `rate` (points per second) the values lie on the straight lines between the samples, as the library
        interpolates; without one they are the samples. The channel's skew counts. NaN where there is no value.

        >>> import orvcomtrade as oc
        >>> channel = oc.read(recordings / "feeder_earth_fault.cfg").analog[0]
        >>> times, values = channel.points(0.0, 0.001, rate=4000)
        >>> times
        array([0.     , 0.00025, 0.0005 , 0.00075, 0.001  ])

        :raises ValueError: for a rate that is not above 0, or for too many points.
        """
        own = self.time
        if len(own) == 0:
            return np.empty(0), np.empty(0)
        begin = float(own[0]) if start is None else float(start)
        end = float(own[-1]) if stop is None else float(stop)
        if rate is None:
            inside = (own >= begin) & (own <= end)
            return own[inside], self.values[inside]
        if not (rate > 0.0 and np.isfinite(rate)):
            raise ValueError(f"rate is the number of points per second, not {rate}")
        count = (end - begin) * rate
        if not count < MOST_POINTS:
            raise ValueError(f"{count:.3g} points; at most {MOST_POINTS} are given")
        times = begin + np.arange(int(max(count, -1.0) + 1e-6) + 1 if count >= 0.0 else 0) / rate
        return times, self.at(times)

    def at(self, times: Any) -> NDArray[np.float64]:
        """Return the values at any times (seconds), by straight lines between the samples. NaN where there is no value.

        :param times: seconds, in any order.
        """
        wanted = np.atleast_1d(np.asarray(times, dtype=np.float64))
        if len(self) == 0:
            return np.full(wanted.shape, np.nan)
        flat = wanted.ravel()
        order = np.argsort(flat, kind="stable")
        own = self._data.time
        skew = 0.0 if self._data.skew_is_applied else self.skew
        near = 1e-6 * (float(own[-1] - own[0]) / max(len(own) - 1, 1))  # a sample's own time may be off by rounding
        ends = [(float(own[0]) + skew), (float(own[-1]) + skew)]
        ordered = flat[order]
        for end in ends:
            ordered[abs(ordered - end) <= near] = end
        given = np.empty(flat.shape)
        given[order] = _core.interpolated(own, self.values, skew, ordered)
        return given.reshape(wanted.shape)

    def envelope(self, buckets: int) -> tuple[NDArray[np.float64], NDArray[np.float64]]:
        """Return the least and the greatest value of each of `buckets` equal parts: a small picture loses no spike.

        :return: (lo, hi), each of `buckets` values, or of one per sample if there are fewer samples.
        """
        if buckets < 1:
            raise ValueError("at least one bucket")
        if len(self) == 0:
            return np.empty(0), np.empty(0)
        edges = np.linspace(0, len(self), min(buckets, len(self)), endpoint=False).astype(np.intp)
        return np.fmin.reduceat(self.values, edges), np.fmax.reduceat(self.values, edges)

    def __repr__(self) -> str:
        parts = [f"phase {self.phase}" if self.phase else "", self.component, self.unit, self.side]
        described = ", ".join(part for part in [*parts, f"{len(self)} samples"] if part)
        return f"<AnalogChannel {self.label!r} {described}>"


class Change(NamedTuple):
    """A change of a status channel."""

    #: Seconds.
    time: float
    #: State from then on.
    state: bool
    #: Position in `Recording.time`.
    sample: int


class StatusChannel(_Described):
    """A status channel: a state per sample, kept as its changes.

    >>> import orvcomtrade as oc
    >>> channel = oc.read(recordings / "feeder_earth_fault.cfg").status[0]
    >>> channel.values.dtype, len(channel.values)
    (dtype('bool'), 700)
    """

    def __init__(self, data: Data, info: StatusInfo, column: int) -> None:
        self.info: StatusInfo = info
        self._data = data
        self._column = column

    @property
    def values(self) -> NDArray[np.bool_]:
        """State of every sample: made of the changes at each use, and read-only."""
        samples, states = self._data.changes(self._column)
        return read_only(np.repeat(states, np.diff(samples, append=len(self))))

    @property
    def time(self) -> NDArray[np.float64]:
        """Seconds of the states."""
        return self._data.time

    @property
    def normal(self) -> bool:
        """State in normal operation."""
        return self.info.normal

    @property
    def initial(self) -> bool:
        """State at the beginning, or the normal one if there are no samples."""
        states = self._data.changes(self._column)[1]
        return bool(states[0]) if len(states) else self.normal

    @property
    def changes(self) -> list[Change]:
        """Every change of state, in order. The state before the first one is `initial`."""
        samples, states = self._data.changes(self._column)
        times = self._data.time[samples[1:]]
        return [
            Change(*change) for change in zip(times.tolist(), states[1:].tolist(), samples[1:].tolist(), strict=True)
        ]

    def __repr__(self) -> str:
        count = len(self._data.changes(self._column)[0])
        described = f"{max(count - 1, 0)} change{'' if count == 2 else 's'}, {len(self)} samples"
        return f"<StatusChannel {self.label!r} {described}>"


def as_array(values: NDArray[Any], dtype: DTypeLike | None, copy: bool | None) -> NDArray[Any]:
    """Return what ``__array__`` gives of these values."""
    if dtype is not None and np.dtype(dtype) != values.dtype:
        if copy is False:
            raise ValueError(f"no view of {values.dtype} is {np.dtype(dtype)}")
        return values.astype(dtype)
    return values.copy() if copy else values


AnyChannel = TypeVar("AnyChannel", AnalogChannel, StatusChannel)


class Channels(Generic[AnyChannel]):
    """Channels by position, by slice and by name: an identifier ("IA"), or the label of one of several ("IA#2").

    A `collections.abc.Sequence`, which its items are no names of: type checkers are not to refuse ``"IA" in channels``.
    """

    def __init__(self, channels: list[AnyChannel], kind: str, path: str) -> None:
        self._channels: list[AnyChannel] = channels
        self._kind = kind
        self._path = path

    @property
    def names(self) -> list[str]:
        """Labels of the channels; no two are the same."""
        return [channel.label for channel in self._channels]

    @overload
    def __getitem__(self, which: SupportsIndex | str) -> AnyChannel: ...
    @overload
    def __getitem__(self, which: slice | list[Any]) -> Channels[AnyChannel]: ...
    def __getitem__(self, which: SupportsIndex | str | slice | list[Any]) -> AnyChannel | Channels[AnyChannel]:
        """Return a channel, or those of a slice or of a list of names and positions.

        :raises IndexError: for a position that does not exist.
        :raises ChannelError: (also a KeyError) for a name that no channel has, or more than one.
        """
        if isinstance(which, str):
            return self._channels[self._find(which)]
        if isinstance(which, slice):
            return Channels(self._channels[which], self._kind, self._path)
        if isinstance(which, list):
            return Channels([self[one] for one in which], self._kind, self._path)
        try:
            return self._channels[operator.index(which)]
        except IndexError:
            count = len(self._channels)
            raise IndexError(f"no {self._kind} channel {which}: there are {count}") from None

    def _find(self, name: str) -> int:
        infos: list[Any] = [channel.info for channel in self._channels]
        found = matching(infos, name)
        if len(found) > 1:
            raise ambiguous(name, [infos[i] for i in found], self._path)
        if not found:
            raise unknown(name, self._kind, infos, self._path)
        return found[0]

    def keys(self) -> list[str]:
        """Labels of the channels, as of a mapping."""
        return self.names

    def values(self) -> list[AnyChannel]:
        """Return the channels."""
        return list(self._channels)

    def items(self) -> list[tuple[str, AnyChannel]]:
        """Labels and channels."""
        return [(channel.label, channel) for channel in self._channels]

    def get(self, name: str, default: Any = None) -> Any:
        """Return the channel of a name, or `default` if there is none. A name of several channels is a ChannelError."""
        try:
            return self[name]
        except ChannelError:
            if name in self:
                raise
            return default

    def __contains__(self, which: object) -> bool:
        if isinstance(which, str):
            return any(which in (channel.id, channel.label) for channel in self._channels)
        return which in self._channels

    def index(self, channel: AnyChannel) -> int:
        """Return the position of a channel."""
        return self._channels.index(channel)

    def count(self, channel: AnyChannel) -> int:
        """Return how many times a channel is there."""
        return self._channels.count(channel)

    def __len__(self) -> int:
        return len(self._channels)

    def __iter__(self) -> Iterator[AnyChannel]:
        return iter(self._channels)

    def __repr__(self) -> str:
        shown = ", ".join(repr(name) for name in self.names[:10])
        more = f", and {len(self) - 10} more" if len(self) > 10 else ""
        return f"<{len(self)} {self._kind} channels: {shown}{more}>"


Sequence.register(Channels)
