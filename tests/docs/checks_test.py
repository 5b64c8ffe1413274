#!/usr/bin/env python3
"""The checks of the documents find what is wrong: a document that lies in one place fails for that place."""

import argparse
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
from check_blocks import Checker, Failed, matches, region  # noqa: E402
from check_links import check_documents, check_site  # noqa: E402
from check_tables import check_tables  # noqa: E402
from project_markdown import Document  # noqa: E402

SOURCE = """// Before
// [all]
int main() {
    // [body]
    return 0;
    // [/body]
}
// [/all]
"""


class Project(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "scratch").mkdir()
        self.write("examples/host.cpp", SOURCE)
        self.write("programs/host", "")

    def write(self, name: str, text: str) -> Path:
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


class Blocks(Project):
    def problem(self, document: str) -> str:
        """What is wrong with the first block, nothing when it is right."""
        path = self.write("page.md", document)
        self.write("runs.md", "<!-- run: 0 -->\n```sh\nhost\n```\n")
        options = argparse.Namespace(
            root=self.root, build=self.root, compiler="c++", generator="Ninja", programs=[self.root / "programs"]
        )
        checker = Checker(options, self.root / "scratch")
        checker.stage = self.root
        try:
            checker.check(Document(path).blocks[0])
        except Failed as problem:
            return str(problem)
        return ""

    def test_block_without_a_comment(self) -> None:
        self.assertIn("no comment", self.problem("```cpp\nint x;\n```\n"))
        self.assertIn("no comment", self.problem("<!-- text -->\n\n```text\nx\n```\n"))

    def test_block_by_indentation(self) -> None:
        self.assertIn("indentation", self.problem("Text\n\n    int x;\n"))

    def test_blanks_in_a_list_are_no_block(self) -> None:
        path = self.write("page.md", "- item\n\n    goes on\n")
        self.assertEqual(Document(path).blocks, [])

    def test_unknown_comment(self) -> None:
        self.assertIn("unknown", self.problem("<!-- source it -->\n```cpp\nx\n```\n"))

    def test_source(self) -> None:
        whole = "<!-- source: examples/host.cpp#all -->\n```cpp\nint main() {\n    return 0;\n}\n```\n"
        self.assertEqual(self.problem(whole), "")
        self.assertEqual(self.problem("<!-- source: examples/host.cpp#body -->\n```cpp\nreturn 0;\n```\n"), "")
        self.assertIn("differs", self.problem(whole.replace("return 0", "return 1")))
        self.assertIn("no region", self.problem(whole.replace("#all", "#other")))
        self.assertIn("no file", self.problem(whole.replace("host.cpp", "other.cpp")))

    def test_source_that_is_not_built_or_not_run(self) -> None:
        self.write("examples/idle.cpp", SOURCE)
        block = "<!-- source: examples/idle.cpp#body -->\n```cpp\nreturn 0;\n```\n"
        self.assertIn("no program idle", self.problem(block))
        self.write("programs/idle", "")
        self.assertIn("no document runs", self.problem(block))

    def test_output(self) -> None:
        block = "<!-- output: printf 'a\\nb\\nc\\n' -->\n```text\na\nb\nc\n```\n"
        self.assertEqual(self.problem(block), "")
        self.assertIn("+b", self.problem(block.replace("\nb\n", "\nx\n")))
        self.assertIn("+c", self.problem(block.replace("b\nc\n", "b\n")))

    def test_dots_stand_for_any_lines(self) -> None:
        self.assertTrue(matches("a\n...\nc\n", "a\nb\nb\nc\n"))
        self.assertTrue(matches("a\n...\n", "a\n"))
        self.assertFalse(matches("a\n...\nc\n", "a\nb\n"))
        self.assertFalse(matches("a.c\n", "abc\n"))

    def test_run(self) -> None:
        block = "<!-- run: 0 -->\n```sh\ntrue\ntest -d \"$TMP\" && \\\n    true\n```\n"
        self.assertEqual(self.problem(block), "")
        self.assertIn("status 1", self.problem(block.replace("\ntrue", "\ntrue\nfalse")))
        self.assertIn("status 0", self.problem(block.replace("run: 0", "run: 1")))
        self.assertIn("needed", self.problem("<!-- run: 0 -->\n```sh\n# nothing\n```\n"))

    def test_not_run(self) -> None:
        self.assertIn("no program", self.problem("<!-- not run: slow -->\n```sh\nscripts/absent\n```\n"))
        self.assertIn("reason", self.problem("<!-- not run: -->\n```sh\ntrue\n```\n"))

    def test_python(self) -> None:
        self.assertEqual(self.problem("<!-- python -->\n```python\nprint(1)\n```\n"), "")
        self.assertEqual(self.problem("<!-- python output -->\n```text\n1\n```\n"), "")
        self.assertIn("no Python", self.problem("<!-- python -->\n```python\nprint(\n```\n"))
        self.assertIn("```python", self.problem("<!-- python -->\n```sh\nls\n```\n"))

    def test_text(self) -> None:
        self.assertEqual(self.problem("<!-- text -->\n```text\nx\n```\n"), "")
        self.assertIn("```text", self.problem("<!-- text -->\n```cpp\nx\n```\n"))

    def test_region_must_be_one(self) -> None:
        with self.assertRaises(Failed):
            region(SOURCE + SOURCE, "body")


class Links(Project):
    def problems(self, text: str) -> list:
        self.write("docs/index.md", "[page](page.md)\n")
        self.write("docs/page.md", text)
        return check_documents(self.root.resolve())

    def test_good_links(self) -> None:
        text = "# A `b` (c)\n## Same\n## Same\n[a](#a-b-c) [b](#same-1) [c](../examples/host.cpp) [d](https://x/y)\n"
        self.assertEqual(self.problems(text + "`[e](absent.md)`\n"), [])

    def test_dead_links(self) -> None:
        self.assertEqual(self.problems("\n[a](absent.md)"), ["docs/page.md:2: absent.md: no such file"])
        self.assertEqual(self.problems("[two\nlines](index.md#x)"), ["docs/page.md:1: index.md#x: no such heading"])
        self.assertEqual(self.problems("![image](a.svg)"), ["docs/page.md:1: a.svg: no such file"])

    def test_page_that_no_list_has(self) -> None:
        self.write("docs/lost.md", "")
        self.assertEqual(self.problems(""), ["docs/index.md: does not list lost.md"])

    def test_site(self) -> None:
        self.write("site/a.html", '<a href="b.html#here">b</a><img src="c.png"><a href="https://x/">x</a>')
        self.write("site/b.html", '<h1 id="there">b</h1>')
        expected = ["a.html:1: b.html#here: no such place on the page", "a.html:1: c.png: no such file"]
        self.assertEqual(check_site(self.root / "site"), expected)


class Tables(Project):
    def problems(self, text: str) -> list:
        self.write("docs/index.md", "[page](page.md)\n")
        self.write("docs/page.md", text)
        return check_tables(self.root)

    def test_cells_of_two_lines(self) -> None:
        link = "[" + "a" * 100 + "](page.md#" + "b" * 100 + ")"
        self.assertEqual(self.problems(f"| a | b |\n|---|---|\n| b | {link} |\n"), [])
        self.assertEqual(self.problems(f"| {'a' * 65} | {'b' * 65} |\n| `{'c' * 45}` | \\| |\n"), [])

    def test_what_is_longer(self) -> None:
        expected = ["docs/page.md:2: a cell of 101 characters, 100 at most"]
        self.assertEqual(self.problems("| a | b |\n| c | " + "d" * 101 + " |"), expected)
        expected = ["docs/page.md:1: a row of 131 characters, 130 at most"]
        self.assertEqual(self.problems(f"| {'a' * 65} | {'b' * 66} |"), expected)
        expected = ["docs/page.md:1: a name of 46 characters, 45 at most"]
        self.assertEqual(self.problems(f"| a | `{'b' * 46}` | c |"), expected)

    def test_code_in_the_last_column_breaks(self) -> None:
        self.assertEqual(self.problems(f"| a | `{'b' * 46}` |"), [])

    def test_bars_of_code_blocks_are_no_table(self) -> None:
        self.assertEqual(self.problems("```text\n| " + "a" * 101 + " |\n```\n"), [])


if __name__ == "__main__":
    unittest.main()
