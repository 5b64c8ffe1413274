#!/usr/bin/env python3
"""Writes the seed corpora: small inputs of our own making, and the example recordings cut short.

    fuzz/make_corpus.py             # makes every file of fuzz/corpus anew
"""
import base64
import pathlib
import struct

HERE = pathlib.Path(__file__).resolve().parent
RECORDINGS = HERE.parent / "examples" / "recordings"


def write(target, name, data):
    folder = HERE / "corpus" / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


# Channel lines
ANALOG = b"1,Ua,A,line 1,kV,0.01,-0.5,12.5,-32767,32767,110000,100,S"
write("channel_line_fuzz", "analog", ANALOG)
write("channel_line_fuzz", "analog_primary", ANALOG[:-1] + b"P\r")
write("channel_line_fuzz", "analog_ratio", b"1,Ia,A,line 1,A,0.7,0,0,-32767,32767,600,5,P")
write("channel_line_fuzz", "analog_1991", b"2,Ia,A,,mA,1E-3,0,0,-2048,2047")
write("channel_line_fuzz", "analog_empty_last", b"3,I0,N,feeder,A,1,0,0,-99999,99999,600,5,")
write("channel_line_fuzz", "analog_hexadecimal", b"4,x,,,M,0x1p3,-inf,nan,-1e308,1e308,0,0,p")
write("channel_line_fuzz", "analog_underflow", b"4,x,,,mV,1e-320,0,0,0,1,1,1,s")
write("channel_line_fuzz", "status", b"1,Trip,A,breaker,1")
write("channel_line_fuzz", "status_1991", b"1,Trip, 0")
write("channel_line_fuzz", "status_short", b"17,Pickup")
write("channel_line_fuzz", "nine_commas", b",,,,,,,,,")

# Sampling rates
write("sampling_rate_fuzz", "one", b"1000,1000")
write("sampling_rate_fuzz", "three", b"1000,500\n2000,1500\n4000,2000\n")
write("sampling_rate_fuzz", "zero", b"0,1200\n")
write("sampling_rate_fuzz", "negative_end", b"50,-1\n-50,3\n")
write("sampling_rate_fuzz", "extremes", b"1e308,9223372036854775807\n0.000001,9223372036854775807\n1,1\n")
write("sampling_rate_fuzz", "words", b"inf,1\nnan,2\n0x10,0\n,\n7,\n")

# Code pages
WORD = "\u0424\u0430\u0437\u0430 \u0410, \u0422\u041d-110"
for code_page in ("utf-8", "cp866", "cp1251"):
    write("to_utf8_fuzz", code_page.replace("-", ""), WORD.encode(code_page))
write("to_utf8_fuzz", "ascii", b"Ua,A,line 1,kV")
write("to_utf8_fuzz", "every_byte", bytes(range(256)))
write("to_utf8_fuzz", "lengths", "\u00b0\u20ac\U0001f50c\uffff\U0010ffff\u0080\u0800\U00010000".encode())
write("to_utf8_fuzz", "cut_short", "\u20ac\U0001f50c".encode()[:-1])
write("to_utf8_fuzz", "overlong_and_surrogate", b"\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80\xf8\x88\x80\x80\x80")
write("to_utf8_fuzz", "zero_inside", b"\xd0\x00\xd0\x9f\x00\xd0")

# Data lines: analog count, status count, times, factors, flags, then the text
write("data_line_fuzz", "two_and_two", bytes([2, 2, 9, 0, 0]) + b"1,1000,5,-3,1,0\n2,2000,6,-4,0,1\n")
write("data_line_fuzz", "blanks_crlf", bytes([2, 2, 8, 1, 0]) + b"1, 1000, 5,-3,1,0,\r\n2 2000 6 -4 0 1\r\n")
write("data_line_fuzz", "tabs", bytes([2, 2, 0, 1, 0]) + b"1\t1000\v5\f-3\t1\t0\r\n")
write("data_line_fuzz", "three_rates", bytes([1, 1, 89, 0, 0]) + b"1,0,5,1\n2,0,6,1\n3,0,7,0\n4,0,8,0\n5,0,9,0\n")
for salt in (10, 11):
    write("data_line_fuzz", f"far_behind_{salt}", bytes([2, 2, 0, salt, 224]) + b"1,1000,5,-3,1,0\n2,2000,6,-4,0,1\n")
write("data_line_fuzz", "none", bytes([0, 0, 1, 0, 0]) + b"7,1000\n8,-1")
write("data_line_fuzz", "many_states", bytes([1, 70, 0, 0, 0]) + (b"1,0,12345678," + b"0,1," * 35 + b"\n") * 3)
write("data_line_fuzz", "states_together", bytes([0, 5, 11, 3, 0]) + b"1,0,10101\n\n2,1,1,,0,x 1\n")
write("data_line_fuzz", "long_numbers", bytes([3, 1, 16, 4, 8]) + b"1,4294967296,99999999999999999999,-9223372036854775808,1234567,1")
write("data_line_fuzz", "refused", bytes([2, 1, 0, 0, 0]) + b"1,1000,+5,5.5,1\n1,2 ,3,4,-\n")
write("data_line_fuzz", "lacks_a_record", bytes([1, 1, 0, 0, 1]) + b"1,2,3,4,1\n")
write("data_line_fuzz", "other_total", bytes([3, 3, 0, 10, 2]) + b"1,2,3,4,5,1,0,1\n")
for salt in range(0, 25, 6):
    write("data_line_fuzz", f"extreme_counts_{salt}", bytes([3, 3, 0, salt, 4]) + b"1,2,3,4,5,1,0,1\n")

# Records: analog count, status count, times, factors, flags, then the bytes
HEAD = struct.pack("<II", 1, 1000)
write("record_fuzz", "binary", bytes([3, 17, 0, 0, 1]) + (HEAD + struct.pack("<hhhHH", 1, -1, 32767, 0x5555, 1)) * 3)
write("record_fuzz", "binary32", bytes([2, 0, 9, 2, 2]) + (HEAD + struct.pack("<ii", -1, 2147483647)) * 2 + b"rest")
write("record_fuzz", "float32", bytes([2, 16, 25, 0, 3])
      + HEAD + struct.pack("<ffH", 1.5, float("nan"), 0xFFFF) + HEAD + struct.pack("<ffH", -1e-40, float("inf"), 1))
write("record_fuzz", "more_declared", bytes([1, 1, 0, 0, 33]) + HEAD + struct.pack("<hH", 7, 1))
write("record_fuzz", "fewer_declared", bytes([1, 1, 0, 0, 65]) + (HEAD + struct.pack("<hH", 7, 1)) * 2)
write("record_fuzz", "unknown_type", bytes([2, 2, 0, 0, 129]) + HEAD + bytes(10))
write("record_fuzz", "inconsistent", bytes([2, 20, 0, 0, 5, 3, 6, 2, 18]) + HEAD + bytes(range(60)))
write("record_fuzz", "inconsistent_analog", bytes([2, 0, 0, 0, 5, 20, 6, 0, 18]) + HEAD + bytes(range(60)))
write("record_fuzz", "many", bytes([39, 9, 0, 0, 98]) + bytes(range(256)) * 20 + bytes(range(20)))
write("record_fuzz", "status_before_analog", bytes([2, 20, 0, 0, 5, 2, 0, 2, 12]) + HEAD + bytes(range(60)))
write("record_fuzz", "huge", bytes([2, 20, 0, 0, 13]) + struct.pack("<6I", 2, 4, 1 << 31, 24, 2, 20) + HEAD + bytes(60))

# Configuration files
def configuration(year, analog, status, rates, word, tail=b"1\n", end=b"\n"):
    counts = b"%d,%dA,%dD" % (len(analog) + len(status), len(analog), len(status))
    lines = [b"Station,Recorder" + year, counts, *analog, *status, b"50", b"%d" % len(rates), *(rates or [b"0,3"]),
             b"01/02/2020,10:00:00.000000", b"01/02/2020,10:00:00.100000", word]
    return end.join(lines) + end + tail


TRIP = b"1,Trip,A,breaker,0"
ASCII = configuration(b",1999", [ANALOG, ANALOG], [TRIP, TRIP], [b"1000,3"], b"ASCII")
BINARY = configuration(b",1999", [ANALOG], [TRIP] * 17, [b"1000,2", b"500,3"], b"BINARY")
FLOAT = configuration(b",2013", [ANALOG[:-1] + b"P"], [], [b"0.5,3"], b"float32", b"2.5\n+2,+2\n0,0\n")
STAMPS = configuration(b"", [ANALOG], [TRIP], [], b"ascii", b"", b"\n")
OLD = configuration(b",1991", [b"1,Ua,A,,kV,1,0,0,-1,1"], [b"1,Trip,0"], [b"1000,3"], b"ASCII", b"", b"\r\n")
CYRILLIC = ANALOG.replace(b"line 1", WORD.encode("cp1251").replace(b",", b" "))
for name, text in (("ascii", ASCII), ("binary", BINARY), ("float32", FLOAT), ("stamps", STAMPS), ("old_crlf", OLD),
                   ("cp1251", configuration(b",1999", [CYRILLIC], [], [b"1,1"], b"ascii")),
                   ("claims", b"S\n2147483647,2147483646A,1D\n" + ANALOG + b"\n" + ANALOG + b"\n"),
                   ("blank_multiplier", ASCII[:-2] + b"\n"),
                   ("other_total", ASCII.replace(b"4,2A,2D", b"3,2A,2D")), ("only_station", b"S")):
    write("cfg_fuzz", name, text)
for path in sorted(RECORDINGS.glob("*.cfg")):
    write("cfg_fuzz", path.stem, path.read_bytes())

# Recordings as devices write them
def section(title, body):
    return b"--- file type: " + title + b" ---\r\n" + body + (b"" if body.endswith(b"\n") else b"\r\n")


def devices(name, cfg, data):
    write("intake_fuzz", name, cfg + b"#DAT\n" + data)


TWO = [ANALOG, ANALOG.replace(b",S", b",P").replace(b"kV", b"A")]
INTEGERS = configuration(b",2013", TWO, [TRIP], [b"1000,3"], b"BINARY32")
LONG = b"".join(struct.pack("<IIiiH", i + 1, 1000 * i, 100 * i, -(1 << 31) + i, 1) for i in range(3))
TEXT = b"1,0,100,-100,0,1\n2,1000,200,-200,1,1\n3,2000,300,-300,1,0\n"
FRACTIONS = b"1,0,+1.5,-100.25,0,1\r\n2,,99999,,1,1\r\n\r\n3,2000,3e2,.5,1,0\r\n4,3000,\r\n\x1a"
devices("ascii", ASCII, TEXT)
devices("ascii_decimals", ASCII, FRACTIONS)
devices("crlf_bom_sub", b"\xef\xbb\xbf" + ASCII.replace(b"\n", b"\r\n") + b"\x1a\x1a", TEXT.replace(b"\n", b"\r\n"))
devices("carriage_returns", ASCII.replace(b"\n", b"\r"), TEXT)
devices("binary_tail", configuration(b",1999", [ANALOG], [TRIP] * 17, [b"1000,2"], b"BINARY", end=b"\r\n"),
        b"".join(struct.pack("<IIhHH", i + 1, 1000 * i, 100 * i, i, 1) for i in range(3)) + b"\x1a" * 5)
devices("binary32", INTEGERS, LONG)
devices("binary32_wide", INTEGERS, LONG.replace(b"\x64\x00\x00\x00", b"\x65\x43\x21\x7f"))
devices("float32_missing", FLOAT, struct.pack("<IIfIIf", 1, 0, float("nan"), 2, 1000, 1e30))
devices("rates", configuration(b",1999", [ANALOG], [], [b"1000,2", b"500,3", b"250,5"], b"ASCII", b"2.5\n"),
        b"".join(b"%d,0,%d\n" % (i, i) for i in range(1, 6)))
devices("rates_as_lengths", configuration(b",1999", [ANALOG], [], [b"1000,2", b"500,3"], b"ASCII"),
        b"".join(b"%d,0,%d\n" % (i, i) for i in range(1, 6)))
devices("stamps_wrap", configuration(b",1999", [ANALOG], [], [], b"ASCII", b"0.5\n"),
        b"1,4294967000,1\n2,,2\n3,400,3\n4,100,4\n")
devices("old", OLD, b"1,0,5,1\r\n2,1000,6,0\r\n3,2000,7,0\r\n")
devices("layout_by_fields", configuration(b",1997", [b"1,Ua,A,bus,,1,0,,,,1,1,"], [b"1,T,,,"], [b"1000,1"], b"ASCII"),
        b"1,0,5,1\n")
devices("shifted", configuration(b",1999", [b"1,U a,x,A,bus,m/s,1,0,0,0,0,0,1,p"], [], [b"1000,1"], b"ASCII"), b"1,0,5\n")
devices("gbk", configuration(b",1999", [ANALOG.replace(b"line", "\u7ebf\u8def\u7535\u538b".encode("gbk"))], [],
                             [b"1,1"], b"ascii"), b"1,0,5\n")
devices("no_data", ASCII, b"")
RECORD = [struct.pack("<IIh", i + 1, 1000 * i, 100 * i) for i in range(12)]
ONE = configuration(b",1999", [ANALOG], [], [b"1000,12"], b"BINARY", end=b"\r\n")
devices("record_lost", ONE, b"".join(RECORD[:7] + RECORD[8:]))
devices("byte_lost", ONE, b"".join(RECORD)[:75] + b"".join(RECORD)[76:])
devices("padding", ONE, b"".join(record + b"\0\0" for record in RECORD))
devices("big_endian", ONE, b"".join(struct.pack(">IIh", *struct.unpack("<IIh", record)) for record in RECORD))
devices("stamps_disagree", ONE, b"".join(record[:4] + struct.pack("<I", 1000 * i + (i > 5) * 9999) + record[8:]
                                         for i, record in enumerate(RECORD)))
devices("sixteen_bits_under_binary32", ONE.replace(b"BINARY", b"BINARY32"), b"".join(RECORD))
devices("records_under_ascii", ONE.replace(b"BINARY", b"ASCII"), b"".join(RECORD))
devices("utf16", ASCII.decode().encode("utf-16"), TEXT)
devices("semicolons", ASCII.replace(b",", b";"), TEXT)
devices("spreadsheet", b"".join(line + b",,\n" for line in ASCII.splitlines()), TEXT)
devices("nanoseconds", configuration(b",2013", [ANALOG], [], [], b"ASCII", b"1\n0,0\n0,0\n").replace(b"00.000000", b"00.000000500"),
        b"1,640,5\n2,1280,6\n3,1920,7\n")
devices("missing_of_1991", OLD, b"1,0,999999,1\r\n2,1000,99999,0\r\n3,2000,7,0\r\n")
devices("claims", b"S,R,1999\n2147483647,2147483646A,1D\n" + ANALOG + b"\n", TEXT)
CFF = ASCII.replace(b"\n", b"\r\n")
write("intake_fuzz", "cff_ascii", b"\xef\xbb\xbf" + section(b"CFG", CFF) + section(b"INF", b"") + section(b"DAT ASCII", TEXT))
RAW = b"".join(struct.pack("<IIhHH", i + 1, 1000 * i, 100 * i, i, 1) for i in range(2))
CFF = configuration(b",2013", [ANALOG], [TRIP] * 17, [b"1000,2"], b"BINARY", end=b"\r\n")
write("intake_fuzz", "cff_binary", section(b"HDR", b"") + section(b"DAT BINARY: %d" % len(RAW), RAW) + section(b"CFG", CFF))
write("intake_fuzz", "cff_headings", section(b"CFG", CFF).replace(b"---", b"--") + section(b"DAT BINARY: 7", RAW))
write("intake_fuzz", "cff_base64", section(b"CFG", CFF) + section(
    b"DAT BINARY base64", b"".join(b'"' + base64.b64encode(RAW[i:i + 14]) + b'"\r\n' for i in (0, 14))))

# Whole recordings
LINES = b"1,0,100,-100,0,1\n2,1000,200,-200,1,1\n3,2000,300,-300,1,0\n"
RECORDS = b"".join(struct.pack("<IIhHH", i + 1, 1000 * i, 100 * i, i, 1) for i in range(3))
FLOATS = b"".join(struct.pack("<IIf", i + 1, 1000 * i, 0.25 * i) for i in range(3))
STAMPED = b"1,0,5,0\r\n2,7,6,1\r\n3,5,7,0\r\n"
write("recording_fuzz", "ascii", ASCII + b"#DAT\n" + LINES)
write("recording_fuzz", "binary", BINARY + b"#DAT\n" + RECORDS)
write("recording_fuzz", "float32", FLOAT + b"#DAT\n" + FLOATS)
write("recording_fuzz", "stamps", STAMPS + b"#DAT\n" + STAMPED)
write("recording_fuzz", "binary_over_ascii", ASCII + b"#DAT\n" + LINES + b"#NEXT\n" + BINARY + b"#DAT\n" + RECORDS)
write("recording_fuzz", "ascii_over_float32", FLOAT + b"#DAT\n" + FLOATS + b"#NEXT\n" + STAMPS + b"#DAT\n" + STAMPED)
write("recording_fuzz", "broken_over_ascii", ASCII + b"#DAT\n" + LINES + b"#NEXT\n" + ASCII + b"#DAT\n1,2,x")
write("recording_fuzz", "claims", ASCII.replace(b"1000,3", b"1000,1000000000000") + b"#DAT\n" + LINES)


def cut(name, old, count, data):
    cfg = (RECORDINGS / (name + ".cfg")).read_bytes()
    assert old in cfg
    write("recording_fuzz", name, cfg.replace(old, count) + b"#DAT\n" + data)


data = (RECORDINGS / "feeder_earth_fault.dat").read_bytes()
cut("feeder_earth_fault", b"1000,700", b"1000,8", b"".join(data.splitlines(keepends=True)[:8]))
data = (RECORDINGS / "line_two_phase_fault.dat").read_bytes()
cut("line_two_phase_fault", b"400,1200", b"400,8", data[:8 * 24])
data = (RECORDINGS / "transformer_inrush.dat").read_bytes()
cut("transformer_inrush", b"2000,1400", b"2000,8", data[:8 * 42])
