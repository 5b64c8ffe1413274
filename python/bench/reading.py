"""Times `orvcomtrade.read` side by side with a hand-written NumPy reader and with python-comtrade.

    python bench/reading.py [--samples N] [--repetitions N] [--check]

Each reader gives all columns: time, analog values in float64, states. Times are the least of the repetitions, which
alternate; only their ratios say anything about another machine. The memory is that of a process of its own, what it
holds after the reading beyond what it held before, by the size of the columns. --check fails where a bound is missed.
"""

from __future__ import annotations

import argparse
import importlib.metadata
import os
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable
from pathlib import Path
from typing import Any

BOUNDS = {"NumPy": 0.6, "import": 0.1, "memory": 1.1}
#: python-comtrade became 20 times as fast with version 0.2.
PEER_BOUNDS = {"0.1": 1 / 150, "0.2": 0.1}
ANALOGS = 32
STATUSES = 64


def make(folder: Path, name: str, samples: int) -> Path:
    """Make a sound recording: BINARY, or FLOAT32."""
    import numpy as np

    number = "<f4" if name == "FLOAT32" else "<i2"
    record = np.dtype([("n", "<u4"), ("stamp", "<u4"), ("analog", number, ANALOGS), ("status", "<u2", STATUSES // 16)])
    data = np.zeros(samples, record)
    ticks = np.arange(samples)
    data["n"] = ticks + 1
    data["stamp"] = ticks * 250
    wave = 20000 * np.sin(2 * np.pi * 50 / 4000 * ticks)
    data["analog"] = np.round(wave[:, None] * np.linspace(0.5, 1, ANALOGS) + 100 * np.arange(ANALOGS))
    data["status"] = (ticks // 5000 % 7)[:, None]
    path = folder / f"{name.lower()}.cfg"
    lines = ["Bench,Reader,2013", f"{ANALOGS + STATUSES},{ANALOGS}A,{STATUSES}D"]
    lines += [f"{i + 1},I{i + 1},A,,A,{0.001 * (i + 1)},0,0,-32767,32767,600,5,S" for i in range(ANALOGS)]
    lines += [f"{i + 1},D{i + 1},,,0" for i in range(STATUSES)]
    lines += ["50", "1", f"4000,{samples}", "01/02/2024,10:00:00.000000", "01/02/2024,10:00:00.100000", name, "1"]
    lines += ["0,0", "0,0"]
    path.write_bytes(("\r\n".join(lines) + "\r\n").encode())
    data.tofile(path.with_suffix(".dat"))
    return path


def by_hand(path: Path) -> Any:
    """Read what a skilled user knows to be a clean recording: the same columns."""
    import numpy as np

    lines = path.read_text().splitlines()
    analogs, statuses = (int(count[:-1]) for count in lines[1].split(",")[1:])
    fields = [line.split(",") for line in lines[2 : 2 + analogs]]
    a = np.array([float(line[5]) for line in fields])
    b = np.array([float(line[6]) for line in fields])
    rate, samples = (float(number) for number in lines[4 + analogs + statuses].split(","))
    number = "<f4" if lines[7 + analogs + statuses] == "FLOAT32" else "<i2"
    words = -(-statuses // 16)
    record = np.dtype([("n", "<u4"), ("stamp", "<u4"), ("analog", number, analogs), ("status", "<u2", words)])
    data = np.fromfile(path.with_suffix(".dat"), record, int(samples))
    analog = np.empty((analogs, len(data)))
    for i in range(analogs):
        analog[i] = data["analog"][:, i] * a[i] + b[i]
    bits = np.unpackbits(data["status"].copy().view(np.uint8), axis=1, bitorder="little")
    return np.arange(len(data)) / rate, analog, bits[:, :statuses].T


def ours(path: Path) -> Any:
    """Read with this package."""
    import orvcomtrade

    return orvcomtrade.read(path)


def peer(path: Path) -> Any:
    """Read with python-comtrade, its NumPy option on."""
    import comtrade

    return comtrade.load(os.fspath(path), use_numpy_arrays=True, use_double_precision=True, ignore_warnings=True)


def least(readers: dict[str, Callable[[Path], Any]], path: Path, repetitions: int) -> dict[str, float]:
    """Give the least time of each reader, in seconds of the processor's time; they take turns."""
    times = dict.fromkeys(readers, float("inf"))
    for turn in range(repetitions):
        for name, reader in readers.items():
            if name == "python-comtrade" and turn > 1:
                continue
            begin = time.process_time()
            result = reader(path)
            times[name] = min(times[name], time.process_time() - begin)
            del result
    return times


def import_time() -> float:
    """Give the processor's time of `import orvcomtrade`, in seconds: the least of five."""
    program = "import time; t = time.process_time(); import orvcomtrade; print(time.process_time() - t)"
    return min(
        float(subprocess.run([sys.executable, "-c", program], check=True, capture_output=True, text=True).stdout)
        for _ in range(5)
    )


def memory(path: Path) -> float:
    """Give what a read recording holds at most, by its columns."""
    program = f"""
import numpy, orvcomtrade
def peak():
    return next(int(line.split()[1]) * 1024 for line in open("/proc/self/status") if line.startswith("VmHWM:"))
small = numpy.asarray(orvcomtrade.read({os.fspath(path)!r}, stop=0.0))
before = peak()
rec = orvcomtrade.read({os.fspath(path)!r})
print((peak() - before) / (numpy.asarray(rec).nbytes + rec.time.nbytes))
"""
    return float(subprocess.run([sys.executable, "-c", program], check=True, capture_output=True, text=True).stdout)


def main() -> int:
    """Print the table."""
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--samples", type=int, default=200_000)
    parser.add_argument("--repetitions", type=int, default=9)
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    measured: dict[str, float] = {}
    with tempfile.TemporaryDirectory() as folder:
        for kind in ("BINARY", "FLOAT32"):
            path = make(Path(folder), kind, options.samples)
            times = least({"orvcomtrade": ours, "NumPy": by_hand, "python-comtrade": peer}, path, options.repetitions)
            for name, seconds in times.items():
                ratio = times["orvcomtrade"] / seconds
                print(f"{kind:8} {name:16} {seconds * 1e3:8.1f} ms   orvcomtrade / it: {ratio:.4f}")
                measured[name] = max(measured.get(name, 0.0), ratio)
        measured["memory"] = memory(path)
        measured["import"] = import_time()
    print(f"import orvcomtrade: {measured['import'] * 1e3:.1f} ms; memory / columns: {measured['memory']:.3f}")
    peer_version = ".".join(importlib.metadata.version("comtrade").split(".")[:2])
    bounds = BOUNDS | {"python-comtrade": PEER_BOUNDS.get(peer_version, 1.0)}
    missed = {name: value for name, value in measured.items() if value > bounds.get(name, float("inf"))}
    for name, value in missed.items():
        print(f"missed: {name} {value:.4f}, at most {bounds[name]:.4f}")
    return 1 if options.check and missed else 0


if __name__ == "__main__":
    sys.exit(main())
