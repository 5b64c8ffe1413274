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
            ("statement", "while (a) {\n    ++b;\n}\nreturn c;", [";"]),
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


def switched(code: str, *after: str) -> str:
    """The code with the faults that make these lines, without marks and blanks; "" where one can have no switch."""
    source = mutants.Source("a.cpp", code)
    chosen = [mutant for mutant in source.mutants() if mutant.after in after]
    file = mutants.Switched(source)
    if not all([file.add(number, mutant) for number, mutant in enumerate(chosen, 1)]):
        return ""
    lines = [line for line in file.text().splitlines() if not line.startswith("#")]
    return "".join("".join(lines).replace("static ", "static").split())


class Switches(unittest.TestCase):
    def test_stand_before_the_innermost_block(self) -> None:
        self.assertEqual(
            switched("int f() {\nif (a) {\nb += 1;\n}\n}\n", "b -= 1;"),
            "intf(){if(a){if(orvMutant(1)){b-=1;}else{b+=1;}}}",
        )

    def test_of_faults_in_one_block_and_in_blocks_within_it_are_all_there(self) -> None:
        self.assertEqual(
            switched("void f() {\na += 1;\nif (b) {\nc += 1;\n}\n}\n", "a -= 1;", "a += 2;", "c -= 1;"),
            "voidf(){if(orvMutant(1)){a-=1;if(b){c+=1;}}elseif(orvMutant(2)){a+=2;if(b){c+=1;}}"
            "else{a+=1;if(b){if(orvMutant(3)){c-=1;}else{c+=1;}}}}",
        )

    def test_stand_around_a_switch_of_the_language(self) -> None:
        self.assertEqual(
            switched("void f() {\nswitch (a) {\ncase 1:\nb += 1;\n}\n}\n", "case 1: b -= 1;", "b -= 1;"),
            "voidf(){if(orvMutant(1)){switch(a){case1:b-=1;}}else{switch(a){case1:b+=1;}}}",
        )

    def test_outside_of_functions_stand_in_expressions(self) -> None:
        self.assertEqual(
            switched("constexpr int a = 5;\n", "constexpr int a = 6;"), "staticinta=(orvMutant(1)?(6):(5));"
        )
        self.assertEqual(
            switched("A::A(int b) : _a(b), _c{b, 5} {}\n", "A::A(int b) : _a(b), _c{b, 6} {}"),
            "A::A(intb):_a(b),_c{b,(orvMutant(1)?(6):(5))}{}",
        )
        self.assertNotEqual(switched("struct A {\nint b[2];\nint c = 3;\n};\n", "int c = 4;"), "")

    def test_are_not_for_what_the_compiler_evaluates(self) -> None:
        self.assertEqual(switched("constexpr int f(int a) {\nreturn a + 1;\n}\n", "return a - 1;"), "")


class Programs(unittest.TestCase):
    def test_are_known_before_they_are_built(self) -> None:
        self.assertTrue(mutants.is_program({"name": "OpenTest"}))
        self.assertTrue(mutants.is_program({"name": "OpenTest", "command": ["/b/OpenTest", "--gtest_brief=1"]}))
        self.assertFalse(mutants.is_program({"name": "Docs", "command": ["python3", "check.py"]}))


if __name__ == "__main__":
    unittest.main()
