#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Dorvantel founders
# SPDX-License-Identifier: MIT
"""Breaks the code in one place after the other and looks whether the tests notice.

The places are in mutations.toml beside this file. All happens in a copy in build/mutation; the checkout stays as it is.
Each mutation is compiled and meets the tests that are to notice it; those that none of them notices meet all tests
before they are called survivors. A test that does not end counts as one that notices: ctest ends it after its time.

  scripts/mutate.py                     all of them
  scripts/mutate.py --only cleaning     those whose rule or file matches a regular expression
  scripts/mutate.py --list              what there is, without running anything
"""

import argparse
import dataclasses
import filecmp
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import tomllib

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "scripts" / "mutations.toml"
COPY = ROOT / "build" / "mutation" / "source"
BUILD = ROOT / "build" / "mutation" / "build"

# All tests but those that take minutes without optimisation.
ALL_TESTS = ("-E", "OnEveryKernel")


@dataclasses.dataclass(frozen=True)
class Mutation:
    rule: str  # what it breaks, in one word
    file: str
    was: str  # the text as it stands, once in the file
    now: str  # what takes its place
    tests: str  # which tests are to notice, as ctest -R takes it
    target: str  # the program that holds them

    def selection(self):
        # Other programs with such tests may still have an earlier mutation in them.
        return "-L", f"^{self.target}$", "-R", self.tests

    def line(self):
        text = (ROOT / self.file).read_text()
        return text.count("\n", 0, text.index(self.was)) + 1

    def __str__(self):
        return f"{self.rule:<14} {self.file}:{self.line()}"


def read_table():
    mutations = []
    untrue = ""
    for entry in tomllib.loads(TABLE.read_text())["mutation"]:
        entry.setdefault("target", "test_" + entry["file"].split("/")[0])
        mutation = Mutation(**entry)
        found = (ROOT / mutation.file).read_text().count(mutation.was)
        if found != 1 or mutation.was == mutation.now:
            untrue += f"{TABLE.name}: {mutation.file}: must be there once and change, but is there {found} times:\n{mutation.was}\n"
        mutations.append(mutation)
    if untrue:
        sys.exit(untrue)
    return mutations


def run(*command):
    """Whether it succeeded, and what it printed."""
    # Real CVs to test with are not everywhere, and what is noticed must not depend on them.
    environment = {name: value for name, value in os.environ.items() if name != "DORVANTEL_TEST_DATA"}
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace", env=environment)
    return done.returncode == 0, done.stdout


def must(outcome):
    """What is not broken has to build and to be green."""
    succeeded, output = outcome
    if not succeeded:
        sys.exit(f"{output}\nThis failed without any mutation")


def update_copy():
    """Copies what differs, so that little is compiled again. What an interrupted run left broken differs too."""
    listed = subprocess.run(
        ["git", "-C", ROOT, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, stdout=subprocess.PIPE, text=True,
    ).stdout.split("\0")
    files = {name for name in listed if name and (ROOT / name).is_file()}
    for name in files:
        target = COPY / name
        if not target.is_file() or not filecmp.cmp(ROOT / name, target, shallow=False):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, target)
    for path in [path for path in COPY.rglob("*") if path.is_file()]:
        if str(path.relative_to(COPY)) not in files:
            path.unlink()


def build(*targets):
    return run("cmake", "--build", BUILD, "-j2", "--target", *targets)


def test(*selection):
    return run("ctest", "--test-dir", BUILD, "-j2", "--stop-on-failure", "--no-tests=error", *selection)


def prepare(mutations):
    update_copy()
    must(run("cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0", "-DDORVANTEL_BUILD_BENCH=OFF"))
    must(build(*sorted({mutation.target for mutation in mutations})))
    for selection in sorted({mutation.selection() for mutation in mutations}):
        must(test(*selection))


def prepare_all_tests():
    must(build("all"))
    must(test(*ALL_TESTS))


def attempt(mutation, target, *selection):
    """What became of one mutation: "noticed" with the test that did, "survived", or "does not compile"."""
    path = COPY / mutation.file
    text = path.read_text()
    path.write_text(text.replace(mutation.was, mutation.now))
    try:
        succeeded, output = build(target)
        if not succeeded:
            return "does not compile", next((line for line in output.splitlines() if " error: " in line), output)
        succeeded, output = test(*selection)
        return ("survived", "") if succeeded else ("noticed", failed_test(output))
    finally:
        path.write_text(text)


def failed_test(output):
    """The first in ctest's summary. There is none when the program broke while it listed its tests."""
    failed = re.search(r"^\t\s*\d+ - (.+) \(.*\)$", output, re.MULTILINE)
    return failed.group(1) if failed else "the listing of the tests"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="PATTERN", default="", help="those whose rule or file matches")
    parser.add_argument("--list", action="store_true", help="what there is, without running anything")
    arguments = parser.parse_args()
    mutations = [m for m in read_table() if re.search(arguments.only, f"{m.rule} {m.file}")]
    if arguments.list:
        print(*mutations, sep="\n")
        return 0
    if not mutations:
        sys.exit("there is no such mutation")

    begin = time.monotonic()
    prepare(mutations)
    print(f"built, and green, after {time.monotonic() - begin:.0f} s", flush=True)
    outcomes = {}
    for mutation in mutations:
        started = time.monotonic()
        outcomes[mutation], details = attempt(mutation, mutation.target, *mutation.selection())
        print(f"{outcomes[mutation]:<9} {mutation}  {details}  {time.monotonic() - started:.0f} s", flush=True)
    survivors = [mutation for mutation in mutations if outcomes[mutation] == "survived"]
    if survivors:
        prepare_all_tests()
    for mutation in survivors:
        outcomes[mutation], details = attempt(mutation, "all", *ALL_TESTS)
        print(f"{outcomes[mutation]:<9} {mutation}  all tests: {details}", flush=True)

    counts = {outcome: list(outcomes.values()).count(outcome) for outcome in ("noticed", "survived", "does not compile")}
    print(", ".join(f"{count} {outcome}" for outcome, count in counts.items()), f"in {time.monotonic() - begin:.0f} s")
    return 0 if counts["noticed"] == len(mutations) else 1


if __name__ == "__main__":
    sys.exit(main())
