"""Many recordings at once, more than files may be open."""

import resource
import shutil
from pathlib import Path

import numpy as np
import pytest

import orvcomtrade as oc


def test_more_recordings_than_files_may_be_open_are_kept(feeder: Path) -> None:
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (256, hard))
    try:
        kept = [oc.read(feeder) for _ in range(300)]
        assert [finding.code for finding in kept[0].findings] == [finding.code for finding in oc.check(feeder)]
        channel = kept[1].analog[0]
        assert np.array_equal(channel.raw * channel.a + channel.b, channel.values)
    finally:
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))


def test_files_that_were_replaced_since_are_reported(tmp_path: Path, feeder: Path) -> None:
    for extension in (".cfg", ".dat"):
        shutil.copy(feeder.with_suffix(extension), tmp_path / f"a{extension}")
    first = oc.read(tmp_path / "a.cfg")
    kept = [oc.read(feeder) for _ in range(40)]
    (tmp_path / "a.dat").write_bytes((tmp_path / "a.dat").read_bytes() + b"\r\n")
    with pytest.raises(oc.ComtradeError, match="have changed since they were read"):
        _ = first.findings
    assert len(kept) == 40
