#!/usr/bin/env python3
"""check_links.py ROOT [SITE]: every relative link of the documents leads to a file of the project and, with an anchor,
to a heading of it; every document is in the list of docs/index.md. With SITE, the same for the pages of the site."""

import sys
from html.parser import HTMLParser
from pathlib import Path
from typing import Dict, List, Set, Tuple
from urllib.parse import unquote, urlsplit

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "docs" / "site"))
from project_markdown import Document, documents, is_external  # noqa: E402


def check_documents(root: Path) -> List[str]:
    problems = []
    anchors: Dict[Path, Set[str]] = {}
    parsed = {path.resolve(): Document(path) for path in documents(root)}
    for path, document in parsed.items():
        anchors[path] = {heading.anchor for heading in document.headings}
    for path, document in parsed.items():
        for link in document.links():
            if is_external(link.target):
                continue
            to, _, anchor = link.target.partition("#")
            target = (path.parent / to).resolve() if to else path
            where = f"{path.relative_to(root.resolve())}:{link.line}: {link.target}"
            if not target.exists():
                problems.append(f"{where}: no such file")
            elif anchor and anchor not in anchors.get(target, set()):
                problems.append(f"{where}: no such heading")
    problems += check_contents(root, parsed)
    return problems


def check_contents(root: Path, parsed: Dict[Path, Document]) -> List[str]:
    index = (root / "docs" / "index.md").resolve()
    if index not in parsed:
        return ["docs/index.md: missing"]
    listed = {(index.parent / link.target).resolve() for link in parsed[index].links() if "#" not in link.target}
    unlisted = [path for path in parsed if path.parent == index.parent and path not in listed and path != index]
    return [f"docs/index.md: does not list {path.name}" for path in sorted(unlisted)]


class Page(HTMLParser):
    def __init__(self) -> None:
        super().__init__(convert_charrefs=True)
        self.targets: List[Tuple[int, str]] = []
        self.anchors: Set[str] = set()

    def handle_starttag(self, tag: str, attrs: list) -> None:
        values = dict(attrs)
        for name in ("id", "name"):
            if values.get(name):
                self.anchors.add(values[name])
        for name in ("href", "src"):
            if values.get(name):
                self.targets.append((self.getpos()[0], values[name]))

    handle_startendtag = handle_starttag


def check_site(site: Path) -> List[str]:
    pages: Dict[Path, Page] = {}
    for path in sorted(site.rglob("*.html")):
        page = Page()
        page.feed(path.read_text(encoding="utf-8"))
        pages[path.resolve()] = page
    if not pages:
        return [f"{site}: no pages"]
    problems = []
    for path, page in pages.items():
        for line, address in page.targets:
            parts = urlsplit(address)
            if parts.scheme:
                continue
            target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
            anchor = unquote(parts.fragment)
            where = f"{path.name}:{line}: {address}"
            if not target.exists():
                problems.append(f"{where}: no such file")
            elif anchor and target in pages and anchor not in pages[target].anchors:
                problems.append(f"{where}: no such place on the page")
    return problems


def main() -> int:
    root = Path(sys.argv[1]).resolve()
    problems = check_documents(root)
    for site in sys.argv[2:]:
        problems += check_site(Path(site))
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
