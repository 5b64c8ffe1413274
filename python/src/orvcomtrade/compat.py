"""The surface of python-comtrade, so that a script runs by changing its import.

    from orvcomtrade import compat as comtrade

    rec = comtrade.load("fault.cfg")
    rec.time, rec.analog[0], rec.analog_channel_ids, rec.trigger_time

Values are in the units as written (kV stays kV), as there, and lists of ``array.array`` in single precision unless
``use_numpy_arrays`` or ``use_double_precision`` ask for something else. What reads is the intake: files in any case, of
any encoding, with any number of repairs. ``total_samples`` is the number of samples that there are.
"""

from __future__ import annotations

import array
import datetime as dt
import errno
import math
import os
import warnings
from typing import TYPE_CHECKING, Any

from . import _core
from .findings import ComtradeError, unreadable
from .header import AnalogInfo, Header, StatusInfo, make_header
from .lazy import LazyModule, optional
from .opening import findings_of, guarded
from .sources import Files, content, gather, open_files

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd
else:
    np = LazyModule("numpy")

__all__ = [
    "REV_1991",
    "REV_1999",
    "REV_2001",
    "REV_2013",
    "AnalogChannel",
    "Cfg",
    "Channel",
    "Comtrade",
    "ComtradeError",
    "StatusChannel",
    "load",
    "load_as_dataframe",
]

REV_1991 = "1991"
REV_1999 = "1999"
REV_2001 = "2001"
REV_2013 = "2013"

Text = Any  # str, bytes, a file object of either, or lines


class Channel:
    """What analog and status channels have in common."""

    def __init__(self, n: int = 1, name: str = "", ph: str = "", ccbm: str = "") -> None:
        self.n = n
        self.name = name
        self.ph = ph
        self.ccbm = ccbm

    def _fields(self) -> list[Any]:
        return [self.n, self.name, self.ph, self.ccbm]

    def __str__(self) -> str:
        return ",".join(str(field) for field in self._fields())


class StatusChannel(Channel):
    """A status channel as its line declares it; ``y`` is the state in normal operation."""

    def __init__(self, n: int, name: str = "", ph: str = "", ccbm: str = "", y: int = 0) -> None:
        super().__init__(n, name, ph, ccbm)
        self.y = y

    def _fields(self) -> list[Any]:
        return [*super()._fields(), self.y]


class AnalogChannel(Channel):
    """An analog channel as its line declares it: ``a * raw + b`` in the unit ``uu``, skew in microseconds."""

    def __init__(
        self,
        n: int,
        a: float,
        b: float = 0.0,
        skew: float = 0.0,
        cmin: float = -32767.0,
        cmax: float = 32767.0,
        name: str = "",
        uu: str = "",
        ph: str = "",
        ccbm: str = "",
        primary: float = 1.0,
        secondary: float = 1.0,
        pors: str = "P",
    ) -> None:
        super().__init__(n, name, ph, ccbm)
        self.uu = uu
        self.a = a
        self.b = b
        self.skew = skew
        self.cmin = cmin
        self.cmax = cmax
        self.primary = primary
        self.secondary = secondary
        self.pors = pors

    def _fields(self) -> list[Any]:
        own = [self.uu, self.a, self.b, self.skew, self.cmin, self.cmax, self.primary, self.secondary, self.pors]
        return super()._fields() + own


class _Written:
    """What the lines of a configuration say literally, where it is found: letters in their case, any year."""

    def __init__(self, cfg: bytes) -> None:
        text = cfg.decode("latin-1")
        heading = text.lower().find("file type: cfg") if text.startswith("---") else -1
        self._lines = [line.strip() for line in text.splitlines()[1 if heading >= 0 else 0 :]]
        first = self._lines[0].split(",") if self._lines else []
        year = first[2].strip() if len(first) == 3 else ""
        self.revision = year if year.isdigit() else ""

    def side(self, channel: AnalogInfo) -> str:
        """Letter of the side of a channel, as written."""
        letter = {"primary": "P", "secondary": "S"}.get(channel.recorded_side, "")
        line = self._lines[channel.index + 2] if channel.index + 2 < len(self._lines) else ""
        last = line.rpartition(",")[2].strip()
        return last if last.upper() == letter else letter

    def data_type(self, word: str) -> str:
        """Word of the encoding of the data, as written."""
        return next((line for line in reversed(self._lines) if line.upper() == word), word)


def _beginning(path: str) -> bytes:
    """Bytes of a file that is a configuration, or begins with one."""
    with open(path, "rb") as file:
        return file.read(1 << 22)


def _analog(info: AnalogInfo, side: str) -> AnalogChannel:
    return AnalogChannel(
        info.number,
        info.a,
        info.b,
        round(info.skew * 1e6, 9),  # which seconds lose by rounding
        info.min,
        info.max,
        info.id,
        info.recorded_unit,
        info.phase,
        info.component,
        info.primary,
        info.secondary,
        side,
    )


def _status(info: StatusInfo) -> StatusChannel:
    return StatusChannel(info.number, info.id, info.phase, info.component, int(info.normal))


_PREFIXES = {"n": -9, "u": -6, "\u00b5": -6, "\u03bc": -6, "m": -3, "k": 3, "K": 3, "M": 6, "G": 9}
_PREFIXES |= {"\u043c": -3, "\u043a": 3, "\u041a": 3, "\u041c": 6}  # Cyrillic


def _scales(header: Header, factors: Any) -> list[float]:
    """Return the powers of ten by which raw values with decimals are multiplied to become whole numbers."""
    scales = []
    for channel, factor in zip(header.analog, factors.tolist(), strict=True):
        prefix = channel.recorded_unit[: len(channel.recorded_unit) - len(channel.unit)]
        exact = header.data_type != "ASCII" or channel.a == 0.0 or factor == 0.0
        exponent = 0 if exact else round(math.log10(channel.a / factor)) + _PREFIXES.get(prefix, 0)
        scales.append(10.0**exponent)
    return scales


def _datetime(instant: np.datetime64 | None) -> dt.datetime:
    """Return a date in microseconds; the earliest possible one if there is none."""
    return dt.datetime.min if instant is None else instant.astype("datetime64[us]").item()


def _bytes(text: Text) -> bytes:
    if isinstance(text, str):
        return text.encode()
    if isinstance(text, (bytes, bytearray, memoryview)) or hasattr(text, "read"):
        return content(text)
    return "\n".join(line.rstrip("\r\n") for line in text).encode()


class Cfg:
    """A configuration: attributes as its lines declare them."""

    TIME_BASE_NANO_SEC = 1e-9
    TIME_BASE_MICRO_SEC = 1e-6

    def __init__(self, **kwargs: Any) -> None:
        self._ignore_warnings = bool(kwargs.get("ignore_warnings", False))
        self._header: Header | None = None
        self.file_path: str | None = None
        self.station_name = ""
        self.rec_dev_id = ""
        self.analog_channels: list[AnalogChannel] = []
        self.status_channels: list[StatusChannel] = []
        self.frequency = 0.0
        self.sample_rates: list[list[float]] = []
        self.nrates = 1
        self.timemult = 1.0
        self.timestamp_critical = False
        self.start_timestamp = dt.datetime(1900, 1, 1)
        self.trigger_timestamp = dt.datetime(1900, 1, 1)
        self.time_base = self.TIME_BASE_MICRO_SEC
        self.ft = "ASCII"
        self.rev_year = REV_2013

    @property
    def channels_count(self) -> int:
        """Number of channels of both kinds."""
        return self.analog_count + self.status_count

    @property
    def analog_count(self) -> int:
        """Number of analog channels."""
        return len(self.analog_channels)

    @property
    def status_count(self) -> int:
        """Number of status channels."""
        return len(self.status_channels)

    @property
    def digital_channels(self) -> list[StatusChannel]:
        """Status channels: an older name."""
        _deprecated("digital_channels", "status_channels", self._ignore_warnings)
        return self.status_channels

    @property
    def digital_count(self) -> int:
        """Number of status channels: an older name."""
        _deprecated("digital_count", "status_count", self._ignore_warnings)
        return self.status_count

    def load(self, filepath: str | os.PathLike[str], **kwargs: Any) -> None:
        """Read the configuration of a file."""
        path = os.fspath(filepath)
        _require(path)
        self._open(Files(path, cfg=content(path)), kwargs.get("encoding"))
        self.file_path = path

    def read(self, cfg_lines: Text) -> None:
        """Read a configuration that is given as a text or a file object."""
        self._open(Files("recording", cfg=_bytes(cfg_lines)), None)

    def _open(self, files: Files, encoding: str | None) -> tuple[_core.Opened, Header]:
        opened: _core.Opened = guarded(
            files.path, lambda: open_files(files, side="recorded", encoding=encoding, accept_any_numbers=False)
        )
        if not opened.readable:
            raise unreadable(files.path, findings_of(opened, files.path))
        raw = opened.header()
        header = make_header(raw, files.path, opened.cfg_file, opened.dat_file)
        self._header = header
        self.station_name = header.station
        self.rec_dev_id = header.recorder
        written = _Written(files.cfg or _beginning(opened.cfg_file))
        self.rev_year = written.revision or str(header.revision)
        self.analog_channels = [_analog(info, written.side(info)) for info in header.analog]
        self.status_channels = [_status(info) for info in header.status]
        self.frequency = header.line_frequency
        self.sample_rates = [[rate.rate, rate.end_sample] for rate in header.sampling_rates]
        self.nrates = len(self.sample_rates)
        self.timemult = header.time_multiplier
        self.timestamp_critical = header.times_are_stamped
        self.start_timestamp = _datetime(header.start)
        self.trigger_timestamp = _datetime(header.trigger)
        self.time_base = self.TIME_BASE_NANO_SEC if header.has_nanosecond_dates else self.TIME_BASE_MICRO_SEC
        self.ft = written.data_type(header.data_type)
        self._warn(header)
        return opened, header

    def _warn(self, header: Header) -> None:
        if self._ignore_warnings:
            return
        if header.has_nanosecond_dates:
            warnings.warn("Dates in nanoseconds are given in microseconds.", stacklevel=4)
        for name, instant in (("start", header.start), ("trigger", header.trigger)):
            if instant is None:
                warnings.warn(f"No date of the {name}: {dt.datetime.min} is given.", stacklevel=4)


def _deprecated(name: str, instead: str, silently: bool) -> None:
    if not silently:
        warnings.warn(f"{name} is deprecated, use {instead} instead.", FutureWarning, stacklevel=3)


def _require(path: str) -> None:
    if not os.path.isfile(path):
        raise FileNotFoundError(errno.ENOENT, os.strerror(errno.ENOENT), path)


class Comtrade:
    """A recording."""

    EXT_CFG = "cfg"
    EXT_DAT = "dat"
    EXT_INF = "inf"
    EXT_HDR = "hdr"
    ASCII_SEPARATOR = ","

    def __init__(self, **kwargs: Any) -> None:
        self.file_path = ""
        self.ignore_warnings = bool(kwargs.get("ignore_warnings", False))
        self._encoding: str | None = kwargs.get("encoding")
        self._use_numpy_arrays = bool(kwargs.get("use_numpy_arrays", False))
        self._use_double_precision = bool(kwargs.get("use_double_precision", False))
        self._cfg = Cfg(**kwargs)
        self.time: Any = self._floats(())
        self.analog: list[Any] = []
        self.status: list[Any] = []
        self.hdr: str | None = None
        self.inf: str | None = None
        self.total_samples = 0

    @property
    def cfg(self) -> Cfg:
        """The configuration."""
        return self._cfg

    @property
    def station_name(self) -> str:
        """Name of the station."""
        return self._cfg.station_name

    @property
    def rec_dev_id(self) -> str:
        """Identification of the recording device."""
        return self._cfg.rec_dev_id

    @property
    def rev_year(self) -> str:
        """Revision year as written; 1991 where there is none."""
        return self._cfg.rev_year

    @property
    def analog_channel_ids(self) -> list[str]:
        """Identifiers of the analog channels."""
        return [channel.name for channel in self._cfg.analog_channels]

    @property
    def analog_phases(self) -> list[str]:
        """Phases of the analog channels."""
        return [channel.ph for channel in self._cfg.analog_channels]

    @property
    def status_channel_ids(self) -> list[str]:
        """Identifiers of the status channels."""
        return [channel.name for channel in self._cfg.status_channels]

    @property
    def status_phases(self) -> list[str]:
        """Phases of the status channels."""
        return [channel.ph for channel in self._cfg.status_channels]

    @property
    def digital_channel_ids(self) -> list[str]:
        """Identifiers of the status channels: an older name."""
        _deprecated("digital_channel_ids", "status_channel_ids", self.ignore_warnings)
        return self.status_channel_ids

    @property
    def digital(self) -> list[Any]:
        """States: an older name."""
        _deprecated("digital", "status", self.ignore_warnings)
        return self.status

    @property
    def digital_count(self) -> int:
        """Number of status channels: an older name."""
        _deprecated("digital_count", "status_count", self.ignore_warnings)
        return self.status_count

    @property
    def analog_time(self) -> list[Any]:
        """Times of the values of each analog channel in seconds, with its skew."""
        times = np.asarray(self.time, dtype=np.float64)
        return [self._floats(times + channel.skew * 1e-6) for channel in self._cfg.analog_channels]

    @property
    def channels_count(self) -> int:
        """Number of channels of both kinds."""
        return self._cfg.channels_count

    @property
    def analog_count(self) -> int:
        """Number of analog channels."""
        return self._cfg.analog_count

    @property
    def status_count(self) -> int:
        """Number of status channels."""
        return self._cfg.status_count

    @property
    def frequency(self) -> float:
        """Line frequency, Hz."""
        return self._cfg.frequency

    @property
    def start_timestamp(self) -> dt.datetime:
        """Time of the first sample by the recorder's clock."""
        return self._cfg.start_timestamp

    @property
    def trigger_timestamp(self) -> dt.datetime:
        """Time of the trigger by the recorder's clock."""
        return self._cfg.trigger_timestamp

    @property
    def trigger_time(self) -> float:
        """Seconds from the first sample to the trigger."""
        apart = self.trigger_timestamp - self.start_timestamp
        return apart.days * 86400 + apart.seconds + apart.microseconds * 1e-6

    @property
    def time_base(self) -> float:
        """Seconds that a time stamp of 1 stands for, before the multiplier."""
        return self._cfg.time_base

    @property
    def ft(self) -> str:
        """Encoding of the data: "ASCII", "BINARY", "BINARY32" or "FLOAT32"."""
        return self._cfg.ft

    def load(
        self, cfg_file: str | os.PathLike[str], dat_file: str | os.PathLike[str] | None = None, **kwargs: Any
    ) -> Comtrade:
        """Read the files of a recording, and give the same object.

        :param cfg_file: path of a ``.cfg`` or a ``.cff``.
        :param dat_file: path of the data where they have another name; ``inf_file`` and ``hdr_file`` likewise.
        :raises FileNotFoundError: if there is no configuration, or there are no data.
        :raises ComtradeError: if the recording can't be read.
        """
        path = os.fspath(cfg_file)
        extension = path[-3:].upper()
        if extension not in ("CFG", "CFF"):
            raise ComtradeError(f'Expected CFG file path, instead got "{path}".', path)
        _require(path)
        named = {name: kwargs.get(f"{name}_file") for name in ("hdr", "inf")} | {"dat": dat_file}
        files = gather(path, None, None, None, None, None)
        if extension == "CFG" and any(value is not None for value in named.values()):
            for value in named.values():
                if value is not None:
                    _require(os.fspath(value))
            files = self._named_files(path, named)
        self._load(files, kwargs.get("encoding", self._encoding))
        self.file_path = path
        self._cfg.file_path = path
        return self

    def read(self, cfg_lines: Text, dat_lines_or_bytes: Text) -> None:
        """Read a configuration and data that are given as texts, bytes or file objects."""
        self._load(Files("recording", None, _bytes(cfg_lines), _bytes(dat_lines_or_bytes)), self._encoding)

    def _named_files(self, path: str, named: dict[str, Any]) -> Files:
        """Bytes of the files; those without a name of their own belong to the configuration by name."""
        folder, name = os.path.split(path)
        stem = os.path.splitext(name)[0]
        names = sorted(os.listdir(folder or "."), reverse=True)
        found: dict[str, bytes] = {}
        for kind, value in named.items():
            beside = next((one for one in names if one.lower() == f"{stem.lower()}.{kind}"), None)
            taken = value if value is not None else beside and os.path.join(folder, beside)
            if taken:
                found[kind] = content(taken)
        return Files(path, cfg=content(path), **found)

    def _load(self, files: Files, encoding: str | None) -> None:
        opened, header = self._cfg._open(files, encoding)
        if not opened.dat_file:
            missing = os.path.splitext(files.path)[0] + ".dat"
            raise FileNotFoundError(errno.ENOENT, os.strerror(errno.ENOENT), missing)
        columns = guarded(files.path, lambda: opened.columns(raw=True, missing_as_nan=True))
        self.total_samples = len(columns["time"])
        self.time = self._floats(columns["time"])
        channels = self._cfg.analog_channels
        self.analog = [
            self._floats(channel.a * (raw / scale) + channel.b)
            for channel, raw, scale in zip(channels, columns["analog"], _scales(header, columns["a"]), strict=True)
        ]
        self.status = self._states(columns)
        is_combined = opened.cfg_file == opened.dat_file
        self.hdr, self.inf = (self._text(text, is_combined) for text in (header.hdr, header.inf))

    @staticmethod
    def _text(text: str, is_combined: bool) -> str | None:
        lines = text.replace("\x1a", "").replace("\r\n", "\n")
        if is_combined:
            return "\n".join(line.strip() for line in lines.splitlines())
        return lines or None

    def _states(self, columns: dict[str, Any]) -> list[Any]:
        samples, states = columns["change_samples"], columns["change_states"]
        given, begin = [], 0
        for end in columns["change_ends"].tolist():
            counts = np.diff(samples[begin:end], append=self.total_samples)
            values = np.repeat(states[begin:end].astype(np.int32), counts)
            given.append(values if self._use_numpy_arrays else array.array("i", values.tobytes()))
            begin = end
        return given

    def _floats(self, values: Any) -> Any:
        if not self._use_numpy_arrays and len(values) == 0:
            return array.array("d" if self._use_double_precision else "f")
        with np.errstate(over="ignore"):
            floats = np.array(values, dtype=np.float64 if self._use_double_precision else np.float32)
        return floats if self._use_numpy_arrays else array.array(floats.dtype.char, floats.tobytes())

    def to_dataframe(self, **kwargs: Any) -> pd.DataFrame:
        """Return a data frame; ``index_type`` is "time" (default) or "sample". No two columns have the same name."""
        pandas = _pandas()
        header = self._cfg._header
        data = {"time": self.time}
        if header is not None:
            labels = [info.label for info in header.analog] + [info.label for info in header.status]
            data.update(zip(labels, [*self.analog, *self.status], strict=True))
        frame = pandas.DataFrame(data)
        return frame.set_index("time") if kwargs.get("index_type", "time") == "time" else frame

    def cfg_summary(self) -> str:
        """Return the configuration in a few lines."""
        counts = f"{self.analog_count}A + {self.status_count}D = {self.channels_count}"
        rates = [f"Sample rate of {rate} Hz to the sample #{end}" for rate, end in self._cfg.sample_rates]
        span = f"From {self.start_timestamp} to {self.trigger_timestamp} with time mult. = {self._cfg.timemult}"
        first = [f"Channels (Analog,Digital,Total): {counts}", f"Line frequency: {self.frequency} Hz"]
        return "\n".join([*first, *rates, span, f"{self.ft} format"])


def _pandas() -> Any:
    try:
        return optional("pandas", "to_dataframe")
    except ModuleNotFoundError as error:
        raise ComtradeError("pandas package is not installed.") from error


def load(
    cfg_or_cff_file_path: str | os.PathLike[str], dat_file_path: str | os.PathLike[str] | None = None, **kwargs: Any
) -> Comtrade:
    """Read a recording; keyword arguments are those of `Comtrade` and of its ``load``."""
    return Comtrade(**kwargs).load(cfg_or_cff_file_path, dat_file_path, **kwargs)


def load_as_dataframe(
    cfg_or_cff_file_path: str | os.PathLike[str], dat_file_path: str | os.PathLike[str] | None = None, **kwargs: Any
) -> pd.DataFrame:
    """Read a recording as a data frame."""
    return load(cfg_or_cff_file_path, dat_file_path, **(kwargs | {"use_numpy_arrays": True})).to_dataframe(**kwargs)
