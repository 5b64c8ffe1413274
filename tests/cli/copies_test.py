"""A copy, in whatever form, gives the values of its original on either side, or says what it rounded and left out.
Usage: copies_test.py PROGRAM FOLDER...; ORV_CORPUS_DIR adds a folder of real recordings. -v counts the copies."""

import collections
import itertools
import json
import os
import subprocess
import sys
import tempfile

TYPES = {1991: ("ascii", "binary"), 1999: ("ascii", "binary"), 2013: ("ascii", "binary", "binary32", "float32")}
STANDARD = {"normalize": ["normalize"], "cut": ["cut"],
            **{f"{year} {kind}": ["cut", "--revision", str(year), "--type", kind]
               for year, kinds in TYPES.items() for kind in kinds},
            **{f"{kind} in one file": ["cut", "--cff", "--revision", "2013", "--type", kind] for kind in TYPES[2013]}}

# Of the greatest value of a channel: half a step of 16 bits, of 24, of 32, each on a scale that an offset may stretch.
ROUNDING = {"ascii": 2.0**-24, "binary": 2.0**-13, "binary32": 2.0**-30, "float32": 2.0**-24}
NEXT_TO = 2.0**-50  # where a factor was rounded once more

# What a form may change of what `info --json` prints, and what it may leave out.
OF_FORM = {"path", "revision", "dataType", "encoding", "samplesDeclared", "findings", "a", "min", "max"}
OF_CHANNEL_1991 = {"side", "valueSide", "primary", "secondary"}
DROPPED = {"sides and ratios": OF_CHANNEL_1991,
           "phases and components of status channels": {"phase", "component", "name"},
           "time codes and time quality": {"timeCode", "localCode", "timeQuality", "leapSecond"},
           "nanoseconds of dates": {"start", "trigger"}}

counts = collections.Counter()
problems = []


def run(program, *words, status=(0,)):
    done = subprocess.run([program, *words], capture_output=True, check=False, timeout=300)
    assert done.returncode in status, (words, done.returncode, done.stderr[-800:])
    return done.stdout


def objects(program, *words):
    """Objects that a command prints, by the path of their recording without its extension."""
    found = {}
    for line in run(program, *words, "--json", "-q", status=(0, 1)).decode().splitlines():
        one = json.loads(line)
        found[one["path"]] = one
    return {os.path.splitext(path)[0]: one for path, one in found.items() if one["ok"]}


def relative(found, folder):
    return {os.path.relpath(path, folder): one for path, one in found.items()}


def points(program, folder, *words):
    """The JSON of all curves of each recording, as text: most are equal, and need no reading."""
    found = {}
    for line in run(program, "points", folder, "--channel", "*", "--skew", "keep", "--json", "-q", *words,
                    status=(0, 1)).decode().splitlines():
        head, _, curves = line.partition(',"curves":')
        if curves:
            found[json.loads(head + "}")["path"]] = curves[:-1]
    return relative({os.path.splitext(path)[0]: curves for path, curves in found.items()}, folder)


def apartness(left, right, knows_missing):
    """How far two lists of points are apart: of their times, and of their values, by the greatest of each."""
    assert len(left) == len(right), (len(left), len(right))
    greatest, worst, latest, late = 0.0, 0.0, 0.0, 0.0
    for (time, value), (other_time, other) in zip(left, right):
        assert (value is None) == (other is None) or (value is None and not knows_missing), (time, value, other)
        latest, late = max(latest, abs(time)), max(late, abs(time - other_time))
        if value is not None:
            greatest, worst = max(greatest, abs(value)), max(worst, abs(value - other))
    return late / (latest or 1.0), worst / (greatest or 1.0)


def compare_points(original, copy, kind, rounded, knows_missing=True):
    if original == copy:
        return
    originals, copies = json.loads(original), json.loads(copy)
    assert len(originals) == len(copies)
    for left, right in zip(originals, copies):
        if left["points"] == right["points"]:
            continue
        late, apart = apartness(left["points"], right["points"], knows_missing)
        is_analog = left["channel"]["kind"] == "analog"
        is_rounded = is_analog and left["channel"]["number"] in rounded
        allowed = ROUNDING[kind] if is_rounded else NEXT_TO if is_analog else 0.0
        assert late <= NEXT_TO and apart <= allowed, (left["channel"]["name"], late, apart, allowed)


def differences(original, copy, ignored):
    if isinstance(original, dict) and isinstance(copy, dict):
        return {key: (original.get(key), copy.get(key)) for key in {*original, *copy} - ignored
                if differences(original.get(key), copy.get(key), ignored)}
    if isinstance(original, list) and isinstance(copy, list) and len(original) == len(copy):
        return [pair for pair in zip(original, copy) if differences(*pair, ignored)]
    if isinstance(original, float) and isinstance(copy, float):
        return abs(original - copy) > NEXT_TO * abs(original)
    return original != copy


def rates_with_samples(rates, samples):
    """What a copy declares: the samples that are there, and no rate without any."""
    begin, kept = 0, []
    for rate in rates:
        end = samples if rate is rates[-1] else min(rate["endSample"], samples)
        if end > begin:
            kept.append({**rate, "endSample": end})
        begin = max(begin, end)
    return kept


def compare_info(original, copy, dropped):
    ignored = OF_FORM.union(*(DROPPED[what] for what in dropped))
    for channel, other in zip(original["analog"], copy["analog"]):
        if channel["side"] == "unknown" or other["side"] == "unknown":
            ignored = ignored | OF_CHANNEL_1991  # with a ratio of 1, or without one: no other values
        channel["number"] = other["number"]  # channels of a copy are numbered from 1 on
    for channel, other in zip(original["status"], copy["status"]):
        channel["number"] = other["number"]
    if original["samples"]:
        original["samplingRates"] = rates_with_samples(original["samplingRates"], original["samples"])
    found = differences(original, copy, ignored)
    assert not found, found


def compare_copy(name, recording, written, sides, infos):
    kind = name.split()[0] if name.endswith("file") else name.split()[-1]
    kind = infos[0]["dataType"].lower() if kind in ("normalize", "cut") else kind
    dropped = written.get("dropped", [])
    if name.endswith("file"):  # whose lines end as the standard has it, those of its texts too
        for info, text in itertools.product(infos, ("hdr", "inf")):
            info[text] = info[text] and info[text].replace("\r\n", "\n")
    for originals, copies in sides:
        compare_points(originals[recording], copies[recording], kind, written.get("rounded", []))
    compare_info(*infos, dropped)
    counts["rounded" if written.get("rounded") else "equal"] += 1
    counts["with less in it, as reported"] += 1 if dropped else 0


def check_standard_forms(program, folder, place):
    originals = {side: points(program, folder, "--side", side) for side in ("primary", "secondary", "recorded")}
    infos = relative(objects(program, "info", folder), folder)
    assert originals["recorded"]
    for name, words in STANDARD.items():
        target = os.path.join(place, name.replace(" ", "-"))
        written = relative(objects(program, *words, folder, "--output", target), folder)
        sides = ["recorded"] if name.startswith("1991") else ["primary", "secondary"]
        pairs = [(originals[side], points(program, target, "--side", side)) for side in sides]
        copied_infos = relative(objects(program, "info", target), target)
        for recording in originals["recorded"]:
            counts["copies"] += 1
            try:
                compare_copy(name, recording, written[recording],
                             pairs, [json.loads(json.dumps(infos[recording])), copied_infos[recording]])
            except Exception as problem:
                problems.append(f"{recording}, as {name}: {problem!r}")


def check_library_form(program, folder, place):
    """The library alone reads the values of the side that was asked for, and for a missing one the number for it."""
    for side in ("primary", "secondary", "recorded"):
        target = os.path.join(place, "library-" + side)
        objects(program, "normalize", "--for", "library", "--side", side, folder, "--output", target)
        copies = points(program, target, "--as-is")
        for recording, original in points(program, folder, "--side", side).items():
            counts["copies"] += 1
            try:
                compare_points(original, copies[recording], "ascii", [], knows_missing=False)
            except Exception as problem:
                problems.append(f"{recording}, for the library, {side}: {problem!r}")
            counts["equal"] += 1


def main():
    words = [word for word in sys.argv[1:] if word != "-v"]
    program = os.path.abspath(words[0])
    corpus = os.environ.get("ORV_CORPUS_DIR")
    real = sorted(one.path for one in os.scandir(corpus) if one.is_dir()) if corpus else []  # one by one: they are large
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None  # files are brought to the disk, which takes time
    for folder in [*words[1:], *real]:
        with tempfile.TemporaryDirectory(dir=memory) as place:
            check_standard_forms(program, folder, place)
            check_library_form(program, folder, place)
    if "-v" in sys.argv:
        print(", ".join(f"{count} {what}" for what, count in counts.items()))
    if problems:
        sys.exit("\n".join(problems))


main()
