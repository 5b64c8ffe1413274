#!/usr/bin/env python3
"""document.py TABLE ROOT: puts the table that orvcomtrade_bench printed into docs/performance.md, and draws the picture
at its beginning, docs/images/performance.svg."""

import re
import sys
from pathlib import Path
from typing import Dict, List

BEGIN = "<!-- measured by scripts/bench --document: begin -->\n"
END = "<!-- measured by scripts/bench --document: end -->\n"
COLUMNS = ["shape", "library ms", "floor ms", "ratio", "aim", "MB/s", "million values/s", "peak MB"]
SHAPE = "32+64x200000"

# What is drawn: words, row of the table, column of it.
BARS = [
    ("read the file, and 1 ns a value", "columns/binary/" + SHAPE, "floor ms"),
    ("open + columns, warm storage", "columns/binary/" + SHAPE, "library ms"),
    ("hand-written NumPy reader", "columns-to-numpy/binary/" + SHAPE, "floor ms"),
    ("load of the library: samples", "load/binary/" + SHAPE, "library ms"),
    ("export to NumPy arrays", "export-npy/binary/" + SHAPE, "library ms"),
    ("read the file, write the arrays", "export-npy/binary/" + SHAPE, "floor ms"),
]


def rows_of(text: str) -> List[Dict[str, str]]:
    rows = []
    for line in text.splitlines():
        cells = line.split()
        if "/" in line and len(cells) == 11:
            rows.append(dict(zip(COLUMNS, cells[:8])))
    return rows


def table_of(rows: List[Dict[str, str]]) -> str:
    lines = ["| " + " | ".join(COLUMNS) + " |", "|" + "---|" * len(COLUMNS)]
    lines += ["| " + " | ".join(row[name] for name in COLUMNS) + " |" for row in rows]
    return "\n".join(lines) + "\n"


def picture_of(rows: List[Dict[str, str]]) -> str:
    by_shape = {row["shape"]: row for row in rows}
    bars = [(words, float(by_shape[shape][column]), column) for words, shape, column in BARS if shape in by_shape]
    longest = max(value for _, value, _ in bars)
    height, left, width, top = 28, 250, 400, 44
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 760 {top + height * len(bars) + 12}" '
        'font-family="sans-serif" font-size="14">',
        '<rect width="100%" height="100%" fill="#ffffff"/>',
        '<text x="12" y="26" font-weight="bold" fill="#1a1a1a">32 analog and 64 status channels, 200,000 samples, '
        "BINARY (16 MB): milliseconds</text>",
    ]
    for i, (words, value, column) in enumerate(bars):
        y = top + i * height
        color = "#1f5fa8" if column == "library ms" else "#9aa5b1"
        length = width * value / longest
        parts.append(f'<text x="{left - 10}" y="{y + 17}" text-anchor="end" fill="#1a1a1a">{words}</text>')
        parts.append(f'<rect x="{left}" y="{y + 3}" width="{length:.1f}" height="{height - 8}" fill="{color}"/>')
        parts.append(f'<text x="{left + length + 6:.1f}" y="{y + 17}" fill="#1a1a1a">{value:.1f}</text>')
    return "\n".join(parts) + "\n</svg>\n"


def main() -> None:
    rows = rows_of(Path(sys.argv[1]).read_text(encoding="ascii"))
    root = Path(sys.argv[2])
    page = root / "docs/performance.md"
    text = page.read_text(encoding="utf-8")
    pattern = re.escape(BEGIN) + ".*" + re.escape(END)
    page.write_text(re.sub(pattern, lambda _: BEGIN + table_of(rows) + END, text, flags=re.S), encoding="utf-8")
    (root / "docs/images/performance.svg").write_text(picture_of(rows), encoding="ascii")


main()
