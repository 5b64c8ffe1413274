"""Every recording of an archive on the workers of Dask: a recipe, not a part of the package."""

from __future__ import annotations

import itertools
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import orvcomtrade as oc
from orvcomtrade.archives import Place, Store
from orvcomtrade.opening import Wanted, open_readable
from orvcomtrade.spark import is_no_recording, path_bytes

Batch = tuple[Store, list[Place]]


def places_in_batches(root: str, size: int) -> list[Batch]:
    """Divide an archive into batches."""
    store = Store(root)
    places = store.places()
    return [(store, batch) for batch in iter(lambda: list(itertools.islice(places, size)), [])]


def facts(batch: Batch) -> list[tuple[str, int | None]]:
    """Give path and number of samples of each recording of a batch; None of one that cannot be read."""
    return list(_facts(*batch))


def _facts(store: Store, places: list[Place]) -> Iterator[tuple[str, Any]]:
    for place in places:
        path = (path_bytes(place.path) or place.path).removeprefix(f"{Path(store.root)}/")
        try:
            yield path, open_readable(store.files(place), Wanted())[1].samples
        except oc.ComtradeError as error:
            if not is_no_recording(error, place):
                yield path, None
