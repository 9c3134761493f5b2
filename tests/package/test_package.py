#!/usr/bin/python3
"""What is in the packages that scripts/package has built, and in their SBOMs.

usage: test_package.py FOLDER    with the packages
"""

import json
import os
import re
import subprocess
import sys
import tarfile
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

from sbomchecks import SbomChecks

TREE = Path(__file__).resolve().parents[2]
PACKAGES = Path(sys.argv.pop())
BUILT = PACKAGES.parent / "packaging/linux"
APPSTREAM_ID = xml.parse(BUILT / "ixovpn-client.metainfo.xml").findtext("id")

ICON_SIZES = [16, 22, 24, 32, 48, 64, 128, 256, 512]
CLIENT_FILES = {
    "bin/ixovpn-client",
    "share/applications/ixovpn-client.desktop",
    "share/icons/hicolor/scalable/apps/ixovpn-client.svg",
    "share/man/man1/ixovpn-client.1.gz",
    f"share/metainfo/{APPSTREAM_ID}.metainfo.xml",
    *(f"share/icons/hicolor/{size}x{size}/apps/ixovpn-client.png" for size in ICON_SIZES),
}
DEBIAN_FILES = {
    "share/doc/ixovpn-client/THIRD-PARTY-NOTICES.txt",
    "share/doc/ixovpn-client/changelog.Debian.gz",
    "share/doc/ixovpn-client/changelog.gz",
    "share/doc/ixovpn-client/copyright",
    "share/lintian/overrides/ixovpn-client",
}
PORTABLE_FILES = {"LICENSE", "NEEDS.txt", "README.txt", "THIRD-PARTY-NOTICES.txt"}


def only(pattern):
    found = list(PACKAGES.glob(pattern))
    if len(found) != 1:
        sys.exit(f"not one {pattern} in {PACKAGES}: run scripts/package")
    return found[0]


def files_below(folder):
    return {p.relative_to(folder).as_posix() for p in folder.rglob("*") if not p.is_dir()}


def output_of(*command, **options):
    return subprocess.run(
        command, check=True, text=True, stdout=subprocess.PIPE, **options
    ).stdout


class Unpacked(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.work = Path(holder.name)
        cls.deb = only("*.deb")
        cls.archive = only("*.tar.gz")
        subprocess.run(["dpkg-deb", "-x", cls.deb, cls.work / "deb"], check=True)
        with tarfile.open(cls.archive) as archive:
            archive.extractall(cls.work / "portable")
        (cls.portable,) = (cls.work / "portable").iterdir()


class DebianPackage(Unpacked):
    def test_lintian(self):
        ran = subprocess.run(
            ["lintian", "--allow-root", "--fail-on", "error,warning", "--info", "--display-info"]
            + [self.deb],
            text=True,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
        )
        self.assertEqual(ran.returncode, 0, ran.stdout)
        self.assertNotRegex(ran.stdout, "(unused|mismatched)-override")

    def test_files(self):
        expected = {f"usr/{name}" for name in CLIENT_FILES | DEBIAN_FILES}
        self.assertEqual(files_below(self.work / "deb"), expected)

    def test_needs_qt_and_no_scripts(self):
        depends = output_of("dpkg-deb", "-f", self.deb, "Depends")
        self.assertRegex(depends, r"\blibc6 \(>= ")
        for name in "core", "dbus", "gui", "widgets", "network", "x11extras":
            self.assertRegex(depends, rf"\blibqt5{name}5(a|t64)? \(>= ")
        control = output_of("dpkg-deb", "--ctrl-tarfile", self.deb, encoding="latin-1")
        for script in "preinst", "postinst", "prerm", "postrm":
            self.assertNotIn(script, control)

    def test_program_knows_nothing_of_the_builder(self):
        program = (self.work / "deb/usr/bin/ixovpn-client").read_bytes()
        for path in str(TREE), str(Path.home()), "/build/release":
            self.assertNotIn(path.encode(), program)


class PortableArchive(Unpacked):
    def test_files(self):
        self.assertEqual(files_below(self.portable), CLIENT_FILES | PORTABLE_FILES)

    def test_same_program(self):
        programs = self.portable / "bin/ixovpn-client", self.work / "deb/usr/bin/ixovpn-client"
        self.assertEqual(*(program.read_bytes() for program in programs))

    def test_says_what_it_needs(self):
        needs = (self.portable / "NEEDS.txt").read_text()
        dynamic = output_of("readelf", "-d", self.portable / "bin/ixovpn-client")
        libraries = re.findall(r"\(NEEDED\).*\[(.+)\]", dynamic)
        self.assertGreater(len(libraries), 5)
        for library in libraries:
            self.assertIn(library, needs)
        self.assertRegex(needs, r"GLIBC_2\.\d+")

    def test_runs_from_where_it_was_unpacked(self):
        out = self.work / "portable.out"
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.work)}
        subprocess.run(
            [self.portable / "bin/ixovpn-client", "--test-i18n", "de_DE", "--out", out],
            check=True,
            env=environment,
        )
        self.assertIn("Connected=Verbunden", out.read_text())

    def test_removal_as_told_leaves_nothing(self):
        """The instructions remove every file that they copy."""
        home = self.work / "home"
        home.mkdir()
        commands = re.findall(
            r"^    ((?:cp|mkdir|rm) .+)$", (self.portable / "README.txt").read_text(), re.M
        )
        self.assertGreater(len(commands), 6)
        copying = [c for c in commands if not c.startswith("rm")]
        removing = [c for c in commands if c.startswith("rm")]
        run = {"cwd": self.portable, "env": {"PATH": os.environ["PATH"], "HOME": str(home)}}
        output_of("sh", "-ec", "\n".join(copying), **run)
        self.assertEqual(files_below(home / ".local"), CLIENT_FILES)
        output_of("sh", "-ec", "\n".join(removing), **run)
        self.assertEqual(files_below(home), set())


class Sboms(Unpacked, SbomChecks):
    def test_debian_package(self):
        sbom = json.loads(only("*_amd64.spdx.json").read_text())
        self.check_form(sbom)
        depends = output_of("dpkg-deb", "-f", self.deb, "Depends")
        named = {clause.split()[0] for clause in depends.split(", ")}
        self.assertLessEqual(named, {package["name"] for package in sbom["packages"]})

    def test_portable_archive(self):
        sbom = json.loads(only("*-linux-*.spdx.json").read_text())
        self.check_form(sbom)

    def refusal(self, **changes):
        """What the script says of a folder with one program, described with these changes."""
        case = Path(tempfile.mkdtemp(dir=self.work))
        (case / "shipped").mkdir()
        (case / "shipped/own.exe").touch()
        own = {"name": "own", "version": "1.0", "files": ["*"], **changes}
        (case / "components.json").write_text(json.dumps({"main": "own", "components": [own]}))
        ran = subprocess.run(
            [TREE / "scripts/sbom", "--components", case / "components.json", "--version", "1.0"]
            + ["--folder", case / "shipped", "--out", case / "sbom.json"],
            env=dict(os.environ, SOURCE_DATE_EPOCH="1700000000"),
            capture_output=True,
            text=True,
        )
        self.assertEqual((ran.returncode, ran.stdout), (1, ""))
        return ran.stderr

    def test_value_that_nobody_set_is_refused(self):
        self.assertIn("asks for SOMETHING", self.refusal(version="@SOMETHING@"))

    def test_unexplained_file_is_refused(self):
        said = self.refusal(files=[])
        self.assertEqual(said, "sbom: no component has these files: own.exe\n")

    def test_pattern_without_files_is_refused(self):
        said = self.refusal(files=["*", "*.dll"])
        self.assertEqual(said, "sbom: the folder has no such files: *.dll\n")


if __name__ == "__main__":
    unittest.main(verbosity=2)
