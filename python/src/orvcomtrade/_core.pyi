from collections.abc import Callable, Sequence
from typing import Any

import numpy as np
from numpy.typing import NDArray

class ReadError(RuntimeError): ...

class Folders:
    def __init__(self) -> None: ...

class Opened:
    @property
    def readable(self) -> bool: ...
    @property
    def cfg_file(self) -> str: ...
    @property
    def dat_file(self) -> str: ...
    def findings(self) -> list[tuple[Any, ...]]: ...
    def header(self) -> dict[str, Any]: ...
    def columns(
        self,
        *,
        analog: Sequence[int] | None = None,
        status: Sequence[int] | None = None,
        first: int = 0,
        count: int | None = None,
        raw: bool = False,
        missing_as_nan: bool = False,
    ) -> dict[str, Any]: ...
    def write(
        self,
        cfg: Callable[[bytes], object],
        dat: Callable[[bytes], object],
        *,
        revision: int | None = None,
        data_type: str | None = None,
        encoding: str = "",
        combined: bool = False,
        analog: Sequence[int] | None = None,
        status: Sequence[int] | None = None,
        first: int = 0,
        count: int | None = None,
    ) -> None: ...
    def svg(
        self,
        *,
        analog: Sequence[int] | None = None,
        status: Sequence[int] | None = None,
        start: float | None = None,
        end: float | None = None,
        relative_to: str,
        name: str,
        width: float,
        height: float,
        theme: str,
    ) -> str: ...
    def page(self, write: Callable[[bytes], object], name: str, verdict: str, program: str) -> None: ...

def open_path(
    path: bytes,
    *,
    side: str = "recorded",
    encoding: str = "",
    accept_any_numbers: bool = False,
    folders: Folders | None = None,
) -> Opened: ...
def open_bytes(
    cfg: bytes,
    dat: bytes | None = None,
    hdr: bytes | None = None,
    inf: bytes | None = None,
    *,
    name: bytes,
    side: str = "recorded",
    encoding: str = "",
    accept_any_numbers: bool = False,
) -> Opened: ...
def interpolated(
    times: NDArray[np.float64], values: NDArray[np.float64], skew: float, wanted: NDArray[np.float64]
) -> NDArray[np.float64]: ...
