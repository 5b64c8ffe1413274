"""Data frames, datasets, tables, and what is written."""

from __future__ import annotations

import os
import stat
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa
import pyarrow.parquet as pq
import pytest
import xarray as xr

import orvcomtrade as oc


class TestPandas:
    def test_has_a_column_per_channel(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        frame = rec.to_pandas()
        assert frame.shape == (700, 13)
        assert frame.index.name == "time"
        assert np.array_equal(frame.index, rec.time)
        assert frame["IA"].dtype == np.float64
        assert frame["Trip"].dtype == bool
        assert np.array_equal(frame[rec.analog.names].to_numpy().T, np.asarray(rec))
        for channel in rec.status:
            assert np.array_equal(frame[channel.label], channel.values)

    def test_has_units_and_the_header_in_its_attributes(self, line: Path) -> None:
        frame = oc.read(line, side="secondary").to_pandas()
        assert list(frame.attrs["units"].values()) == ["A"] * 4 + ["V"] * 3
        assert set(frame.attrs["sides"].values()) == {"secondary"}
        assert frame.attrs["start"] == "2021-11-02T19:05:44.610000000"
        assert frame.attrs["sampling_rates"] == [[2000.0, 800], [400.0, 1200]]

    def test_may_be_changed_without_the_recording(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        frame = rec.to_pandas()
        frame.iloc[0, 0] = 1e9
        frame["Trip"] = ~frame["Trip"]
        assert rec.analog[0].values[0] == 2.615

    def test_is_indexed_as_wanted(self, feeder: Path) -> None:
        rec = oc.read(feeder, start=0.1, stop=0.2)
        assert rec.to_pandas(index="datetime").index[0] == pd.Timestamp("2019-03-14 06:41:17.422")
        assert rec.to_pandas(index="sample").index[0] == 100
        assert rec.to_pandas(columns="full", status=False).columns[0] == "IA A Feeder 4 [A]"
        for wrong in ({"index": "clock"}, {"columns": "short"}):
            with pytest.raises(ValueError, match="not"):
                rec.to_pandas(**wrong)  # type: ignore[arg-type]


class TestXarray:
    def test_has_a_variable_per_channel_without_a_copy(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        data = rec.to_xarray()
        assert set(data.data_vars) == {*rec.analog.names, *rec.status.names}
        assert np.shares_memory(data["IA"].values, np.asarray(rec))
        assert data["IA"].attrs["units"] == "A"
        assert data["IA"].attrs["phase"] == "A"
        assert data["datetime"].values[0] == rec.start
        assert float(data["IA"].sel(time=0.1).item()) == rec.analog["IA"].values[100]

    def test_opens_recordings_by_name(self, feeder: Path) -> None:
        with xr.open_dataset(feeder, engine="comtrade", channels=["IA", "Trip"], drop_variables="Trip") as data:
            assert list(data.data_vars) == ["IA"]
        with xr.open_dataset(feeder) as data:
            assert data["Trip"].dtype == bool
        assert "comtrade" in xr.backends.list_engines()


class TestArrow:
    def test_has_the_values_without_a_copy(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        table = rec.to_arrow()
        assert table.schema.names == ["time", *rec.analog.names, *rec.status.names]
        address = table["IA"].chunk(0).buffers()[1].address
        assert address == rec.analog["IA"].values.ctypes.data
        assert table.schema.field("IA").metadata[b"units"] == b"A"
        assert table.schema.metadata[b"station"] == b"Ozernaya 35/10 kV"

    def test_outlives_the_recording(self, feeder: Path) -> None:
        table = oc.read(feeder).to_arrow()
        assert table["IA"][0].as_py() == 2.615

    def test_goes_to_parquet_and_back(self, feeder: Path, tmp_path: Path) -> None:
        rec = oc.read(feeder)
        rec.to_parquet(tmp_path / "x.parquet", compression="zstd")
        table = pq.read_table(tmp_path / "x.parquet")
        assert table.equals(rec.to_arrow())
        assert isinstance(table, pa.Table)

    def test_is_a_polars_frame_too(self, feeder: Path) -> None:
        frame = oc.read(feeder).to_polars()
        assert frame.shape == (700, 14)
        assert frame.schema["IA"] == pl.Float64
        assert frame.schema["Trip"] == pl.Boolean


def test_names_that_the_axes_have_are_made_unique() -> None:
    cfg = (
        "S,R,1999\r\n2,2A,0D\r\n1,time,,,A,1,0,0,-9,9,1,1,S\r\n2,datetime,,,A,1,0,0,-9,9,1,1,S\r\n50\r\n1\r\n1000,1\r\n"
    )
    cfg += "01/01/2020,00:00:00.0\r\n01/01/2020,00:00:00.0\r\nASCII\r\n1\r\n"
    rec = oc.read(cfg=cfg.encode(), dat=b"1,0,3,4\r\n")
    assert list(rec.to_xarray().data_vars) == ["time#2", "datetime#2"]
    assert rec.to_arrow().schema.names == ["time", "time#2", "datetime"]
    assert rec.to_polars().columns == ["time", "time#2", "datetime"]


class TestWrite:
    def test_gives_the_same_recording_again(self, any_recording: Path, tmp_path: Path) -> None:
        try:
            rec = oc.read(any_recording)
        except oc.ComtradeError:
            pytest.skip("not readable")
        if not rec.header.dat_file:
            pytest.skip("no data")
        for name in ("again.cfg", "again.cff"):
            rec.write(tmp_path / name)
            again = oc.read(tmp_path / name)
            np.testing.assert_array_equal(np.asarray(again), np.asarray(rec))
            np.testing.assert_array_equal(again.time, rec.time)
            assert [a.changes for a in again.status] == [b.changes for b in rec.status]

    def test_writes_a_part_in_another_form(self, feeder: Path, tmp_path: Path) -> None:
        rec = oc.read(feeder)
        form: dict[str, Any] = {"revision": 2013, "data_type": "FLOAT32"}
        rec.write(tmp_path / "part.cfg", channels=["IA", "Trip"], start=0.1, stop=0.2, **form)
        part = oc.read(tmp_path / "part.cfg")
        assert (part.analog.names, part.status.names, len(part)) == (["IA"], ["Trip"], 101)
        assert (part.revision, part.data_type) == (2013, "FLOAT32")
        assert part.start == np.datetime64("2019-03-14T06:41:17.422", "ns")
        np.testing.assert_allclose(part.analog[0].values, rec.analog["IA"].values[100:201], rtol=1e-6)

    def test_of_what_was_read_in_part_writes_that(self, feeder: Path, tmp_path: Path) -> None:
        oc.read(feeder, channels=["UA"], start=0.1, stop=0.2).write(tmp_path / "part.cfg")
        part = oc.read(tmp_path / "part.cfg")
        assert (part.analog.names, len(part.status), len(part)) == (["UA"], 0, 101)

    def test_replaces_no_file_unless_told_to(self, feeder: Path, tmp_path: Path) -> None:
        rec = oc.read(feeder)
        target = tmp_path / "x.cfg"
        (tmp_path / "x.dat").write_text("mine")
        with pytest.raises(FileExistsError):
            rec.write(target)
        assert (tmp_path / "x.dat").read_text() == "mine"
        assert os.listdir(tmp_path) == ["x.dat"]
        rec.write(target, overwrite=True)
        assert len(oc.read(target)) == 700
        assert sorted(os.listdir(tmp_path)) == ["x.cfg", "x.dat"]
        assert stat.S_IMODE(target.stat().st_mode) & 0o600 == 0o600

    def test_may_replace_its_own_source(self, feeder: Path, tmp_path: Path) -> None:
        oc.read(feeder).write(tmp_path / "x.cfg")
        rec = oc.read(tmp_path / "x.cfg")
        rec.write(tmp_path / "x.cfg", data_type="BINARY", overwrite=True)
        assert oc.read(tmp_path / "x.cfg").data_type == "BINARY"

    def test_leaves_nothing_where_it_fails(self, feeder: Path, tmp_path: Path) -> None:
        rec = oc.read(feeder)
        for wrong in ({"data_type": "FLOAT32"}, {"revision": 1850}, {"data_type": "OCTAL"}, {"encoding": "none"}):
            with pytest.raises(ValueError):
                rec.write(tmp_path / "x.cfg", **wrong)
        with pytest.raises(ValueError, match=r"\.cfg or a \.cff"):
            rec.write(tmp_path / "x.txt")
        assert os.listdir(tmp_path) == []

    def test_keeps_the_texts(self, twins: Path, tmp_path: Path) -> None:
        path = next((twins / "header-and-information").glob("*.cfg"))
        rec = oc.read(path)
        assert rec.hdr
        assert rec.inf
        rec.write(tmp_path / "X.CFG")
        assert sorted(os.listdir(tmp_path)) == ["X.CFG", "X.DAT", "X.HDR", "X.INF"]
        again = oc.read(tmp_path / "X.CFG")
        assert (again.hdr, again.inf) == (rec.hdr, rec.inf)
