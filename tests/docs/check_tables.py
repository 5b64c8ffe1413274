#!/usr/bin/env python3
"""check_tables.py ROOT: no cell of a table in the documents of the site is long. A table is about 110 characters wide
there and a cell has two lines; what takes more belongs into a list or a section."""

import re
import sys
from pathlib import Path
from typing import List

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "docs" / "site"))
from project_markdown import LINK, Document, listed_documents  # noqa: E402

CELL = 100  # characters as shown
ROW = 130  # of all its cells together, so that each has its share of the width
NAME = 45  # code in one of the first two columns that is not the last: the site never breaks it


def cells(row: str) -> List[str]:
    """The texts between the bars, without what marks links."""
    return [LINK.sub(r"\2", cell).strip() for cell in re.split(r"(?<!\\)\|", row.strip())[1:-1]]


def problem(row: List[str]) -> str:
    lengths = [len(cell.replace("`", "").replace("**", "")) for cell in row]
    names = [len(name) for cell in row[: min(2, len(row) - 1)] for name in re.findall(r"`([^`]*)`", cell)]
    measured = (("cell", max(lengths), CELL), ("row", sum(lengths), ROW), ("name", max(names, default=0), NAME))
    for what, length, limit in measured:
        if length > limit:
            return f"a {what} of {length} characters, {limit} at most"
    return ""


def check_tables(root: Path) -> List[str]:
    problems = []
    for name in listed_documents(root):
        for number, line in enumerate(Document(root / name).prose, 1):
            found = problem(cells(line)) if line.startswith("|") else ""
            if found:
                problems.append(f"{name}:{number}: {found}")
    return problems


if __name__ == "__main__":
    found_in_tables = check_tables(Path(sys.argv[1]).resolve())
    for line_with_place in found_in_tables:
        print(line_with_place)
    sys.exit(1 if found_in_tables else 0)
