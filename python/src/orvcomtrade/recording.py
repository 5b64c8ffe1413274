"""A recording: what `orvcomtrade.read` gives."""

from __future__ import annotations

import datetime as dt
import html
import os
from collections.abc import Iterable, Mapping
from functools import cached_property
from typing import TYPE_CHECKING, Any, Literal, NamedTuple

from .channels import AnalogChannel, Channels, StatusChannel, as_array
from .data import Data
from .findings import ComtradeError, Finding
from .header import DataType, Header, Rate, Side
from .lazy import LazyModule
from .naming import ambiguous, matching, unknown
from .opening import Wanted, guarded, open_readable
from .sources import Content, Source, gather

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd
    import polars as pl
    import pyarrow as pa
    import xarray as xr
    from numpy.typing import DTypeLike, NDArray
else:
    np = LazyModule("numpy")


class Event(NamedTuple):
    """A change of a status channel, among those of all."""

    #: Seconds from the first sample, or from the trigger.
    time: float
    #: Time by the recorder's clock, or None if the recording does not say when it begins.
    datetime: np.datetime64 | None
    #: Label of the channel.
    channel: str
    #: State from then on.
    state: bool
    #: Position in `Recording.time`.
    sample: int


def read(
    source: Source | None = None,
    *,
    cfg: Content | None = None,
    dat: Content | None = None,
    hdr: Content | None = None,
    inf: Content | None = None,
    side: Side = "recorded",
    encoding: str | None = None,
    channels: Iterable[str | int] | None = None,
    start: float | str | dt.datetime | np.datetime64 | None = None,
    stop: float | str | dt.datetime | np.datetime64 | None = None,
    missing: Literal["nan", "keep"] = "nan",
    skew: Literal["keep", "apply"] = "keep",
    accept_any_numbers: bool = False,
    storage_options: Mapping[str, Any] | None = None,
) -> Recording:
    """Read a recording.

    >>> import orvcomtrade as oc
    >>> rec = oc.read(recordings / "feeder_earth_fault.cfg")
    >>> rec.analog["IB"].values[:3]
    array([-2.27, -1.61, -0.83])

    :param source: path of any file of the recording (``.cfg``, ``.dat``, ``.cff``, in any case), of a member of a
        ``.zip`` (``"archive.zip/fault.cfg"``, `zipfile.Path`), a URL of fsspec (``"s3://bucket/fault.cfg"``), or the
        bytes of a ``.cff``, or a file object that gives them.
    :param cfg: instead of `source`: bytes, path or file object of the configuration; `dat`, `hdr`, `inf` likewise.
    :param side: side of the instrument transformers for the values: "recorded" (each channel as its line declares),
        "primary" or "secondary". A channel that declares none stays as recorded.
    :param encoding: encoding of the texts ("CP1251"); None: detected.
    :param channels: names of analog and status channels, or 0-based positions of analog ones; None: all.
    :param start: seconds from the first sample of the recording, or a date by the recorder's clock; None: its start.
    :param stop: likewise; a sample at `stop` is included.
    :param missing: missing values as NaN ("nan"), or as the marker in the file, scaled ("keep").
    :param skew: "keep": values as recorded, which are `AnalogChannel.skew` later than the times of the samples;
        "apply": values interpolated at the times of the samples, with NaN at an end that has no value.
    :param accept_any_numbers: read data even if neither their sample numbers nor their stamps make sense.
    :param storage_options: options of fsspec for a URL.
    :return: the recording, with values in base units (kV becomes V) and times in seconds.
    :raises ComtradeError: (a ValueError) if it can't be read; it has `findings`.
    :raises FileNotFoundError: if there is no such file; also a ComtradeError.
    :raises ChannelError: for a name in `channels` that no channel has, or more than one; also a ComtradeError.
    :raises ValueError: for an unknown encoding, or another wrong argument.
    """
    if missing not in ("nan", "keep"):
        raise ValueError(f'missing is "nan" or "keep", not {missing!r}')
    if skew not in ("keep", "apply"):
        raise ValueError(f'skew is "keep" or "apply", not {skew!r}')
    names = None if channels is None else tuple([channels] if isinstance(channels, (str, int)) else channels)
    wanted = Wanted(side, encoding, names, start, stop, missing, skew, accept_any_numbers)
    files = gather(source, cfg, dat, hdr, inf, storage_options)
    opened, header = open_readable(files, wanted)
    return Recording(Data(opened, header, wanted, files))


class Picture:
    """A picture that a notebook shows: `svg` is its text."""

    def __init__(self, svg: str) -> None:
        self.svg = svg

    def save(self, path: str | os.PathLike[str]) -> None:
        """Write the picture to a file. An existing file is replaced."""
        from . import writing

        with writing.replacing(os.fspath(path), overwrite=True) as file:
            file.write(self.svg.encode())

    def _repr_svg_(self) -> str:
        return self.svg


class Recording:
    """A recording: its header, and its columns as read-only arrays.

    It is made by `orvcomtrade.read` and does not change. Arrays keep what they need alive. It may be used from several
    threads. Pickling takes the whole recording along; copying gives the same object.
    """

    def __init__(self, data: Data) -> None:
        self._data = data

    @property
    def header(self) -> Header:
        """Everything that the configuration records, of all channels."""
        return self._data.header

    @property
    def path(self) -> str:
        """Path as given, or a name."""
        return self.header.path

    @property
    def station(self) -> str:
        """Name of the station."""
        return self.header.station

    @property
    def recorder(self) -> str:
        """Identification of the recording device."""
        return self.header.recorder

    @property
    def revision(self) -> int:
        """Revision of the standard: 1991, 1999 or a later year."""
        return self.header.revision

    @property
    def data_type(self) -> DataType:
        """Encoding of the data: "ASCII", "BINARY", "BINARY32" or "FLOAT32"."""
        return self.header.data_type

    @property
    def line_frequency(self) -> float:
        """Nominal frequency, Hz."""
        return self.header.line_frequency

    @property
    def sampling_rates(self) -> tuple[Rate, ...]:
        """Sampling rates (samples per second, last sample at this rate); 0 where times are in the data."""
        return self.header.sampling_rates

    @property
    def time_code(self) -> str:
        """Time code of the times ("-5h30"), or "" (revision 2013)."""
        return self.header.time_code

    @property
    def hdr(self) -> str:
        """Text of the header file or section, or ""."""
        return self.header.hdr

    @property
    def inf(self) -> str:
        """Text of the information file or section, or ""."""
        return self.header.inf

    @property
    def start(self) -> np.datetime64 | None:
        """Time of the recording's first sample by the recorder's clock (datetime64[ns]), or None."""
        return self.header.start

    @property
    def trigger(self) -> np.datetime64 | None:
        """Time of the trigger by the recorder's clock (datetime64[ns]), or None."""
        return self.header.trigger

    @property
    def trigger_offset(self) -> float | None:
        """Seconds from the recording's first sample to the trigger, or None."""
        return self.header.trigger_offset

    @property
    def findings(self) -> tuple[Finding, ...]:
        """What breaks the standard and what is damaged. The first use reads the data once more."""
        return self._data.findings

    @property
    def first_sample(self) -> int:
        """0-based position in the recording of the first sample that was read."""
        return self._data.first

    @property
    def time(self) -> NDArray[np.float64]:
        """Seconds from the first sample of the recording, one per sample, read-only."""
        return self._data.time

    @property
    def datetime(self) -> NDArray[np.datetime64]:
        """Times by the recorder's clock (datetime64[ns]), one per sample, read-only.

        :raises ComtradeError: if the recording does not say when it begins.
        """
        return self._data.datetime

    @property
    def duration(self) -> float:
        """Seconds from the first sample that was read to the last one."""
        return float(self.time[-1] - self.time[0]) if len(self.time) else 0.0

    @cached_property
    def analog(self) -> Channels[AnalogChannel]:
        """Analog channels that were read: ``rec.analog[0]``, ``rec.analog["IA"]``."""
        infos = self.header.analog
        positions = self._data.analog_channels
        made = [AnalogChannel(self._data, infos[channel], column) for column, channel in enumerate(positions)]
        return Channels(made, "analog", self.path)

    @cached_property
    def status(self) -> Channels[StatusChannel]:
        """Status channels that were read: ``rec.status[0]``, ``rec.status["Trip"]``."""
        infos = self.header.status
        positions = self._data.status_channels
        made = [StatusChannel(self._data, infos[channel], column) for column, channel in enumerate(positions)]
        return Channels(made, "status", self.path)

    def __getitem__(self, name: str) -> AnalogChannel | StatusChannel:
        """Return the channel of a name, analog or status.

        :raises ChannelError: (also a KeyError) for a name that no channel has, or more than one.
        """
        if not isinstance(name, str):
            raise TypeError("a recording has channels by name; by position: rec.analog[0], rec.status[0]")
        channels: list[AnalogChannel | StatusChannel] = [*self.analog, *self.status]
        infos: list[Any] = [channel.info for channel in channels]
        found = matching(infos, name)
        if len(found) > 1:
            raise ambiguous(name, [infos[i] for i in found], self.path)
        if not found:
            raise unknown(name, "analog or status", infos, self.path)
        return channels[found[0]]

    def __contains__(self, name: object) -> bool:
        return name in self.analog or name in self.status

    def events(self, relative_to: Literal["start", "trigger"] = "start") -> list[Event]:
        """Return the changes of all status channels in the order of time.

        :param relative_to: what `Event.time` counts from: the first sample of the recording, or the trigger.
        :raises ComtradeError: if the recording does not say when the trigger was.
        """
        if relative_to not in ("start", "trigger"):
            raise ValueError(f'relative_to is "start" or "trigger", not {relative_to!r}')
        offset = 0.0
        if relative_to == "trigger":
            if self.trigger_offset is None:
                raise ComtradeError(f"{self.path}: the recording does not say when the trigger was", self.path)
            offset = self.trigger_offset
        clock = None if self.start is None else self.datetime
        found = [
            Event(
                change.time - offset,
                None if clock is None else clock[change.sample],
                channel.label,
                change.state,
                change.sample,
            )
            for channel in self.status
            for change in channel.changes
        ]
        return sorted(found, key=lambda event: event.sample)

    def __len__(self) -> int:
        """Return the number of samples that were read."""
        return len(self.time)

    def __bool__(self) -> bool:
        return True

    def __array__(self, dtype: DTypeLike | None = None, copy: bool | None = None) -> NDArray[Any]:
        """Analog values, channels x samples: a view if nothing else is asked for."""
        return as_array(self._data.analog, dtype, copy)

    def to_pandas(
        self,
        index: Literal["time", "datetime", "sample"] = "time",
        columns: Literal["id", "full"] = "id",
        status: bool = True,
    ) -> pd.DataFrame:
        """Return a data frame with its own memory: a column per channel, floats first, then booleans.

        No two columns have the same name ("IA", "IA#2"). ``frame.attrs`` has "units" and "sides" by column, and what
        the header says of the recording.

        :param index: seconds, times by the recorder's clock, or positions in the recording.
        :param columns: the identifier of the channel, or also its phase, component and unit.
        :param status: whether there are columns for the status channels.
        """
        from . import tables

        return tables.to_pandas(self, index, columns, status)

    def to_xarray(self) -> xr.Dataset:
        """Return a dataset of one dimension, ``time`` (seconds): a variable per channel, without a copy of the values.

        Coordinate ``datetime`` has the times by the recorder's clock, if the recording has them. ``attrs`` of a
        variable are its units, side, phase and component.
        """
        from . import tables

        return tables.to_xarray(self)

    def to_arrow(self) -> pa.Table:
        """Return an Arrow table: ``time``, then a column per channel, analog values without a copy.

        The metadata of a field has its unit and side, that of the table what the header says.
        """
        from . import tables

        return tables.to_arrow(self)

    def to_polars(self) -> pl.DataFrame:
        """Return a Polars data frame: ``time``, then a column per channel."""
        from . import tables

        return tables.to_polars(self)

    def to_parquet(self, path: str | os.PathLike[str], **options: Any) -> None:
        """Write `to_arrow` to a Parquet file; `options` are those of ``pyarrow.parquet.write_table``."""
        from . import tables

        tables.to_parquet(self, path, options)

    def write(
        self,
        path: str | os.PathLike[str],
        *,
        revision: int | None = None,
        data_type: DataType | None = None,
        encoding: str = "",
        channels: Iterable[str | int] | None = None,
        start: float | str | dt.datetime | np.datetime64 | None = None,
        stop: float | str | dt.datetime | np.datetime64 | None = None,
        overwrite: bool = False,
    ) -> None:
        """Write the recording in the form of the standard: a ``.cfg`` with its ``.dat``, or one ``.cff``.

        What was read is written, or a part of it, in the units and on the side as recorded: reading it gives the same.
        Texts of ``.hdr`` and ``.inf`` are written too, if there are any.

        :param path: ends with ``.cfg`` or ``.cff``.
        :param channels: channels as for `orvcomtrade.read`; None: those that were read.
        :param start: seconds from the first sample of the recording, or a date; None: as it was read.
        :param stop: likewise; a sample at `stop` is included.
        :param revision: 1991, 1999 or 2013; None: as recorded.
        :param data_type: "ASCII", "BINARY", "BINARY32" or "FLOAT32"; None: as recorded.
        :param encoding: of the texts ("CP1251"); "": UTF-8.
        :param overwrite: whether existing files are replaced.
        :raises FileExistsError: if a file exists, unless `overwrite`.
        """
        from . import writing

        form: dict[str, Any] = self._data.selection(channels, start, stop)
        form |= {"revision": revision, "data_type": data_type, "encoding": encoding}
        opened = self._data.opened
        writing.write(
            self,
            lambda cfg, dat, combined: opened.write(cfg, dat, combined=combined, **form),
            path,
            encoding,
            overwrite,
        )

    def plot(
        self,
        path: str | os.PathLike[str] | None = None,
        *,
        channels: Iterable[str | int] | None = None,
        start: float | str | dt.datetime | np.datetime64 | None = None,
        stop: float | str | dt.datetime | np.datetime64 | None = None,
        relative_to: Literal["start", "trigger", "clock"] = "start",
        width: float = 1000.0,
        height: float = 0.0,
        theme: Literal["light", "dark", "print"] = "light",
    ) -> Picture:
        """Draw the recording as SVG: curves over one axis for each feeder or bus, and a bar for each status channel.

        Without channels and times it shows the voltages and currents that are disturbed most, around the disturbance.
        No extreme is lost, not even of a single sample. A notebook shows the picture that is returned.

        :param path: file to write; an existing one is replaced.
        :param channels: channels as for `orvcomtrade.read`.
        :param start: seconds from the first sample of the recording, or a date by the recorder's clock.
        :param stop: likewise.
        :param relative_to: what the axis of times counts from.
        :param width: pixels, from 320 to 20000.
        :param height: pixels, or 0: as high as the contents need.
        :param theme: "light", "dark" or "print".
        :raises ComtradeError: if there is nothing to draw.
        """
        style = {"relative_to": relative_to, "width": width, "height": height, "theme": theme}
        picture = Picture(self._data.svg(channels, start, stop, **style))
        if path is not None:
            picture.save(path)
        return picture

    def view(self, path: str | os.PathLike[str], *, show: bool = False) -> None:
        """Write an interactive page of the recording: one HTML file that any browser shows, without a connection.

        It holds the whole recording: the header, the findings, every channel and every sample as recorded.

        :param path: file to write; an existing one is replaced.
        :param show: whether to open it in the browser.
        """
        from . import writing

        errors = sum(finding.severity == "error" for finding in self.findings)
        warnings = sum(finding.severity == "warning" for finding in self.findings)
        verdict = f"{errors} errors, {warnings} warnings" if errors or warnings else "OK"
        name = os.path.basename(self.path)
        opened = self._data.opened
        with writing.replacing(os.fspath(path), overwrite=True) as file:
            guarded(self.path, lambda: opened.page(file.write, name, verdict, "orvcomtrade"))
        if show:
            import webbrowser

            webbrowser.open(f"file://{os.path.abspath(path)}")

    def __reduce__(self) -> tuple[Any, ...]:
        return Recording, (self._data,)

    def __copy__(self) -> Recording:
        return self

    def __deepcopy__(self, memo: object) -> Recording:
        return self

    def __repr__(self) -> str:
        origin = ", ".join(part for part in (self.station, self.recorder) if part)
        counts = f"{len(self.analog)} analog and {len(self.status)} status channels"
        extent = f"{len(self)} samples in {self.duration:.6g} s" if len(self) else "no samples"
        return f"<Recording {self.path!r}: {origin + ': ' if origin else ''}{counts}, {extent}>"

    def _repr_html_(self) -> str:
        """Show what a notebook shows of a recording."""
        return _html_of(self)


def _html_of(recording: Recording) -> str:
    def cell(value: object) -> str:
        return html.escape(str(value))

    header = recording.header
    rates = ", ".join(
        f"{rate.rate:g} Hz" if rate.rate else "times in the data" for rate in header.sampling_rates[:4]
    ) + (f" and {len(header.sampling_rates) - 4} more" if len(header.sampling_rates) > 4 else "")
    rows = [
        ("recorder", ", ".join(part for part in (header.station, header.recorder) if part)),
        ("start", "" if header.start is None else header.start),
        ("trigger", "" if header.trigger is None else header.trigger),
        ("findings", _counted(recording.findings)),
        ("samples", f"{len(recording)} in {recording.duration:.6g} s ({rates}, {header.data_type})"),
    ]
    channels = "".join(
        f"<tr><td>{cell(channel.label)}</td><td>{cell(channel.phase)}</td><td>{cell(channel.component)}</td>"
        f"<td>{cell(channel.unit)}</td><td>{cell(channel.side)}</td>"
        + "".join(f'<td style="text-align:right">{low_or_high:.6g}</td>' for low_or_high in _extent(channel))
        + "</tr>"
        for channel in recording.analog[:30]
    )
    more = f"<p>and {len(recording.analog) - 30} more</p>" if len(recording.analog) > 30 else ""
    changing = [channel.label for channel in recording.status if channel.changes]
    summary = f"{len(recording.status)} status channels, {len(changing)} of them change"
    names = ", ".join(changing[:30]) + (f" and {len(changing) - 30} more" if len(changing) > 30 else "")
    return (
        f"<strong>{cell(recording.path)}</strong>{_picture_of(recording)}<table>"
        + "".join(f"<tr><th>{cell(name)}</th><td>{cell(value)}</td></tr>" for name, value in rows if value != "")
        + f"</table><details><summary>{len(recording.analog)} analog channels</summary><table><thead><tr><th>name</th>"
        "<th>phase</th><th>component</th><th>unit</th><th>side</th><th>min</th><th>max</th></tr></thead>"
        f"<tbody>{channels}</tbody></table>{more}</details><p>{cell(summary)}{': ' + cell(names) if names else ''}</p>"
    )


def _counted(findings: tuple[Finding, ...]) -> str:
    """Return the numbers of findings, and which are errors."""
    errors = [finding for finding in findings if finding.severity == "error"]
    counts = [
        f"{count} {severity}{'' if count == 1 else 's'}"
        for severity in ("error", "warning", "note")
        if (count := sum(finding.severity == severity for finding in findings))
    ]
    return ", ".join(counts) + "".join(f"; {error.code}: {error.message}" for error in errors[:3])


def _picture_of(recording: Recording) -> str:
    try:
        return recording.plot(width=900).svg
    except ComtradeError:
        return ""  # nothing to draw


def _extent(channel: AnalogChannel) -> tuple[float, float]:
    low, high = channel.envelope(1)
    return (float(low[0]), float(high[0])) if len(low) else (float("nan"), float("nan"))
