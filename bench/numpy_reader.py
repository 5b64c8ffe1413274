#!/usr/bin/env python3
"""The columns of a clean BINARY or FLOAT32 recording, as a skilled user of NumPy reads them: a record type, one read,
scaled columns. Nothing is checked that a reader of strange files would have to check.

numpy_reader.py RECORDING.cfg RUNS prints the median of the processor time of so many readings into arrays that are
used again, in seconds, and the sum of the sizes of all times and values.
"""

import sys
import time

import numpy

UNITS = {"kV": 1000.0, "V": 1.0}


def read_configuration(path):
    with open(path, encoding="ascii") as file:
        lines = [line.rstrip("\n").split(",") for line in file]
    analogs = int(lines[1][1][:-1])
    statuses = int(lines[1][2][:-1])
    channels = lines[2 : 2 + analogs]
    rate, samples = lines[2 + analogs + statuses + 2]
    factors = numpy.array([[float(line[5]), float(line[6])] for line in channels])
    factors *= [[UNITS[line[4]]] for line in channels]
    kind = {"BINARY": "<i2", "FLOAT32": "<f4"}[lines[2 + analogs + statuses + 5][0]]
    record = numpy.dtype(
        [("head", "<u4", 2), ("analog", kind, analogs), ("status", "<u2", ((statuses + 15) // 16,))]
    )
    return record, factors, float(rate), int(samples)


class Reader:
    def __init__(self, path):
        self.record, self.factors, self.rate, samples = read_configuration(path)
        self.data = path[:-3] + "dat"
        self.analog = numpy.empty((len(self.factors), samples))
        self.time = numpy.empty(samples)

    def read(self):
        records = numpy.fromfile(self.data, self.record)
        a, b = self.factors.T[:, :, None]
        numpy.multiply(records["analog"].T, a, out=self.analog)
        self.analog += b
        numpy.divide(numpy.arange(len(records)), self.rate, out=self.time)
        words = records["status"]
        changed = numpy.flatnonzero((words[1:] != words[:-1]).any(axis=1)) + 1
        rows = numpy.concatenate(([0], changed))
        return rows, numpy.unpackbits(words[rows].view(numpy.uint8), axis=-1, bitorder="little")


def main():
    reader = Reader(sys.argv[1])
    reader.read()
    seconds = []
    for _ in range(int(sys.argv[2])):
        begin = time.process_time()
        reader.read()
        seconds.append(time.process_time() - begin)
    total = numpy.abs(reader.analog).sum() + numpy.abs(reader.time).sum()
    print(sorted(seconds)[len(seconds) // 2], float(total))


main()
