"""Bad input ends in an exception of the documented kind."""

from __future__ import annotations

import pickle
import shutil
from pathlib import Path

import numpy as np
import pytest
from hypothesis import HealthCheck, given, settings
from hypothesis import strategies as st

import orvcomtrade as oc

EXAMPLES = Path(__file__).resolve().parents[2] / "examples" / "recordings"
TWINS = Path(__file__).resolve().parents[2] / "tests" / "recordings"


def use(rec: oc.Recording) -> None:
    """Use everything that a recording has."""
    assert np.asarray(rec).shape == (len(rec.analog), len(rec))
    assert all(isinstance(str(finding), str) for finding in rec.findings)
    for channel in rec.analog[:4]:
        assert len(channel.raw) == len(channel.values) == len(rec)
        channel.envelope(3)
        channel.points(rate=3 / rec.duration if rec.duration > 0 else 1.0)
    for status in rec.status[:4]:
        assert len(status.values) == len(rec)
    rec.events()
    assert rec._repr_html_()


class TestMissingFile:
    def test_is_a_file_not_found_error_too(self, tmp_path: Path) -> None:
        with pytest.raises(FileNotFoundError) as caught:
            oc.read(tmp_path / "none.cfg")
        error = caught.value
        assert isinstance(error, oc.ComtradeError)
        assert isinstance(error, oc.RecordingNotFoundError)
        assert error.path == error.filename == str(tmp_path / "none.cfg")
        assert [finding.code for finding in error.findings] == ["no-such-file"]
        assert error.errno == 2

    def test_is_one_for_every_function(self, tmp_path: Path) -> None:
        for function in (oc.read, oc.read_header, oc.check, oc.scan):
            with pytest.raises(FileNotFoundError):
                function(tmp_path / "none.cfg")

    def test_of_a_zip_or_a_url_is_one(self, tmp_path: Path) -> None:
        with pytest.raises(FileNotFoundError):
            oc.read("memory://no-such-bucket/none.cfg")
        with pytest.raises(oc.ComtradeError, match="no-such-protocol"):
            oc.read("no-such-protocol://none.cfg")


class TestUnreadable:
    def test_says_where_and_why(self, tmp_path: Path) -> None:
        path = tmp_path / "bad.cfg"
        path.write_text("S,R,1999\n2,2A,0D\n1,IA\n")
        with pytest.raises(oc.ComtradeError) as caught:
            oc.read(path)
        assert str(path) in str(caught.value)
        assert caught.value.findings
        assert oc.check(path) == caught.value.findings
        assert isinstance(caught.value, ValueError)

    @pytest.mark.parametrize("content", [b"", b"\0" * 100, b"PK\x03\x04", b"--- file type: CFG ---\r\n", b"\xff" * 9])
    def test_is_what_is_no_recording(self, content: bytes) -> None:
        for dat in (None, b"", content):
            with pytest.raises(oc.ComtradeError):
                oc.read(cfg=content, dat=dat)

    def test_is_a_folder_or_a_name_with_a_zero(self, tmp_path: Path) -> None:
        for wrong in (tmp_path, str(tmp_path) + "\0.cfg", tmp_path / ("n" * 5000 + ".cfg"), ""):
            with pytest.raises(oc.ComtradeError):
                oc.read(wrong)

    def test_survives_pickling(self, tmp_path: Path) -> None:
        with pytest.raises(oc.ComtradeError) as caught:
            oc.read(tmp_path / "none.cfg")
        copy = pickle.loads(pickle.dumps(caught.value))
        assert (type(copy), str(copy), copy.path) == (type(caught.value), str(caught.value), caught.value.path)
        assert copy.findings == caught.value.findings


class TestChangedFile:
    def test_is_an_error_where_it_is_read_again(self, feeder: Path, tmp_path: Path) -> None:
        for path in (feeder, feeder.with_suffix(".dat")):
            shutil.copy(path, tmp_path)
        rec = oc.read(tmp_path / feeder.name)
        (tmp_path / "feeder_earth_fault.dat").write_bytes(b"1,0\r\n")
        with pytest.raises(oc.ComtradeError, match="shorter"):
            _ = rec.analog[0].raw
        assert rec.analog[0].values[0] == 2.615

    def test_that_is_deleted_is_still_there(self, feeder: Path, tmp_path: Path) -> None:
        for path in (feeder, feeder.with_suffix(".dat")):
            shutil.copy(path, tmp_path)
        rec = oc.read(tmp_path / feeder.name)
        shutil.rmtree(tmp_path)
        assert rec.analog[0].raw[0] == 523
        assert len(pickle.loads(pickle.dumps(rec))) == 700


SMALL = [path for path in sorted(TWINS.rglob("*.cfg")) if path.stat().st_size < 4000]


@settings(max_examples=150, deadline=None, suppress_health_check=[HealthCheck.too_slow])
@given(st.data())
def test_any_bytes_end_in_a_recording_or_a_comtrade_error(data: st.DataObject) -> None:
    path = data.draw(st.sampled_from(SMALL))
    cfg = bytearray(path.read_bytes())
    beside = next((one for one in path.parent.iterdir() if one.suffix.lower() == ".dat"), None)
    dat = bytearray(beside.read_bytes() if beside else b"")
    for changed in (cfg, dat):
        for _ in range(data.draw(st.integers(0, 4))):
            at = data.draw(st.integers(0, max(len(changed) - 1, 0)))
            length = data.draw(st.integers(0, 3))
            changed[at : at + length] = data.draw(
                st.binary(max_size=4) | st.sampled_from([b",", b"\n", b"0", b"9" * 9])
            )
    try:
        use(oc.read(cfg=cfg, dat=dat))
    except oc.ComtradeError as error:
        assert error.findings or error.path


@settings(max_examples=100, deadline=None)
@given(st.binary(max_size=300), st.binary(max_size=300))
def test_random_bytes_end_in_a_comtrade_error(cfg: bytes, dat: bytes) -> None:
    with pytest.raises(oc.ComtradeError):
        oc.read(cfg=cfg, dat=dat)


def test_every_recording_at_hand_can_be_used(any_recording: Path) -> None:
    try:
        use(oc.read(any_recording))
    except oc.ComtradeError as error:
        assert any(finding.severity == "error" for finding in error.findings)
