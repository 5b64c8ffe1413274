"""The surface of python-comtrade: the same attributes and values, in single and in double precision."""

from __future__ import annotations

import array
import datetime as dt
import io
import warnings
from pathlib import Path
from typing import Any

import comtrade as peer
import numpy as np
import pytest

import orvcomtrade as oc
from orvcomtrade import compat

#: Where python-comtrade is right: recordings that it reads, but for those whose attribute it gets wrong.
WRONG_THERE = {
    "total_samples": "it counts what is declared",
    "start_timestamp": "it takes a year of two digits for one of the first century",
    "trigger_timestamp": "likewise, and it takes the zero of a clock for a date",
    "trigger_time": "it takes the zero of a clock for a date",
    "status_phases": "it fills fields that a revision does not have with 0",
    "cfg.sample_rates": "it takes lengths for end samples",
    "cfg.timemult": "it reads none of a revision other than 1999, 2001 and 2013",
    "time": "it counts from a sample number of 0, and leaves the multiplier or the nanoseconds out",
    "summary": "it shows these",
    "primary": "it fills fields that a revision does not have with 0",
    "secondary": "likewise",
    "pors": "likewise",
}
ATTRIBUTES = [
    "station_name",
    "rec_dev_id",
    "rev_year",
    "analog_channel_ids",
    "analog_phases",
    "status_channel_ids",
    "status_phases",
    "channels_count",
    "analog_count",
    "status_count",
    "frequency",
    "start_timestamp",
    "trigger_timestamp",
    "trigger_time",
    "time_base",
    "ft",
    "hdr",
    "inf",
    "total_samples",
]
FIELDS = ["n", "name", "ph", "ccbm", "uu", "a", "b", "skew", "cmin", "cmax", "primary", "secondary", "pors"]


def differences(theirs: Any, ours: Any) -> set[str]:
    """Give the names of the attributes that are not the same."""
    found = {name for name in ATTRIBUTES if getattr(theirs, name) != getattr(ours, name)}
    for name in ("nrates", "sample_rates", "timemult", "timestamp_critical"):
        if getattr(theirs.cfg, name) != getattr(ours.cfg, name):
            found.add(f"cfg.{name}")
    for left, right in zip(theirs.cfg.analog_channels, ours.cfg.analog_channels, strict=True):
        found |= {field for field in FIELDS if getattr(left, field) != getattr(right, field)}
    if [channel.y for channel in theirs.cfg.status_channels] != [channel.y for channel in ours.cfg.status_channels]:
        found.add("y")
    if theirs.cfg_summary() != ours.cfg_summary():
        found.add("summary")
    for name in ("time", "analog", "status"):
        left, right = getattr(theirs, name), getattr(ours, name)
        columns = [(left, right)] if name == "time" else list(zip(left, right, strict=True))
        for one, other in columns:
            count = min(len(one), len(other))
            if type(one) is not type(other) or getattr(one, "typecode", "") != getattr(other, "typecode", ""):
                found.add(f"type of {name}")
            if not np.array_equal(np.asarray(one[:count]), np.asarray(other[:count]), equal_nan=name == "analog"):
                found.add(name)
    return found


@pytest.mark.parametrize(
    "options", [{}, {"use_numpy_arrays": True, "use_double_precision": True}], ids=["lists", "numpy"]
)
def test_attributes_are_the_same(any_recording: Path, options: dict[str, Any]) -> None:
    try:
        theirs = peer.load(str(any_recording), ignore_warnings=True, **options)
    except Exception:
        pytest.skip("python-comtrade does not read it")
    found = differences(theirs, compat.load(any_recording, ignore_warnings=True, **options))
    wrong = set(WRONG_THERE)
    if theirs.rev_year == "1991":
        wrong |= {"analog", "y"}  # it takes -1 for a missing value, 999999 for none, and a state for a phase
    assert found <= wrong, found - wrong


def test_most_recordings_are_the_same_in_all(twins: Path) -> None:
    same = 0
    for path in sorted(twins.rglob("*.cf[gf]")):
        try:
            theirs = peer.load(str(path), ignore_warnings=True)
        except Exception:  # noqa: S112 - whatever it is, it does not read the recording
            continue
        same += not differences(theirs, compat.load(path, ignore_warnings=True))
    assert same >= 19


class TestLoad:
    def test_takes_files_of_other_names(self, feeder: Path, tmp_path: Path) -> None:
        for suffix, name in ((".cfg", "c.cfg"), (".dat", "d.bin")):
            (tmp_path / name).write_bytes(feeder.with_suffix(suffix).read_bytes())
        (tmp_path / "t.txt").write_text("a text")
        rec = compat.Comtrade().load(tmp_path / "c.cfg", tmp_path / "d.bin", hdr_file=tmp_path / "t.txt")
        assert rec.total_samples == 700
        assert (rec.hdr, rec.inf) == ("a text", None)
        assert rec.file_path == rec.cfg.file_path == str(tmp_path / "c.cfg")

    def test_of_what_is_missing_is_a_file_not_found_error(self, feeder: Path, tmp_path: Path) -> None:
        with pytest.raises(FileNotFoundError):
            compat.load(str(tmp_path / "none.cfg"))
        (tmp_path / "alone.cfg").write_bytes(feeder.read_bytes())
        with pytest.raises(FileNotFoundError):
            compat.load(tmp_path / "alone.cfg")
        with pytest.raises(FileNotFoundError):
            compat.load(feeder, tmp_path / "none.dat")

    def test_of_another_file_is_a_comtrade_error(self, tmp_path: Path) -> None:
        with pytest.raises(compat.ComtradeError, match="Expected CFG file path"):
            compat.load("fault.txt")
        (tmp_path / "bad.cfg").write_text("nothing")
        with pytest.raises(compat.ComtradeError):
            compat.load(tmp_path / "bad.cfg")
        assert compat.ComtradeError is oc.ComtradeError


class TestRead:
    def test_takes_texts_bytes_and_file_objects(self, feeder: Path) -> None:
        cfg, dat = feeder.read_text(), feeder.with_suffix(".dat").read_text()
        expected = compat.load(feeder)
        for given in (
            (cfg, dat),
            (cfg.encode(), dat.encode()),
            (io.StringIO(cfg), io.StringIO(dat)),
            (io.StringIO(cfg), io.BytesIO(dat.encode())),
            (io.StringIO(cfg), dat.splitlines()),
        ):
            rec = compat.Comtrade()
            rec.read(*given)
            assert rec.analog == expected.analog
            assert rec.status == expected.status
            assert rec.time == expected.time

    def test_of_a_configuration_alone(self, feeder: Path) -> None:
        cfg = compat.Cfg()
        cfg.read(feeder.read_text())
        assert (cfg.analog_count, cfg.status_count, cfg.channels_count) == (8, 5, 13)
        assert str(cfg.analog_channels[0]) == "1,IA,A,Feeder 4,A,0.005,0.0,0.0,-32767.0,32767.0,300.0,5.0,S"
        assert str(cfg.status_channels[3]) == "4,Breaker closed,,Feeder 4,1"
        other = compat.Cfg(ignore_warnings=True)
        other.load(feeder)
        assert other.start_timestamp == cfg.start_timestamp == dt.datetime(2019, 3, 14, 6, 41, 17, 322000)


class TestDefaults:
    def test_are_those_of_an_empty_recording(self) -> None:
        rec = compat.Comtrade()
        assert rec.time == array.array("f")
        assert (rec.analog, rec.status, rec.total_samples, rec.rev_year) == ([], [], 0, "2013")
        assert rec.start_timestamp == dt.datetime(1900, 1, 1)

    def test_of_channels_are_those_of_the_standard(self) -> None:
        assert str(compat.AnalogChannel(1, 2.0)) == str(peer.AnalogChannel(1, 2.0))
        assert str(compat.StatusChannel(1)) == str(peer.StatusChannel(1))
        assert str(compat.Channel()) == str(peer.Channel())


def test_older_names_warn(feeder: Path) -> None:
    rec = compat.load(feeder)
    for owner, name, instead in (
        (rec, "digital", "status"),
        (rec, "digital_channel_ids", "status_channel_ids"),
        (rec, "digital_count", "status_count"),
        (rec.cfg, "digital_channels", "status_channels"),
        (rec.cfg, "digital_count", "status_count"),
    ):
        with pytest.warns(FutureWarning, match=instead):
            assert getattr(owner, name) == getattr(owner, instead)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        assert compat.load(feeder, ignore_warnings=True).digital_count == 5


def test_data_frames_lose_no_channel(feeder: Path) -> None:
    frame = compat.load_as_dataframe(feeder)
    assert frame.index.name == "time"
    assert frame.shape == (700, 13)
    assert compat.load(feeder).to_dataframe(index_type="sample").shape == (700, 14)


def test_skew_is_in_microseconds_as_written() -> None:
    cfg = compat.Cfg(ignore_warnings=True)
    line = "1,I,,,A,1,0,250,-9,9,1,1,S"
    cfg.read(f"S,R,1999\n1,1A,0D\n{line}\n50\n1\n1000,0\n01/01/2020,00:00:00.0\n01/01/2020,00:00:00.0\nASCII\n1\n")
    assert cfg.analog_channels[0].skew == 250.0


def test_times_of_channels_have_their_skew(line: Path) -> None:
    ours, theirs = compat.load(line), peer.load(str(line), encoding="cp1251")
    for left, right in zip(ours.analog_time, theirs.analog_time, strict=True):
        # Behind a change of the rate the library counts the first sample still at the old one.
        np.testing.assert_allclose(left[:800], right[:800], rtol=1e-6)
