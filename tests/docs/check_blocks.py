#!/usr/bin/env python3
"""Every code block of a document is what it says: a part of a program that is built, the output of a command, commands
that succeed, a project that builds. The comment on the line before the block says which:

    <!-- source: examples/NAME.cpp -->         the block is the whole file
    <!-- source: examples/NAME.cpp#region -->  the block is what stands between // [region] and // [/region] in it
    <!-- output: COMMAND -->                   the block is what COMMAND writes; a line ... stands for any lines
    <!-- run: STATUS -->                       every command of the block ends with this status
    <!-- run in TMP: STATUS -->                the same in an empty folder with main.cpp, examples/quick_start.cpp
    <!-- not run: REASON -->                   commands that a test cannot run
    <!-- cmake: project -->                    lines of a host's CMakeLists.txt for its target `host`
    <!-- python -->                            code of the Python package, whose tests run it (python/tests)
    <!-- python output -->                     what the code before it writes, which they compare
    <!-- sql -->                               a question to a catalogue, whose test runs it (tests/cli/queries_test.py)
    <!-- spark sql -->                         a question to tables of Spark, whose test runs it (python/tests)
    <!-- text -->                              no code at all

Commands run in the root of the project by sh, with the programs of the build first on PATH, an empty folder TMP, and
the installed library where CMake, pkg-config and the loader look for it. A program that a document quotes must be run by
one of the documents."""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap
from pathlib import Path
from typing import List, Optional

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "docs" / "site"))
from project_markdown import Block, Document, documents  # noqa: E402

EXAMPLE = "examples/quick_start.cpp"
RECORDING = "examples/recordings/feeder_earth_fault.cfg"
MARKER = re.compile(r"^\s*// \[/?\w+\]\s*$")


class Failed(Exception):
    pass


def difference(expected: str, actual: str) -> str:
    import difflib

    lines = difflib.unified_diff(expected.splitlines(), actual.splitlines(), "document", "actual", lineterm="")
    return "\n".join(lines)


def region(text: str, name: str) -> str:
    lines = text.splitlines()
    begins = [number for number, line in enumerate(lines) if line.strip() == f"// [{name}]"]
    ends = [number for number, line in enumerate(lines) if line.strip() == f"// [/{name}]"]
    if len(begins) != 1 or len(ends) != 1 or ends[0] < begins[0]:
        raise Failed(f"the file has no region {name}, or more than one")
    inside = [line for line in lines[begins[0] + 1 : ends[0]] if not MARKER.match(line)]
    return textwrap.dedent("\n".join(inside) + "\n")


def matches(expected: str, actual: str) -> bool:
    parts = ["(?:.*\n)*?" if line.strip() == "..." else re.escape(line) + "\n" for line in expected.splitlines()]
    return re.fullmatch("".join(parts), actual) is not None


def commands(text: str) -> List[str]:
    """The commands of a shell block: one a line, a backslash joins lines, comments are none."""
    joined = text.replace("\\\n", " ")
    return [line for line in joined.splitlines() if line.strip() and not line.lstrip().startswith("#")]


class Checker:
    def __init__(self, options: argparse.Namespace, scratch: Path):
        self.root: Path = options.root
        self.build: Path = options.build
        self.compiler: str = options.compiler
        self.generator: str = options.generator
        self.programs: List[Path] = options.programs
        self.scratch = scratch
        self.stage: Optional[Path] = None

    def check(self, block: Block) -> None:
        if not block.fenced:
            raise Failed("a block by indentation: fence it, so that it can say what it is")
        if block.directive is None:
            raise Failed("no comment before the block says what it is")
        word, _, rest = (part.strip() for part in block.directive.partition(":"))
        checks = {
            "source": self.check_source,
            "output": self.check_output,
            "run": self.check_run,
            "run in TMP": self.check_run_in_folder,
            "not run": self.check_reason,
            "cmake": self.check_project,
            "python": self.check_python,
            "python output": self.check_text,
            "spark sql": self.check_sql,
            "sql": self.check_sql,
            "text": self.check_text,
        }
        if word not in checks:
            raise Failed(f"unknown comment: {block.directive}")
        checks[word](block, rest)

    def check_source(self, block: Block, place: str) -> None:
        path, _, name = place.partition("#")
        source = self.root / path
        if not source.is_file():
            raise Failed(f"no file {path}")
        text = source.read_text(encoding="utf-8")
        expected = region(text, name) if name else text
        if block.text != expected:
            raise Failed(f"differs from {place}:\n{difference(block.text, expected)}")
        if source.suffix == ".cpp":
            self.check_program(source.stem)

    def check_program(self, name: str) -> None:
        if not any((folder / name).is_file() for folder in self.programs):
            raise Failed(f"no program {name} in the build")
        for path in documents(self.root):
            for block in Document(path).blocks:
                word, _, rest = (block.directive or "").partition(":")
                command = block.text if word.startswith("run") else rest if word == "output" else ""
                if re.search(rf"\b{name}\b", command):
                    return
        raise Failed(f"no document runs the program {name}")

    def check_output(self, block: Block, command: str) -> None:
        result = self.shell(command, self.root, self.empty_folder())
        actual = result.stdout if result.stdout.endswith("\n") else result.stdout + "\n"
        if not matches(block.text, actual):
            raise Failed(f"{command}\n{difference(block.text, actual)}\n{result.stderr}")

    def check_run(self, block: Block, status: str) -> None:
        self.run_commands(block, status, self.root)

    def check_run_in_folder(self, block: Block, status: str) -> None:
        self.run_commands(block, status, self.host_folder())

    def run_commands(self, block: Block, status: str, folder: Path) -> None:
        if not status.isdigit() or not commands(block.text):
            raise Failed("a status and a command are needed")
        temporary = self.empty_folder()
        for command in commands(block.text):
            result = self.shell(command, folder, temporary)
            if result.returncode != int(status):
                raise Failed(f"status {result.returncode}: {command}\n{result.stdout}{result.stderr}")

    def check_reason(self, block: Block, reason: str) -> None:
        if not reason:
            raise Failed("a reason is needed")
        for command in commands(block.text):
            word = command.split()[0]
            if "/" in word and not word.startswith("build/") and not os.access(self.root / word, os.X_OK):
                raise Failed(f"no program {word}")

    def check_python(self, block: Block, rest: str) -> None:
        if rest or block.language != "python":
            raise Failed("a block of Python is ```python")
        try:
            compile(block.text, "block", "exec")
        except SyntaxError as problem:
            raise Failed(f"no Python: {problem}") from problem

    def check_sql(self, block: Block, rest: str) -> None:
        if rest or block.language != "sql":
            raise Failed("a question to a catalogue is ```sql")

    def check_text(self, block: Block, rest: str) -> None:
        if rest or block.language != "text":
            raise Failed("a block of no code is ```text")

    def check_project(self, block: Block, rest: str) -> None:
        if rest != "project":
            raise Failed("only `cmake: project` is known")
        folder = self.host_folder()
        lines = ["cmake_minimum_required(VERSION 3.25)", "project(Host LANGUAGES CXX)"]
        if "add_executable" not in block.text:
            lines.append("add_executable(host main.cpp)")
        (folder / "CMakeLists.txt").write_text("\n".join(lines) + "\n" + block.text, encoding="utf-8")
        build = folder / "build"
        # As one source where the project builds the library too: a third of the time.
        chosen = ["-G", self.generator, f"-DCMAKE_CXX_COMPILER={self.compiler}", "-DCMAKE_UNITY_BUILD=ON"]
        self.succeed(folder, "cmake", "-S", folder, "-B", build, *chosen)
        self.succeed(folder, "cmake", "--build", build, "--parallel", "2", "--target", "host")
        self.succeed(folder, build / "host", self.root / RECORDING)

    def host_folder(self) -> Path:
        """An empty folder with a host program, and the project's sources beside it."""
        folder = self.empty_folder()
        shutil.copyfile(self.root / EXAMPLE, folder / "main.cpp")
        (folder / "OrvComtradeLib").symlink_to(self.root)
        (folder / "examples").symlink_to(self.root / "examples")
        return folder

    def empty_folder(self) -> Path:
        return Path(tempfile.mkdtemp(dir=self.scratch))

    def environment(self, temporary: Path) -> dict:
        if self.stage is None:
            self.stage = self.scratch / "stage"
            install = ["cmake", "--install", str(self.build), "--prefix", str(self.stage)]
            subprocess.run(install, check=True, stdout=subprocess.DEVNULL)
        libraries = [path.parent for path in self.stage.rglob("libOrvComtradeLib.so")]
        return {
            **os.environ,
            "LC_ALL": "C.UTF-8",
            "PATH": os.pathsep.join([*map(str, self.programs), os.environ["PATH"]]),
            "TMP": str(temporary),
            "CXX": self.compiler,
            "CMAKE_PREFIX_PATH": str(self.stage),
            "PKG_CONFIG_PATH": os.pathsep.join(str(folder / "pkgconfig") for folder in libraries),
            "LD_LIBRARY_PATH": os.pathsep.join(map(str, libraries)),
        }

    def shell(self, command: str, folder: Path, temporary: Path) -> subprocess.CompletedProcess:
        return self.process(["sh", "-c", command], folder, temporary)

    def process(self, command: List[str], folder: Path, temporary: Path) -> subprocess.CompletedProcess:
        environment = self.environment(temporary)
        return subprocess.run(command, cwd=folder, env=environment, capture_output=True, encoding="utf-8", timeout=300)

    def succeed(self, folder: Path, *words: object) -> None:
        command = [str(word) for word in words]
        result = self.process(command, folder, folder)
        if result.returncode != 0:
            raise Failed(f"status {result.returncode}: {' '.join(command)}\n{result.stdout}{result.stderr}")


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", type=Path, required=True)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--generator", required=True)
    parser.add_argument("--programs", type=Path, nargs="+", required=True, help="folders of the programs of the build")
    parser.add_argument("--document", type=Path, required=True)
    options = parser.parse_args()
    failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        checker = Checker(options, Path(scratch))
        blocks = Document(options.document).blocks
        for block in blocks:
            try:
                checker.check(block)
            except Failed as problem:
                failures += 1
                print(f"{options.document}:{block.line}: {problem}\n")
    print(f"{len(blocks)} blocks, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
