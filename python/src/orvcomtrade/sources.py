"""Where the bytes of a recording come from: a path, bytes, a file object, a member of an archive, a URL."""

from __future__ import annotations

import os
import posixpath
from collections.abc import Callable, Iterable, Mapping
from typing import IO, Any, NamedTuple, Protocol, runtime_checkable

from . import _core
from .findings import ComtradeError, RecordingNotFoundError, RecordingPermissionError
from .lazy import optional

Buffer = bytes | bytearray | memoryview
Content = Buffer | str | os.PathLike[str] | IO[bytes] | IO[str]


@runtime_checkable
class AnyPath(Protocol):
    """A path outside the file system, such as `zipfile.Path`."""

    @property
    def name(self) -> str:
        """Name without the folder."""

    @property
    def parent(self) -> Any:
        """Path of the folder."""

    def read_bytes(self) -> bytes:
        """Return what the file holds."""


Source = Content | AnyPath


class Files(NamedTuple):
    """The files of a recording, as a path or as bytes."""

    #: What the caller gave, for messages.
    path: str
    #: Path of a file on a disk, else None.
    disk: bytes | None = None
    cfg: bytes = b""
    dat: bytes | None = None
    hdr: bytes | None = None
    inf: bytes | None = None


def content(given: Content | AnyPath) -> bytes:
    """Return the bytes of one file: as given, or read."""
    if isinstance(given, bytes):
        return given
    if isinstance(given, (bytearray, memoryview)):
        return bytes(given)
    read = getattr(given, "read", None) or getattr(given, "read_bytes", None)
    if callable(read):
        got = read()
        return got.encode() if isinstance(got, str) else bytes(got)
    if isinstance(given, (str, os.PathLike)):
        path = os.fspath(given)
        with _Translated(path), open(path, "rb") as file:
            return file.read()
    raise TypeError(f"no path, bytes or file object: {type(given).__name__}")


class _Translated:
    """Gives what goes wrong outside as one of the documented exceptions."""

    def __init__(self, path: str) -> None:
        self._path = path

    def __enter__(self) -> None: ...

    def __exit__(self, kind: object, error: BaseException | None, trace: object) -> None:
        if isinstance(error, ComtradeError) or not isinstance(error, Exception) or isinstance(error, MemoryError):
            return
        kinds: dict[type[Exception], type[ComtradeError]] = {
            FileNotFoundError: RecordingNotFoundError,
            PermissionError: RecordingPermissionError,
        }
        made = next((made for of, made in kinds.items() if isinstance(error, of)), ComtradeError)
        raise made(f"{self._path}: {error}", self._path) from error


def _extension(name: str) -> str:
    return posixpath.splitext(name)[1].lower()


def companions(name: str, names: Iterable[str]) -> dict[str, str]:
    """Return by extension the files of a folder that belong to the recording of the file `name`.

    The named file is taken for its own kind. If several others fit, the one in the same case is taken.
    """
    stem = posixpath.splitext(name)[0]
    found: dict[str, str] = {}
    for other in sorted(names, key=lambda other: (posixpath.splitext(other)[0] != stem, other.swapcase())):
        if posixpath.splitext(other)[0].lower() == stem.lower():
            found.setdefault(_extension(other), other)
    found[_extension(name)] = name
    return found


def _from_folder(path: str, name: str, names: Iterable[str], read: Callable[[str], bytes]) -> Files:
    if _extension(name) == ".cff":
        return Files(path, cfg=read(name))
    found = companions(name, names)
    first = found.get(".cfg") or found.get(".cff")
    if first is None:
        raise RecordingNotFoundError(f"{path}: no configuration of this name", path)
    if _extension(first) == ".cff":
        return Files(path, cfg=read(first))
    others = {kind: read(found[f".{kind}"]) for kind in ("dat", "hdr", "inf") if f".{kind}" in found}
    return Files(path, cfg=read(first), **others)


def _from_zip(path: str, archive: str, member: str) -> Files:
    import zipfile

    with _Translated(path), zipfile.ZipFile(archive) as opened:
        names = opened.namelist()
        if member not in names:
            known = [name for name in names if _extension(name) in (".cfg", ".cff")]
            raise RecordingNotFoundError(f"{path}: no such member; recordings in it: {', '.join(known[:10])}", path)
        return _from_folder(path, member, names, opened.read)


def _zip_member(path: str) -> tuple[str, str] | None:
    """Split "archive.zip/folder/fault.cfg" after the archive, if that is a file."""
    lowered = path.lower()
    at = lowered.find(".zip/")
    while at >= 0:
        if os.path.isfile(path[: at + 4]):
            return path[: at + 4], path[at + 5 :]
        at = lowered.find(".zip/", at + 1)
    return None


def _from_url(url: str, storage_options: Mapping[str, Any] | None) -> Files:
    core = optional("fsspec.core", "a URL")
    with _Translated(url):
        system, path = core.url_to_fs(url, **(storage_options or {}))
        if "file" in (system.protocol if isinstance(system.protocol, tuple) else (system.protocol,)):
            return Files(url, os.fsencode(path))
        names = [posixpath.basename(name) for name in system.ls(posixpath.dirname(path), detail=False)]
        folder = posixpath.dirname(path)
        return _from_folder(
            url, posixpath.basename(path), names, lambda name: bytes(system.cat_file(posixpath.join(folder, name)))
        )


def _from_any_path(source: AnyPath) -> Files:
    path = str(source)
    with _Translated(path):
        parent = source.parent
        names = [entry.name for entry in parent.iterdir()]
        return _from_folder(path, source.name, names, lambda name: bytes((parent / name).read_bytes()))


def gather(
    source: Source | None,
    cfg: Content | None,
    dat: Content | None,
    hdr: Content | None,
    inf: Content | None,
    storage_options: Mapping[str, Any] | None,
) -> Files:
    """Return the files that a caller's arguments name."""
    if source is not None and cfg is not None:
        raise TypeError("give a recording, or cfg= and dat=, not both")
    first = source if cfg is None else cfg
    if first is None:
        raise TypeError("give a recording, or cfg= and dat=")
    if source is None or dat is not None or isinstance(source, (bytes, bytearray, memoryview)):
        others = [None if part is None else content(part) for part in (dat, hdr, inf)]
        return Files(_name_of(first), None, content(first), *others)
    if isinstance(source, (str, os.PathLike)):
        path = os.fspath(source)
        if isinstance(path, bytes):
            path = os.fsdecode(path)
        if "://" in path:
            return _from_url(path, storage_options)
        member = _zip_member(path)
        return _from_zip(path, *member) if member else Files(path, os.fsencode(path))
    if hasattr(source, "read"):
        return Files(_name_of(source), cfg=content(source))
    if isinstance(source, AnyPath):
        return _from_any_path(source)
    raise TypeError(f"no path, bytes or file object: {type(source).__name__}")


def _name_of(given: Source) -> str:
    name = given if isinstance(given, (str, os.PathLike)) else getattr(given, "name", None)
    return os.fspath(name) if isinstance(name, (str, os.PathLike)) else "recording"


def open_files(
    files: Files, *, side: str, encoding: str | None, accept_any_numbers: bool, folders: Any = None
) -> _core.Opened:
    """Let the extension open the files."""
    wanted: dict[str, Any] = {"side": side, "encoding": encoding or "", "accept_any_numbers": accept_any_numbers}
    if files.disk is not None:
        if b"\0" in files.disk:
            raise ComtradeError(f"{files.path!r}: no path has a zero byte", files.path)
        return _core.open_path(files.disk, folders=folders, **wanted)
    name = os.fsencode(posixpath.splitext(files.path)[0] or files.path)
    return _core.open_bytes(files.cfg, files.dat, files.hdr, files.inf, name=name, **wanted)
