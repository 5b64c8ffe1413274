#!/usr/bin/env python3
"""finish.py PAGES HTML: completes the pages that Doxygen has made in the folder HTML.

Every page gets the scripts of the theme, a description, and the search over the text of all sections; every document
gets links to the one before and the one after, in the order of the list in docs/index.md (PAGES has the documents as
Doxygen read them, the front page first)."""

import html
import json
import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from typing import Dict, List, Optional, Tuple

SCRIPTS = [
    "doxygen-awesome-darkmode-toggle.js",
    "doxygen-awesome-fragment-copy-button.js",
    "doxygen-awesome-interactive-toc.js",
    "doxygen-awesome-paragraph-link.js",
    "search-sections.js",
    "search.js",
]
START = """<script>
DoxygenAwesomeDarkModeToggle.init();
DoxygenAwesomeFragmentCopyButton.init();
DoxygenAwesomeInteractiveToc.init();
DoxygenAwesomeParagraphLink.init();
</script>
"""
ROOT_BEGIN = '<html xmlns="http://www.w3.org/1999/xhtml">'
HEAD_END = "</head>"
TITLE_END = "<!-- end header part -->"
CONTENTS_END = "</div><!-- contents -->"
DESCRIPTION_LENGTH = 160
# Code that fits on a line of a telephone: no line ends at the hyphens of an option.
SHORT_CODE = re.compile(r"<code>([^<]{1,28})</code>")
# Listings of headers and lists of names, which have nothing that the pages they lead to don't have.
UNSEARCHED = re.compile(
    r".*(_source|-members)\.html|(annotated|classes|dir_.*|files|functions.*|globals.*|hierarchy|namespaces"
    r"|namespacemembers.*|pages)\.html"
)
LOGO = re.compile(r'<img class="footer" src="doxygen\.svg"[^>]*/>')  # drawn for a white page: smeared on any other
SEARCH = """<div id="site-search" role="search">
<div id="MSearchBox"><input type="search" placeholder="Search" aria-label="Search the text of all pages"/></div>
<ol aria-live="polite"></ol>
</div>
"""  # the theme puts its switch of colours beside MSearchBox


class Sections(HTMLParser):
    """The text of a page below each of its headings: (anchor, title, text)."""

    HEADINGS = ("h1", "h2", "h3", "h4")
    SILENT = ("script", "style")
    INLINE = ("a", "b", "code", "em", "i", "span", "strong", "tt")

    def __init__(self) -> None:
        super().__init__()
        self.found: List[Tuple[str, List[str], List[str]]] = [("", [], [])]
        self.depth = 0  # of <div> inside of the contents; 0: outside
        self.heading = False
        self.silent = False
        self.first_paragraph: Optional[List[str]] = None
        self.in_paragraph = False

    def handle_starttag(self, tag: str, attributes: List[Tuple[str, Optional[str]]]) -> None:
        named = dict(attributes)
        if tag == "div":
            if self.depth:
                self.depth += 1
            elif "contents" in (named.get("class") or "").split():
                self.depth = 1
        if not self.depth:
            return
        if tag in self.HEADINGS:
            self.found.append((named.get("id") or "", [], []))
            self.heading = True
        elif tag == "a" and self.heading and named.get("id"):
            self.found[-1] = (named["id"] or "", *self.found[-1][1:])
        elif tag in self.SILENT:
            self.silent = True
        elif tag == "p" and self.first_paragraph is None:
            self.first_paragraph = []
            self.in_paragraph = True

    def handle_endtag(self, tag: str) -> None:
        if tag == "div" and self.depth:
            self.depth -= 1
        elif tag in self.HEADINGS:
            self.heading = False
        elif tag in self.SILENT:
            self.silent = False
        elif tag == "p":
            self.in_paragraph = False
            if not plain(self.first_paragraph or []):
                self.first_paragraph = None  # an image alone
        if self.depth and not self.heading and tag not in self.INLINE:
            self.found[-1][2].append(" ")

    def handle_data(self, data: str) -> None:
        if not self.depth or self.silent:
            return
        self.found[-1][1 if self.heading else 2].append(data)
        if self.in_paragraph and self.first_paragraph is not None:
            self.first_paragraph.append(data)


def plain(parts: List[str]) -> str:
    return " ".join("".join(parts).split())


def title_of(text: str) -> str:
    """What the page is called, without the name of the project before it."""
    match = re.search(r"<title>(.*?)</title>", text, re.DOTALL)
    title = html.unescape(match.group(1)).split(": ", 1)[-1].strip() if match else ""
    return re.sub(r" (Class|Struct|Namespace|File)( Template)? Reference$", "", title)


def description_of(sections: Sections, title: str) -> str:
    text = plain(sections.first_paragraph or []) or title
    if len(text) <= DESCRIPTION_LENGTH:
        return text
    return text[:DESCRIPTION_LENGTH].rsplit(" ", 1)[0] + " ..."


def order_of(pages: Path) -> List[str]:
    """The pages of the documents in the order of the front page's list, which comes first."""
    front = (pages / "index.md").read_text(encoding="utf-8")
    return ["index.html"] + [name + ".html" for name in re.findall(r"@subpage (\S+)", front)]


def way_on(name: str, order: List[str], titles: Dict[str, str]) -> str:
    if name not in order:
        return ""
    at = order.index(name)
    links = []
    if at > 0:
        links.append(f'<a rel="prev" href="{order[at - 1]}">&larr; {html.escape(titles[order[at - 1]])}</a>')
    if at + 1 < len(order):
        links.append(f'<a rel="next" href="{order[at + 1]}">{html.escape(titles[order[at + 1]])} &rarr;</a>')
    return f'<nav class="page-order" aria-label="Pages before and after">{"".join(links)}</nav>\n'


def without_link_in_title(text: str) -> str:
    """The front page, called after the project alone, though its name is that of a namespace too."""
    text = re.sub(r"<title>(\w+): \1</title>", r"<title>\1</title>", text)
    return re.sub(r'(<div class="title">)<a [^>]*>(.*?)</a>', r"\1\2", text)


def once(text: str, mark: str, replacement: str, name: str) -> str:
    """The text with its only `mark` replaced."""
    if text.count(mark) != 1:
        raise ValueError(f"{name}: {text.count(mark)} times {mark!r}, expected once")
    return text.replace(mark, replacement)


def main() -> None:
    pages, site = (Path(argument) for argument in sys.argv[1:3])
    texts = {path.name: path.read_text(encoding="utf-8") for path in sorted(site.glob("*.html"))}
    titles = {name: title_of(text) for name, text in texts.items()}
    titles["index.html"] = "Start"
    order = order_of(pages)
    index: List[Tuple[str, str, str, str]] = []
    for name, text in texts.items():
        sections = Sections()
        sections.feed(text)
        if not UNSEARCHED.fullmatch(name):
            for anchor, heading, body in sections.found:
                if plain(body):
                    address = name + ("#" + anchor if anchor else "")
                    index.append((titles[name], plain(heading), address, plain(body)))
        head = "".join(f'<script src="{script}"></script>\n' for script in SCRIPTS)
        description = html.escape(description_of(sections, titles[name]))
        text = LOGO.sub("Doxygen", text)
        text = SHORT_CODE.sub(r'<code class="whole">\1</code>', text)
        if name == order[0]:
            text = without_link_in_title(text)
        text = once(text, ROOT_BEGIN, ROOT_BEGIN[:-1] + ' lang="en">', name)
        text = once(text, HEAD_END, f'<meta name="description" content="{description}"/>\n{head}{START}{HEAD_END}', name)
        text = once(text, TITLE_END, SEARCH + TITLE_END, name)
        if name in order:
            text = once(text, CONTENTS_END, CONTENTS_END + way_on(name, order, titles), name)
        (site / name).write_text(text, encoding="utf-8")
    sections_text = json.dumps(index, ensure_ascii=True, separators=(",", ":"))
    (site / "search-sections.js").write_text(f"window.siteSections = {sections_text};\n", encoding="utf-8")


if __name__ == "__main__":
    main()
