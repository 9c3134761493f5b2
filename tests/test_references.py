#!/usr/bin/python3
"""The tests that the documents name exist: `test`: `function`, `function`."""

import re
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[1]
NAMED = re.compile(r"`([a-z]+)`:\s((?:`[A-Za-z]+`(?:,\s)?)+)")


class References(unittest.TestCase):
    def test_attack_surface(self):
        named = NAMED.findall((TREE / "docs/attack-surface.md").read_text())
        self.assertGreater(len(named), 20)
        for test, functions in named:
            sources = [path.read_text() for path in (TREE / "tests").rglob(f"tst_{test}.cpp")]
            self.assertEqual(len(sources), 1, test)
            for function in re.findall(r"\w+", functions):
                found = re.search(rf"^void tst_\w+::{function}\(\)$", sources[0], re.MULTILINE)
                self.assertTrue(found, f"{test}: {function}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
