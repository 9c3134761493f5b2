#!/usr/bin/python3
"""What scripts/need lists, and says where it cannot install anything: every package by its name."""

import subprocess
import tempfile
import unittest
from pathlib import Path

NEED = Path(__file__).resolve().parents[2] / "scripts/need"
TOOLS = ["bash", "env", "grep", "sed", "sort"]


class Machine(unittest.TestCase):
    """A machine with ccache, one of the two packages of the groups, and these programs only."""

    def need(self, *options, **programs):
        with tempfile.TemporaryDirectory() as folder:
            for name in TOOLS:
                Path(folder, name).symlink_to(Path("/usr/bin", name))
            for name, script in programs.items():
                path = Path(folder, name.replace("_", "-"))
                path.write_text(f"#!/usr/bin/bash\n{script}\n")
                path.chmod(0o755)
            return subprocess.run(
                ["/usr/bin/bash", NEED, *options, "soak", "cache", "soak"],
                env={"PATH": folder},
                stdin=subprocess.DEVNULL,
                capture_output=True,
                text=True,
            )

    def debian(self, uid, apt="exit 100", **programs):
        usual = {"dpkg_query": "echo installed ccache", "apt_get": apt, "id": f"echo {uid}"}
        return self.need(**{**usual, **programs})

    def check(self, ran, *said):
        self.assertEqual(ran.returncode, 2)
        self.assertEqual(ran.stderr.count("\n"), 1, ran.stderr)
        for words in said:
            self.assertIn(words, ran.stderr)

    def test_another_distribution(self):
        ran = self.need()
        self.check(ran, "no Debian", "IXOVPN_NEED=none", ": ccache libfaketime\n")

    def test_list(self):
        ran = self.need("--list")
        self.assertEqual((ran.returncode, ran.stdout, ran.stderr), (0, "ccache\nlibfaketime\n", ""))

    def test_no_sudo(self):
        self.check(self.debian(1234), "no sudo", ": libfaketime\n")

    def test_sudo_that_asks(self):
        ran = self.debian(1234, sudo='[ "$1" != -n ] || exit 1')
        self.check(ran, "sudo does not help", ": libfaketime\n")

    def test_no_network(self):
        ran = self.debian(0, apt="echo 'E: nobody answers' >&2; exit 100")
        self.check(ran, "E: nobody answers", ": libfaketime\n")

    def test_lists_are_old(self):
        """A package that is not found is looked for again in updated lists."""
        apt = 'case "$*" in *update) >"$0.new";; *) [ -e "$0.new" ];; esac'
        ran = self.debian(0, apt=apt)
        self.assertEqual((ran.returncode, ran.stderr), (0, ""))
        self.assertEqual(ran.stdout, "Installing Debian packages: libfaketime\n")

    def test_all_there(self):
        ran = self.debian(1234, dpkg_query=r"printf 'installed %s\n' ccache libfaketime")
        self.assertEqual((ran.returncode, ran.stdout + ran.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main(verbosity=2)
