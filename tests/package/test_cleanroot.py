#!/usr/bin/python3
"""A minimal Debian on which the package is installed, updated, used, removed and purged.

Everything happens in an overlay that goes away: nothing is changed but the cache of the root. The
network is used for that only.

usage: test_cleanroot.py FOLDER    with the packages that scripts/package has built
"""

import hashlib
import os
import re
import stat
import subprocess
import sys
import tempfile
import time
import unittest
from configparser import ConfigParser
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
INSIDE = "IXOVPN_CLEANROOT_INSIDE"
OLD_VERSION = "1.3.5"
USER = "ixo"

# The timeout, in seconds, of every wait.
PATIENCE = 60.0
LOOK_AGAIN = 0.1

# Messages of the package tools themselves, not of a package.
JOURNALS = re.compile(
    r"var/lib/dpkg/(status|status-old|lock|lock-frontend|triggers/Lock|available)"
    r"|var/(log|cache)/.*|var/lib/apt/.*|(proc|dev|sys|tmp|packages)/.*|etc/ld\.so\.cache"
)


def fail(message):
    sys.exit(f"test_cleanroot: CANNOT RUN HERE: {message}")


def only(folder, pattern):
    found = list(folder.glob(pattern))
    if len(found) != 1:
        sys.exit(f"not one {pattern} in {folder}: run scripts/package")
    return found[0]


def prepare(packages):
    """Builds what is missing and enters the sandbox, which has no network and keeps nothing."""
    new = only(packages, "ixovpn-client_*.deb")
    root = subprocess.run(
        [TREE / "tests/package/cleanroot", new], stdout=subprocess.PIPE, text=True
    )
    if root.returncode != 0:
        sys.exit(root.returncode)
    # In the tree, where it can be seen from inside.
    with tempfile.TemporaryDirectory(dir=TREE / "build") as folder:
        subprocess.run(
            [TREE / "scripts/package", "--version", OLD_VERSION, folder],
            check=True,
            stdout=subprocess.DEVNULL,
        )
        environment = dict(os.environ, **{INSIDE: root.stdout.strip()})
        command = [TREE / "scripts/isolated", __file__, new, only(Path(folder), "*.deb")]
        sys.exit(subprocess.run(command, env=environment).returncode)


def describe(path):
    info = path.lstat()
    kind = stat.filemode(info.st_mode)
    what = ""
    if path.is_symlink():
        what = os.readlink(path)
    elif path.is_file():
        what = hashlib.sha256(path.read_bytes()).hexdigest()
    return kind, info.st_uid, info.st_gid, what


def until(what, condition):
    """Waits for the condition and returns what it holds."""
    end = time.monotonic() + PATIENCE
    while not (result := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain until {what}")
        time.sleep(LOOK_AGAIN)
    return result


class Root:
    """The minimal Debian."""

    def __init__(self, base, packages):
        work = Path(tempfile.mkdtemp(dir="/tmp"))
        for name in "upper", "work", "root":
            (work / name).mkdir()
        self.path = work / "root"
        layers = f"lowerdir={base},upperdir={work}/upper,workdir={work}/work"
        self.mount("-t", "overlay", "-o", layers, "overlay", self.path)
        for name in "proc", "dev", "tmp":
            self.mount("--rbind", f"/{name}", self.path / name)
        (self.path / "packages").mkdir()
        for package in packages:
            (self.path / "packages" / package.name).write_bytes(package.read_bytes())
        self.run("useradd", "--create-home", "--shell", "/bin/sh", USER)

    @staticmethod
    def mount(*arguments):
        if subprocess.run(["mount", *arguments]).returncode != 0:
            fail("file systems cannot be mounted")

    def command(self, *command, user=None, **environment):
        """Runs with no more than a log-in gives."""
        variables = {
            "PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
            "HOME": f"/home/{user}" if user else "/root",
            "LANG": "C.UTF-8",
            "DEBIAN_FRONTEND": "noninteractive",
            **environment,
        }
        settings = [f"{name}={value}" for name, value in variables.items()]
        who = [f"--userspec={user}"] if user else []
        return ["chroot", *who, self.path, "env", "-i", *settings, *command]

    def run(self, *command, **options):
        ran = subprocess.run(
            self.command(*command, **options),
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        if ran.returncode != 0:
            raise AssertionError(f"{command} ended with {ran.returncode}:\n{ran.stdout}")
        return ran.stdout

    def apt(self, *arguments):
        return self.run(
            *["apt-get", "-q", "-y", "--no-install-recommends", *arguments]
        )

    def install(self, package):
        return self.apt("install", f"/packages/{package.name}")

    def state(self, name="ixovpn-client"):
        ran = subprocess.run(
            self.command("dpkg-query", "-W", "-f", "${db:Status-Status} ${Version}", name),
            capture_output=True,
            text=True,
        )
        return ran.stdout if ran.returncode == 0 else "unknown"

    def files(self):
        """Everything that lies there, with what it is."""
        found = {}
        for folder, folders, files in os.walk(self.path):
            inside = Path(folder).relative_to(self.path)
            folders[:] = [f for f in folders if str(inside / f) not in ("proc", "dev", "tmp")]
            for name in [*folders, *files]:
                if not JOURNALS.fullmatch(str(inside / name)):
                    found[str(inside / name)] = describe(Path(folder) / name)
        return found


class Display:
    """An X server outside the root, so that the root has nothing but what the package brings."""

    def __enter__(self):
        ready, number = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(number), "-screen", "0", "800x700x24", "-nolisten", "tcp"],
            pass_fds=[number],
            stderr=subprocess.DEVNULL,
        )
        os.close(number)
        with os.fdopen(ready) as pipe:
            self.name = f":{pipe.readline().strip()}"
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def ask(self, *command):
        ran = subprocess.run(
            command, env=dict(os.environ, DISPLAY=self.name), capture_output=True
        )
        return ran.stdout

    def windows(self):
        return self.ask("xdotool", "search", "--onlyvisible", "--name", "^IXOVPN$").decode().split()

    def bright_pixels(self, window, area):
        picture = self.ask("import", "-silent", "-window", window, "-crop", area, "rgb:-")
        return sum(min(picture[i : i + 3]) > 180 for i in range(0, len(picture), 3))


class Life(unittest.TestCase):
    """One test: each station begins where the one before ended."""

    def differences(self, before, after):
        return {
            name: (before.get(name), after.get(name))
            for name in before.keys() | after.keys()
            if before.get(name) != after.get(name)
        }

    def check_own_files(self, before, after):
        """What has come is what the package says it has, and notes about it."""
        listed = self.root.run("dpkg", "-L", "ixovpn-client").split()
        own = {name.lstrip("/") for name in listed}
        notes = {
            name for name in after if name.startswith("var/lib/dpkg/info/ixovpn-client.")
        }
        self.assertEqual(set(self.differences(before, after)) - own - notes, set())
        self.assertEqual(own - set(after), {"."} & own)

    def check_self_test(self):
        self.root.run(
            *["ixovpn-client", "--test-i18n", "de_DE", "--out", "/tmp/selftest.out"], user=USER
        )
        written = (self.root.path / "tmp/selftest.out").read_text()
        self.assertEqual(
            written, "locale=de_DE\nConnected=Verbunden\nDisconnected=Getrennt\n"
        )

    def check_window(self):
        parser = ConfigParser(interpolation=None, delimiters="=")
        parser.optionxform = str
        parser.read(self.root.path / "usr/share/applications/ixovpn-client.desktop")
        entry = parser["Desktop Entry"]
        with Display() as display, tempfile.TemporaryFile() as said:
            command = self.root.command(entry["Exec"], user=USER, DISPLAY=display.name)
            client = subprocess.Popen(command, stdout=said, stderr=said)
            try:
                window = until(
                    "there is a window", lambda: display.windows() or client.poll() is not None
                )
                self.assertIsNone(client.poll(), "the program ended")
                (window,) = display.windows()
                geometry = display.ask("xwininfo", "-id", window).decode()
                self.assertRegex(geometry, r"Width: 360\n\s*Height: 560\n")
                named = display.ask("xprop", "-id", window, "WM_CLASS").decode()
                self.assertEqual(
                    re.findall('"(.*?)"', named), [entry["Exec"], entry["StartupWMClass"]]
                )
                # The title on the window, which takes a font.
                until("there is text", lambda: display.bright_pixels(window, "120x30+120+20") > 100)
                # With the icon the reader of its format is there.
                icon = display.ask("xprop", "-id", window, "_NET_WM_ICON").decode()
                self.assertIn("Icon (", icon)

                again = subprocess.run(command, timeout=PATIENCE)
                self.assertEqual(again.returncode, 0)
                self.assertIsNone(client.poll())
            finally:
                client.terminate()
                client.wait()
                said.seek(0)
                print(said.read().decode(), end="", file=sys.stderr)

    def test_life(self):
        new, old = (Path(name) for name in PACKAGES)
        self.root = Root(os.environ[INSIDE], (new, old))
        root = self.root
        depends = subprocess.check_output(["dpkg-deb", "-f", new, "Depends"], text=True).strip()
        root.apt("satisfy", depends)
        before = root.files()
        self.assertGreater(len(before), 5000)
        self.assertEqual(root.state(), "unknown")

        root.install(old)
        self.assertEqual(root.state(), f"installed {OLD_VERSION}-1")
        self.check_own_files(before, root.files())

        root.install(new)
        version = subprocess.check_output(["dpkg-deb", "-f", new, "Version"], text=True).strip()
        self.assertEqual(root.state(), f"installed {version}")
        self.check_own_files(before, root.files())
        self.assertEqual(root.run("dpkg", "--verify", "ixovpn-client"), "")

        self.check_self_test()
        self.check_window()

        root.apt("remove", "ixovpn-client")
        self.assertEqual(self.differences(before, root.files()), {}, "left by removing")

        root.install(new)
        root.apt("purge", "ixovpn-client")
        self.assertEqual(root.state(), "unknown")
        self.assertEqual(self.differences(before, root.files()), {}, "left by purging")


if __name__ == "__main__":
    if INSIDE in os.environ:
        PACKAGES = sys.argv[1:]
        unittest.main(verbosity=2, argv=sys.argv[:1])
    else:
        prepare(Path(sys.argv[1]))
