"""Recordings written to files, each whole or not at all."""

from __future__ import annotations

import os
import secrets
from collections.abc import Callable, Iterator
from contextlib import ExitStack, contextmanager, suppress
from typing import IO, TYPE_CHECKING

from .opening import guarded

if TYPE_CHECKING:
    from .recording import Recording


@contextmanager
def replacing(path: str, overwrite: bool) -> Iterator[IO[bytes]]:
    """Yield a file that becomes `path` once all is written, so that a reader never sees half of it."""
    if not overwrite and os.path.lexists(path):
        raise FileExistsError(f"{path} exists; overwrite=True replaces it")
    folder, name = os.path.split(os.path.abspath(path))
    beside = os.path.join(folder, f".{name}.{secrets.token_hex(6)}")
    try:
        with open(os.open(beside, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o666), "wb") as file:
            yield file
        if overwrite:
            os.replace(beside, path)
        else:
            os.link(beside, path)  # fails where another one has come into being
            os.unlink(beside)
    except BaseException:
        with suppress(FileNotFoundError):
            os.unlink(beside)
        raise


def write(
    recording: Recording,
    into: Callable[[Callable[[bytes], object], Callable[[bytes], object], bool], None],
    path: str | os.PathLike[str],
    encoding: str,
    overwrite: bool,
) -> None:
    """See `Recording.write`; `into` writes to two sinks, or all to the first one."""
    target = os.fspath(path)
    base, extension = os.path.splitext(target)
    if extension.lower() not in (".cfg", ".cff"):
        raise ValueError(f"a recording is written to a .cfg or a .cff, not to {target!r}")
    combined = extension.lower() == ".cff"
    with ExitStack() as files:

        def beside(suffix: str) -> IO[bytes]:
            cased = suffix.upper() if extension.isupper() else suffix
            return files.enter_context(replacing(base + cased, overwrite))

        cfg = files.enter_context(replacing(target, overwrite))
        dat = cfg if combined else beside(".dat")
        guarded(recording.path, lambda: into(cfg.write, dat.write, combined))
        if not combined:
            for suffix, text in ((".hdr", recording.hdr), (".inf", recording.inf)):
                if text:
                    beside(suffix).write(text.encode(encoding or "utf-8"))
