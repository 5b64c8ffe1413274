"""The Markdown of this project's documents, as far as its checks and its site need it: code blocks with the comment
before them, headings with the anchors that a Markdown viewer gives them, links."""

import posixpath
import re
from dataclasses import dataclass
from pathlib import Path
from typing import Iterator, List, Optional

FRONT = "docs/index.md"
FENCE = re.compile(r"^(`{3,})\s*([A-Za-z0-9_+-]*)\s*$")
COMMENT = re.compile(r"^<!--\s*(.*?)\s*-->$")
HEADING = re.compile(r"^(#{1,6})\s+(.*?)\s*#*$")
CODE_SPAN = re.compile(r"(?<!`)(`+)(?!`)(?:(?!\n\n).)*?(?<!`)\1(?!`)", re.DOTALL)
LINK = re.compile(r"(!?)\[((?:(?!\n\n)[^\]])+)\]\(([^)\s]+)\)")


@dataclass
class Block:
    line: int  # of the fence, from 1
    language: str
    text: str
    directive: Optional[str]  # inside of the comment on the line before, if there is one
    fenced: bool = True


@dataclass
class Heading:
    line: int
    level: int
    title: str
    anchor: str


@dataclass
class Link:
    """A link or an image, which stands in the text from `begin` to `end`."""

    line: int
    label: str
    target: str
    image: bool
    begin: int
    end: int


class Document:
    def __init__(self, path: Path):
        self.path = path
        self.text = path.read_text(encoding="utf-8")
        self.lines = self.text.split("\n")
        self.blocks: List[Block] = []
        self.prose = list(self.lines)  # the same lines, blank where they belong to a code block
        self._cut_blocks()
        self.headings = self._find_headings()

    def _cut_blocks(self) -> None:
        position = 0
        while position < len(self.lines):
            fence = FENCE.match(self.lines[position])
            if fence:
                position = self._cut_fenced(position, fence)
            elif self._begins_indented(position):
                position = self._cut_indented(position)
            else:
                position += 1

    def _cut_fenced(self, first: int, fence: "re.Match[str]") -> int:
        last = first + 1
        while last < len(self.lines) and self.lines[last].rstrip() != fence.group(1):
            last += 1
        if last == len(self.lines):
            raise ValueError(f"{self.path}:{first + 1}: the block has no end")
        text = "".join(line + "\n" for line in self.lines[first + 1 : last])
        comment = COMMENT.match(self.lines[first - 1]) if first > 0 else None
        self.blocks.append(Block(first + 1, fence.group(2), text, comment.group(1) if comment else None))
        self._blank(first, last + 1)
        return last + 1

    def _begins_indented(self, position: int) -> bool:
        """Four blanks after an empty line make code, unless they go on a list item."""
        if not self.lines[position].startswith("    ") or (position > 0 and self.lines[position - 1].strip()):
            return False
        for line in reversed(self.lines[:position]):
            if line.strip() and not line.startswith(" "):
                return not re.match(r"^([-*+]|\d+[.)])\s", line)
        return True

    def _cut_indented(self, first: int) -> int:
        last = first
        while last < len(self.lines) and (self.lines[last].startswith("    ") or not self.lines[last].strip()):
            last += 1
        text = "".join(line[4:] + "\n" for line in self.lines[first:last])
        self.blocks.append(Block(first + 1, "", text, None, fenced=False))
        self._blank(first, last)
        return last

    def _blank(self, first: int, last: int) -> None:
        self.prose[first:last] = [""] * (last - first)

    def _find_headings(self) -> List[Heading]:
        headings: List[Heading] = []
        for number, line in enumerate(self.prose, 1):
            match = HEADING.match(line)
            if match:
                anchor = unique(slug(match.group(2)), [heading.anchor for heading in headings])
                headings.append(Heading(number, len(match.group(1)), match.group(2), anchor))
        return headings

    def links(self) -> Iterator[Link]:
        padded = (line or "x" * len(self.lines[number]) for number, line in enumerate(self.prose))
        masked = CODE_SPAN.sub(lambda span: re.sub(r"[^\n]", "x", span.group(0)), "\n".join(padded))
        for match in LINK.finditer(masked):
            begin, end = match.span()
            label = self.text[match.start(2) : match.end(2)]
            yield Link(masked.count("\n", 0, begin) + 1, label, match.group(3), bool(match.group(1)), begin, end)


def slug(title: str) -> str:
    """The anchor that the usual viewers give a heading."""
    text = LINK.sub(r"\2", title.replace("`", "")).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def unique(anchor: str, taken: List[str]) -> str:
    if anchor not in taken:
        return anchor
    number = 1
    while f"{anchor}-{number}" in taken:
        number += 1
    return f"{anchor}-{number}"


def documents(root: Path) -> List[Path]:
    """Every document of the project, in the order of their names."""
    found = []
    for path in root.rglob("*.md"):
        folders = path.relative_to(root).parts[:-1]
        if not any(folder.startswith((".", "build")) for folder in folders):
            found.append(path)
    return sorted(found)


def listed_documents(root: Path) -> List[str]:
    """The front page of the site and the documents that it lists, in its order, from the root of the project."""
    # Not links to a section, whose page has a link of its own.
    return [FRONT] + [
        beside(FRONT, link.target)
        for link in Document(root / FRONT).links()
        if not (link.image or is_external(link.target) or "#" in link.target)
    ]


def beside(path: str, target: str) -> str:
    """What a relative link of the document at `path` names, from the root of the project."""
    return posixpath.normpath(posixpath.join(posixpath.dirname(path), target))


def is_external(target: str) -> bool:
    return re.match(r"^[a-z][a-z0-9+.-]*:", target) is not None
