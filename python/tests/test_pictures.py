"""Pictures and pages."""

from __future__ import annotations

import xml.etree.ElementTree as ET
from pathlib import Path
from typing import Any

import pytest

import orvcomtrade as oc


def texts(svg: str) -> str:
    return " ".join(ET.fromstring(svg).itertext())  # noqa: S314 - our own


class TestPlot:
    def test_shows_what_is_disturbed(self, feeder: Path, tmp_path: Path) -> None:
        picture = oc.read(feeder).plot(tmp_path / "fault.svg")
        shown = texts(picture.svg)
        assert all(name in shown for name in ("Ozernaya", "Feeder 4", "IA", "UA", "Trip", "feeder_earth_fault.cfg"))
        assert (tmp_path / "fault.svg").read_text(encoding="utf-8") == picture.svg == picture._repr_svg_()

    def test_shows_the_channels_and_times_named(self, feeder: Path) -> None:
        rec = oc.read(feeder)
        shown = texts(rec.plot(channels=["UB", "Trip"], start=0.1, stop=0.2, relative_to="trigger", theme="dark").svg)
        assert "UB" in shown
        assert "Trip" in shown
        assert "IA" not in shown
        assert "IA" not in texts(oc.read(feeder, channels=["UB"]).plot().svg)

    @pytest.mark.parametrize(
        "wrong", [{"width": 1}, {"height": 1e9}, {"width": float("nan")}, {"theme": "pink"}, {"relative_to": "noon"}]
    )
    def test_refuses_wrong_arguments(self, feeder: Path, wrong: dict[str, Any]) -> None:
        with pytest.raises(ValueError, match=r"width|height|theme|relative_to"):
            oc.read(feeder).plot(**wrong)

    def test_of_nothing_is_an_error(self, feeder: Path, twins: Path) -> None:
        path = next((twins / "configuration-only").glob("*.[cC][fF][gG]"))
        with pytest.raises(oc.ComtradeError, match="no samples"):
            oc.read(path).plot()
        assert oc.read(path)._repr_html_()
        with pytest.raises(oc.ComtradeError, match="window"):
            oc.read(feeder).plot(start=99)


class TestView:
    def test_writes_one_page_that_needs_nothing_else(self, feeder: Path, tmp_path: Path) -> None:
        oc.read(feeder).view(tmp_path / "fault.html")
        page = (tmp_path / "fault.html").read_text(encoding="utf-8")
        assert page.lower().startswith("<!doctype html>")
        assert "Content-Security-Policy" in page
        assert "feeder_earth_fault.cfg" in page

    def test_shows_it_if_wanted(self, feeder: Path, tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
        import webbrowser

        shown: list[str] = []
        monkeypatch.setattr(webbrowser, "open", shown.append)
        oc.read(feeder).view(tmp_path / "fault.html", show=True)
        assert shown == [f"file://{tmp_path}/fault.html"]


def test_a_notebook_shows_a_picture_and_a_table(feeder: Path) -> None:
    shown = oc.read(feeder)._repr_html_()
    assert "<svg" in shown
    assert "<td>IA</td><td>A</td><td>Feeder 4</td><td>A</td>" in shown


def test_a_notebook_shows_what_is_lost(twins: Path) -> None:
    shown = oc.read(next((twins / "declared-885-holds-8").glob("*.cfg")))._repr_html_()
    assert "1 error" in shown
    assert "samples-lost: 885 samples as declared expected, found 8 (99 % lost)" in shown
