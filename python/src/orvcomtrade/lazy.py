"""Modules that are imported when they are first used, so that ``import orvcomtrade`` stays quick."""

from __future__ import annotations

import importlib
from typing import Any


class LazyModule:
    """Stands for a module until one of its names is wanted."""

    def __init__(self, name: str) -> None:
        self._name = name

    def __getattr__(self, attribute: str) -> Any:
        value = getattr(importlib.import_module(self._name), attribute)
        setattr(self, attribute, value)
        return value


def optional(module: str, purpose: str) -> Any:
    """Import a package that only some need, or say how to get it."""
    try:
        return importlib.import_module(module)
    except ModuleNotFoundError as error:
        if error.name != module.partition(".")[0]:
            raise
        package = {"pyarrow": "arrow"}.get(error.name, error.name)
        raise ModuleNotFoundError(
            f'{purpose} needs {error.name}: pip install "orvcomtrade[{package}]"', name=error.name
        ) from None
