#!/usr/bin/env python3
"""Writes what is linked into a package, as SPDX 2.3: the packages that its shared libraries come from, and those whose
headers (and with them code) went into its objects. Names, versions and licences are dpkg's. The same build gives the
same bytes; SOURCE_DATE_EPOCH is the moment that the file names."""

import argparse
import datetime
import hashlib
import json
import os
import re
import subprocess
from pathlib import Path
from typing import Dict, Iterable, List, Optional, Tuple

# What Debian calls otherwise than the list of SPDX; the names of both are equal but for these.
LICENCES = {
    "Expat": "MIT",
    "BSD-2-clause": "BSD-2-Clause",
    "BSD-2-Clause": "BSD-2-Clause",
    "BSD-3-clause": "BSD-3-Clause",
    "BSD-3-Clause": "BSD-3-Clause",
    "MPL-1.1": "MPL-1.1",
    "GPL-2+": "GPL-2.0-or-later",
    "GPL-3+": "GPL-3.0-or-later",
    "LGPL-2.1+": "LGPL-2.1-or-later",
}


def output_of(*command: str) -> str:
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def packages_of(files: Iterable[str]) -> Dict[str, str]:
    """The Debian package of each file. Folders that moved below /usr have the old name in some packages' lists."""
    asked = sorted({name for file in files for name in (file, file[4:] if file.startswith("/usr/") else "/usr" + file)})
    if not asked:
        return {}
    answer = subprocess.run(["dpkg-query", "-S", *asked], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    owners = {}
    for line in answer.stdout.splitlines():
        owner, _, file = line.rpartition(": ")
        if not owner.startswith("diversion "):
            owners[file] = owner.split(",")[0].split(":")[0]
    return owners


def owner_of(file: str, owners: Dict[str, str]) -> str:
    owner = owners.get(file) or owners.get("/usr" + file) or owners.get(file.removeprefix("/usr"))
    if owner is None:
        raise SystemExit(f"spdx: {file} belongs to no package")
    return owner


def needed_by(binary: str) -> List[str]:
    return re.findall(r"\(NEEDED\).*\[(.*)\]", output_of("readelf", "-dW", binary))


def library_file(name: str) -> str:
    file = output_of("g++", "-print-file-name=" + name).strip()
    if not os.path.isabs(file):
        raise SystemExit(f"spdx: no library {name}")
    return os.path.realpath(file)


def headers_of(build: str, prefixes: List[str]) -> List[str]:
    """Outside the project, of the objects whose paths in the build tree begin like this."""
    headers = set()
    wanted = False
    for line in output_of("ninja", "-C", build, "-t", "deps").splitlines():
        if line.startswith(" "):
            path = os.path.normpath(line.strip())
            if wanted and path.startswith("/usr/"):
                headers.add(os.path.realpath(path))
        else:
            wanted = line.startswith(tuple(prefixes))
    return sorted(headers)


def debian_licence(text: str) -> Optional[str]:
    """That of all files, of a copyright file that machines can read."""
    if not text.startswith("Format:"):
        return None
    for paragraph in re.split(r"\n\s*\n", text):
        if re.search(r"^Files: \*$", paragraph, re.MULTILINE):
            found = re.search(r"^License: (.+)$", paragraph, re.MULTILINE)
            return found.group(1).strip() if found else None
    return None


def licence_of(package: str) -> Tuple[str, Optional[dict]]:
    """An expression of SPDX, and where its list has none for it the text that the package comes with."""
    path = Path("/usr/share/doc", package, "copyright")
    text = path.read_text(encoding="utf-8", errors="replace")
    words = (debian_licence(text) or "").split(" or ")
    if all(word in LICENCES for word in words):
        return " OR ".join(LICENCES[word] for word in words), None
    reference = "LicenseRef-" + re.sub(r"[^a-zA-Z0-9.-]+", "-", package)
    return reference, {"licenseId": reference, "extractedText": text, "name": debian_licence(text) or str(path)}


def identifier(package: str) -> str:
    return "SPDXRef-" + re.sub(r"[^a-zA-Z0-9.-]+", "-", package)


def described(package: str, version: str, licence: str) -> dict:
    return {
        "SPDXID": identifier(package),
        "name": package,
        "versionInfo": version,
        "supplier": "NOASSERTION",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
    }


def document_of(arguments: argparse.Namespace) -> dict:
    own = dict(pair.split("=") for pair in arguments.own)
    names = sorted({name for binary in arguments.binaries for name in needed_by(binary)})
    own_packages = sorted({own[name] for name in names if name in own} - {arguments.name})
    libraries = [library_file(name) for name in names if name not in own]
    headers = headers_of(arguments.build, arguments.objects)
    owners = packages_of([*libraries, *headers])
    links = {
        "DYNAMIC_LINK": sorted({owner_of(file, owners) for file in libraries}),
        "STATIC_LINK": sorted({owner_of(file, owners) for file in headers}),
    }

    packages = [described(arguments.name, arguments.version, "NOASSERTION")]
    packages += [described(package, arguments.version, "NOASSERTION") for package in own_packages]
    texts: Dict[str, dict] = {}  # several packages of one source have the same
    for package in sorted({*links["DYNAMIC_LINK"], *links["STATIC_LINK"]}):
        version = output_of("dpkg-query", "-W", "-f=${Version}\n", package).splitlines()[0]
        licence, text = licence_of(package)
        if text is not None:
            licence = texts.setdefault(text["extractedText"], text)["licenseId"]
        packages.append(described(package, version, licence))
    links["DYNAMIC_LINK"] = sorted({*links["DYNAMIC_LINK"], *own_packages})

    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", identifier(arguments.name))]
    for kind, linked in links.items():
        relations += [(identifier(arguments.name), kind, identifier(package)) for package in linked]
    moment = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    content = hashlib.sha256(json.dumps([packages, relations], sort_keys=True).encode()).hexdigest()
    return {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"{arguments.name}-{arguments.version}",
        "documentNamespace": f"https://spdx.org/spdxdocs/{arguments.name}-{arguments.version}-{content}",
        "creationInfo": {"created": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: spdx.py"]},
        "packages": packages,
        "relationships": [
            {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
            for one, kind, other in relations
        ],
        "hasExtractedLicensingInfos": list(texts.values()),
    }


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--name", required=True, help="the package that is described")
    parser.add_argument("--version", required=True)
    parser.add_argument("--build", required=True, help="the build tree, made with Ninja")
    parser.add_argument("--objects", nargs="+", required=True, help="how the paths of the package's objects begin")
    parser.add_argument("--own", nargs="*", default=[], help="SONAME=PACKAGE of the project's own libraries")
    parser.add_argument("--output", required=True)
    parser.add_argument("binaries", nargs="*", help="programs and shared libraries of the package")
    arguments = parser.parse_intermixed_args()
    text = json.dumps(document_of(arguments), indent=2, ensure_ascii=True)
    Path(arguments.output).write_text(text + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
