#!/usr/bin/python3
"""docs/protocol.md and its schema hold for the client and the simulator. Needs from Debian:
python3-jsonschema, xvfb and xdotool.

usage: test_protocolpage.py FOLDER    where the programs are built
"""

import json
import os
import re
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import jsonschema

TREE = Path(__file__).resolve().parents[1]
BUILT = Path(sys.argv.pop())
PAGE = (TREE / "docs/protocol.md").read_text()
SCHEMA = json.loads((TREE / "docs/protocol/commands.schema.json").read_text())

# The message of the page's grammar.
VISIBLE = r"[!-~\xa1-\U0010ffff]"
TEXT = f"{VISIBLE}( *{VISIBLE})*"
MESSAGE = re.compile(
    "status: (running|starting|connecting|stopping|stopped|disconnected|subscription_expired"
    f"|(fetching|failed)({TEXT})?)|(error|notice): {TEXT}|config-bytes: [0-9]+"
)

THE_SWITCH = ("180", "214")


class ProtocolPage(unittest.TestCase):
    def start(self, *command, **options):
        program = subprocess.Popen(command, text=True, **options)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        if program.stdout:
            self.addCleanup(program.stdout.close)
        return program

    def check_command(self, line):
        command = json.loads(line)
        jsonschema.Draft7Validator(SCHEMA).validate(command)
        self.assertEqual(
            line, json.dumps(command, ensure_ascii=False, separators=(",", ":"), sort_keys=True)
        )
        return command["cmd"]

    def check_messages(self, log):
        for line in re.findall(r"^\S+ (?:#1 )?> (.*)\n", log, re.MULTILINE):
            self.assertTrue(MESSAGE.fullmatch(line), line)

    def test_examples(self):
        for line in re.findall(r'\{"cmd".*?\}', PAGE):
            self.check_command(line)
        self.check_messages(PAGE)

    def test_words(self):
        grammar = re.search(r"```abnf\n(.*?)```", PAGE, re.DOTALL)[1]
        sources = [(TREE / "ipc" / name).read_text() for name in ("Protocol.h", "Protocol.cpp")]
        words = re.findall(r'\bword\("([a-z].*?)"\)', "".join(sources))
        self.assertEqual(set(re.findall(r'%s"(.*?)"', grammar)), set(words))

    def test_schema_refuses(self):
        jsonschema.Draft7Validator.check_schema(SCHEMA)
        for line in (
            '"connect"',
            "{}",
            '{"cmd":"restart"}',
            '{"cmd":"connect","lang":"de"}',
            '{"cmd":"set-lang"}',
            '{"cmd":"set-lang","lang":1}',
            '{"cmd":"set-referral","code":"abc12"}',
        ):
            self.assertFalse(jsonschema.Draft7Validator(SCHEMA).is_valid(json.loads(line)), line)

    def test_client(self):
        folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        (folder / "IXOVPN").mkdir()
        (folder / "IXOVPN/IxoClient.conf").write_text("[General]\nreferral_code=ab12CD\n")
        log = folder / "log"
        with log.open("w") as output:
            simulator = [BUILT / "ixovpn-service-sim", "--delay", "0"]
            self.start(*simulator, stdin=subprocess.DEVNULL, stdout=output)
        display = self.start("Xvfb", "-displayfd", "1", stdout=subprocess.PIPE)
        screen = {**os.environ, "DISPLAY": f":{display.stdout.readline().strip()}"}
        own = {"QT_QPA_PLATFORM": "xcb", "XDG_CONFIG_HOME": str(folder)}
        client = self.start(BUILT / "ixovpn-client", env={**screen, **own})

        sent = set()
        # A click before the window is there, or while the tunnel comes up, does nothing.
        while not sent >= {"connect", "disconnect"}:
            self.assertIsNone(client.poll())
            subprocess.run(["xdotool", "mousemove", *THE_SWITCH, "click", "1"], env=screen)
            sent.update(map(self.check_command, re.findall(r" < (.*)\n", log.read_text())))
            self.check_messages(log.read_text())
        described = [form["properties"]["cmd"] for form in SCHEMA["oneOf"]]
        names = [cmd.get("enum", [cmd.get("const")]) for cmd in described]
        self.assertEqual(sent, set(sum(names, [])))

    def test_simulator(self):
        for options, command, last in (
            ([], "connect", "status: running"),
            (["--state", "running"], "disconnect", "status: stopped"),
            (["--state", "failed: no route"], "status", "status: failed: no route"),
            (["--fail-at", "config"], "connect", "status: failed: simulated failure"),
            (["--fail-at", "running", "--fail-as", "error"], "connect", "error: simulated failure"),
            (["--expired"], "connect", "error: subscription_expired"),
            (["--notice", "Новое: <b>1</b>"], "status", "notice: Новое: <b>1</b>"),
        ):
            with self.subTest(options):
                simulator = self.start(
                    *[BUILT / "ixovpn-service-sim", "--quiet", "--port", "0", "--delay", "0"],
                    *options,
                    stdin=subprocess.DEVNULL,
                    stdout=subprocess.PIPE,
                )
                port = simulator.stdout.readline().rpartition(":")[2]
                with socket.create_connection(("127.0.0.1", int(port))) as connection:
                    connection.sendall(b'{"cmd":"%s"}\n' % command.encode())
                    for line in connection.makefile(encoding="utf-8", newline="\n"):
                        self.assertTrue(MESSAGE.fullmatch(line[:-1]), line)
                        if line[:-1] == last:
                            break


if __name__ == "__main__":
    unittest.main(verbosity=2)
