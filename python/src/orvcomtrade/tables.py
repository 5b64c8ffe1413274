"""A recording as a data frame, a dataset or a table."""

from __future__ import annotations

import json
from typing import TYPE_CHECKING, Any

from .channels import AnalogChannel, StatusChannel
from .lazy import LazyModule, optional

if TYPE_CHECKING:
    import os

    import numpy as np
    import pandas as pd
    import polars as pl
    import pyarrow as pa
    import xarray as xr

    from .recording import Recording
else:
    np = LazyModule("numpy")


def attributes(recording: Recording) -> dict[str, Any]:
    """Return what the header says, as plain values."""
    header = recording.header
    return {
        "path": header.path,
        "station": header.station,
        "recorder": header.recorder,
        "revision": header.revision,
        "start": None if header.start is None else str(header.start),
        "trigger": None if header.trigger is None else str(header.trigger),
        "trigger_offset": header.trigger_offset,
        "time_code": header.time_code,
        "line_frequency": header.line_frequency,
        "sampling_rates": [list(rate) for rate in header.sampling_rates],
    }


def _channel_attributes(channel: AnalogChannel | StatusChannel) -> dict[str, Any]:
    found: dict[str, Any] = {"id": channel.id, "phase": channel.phase, "component": channel.component}
    if isinstance(channel, AnalogChannel):
        return {"units": channel.unit, "side": channel.side, "skew": channel.skew} | found
    return {"normal": int(channel.normal)} | found


def _full_name(channel: AnalogChannel | StatusChannel) -> str:
    unit = f" [{channel.unit}]" if isinstance(channel, AnalogChannel) and channel.unit else ""
    return channel.name + unit


def _unique(names: list[str], taken: set[str]) -> list[str]:
    """Return the names, changed where needed so that none is taken or occurs twice."""
    given = []
    for name in names:
        unique, count = name, 1
        while unique in taken:
            count += 1
            unique = f"{name}#{count}"
        taken.add(unique)
        given.append(unique)
    return given


def to_pandas(recording: Recording, index: str, columns: str, status: bool) -> pd.DataFrame:
    """See `Recording.to_pandas`."""
    pandas = optional("pandas", "to_pandas")
    if columns not in ("id", "full"):
        raise ValueError(f'columns is "id" or "full", not {columns!r}')
    if index == "time":
        axis = pandas.Index(recording.time, name="time")
    elif index == "datetime":
        axis = pandas.DatetimeIndex(recording.datetime, name="datetime")
    elif index == "sample":
        first = recording.first_sample
        axis = pandas.RangeIndex(first, first + len(recording), name="sample")
    else:
        raise ValueError(f'index is "time", "datetime" or "sample", not {index!r}')
    states = list(recording.status) if status else []
    channels: list[AnalogChannel | StatusChannel] = [*recording.analog, *states]
    named = [channel.label if columns == "id" else _full_name(channel) for channel in channels]
    names = _unique(named, set())
    count = len(recording.analog)
    frame = pandas.DataFrame(np.array(recording).T, index=axis, columns=names[:count], copy=False)
    if states:
        bits = np.empty((len(states), len(recording)), dtype=bool)
        for row, channel in zip(bits, states, strict=True):
            row[:] = channel.values
        frame = pandas.concat([frame, pandas.DataFrame(bits.T, index=axis, columns=names[count:], copy=False)], axis=1)
    frame.attrs = attributes(recording) | {
        "units": {name: channel.unit for name, channel in zip(names, recording.analog, strict=False)},
        "sides": {name: channel.side for name, channel in zip(names, recording.analog, strict=False)},
    }
    return frame


def to_xarray(recording: Recording) -> xr.Dataset:
    """See `Recording.to_xarray`."""
    if not TYPE_CHECKING:
        xr = optional("xarray", "to_xarray")
    channels: list[AnalogChannel | StatusChannel] = [*recording.analog, *recording.status]
    names = _unique([channel.label for channel in channels], {"time", "datetime"})
    coordinates: dict[str, Any] = {"time": ("time", recording.time, {"units": "s", "long_name": "time from the start"})}
    if recording.start is not None:
        coordinates["datetime"] = ("time", recording.datetime, {"long_name": "time by the recorder's clock"})
    variables = {
        name: ("time", channel.values, _channel_attributes(channel))
        for name, channel in zip(names, channels, strict=True)
    }
    # None and lists of lists are nothing that a file format of arrays has.
    plain = {name: value for name, value in attributes(recording).items() if value is not None}
    plain["sampling_rates"] = [rate.rate for rate in recording.sampling_rates]
    return xr.Dataset(variables, coordinates, plain)


def _texts(values: dict[str, Any]) -> dict[str, str]:
    return {name: value if isinstance(value, str) else json.dumps(value) for name, value in values.items()}


def to_arrow(recording: Recording) -> pa.Table:
    """See `Recording.to_arrow`."""
    arrow = optional("pyarrow", "to_arrow")
    channels: list[AnalogChannel | StatusChannel] = [*recording.analog, *recording.status]
    names = _unique([channel.label for channel in channels], {"time"})
    arrays = [arrow.array(recording.time)]
    fields = [arrow.field("time", arrow.float64(), nullable=False, metadata={"units": "s"})]
    for name, channel in zip(names, channels, strict=True):
        arrays.append(arrow.array(channel.values))
        fields.append(arrow.field(name, arrays[-1].type, nullable=False, metadata=_texts(_channel_attributes(channel))))
    schema = arrow.schema(fields, metadata=_texts(attributes(recording)))
    return arrow.Table.from_arrays(arrays, schema=schema)


def to_polars(recording: Recording) -> pl.DataFrame:
    """See `Recording.to_polars`."""
    if not TYPE_CHECKING:
        pl = optional("polars", "to_polars")
    channels: list[AnalogChannel | StatusChannel] = [*recording.analog, *recording.status]
    names = _unique([channel.label for channel in channels], {"time"})
    columns = {"time": recording.time} | {name: channel.values for name, channel in zip(names, channels, strict=True)}
    return pl.DataFrame(columns)


def to_parquet(recording: Recording, path: str | os.PathLike[str], options: dict[str, Any]) -> None:
    """See `Recording.to_parquet`."""
    parquet = optional("pyarrow.parquet", "to_parquet")
    parquet.write_table(to_arrow(recording), path, **options)
