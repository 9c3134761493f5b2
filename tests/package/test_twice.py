#!/usr/bin/python3
"""The packages come out the same when their sources are built once more: in another folder, by
another compiler process, under another home, time zone, language and file mode mask.

usage: test_twice.py FOLDER    with the packages that scripts/package has built of this tree
"""

import filecmp
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
PACKAGES = Path(sys.argv.pop())


class Twice(unittest.TestCase):
    def test_same_bytes(self):
        # As scripts/package takes it.
        time = os.environ.get("SOURCE_DATE_EPOCH") or subprocess.check_output(
            ["git", "log", "-1", "--format=%ct"], cwd=TREE, text=True
        )
        with tempfile.TemporaryDirectory(prefix="ixovpn twice.", dir="/var/tmp") as folder:
            home = Path(folder) / "home"
            copy = Path(folder) / "a/longer/way/to/the sources"
            home.mkdir()
            copy.mkdir(parents=True)
            files = subprocess.check_output(["git", "ls-files", "-z"], cwd=TREE)
            subprocess.run(
                ["cp", "--parents", "-t", copy, *files.decode().rstrip("\0").split("\0")],
                cwd=TREE,
                check=True,
            )
            environment = {
                "PATH": os.environ["PATH"],
                "HOME": str(home),
                "SOURCE_DATE_EPOCH": time.strip(),
                "TZ": "Asia/Tokyo",
                "LANG": "C",
                # What it keeps would be the first build's.
                "CCACHE_DISABLE": "1",
            }
            subprocess.run(
                ["sh", "-c", "umask 077 && exec scripts/package"],
                cwd=copy,
                env=environment,
                check=True,
            )
            again = copy / "build/release/package"
            names = {path.name for path in PACKAGES.iterdir()}
            self.assertEqual(names, {path.name for path in again.iterdir()})
            self.assertGreaterEqual(len(names), 5)
            _, different, unreadable = filecmp.cmpfiles(PACKAGES, again, names, shallow=False)
            self.assertEqual((different, unreadable), ([], []))


if __name__ == "__main__":
    unittest.main(verbosity=2)
