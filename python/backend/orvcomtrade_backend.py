"""Builds the package with scikit-build-core; what it adds is that the project around this folder comes along.

The C++ sources lie beside this folder, and a source distribution must hold them. Nothing is written into the source
tree.
"""

from __future__ import annotations

import io
import os
import tarfile
from pathlib import Path

from scikit_build_core import build as _build
from scikit_build_core.build import (
    build_editable,
    build_wheel,
    get_requires_for_build_editable,
    get_requires_for_build_sdist,
    get_requires_for_build_wheel,
)

__all__ = [
    "build_editable",
    "build_sdist",
    "build_wheel",
    "get_requires_for_build_editable",
    "get_requires_for_build_sdist",
    "get_requires_for_build_wheel",
]

PARTS = ("CMakeLists.txt", "cmake", "include", "src", "platform", "intake", "picture", "page")


def _project() -> Path:
    here = Path.cwd()
    inside = here / "project"
    return inside if inside.is_dir() else here.parent


def _sources(project: Path) -> list[Path]:
    """Give the files of the project that a build needs, in a fixed order."""
    files: list[Path] = []
    for part in PARTS:
        path = project / part
        files += [path] if path.is_file() else path.rglob("*")
    left_out = {"tests", "node_modules", "package.json", "package-lock.json"}
    return sorted(path for path in files if path.is_file() and left_out.isdisjoint(path.relative_to(project).parts))


def build_sdist(sdist_directory: str, config_settings: dict[str, list[str] | str] | None = None) -> str:
    """Build a source distribution with the project's sources in its folder `project`."""
    name = _build.build_sdist(sdist_directory, config_settings)
    archive = Path(sdist_directory) / name
    grown = archive.with_suffix(".part")
    project = _project()
    top = name.removesuffix(".tar.gz")
    with tarfile.open(archive) as old, tarfile.open(grown, "w:gz", format=tarfile.PAX_FORMAT) as new:
        for member in old:
            new.addfile(member, old.extractfile(member))
        if project == Path.cwd().parent:  # else they are among the files of the package
            for path in _sources(project):
                member = tarfile.TarInfo(f"{top}/project/{path.relative_to(project).as_posix()}")
                content = path.read_bytes()
                member.size = len(content)
                member.mtime = int(os.environ.get("SOURCE_DATE_EPOCH", "0"))
                new.addfile(member, io.BytesIO(content))
    grown.replace(archive)
    return name
