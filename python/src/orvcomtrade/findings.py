"""What is wrong with a recording, and the exceptions that carry it."""

from __future__ import annotations

import errno
import os
from typing import Any, Literal, NamedTuple


class Finding(NamedTuple):
    """One thing that is wrong with a recording."""

    #: Stable short name ("sample-count"); docs/findings.md of the project lists them all.
    code: str
    #: A note needs no action; a warning was repaired, or is for a person to judge; after an error data are lost.
    severity: Literal["note", "warning", "error"]
    #: Whether a clause of the standard is not followed, or the files are damaged.
    rule: Literal["standard", "damage"]
    #: Clause of IEEE C37.111-2013, or "".
    clause: str
    #: Path, or the name of bytes in memory.
    file: str
    #: 1-based line of a text, or 0.
    line: int
    #: The field's name in the standard ("endsamp"), or "".
    field: str
    #: Byte offset in the file.
    offset: int
    #: How many places it covers; the others here are of the first.
    places: int
    #: What stands there.
    found: str
    #: What should stand there.
    expected: str
    #: How it was read nevertheless, or "".
    repair: str
    #: What a person can do about it.
    advice: str

    @property
    def place(self) -> str:
        """File, line or byte, and field of the first place: ``"fault.cfg:3:a"``."""
        text = self.file
        if self.line:
            text += f":{self.line}"
        elif self.offset:
            text += f":byte {self.offset}"
        return text + (f":{self.field}" if self.field else "")

    @property
    def message(self) -> str:
        """What is wrong and how it was read, in one sentence."""
        parts = [f"{self.expected} expected" if self.expected else "", f"found {self.found}" if self.found else ""]
        text = ", ".join(part for part in parts if part)
        text = ": ".join(part for part in (text, self.repair or self.advice) if part)
        return text + (f" (first of {self.places})" if self.places > 1 else "")

    def __str__(self) -> str:
        return f"{self.place}: {self.severity} {self.code}: {self.message}"


class ComtradeError(ValueError):
    """A recording that can't be read, or something that a recording does not have.

    :ivar path: path or name of the recording, or "".
    :ivar findings: what is wrong with it, in the order of the files.
    """

    def __init__(self, message: str, path: str = "", findings: tuple[Finding, ...] = ()) -> None:
        super().__init__(message)
        self.path = path
        self.findings = findings

    def __str__(self) -> str:
        return str(self.args[0])

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.args[0], self.path, self.findings)


class ChannelError(ComtradeError, KeyError):
    """A name that no channel has, or more than one."""


class _SystemError(ComtradeError, OSError):
    """A file that cannot be opened."""

    NUMBER = errno.EIO

    def __init__(self, message: str, path: str = "", findings: tuple[Finding, ...] = ()) -> None:
        super().__init__(message, path, findings)
        self.errno = self.NUMBER
        self.strerror = os.strerror(self.NUMBER)
        self.filename = path


class RecordingNotFoundError(_SystemError, FileNotFoundError):
    """There is no such file, or no configuration that belongs to it."""

    NUMBER = errno.ENOENT


class RecordingPermissionError(_SystemError, PermissionError):
    """A file that this user may not read."""

    NUMBER = errno.EACCES


_KINDS: dict[str, type[ComtradeError]] = {
    "no-such-file": RecordingNotFoundError,
    "no-cfg": RecordingNotFoundError,
    "no-permission": RecordingPermissionError,
}


def unreadable(path: str, findings: tuple[Finding, ...]) -> ComtradeError:
    """Return the exception for a recording that can't be read."""
    errors = [finding for finding in findings if finding.severity == "error"]
    if not errors:
        return ComtradeError(f"{path}: not readable", path, findings)
    kind = next((_KINDS[error.code] for error in errors if error.code in _KINDS), ComtradeError)
    text = f"{errors[0].place}: {errors[0].code}: {errors[0].message}"
    if len(errors) > 1:
        text += f" (and {len(errors) - 1} more)"
    return kind(text, path, findings)
