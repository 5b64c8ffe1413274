"""Threads, copies, and many recordings at once."""

from __future__ import annotations

import copy
import pickle
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pytest

import orvcomtrade as oc


class TestThreads:
    def test_read_and_use_the_same_recordings(self, feeder: Path, line: Path) -> None:
        rec = oc.read(line)
        expected = np.asarray(rec).copy()

        def work(turn: int) -> bool:
            other = oc.read(feeder if turn % 2 else line)
            return (
                len(rec.findings) == 2
                and np.array_equal(rec.analog[turn % 7].raw, oc.read(line).analog[turn % 7].raw)
                and np.array_equal(np.asarray(rec), expected)
                and len(other.events()) > 0
                and rec.status[turn % 5].values.size == 1200
            )

        with ThreadPoolExecutor(8) as pool:
            assert all(pool.map(work, range(200)))

    def test_run_while_a_recording_is_read(self, tmp_path: Path) -> None:
        samples = 400_000
        lines = ["S,R,1999", "1,1A,0D", "1,I,,,A,1,0,0,-32767,32767,1,1,S", "50", "1", f"1000,{samples}"]
        lines += ["01/01/2020,00:00:00.0"] * 2 + ["ASCII", "1"]
        (tmp_path / "long.cfg").write_text("\r\n".join(lines))
        (tmp_path / "long.dat").write_text("".join(f"{i + 1},{i},{i % 1000}\r\n" for i in range(samples)))
        turns, done = 0, threading.Event()

        def read() -> None:
            oc.read(tmp_path / "long.cfg")
            done.set()

        thread = threading.Thread(target=read)
        thread.start()
        while not done.is_set():
            turns += 1
        thread.join()
        assert turns > 1000


class TestPickle:
    def test_takes_the_recording_along(self, any_recording: Path) -> None:
        try:
            rec = oc.read(any_recording)
        except oc.ComtradeError:
            pytest.skip("not readable")
        other = pickle.loads(pickle.dumps(rec))
        assert (other.header, other.findings, repr(other)) == (rec.header, rec.findings, repr(rec))
        np.testing.assert_array_equal(other.time, rec.time)
        np.testing.assert_array_equal(np.asarray(other), np.asarray(rec))
        for left, right in zip(other.status, rec.status, strict=True):
            assert left.changes == right.changes

    def test_keeps_the_part_and_the_side(self, line: Path) -> None:
        rec = oc.read(line, side="secondary", channels=[2, 0], start=0.1, stop=0.3, skew="apply")
        other = pickle.loads(pickle.dumps(rec))
        assert other.analog.names == rec.analog.names
        np.testing.assert_array_equal(np.asarray(other), np.asarray(rec))
        np.testing.assert_array_equal(other.time, rec.time)
        assert other.analog[0].side == "secondary"

    def test_copies_are_the_same_object(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert copy.copy(rec) is copy.deepcopy(rec) is rec

    def test_of_channels_keeps_their_values(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        analog, status = pickle.loads(pickle.dumps((rec.analog["IB"], rec.status["Trip"])))
        np.testing.assert_array_equal(analog.values, rec.analog["IB"].values)
        assert (analog.label, status.label, status.changes) == ("IB", "Trip", rec.status["Trip"].changes)


class TestScan:
    def test_gives_headers_in_order_and_goes_on_behind_failures(self, feeder: Path, tmp_path: Path) -> None:
        for i in range(12):
            folder = tmp_path / f"bay {i:02}"
            folder.mkdir()
            (folder / "fault.cfg").write_bytes(feeder.read_bytes() if i % 3 else b"nothing")
            (folder / "fault.dat").write_bytes(feeder.with_suffix(".dat").read_bytes())
            (folder / "._fault.cfg").write_bytes(b"of another system")
        for workers in (1, 4, None):
            results = list(oc.scan(tmp_path, workers=workers))
            assert [path for path, _ in results] == sorted(oc.find(tmp_path))
            assert [isinstance(result, oc.ComtradeError) for _, result in results] == [i % 3 == 0 for i in range(12)]
            assert all(isinstance(result, (oc.Header, oc.ComtradeError)) for _, result in results)

    def test_calls_what_is_wanted(self, feeder: Path) -> None:
        counts = dict(oc.scan(feeder.parent, lambda path: len(oc.read(path))))
        assert sorted(counts.values()) == [700, 1200, 1400]  # type: ignore[type-var]
        assert [path for path, _ in oc.scan([feeder], oc.check)] == [str(feeder)]

    def test_ends_when_no_more_is_taken(self, feeder: Path) -> None:
        for _, result in oc.scan([feeder] * 1000, workers=2):
            assert isinstance(result, oc.Header)
            break

    def test_of_what_is_no_folder_is_an_error_at_once(self, tmp_path: Path) -> None:
        with pytest.raises(FileNotFoundError):
            oc.scan(tmp_path / "none")
        with pytest.raises(ValueError, match="worker"):
            oc.scan(tmp_path, workers=-1)

    def test_passes_mistakes_of_the_caller_on(self, feeder: Path) -> None:
        with pytest.raises(ZeroDivisionError):
            list(oc.scan([feeder], lambda _: 1 // 0))

    def test_looks_into_folders_within_if_wanted(self, twins: Path) -> None:
        assert len(oc.find(twins)) > 40
        assert oc.find(twins, recursive=False) == []

    def test_finds_what_fits_a_pattern(self, feeder: Path) -> None:
        examples = oc.find(feeder.parent)
        assert oc.find(feeder.parent / "*fault.cfg") == [path for path in examples if path.endswith("fault.cfg")]
        assert oc.find(f"{feeder.parent}/**") == examples
        assert oc.find(f"{feeder.parent}*") == examples
        assert oc.find(feeder) == [path for path, _ in oc.scan(feeder)] == [str(feeder)]
        for nothing in ("*.txt", "feeder_earth_fault.dat", "none"):
            with pytest.raises(FileNotFoundError, match="no such folder, and no recording"):
                oc.find(feeder.parent / nothing)
