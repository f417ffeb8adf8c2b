"""Seeds one small mistake at a time into a copy of the product and checks whether a test notices: scripts/mutate."""

import argparse
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
from collections import Counter, defaultdict
from pathlib import Path

from mutations import mutations

PRODUCT = ["app", "hardware", "submit", "tracking", "platform"]
# The folders of tests, the fastest first. The folder nearest to the mistake is tried before all others.
TESTS = ["hardware", "submit", "tracking", "app", "mac", "window", "contract", "end_to_end"]
NEAREST = {"platform/qt/window": "window", "platform/qt/window/widgets": "window", "platform/mac": "mac", "platform": "contract"}
# It takes minutes.
LEFT_OUT = ["Parts/KilledProgram"]
BUILD_SECONDS, FOLDER_SECONDS, TEST_SECONDS = 900, 1800, 150


def copy_where_different(source, target):
    if not os.path.exists(target) or Path(source).read_bytes() != Path(target).read_bytes():
        shutil.copy(source, target)


def draw(root, count, seed):
    """Draws `count` mistakes, one from each folder in turn."""
    randomness = random.Random(seed)
    folders = defaultdict(list)
    for path in sorted(path for top in PRODUCT for path in (root / top).rglob("*") if path.suffix in (".cpp", ".h")):
        folders[path.parent] += mutations(path.relative_to(root).as_posix(), path.read_text(), randomness)
    for mistakes in folders.values():
        randomness.shuffle(mistakes)
    drawn = []
    while len(drawn) < count and any(folders.values()):
        drawn += [mistakes.pop() for mistakes in folders.values() if mistakes]
    return drawn[:count]


def run(command, seconds, **environment):
    """Runs a command and its children for at most that time. Returns whether it succeeded, and its output."""
    # A mistake may cause an endless log or list.
    process = subprocess.Popen(["prlimit", f"--fsize={2**30}", f"--as={2**34}", *command], env=os.environ | environment,
                               text=True, errors="replace", stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True)
    try:
        output, _ = process.communicate(timeout=seconds)
        return process.returncode == 0, output
    except subprocess.TimeoutExpired:
        return False, f"*** no end after {seconds} seconds"
    finally:
        # By session, since ninja and ctest put their children into other process groups.
        subprocess.run(["pkill", "-KILL", "--session", str(process.pid)], check=False)


def first_line_with(word, output):
    return next((line.strip() for line in output.splitlines() if word in line), output[-300:])


class Workshop:
    """A copy of the tree, with its own build and home folder."""

    def __init__(self, sources, folder):
        self.tree, self.build, self.home = folder / "tree", folder / "build", folder / "home"
        self.ready, self.left_out = folder / "ready", LEFT_OUT
        # The last run may have been stopped while a mistake was seeded.
        shutil.copytree(sources, self.tree, dirs_exist_ok=True, copy_function=copy_where_different)

    def prepare(self):
        """Builds everything, and excludes the tests that fail without a mistake."""
        if not self.ready.exists():
            for command in [["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
                             "-DCMAKE_CXX_FLAGS_DEBUG=-O0"], ["cmake", "--build", self.build, "--parallel", "2"]]:
                built, output = run(command, 10 * BUILD_SECONDS)
                if not built:
                    sys.exit("Without a mistake: " + output[-3000:])
            failures = [name for tests in TESTS for name in re.findall(r"\d+ - (\S+) \(", self._test(tests)[1])]
            print("Left out, since they fail without a mistake:", *failures, flush=True)
            self.ready.write_text(json.dumps([{tests: self._programs(tests) for tests in TESTS}, failures]))
        self.unchanged, failures = json.loads(self.ready.read_text())
        self.left_out = LEFT_OUT + [re.escape(name) for name in failures]

    def _programs(self, tests):
        return {path.name: hashlib.sha1(path.read_bytes()).hexdigest() for path in (self.build / "tests" / tests).rglob("*")
                if path.suffix == "" and path.is_file() and os.access(path, os.X_OK)}

    def _affected(self, tests):
        """The numbers of the tests whose program, or a program that they start, has changed."""
        changed = {name for name, digest in self._programs(tests).items() if self.unchanged[tests].get(name) != digest}
        started = {name for name in changed if not name.endswith("_test")}
        _, listed = self._test(tests, "--show-only=json-v1")  # Excluded tests have no number.
        programs = [os.path.basename(test["command"][0]) for test in json.loads(listed)["tests"]]
        return [str(number) for number, name in enumerate(programs, 1) if name in changed or any(
            name.startswith(program.removesuffix("child")) or not program.endswith("_child") for program in started)]

    def _test(self, tests, *options):
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        outcome = run(["ctest", "--test-dir", self.build / "tests" / tests, "--parallel", "4", "--timeout",
                       str(TEST_SECONDS), "--exclude-regex", "|".join(self.left_out), *options], FOLDER_SECONDS,
                      HOME=str(self.home), TMPDIR=str(self.home))
        shutil.rmtree(self.home, ignore_errors=True)
        return outcome

    def outcome_of(self, mistake):
        file = self.tree / mistake.path
        source = file.read_text()
        file.write_text(source[: mistake.offset] + mistake.new + source[mistake.offset + len(mistake.old) :])
        try:
            return self._outcome(os.path.dirname(mistake.path))
        finally:
            file.write_text(source)

    def _outcome(self, folder):
        nearest = NEAREST.get(folder, folder if folder in TESTS else "contract")
        outcome = "unchanged"
        for tests in [nearest] + [other for other in TESTS if other != nearest]:
            built, output = run(["cmake", "--build", self.build, "--parallel", "2", "--target", f"tests/{tests}/all"],
                                BUILD_SECONDS, CCACHE_READONLY="1")
            if not built:
                return "invalid", first_line_with("error", output)
            affected = self._affected(tests)
            if not affected:
                continue
            passed, output = self._test(tests, "--tests-information", ",".join(["0,0,0"] + affected),
                                        "--stop-on-failure", "--repeat", "until-pass:2")
            if not passed:
                return "noticed", first_line_with("***", output)
            outcome = "survived"
        return outcome, ""


def report(places, results):
    table = defaultdict(Counter)
    for where in places:
        for row in (os.path.dirname(where.split(":")[0]), "all"):
            table[row].update(["drawn", results.get(where, ["not tried"])[0]])
    columns = ["drawn", "invalid", "unchanged", "noticed", "survived", "not tried"]  # Unchanged: no program differs.
    lines = ["| folder | " + " | ".join(columns) + " |", "| --- |" + " ---: |" * len(columns)]
    lines += [" | ".join(["| " + row] + [str(table[row][column]) for column in columns]) + " |"
              for row in sorted(table, key=lambda row: (row == "all", row))]
    return "\n".join(lines + sorted(f"{outcome}: {where} {why}" for where, (outcome, why) in results.items())) + "\n"


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("root", type=Path)
    options.add_argument("--mistakes", type=int, default=300)
    options.add_argument("--seed", type=int, default=1)
    asked = options.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    folder = asked.root / "build/mutate"
    sources, kept = folder / "sources", folder / "results"
    if not (folder / "build").exists():  # A continued run uses the same sources.
        shutil.copytree(asked.root, sources, dirs_exist_ok=True, ignore=lambda at, names: {"build", ".git"} & set(names))
    drawn = {mistake.where: mistake for mistake in draw(sources, asked.mistakes, asked.seed)}
    results = dict(json.loads(line) for line in kept.read_text().splitlines()) if kept.exists() else {}
    workshop = Workshop(sources, folder)
    try:
        workshop.prepare()
        for where, mistake in drawn.items():
            if where not in results:
                results[where] = workshop.outcome_of(mistake)
                with kept.open("a") as file:
                    file.write(json.dumps([where, results[where]]) + "\n")
                print(results[where][0], where, results[where][1], flush=True)
    finally:
        (folder / "report").write_text(report(list(drawn), results))
    print((folder / "report").read_text())
    for copy in [sources, workshop.tree, workshop.build]:
        shutil.rmtree(copy)
    for file in [kept, workshop.ready]:
        file.unlink()


if __name__ == "__main__":
    main()
