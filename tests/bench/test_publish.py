#!/usr/bin/python3
"""Figures are published whole, and under the commit that they were measured of."""

import json
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
MEASUREMENTS = (
    "start",
    "memory",
    "idle for 20 s",
    "flood of 200000 lines",
    "delay from a line to its change on the screen",
    "10 s of the switch",
    "paint",
    "size",
)
OF_ANOTHER_FORM = {
    "paint": "round,what,microseconds\n1,window,7\n",
    "size": "program,bytes\nclient,9\n",
}
FORM = 'round,program,quantity,value\n1,"client, on",ms,4\n2,"client, on",ms,6\n'
AIMS = (
    "program,quantity,what,figure,aim,verdict\n"
    '"client, on",ms,"ratio to floor, on",2.504,2,MISSED\n'
)


def ran(*command):
    return subprocess.run(command, capture_output=True, text=True)


class Publishing(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.tree = Path(scratch.name)
        self.docs = self.tree / "docs"
        self.figures = self.tree / "build/bench"
        self.page = self.docs / "performance.md"
        for folder in (self.docs, self.figures):
            folder.mkdir(parents=True)
        (self.tree / ".gitignore").write_text("/build/\n")
        self.page.write_text("as it was\n")
        self.git("init", "--quiet")
        self.commit()

    def git(self, *arguments):
        who = ("-c", "user.name=Tester", "-c", "user.email=tester@example.com")
        done = ran("git", "-C", self.tree, *who, *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout.strip()

    def commit(self):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message", "Change")

    def head(self):
        return self.git("log", "-1", "--format=%h")

    def record(self, *arguments):
        done = ran(TREE / "tools/bench/record", *arguments)
        self.assertEqual(done.returncode, 0, done.stderr)

    def begin(self):
        self.record("begin", self.tree, self.figures)

    def recorded_commit(self):
        self.begin()
        return json.loads((self.figures / "run.json").read_text())["Commit"]

    def measure(self, *left_out):
        """A run during which the tree goes on."""
        self.begin()
        self.commit()
        for name in MEASUREMENTS:
            if name not in left_out:
                (self.figures / f"{name}.csv").write_text(OF_ANOTHER_FORM.get(name, FORM))
        (self.figures / "memory aims.csv").write_text(AIMS)
        self.record("end", self.figures)

    def publish(self):
        return ran(TREE / "tools/bench/publish", self.figures, self.docs)

    def assertRefused(self, why):
        done = self.publish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn(why, done.stderr)
        self.assertEqual(self.page.read_text(), "as it was\n")

    def test_whole_run(self):
        measured = self.head()
        self.measure()
        self.assertNotEqual(self.head(), measured)
        done = self.publish()
        self.assertEqual(done.returncode, 0, done.stderr)
        page = self.page.read_text()
        self.assertIn(f"| Commit | {measured} |", page)
        self.assertRegex(page, re.compile(r"^\| Load before the run \| \d+\.\d ", re.M))
        self.assertNotIn("ended", page)
        self.assertEqual(page.count("\n## "), len(MEASUREMENTS))
        row = "| client, on | ms | 5 | 4 | 6 | 2 |"
        self.assertEqual(page.count(f"{row}  |"), len(MEASUREMENTS) - len(OF_ANOTHER_FORM) - 1)
        self.assertIn(f"{row} ratio to floor, on 2.50, at most 2: MISSED |", page)
        self.assertEqual((self.docs / "performance/start.csv").read_text(), FORM)

    def test_part_of_a_run(self):
        self.measure("memory", "size")
        self.assertRefused("nothing of: memory; size")

    def test_run_that_broke_off(self):
        self.measure()
        self.begin()
        self.assertRefused("did not come to its end")

    def test_tree_that_is_no_commit(self):
        self.assertEqual(self.recorded_commit(), self.head())
        self.page.write_text("published\n")
        self.assertEqual(self.recorded_commit(), self.head())
        (self.tree / "main.cpp").touch()
        self.assertEqual(self.recorded_commit(), f"{self.head()} with changes that are not in it")

    def test_no_commits_at_all(self):
        (self.tree / ".git").rename(self.tree / "build/git")
        self.assertEqual(self.recorded_commit(), "unknown")

    def bench(self, *arguments):
        """The script itself, in a tree whose programs build at once and measure nothing."""
        scripts = self.tree / "scripts"
        scripts.mkdir()
        (self.tree / "tools").symlink_to(TREE / "tools")
        shutil.copy(TREE / "scripts/bench", scripts)
        for name in ("need", "build", "isolated"):
            (scripts / name).write_text('#!/bin/sh\n[ $# -lt 4 ] || touch "build/bench/$4.csv"\n')
            (scripts / name).chmod(0o755)
        return ran(scripts / "bench", *arguments)

    def test_a_run_leaves_nothing_of_earlier_ones(self):
        self.measure()
        done = self.bench("start")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual({file.name for file in self.figures.iterdir()}, {"run.json", "start.csv"})
        self.assertRefused("nothing of: memory; idle")

    def test_unbuilt_programs_are_of_no_commit(self):
        self.measure()
        done = self.bench("--no-build", "start")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRefused("which commit")

    def test_single_measurements_do_not_begin(self):
        self.assertNotBegun("--publish", "start")

    def test_unbuilt_programs_do_not_begin(self):
        self.assertNotBegun("--publish", "--no-build")

    def assertNotBegun(self, *arguments):
        done = self.bench(*arguments)
        self.assertEqual(done.returncode, 2)
        self.assertIn("--publish goes with neither", done.stderr)


if __name__ == "__main__":
    unittest.main()
