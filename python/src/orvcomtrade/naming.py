"""Channels found by name."""

from __future__ import annotations

from collections.abc import Iterable, Sequence
from typing import TypeVar

from .findings import ChannelError
from .header import AnalogInfo, Header, StatusInfo

AnyInfo = TypeVar("AnyInfo", AnalogInfo, StatusInfo)


def matching(infos: Sequence[AnyInfo], name: str) -> list[int]:
    """Positions of the channels with a name: an identifier, or else a label; "IA#1" is the first "IA"."""
    found = [i for i, info in enumerate(infos) if info.id == name]
    if not found:
        found = [i for i, info in enumerate(infos) if info.label == name]
    if not found and name.endswith("#1"):
        found = [i for i, info in enumerate(infos) if info.id == name[:-2]][:1]
    return found


def _listed(infos: Sequence[AnalogInfo | StatusInfo], suffix: str = "") -> str:
    texts = [
        repr(info.label + suffix if info.label == info.id else info.label)
        + (f" (phase {info.phase})" if info.phase else "")
        + (f" of {info.component}" if info.component else "")
        for info in infos[:20]
    ]
    return ", ".join(texts) + (f" and {len(infos) - 20} more" if len(infos) > 20 else "")


def ambiguous(name: str, infos: Sequence[AnalogInfo | StatusInfo], path: str) -> ChannelError:
    """Return the exception for a name that several channels have."""
    return ChannelError(f"{len(infos)} channels are called {name!r}: take one of {_listed(infos, '#1')}", path)


def unknown(name: str, kind: str, infos: Sequence[AnalogInfo | StatusInfo], path: str) -> ChannelError:
    """Return the exception for a name that no channel has."""
    import difflib

    by_label = {info.label: info for info in infos}
    folded = {label.casefold(): label for label in by_label}
    close = difflib.get_close_matches(name.casefold(), folded, n=5)
    text = f"no {kind} channel is called {name!r}"
    if close:
        return ChannelError(f"{text}; did you mean {_listed([by_label[folded[label]] for label in close])}?", path)
    return ChannelError(f"{text}; there {'are ' + _listed(infos) if infos else 'is none at all'}", path)


def select(channels: Iterable[str | int] | None, header: Header) -> tuple[list[int], list[int]]:
    """Positions of the analog and of the status channels of these names."""
    if channels is None:
        return list(range(len(header.analog))), list(range(len(header.status)))
    if isinstance(channels, (str, int)):
        channels = [channels]
    analog: list[int] = []
    status: list[int] = []
    for name in channels:
        if not isinstance(name, str):
            if not 0 <= name < len(header.analog):
                raise IndexError(f"no analog channel {name}: there are {len(header.analog)}")
            analog.append(int(name))
            continue
        here, there = matching(header.analog, name), matching(header.status, name)
        both: list[AnalogInfo | StatusInfo] = [header.analog[i] for i in here]
        both += [header.status[i] for i in there]
        if len(both) > 1:
            raise ambiguous(name, both, header.path)
        if not both:
            raise unknown(name, "analog or status", [*header.analog, *header.status], header.path)
        analog += here
        status += there
    return analog, status
