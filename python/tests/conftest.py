"""Recordings that the tests read."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

import pytest

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples" / "recordings"


def _folders() -> list[Path]:
    """Give the folders of small recordings, and of real ones where they are at hand."""
    corpus = os.environ.get("ORV_CORPUS_DIR")
    return [EXAMPLES, ROOT / "tests" / "recordings", *([Path(corpus)] if corpus else [])]


def all_recordings() -> list[Path]:
    """Give the configurations of all recordings at hand."""
    return sorted(
        path
        for folder in _folders()
        for path in folder.rglob("*")
        if path.suffix.lower() in (".cfg", ".cff") and not path.name.startswith("._")
    )


def pytest_generate_tests(metafunc: pytest.Metafunc) -> None:
    if "any_recording" in metafunc.fixturenames:
        paths = all_recordings()
        assert len(paths) > 40
        metafunc.parametrize("any_recording", paths, ids=[f"{path.parent.name}/{path.name}" for path in paths])


@pytest.fixture
def feeder() -> Path:
    """ASCII, 8 analog and 5 status channels, 700 samples at 1000 Hz."""
    return EXAMPLES / "feeder_earth_fault.cfg"


@pytest.fixture
def line() -> Path:
    """BINARY, names in CP1251, two rates, skew, primary kA and kV: 7 analog and 5 status channels, 1200 samples."""
    return EXAMPLES / "line_two_phase_fault.cfg"


@pytest.fixture
def twins() -> Path:
    """Give the folder of small recordings that have what real ones have."""
    return ROOT / "tests" / "recordings"


@pytest.fixture(autouse=True)
def _names_of_doctests(doctest_namespace: dict[str, Any]) -> None:
    doctest_namespace["recordings"] = EXAMPLES
