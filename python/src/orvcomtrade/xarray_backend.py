"""``xarray.open_dataset("fault.cfg", engine="comtrade")``."""

from __future__ import annotations

import os
from collections.abc import Iterable
from typing import TYPE_CHECKING, Any, ClassVar, Literal

from xarray.backends import BackendEntrypoint

from .recording import read

if TYPE_CHECKING:
    import xarray as xr

    from .header import Side


class ComtradeBackend(BackendEntrypoint):
    """Opens recordings for xarray; takes the arguments of `orvcomtrade.read`."""

    description = "COMTRADE disturbance recordings (IEEE C37.111)"
    open_dataset_parameters: ClassVar[Any] = (
        "filename_or_obj",
        "drop_variables",
        "side",
        "encoding",
        "channels",
        "start",
        "stop",
        "missing",
        "skew",
    )

    def open_dataset(
        self,
        filename_or_obj: Any,
        *,
        drop_variables: str | Iterable[str] | None = None,
        side: Side = "recorded",
        encoding: str | None = None,
        channels: Iterable[str | int] | None = None,
        start: Any = None,
        stop: Any = None,
        missing: Literal["nan", "keep"] = "nan",
        skew: Literal["keep", "apply"] = "keep",
    ) -> xr.Dataset:
        """Open a recording as `orvcomtrade.Recording.to_xarray` gives it."""
        recording = read(
            filename_or_obj,
            side=side,
            encoding=encoding,
            channels=channels,
            start=start,
            stop=stop,
            missing=missing,
            skew=skew,
        )
        dropped = [drop_variables] if isinstance(drop_variables, str) else list(drop_variables or ())
        return recording.to_xarray().drop_vars(dropped, errors="ignore")

    def guess_can_open(self, filename_or_obj: Any) -> bool:
        """Whether the name is that of a configuration or a ``.cff``."""
        if not isinstance(filename_or_obj, (str, os.PathLike)):
            return False
        return os.fspath(filename_or_obj).lower().endswith((".cfg", ".cff"))
