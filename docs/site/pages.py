#!/usr/bin/env python3
"""pages.py ROOT PAGES FILES: writes docs/index.md and the documents that it lists into the folder PAGES, as Doxygen reads
them.

Headings get the anchors that a Markdown viewer gives them, links between documents become references, and the list of
docs/index.md becomes the tree of pages, in its order. Files that a document links to are copied into the folder FILES
of the site."""

import html
import posixpath
import re
import shutil
import sys
from pathlib import Path
from typing import Dict, List

sys.dont_write_bytecode = True
from project_markdown import FRONT, Document, Link, beside, is_external, listed_documents  # noqa: E402


def page_name(path: str) -> str:
    """docs/errors.md is page `errors`, another folder's page carries the folder in its name."""
    stem = path[: -len(".md")].removeprefix("docs/").removesuffix("/README")
    return stem.replace("/", "-").lower()


def code_spans(text: str) -> str:
    """The code spans of Markdown as HTML, inside of which Doxygen reads no Markdown."""

    def as_html(span: "re.Match[str]") -> str:
        return "<code>" + re.sub(r"([\\@#$%*_])", r"\\\1", html.escape(span.group(1), quote=False)) + "</code>"

    return re.sub(r"`([^`]+)`", as_html, text)


def as_doxygen_reads(line: str) -> str:
    """The line without what Doxygen reads in another way than a Markdown viewer: code in bold, an apostrophe in code."""
    bold = r"\*\*((?:[^*`]|`[^`]*`)*`[^`]*`(?:[^*`]|`[^`]*`)*)\*\*"
    line = re.sub(bold, lambda found: f"<b>{code_spans(found.group(1))}</b>", line)
    return re.sub(r"`[^`]+`", lambda span: code_spans(span.group(0)) if "'" in span.group(0) else span.group(0), line)


class Writer:
    def __init__(self, root: Path, files: Path):
        self.root = root
        self.files = files
        self.pages: Dict[str, str] = {name: page_name(name) for name in listed_documents(root)}
        if len(set(self.pages.values())) != len(self.pages):
            raise ValueError(f"two documents would be one page: {self.pages}")

    def reference(self, path: str, link: Link) -> str:
        """The link of a document as Doxygen reads it."""
        label = link.label.replace("\n", " ")
        if is_external(link.target):
            return f"[{label}]({link.target})"
        to, _, anchor = link.target.partition("#")
        to = beside(path, to) if to else path
        if to not in self.pages:
            if (self.root / to).is_dir():
                return label
            if link.image:
                return self.picture(to, label)
            address = self.copied(to)
            return f'<a href="{address}">{code_spans(label)}</a>'
        if path == FRONT and not anchor:
            return f'@subpage {self.pages[to]} "{label}"'
        name = self.pages[to]
        place = f"{name}-{anchor}" if anchor else ""
        if "`" in label:
            return f'<a href="{name}.html{"#" + place if place else ""}">{code_spans(label)}</a>'
        return f"[{label}](@ref {place or name})"

    def picture(self, path: str, label: str) -> str:
        """The picture, and for dark pages the one beside it whose name ends in -dark; site.css shows one of them, or
        inverts a drawing that has no other. The page has a switch of its own, which <picture> does not see."""
        dark = self.root / re.sub(r"(\.\w+)$", r"-dark\1", path)
        looks = {"on-light": path, "on-dark": dark.relative_to(self.root).as_posix()}
        if not dark.exists():
            looks = {"on-both": path}
        return "".join(f'<img class="{look}" src="{self.copied(file)}" alt="{label}">' for look, file in looks.items())

    def copied(self, path: str) -> str:
        """Where the site has a file that is no page."""
        copy = self.files / path
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(self.root / path, copy)
        return f"{self.files.name}/{path}"

    def convert(self, path: str) -> str:
        document = Document(self.root / path)
        links = list(document.links())
        lines = self.with_links(path, document.text, links).split("\n")
        name = self.pages[path]
        for heading in document.headings:
            if heading.level > 1:
                lines[heading.line - 1] += f" {{#{name}-{heading.anchor}}}"
            elif path != FRONT:
                lines[heading.line - 1] += f" {{#{name}}}"
                lines[heading.line] += "[TOC]"
        for number, line in enumerate(document.prose):
            if line.startswith("- [ ] "):
                lines[number] = lines[number].replace("[ ]", "\u2610", 1)
            if line:
                lines[number] = as_doxygen_reads(lines[number])
        for block in document.blocks:
            if block.directive is not None:
                lines[block.line - 2] = ""
            if block.language != "cpp":
                lines[block.line - 1] = "```{.unparsed}"
        return "\n".join(lines)

    def with_links(self, path: str, text: str, links: List[Link]) -> str:
        parts = []
        done = 0
        for link in links:
            # A link that stands on two lines still does, so that every line keeps its number.
            parts += [text[done : link.begin], self.reference(path, link), "\n" * link.label.count("\n")]
            done = link.end
        return "".join(parts) + text[done:]


def main() -> None:
    root, pages, files = (Path(argument) for argument in sys.argv[1:4])
    pages.mkdir(parents=True)
    writer = Writer(root, files)
    for path, name in writer.pages.items():
        (pages / f"{name}.md").write_text(writer.convert(path), encoding="utf-8")


if __name__ == "__main__":
    main()
