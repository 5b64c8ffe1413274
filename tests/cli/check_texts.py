"""Whatever names a recording has, what leaves the program is JSON, CSV and text for a terminal, as parsers that are not
the program's own see it. Usage: check_texts.py PROGRAM"""

import csv
import io
import json
import os
import random
import subprocess
import sys
import tempfile
import unicodedata
import urllib.parse

PROGRAM = os.path.abspath(sys.argv[1])
SEED = 7
RANDOM_NAMES = 30

# Names of stations, channels and files, in bytes.
NAMES = [name.encode() for name in (
    "plain", "\u041f\u0421 110 \u043a\u0412", "a,b", 'say "hi"', "\"", "=1+1", "+1", "-3U0", "@SUM(A1)", "\t=1", "'quoted",
    "=HYPERLINK(\"x\",\"y\")", "\u202egpj.exe", "\u2066a\u2069", "\u061cx", "zero\u200bwidth", "\ufeffmark", "tag\U000e0041",
    "soft\u00adhyphen", "del\x7f", "esc\x1b[2J", "c1\u009b2J", "line\u2028line", "\U0001f600", "back\\slash", "%41", "\ufff9x",
)] + [b"\xff", b"half\xd0", b"\xed\xa0\x80", b"\xc0\xae", b"\xf4\x90\x80\x80", b"\xe0\x80\xaf", b"\x80\x9b", b"\xad"]

# Marks that are seen, though they are format controls.
SEEN_FORMATS = {*range(0x600, 0x606), 0x6DD, 0x70F, 0x890, 0x891, 0x8E2, 0x110BD, 0x110CD}


def is_unseen(character):
    code = ord(character)
    return (unicodedata.category(character) in ("Cc", "Zl", "Zp", "Cf") and code not in SEEN_FORMATS
            or 0xFE00 <= code <= 0xFE0F or 0x2065 == code or 0x180B <= code <= 0x180F or 0xE0000 <= code <= 0xE0FFF)


def escaped(text):
    return "".join("".join(f"\\x{byte:02X}" for byte in c.encode()) if is_unseen(c) else c for c in text)


def run(folder, *words):
    done = subprocess.run([PROGRAM.encode(), *(w if isinstance(w, bytes) else w.encode() for w in words)], cwd=folder,
                          capture_output=True, check=False, timeout=60)
    assert done.returncode in (0, 1), (words, done)
    return done


def printable(blob):
    text = blob.decode()  # strict
    bad = [c for c in text if c != "\n" and is_unseen(c)]
    assert not bad, (bad, text)
    return text


def no_constant(name):
    raise AssertionError(name + " is no number of JSON")


def json_lines(blob):
    return [json.loads(line, parse_constant=no_constant) for line in printable(blob).splitlines()]


def path_of(value, member="path"):
    if member + "Bytes" in value:
        return urllib.parse.unquote_to_bytes(value[member + "Bytes"])
    return value[member].encode()


def paths_of(value):
    if "filesBytes" in value:
        return [urllib.parse.unquote_to_bytes(path) for path in value["filesBytes"]]
    return [path.encode() for path in value["files"]]


def guarded(text, raw):
    return ("'" if text[:1] in tuple("=+-@\t\r") and not raw else "") + escaped(text)


def check_csv(blob, info, raw):
    rows = list(csv.reader(io.StringIO(printable(blob), newline=""), strict=True))
    header = {row[0]: row for row in rows if row[0].startswith("# ")}
    assert header["# station"] == ["# station", guarded(info["station"], raw)], (header, info)
    assert header["# recorder"] == ["# recorder", guarded(info["recorder"], raw)], (header, info)
    names = [c["name"] for c in info["analog"] + info["status"]]
    titles = next(row for row in rows if row[0] == "time")
    # The unit of the values is the base unit, and stands at the end of an analog name.
    assert [title.rsplit(",", 1)[0] for title in titles[1:]] == [guarded(n, raw).rsplit(",", 1)[0] for n in names]
    for row in rows[rows.index(titles) + 1:]:
        assert len(row) == len(titles), row
        for cell in row:
            assert cell == "" or float(cell) == float(cell), cell
    if not raw:
        assert all(cell[:1] not in tuple("=+-@") for row in rows[:rows.index(titles) + 1] for cell in row if cell), rows


def write_recording(folder, name, text, data):
    config = b"\n".join([text + b"," + text + b",1999", b"2,1A,1D", b"1," + text + b",,," + b"V,1,0,0,-9,9,1,1,S",
                         b"1," + text + b",,,0", b"50", b"1", b"1000,3", b"01/02/2020,10:00:00.000000",
                         b"01/02/2020,10:00:00.000000", data[0], b"1", b""])
    for extension, content in ((b".cfg", config), (b".dat", data[1])):
        with open(os.path.join(folder, name + extension), "wb") as file:
            file.write(content)


def is_file_name(name):
    return name and len(name) < 200 and b"/" not in name and b"\0" not in name and name not in (b".", b"..")


ASCII = (b"ASCII", b"1,0,7,0\n2,1000,-8,1\n3,2000,9,1\n")
INFINITE = (b"FLOAT32", b"".join(number.to_bytes(4, "little") + stamp.to_bytes(4, "little") + value + b"\0\0"
                                 for number, stamp, value in ((1, 0, b"\0\0\x80\x7f"), (2, 1000, b"\0\0\x80\xff"),
                                                              (3, 2000, b"\0\0\xc0\x7f"))))


def check(name, text, data):
    with tempfile.TemporaryDirectory() as place:
        folder = os.fsencode(place)
        os.mkdir(os.path.join(folder, b"in"))
        write_recording(os.path.join(folder, b"in"), name, text, data)
        path = b"in/" + name + b".cfg"
        for command in (["check"], ["events"], ["points", "--channel", "1"], ["info", "--as-is"]):
            done = run(folder, *command, "in")
            printable(done.stdout)
            printable(done.stderr)
            for line in json_lines(run(folder, *command, "--json", "in").stdout):
                assert path_of(line) == path, (line, path)
                for finding in line["findings"] if command == ["check"] else []:
                    assert path_of(finding, "file").startswith(b"in/" + name), finding
        (info,) = json_lines(run(folder, "info", "--json", "in").stdout)
        printable(run(folder, "info", "in").stdout)
        assert path_of(info) == path
        if not info["ok"]:
            return False
        check_csv(run(folder, "export", "--comments", path).stdout, info, False)
        check_csv(run(folder, "export", "--comments", "--raw", path).stdout, info, True)
        head, *rows = json_lines(run(folder, "export", "--comments", "--format", "jsonl", path).stdout)
        assert head["station"] == info["station"] and path_of(head, "recording") == name + b".cfg"
        assert len(rows) == 3 and all(len(row) == 3 for row in rows), rows
        for words in (["export", "--format", "npy"], ["normalize"]):
            (line,) = json_lines(run(folder, *words, "--json", "--output", "out", "in").stdout)
            for written in paths_of(line):
                assert os.path.exists(os.path.join(folder, written)), written
        with open(os.path.join(folder, b"out", name + b".json"), "rb") as file:
            (sidecar,) = json_lines(file.read())
            assert path_of(sidecar, "values") == name + b".npy"
        return True


def main():
    random.seed(SEED)
    read = 0
    names = NAMES + [random.randbytes(random.randint(1, 12)) for _ in range(RANDOM_NAMES)]
    for number, name in enumerate(names):
        text = name.replace(b"\n", b" ").replace(b"\r", b" ").replace(b"\0", b" ")
        file_name = name if is_file_name(name) else b"rec"
        read += check(file_name, text, INFINITE if number % 5 == 0 else ASCII)
    assert read > len(names) / 2, read
    print(f"{len(names)} names, {read} recordings that can be read")


main()
