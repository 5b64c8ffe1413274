"""What a configuration records."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any, Literal, NamedTuple

from .lazy import LazyModule

if TYPE_CHECKING:
    import numpy as np
else:
    np = LazyModule("numpy")

Side = Literal["recorded", "primary", "secondary"]
DataType = Literal["ASCII", "BINARY", "BINARY32", "FLOAT32"]


class Rate(NamedTuple):
    """A sampling rate."""

    #: Samples per second, or 0: times are in the data.
    rate: float
    #: Number of the last sample at this rate, counted from 1 at the first sample.
    end_sample: int


@dataclass(frozen=True, slots=True)
class AnalogInfo:
    """An analog channel as its line declares it: the value of a raw sample x is ``a * x + b`` in `recorded_unit`."""

    #: Channel number as written.
    number: int
    #: Channel identifier ("IA").
    id: str
    #: Phase identification ("A").
    phase: str
    #: Circuit component being monitored.
    component: str
    #: Unit as written, prefix included ("kV").
    recorded_unit: str
    #: Channel multiplier, in `recorded_unit`.
    a: float
    #: Channel offset adder, in `recorded_unit`.
    b: float
    #: Seconds from the start of the sample period.
    skew: float
    #: Lower end of the range of raw values.
    min: float
    #: Upper end of the range of raw values.
    max: float
    #: Transformer ratio, primary factor.
    primary: float
    #: Transformer ratio, secondary factor.
    secondary: float
    #: Side of ``a * x + b``: "primary" or "secondary"; "recorded" if the line does not declare one.
    recorded_side: Side
    #: Unit of the values that `orvcomtrade.read` gives: without prefix ("V").
    unit: str
    #: Side of these values.
    side: Side
    #: Name that no other channel of the recording has ("IA", the next one "IA#2").
    label: str
    #: 0-based position among the analog channels.
    index: int


@dataclass(frozen=True, slots=True)
class StatusInfo:
    """A status channel as its line declares it."""

    #: Channel number as written.
    number: int
    #: Channel identifier ("Trip").
    id: str
    #: Phase identification.
    phase: str
    #: Circuit component being monitored.
    component: str
    #: State in normal operation.
    normal: bool
    #: Name that no other channel of the recording has ("Trip", the next one "Trip#2").
    label: str
    #: 0-based position among the status channels.
    index: int


@dataclass(frozen=True, slots=True)
class Header:
    """Everything that a configuration records, in UTF-8, as it is meant."""

    #: Path as given, or a name.
    path: str
    #: Path of the configuration (or ``.cff``) as found.
    cfg_file: str
    #: Path of the data (or ``.cff``) as found, or "": configuration only.
    dat_file: str
    #: Name of the station.
    station: str
    #: Identification of the recording device.
    recorder: str
    #: 1991, 1999 or a later year: the layout of the lines.
    revision: int
    #: Analog channels, in the order of their lines.
    analog: tuple[AnalogInfo, ...] = field(repr=False)
    #: Status channels, in the order of their lines.
    status: tuple[StatusInfo, ...] = field(repr=False)
    #: Nominal frequency, Hz.
    line_frequency: float
    #: Sampling rates; a rate of 0 where times are in the data.
    sampling_rates: tuple[Rate, ...]
    #: Time of the first sample by the recorder's clock (datetime64[ns]), or None.
    start: np.datetime64 | None
    #: Time of the trigger (datetime64[ns]), or None.
    trigger: np.datetime64 | None
    #: Encoding of the data as they are: "ASCII", "BINARY", "BINARY32" or "FLOAT32".
    data_type: DataType
    #: Multiplier of the time stamps.
    time_multiplier: float
    #: Time code of the times ("-5h30"), or "" (revision 2013).
    time_code: str
    #: Time code of the place of recording, or "" (revision 2013).
    local_code: str
    #: Time quality indicator code, or "" (revision 2013).
    time_quality: str
    #: Leap second indicator, or "" (revision 2013).
    leap_second: str
    #: Whether the dates have more than six digits of a second.
    has_nanosecond_dates: bool
    #: Encoding of the texts as found: "ASCII", "UTF-8", "CP1251", ...
    encoding: str
    #: Text of the header file or section, or "".
    hdr: str = field(repr=False)
    #: Text of the information file or section, or "".
    inf: str = field(repr=False)
    #: Samples that the configuration declares.
    samples_declared: int
    #: Samples in the data.
    samples: int

    @property
    def trigger_offset(self) -> float | None:
        """Seconds from the first sample to the trigger, or None."""
        if self.start is None or self.trigger is None:
            return None
        return int((self.trigger - self.start).astype("int64")) / 1e9

    @property
    def times_are_stamped(self) -> bool:
        """Whether times come from the stamps in the data rather than from the sampling rates."""
        return any(rate.rate == 0.0 for rate in self.sampling_rates)


def _labels(names: list[tuple[str, str]]) -> list[str]:
    """Return a unique name for every channel, from pairs of its identifier and a substitute for an empty one."""
    wanted = [identifier or fallback for identifier, fallback in names]
    taken = set(wanted)
    counts: dict[str, int] = {}
    labels = []
    for name in wanted:
        label = name
        if name in counts:
            while label in taken:
                counts[name] += 1
                label = f"{name}#{counts[name]}"
            taken.add(label)
        else:
            counts[name] = 1
        labels.append(label)
    return labels


def _instant(nanoseconds: int | None) -> np.datetime64 | None:
    return None if nanoseconds is None else np.datetime64(nanoseconds, "ns")


def make_header(raw: dict[str, Any], path: str, cfg_file: str, dat_file: str) -> Header:
    """Make a header from the dict of the extension."""
    raw = dict(raw)
    analog = raw.pop("analog")
    status = raw.pop("status")
    labels = _labels(
        [(channel["id"], f"A{channel['number']}") for channel in analog]
        + [(channel["id"], f"D{channel['number']}") for channel in status]
    )
    return Header(
        path=path,
        cfg_file=cfg_file,
        dat_file=dat_file,
        analog=tuple(
            AnalogInfo(**channel, label=label, index=i)
            for i, (channel, label) in enumerate(zip(analog, labels, strict=False))
        ),
        status=tuple(
            StatusInfo(**channel, label=label, index=i)
            for i, (channel, label) in enumerate(zip(status, labels[len(analog) :], strict=True))
        ),
        sampling_rates=tuple(Rate(*rate) for rate in raw.pop("rates")),
        start=_instant(raw.pop("start")),
        trigger=_instant(raw.pop("trigger")),
        **raw,
    )
