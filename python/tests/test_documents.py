"""What the documents say about Python is what happens; so are the examples of the docstrings."""

from __future__ import annotations

import contextlib
import doctest
import importlib
import io
import os
import pkgutil
import shutil
import sys
from pathlib import Path
from typing import Any

import pytest

import orvcomtrade

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "docs" / "site"))


def blocks(path: Path) -> list[Any]:
    """Give the blocks of a document that are code for Python, and what it writes."""
    Document = importlib.import_module("project_markdown").Document  # noqa: N806 - a class

    return [block for block in Document(path).blocks if (block.directive or "").startswith("python")]


def documents() -> list[Any]:
    """Give the names of the documents that have code for Python."""
    spark = pytest.mark.skip(reason="needs Spark: tests/test_spark.py runs it, where scripts/fleet installs that")
    names = [
        path.relative_to(ROOT).as_posix()
        for folder in (ROOT, ROOT / "docs", ROOT / "python")
        for path in sorted(folder.glob("*.md"))
        if blocks(path)
    ]
    return [pytest.param(name, marks=spark if name == "docs/fleet.md" else ()) for name in names]


@pytest.mark.parametrize("name", documents())
def test_every_block_runs_and_writes_what_is_shown(name: str, tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    # The project's own front page is tried in the project's folder, the guides beside recordings of one's own.
    shutil.copytree(
        ROOT / "examples" / "recordings", tmp_path / ("recordings" if "/" in name else "examples/recordings")
    )
    monkeypatch.chdir(tmp_path)
    found = blocks(ROOT / name)
    assert found
    names: dict[str, Any] = {}
    written, problems = "", []
    for block in found:
        if block.directive == "python output":
            if written.rstrip("\n") != block.text.rstrip("\n"):
                problems.append(f"line {block.line} shows\n{block.text}and there is\n{written}")
            written = ""
            continue
        assert written == "", (
            f"line {block.line}: the block before it writes what the document does not show: {written}"
        )
        with contextlib.redirect_stdout(io.StringIO()) as output:
            exec(compile(block.text, f"{name}:{block.line}", "exec"), names)  # noqa: S102 - that is what it is for
        written = output.getvalue()
    assert written == ""
    assert not problems, "\n".join(problems)


@pytest.mark.parametrize("name", [module.name for module in pkgutil.iter_modules(orvcomtrade.__path__)])
def test_docstrings_have_examples_that_are_true(name: str) -> None:
    if name == "xarray_backend":
        pytest.importorskip("xarray")
    if name.startswith("spark"):
        pytest.importorskip("pyspark")
    module = importlib.import_module(f"orvcomtrade.{name}")
    found = doctest.testmod(
        module,
        extraglobs={"recordings": ROOT / "examples" / "recordings"},
        optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE,
    )
    assert found.failed == 0


def test_docstring_of_the_package_is_true() -> None:
    found = doctest.testmod(orvcomtrade, extraglobs={"recordings": ROOT / "examples" / "recordings"})
    assert found.attempted > 0
    assert found.failed == 0


def test_nothing_heavy_is_imported_before_it_is_used() -> None:
    import subprocess

    program = "import sys, orvcomtrade; print([name for name in ('numpy', 'pandas', 'xarray') if name in sys.modules])"
    environment = os.environ | {"PYTHONPATH": os.pathsep.join(sys.path)}
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=True, env=environment)
    assert done.stdout == "[]\n"
