"""Channels: how they are found, and what they give."""

from __future__ import annotations

from pathlib import Path

import numpy as np
import pandas as pd
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import orvcomtrade as oc

EXAMPLES = Path(__file__).resolve().parents[2] / "examples" / "recordings"


def named(analog: list[str], status: list[str] | None = None, lines: list[str] | None = None) -> oc.Recording:
    """Make a recording of channels of these names, with a sample or more."""
    status = status or []
    cfg = [f"S,R,1999\n{len(analog) + len(status)},{len(analog)}A,{len(status)}D"]
    cfg += [f"{i + 1},{name},,,A,1,0,0,-32767,32767,1,1,S" for i, name in enumerate(analog)]
    cfg += [f"{i + 1},{name},,,0" for i, name in enumerate(status)]
    rows = lines or ["1,0" + ",1" * len(analog) + ",0" * len(status)]
    cfg += ["50", "1", f"1000,{len(rows)}", "01/01/2020,00:00:00.0", "01/01/2020,00:00:00.0", "ASCII", "1"]
    return oc.read(cfg="\r\n".join(cfg).encode(), dat=("\r\n".join(rows) + "\r\n").encode())


class TestNames:
    def test_give_the_channel(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert rec.analog["IA"].index == rec.analog[0].index == 0
        assert rec.analog[-1].id == "3U0"
        assert [channel.id for channel in rec.analog[1:3]] == ["IB", "IC"]
        assert rec["Trip"].id == "Trip"
        assert "IA" in rec.analog
        assert "Trip" not in rec.analog
        assert rec.analog.get("Trip") is None
        assert "Trip" in rec
        assert "none" not in rec

    def test_of_a_list_give_these_channels(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert rec.analog[["IC", "IA", 7]].names == ["IC", "IA", "3U0"]
        assert dict(rec.analog)["IA"] is rec.analog["IA"]
        with pytest.raises(KeyError, match="no analog channel is called 'ID'"):
            rec.analog[["IA", "ID"]]

    def test_that_are_ambiguous_are_an_error_that_lists_the_candidates(self) -> None:
        rec = named(["IA", "UA", "IA"], ["IA"])
        with pytest.raises(oc.ChannelError, match=r"2 channels are called 'IA': take one of 'IA#1', 'IA#2'"):
            rec.analog["IA"]
        with pytest.raises(KeyError):
            rec.analog.get("IA")
        assert (rec.analog["IA#1"].index, rec.analog["IA#2"].index) == (0, 2)
        assert rec.status["IA"].label == "IA#3"
        with pytest.raises(oc.ChannelError, match="3 channels"):
            rec["IA"]

    def test_that_are_unknown_are_an_error_that_says_which_there_are(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        with pytest.raises(oc.ChannelError, match=r"no analog channel is called 'ia'; did you mean 'IA'"):
            rec.analog["ia"]
        with pytest.raises(oc.ChannelError, match=r"there are 'Earth fault start' of Feeder 4, 'Trip' of Feeder 4"):
            rec.status["xyz"]
        with pytest.raises(oc.ChannelError, match="'IX'"):
            oc.read(feeder, channels=["IX"])
        with pytest.raises(IndexError, match="no analog channel 8: there are 8"):
            rec.analog[8]
        with pytest.raises(IndexError):
            oc.read(feeder, channels=[8])
        with pytest.raises(TypeError, match=r"rec.analog\[0\]"):
            rec[0]  # type: ignore[index]

    def test_make_unique_columns(self) -> None:
        rec = named(["IA", "IA", "IA#2", "", "IA"])
        assert rec.analog.names == ["IA", "IA#3", "IA#2", "A4", "IA#4"]
        assert rec.to_pandas().columns.tolist() == rec.analog.names

    @given(st.lists(st.sampled_from(["I", "I#2", "I#3", "", "A1", "U"]), min_size=1, max_size=8))
    def test_are_unique_whatever_the_identifiers(self, names: list[str]) -> None:
        rec = named(names)
        labels = rec.analog.names
        assert len(set(labels)) == len(names)
        assert all(rec.to_pandas()[label].shape == (1,) for label in labels)


def test_channel_is_a_sequence_of_its_values(feeder: Path) -> None:
    rec = oc.read(feeder)
    for channel in (rec.analog["IA"], rec.status["Trip"]):
        assert channel[88] == channel.values[88]
        assert (channel[80:90] == channel.values[80:90]).all()
        assert list(channel) == list(channel.values)
        series = pd.Series(channel, index=rec.time)
        assert (series == channel.values).all()


class TestPoints:
    def test_without_a_rate_are_the_samples(self, line: Path) -> None:
        channel = oc.read(line).analog[1]
        times, values = channel.points(0.1, 0.2)
        assert times[0] >= 0.1
        assert times[-1] <= 0.2
        assert np.isin(values, channel.values).all()

    def test_have_both_ends(self, feeder: Path) -> None:
        times, values = oc.read(feeder).analog[0].points(0.1, 0.3, rate=1000)
        assert len(times) == 201
        assert times[-1] == pytest.approx(0.3)
        np.testing.assert_allclose(values, oc.read(feeder).analog[0].values[100:301], rtol=1e-9, atol=1e-12)

    def test_are_nothing_where_there_is_no_value(self, feeder: Path) -> None:
        channel = oc.read(feeder).analog[0]
        assert np.isnan(channel.at([-1e-3, 0.7])).all()
        assert channel.at([0.699, 0.0]).tolist() == [2.32, 2.615]

    def test_rest_on_no_missing_value(self) -> None:
        rec = named(["I"], lines=["1,0,1", "2,1000,99999", "3,2000,3", "4,3000,4"])
        times = [0.0, 0.0005, 0.001, 0.0015, 0.002, 0.0025]
        np.testing.assert_allclose(rec.analog[0].at(times), [1, np.nan, np.nan, np.nan, 3, 3.5], rtol=1e-12)

    def test_are_not_without_bounds(self, feeder: Path) -> None:
        channel = oc.read(feeder).analog[0]
        for rate in (0.0, -1.0, float("nan"), float("inf"), 1e300):
            with pytest.raises(ValueError, match=r"rate|points"):
                channel.points(rate=rate)
        assert channel.points(0.3, 0.1, rate=100)[0].size == 0

    @settings(deadline=None)
    @given(st.lists(st.floats(-0.1, 0.8), max_size=50))
    def test_lie_on_straight_lines(self, times: list[float]) -> None:
        rec = oc.read(EXAMPLES / "feeder_earth_fault.cfg", channels=["IA"])
        given_values = rec.analog[0].at(times)
        expected = np.interp(times, rec.time, rec.analog[0].values, left=np.nan, right=np.nan)
        outside = np.isnan(expected) ^ np.isnan(given_values)
        near_ends = [min(abs(time), abs(time - 0.699)) < 1e-8 for time in times]
        assert not (outside & ~np.array(near_ends, dtype=bool)).any()
        both = ~np.isnan(expected) & ~np.isnan(given_values)
        np.testing.assert_allclose(given_values[both], expected[both], rtol=1e-6, atol=1e-6)


class TestEnvelope:
    @given(st.integers(1, 2000))
    def test_loses_no_extreme(self, buckets: int) -> None:
        channel = oc.read(EXAMPLES / "feeder_earth_fault.cfg", channels=["IA"]).analog[0]
        low, high = channel.envelope(buckets)
        assert len(low) == len(high) == min(buckets, 700)
        assert (low.min(), high.max()) == (channel.values.min(), channel.values.max())
        assert (low <= high).all()

    def test_leaves_missing_values_out(self) -> None:
        rec = named(["I"], lines=["1,0,1", "2,1000,99999", "3,2000,-3", "4,3000,4"])
        assert [side.tolist() for side in rec.analog[0].envelope(1)] == [[-3], [4]]
        with pytest.raises(ValueError, match="bucket"):
            rec.analog[0].envelope(0)


class TestStatus:
    def test_changes_make_the_values(self, any_recording: Path) -> None:
        try:
            rec = oc.read(any_recording)
        except oc.ComtradeError:
            pytest.skip("not readable")
        for channel in rec.status[:40]:
            values = channel.values
            steps = np.flatnonzero(np.diff(values)) + 1
            assert [change.sample for change in channel.changes] == steps.tolist()
            assert [change.state for change in channel.changes] == values[steps].tolist()
            assert [change.time for change in channel.changes] == rec.time[steps].tolist()
            assert len(values) == 0 or values[0] == channel.initial

    def test_events_are_in_the_order_of_time(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        events = rec.events(relative_to="trigger")
        assert [event.sample for event in events] == sorted(event.sample for event in events)
        assert (events[0].channel, events[0].state) == ("Earth fault start", True)
        assert events[0].time == pytest.approx(0.088 - 0.076)
        assert events[0].datetime == np.datetime64("2019-03-14T06:41:17.410", "ns")
        with pytest.raises(ValueError, match="relative_to"):
            rec.events("midnight")  # type: ignore[arg-type]

    def test_normal_state_is_that_of_the_configuration(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        assert [channel.normal for channel in rec.status] == [False, False, False, True, False]
        assert rec.status["Breaker closed"].initial


def test_texts_say_what_there_is(feeder: Path) -> None:
    rec = oc.read(feeder)
    assert repr(rec).endswith(
        "Ozernaya 35/10 kV, Feeder 4 bay: 8 analog and 5 status channels, 700 samples in 0.699 s>"
    )
    assert repr(rec.analog["IA"]) == "<AnalogChannel 'IA' phase A, Feeder 4, A, secondary, 700 samples>"
    assert repr(rec.status["Trip"]) == "<StatusChannel 'Trip' 2 changes, 700 samples>"
    assert repr(rec.analog).startswith("<8 analog channels: 'IA', 'IB'")
    assert "<td>IA</td><td>A</td><td>Feeder 4</td><td>A</td>" in rec._repr_html_()


def test_names_in_html_are_data() -> None:
    assert "<script>" not in named(["<script>alert(1)</script>"])._repr_html_()
