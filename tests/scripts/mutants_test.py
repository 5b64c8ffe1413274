#!/usr/bin/env python3
"""scripts/mutants finds the places of single faults in code, and none in what has no behaviour."""

import importlib.machinery
import importlib.util
import sys
import unittest
from pathlib import Path
from typing import List

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "mutants"
loader = importlib.machinery.SourceFileLoader("mutants", str(SCRIPT))
spec = importlib.util.spec_from_loader("mutants", loader)
assert spec is not None
mutants = importlib.util.module_from_spec(spec)
sys.modules["mutants"] = mutants
loader.exec_module(mutants)


def faults(code: str, rule: str = "", name: str = "a.cpp") -> List[str]:
    """What the line of each fault is afterwards."""
    found = mutants.Source(name, code).mutants()
    return [mutant.after for mutant in found if rule in ("", mutant.rule)]


def body(statement: str) -> str:
    return "int f() {\n" + statement + "\n}\n"


class Places(unittest.TestCase):
    def test_none_in_what_has_no_behaviour(self) -> None:
        for code in [
            "// a < b && c == 1\n",
            "/* a < b\n 1 */\n",
            '#include "a1.h"\n',
            "#define A(x) \\\n    (x + 1)\n",
            "static_assert(sizeof(int) == 4, 'c');\n",
            "template <int Size = 3, class Kind> void f();\n",
            "using Text = std::array<char, 3>;\n",
            body("text.reserve(count + 1);"),
            "[[nodiscard]] int f();\n",
        ]:
            self.assertEqual(faults(code), [], code)

    def test_texts_are_changed_as_texts(self) -> None:
        self.assertEqual(faults('const char* a = "x < 1";\n'), ['const char* a = "xx < 1";'])
        self.assertEqual(faults('const char* a = R"(x < 1)";\n'), [])
        self.assertEqual(faults('const char* a = "x";\n', name=mutants.HELP_TEXTS[0]), [])

    def test_brackets_of_templates_and_references_are_no_operators(self) -> None:
        self.assertEqual(faults("std::vector<int> f(const int& a, int&& b, int* c);\n"), [])

    def test_the_line_is_that_of_the_fault(self) -> None:
        found = list(mutants.Source("a.cpp", "int a;\n\nint b = 7;\n").mutants())
        self.assertEqual([mutant.line for mutant in found], [3, 3])
        self.assertEqual(found[0].before, "int b = 7;")


class Rules(unittest.TestCase):
    def test_each_changes_one_thing(self) -> None:
        for rule, statement, after in [
            ("comparison", "a = b <= c;", ["a = b < c;"]),
            ("logic", "a = b && c;", ["a = b || c;"]),
            ("arithmetic", "a += b;", ["a -= b;"]),
            ("bits", "a = b << 8U;", ["a = b >> 8U;"]),
            ("constant", "a = 0x0FU;", ["a = 0x10U;", "a = 0xeU;"]),
            ("constant", "a = 0;", ["a = 1;"]),
            ("constant", "a = true;", ["a = false;"]),
            ("character", "a = 'b';", ["a = 'c';"]),
            ("character", "a = '\\n';", ["a = 'x';"]),
            ("name", "a = std::min(b, c);", ["a = std::max(b, c);"]),
            ("negation", "a = !b;", ["a = b;"]),
            ("condition", "if (auto b = c(); b.d()) {}", ["if (auto b = c(); false) {}", "if (auto b = c(); true) {}"]),
            ("condition", "if (auto b = c()) {}", []),
            ("condition", "while (b) {}", ["while (false) {}"]),
            ("statement", "std::int64_t a = b();", []),
            ("statement", "a::b(c);", [";"]),
            ("statement", "if (a) {\n    return b;\n}", [";"]),
            ("statement", "return b;", []),
            ("swap", "a = b - c;", ["a = c - b;"]),
            ("swap", "a = b ? c : d(e);", ["a = b ? d(e) : c;"]),
            ("swap", "a(b, c.d(), e);", ["a(c.d(), b, e);", "a(b, e, c.d());"]),
        ]:
            self.assertEqual(faults(body(statement), rule), after, statement)

    def test_parameters_of_a_declaration_stay_in_order(self) -> None:
        self.assertEqual(faults("void f(int a, int b);\nclass A {\n    A(B b, C c);\n};\n"), [])

    def test_the_same_seed_chooses_the_same(self) -> None:
        places = list(mutants.Source("a.cpp", body("a = b + 1 < c && !d(e, f);")).mutants())
        self.assertEqual(list(mutants.chosen(places, 3)), list(mutants.chosen(places, 3)))
        self.assertNotEqual(list(mutants.chosen(places, 3)), list(mutants.chosen(places, 4)))
        self.assertEqual(sorted(m.after for m in mutants.chosen(places, 3)), sorted(m.after for m in places))


if __name__ == "__main__":
    unittest.main()
