#!/usr/bin/python3
"""What the package tells desktops, software centres and readers is well formed and agrees.

usage: test_files.py FOLDER    where packaging/linux is built
"""

import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from configparser import ConfigParser
from pathlib import Path

from debian.copyright import Copyright

TREE = Path(__file__).resolve().parents[2]
SOURCES = TREE / "packaging/linux"
BUILT = Path(sys.argv.pop())

# The catalogue's name for it is not the one that desktops know it by.
DESKTOP_NAMES = {"br": "pt_BR"}
LANGUAGES = {
    DESKTOP_NAMES.get(tag, tag)
    for tag in (path.stem.split("_")[1] for path in (TREE / "resources/i18n").glob("ixovpn_*.ts"))
}
XML_LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"

# The developer is named in the old way and in the new, so each validator misses or minds the other.
TWO_DEVELOPERS = {"unknown-tag developer", "developer-name-tag-deprecated"}
# Our own domain is not published, and no real one ends like this.
KNOWN_REMARKS = {"cid-maybe-not-rdns example.ixovpn.client", *TWO_DEVELOPERS}


def said_by(*command):
    """All that a command says, and its exit code."""
    ran = subprocess.run(command, capture_output=True, text=True)
    return ran.stdout + ran.stderr, ran.returncode


def desktop_entry():
    parser = ConfigParser(interpolation=None, delimiters="=")
    parser.optionxform = str
    parser.read(SOURCES / "ixovpn-client.desktop")
    return parser["Desktop Entry"]


def translations(entry, key):
    """By language; English is the one without a name."""
    found = {}
    for name, value in entry.items():
        match = re.fullmatch(rf"{key}(?:\[(.+)\])?", name)
        if match:
            found[match[1] or "en"] = value
    return found


def picture_size(path):
    return struct.unpack(">II", path.read_bytes()[16:24])


class DesktopEntry(unittest.TestCase):
    def test_valid(self):
        said, code = said_by("desktop-file-validate", SOURCES / "ixovpn-client.desktop")
        self.assertEqual((said, code), ("", 0))

    def test_every_language(self):
        for key in "GenericName", "Comment":
            texts = translations(desktop_entry(), key)
            self.assertEqual(set(texts), LANGUAGES, key)
            self.assertTrue(all(texts.values()), key)

    def test_icons_of_every_size(self):
        self.assertEqual(desktop_entry()["Icon"], "ixovpn-client")
        icons = list((SOURCES / "icons").glob("*.png"))
        self.assertEqual(len(icons), 9)
        for icon in icons:
            self.assertEqual(picture_size(icon), (int(icon.stem), int(icon.stem)))


class Metainfo(unittest.TestCase):
    path = BUILT / "ixovpn-client.metainfo.xml"

    def remarks(self, path):
        said, code = said_by(
            *["appstreamcli", "validate", "--pedantic", "--no-net", "--no-color", path]
        )
        self.assertEqual(code, 0, said)
        return set(re.findall(r"^[EWIP]: \S+ (.+)", said, re.MULTILINE))

    def test_valid(self):
        self.assertLessEqual(self.remarks(self.path), KNOWN_REMARKS)

    def test_settings_of_a_publisher(self):
        link, name = "https://publisher.example/help?of=client&in=~a%20b", "org.publisher.client"
        with tempfile.TemporaryDirectory() as build:
            said, code = said_by(
                *["cmake", "-G", "Ninja", "-S", TREE, "-B", build, "-DBUILD_TESTING=OFF"],
                *[f"-DIXOVPN_SUPPORT_LINK={link}", f"-DIXOVPN_APPSTREAM_ID={name}"],
            )
            self.assertEqual(code, 0, said)
            built = Path(build) / "packaging/linux"
            path = built / self.path.name
            self.assertLessEqual(self.remarks(path), TWO_DEVELOPERS)
            root = xml.parse(path).getroot()
            told = (built / "README.txt").read_text()
        for kind in "help", "homepage":
            self.assertEqual(root.findtext(f"url[@type='{kind}']"), link)
        self.assertEqual(root.findtext("id"), name)
        self.assertEqual(root.find("developer").get("id"), "org.publisher")
        self.assertIn(f"/{name}.metainfo.xml\n", told)

    def test_valid_with_pictures(self):
        pictures = (SOURCES / "screenshots.xml.in").read_text()
        pictures = pictures.replace("@IXOVPN_SCREENSHOT_BASE@", "https://ixovpn.example/pictures")
        without = re.sub(r" *<screenshots>.*</screenshots>\n", "", self.path.read_text(), flags=re.S)
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / self.path.name
            path.write_text(without.replace("  <content_rating", pictures + "  <content_rating"))
            self.assertLessEqual(self.remarks(path), KNOWN_REMARKS)
            images = xml.parse(path).findall("screenshots/screenshot/image")
        self.assertEqual(len(images), len(list((SOURCES / "screenshots").glob("*.png"))))
        for image in images:
            path = SOURCES / "screenshots" / Path(image.text).name
            said = int(image.get("width")), int(image.get("height"))
            self.assertEqual(picture_size(path), said, path.name)

    def test_agrees_with_desktop_entry(self):
        root = xml.parse(self.path).getroot()
        texts = {e.get(XML_LANGUAGE, "en"): e.text for e in root.findall("summary")}
        self.assertEqual(texts, translations(desktop_entry(), "Comment"))
        self.assertEqual(root.findtext("name"), desktop_entry()["Name"])
        self.assertEqual(root.findtext("launchable"), "ixovpn-client.desktop")
        self.assertEqual(root.findtext("provides/binary"), desktop_entry()["Exec"])
        self.assertEqual(root.findtext("project_license"), "LicenseRef-proprietary")


class ManualPage(unittest.TestCase):
    page = BUILT / "ixovpn-client.1"

    def test_form(self):
        self.assertEqual(said_by("mandoc", "-T", "lint", "-W", "all", self.page), ("", 0))

    def test_knows_every_option(self):
        options = set(re.findall(r'"(--[a-z0-9-]+)"', (TREE / "app/SelfTest.cpp").read_text()))
        self.assertTrue(options)
        text = subprocess.run(
            ["man", "-l", self.page], capture_output=True, text=True, check=True
        ).stdout
        for option in options:
            self.assertIn(option, text)


class CopyrightFile(unittest.TestCase):
    def test_form(self):
        with open(BUILT / "copyright") as file:
            paper = Copyright(file, strict=True)
        self.assertNotIn("@", "".join(p.copyright for p in paper.all_files_paragraphs()))
        explained = {p.license.synopsis for p in paper.all_license_paragraphs() if p.license.text}
        for paragraph in paper.all_files_paragraphs():
            self.assertIn(paragraph.license.synopsis, explained)
            for pattern in paragraph.files:
                self.assertTrue(list(TREE.glob(pattern)), pattern)


if __name__ == "__main__":
    unittest.main(verbosity=2)
