"""The questions of docs/fleet.md find what is there. Usage: queries_test.py PROGRAM DOCUMENT"""

import datetime
import os
import re
import sqlite3
import subprocess
import sys
import tempfile

PROGRAM, DOCUMENT = (os.path.abspath(word) for word in sys.argv[1:3])
NOW = datetime.datetime.now()
OLD = datetime.datetime(2024, 5, 6, 7, 8, 9)


def write(folder, path, station, recorder, start, *, trip=True, residual=False, declared=4, written=None, data=None):
    """Write a recording that picks up 1 ms, and trips 3 ms after its start."""
    name = os.path.join(folder, path)
    os.makedirs(os.path.dirname(name), exist_ok=True)
    analog = ["IA,A,Line,A,1,0,0,-99,99,600,5,P"] + (["3I0,N,Line,A,1,0,0,-99,99,600,5,S"] if residual else [])
    stamp = start.strftime("%d/%m/%Y,%H:%M:%S.%f")
    lines = [f"{station},{recorder},1999", f"{len(analog) + 2},{len(analog)}A,2D"]
    lines += [f"{n},{text}" for n, text in enumerate(analog, 1)]
    lines += ["1,Pick-up,,,0", "2,Trip,,,0", "50", "1", f"1000,{declared}", stamp, stamp, "ASCII", "1"]
    values = ["7"] * len(analog)
    states = [(0, 0), (1, 0), (1, 0), (1, int(trip))]
    samples = [",".join([str(n + 1), str(n * 1000), *values, *map(str, state)]) for n, state in enumerate(states)]
    seconds = (written or start).replace(tzinfo=datetime.timezone.utc).timestamp()
    for extension, content in ((".cfg", lines), (".dat", samples)):
        with open(name + extension, "w", encoding="utf-8", newline="") as file:
            file.write(data if data and extension == ".dat" else "\r\n".join(content) + "\r\n")
        os.utime(name + extension, (seconds, seconds))


def archive(folder):
    """Give what is expected of each question, in their order."""
    later = datetime.timedelta(seconds=1)
    write(folder, "north/a", "North", "Maker A7", OLD)
    write(folder, "north/b", "North", "Maker A7", NOW)
    write(folder, "copies/b", "North", "Maker A7", NOW)
    write(folder, "south/a", "South", "Other B1", OLD + later, trip=False, residual=True, written=OLD)
    write(folder, "east/a", "East", "Clock C2", datetime.datetime(1990, 1, 1), declared=9, written=OLD, trip=False)
    write(folder, "east/b", "East", "Clock C2", datetime.datetime(1990, 1, 2), residual=True, written=OLD, trip=False)
    write(folder, "west/a", "West", "Broken D4", OLD - datetime.timedelta(days=9), data="\x7fELF" + "\0" * 200)
    now = NOW.strftime("%Y-%m-%dT%H:%M:%S.%f000")
    return [
        [("copies/b.cfg", "Maker A7", now), ("north/b.cfg", "Maker A7", now)],
        [("East", "Clock C2", 2), ("South", "Other B1", 1)],
        [("East", "Clock C2", 12543.8, 2)],
        [("2024-05-06T07:08:09.000000000", "North", "South", 1.0)],
        [("Broken", 1, None)],
        [("copies/b.cfg", "north/b.cfg", 2)],
        [("East", "1990-01", 2), ("North", "2024-05", 1), ("North", now[:7], 2), ("South", "2024-05", 1),
         ("West", "2024-04", 1)],
        [("east/b.cfg", "3I0,N,Line,A", "A", "secondary"), ("south/a.cfg", "3I0,N,Line,A", "A", "secondary")],
        [("North", "copies/b.cfg", 0.002), ("North", "north/a.cfg", 0.002), ("North", "north/b.cfg", 0.002)],
        [("not-a-recording", "Broken D4", 1), ("samples-lost", "Clock C2", 1)],
        [("east/a.cfg", 4, 9)],
        [("East", "Clock C2", "1990-01-01T00:00:00.000000000", 1, 2),
         ("East", "Clock C2", "1990-01-02T00:00:00.000000000", 2, 2)],
    ]


def main():
    with open(DOCUMENT, encoding="utf-8") as file:
        questions = re.findall(r"<!-- sql -->\n```sql\n(.*?)```", file.read(), re.S)
    with tempfile.TemporaryDirectory() as folder:
        expected = archive(os.path.join(folder, "archive"))
        for words in (("index", "archive", "-o", "index"), ("catalogue", "index", "-o", "fleet.sqlite")):
            subprocess.run([PROGRAM, *words], cwd=folder, check=True, stdout=subprocess.DEVNULL)
        database = sqlite3.connect(os.path.join(folder, "fleet.sqlite"))
        assert len(questions) == len(expected) == 12, len(questions)
        wrong = 0
        for question, rows in zip(questions, expected):
            found = database.execute(question).fetchall()
            if rows and rows[0][-1] is None:  # a sentence, of which it is enough to be there
                assert all(row[-1] for row in found), found
                found = [(*row[:-1], None) for row in found]
            found = [tuple(round(v, 6) if isinstance(v, float) else v for v in row) for row in found]
            if sorted(found) != sorted(rows):
                wrong += 1
                print(f"{question}gives\n{found}\nnot\n{rows}\n")
        sys.exit(wrong)


main()
