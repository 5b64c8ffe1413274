"""Opening of recordings: which part of one is wanted, and what is wrong with it."""

from __future__ import annotations

import os
from collections.abc import Callable
from typing import Any, Literal, NamedTuple, TypeVar

from . import _core
from .findings import ComtradeError, Finding, unreadable
from .header import Header, Side, make_header
from .sources import Files, open_files

Result = TypeVar("Result")


class Wanted(NamedTuple):
    """Which part of a recording is read, and how."""

    side: Side = "recorded"
    encoding: str | None = None
    channels: tuple[str | int, ...] | None = None
    start: Any = None
    stop: Any = None
    missing: Literal["nan", "keep"] = "nan"
    skew: Literal["keep", "apply"] = "keep"
    accept_any_numbers: bool = False


def guarded(path: str, call: Callable[[], Result]) -> Result:
    """Call into the extension; a file that changed or can't be read any more is a ComtradeError."""
    try:
        return call()
    except RuntimeError as error:
        text = str(error)
        names_it = os.path.splitext(path)[0] in text
        raise ComtradeError(text if names_it else f"{path}: {text}", path) from error


def findings_of(opened: _core.Opened, path: str) -> tuple[Finding, ...]:
    """Return what is wrong with a recording."""
    return tuple(Finding(*finding) for finding in guarded(path, opened.findings))


def open_readable(files: Files, wanted: Wanted, folders: _core.Folders | None = None) -> tuple[_core.Opened, Header]:
    """Open a recording; one that can't be read raises the exception that says why."""
    opened: _core.Opened = guarded(
        files.path,
        lambda: open_files(
            files,
            side=wanted.side,
            encoding=wanted.encoding,
            accept_any_numbers=wanted.accept_any_numbers,
            folders=folders,
        ),
    )
    if not opened.readable:
        raise unreadable(files.path, findings_of(opened, files.path))
    return opened, make_header(opened.header(), files.path, opened.cfg_file, opened.dat_file)
