"""Reads COMTRADE disturbance recordings (IEEE C37.111) into NumPy arrays, as devices really write them.

>>> import orvcomtrade as oc
>>> rec = oc.read(recordings / "feeder_earth_fault.cfg")
>>> rec.time[:3], rec.analog["IA"].unit
(array([0.   , 0.001, 0.002]), 'A')

Values are float64 in base units (V, A), times float64 seconds from the first sample; arrays are read-only.
"""

from .channels import AnalogChannel, Change, Channels, StatusChannel
from .findings import (
    ChannelError,
    ComtradeError,
    Finding,
    RecordingNotFoundError,
    RecordingPermissionError,
)
from .header import AnalogInfo, Header, Rate, StatusInfo
from .recording import Event, Picture, Recording, read
from .scanning import check, find, read_header, scan

__all__ = [
    "AnalogChannel",
    "AnalogInfo",
    "Change",
    "ChannelError",
    "Channels",
    "ComtradeError",
    "Event",
    "Finding",
    "Header",
    "Picture",
    "Rate",
    "Recording",
    "RecordingNotFoundError",
    "RecordingPermissionError",
    "StatusChannel",
    "StatusInfo",
    "__version__",
    "check",
    "find",
    "read",
    "read_header",
    "scan",
]


def __getattr__(name: str) -> str:
    if name == "__version__":
        from importlib.metadata import version

        return version("orvcomtrade")
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")
