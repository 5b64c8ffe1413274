#!/usr/bin/env python3
"""check_names.py XML: every public name that Doxygen knows is documented, also those that it does not warn about:
enumerators, and members of what is not documented itself. Destructors and deleted functions speak for themselves."""

import sys
from pathlib import Path
from typing import Iterator, List
from xml.etree import ElementTree

KINDS = ("class", "struct", "union", "namespace")


def is_documented(element: ElementTree.Element) -> bool:
    texts = [element.find("briefdescription"), element.find("detaileddescription")]
    return any("".join(text.itertext()).strip() for text in texts if text is not None)


def speaks_for_itself(member: ElementTree.Element) -> bool:
    arguments = member.findtext("argsstring") or ""
    return member.findtext("name", "").startswith("~") or arguments.endswith("=delete")


def names(compound: ElementTree.Element) -> Iterator[ElementTree.Element]:
    """The compound, its public members and their enumerators; of a file, its macros."""
    kind = compound.get("kind")
    if kind in KINDS:
        yield compound
    elif kind != "file":
        return
    for member in compound.iter("memberdef"):
        if member.get("prot") != "public" or speaks_for_itself(member):
            continue
        if kind in KINDS or member.get("kind") == "define":
            yield member
            yield from member.iter("enumvalue")


def check(folder: Path) -> List[str]:
    problems = []
    count = 0
    for path in sorted(folder.glob("*.xml")):
        for compound in ElementTree.parse(path).getroot().iter("compounddef"):
            for name in names(compound):
                count += 1
                if not is_documented(name):
                    label = name.findtext("name") or name.findtext("compoundname")
                    problems.append(f"{compound.findtext('compoundname')}: {label}: not documented")
    return problems if count else [f"{folder}: no names"]


def main() -> int:
    problems = check(Path(sys.argv[1]))
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
