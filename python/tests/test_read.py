"""What `read` gives, and from what."""

from __future__ import annotations

import io
import os
import shutil
import zipfile
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import orvcomtrade as oc


def same(left: oc.Recording, right: oc.Recording) -> bool:
    return (
        np.array_equal(np.asarray(left), np.asarray(right), equal_nan=True)
        and np.array_equal(left.time, right.time)
        and all(np.array_equal(a.values, b.values) for a, b in zip(left.status, right.status, strict=True))
    )


class TestValues:
    def test_are_in_base_units_and_seconds(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert rec.analog["IA"].values[:3].tolist() == [2.615, 2.815, 2.77]
        assert rec.time[:3].tolist() == [0.0, 0.001, 0.002]
        assert (rec.analog["IA"].unit, rec.analog["UA"].unit) == ("A", "V")

    def test_of_kilovolts_are_volts(self, line: Path) -> None:
        voltage = oc.read(line).analog[4]
        assert (voltage.unit, voltage.info.recorded_unit) == ("V", "kV")
        assert 50_000 < abs(voltage.values).max() < 200_000

    def test_change_sides_by_the_ratio(self, line: Path) -> None:
        primary = oc.read(line, side="primary").analog[0]
        secondary = oc.read(line, side="secondary").analog[0]
        assert (primary.side, secondary.side) == ("primary", "secondary")
        ratio = primary.primary / primary.secondary
        np.testing.assert_allclose(primary.values, secondary.values * ratio, rtol=1e-12)

    def test_are_the_raw_ones_scaled(self, any_recording: Path) -> None:
        try:
            rec = oc.read(any_recording)
        except oc.ComtradeError:
            pytest.skip("not readable")
        for channel in rec.analog[:3]:
            np.testing.assert_allclose(channel.values, channel.raw * channel.a + channel.b, rtol=1e-12, atol=1e-300)

    def test_that_are_missing_are_nan_or_the_marker(self, twins: Path) -> None:
        path = next((twins / "missing-99999").glob("*.cfg"))
        missing, kept = oc.read(path), oc.read(path, missing="keep")
        gaps = np.isnan(np.asarray(missing))
        assert gaps.any()
        assert not np.isnan(np.asarray(kept)).any()
        assert all((np.isnan(channel.values) == channel.is_missing).all() for channel in missing.analog)

    def test_with_skew_applied_lie_between_the_samples(self, line: Path) -> None:
        kept, applied = oc.read(line), oc.read(line, skew="apply")
        channel = kept.analog[1]
        assert channel.skew > 0
        np.testing.assert_array_equal(channel.time, kept.time + channel.skew)
        np.testing.assert_array_equal(applied.analog[1].time, applied.time)
        expected = np.interp(kept.time - channel.skew, kept.time, channel.values)
        np.testing.assert_allclose(applied.analog[1].values[1:], expected[1:], rtol=1e-9)
        assert np.isnan(applied.analog[1].values[0])


class TestArrays:
    def test_are_views_of_one_block(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        block = np.asarray(rec)
        assert block.shape == (8, 700)
        assert all(np.shares_memory(block, channel.values) for channel in rec.analog)
        assert np.asarray(rec.analog[0]) is not None
        assert np.shares_memory(np.asarray(rec.analog[0]), block)

    def test_are_read_only(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        arrays: list[Any] = [np.asarray(rec), rec.time, rec.datetime, rec.analog[0].values, rec.status[0].values]
        for array in arrays:
            with pytest.raises(ValueError, match="read-only"):
                array[0] = 1

    def test_outlive_the_recording(self, feeder: Path) -> None:
        values = oc.read(feeder).analog["IA"].values
        expected = values.copy()
        for _ in range(20):
            oc.read(feeder)
        assert np.array_equal(values, expected)

    def test_convert_and_copy_as_numpy_asks(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert np.asarray(rec, dtype=np.float32).dtype == np.float32
        copy = np.array(rec)
        copy[0, 0] = 7.0
        assert np.asarray(rec)[0, 0] == 2.615
        with pytest.raises(ValueError, match="no view"):
            rec.__array__(np.float32, copy=False)


class TestParts:
    def test_are_the_channels_named(self, feeder: Path) -> None:
        rec = oc.read(feeder, channels=["UA", "Trip", "IA", 3])
        assert rec.analog.names == ["UA", "IA", "3I0"]
        assert rec.status.names == ["Trip"]
        whole = oc.read(feeder)
        assert np.array_equal(rec.analog["3I0"].values, whole.analog["3I0"].values)
        assert rec.status["Trip"].changes == whole.status["Trip"].changes

    def test_hold_both_ends(self, feeder: Path) -> None:
        rec = oc.read(feeder, start=0.1, stop=0.2)
        assert (rec.time[0], rec.time[-1], len(rec), rec.first_sample) == (0.1, 0.2, 101, 100)
        whole = oc.read(feeder)
        assert np.array_equal(np.asarray(rec), np.asarray(whole)[:, 100:201])
        assert np.array_equal(rec.status["Trip"].values, whole.status["Trip"].values[100:201])
        assert np.array_equal(rec.analog[0].raw, whole.analog[0].raw[100:201])

    def test_are_found_by_date(self, feeder: Path) -> None:
        rec = oc.read(feeder, start="2019-03-14T06:41:17.422", stop=np.datetime64("2019-03-14T06:41:17.522"))
        assert (rec.time[0], rec.time[-1]) == (0.1, 0.2)

    def test_may_be_empty(self, feeder: Path) -> None:
        rec = oc.read(feeder, start=10.0)
        assert len(rec) == 0
        assert rec.analog[0].values.size == 0
        assert rec.events() == []
        assert len(rec.to_pandas()) == 0

    def test_without_statuses_have_none(self, feeder: Path) -> None:
        rec = oc.read(feeder, channels=["IA"])
        assert len(rec.status) == 0
        assert rec.to_pandas().columns.tolist() == ["IA"]


class TestSources:
    def test_are_paths_of_any_kind(self, feeder: Path) -> None:
        expected = oc.read(feeder)
        for source in (str(feeder), feeder, feeder.with_suffix(".dat"), os.fsencode(feeder).decode()):
            assert same(oc.read(source), expected)

    def test_are_bytes_and_buffers(self, feeder: Path) -> None:
        cfg, dat = feeder.read_bytes(), feeder.with_suffix(".dat").read_bytes()
        expected = oc.read(feeder)
        for given in (bytes, bytearray, memoryview, io.BytesIO):
            assert same(oc.read(cfg=given(cfg), dat=given(dat)), expected)
        changing = bytearray(dat)
        rec = oc.read(cfg=cfg, dat=changing)
        changing[:] = bytes(len(changing))
        assert rec.findings == ()

    def test_are_combined_files_in_memory(self, feeder: Path, tmp_path: Path) -> None:
        expected = oc.read(feeder)
        expected.write(tmp_path / "one.cff")
        content = (tmp_path / "one.cff").read_bytes()
        assert same(oc.read(content), expected)
        with (tmp_path / "one.cff").open("rb") as file:
            assert same(oc.read(file), expected)

    def test_are_members_of_archives(self, feeder: Path, line: Path, tmp_path: Path) -> None:
        archive = tmp_path / "faults.zip"
        with zipfile.ZipFile(archive, "w") as made:
            made.write(feeder, "2019/FAULT.CFG")
            made.write(feeder.with_suffix(".dat"), "2019/FAULT.DAT")
            made.write(line, "2019/other.cfg")
        rec = oc.read(archive / "2019" / "FAULT.CFG")
        assert same(rec, oc.read(feeder))
        assert same(oc.read(zipfile.Path(archive, "2019/FAULT.CFG")), rec)
        assert same(oc.read(f"zip://2019/FAULT.CFG::{archive}"), rec)
        with pytest.raises(FileNotFoundError, match=r"recordings in it: 2019/FAULT\.CFG, 2019/other\.cfg"):
            oc.read(archive / "fault.cfg")
        broken = tmp_path / "broken.zip"
        broken.write_bytes(b"no archive")
        with pytest.raises(oc.ComtradeError, match="not a zip file"):
            oc.read(broken / "fault.cfg")

    def test_are_objects_of_a_store(self, feeder: Path) -> None:
        import fsspec

        store = fsspec.filesystem("memory")
        store.pipe("/bucket/fault.CFG", feeder.read_bytes())
        store.pipe("/bucket/fault.DAT", feeder.with_suffix(".dat").read_bytes())
        expected = oc.read(feeder)
        assert same(oc.read("memory://bucket/fault.CFG"), expected)
        assert same(oc.read("memory://bucket/fault.DAT"), expected)
        assert same(oc.read(f"file://{feeder}"), expected)
        with pytest.raises(FileNotFoundError) as caught:
            oc.read("memory://bucket/other.cfg")
        assert isinstance(caught.value, oc.ComtradeError)

    def test_have_names_that_are_no_utf8(self, feeder: Path, tmp_path: Path) -> None:
        path = tmp_path / os.fsdecode(b"\xd4\xe0\xe7\xe0.cfg")
        shutil.copy(feeder, path)
        shutil.copy(feeder.with_suffix(".dat"), path.with_suffix(".dat"))
        rec = oc.read(path)
        assert rec.header.cfg_file == str(path)
        assert same(rec, oc.read(feeder))

    def test_that_are_none_are_a_type_error(self) -> None:
        for wrong in (3, None, [1]):
            with pytest.raises(TypeError):
                oc.read(wrong)  # type: ignore[arg-type]
        with pytest.raises(TypeError):
            oc.read("fault.cfg", cfg=b"")

    def test_with_other_data_are_read_with_them(self, feeder: Path, tmp_path: Path) -> None:
        shutil.copy(feeder.with_suffix(".dat"), tmp_path / "data.bin")
        assert same(oc.read(cfg=feeder, dat=tmp_path / "data.bin"), oc.read(feeder))
        assert same(oc.read(feeder, dat=tmp_path / "data.bin"), oc.read(feeder))


class TestArguments:
    @pytest.mark.parametrize(
        "wrong",
        [{"side": "left"}, {"missing": "zero"}, {"skew": "shift"}, {"encoding": "no-such-encoding"}, {"start": "soon"}],
        ids=str,
    )
    def test_that_are_wrong_are_value_errors(self, feeder: Path, wrong: dict[str, Any]) -> None:
        with pytest.raises(ValueError):
            oc.read(feeder, **wrong)


class TestHeader:
    def test_has_what_the_configuration_records(self, line: Path) -> None:
        rec = oc.read(line)
        head = oc.read_header(line)
        assert head == rec.header
        assert head.station == "\u041f\u0421 \u0417\u0430\u0440\u0435\u0447\u043d\u0430\u044f 110 \u043a\u0412"
        assert [rate.rate for rate in head.sampling_rates] == [2000.0, 400.0]
        assert rec.start == np.datetime64("2021-11-02T19:05:44.610", "ns")
        assert rec.trigger_offset == pytest.approx(0.06)
        assert rec.datetime[1] - rec.datetime[0] == np.timedelta64(500, "us")
        assert (head.encoding, head.data_type, head.samples) == ("CP1251", "BINARY", 1200)

    def test_of_a_configuration_alone_has_no_samples(self, twins: Path) -> None:
        path = next((twins / "configuration-only").glob("*.[cC][fF][gG]"))
        rec = oc.read(path)
        assert (len(rec), rec.header.samples, rec.header.dat_file) == (0, 0, "")
        assert rec.findings[0].code == "no-data"
        assert np.asarray(rec).shape == (len(rec.analog), 0)
        assert rec.status[0].values.size == 0

    def test_without_a_start_has_no_dates(self, feeder: Path) -> None:
        cfg = feeder.read_bytes().replace(b"14/03/2019", b"00/00/0000")
        rec = oc.read(cfg=cfg, dat=feeder.with_suffix(".dat").read_bytes())
        assert rec.start is None
        assert rec.trigger_offset is None
        assert rec.events()[0].datetime is None
        for use in (lambda: rec.datetime, lambda: rec.events("trigger"), lambda: rec.to_pandas(index="datetime")):
            with pytest.raises(oc.ComtradeError, match="does not say"):
                use()
