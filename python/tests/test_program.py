"""Values, times and states are those that the command-line tool exports (ORVCOMTRADE_PROGRAM)."""

from __future__ import annotations

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest

import orvcomtrade as oc

PROGRAM = os.environ.get("ORVCOMTRADE_PROGRAM", "")


@pytest.mark.skipif(not PROGRAM, reason="ORVCOMTRADE_PROGRAM is not set")
@pytest.mark.parametrize("form", ["as it is", "in memory", "combined"])
def test_export_gives_the_same(any_recording: Path, form: str, tmp_path: Path) -> None:
    try:
        rec = oc.read(any_recording)
    except oc.ComtradeError:
        rec = None
    command = [PROGRAM, "export", str(any_recording), "--format", "npy", "--output", str(tmp_path / "x.npy")]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if rec is None:
        assert done.returncode == 1
        pytest.skip("not readable")
    if not rec.header.dat_file:
        pytest.skip("no data")
    assert (tmp_path / "x.npy").exists() or list(tmp_path.glob("*.npy")), done.stderr
    if form == "in memory":
        if rec.header.cfg_file == rec.header.dat_file:
            rec = oc.read(Path(rec.header.cfg_file).read_bytes())
        else:
            rec = oc.read(cfg=Path(rec.header.cfg_file), dat=Path(rec.header.dat_file))
    elif form == "combined":
        rec.write(tmp_path / "combined.cff")
        rec = oc.read(tmp_path / "combined.cff")
    states_file = next(tmp_path.glob("*.status.npy"))
    values_file = next(path for path in tmp_path.glob("*.npy") if path != states_file)
    values, states = np.load(values_file), np.load(states_file)
    np.testing.assert_array_equal(values[:, 0], rec.time)
    np.testing.assert_array_equal(values[:, 1:].T, np.asarray(rec))
    assert states.shape[1] == len(rec.status)
    for column, channel in zip(states.T, rec.status, strict=True):
        np.testing.assert_array_equal(column, channel.values)
