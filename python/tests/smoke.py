"""Uses an installed package without anything that tests need: smoke.py FOLDER of examples/recordings."""

import sys
from pathlib import Path

import numpy as np

import orvcomtrade as oc

folder = Path(sys.argv[1])
rec = oc.read(folder / "line_two_phase_fault.cfg")
assert np.asarray(rec).shape == (7, 1200)
assert rec.station.startswith("\u041f\u0421")  # what uchardet and iconv are for
assert len(list(oc.scan(folder))) == 3
try:
    oc.read(folder / "none.cfg")
except FileNotFoundError as error:
    assert isinstance(error, oc.ComtradeError)
try:
    rec.to_pandas()
except ModuleNotFoundError as error:
    assert 'pip install "orvcomtrade[pandas]"' in str(error)
print(oc.__version__, rec)
