#!/usr/bin/env python3
"""Makes every recording of this folder, README.md and recordings.inc, which has what the recordings mean.

Each recording has one or a few properties that real recordings have, and a few samples of made-up waves: nothing is
taken from a real recording. The same bytes come out on every run. To change a recording, change it here.
"""

import base64
import calendar
import datetime
import math
import pathlib
import shutil
import struct
import textwrap
from fractions import Fraction

HERE = pathlib.Path(__file__).resolve().parent

for old in HERE.iterdir():
    if old.is_dir():
        shutil.rmtree(old)

CRLF, LF = "\r\n", "\n"
ZERO = "\x1a"  # the end mark of old systems
RECORDINGS = []


def wave(count, amplitude, period=20, shift=0, middle=0):
    """Integers along a sine."""
    return [middle + round(amplitude * math.sin(2 * math.pi * (i + shift) / period)) for i in range(count)]


def singles(numbers):
    """The same as multiples of 1/64, which are exact in single precision."""
    return [number / 64 for number in numbers]


class Analog:
    """An analog channel: the fields as they are written, and the values of its samples as they are recorded."""

    def __init__(self, id, values, phase="", component="", unit="A", a="1", b="0", skew="0", low="-32767",
                 high="32767",
                 ratio=("1", "1"), side="S"):
        self.fields = [id, phase, component, unit, a, b, skew, low, high]
        self.ratio = [*ratio, side]
        self.values = values
        self.id = id

    def line(self, number, layout1991):
        return ",".join([str(number), *self.fields, *([] if layout1991 else self.ratio)])

    def value(self, sample):
        """As recorded, in the unit without its prefix."""
        prefixes = {"kV": 1000, "kA": 1000, "mA": Fraction(1, 1000), "MW": 10**6}
        raw, a, b = (Fraction(part) for part in (self.values[sample], self.fields[4].strip(), self.fields[5].strip()))
        return float((raw * a + b) * prefixes.get(self.fields[3].strip(), 1))


class Status:
    """A status channel and its states."""

    def __init__(self, id, states, phase="", component="", normal="0"):
        self.fields = [id, phase, component, normal]
        self.states = states

    def line(self, number, layout1991):
        return ",".join([str(number), *([self.fields[0], self.fields[3]] if layout1991 else self.fields)])


MISSING = None  # among the values of a channel


class Recording:
    """What a recording means; its files are made of it, and its row of the table."""

    def __init__(self, name, why, analog, status=(), station="STATION", recorder="RECORDER", year="1999", counts=None,
                 frequency="50", rates=(("1000", None),), rate_count=None, start="14/03/2019,06:41:17.322000",
                 trigger="14/03/2019,06:41:17.324000", word="ASCII", multiplier="1", tail=(), declared=None,
                 layout1991=False, encoding="ASCII", how=(), codes="", first_number=1, stamps=None,
                 missing_text="99999", first_status=1, starts_at=None, triggers_at=None, times=None):
        self.name, self.why = name, why
        self.analog, self.status = list(analog), list(status)
        self.layout1991, self.encoding, self.how, self.codes = layout1991, encoding, list(how), codes
        self.samples = len((self.analog[0].values if self.analog else self.status[0].states))
        self.word, self.first_number, self.missing_text = word, first_number, missing_text
        self.station = station.strip()
        self.declared = self.samples if declared is None or "Lengths" in self.how else declared
        written = self.samples if declared is None else declared
        count = f"{len(self.analog) + len(self.status)},{len(self.analog)}A,{len(self.status)}D"
        year = [] if year is None else [year]
        rates = [(rate, str(written) if end is None else end) for rate, end in rates]
        rate_count = str(len(rates)) if rate_count is None else rate_count
        self.cfg = [",".join([station, recorder, *year]), count if counts is None else counts,
                    *[channel.line(i + 1, layout1991) for i, channel in enumerate(self.analog)],
                    *[channel.line(i + first_status, layout1991) for i, channel in enumerate(self.status)],
                    frequency, rate_count, *[f"{rate},{end}" for rate, end in rates], start, trigger, word,
                    *([] if multiplier is None else [multiplier]), *tail]
        self.start = nanoseconds(start if starts_at is None else starts_at, layout1991)
        self.trigger = nanoseconds(trigger if triggers_at is None else triggers_at, layout1991)
        self.stamps = [round(1e6 * i / float(rates[0][0])) for i in range(self.samples)] if stamps is None else stamps
        self.last_time = times[-1] if times else self._last_time(rates, rate_count, multiplier)
        RECORDINGS.append(self)

    def _last_time(self, rates, rate_count, multiplier):
        if rate_count == "0" or any(Fraction(rate) == 0 for rate, _ in rates):
            factor = Fraction(multiplier) / (10**9 if "Nanoseconds" in self.how else 10**6)
            return float((self.stamps[-1] - self.stamps[0]) * factor)
        time, begin = Fraction(0), 0
        for i, (rate, end) in enumerate(rates):
            end = int(end) + (begin if "Lengths" in self.how else 0)
            if i + 1 == len(rates) or end > self.samples - 1:
                return float(time + (self.samples - 1 - begin) / Fraction(rate.strip()))
            time, begin = time + (end - begin) / Fraction(rate.strip()), end

    def text(self, lines=None, end=LF, last=True):
        return end.join(self.cfg if lines is None else lines) + (end if last else "")

    def cfg_bytes(self, end=LF, last=True, behind=""):
        encoding = {"ASCII": "ascii", "ISO-8859-1": "latin-1"}.get(self.encoding, self.encoding)
        return (self.text(end=end, last=last) + behind).encode(encoding)

    def rows(self):
        """The ASCII data, a list of columns for each sample."""
        for i in range(self.samples):
            values = [channel.values[i] for channel in self.analog]
            yield [str(self.first_number + i), "" if self.stamps[i] is None else str(self.stamps[i]),
                   *[self.missing_text if value is MISSING else str(value) for value in values],
                   *[str(channel.states[i]) for channel in self.status]]

    def lines(self, end=LF, last=True):
        return (end.join(",".join(row) for row in self.rows()) + (end if last else "")).encode()

    def records(self, padding=b"", unused=0):
        """`unused`: bits of the last status word behind the last channel."""
        data = b""
        for i in range(self.samples):
            data += struct.pack("<II", self.first_number + i,
                                0xFFFFFFFF if self.stamps[i] is None else self.stamps[i])
            data += b"".join(self._bits(channel.values[i]) for channel in self.analog)
            for first in range(0, len(self.status), 16):
                word = self.status[first:first + 16]
                data += struct.pack("<H", sum(channel.states[i] << bit for bit, channel in enumerate(word)))
            data += padding
            if unused:
                data = data[:-2] + struct.pack("<H", struct.unpack("<H", data[-2:])[0] | unused)
        return data

    def _bits(self, value):
        if self.word.strip().upper() == "BINARY":
            return struct.pack("<h", -32768 if value is MISSING else value)
        if self.word.strip().upper() == "BINARY32":
            return struct.pack("<i", -2**31 if value is MISSING else value)
        return struct.pack("<f", math.nan if value is MISSING else value)

    def write(self, file, cfg, data=None, others=None):
        """`file` is the configuration (or `.cff`), `data` the name and the bytes of the data."""
        folder = HERE / self.name
        folder.mkdir()
        (folder / file).write_bytes(cfg)
        for name, content in dict([data] if data else [], **(others or {})).items():
            (folder / name).write_bytes(content)
        self.file = file
        self.has_data = data is not None or file.lower().endswith(".cff")

    def spots(self):
        """Two values that are there, other than 0 if there are such."""
        wanted = []
        for index in (0, len(self.analog) - 1):
            channel = self.analog[index]
            there = [i for i in range(2 * self.samples // 3, -1, -1) if channel.values[i] is not MISSING]
            sample = next((i for i in there if channel.value(i) != 0), there[0])
            wanted.append("{%d, %d, %r}" % (sample, index, channel.value(sample)))
        return ", ".join(wanted)

    def row(self):
        missing = sum(value is MISSING for channel in self.analog for value in channel.values)
        ones = sum(sum(channel.states) for channel in self.status)
        how = " | ".join(self.how) or "Plain"
        return ('{"%s", "%s", %s, %d, %d, %d, %d, %d, %r,\n {%s}, %s, %s, %d,\n "%s", %s, %s, "%s"},' % (
            self.name, self.file, how, len(self.analog), len(self.status), self.samples, missing, ones,
            self.last_time,
            self.spots(), cpp(self.start), cpp(self.trigger), self.declared, self.encoding, literal(self.station),
            literal(self.analog[0].id.strip()), self.codes))


def cpp(instant):
    return "kNone" if instant is None else str(instant)


def literal(text):
    """A C++ string of ASCII characters."""
    coded, escaped = "", False
    for byte in text.encode():
        letter = chr(byte)
        if byte > 126 or letter in '"\\':
            coded, escaped = coded + f"\\x{byte:02X}", True
        else:
            ends = escaped and letter in "0123456789ABCDEFabcdef"  # or the escape would go on
            coded, escaped = coded + ('""' if ends else "") + letter, False
    return f'"{coded}"'


def nanoseconds(line, layout1991):
    """Nanoseconds since 1970 of a date line of the standard, or nothing where it is none."""
    date, clock = (part.strip() for part in line.split(","))
    first, second, year = (int(part) for part in date.split("/"))
    day, month = (second, first) if layout1991 else (first, second)
    year += 0 if year > 99 else 2000 if year < 70 else 1900
    if month > 12 or (day, month, year) == (1, 1, 1970):
        return None
    hours, minutes, seconds = clock.split(":")
    whole = calendar.timegm(datetime.datetime(year, month, day, int(hours), int(minutes),
                                              int(seconds[:2])).timetuple())
    return whole * 10**9 + int((seconds[3:] + "000000000")[:9])


def steps(count, pattern, first=0):
    """Stamps that go on by the numbers of the pattern in turn."""
    stamps = [first]
    while len(stamps) < count:
        stamps.append(stamps[-1] + pattern[(len(stamps) - 1) % len(pattern)])
    return stamps


def toggling(count, *changes):
    """States that change at these samples, 0 first."""
    return [sum(i >= change for change in changes) % 2 for i in range(count)]


def section(title, body):
    return b"--- file type: " + title.encode() + b" ---\r\n" + body


# Revision 1991 ####################################################################################

START = " \u041f\u0443\u0441\u043a \u043e\u0441\u0446\u0438\u043b\u043b\u043e\u0433\u0440\u0430\u0444\u0430  "
OPENED = " \u041e\u0442\u043a\u043b\u044e\u0447\u0435\u043d\u0438\u0435 \u043b\u0438\u043d\u0438\u0438     "
FAULT = " \u041d\u0435\u0438\u0441\u043f\u0440\u0430\u0432\u043d\u043e\u0441\u0442\u044c \u0446\u0435\u043f\u0435\u0439"
CYRILLIC = [Status(START, toggling(40, 12)), Status(OPENED, toggling(40, 15, 30)), Status(FAULT, [0] * 40, normal="1")]
OLD = dict(year=None, multiplier=None, layout1991=True, first_number=0, start="02/28/07,00:31:07.412000",
           trigger="02/28/07,00:31:07.422000", recorder=" 20250101",
           station="\u0422\u0415\u0420\u041c\u0418\u041d\u0410\u041b-7          ")


def old_channels():
    return [Analog("Ia", wave(40, 140), "A", unit="A", a=" 0.0378", b="0.0", low="-9999", high="9999"),
            Analog("I\u0432", wave(40, 150, shift=7), "B", unit="A", a=" 0.0375", b="0.0", low="-9999", high="9999")]


r = Recording("1991-ascii-cp866",
              "revision 1991 in ASCII and CP866: no year, no time multiplier, month first and years "
              "of two digits, texts padded with blanks, zero-padded numbers, record numbers from 0",
              old_channels(), CYRILLIC, rates=[("1000", "00040")], encoding="CP866", how=["Of1991"], codes="encoding",
              **OLD)
r.write("rec.cfg", r.cfg_bytes(), ("rec.dat", r.lines()))

r = Recording("1991-binary-utf8", "revision 1991 in BINARY, names in UTF-8", old_channels(), CYRILLIC,
              rates=[("1000", "000040")], encoding="UTF-8", how=["Of1991"], word="BINARY", **OLD)
r.write("rec.cfg", r.cfg_bytes(), ("rec.dat", r.records()))

values = [value if i % 9 else MISSING for i, value in enumerate(wave(30, 90000))]
values[4] = 99999
r = Recording("1991-missing-999999", "999999 is the missing value of revision 1991, and 99999 a value",
              [Analog("Ua", values, low="-99999", high="99999", unit="V"), Analog("Ub", wave(30, 500), unit="V")],
              year="1991", layout1991=True, how=["Of1991"], missing_text="999999", start="02/28/07,00:31:07.412000",
              trigger="02/28/07,00:31:07.422000")
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

# Years, layouts, rates ############################################################################

r = Recording("1997-rate-0-multiplier",
              "year 1997 with the lines of 1999; rate 0 and time multiplier 0.25; padded texts; "
              "double extension",
              [Analog("W7-IA               ", wave(60, 900), "A", unit="A     ", a="     0.001709",
                      ratio=("   3000.0", "  1.0")),
               Analog("W8-IN               ", wave(60, 80, 31), "N", unit="kA    ", a="     0.000122",
                      ratio=("   3000.0", "  1.0"))],
              [Status("TRIP                ", toggling(60, 22)), Status("SPARE               ", [0] * 60)],
              station="Relay                   ", recorder="                    ", year="1997", counts=" 4,2A,  2D",
              rates=[("0", "  60")], rate_count="0", multiplier="0.25", word="BINARY", codes="layout",
              stamps=steps(60, [4168, 4172, 4168, 4808, 4552]))
r.write("record.evt.cfg", r.cfg_bytes(), ("record.evt.dat", r.records()))

r = Recording("2001-binary", "another year of the standard, nothing else",
              [Analog("UA", wave(50, 12000), "A", unit="V", a="0.0093"),
               Analog("IA", wave(50, 900), "A", a="0.0021")],
              [Status("CB1", toggling(50, 20)), Status("CB2", [1] * 50)], year="2001", word="BINARY")
r.write("test1.cfg", r.cfg_bytes(), ("test1.dat", r.records()))

ends = [2 * (i + 1) for i in range(83)]
rates = [("%.6f" % (2400 + (i * 7 % 11) * 0.137), str(end)) for i, end in enumerate(ends)]
r = Recording("83-rates-blank-lines",
              "83 sampling rates, names in CP1251, every other line of the data blank; revision 2000",
              [Analog("UA", wave(166, 5000, 48), unit="V", a="0.014871", b="0.000000", low="-32768",
                      ratio=("100.000", "1.0")),
               Analog("3U0", wave(166, 12, 48), unit="V", a="0.014871", b="0.000000", low="-32768",
                      ratio=("100.000", "1.0"))],
              [Status("\u041f\u0443\u0441\u043a \u0437\u0430\u0449\u0438\u0442\u044b", toggling(166, 60)),
               Status("\u0410\u041f\u0412 \u043b\u0438\u043d\u0438\u0438", [0] * 166)],
              station="\u0412\u0440\u0435\u043c\u0435\u043d\u0430 \u043f\u043e \u0447\u0430\u0441\u0430\u043c",
              year="2000", rates=rates,
              encoding="CP1251", codes="encoding", multiplier="1.0", stamps=steps(166, [416, 416, 417, 415]))
r.write("1.cfg", r.cfg_bytes(), ("1.dat", r.lines().replace(b"\n", b"\n\n")))

r = Recording("ends-per-segment", "two rates whose end samples are the numbers of samples of each",
              [Analog("Ua", wave(48, 3000, 128), "A", "XX", "kV", "0.0187420", low="-32768",
                      ratio=("10.0000000", "100.0000000"))],
              [Status(f"D{i}", [0] * 48) for i in range(17)], station="", recorder="", multiplier="1.00",
              rates=[("6400", "16"), ("6400", "32")], word="BINARY", how=["Lengths"], declared=32,
              codes="rates-as-lengths",
              stamps=[int(156.25 * i) for i in range(48)])
r.write("FIELD7_0001.cfg", r.cfg_bytes(), ("FIELD7_0001.dat", r.records()))

stamps = [1000 * i for i in range(20)] + [300000 + 1000 * i for i in range(20)] + [300000 + 1000 * i for i in range(15)]
r = Recording("gbk-ascii-stamps-begin-again",
              "GBK names; 10 sampling rates, the last ones empty; a jump of the stamps at the "
              "second one, stamps that begin again at the third; 999999 in a file of revision 1999, where it "
              "is a value",
              [Analog("1-Ia", wave(55, 1900), "A", a="0.002150", b="0.000000", ratio=("1.00", "1.00")),
               Analog("2-\u7ebf\u8def\u96f6\u5e8f\u7535\u538b", [0] * 20 + [999999] * 35, a="1", unit=" ",
                      ratio=("1.00", "1.00"))],
              [Status("1-\u8df3\u95f8", toggling(55, 25)), Status("2-\u91cd\u5408\u95f8", [0] * 55)],
              station="\u5317\u7ad9\u7ebf\u8def\u4fdd\u62a4\u88c5\u7f6e", recorder="12", encoding="GB18030",
              rates=[("1000", "20"), ("1000", "40")] + [("1000", "55")] * 8, stamps=stamps,
              trigger="14/03/2019,06:41:17.322000", codes="encoding stamps-disagree stamp-backwards?")
r.write("test2.cfg", r.cfg_bytes(), ("test2.dat", r.lines()))

stamps = steps(20, [312, 313]) + [20000 * (i + 1) + 5938 for i in range(4)]
stamps += steps(20, [312, 313], stamps[-1] + 313) + [stamps[-1] + 26000 + 19994 * i for i in range(4)]
r = Recording("gbk-binary-4-rates", "GBK names in most lines; 4 sampling rates, 3200 and 50 Hz in turn; skews",
              [Analog("220kV\u7532\u7ebf_Ua", wave(48, 7000, 64), "A", "220kV\u7532\u7ebf", "V", "0.006417300",
                      "0.000000000",
                      "-0.014902551", ratio=("126500.000000000", "57.735000000")),
               Analog("220kV\u7532\u7ebf_Ia", wave(48, 90, 64), "A", "220kV\u7532\u7ebf", "A", "0.000310000",
                      "0.000000000",
                      "0.000000000", ratio=("1200.000000000", "5.000000000"))],
              [Status(f"\u8f93\u5165{i + 1}", toggling(48, 10 + i)) for i in range(18)],
              recorder="220kV\u53d8\u7535\u7ad9",
              rates=[("3200", "20"), ("50", "24"), ("3200", "44"), ("50", "48")], word="BINARY", multiplier="1.00",
              encoding="GB18030", codes="encoding", stamps=stamps)
r.write("bay.cfg", r.cfg_bytes(), ("bay.dat", r.records()))

# Texts ############################################################################################

r = Recording("latin1-station", "ISO-8859-1 in the station's name alone",
              [Analog("IA ", wave(40, 800), unit=" A", component="Line 7", a="0.0987548828125", b="0.04937744140625",
                      low="-32768", ratio=("933", "1"), side="s")],
              [Status("51A", toggling(40, 20), component="Line 7")],
              station="Prote\u00e7\u00e3o de Gera\u00e7\u00e3o", year="2013", encoding="ISO-8859-1", frequency="60",
              codes="encoding", rates=[("1200", None)], tail=["0,0", "0,0"],
              stamps=[61200 + round(1e6 * i / 1200) for i in range(40)])
r.write("station.cfg", r.cfg_bytes(), ("station.dat", r.lines()))

r = Recording("utf8-station", "UTF-8 in the station's name alone",
              [Analog("IA ", wave(40, 800), unit=" A", a="0.0987548828125", low="-32768", ratio=("933", "1"),
                      side="s")],
              station="Station \ubcc0\uc804\uc18c \u00e9t\u00e9", year="2013", encoding="UTF-8", tail=["0,0", "0,0"])
r.write("station.cfg", r.cfg_bytes(), ("station.dat", r.lines()))

r = Recording("utf8-degree-blanks", "blanks around every field; the degree sign as a unit, in UTF-8; rate 0",
              [Analog("W1 -IA              ", wave(60, 700), "A", unit="A     ", a="     0.008545", b="     0.000000",
                      ratio=("    125.0", "  5.0")),
               Analog("Phase angle         ", wave(60, 1800, 60), unit="\u00b0     ", a="     0.100000",
                      b="     0.000000",
                      ratio=("      1.0", "  1.0"))],
              [Status("Off                 ", [0] * 60), Status("Trip                ", toggling(60, 31))],
              station="Relay 1                    ", recorder=" 850-XX0000000       ", year=" 1999",
              counts="  4,  2A,  2D",
              rates=[("0", None)], rate_count="0", word="BINARY", multiplier="1.0", encoding="UTF-8",
              stamps=steps(60, [624, 625]))
r.write("real.cfg", r.cfg_bytes(), ("real.dat", r.records()))

r = Recording("substitute-tail", "CR LF in the .cfg, LF in the data; 0x1A behind the last line of the .cfg",
              [Analog("IA ", wave(40, 800), unit=" A", a="0.0987548828125", low="-32768", ratio=("933", "1"),
                      side="s")],
              [Status("51C", toggling(40, 4))], year="2013", tail=["-5h30,-5h30", "B,3"])
r.write("sub.cfg", r.cfg_bytes(CRLF, last=False, behind=7 * ZERO), ("sub.dat", r.lines()))

r = Recording("words-for-the-time-code", "words where the time code of revision 2013 stands",
              [Analog("Ia", wave(40, 700))], year="2013", tail=["NA,NA", "0000,0"])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

r = Recording("no-time-lines", "revision 2013 that ends with the time multiplier",
              [Analog("Ia", wave(40, 700))], year="2013", multiplier="1.0")
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

# Names of files ###################################################################################

r = Recording("upper-case-ascii-crlf", ".CFG and .DAT, CR LF in both; primary values",
              [Analog("L1", wave(40, 60000), unit=" A", a="0.0017", low="-99998", high="99998", ratio=("2000", "1"),
                      side="P"),
               Analog("L2", wave(40, 60000, shift=7), unit=" A", a="0.0017", low="-99998", high="99998",
                      ratio=("2000", "1"),
                      side="P")],
              [Status("T1", toggling(40, 9)), Status("T2", toggling(40, 9, 19))], year="2013", tail=["0,0", "0,0"],
              rates=[("1000.0000", None)])
r.write("RECORD_1.CFG", r.cfg_bytes(CRLF), ("RECORD_1.DAT", r.lines(CRLF)))

r = Recording("upper-case-binary32-crlf",
              "BINARY32; a range of -99998 to 99998, the one of ASCII data, that values exceed; bits of the status word "
              "set that no channel has",
              [Analog("L1", wave(40, 120000), unit=" A", a="0.0017", low="-99998", high="99998", ratio=("2000", "1"),
                      side="P")],
              [Status("T1", toggling(40, 9))], year="2013", tail=["0,0", "0,0"], rates=[("1000.0000", None)],
              word="BINARY32")
r.write("RECORD_2.CFG", r.cfg_bytes(CRLF), ("RECORD_2.DAT", r.records(unused=0xFFFE)))

r = Recording("mixed-case-names", ".DAT beside .cfg; neither station nor recorder named; no status channel",
              [Analog("I1", wave(40, 5000), a="0.097251", ratio=("3500", "1"), side="P"),
               Analog("UN", wave(40, 20000, shift=3), unit="V", a="21.9034", ratio=("510000", "115"), side="P")],
              station="", recorder="", frequency="60", word="BINARY")
r.write("RUN-2.cfg", r.cfg_bytes(), ("RUN-2.DAT", r.records()))

r = Recording("commas-in-the-name",
              "a file name made of many parts; a range of 24 bits; time codes and quality; BINARY32",
              [Analog("IAW", wave(40, 2000000), "A", a="0.019884217", low="-8388608", high="8388607",
                      ratio=("3500.00", "1.0"), side="P"),
               Analog("VAY", wave(40, 3000000), "A", unit="kV", a="0.000121", low="-8388608", high="8388607",
                      ratio=("1.00", "1.0"), side="P")],
              [Status(f"S{i}", toggling(40, 3 * i)) for i in range(20)], year="2013", rates=[("10000", None)],
              word="BINARY32",
              tail=["0,x", "f,3"])
r.write("200229,101530250,0T,SITE,U1,TDR,7.CFG", r.cfg_bytes(),
        ("200229,101530250,0T,SITE,U1,TDR,7.DAT", r.records()))

r = Recording("header-and-information", "a header and an information file beside the pair",
              [Analog("Ia", wave(20, 50))],
              word="BINARY")
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.records()),
        {"rec.hdr": b"Fault on line 3\r\n", "rec.inf": b"[Public Record_Information]\r\nSource=Relay\r\n"})

# Data #############################################################################################

r = Recording("float32-nanoseconds",
              "FLOAT32, dates and stamps in nanoseconds; NaN for missing values; a range rounded so "
              "that the largest value lies a hair outside",
              [Analog("T1 IR", [MISSING if i in (7, 8, 30) else v for i, v in enumerate(singles(wave(48, 17300)))],
                      a="1.000000E+00", low="-270.312", high="270.312", ratio=("1.00000000", "1.00000000"), side="P"),
               Analog("T1 IS", singles(wave(48, 16000, shift=9)), a="1.000000E+00", low="-250", high="250",
                      ratio=("1.00000000", "1.00000000"), side="P")],
              [Status(f"DI {i}", toggling(48, 2 * i)) for i in range(33)], year="2013", rates=[("1200", None)],
              word="FLOAT32",
              start="18/05/2022,07:11:42.250000511", trigger="18/05/2022,07:11:42.259936167", tail=["+9,+9", "0,0"],
              stamps=[833333 * i for i in range(48)])
r.write("float.cfg", r.cfg_bytes(), ("float.dat", r.records()))

r = Recording("rate-0-nanosecond-stamps",
              "rate 0 in a file of 2013 with dates in nanoseconds: stamps count nanoseconds; the "
              "first stamp is not 0",
              [Analog("TW A", wave(40, 300)), Analog("TW B", wave(40, 310))], year="2013", rates=[("0", None)],
              rate_count="0",
              start="05/10/2022,16:26:20.775564750", trigger="05/10/2022,16:26:20.775574750", word="BINARY",
              tail=["0,0", "0,0"],
              stamps=steps(40, [640], 5000), how=["Nanoseconds"])
r.write("wave.cfg", r.cfg_bytes(CRLF), ("wave.dat", r.records()))

r = Recording("missing-99999", "99999 for missing values within a record, ASCII",
              [Analog("IA", [MISSING if i in (2, 3) else v for i, v in enumerate(wave(40, 900))], low="-99999",
                      high="99998"),
               Analog("IB", [MISSING if i == 0 else v for i, v in enumerate(wave(40, 800))], low="-99999",
                      high="99998")])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

r = Recording("missing-8000-stray-bytes",
              "0x8000 for the samples that some channels do not have; 0x1A behind the last line of "
              "the .cfg, without an end of its own; 16 stray bytes behind the last record; both sides",
              [Analog("IAW", wave(40, 900), "A", a="2.914407", ratio=("2200.0", "1"), side="P"),
               Analog("VAZ", wave(40, 9000), "A", unit="kV", a="0.0211", ratio=("2200.0", "1"), side="S"),
               Analog("FREQ", [MISSING if i % 4 else 6000 for i in range(40)], unit="Hz", a="0.01", side="P")],
              [Status(f"* {i}", [0] * 40) for i in range(40)], frequency="60", rates=[("2000", None)], word="BINARY",
              stamps=steps(40, [500, 500, 499, 501]))
r.write("HR_1.CFG", r.cfg_bytes(behind=19 * ZERO), ("HR_1.DAT", r.records() + 16 * b"\x1a"))

r = Recording("missing-80000000", "0x80000000 for missing values, BINARY32",
              [Analog("U", [MISSING if i % 7 == 3 else v for i, v in enumerate(wave(30, 2**30))], unit="kV",
                      a="0.0000001",
                      low="-2147483647", high="2147483647")], year="2013", word="BINARY32", tail=["0,0", "0,0"])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.records()))

r = Recording("empty-fields-0x1a",
              "no skew in the analog lines, no stamps beside a rate, a blank line at the end of the .cfg, "
              "0x1A at the end of the data",
              [Analog("I1", wave(30, 1500), "I1", "Feeder.main", "ampere", "-0.0203318820174411", "24.1190337712208",
                      "", "-99999",
                      "99999", side="P"),
               Analog("U1", wave(30, 9000), "V1", "Feeder.main", "volt", "-0.109951162777600", "2.98023223876953", "",
                      "-99999",
                      "99999", side="P")], frequency="60", rates=[("30720.512695312", None)], stamps=[None] * 30,
              trigger="14/03/2019,06:41:17.322500")
r.write("feeder_1999.CFG", r.cfg_bytes(CRLF, behind=CRLF), ("feeder_1999.DAT", r.lines(CRLF) + b"\x1a"))

r = Recording("decimals-plus-signs", "values with decimal fractions and with plus signs in ASCII data of revision 1999",
              [Analog("Ua", singles(wave(40, 900)), unit="V", low="-99999", high="99999"),
               Analog("Ia", [f"{value:+d}" for value in wave(40, 700)], low="-99999", high="99999")],
              [Status("Start", toggling(40, 11))])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

r = Recording("fourteen-fields", "14 fields in each channel line, an empty one too many; a letter behind the total",
              [Analog("IA", wave(40, 14000), "A", ",", a="0.0251188643150"),
               Analog("IC", wave(40, 15000), "C", ",", a="0.0501187233627")],
              counts="2A,2A,0D", frequency="60", rates=[("240", None)], how=["FourteenFields"],
              codes="comma-in-text field-malformed?",
              trigger="14/03/2019,06:41:17.322000")
r.write("DATA.cfg", r.cfg_bytes(), ("DATA.dat", r.lines()))

r = Recording("trailing-points",
              "numbers with a point and nothing behind; the range a hair too narrow for the rounded values; "
              "a channel that is zero with a range from 0 to 0; a blank before the time; the first stamp is one period",
              [Analog("V1", wave(40, 10471, 32), "A", "LN1", "V", "1.", "0.0", "0.0", "-10470.738", "10470.738",
                      ("1.", "1."), "P"),
               Analog("SPARE", [0] * 40, "A", "LN2", "V", "1.", "0.0", "0.0", "0.0", "0.0", ("1.", "1."), "P")],
              frequency="60.", rates=[("1920.", None)], start="06/09/2024, 13:31:49.066000",
              trigger="06/09/2024, 13:31:49.076000",
              multiplier="1.", stamps=steps(40, [521, 520, 521, 521, 521, 521], 521))
r.write("SIMULATION.cfg", r.cfg_bytes(), ("SIMULATION.dat", r.lines()))

r = Recording("rate-0.0-no-such-month",
              "rate 0.0, stamps in units of half a nanosecond, a month that there is not, quotation "
              "marks in the station's name",
              [Analog("VSEG ", [50000 + v for v in wave(40, 40000)], " ", "v", "V", "4.786301e+000", "-2.393150e+005",
                      "0.0", "0", "99999",
                      ("1.0", "1.0"), "p")], station='File written by "a plotting" program', recorder="999",
              frequency="60",
              rates=[("0.0", None)], rate_count="0", start="08/43/2024,14:34:05.157000",
              trigger="08/43/2024,14:34:05.157000",
              multiplier="5.000000e-004", stamps=steps(40, [200010, 199990, 200021, 199985]), codes="date-unknown")
r.write("results.cfg", r.cfg_bytes(), ("results.dat", r.lines()))

r = Recording("month-before-day",
              "dates with the month first in a file of revision 1999, as only one order gives dates",
              [Analog("Ia", wave(30, 800))], start="10/23/2024,14:34:05.157000", trigger="10/23/2024,14:34:05.167000",
              starts_at="23/10/2024,14:34:05.157000", triggers_at="23/10/2024,14:34:05.167000", how=["MonthFirst"])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.lines(CRLF)))

r = Recording("range-in-units",
              "min and max in the unit of the channel, not as raw values; the first stamp is below 0",
              [Analog("Ia", [49000 + v for v in wave(60, 48000)], a="0.00575439937337157", b="-295.120922666639",
                      low="-290", high="264", side="P"),
               Analog("Va", [49000 + v for v in wave(60, 47000, shift=5)], unit="V", a="0.218776162394955",
                      b="-10715.193052376",
                      low="-10278", high="10288", side="P")], station="Sub1", recorder="", frequency="60",
              rates=[("7673.6171875", None)], stamps=[-38250 + int(i * 1e6 / 7673.6171875) for i in range(60)],
              trigger="14/03/2019,06:41:17.322000")
r.write("quality.cfg", r.cfg_bytes(), ("quality.dat", r.lines()))

r = Recording("value-beyond-max", "a range that the largest values exceed",
              [Analog("L1", wave(40, 2060), a="0.0017", low="-3000", high="2047", ratio=("2000", "1"), side="P")],
              year="2013", tail=["0,0", "0,0"], codes="value-out-of-range")
r.write("RECORD_3.CFG", r.cfg_bytes(CRLF), ("RECORD_3.DAT", r.lines(CRLF)))

r = Recording("range-of-binary-in-binary32", "a range of -32767 to 32767 beside values of 32 bits",
              [Analog("Ia", wave(40, 900000), a="0.0000123")], year="2013", word="BINARY32", tail=["0,0", "0,0"])
r.write("rec.cfg", r.cfg_bytes(CRLF), ("rec.dat", r.records()))

r = Recording("unsigned-range", "raw values from 0 to 65535 in ASCII; no line end behind the last line of the .cfg",
              [Analog("IBR1A", [32768 + v for v in wave(40, 30000)], unit="Amps", a="2.08930E-5", b="-0.676083",
                      low="0", high="65535",
                      ratio=("1.0", "1.0"), side="P")], [Status("armed", toggling(40, 5), "0")], recorder=" 0",
              frequency="50.0", rates=[("20000.0", None)], trigger="14/03/2019,06:41:17.323000")
r.write("simulator.cfg", r.cfg_bytes(last=False), ("simulator.dat", r.lines()))

# Stamps and numbers ###############################################################################

r = Recording("one-record-more",
              "one record more than declared; every stamp is 0xFFFFFFFF; exponents; year 1997 with the lines of 1999",
              [Analog("I1", wave(31, 20000), "7", "1", a="3.019952e+000", b="-9.549926e+001", skew="0.000000e+000",
                      low="-25119",
                      high="25122", ratio=("1.250000e+003", "1.000000e+000"), side="P")],
              [Status(f"O{i}", toggling(31, i), "1") for i in range(16)], year="1997", frequency="50.0",
              rates=[("600.000000", "30")],
              word="BINARY", multiplier="1.0", stamps=[None] * 31, declared=30, codes="layout sample-count")
r.write("4.CFG", r.cfg_bytes(), ("4.DAT", r.records()))

r = Recording("constant-zero-stamps", "every stamp is 0 beside a rate; one sample per cycle; skews",
              [Analog("VA mag", [20000 + v for v in wave(40, 300)], "A", "LINE", "kV", "0.008912509", "0.000000000",
                      "2.500000000",
                      ratio=("1.000000000", "1.000000000"), side="P"),
               Analog("VA phi", wave(40, 18000), "A", "LINE", "DEG", "0.005493164", "0.000000000", "12.000000000",
                      ratio=("1.000000000", "1.000000000"), side="P")],
              [Status("CB", [0] * 40)], frequency="60.000000000", rates=[("60.000000000", None)], word="BINARY",
              stamps=[0] * 40,
              trigger="14/03/2019,06:41:17.822000")
r.write("2019_disturbance.cfg", r.cfg_bytes(), ("2019_disturbance.dat", r.records()))

r = Recording("five-records",
              "five records of a fast recorder, stamps of 0; ratio 120 to 1 on primary values in kV; "
              "time codes and quality",
              [Analog("VA", [-234, -233, -231, -228, -224], "A", "item", "kV", "0.000412507", "0.000000000",
                      "0.000000000",
                      ratio=("120.000000000", "1.000000000"), side="P")],
              [Status(f"ST_{i + 1}", [0] * 5) for i in range(16)], year="2013", frequency="60.000000000",
              rates=[("15360.000000000", None)], word="BINARY", stamps=[0] * 5, trigger="14/03/2019,06:41:17.322065",
              tail=["-5h30,-5h30", "B,3"])
r.write("five.cfg", r.cfg_bytes(), ("five.dat", r.records()))

WAVE = dict(start="03/06/2021,14:15:39.790787375", trigger="03/06/2021,14:15:39.790797375", word="BINARY",
            first_number=0)
r = Recording("travelling-wave-1999",
              "1.56 MHz: stamps in microseconds go on by 0 or 1; record numbers from 0; nanoseconds in the "
              "dates of revision 1999; two records of noise behind the declared ones; 0x1A behind the last line",
              [Analog("TWA1", wave(120, 300), "A", a="0.891251", ratio=("800.0", "1"), side="P")],
              rates=[("1562484.37500488", None)], stamps=[int(i / 1.56248437500488) for i in range(120)], **WAVE)
r.write("WAVE_TW.CFG", r.cfg_bytes(CRLF, behind=30 * ZERO),
        ("WAVE_TW.DAT", r.records() + struct.pack("<IIh", 411223344, 411223344, 5571) * 2))

r = Recording("travelling-wave-2013",
              "the same in revision 2013: dates in nanoseconds, stamps in microseconds beside a rate",
              [Analog("TWA1", wave(120, 300), "A", a="1.318257", ratio=("240.0", "1"), side="P")], year="2013",
              tail=["0,-3", "0,0"],
              rates=[("1562500.00000000", None)], stamps=[int(0.64 * i) for i in range(120)], **WAVE)
r.write("WAVE_A.CFG", r.cfg_bytes(CRLF), ("WAVE_A.DAT", r.records()))

r = Recording("rate-0-tail",
              "rate 0 in BINARY, CR LF, 0x1A behind the last line, 8 stray bytes behind the last record; "
              "the offset of unsigned values",
              [Analog("RMSA", [v - 32700 for v in wave(50, 60)], "A", a="1.000000", b="32767.0000",
                      ratio=("1000.0", "1"), side="P"),
               Analog("RMSB", [-32767] * 50, "B", a="1.000000", b="32767.0000", ratio=("1000.0", "1"), side="P")],
              [Status(f"SPARE{i}", [0] * 50) for i in range(17)], frequency="60", rates=[("0", None)],
              rate_count="0", word="BINARY",
              stamps=steps(50, [33331, 33331, 33332, 33326, 33327]), trigger="14/03/2019,06:41:17.822000")
r.write("trend.cfg", r.cfg_bytes(CRLF, behind=64 * ZERO), ("trend.dat", r.records() + 8 * b"\x1a"))

r = Recording("stamps-in-milliseconds", "stamps that count milliseconds beside a rate",
              [Analog("out1", singles(wave(40, 1300)), unit="none", a="1.000000", b="0.000000", skew="1.000000",
                      low="-3.40282347E+38",
                      high="3.40282347E+38", ratio=("1.000000", "1.000000"), side="p")],
              [Status("bool1", toggling(40, 8))],
              year="2013", frequency="0.000000", rates=[("100.000000", None)], word="float32", multiplier="1.000000",
              stamps=[10 * i for i in range(40)], tail=["0,0", "0,0"])
r.write("out.cfg", r.cfg_bytes(CRLF), ("out.dat", r.records()))

r = Recording("declared-885-holds-8", "885 samples declared, 8 present",
              [Analog("Va-g", wave(8, 1700), unit="kV", a="0.13804", b="0.0000000000", low="-2048", high="2047",
                      ratio=("2000", "1"), side="P")],
              [Status("Ia over", toggling(8, 5))], frequency="60", rates=[("6000.000", "885")], declared=885,
              codes="samples-lost trigger-outside",
              trigger="14/03/2019,06:41:17.345800", multiplier="1")
r.write("short.cfg", r.cfg_bytes(last=False), ("short.dat", r.lines()))

# Channels #########################################################################################

r = Recording("752-status", "752 status channels; 40 stray bytes behind the last record",
              [Analog("IAW", wave(12, 700), "A", a="1.202264", ratio=("800.0", "1"), side="P")],
              [Status(f"B{i}", toggling(12, i % 13)) for i in range(752)], word="BINARY",
              stamps=steps(12, [1000, 999, 1001]))
r.write("STATUS_752.CFG", r.cfg_bytes(CRLF, behind=50 * ZERO), ("STATUS_752.DAT", r.records() + 40 * b"\x1a"))

r = Recording("trigger-unset",
              "a trigger of 1970 stands for none; blanks behind the commas; status channels numbered on from "
              "the analog ones; "
              "record numbers from 0; BINARY32",
              [Analog(" Ia", wave(40, 900000), " 1", " ", " A", " 0.000001", " 0.0", " 0", " -2147483648",
                      " 2147483647", (" 1250", " 1"), " S")],
              [Status(f" DI {i}", toggling(40, i), " 1", " ", " 0") for i in range(20)], year="2013", first_status=2,
              rates=[("2000", " 40 ")], start="11/03/2012,20:31:19.559441 ", trigger="01/01/1970,00:00:00.000000 ",
              word="BINARY32 ",
              multiplier="1 ", tail=["0,0 ", "0,0"], first_number=0, how=["NoTrigger"])
r.write("5.cfg", r.cfg_bytes(), ("5.dat", r.records()))

# Combined files ###################################################################################

COMBINED = [Analog("BAY_IL1", wave(10, 1082), a="1", low="-99998", high="99998", ratio=("2000", "1"), side="P"),
            Analog("BAY_IN", wave(10, 43, 9), a=" 1", low="-99998", high="99998", ratio=("2000", "1"), side="P")]
STATES = [Status("STRTL1", toggling(10, 3)), Status("STRTPE", toggling(10, 5, 7))]

r = Recording("cff-ascii-bom", "a combined file with a byte order mark; ASCII data", COMBINED, STATES, year="2013",
              tail=["0,0", "0,0"])
r.write("COMBINED.CFF", b"\xef\xbb\xbf" + section("CFG", r.cfg_bytes(CRLF)) + section("INF", b"") + section("HDR",
                                                                                                            b"") +
        section("DAT ASCII", r.lines(CRLF)))

r = Recording("cff-float32-raw", "a combined file with FLOAT32 data as they are, and blank lines in empty sections",
              [Analog("out1", singles(wave(60, 1700)), unit="none", a="1.000000", low="-3.40282347E+38",
                      high="3.40282347E+38", side="p")],
              [Status("bool1", toggling(60, 8))], year="2013", frequency="0.000000", rates=[("100.000000", None)],
              word="float32",
              multiplier="1.000000", start="08/04/2020,16:27:02.311858954", trigger="08/04/2020,16:27:02.411858954",
              tail=["0,0", "0,0"],
              stamps=[10000000 * i for i in range(60)])
data = r.records()
r.write("float.cff", section("CFG", r.cfg_bytes(CRLF, behind=CRLF)) + section("INF", b"\r\n") + section("HDR",
                                                                                                        4 * b"\r\n") +
        section(f"DAT FLOAT32: {len(data)}", data))

r = Recording("cff-base64-padding",
              "a combined file with base64 data, a quoted text for each record; records padded by 2 bytes", COMBINED,
              STATES, year="2024", tail=["0,0", "0,0"], word="BINARY", how=["RecordsOf16"],
              codes="base64 record-padding")
data = r.records(padding=b"\0\0")
coded = b"".join(b'"' + base64.b64encode(data[i:i + 16]) + b'"\r\n' for i in range(0, len(data), 16))
r.write("CODED.CFF", b"\xef\xbb\xbf" + section("CFG", r.cfg_bytes(CRLF)) + section("INF", b"") + section("HDR", b"") +
        section("DAT BINARY base64", coded))


def configuration_only():
    """A configuration whose data were not sent; a time multiplier other than 1 beside a rate."""
    r = Recording("configuration-only", "a configuration without data; time multiplier 0.468 beside a rate",
                  [Analog("IA", [0], "A", a="1.659586907437561E-07", b="0.51286138399136", low="-2147483648",
                          high="2147483647", ratio=("160", "1"),
                          side="P")], [Status(f"D{i}", [0]) for i in range(40)], year="2013", declared=62464,
                  rates=[("30720", None)],
                  multiplier="0.46773514128719813", tail=["-4,-4", "0,0"], trigger="14/03/2019,06:41:17.771000")
    r.write("HR_2_ASCII.CFG", r.cfg_bytes(CRLF))


configuration_only()


def write_table():
    rows = [recording.row() for recording in RECORDINGS if recording.has_data]
    (HERE / "recordings.inc").write_text("""\
// Made by make_recordings.py: what the recordings of this folder mean.
// clang-format off
""" + "\n".join(rows) + "\n// clang-format on\n")
    items = [textwrap.fill(f"- `{recording.name}`: {recording.why}", 120, subsequent_indent="  ",
                           break_long_words=False, break_on_hyphens=False) for recording in RECORDINGS]
    (HERE / "README.md").write_text("""\
# Recordings

Small recordings with the properties that real ones have, made from scratch by `make_recordings.py`, which also writes
this page and `recordings.inc`, the table of what each means. The tests of the import layer read them all: as they are,
with other line ends, and with names in upper case. Where real recordings are at hand (`ORV_CORPUS_DIR`), they read those
as well.

What each recording stands for:

""" + "\n".join(items) + "\n")


write_table()
