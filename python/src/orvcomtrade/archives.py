"""Recordings of a folder, an object store, and archives in either, with the files of each, without opening them."""

from __future__ import annotations

import os
import posixpath
import zipfile
from collections.abc import Callable, Iterable, Iterator, Mapping
from typing import Any, NamedTuple

from .findings import ComtradeError, RecordingNotFoundError, RecordingPermissionError
from .lazy import optional
from .sources import Files, companions

KINDS = (".cfg", ".cff", ".dat", ".hdr", ".inf")
MOST_MEMBER = 4 << 30  # bytes of a file in an archive


class Entry(NamedTuple):
    """A file as listed in its folder."""

    name: str
    bytes: int
    #: Seconds since 1970, or None.
    modified: float | None


class Place(NamedTuple):
    """Where a recording is."""

    #: Path or URL of its ``.cfg`` or ``.cff``; ``"archive.zip/fault.cfg"`` for a member of an archive.
    path: str
    #: Its files: kind ("cfg", "dat", ...), and path in the file system or the archive.
    files: tuple[tuple[str, str], ...]
    #: Bytes of all its files.
    bytes: int
    #: When the last of them changed, in seconds since 1970, or None.
    modified: float | None
    #: Archive that it is in, or "".
    archive: str = ""


def grouped(entries: Iterable[Entry]) -> Iterator[tuple[Entry, list[tuple[str, Entry]]]]:
    """Return the recordings among the files of a folder: main file, and all files with their kinds.

    Every ``.cfg`` is a recording, and so is every ``.cff`` without a ``.cfg`` of its name. Files of the same name, in
    upper or lower case, belong to it. The cost is linear in the number of files.
    """
    stems: dict[str, dict[str, Entry]] = {}
    for entry in entries:
        stem, extension = posixpath.splitext(entry.name)
        if extension.lower() in KINDS and not posixpath.basename(entry.name).startswith("._"):
            stems.setdefault(stem.lower(), {})[entry.name] = entry
    for stem in sorted(stems):
        names = stems[stem]
        mains = sorted(name for name in names if name.lower().endswith(".cfg"))
        whole = {posixpath.splitext(name)[0] for name in mains}
        mains += [name for name in sorted(names) if name.lower().endswith(".cff") and name[:-4] not in whole]
        # Two configurations of one name in one case are one recording.
        for main in {posixpath.splitext(name)[0]: name for name in reversed(mains)}.values():
            kind = posixpath.splitext(main)[1].lower()
            found = {kind: main} if kind == ".cff" else companions(main, names)
            yield (
                names[main],
                [(of[1:], names[name]) for of, name in sorted(found.items()) if of != ".cff" or of == kind],
            )


class Store:
    """A folder of this machine, or of an object store that fsspec knows. Pickles as what it was made of."""

    def __init__(self, root: str, storage_options: Mapping[str, Any] | None = None) -> None:
        self.root = root
        self.storage_options = dict(storage_options or {})
        self._system: Any = None
        self.is_local = "://" not in root or root.startswith("file://")
        self._top = root[len("file://") :] if root.startswith("file://") else root
        if not self.is_local:
            scheme, _, rest = root.partition("://")
            # Hadoop's name of the same store.
            self._top = {"s3a": "s3", "s3n": "s3"}.get(scheme, scheme) + "://" + rest

    def __reduce__(self) -> tuple[Any, ...]:
        return Store, (self.root, self.storage_options)

    @property
    def system(self) -> Any:
        """File system of fsspec."""
        if self._system is None:
            core = optional("fsspec.core", "a URL")
            self._system, self._path = core.url_to_fs(self._top, **self.storage_options)
        return self._system

    def read(self, path: str) -> bytes:
        """Return what a file holds."""
        if self.is_local:
            with open(path, "rb") as file:
                return file.read()
        return bytes(self.system.cat_file(path))

    def _url(self, path: str) -> str:
        """Return a path of the file system as the caller names it."""
        if self.is_local:
            return path
        return f"{self.root.partition('://')[0]}://{path.lstrip('/')}" if "://" not in path else path

    def _open(self, path: str) -> Any:
        return open(path, "rb") if self.is_local else self.system.open(path, "rb")

    def _local_folders(self) -> Iterator[tuple[str, list[Entry]]]:
        def refuse(error: OSError) -> None:
            raise error

        if not os.path.isdir(self._top):
            raise FileNotFoundError(2, "no such folder", self._top)
        for folder, folders, names in os.walk(self._top, onerror=refuse):
            folders.sort()
            entries = []
            for name in names:
                if posixpath.splitext(name)[1].lower() in (*KINDS, ".zip"):
                    try:
                        status = os.stat(os.path.join(folder, name))
                    except FileNotFoundError:  # it has gone meanwhile, or is a link to nowhere
                        continue
                    entries.append(Entry(name, status.st_size, status.st_mtime))
            yield folder, entries

    def _remote_folders(self) -> Iterator[tuple[str, list[Entry]]]:
        system = self.system
        listed = system.find(self._path, detail=True)
        if not listed and not system.exists(self._path):
            raise FileNotFoundError(2, "no such folder", self.root)
        folders: dict[str, list[Entry]] = {}
        for path, facts in listed.items():
            modified = facts.get("LastModified") or facts.get("mtime") or facts.get("updated")
            seconds = modified.timestamp() if hasattr(modified, "timestamp") else modified
            name = posixpath.basename(path)
            entry = Entry(name, int(facts.get("size") or 0), seconds if isinstance(seconds, (int, float)) else None)
            folders.setdefault(posixpath.dirname(path), []).append(entry)
        yield from sorted(folders.items())

    def places(self) -> Iterator[Place]:
        """Return the recordings, folder by folder.

        :raises ComtradeError: if a folder can't be listed; recordings in it would look as if they did not exist.
        """
        try:
            for folder, entries in self._local_folders() if self.is_local else self._remote_folders():
                yield from self._places_in(folder, entries)
        except (OSError, ValueError, RuntimeError) as error:
            raise _unlisted(self.root, error) from error
        except Exception as error:  # what clients of stores raise has no common kind
            if type(error).__module__.startswith(("botocore", "aiohttp", "aiobotocore", "google", "azure")):
                raise _unlisted(self.root, error) from error
            raise

    def _places_in(self, folder: str, entries: list[Entry]) -> Iterator[Place]:
        for main, files in grouped(entries):
            yield _place(self._url(posixpath.join(folder, main.name)), files, lambda name: posixpath.join(folder, name))
        for entry in sorted(entries):
            if entry.name.lower().endswith(".zip"):
                yield from self._members(posixpath.join(folder, entry.name))

    def _members(self, archive: str) -> Iterator[Place]:
        try:
            with self._open(archive) as file, zipfile.ZipFile(file) as opened:
                members = [
                    Entry(info.filename, info.file_size, None) for info in opened.infolist() if not info.is_dir()
                ]
        except (zipfile.BadZipFile, NotImplementedError):  # an archive of something else
            return
        for main, files in grouped(members):
            yield _place(f"{self._url(archive)}/{main.name}", files, str, archive)

    def files(self, place: Place) -> Files:
        """Fetch what a recording consists of; of a folder of this machine, only its path."""
        if self.is_local and not place.archive:
            return Files(place.path, os.fsencode(place.path))
        if place.archive:
            with self._open(place.archive) as file, zipfile.ZipFile(file) as opened:
                content = {kind: _member(opened, name) for kind, name in place.files}
        else:
            content = {kind: self.read(path) for kind, path in place.files}
        if "cff" in content:
            return Files(place.path, cfg=content["cff"])
        return Files(place.path, **content)


def _member(archive: zipfile.ZipFile, name: str) -> bytes:
    if archive.getinfo(name).file_size > MOST_MEMBER:
        raise ComtradeError(f"{name}: larger than {MOST_MEMBER} bytes", name)
    return archive.read(name)


def _place(path: str, files: list[tuple[str, Entry]], where: Callable[[str], str], archive: str = "") -> Place:
    times = [entry.modified for _, entry in files if entry.modified is not None]
    return Place(
        path,
        tuple((kind, where(entry.name)) for kind, entry in files),
        sum(entry.bytes for _, entry in files),
        max(times, default=None),
        archive,
    )


def _unlisted(root: str, error: Exception) -> ComtradeError:
    kind: type[ComtradeError] = ComtradeError
    if isinstance(error, FileNotFoundError):
        kind = RecordingNotFoundError
    elif isinstance(error, PermissionError):
        kind = RecordingPermissionError
    return kind(f"{root}: cannot be listed: {error or type(error).__name__}", root)
