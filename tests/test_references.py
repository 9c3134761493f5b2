#!/usr/bin/python3
"""What the documents name exists: tests (`test`: `function`, `function`), and where links lead."""

import re
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[1]
LINK = re.compile(r"\]\((?!https?:)([^)#\s]*)(?:#([^)\s]+))?\)")
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)
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

    def test_links(self):
        """Within the tree, headings included."""
        for page in [*TREE.glob("*.md"), *(TREE / "docs").rglob("*.md")]:
            for path, heading in LINK.findall(page.read_text()):
                target = page.parent / path if path else page
                with self.subTest(page=page.name, link=f"{path}#{heading}"):
                    self.assertTrue(target.exists())
                    if heading:
                        headings = HEADING.findall(target.read_text())
                        anchors = [re.sub(r"[^\w -]", "", h.lower()).replace(" ", "-") for h in headings]
                        self.assertIn(heading, anchors)


if __name__ == "__main__":
    unittest.main(verbosity=2)
