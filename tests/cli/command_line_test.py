#!/usr/bin/python3
"""Drives tarnwell-cli itself, on the simulated television and on faults.

    command_line_test.py PROGRAM PROGRAM-WITH-FAULTS
"""

import contextlib
import functools
import json
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

FAULTY, PROGRAM = (Path(sys.argv.pop()).resolve() for _ in range(2))
SOURCES = Path(__file__).resolve().parents[2]
KEYS = {"command": str, "device": str, "devices": dict, "port": str, "simulated": bool, "result": str,
        "crc": str, "bytes": int, "data": list, "written": int, "mismatches": list, "settings": list,
        "backup": str, "backups": list, "message": str}
SETTING = {"name": str, "format": str, "page": str, "description": str, "value": int, "maximum": int,
           "address": int, "bits": str}
COMMANDS = "check", "read", "write", "verify", "info", "get", "set", "peek", "poke", "compare", "backups", "restore"
RESULTS = {0: "done", 1: "different", 2: "refused", 3: "failed", 4: "failed", 5: "unverified",
           6: "refused", 129: "interrupted", 130: "interrupted", 143: "interrupted"}


def record(kind, address, data):
    body = bytes([len(data) + 3]) + address.to_bytes(2, "big") + data
    return kind + (body + bytes([~sum(body) & 0xFF])).hex().upper() + "\n"


def settings_archive(groups):
    header = record("S0", 0, b"Halv Dorn Tarnwell 2\2\2Settings")
    return header + "".join(record("S1", base, bytes(data)) for base, data in groups.items()) + "S9030000FC\n"


class CommandLine(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        self.primary = self.folder / "data/tarnwell/simulated-primary.bin"
        self.backups = self.folder / "state/tarnwell/backups"
        self.environment = {**os.environ, "HOME": scratch.name, "TZ": "UTC"}
        for name in ("config", "data", "state"):
            self.environment[f"XDG_{name.upper()}_HOME"] = f"{scratch.name}/{name}"
        self.run_cli("poke", "--yes", "5=1", "0x1000=9")
        self.before = self.primary.read_bytes()

    def start(self, *arguments, program=PROGRAM, **streams):
        streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **streams}
        return subprocess.Popen([program, *arguments], cwd=self.folder, env=self.environment, **streams)

    def run_cli(self, *arguments, status=0, given=None, **streams):
        """What it prints, the exit status being the one given; an error is one line."""
        if given is not None:
            streams["stdin"] = subprocess.PIPE
        process = self.start(*arguments, **streams)
        out, err = process.communicate(given, timeout=60)
        err = (err or b"").decode()
        self.assertEqual(process.returncode, status, f"{arguments}: {err}")
        if status > 1:
            self.assertRegex(err, r"(\A|\[y/N\] \n?|\r)tarnwell-cli: [^\n]*[^.?!\n][.?!]\n\Z")
        return out, err

    def report(self, *arguments, status=0, **streams):
        """The JSON object, after a look at its form."""
        out, err = self.run_cli("--json", *arguments, status=status, **streams)
        report = json.loads(out)
        for key, value in report.items():
            self.assertIs(type(value), KEYS[key], key)
        for setting in report.get("settings", []):
            self.assertEqual({key: type(value) for key, value in setting.items()}, SETTING)
        self.assertEqual(report["result"], RESULTS[status])
        if status > 1:
            self.assertIn(report["message"], err)
        return report

    def on_terminal(self, answer, *arguments, status=0, **streams):
        """What it asks, and the answer typed."""
        terminal, stdin = pty.openpty()
        os.write(terminal, answer)
        try:
            return self.run_cli(*arguments, status=status, stdin=stdin, **streams)[1]
        finally:
            os.close(stdin)
            os.close(terminal)

    def image_of(self, archive):
        subprocess.run(["srec_cat", archive, "-fill", "0xFF", "0", "8192", "-o", "srec.bin", "-binary"],
                       cwd=self.folder, check=True)
        return (self.folder / "srec.bin").read_bytes()

    def changed(self):
        after = self.primary.read_bytes()
        return {address: after[address] for address in range(8192) if after[address] != self.before[address]}

    def test_reads_and_verifies_archives_and_bytes(self):
        report = self.report("read", "a.mot")
        self.assertEqual((report["command"], report["device"], report["port"], report["simulated"], report["bytes"]), ("read", "primary", "simulated", True, 8192))
        self.assertEqual(self.image_of("a.mot"), self.before)
        self.run_cli("read", "a.bin")
        self.assertEqual((self.folder / "a.bin").read_bytes(), self.before)
        archive = (self.folder / "a.mot").read_bytes()
        out, err = self.run_cli("read", "-")
        self.assertEqual(out, archive)
        self.assertIn(report["crc"], err)
        self.assertEqual(self.run_cli("--raw", "read", "-")[0], self.before)
        for name, given in (("a.mot", None), ("a.bin", None), ("-", archive)):
            self.assertEqual(self.report("verify", name, given=given)["crc"], report["crc"])
            self.assertEqual(self.report("info", name, given=given)["crc"], report["crc"])
        for size, status in ((1 << 20, 0), ((1 << 20) + 1, 4)):
            self.run_cli("info", "-", given=archive.ljust(size, b"\n"), status=status)
        self.run_cli("read", "a.mot", status=4)
        self.run_cli("--device", "secondary", "read", "a.mot", "--force")
        self.assertNotEqual(self.image_of("a.mot"), self.before)
        verified = self.report("verify", "a.mot", status=1)
        different = verified["mismatches"]
        self.assertEqual(verified["message"], f"{len(different)} bytes differ.")
        named = next(m for m in different if m["address"] == 2085)
        self.assertEqual((named["setting"], named["found"]), ("TINT", self.before[2085]))
        self.assertIn(b"Address 2085 (TINT): expected", self.run_cli("verify", "a.mot", status=1)[0])

    def test_writes_what_other_programs_made(self):
        image = bytes(address * 7 % 253 for address in range(8192))
        (self.folder / "new.bin").write_bytes(image)
        differing = sum(old != new for old, new in zip(self.before, image))
        planned = self.run_cli("--dry-run", "write", "new.bin")[0].decode()
        self.assertEqual((f"of which {differing} change\n" in planned, planned.count(" becomes ")), (True, differing))
        report = self.report("--yes", "write", "new.bin")
        self.assertEqual((report["written"], report["crc"]), (8192, self.report("info", "new.bin")["crc"]))
        self.assertEqual(self.primary.read_bytes(), image)
        self.assertEqual(self.image_of(report["backup"]), self.before)
        self.run_cli("write", "--yes", "--raw", "-", given=self.before)
        self.run_cli("read", "back.mot")
        self.assertEqual(self.image_of("back.mot"), self.before)
        self.run_cli("--yes", "write", "short.bin", status=4)
        (self.folder / "short.bin").write_bytes(image[:-1])
        self.run_cli("--yes", "write", "short.bin", status=4)

    def test_settings_are_read_changed_and_archived(self):
        everything = self.report("get")["settings"]
        self.assertEqual(len(everything), 72)
        self.assertTrue(all(setting["description"] for setting in everything))
        tint = next(s for s in everything if s["name"] == "TINT")
        self.assertEqual(tint, {"name": "TINT", "format": "", "page": "Global", "description": "Main Tint",
                                "value": self.before[2085] >> 2, "maximum": 63, "address": 2085, "bits": "7-2"})
        self.assertEqual([s["format"] for s in self.report("get", "r-yr")["settings"]], ["480i", "480p", "1080i", "VGA"])
        self.assertIn(b"CB02.VGA ", self.run_cli("get", "cb02.vga")[0])
        report = self.report("--yes", "set", "TINT=0x15", "R-YR=3", "r-yr.480P=4")
        wanted = {2085: 0x15 << 2 | self.before[2085] & 3, 2365: 3, 2401: 4, 2437: 3, 2473: 3}
        self.assertEqual(self.changed(), {a: v for a, v in wanted.items() if v != self.before[a]})
        self.assertEqual(report["written"], len(self.changed()))
        report = self.report("--yes", "set", "TINT=21")
        self.assertEqual((report["written"], report["message"]), (0, "No settings were changed; The EEProm was not modified."))
        self.run_cli("read", "a.mot")
        changed = self.report("--image=a.mot", "--output=b.bin", "set", "TINT=1")
        self.assertEqual((changed["settings"][0]["value"], changed["crc"]), (1, self.report("info", "b.bin")["crc"]))
        self.assertEqual((self.folder / "b.bin").read_bytes()[2085], 4 | self.before[2085] & 3)
        self.assertEqual(self.report("get", "TINT", "--image", "b.bin")["settings"][0]["value"], 1)
        self.assertIn("\nTINT            21  0-63      2085  7-2   Global   Main Tint\n", self.run_cli("get")[0].decode())

    def test_settings_archives_are_used_as_images_are(self):
        groups = {}
        for setting in sorted(self.report("get")["settings"], key=lambda setting: setting["address"]):
            base = next((base for base, data in groups.items() if base + len(data) == setting["address"]), setting["address"])
            groups.setdefault(base, []).append(setting["value"])
        (self.folder / "s.mot").write_text(settings_archive(groups))
        info = self.report("info", "s.mot")
        self.assertEqual((len(info["settings"]), info["message"]), (72, "A settings archive."))
        self.assertEqual(self.report("verify", "s.mot")["message"], "The EEProm holds what the file holds.")
        change = "--image=s.mot", "--output=t.mot", "set", "TINT=0x3F"
        self.assertIn("Nothing was written.", self.report("--dry-run", *change)["message"])
        self.assertEqual(self.report(*change)["message"], "Settings Saved to Archive Disk File: t.mot")
        self.assertIn("t.mot exists.", self.report(*change, status=4)["message"])
        groups[2085] = [63]
        self.assertCountEqual((self.folder / "t.mot").read_text().splitlines(), settings_archive(groups).splitlines())
        self.assertEqual(self.report("--image=t.mot", "get", "TINT")["settings"][0]["value"], 63)
        report = self.report("verify", "t.mot", status=1)
        self.assertEqual(report["mismatches"], [{"address": 2085, "expected": 63, "found": self.before[2085] >> 2, "setting": "TINT"}])
        self.assertEqual(report["message"], "1 byte differs.")
        self.assertEqual(self.report("--yes", "write", "t.mot")["written"], 72)
        self.assertEqual(self.changed(), {2085: 63 << 2 | self.before[2085] & 3})
        (self.folder / "s.mot").write_text(settings_archive({2228: [5]}))
        for name, said in ("t.bin", "archive does not have"), ("u.mot", "only a part of the settings"):
            self.assertIn(said, self.report("--image=s.mot", f"--output={name}", "set", "TINT=1", status=4)["message"])
        for command in ("verify", "s.mot"), ("--yes", "write", "s.mot"), ("--image=s.mot", "get"), ("set", "TINT=1", "--yes"):
            self.report("--device=secondary", *command, status=2)

    def test_files_that_are_of_no_use_are_told_with_the_reason(self):
        self.run_cli("read", "a.mot")
        lines = (self.folder / "a.mot").read_text().splitlines(keepends=True)
        for content, said in (
                ("", "is empty."), ("text\n", "is not an S-Record file."), ("".join(lines[:-1]), "ends before its last record"),
                ("".join(lines).replace("S113004", "S113104", 1), "a checksum is wrong"), (lines[0] + "x" * 66000, "has a line that is too long"),
                (lines[0] + "S5\n", "has a record that does not belong"), (record("S0", 0, b"other") + lines[1], "another program")):
            for name, given in ("f.mot", None), ("-", content.encode()):
                (self.folder / "f.mot").write_text(content)
                message = self.report("info", name, given=given, status=4)["message"]
                self.assertRegex(message, rf"^{name.replace('-', 'Standard input')} .*{said}")
        for line, said in {"info g.bin": "g.bin does not exist.", "info .": ". is no regular file.", "read no/f.mot": "no/f.mot could not be saved. ",
                           "info --raw -": "Standard input has 3 bytes, not 8192."}.items():
            self.assertTrue(self.report(*line.split(), given=b"123", status=4)["message"].startswith(said))
        (self.folder / "half.mot").write_text(lines[0] + lines[1] + lines[-1])
        self.run_cli("--yes", "write", "half.mot")
        self.assertEqual(self.primary.read_bytes(), self.before[:16] + b"\xff" * 8176)

    def test_bytes_are_shown_and_written(self):
        report = self.report("peek", "0x5", "4094+3", "8191")
        self.assertEqual((report["data"], report["bytes"]), ([{"address": a, "value": self.before[a]} for a in (5, 4094, 4095, 4096, 8191)], 5))
        self.assertEqual(self.run_cli("peek", "5", "2085+1")[0].decode(), "Device: Primary EEProm, simulated\nRead: 2 bytes\n"
                         f"   5 0x0005    1 0x01\n2085 0x0825  {self.before[2085]:3} 0x{self.before[2085]:02X}  TINT\n")
        planned = self.report("--dry-run", "poke", "5=1", "6=0x7F", "6=2")
        self.assertEqual((planned["data"], planned["written"]), ([{"address": 5, "value": 1}, {"address": 6, "value": 2}], 0))
        kept = len(list(self.backups.iterdir()))
        self.assertEqual(self.changed(), {})
        self.assertRegex(self.run_cli("--yes", "poke", "5=1")[0].decode(), r"\AEEP Verified OK; New Data Written to EEProm\nDevice: Primary "
                         r"EEProm, simulated\nRead: 8192 bytes\nWritten: 1 byte\nBackup: /.*\n\Z")
        report = self.report("--yes", "poke", "5=1", "6=0x7F", "6=2")
        self.assertEqual((report["written"], self.changed()), (2, {6: 2}))
        self.assertEqual(len(list(self.backups.iterdir())), kept + 2)

    def test_asks_on_a_terminal_only(self):
        for arguments, question in (
                (("poke", "5=2", "5=3"), "the Primary EEProm:\n  Address 5: 1 becomes 3\nWrite 1 new value to the EEP? [y/N] "),
                (("poke", "5=2", "6=3"), "\nWrite 2 new values to the EEP? [y/N] "),
                (("set", "TINT=9", "CLP=3"), " (CLP.1080i): "),
                (("set", "TINT=9"), "\nWrite settings values to EEPROM? [y/N] "),
                (("write", "a.bin"), f"\n  and {sum(map(bool, self.before)) - 100} more\nWrite memory buffer to EEProm? [y/N] ")):
            (self.folder / "a.bin").write_bytes(bytes(8192))
            for answer in (b"\n", b"yess\n", b"\x04"):
                self.assertIn(question, self.on_terminal(answer, *arguments, status=6))
            self.run_cli(*arguments, status=6, given=b"y\n")
        self.assertEqual(self.changed(), {})
        warned = self.on_terminal(b"YES\n", "--device=secondary", "poke", "1=1")
        self.assertRegex(warned, r"B E   C A R E F U L ![^\r]*KILL your HDTV![^\r]*Secondary EEProm:\n  Address 1: .*\n.*EEP\? \[y/N\] \Z")
        self.on_terminal(b"Y\n", "poke", "5=7")
        self.assertEqual(self.changed(), {5: 7})

    def test_wrong_arguments(self):
        for line, reason in {
                "": "command", "raed x": "Did you mean read", "rstor": "Did you mean restore", "est x": "Did you mean set", "read": "FILE", "read a b": "One FILE",
                "--bogus check": "bogus", "get tnit": "Did you mean TINT", "get itnt": "Did you mean TINT", "get r-yr.080i": "R-YR.480i", "get R-YR.480": "Did you mean R-YR.480i",
                "get TINT.VGA": "no formats", "set TINT=64": "0 to 63", "set TINT": "=", "set TINT=-1": "number", "peek 8192": "8191", "peek 9-8": "range", "peek 8190+3": "range",
                "peek 1+0": "range", "poke 1=256": "255", "poke 0x=1": "number", "--pins=11112010 check": "pin", "--pins=1101201 check": "eight", "--pins=11015010 check": "eight",
                "--address=379 check": "378", "--port=lpt check": "no port", "--trace= check": "value", "--wait=x check": "wait", "--quiet get": "quiet", "--quiet peek 1": "quiet",
                "--quiet info a": "quiet", "read - --json": "output", "--image=a peek 1": "image", "--image=a set TINT=1": "output", "--raw read a": "raw",
                "--dry-run read a": "dry-run", "--device=secondary get": "PLEASE BE CAREFUL", "--port=ppdev --real-time check": "simulated", "--trace=no/t.vcd check": "No such file",
                "check x": "'x' is one argument too many.", "compare a b c": "Two to compare, not 3.", "--wait=1000001 check": "1000000", "--passes=101 check": "100",
                "--passes=0 check": "100", "--device=x check": "device", "--progress=x check": "progress", "--differences verify a": "differences", "--output=b get": "output",
                "--image=a --output=- --json set TINT=1": "standard output", "--quiet backups": "quiet", "--dry-run verify a": "dry-run", "check --json=yes": "json", "poke 5": "="}.items():
            report = self.report(*line.split(), status=2)
            self.assertIn(reason, report["message"], line)
            self.assertEqual(report.get("command"), next((word for word in line.split("= ")[0].split() if word in COMMANDS), None), line)
        self.report("--wait=1000000", "--address=3bc", "--port=simulated", "--passes=100", "check")
        self.assertEqual(self.report("peek", "8190-8191", "0x1FFF+1", "0+8192")["bytes"], 8195)

    def test_backup_that_fails_keeps_every_byte(self):
        for backup in self.backups.iterdir():
            backup.unlink()
        self.backups.rmdir()
        self.backups.touch()
        self.assertEqual(self.report("--yes", "poke", "5=2", status=4)["written"], 0)
        self.assertEqual(self.changed(), {})

    def test_lost_report_does_not_stop_the_work(self):
        with open("/dev/full", "wb") as full:
            for arguments in ("--json",), ():
                self.run_cli("--yes", *arguments, "poke", "5=2", status=4, stdout=full)
                self.assertEqual(self.changed(), {5: 2})
                self.run_cli("--yes", "poke", "5=1")
        reader, writer = os.pipe()
        os.close(reader)
        self.assertEqual(self.start("--yes", "--progress=always", "poke", "5=3", stdout=writer, stderr=writer).wait(), 4)
        os.close(writer)
        self.assertEqual(self.changed(), {5: 3})
        subprocess.run(["sh", "-c", '"$0" --progress=always read x.bin <&- >&- 2>&-', PROGRAM],
                       cwd=self.folder, env=self.environment, check=False)
        self.assertEqual((self.folder / "x.bin").read_bytes(), self.primary.read_bytes())
        for file in filter(Path.is_file, self.folder.rglob("*")):
            self.assertNotIn(b" 50 %", file.read_bytes(), file)

    def test_signals_end_it_at_the_next_byte(self):
        (self.folder / "a.bin").write_bytes(bytes(b ^ 0xFF for b in self.before))
        for number, command in (signal.SIGINT, "write"), (signal.SIGTERM, "write"), (signal.SIGHUP, "read"):
            self.primary.write_bytes(self.before)
            process = self.start("--real-time", "--yes", "--json", "--progress=always", "--force", command, "a.bin")
            while b"2 %" not in process.stderr.read1():
                pass
            if command == "write":  # the first bar is that of the backup
                while b" 99 %" not in process.stderr.read1() or time.sleep(0.2):
                    pass
            for again in number, number, signal.SIGTERM:
                process.send_signal(again)
                time.sleep(0.001)
            out, err = process.communicate(timeout=10)
            self.assertEqual(process.returncode, 128 + number, err)
            report = json.loads(out)
            count = f" {report.get('written')} bytes were written and not verified: repeat the command." if command == "write" else ""
            self.assertEqual((report["result"], report["message"]), ("interrupted", f"Stopped by {number.name}.{count}"))
            self.assertIn(report["bytes"], (8192,) if command == "write" else range(100, 8192))
            if command == "write":
                self.assertEqual(sorted(self.changed()), list(range(report["written"])))
                self.assertGreater(report["written"], 0)
            self.run_cli("check")

    def test_second_one_is_told_that_the_port_is_taken(self):
        first = self.start("--real-time", "--force", "--progress=always", "read", "a.mot")
        first.stderr.read1()
        first.send_signal(signal.SIGSTOP)  # however slow the machine is, it still reads
        message = self.report("peek", "1", status=3)["message"]
        self.assertIn(f"(tarnwell-cli, process {first.pid})", message)
        waiting = self.start("--wait=30", "peek", "1", preexec_fn=functools.partial(signal.signal, signal.SIGHUP, signal.SIG_IGN))
        while not int(re.search(r"SigCgt:\s(\w+)", Path(f"/proc/{waiting.pid}/status").read_text())[1], 16) & 2:
            pass
        waiting.send_signal(signal.SIGHUP)  # which it was told to ignore
        waiting.send_signal(signal.SIGINT)
        self.assertEqual(waiting.wait(), 130, waiting.communicate())
        threading.Timer(0.5, first.send_signal, [signal.SIGCONT]).start()
        self.assertEqual(self.report("--wait=60", "peek", "5")["data"][0]["value"], 1)
        self.assertEqual(first.wait(60), 0)
        first.communicate()
        self.assertEqual(self.image_of("a.mot"), self.before)

    def test_check_finds_the_cause(self):
        self.assertEqual(self.report("check")["devices"], {"primary": True, "secondary": True})
        self.assertEqual(self.run_cli("--device=secondary", "check")[0].decode(),
                         "The bus is in order.\nDevice: Secondary EEProm, simulated\nPrimary EEProm: answers\nSecondary EEProm: answers\n")
        for arguments, cause in (
                (("--port=ppdev",), "parport|ppdev"), (("--no-television",), "television has power"),
                (("--pins=01112010",), "swapped"), (("--pins=21012010",), "SDA stays high"), (("--pins=11212010",), "SCL stays high")):
            report = self.report("check", *arguments, status=3)
            self.assertRegex(report["message"], cause, arguments)
            self.assertEqual(report["devices"], {"primary": False, "secondary": False})
            self.assertRegex(self.run_cli("check", *arguments, status=3)[1], cause)

    def test_faults(self):
        for fault, arguments, status, said in (
                ("AdapterGone Access 0", ("check",), 3, "no adapter"), ("LinesJoined Access 0", ("check",), 3, "joined"),
                ("SdaStuckLow Access 0", ("check",), 3, "SDA"), ("InputsInverted Access 0", ("check",), 3, "SCL and SDA stay low"),
                ("SclStuckLow Access 90000", ("read", "x.mot"), 3, "Hardware Problem"), ("DeviceSilent Access 9000", ("get",), 3, r"Hardware Problem[.] Find the cause with 'tarnwell-cli check'[.]\Z"),
                ("PortFails Access 40000", ("--yes", "poke", "7=1"), 3, r"Problem[.] The simulated port has failed[.] Plug it in again and repeat the command[.]\Z"),
                ("LostWrite WriteCycle 2", ("--yes", "poke", "7=1", "2085=3"), 5, "not programmed correctly"),
                ("WrongWrite WriteCycle 8192", ("--yes", "write", "a.bin"), 5, "not programmed correctly"),
                ("DeviceSilent WriteCycle 2", ("--yes", "write", "a.bin"), 3, " 1 byte was written and"),
                ("DeviceSilent WriteCycle 1", ("--yes", "write", "--differences", "a.bin"), 3, "it writes the rest"),
                ("LostWrite WriteCycle 2", ("--yes", "write", "--differences", "a.bin"), 5, "not programmed correctly"),
                ("FlippedBit Read 1", ("--passes=2", "read", "x.mot"), 6, "1 byte did not read the same twice"),
                ("LostWrite WriteCycle 0", ("--yes", "set", "TINT=9"), 5, "settings values failed")):
            (self.folder / "a.bin").write_bytes(self.before)
            self.environment["TARNWELL_FAULT"] = fault
            report = self.report(*arguments, status=status, program=FAULTY)
            self.assertRegex(report["message"], said, fault)
            self.assertFalse((self.folder / "x.mot").exists())
            mismatches = report.get("mismatches", [])
            self.assertEqual(len(mismatches), 1 if status == 5 else 0, fault)
            if "2085=3" in arguments:
                self.assertEqual((mismatches[0]["setting"], mismatches[0]["expected"]), ("TINT", 3))
                self.assertIn(b"(TINT): expected 3, found", self.run_cli(*arguments, status=5, program=FAULTY)[0])

        self.environment["TARNWELL_FAULT"] = "DeviceSilent Access 0"
        for arguments, status in (("check",), 3), (("--device=secondary", "check"), 0):
            self.assertEqual(self.report(*arguments, status=status, program=FAULTY)["devices"], {"primary": False, "secondary": True})

    def test_takes_wiring_and_port_from_the_options_and_leaves_them(self):
        options = self.folder / "config/Halvdorn/Tarnwell.ini"
        self.run_cli("check")
        self.assertFalse(options.parent.exists())
        options.parent.mkdir(parents=True)
        options.write_text("[Startup]\nMainTop=1\n[ProgPort]\nPortAddr=888\nPortOpts=21012010\n")
        self.run_cli("check", status=3)
        self.run_cli("--pins=11012010", "--address=3bc", "check")
        self.assertIn("PortOpts=2101", options.read_text())
        options.write_text("[Startup]\nMainTop=1\n[ProgPort]\nPortAddr=888\nPortOpts=11012010\nI2CBus=No such|/dev/i2c-9\n")
        report = self.report("check", status=3)
        self.assertEqual((report["port"], report["simulated"]), ("i2c:/dev/i2c-9", False))
        self.assertIn("The I2C bus No such is not there.", report["message"])
        for option in "--trace=a.vcd", "--pins=11012010", "--address=378", "--real-time", "--no-television":
            message = self.report(option, "check", status=2)["message"]
            self.assertRegex(message, rf"^{option.split('=')[0]} needs a parallel port: .*the I2C bus No such is used")
            self.assertRegex(self.report(option, "--port=i2c:x", "check", status=2)["message"], "needs a parallel port[.]")
        self.assertTrue(self.report("--port=auto", "check")["simulated"])
        self.assertIn("is not there", self.report("--port=i2c:x", "check", status=3)["message"])

    def test_works_over_a_bus_of_the_kernel(self):
        eeprom = self.folder / "eeprom.bin"
        other = bytes(byte ^ 0xFF for byte in self.before)
        (self.folder / "other.bin").write_bytes(other)
        def on_bus(fault, *arguments, status=0, run=self.report, bus="/dev/i2c-7", held=self.before):
            eeprom.write_bytes(held)
            self.environment["TARNWELL_FAULT"] = f"I2c {fault} 0"
            return run(f"--port=i2c:{bus}", *arguments, status=status, program=FAULTY)
        report = on_bus("plain", "--yes", "poke", "5=77", bus="Test adapter")
        self.assertEqual((report["port"], report["simulated"], report["written"]), ("i2c:/dev/i2c-7", False, 1))
        self.assertEqual([at for at in range(8192) if eeprom.read_bytes()[at] != self.before[at]], [5])
        on_bus("plain", "--yes", "write", "--differences", "other.bin")
        self.assertEqual(eeprom.read_bytes(), other)
        message = on_bus("twice", "check", status=3, bus="Test adapter")["message"]
        self.assertIn("named Test adapter: /dev/i2c-7, /dev/i2c-9.", message)
        self.assertEqual(on_bus("twice", "check", bus="/dev/i2c-7")["devices"], {"primary": True, "secondary": False})
        for fault, held, question in ("plain", b"\xff" * 8191 + b"1", "Use it all the same?"), ("blind", self.before, "Is a 24C64 connected?"):
            self.assertTrue(on_bus(fault, "check", held=held)["devices"]["primary"])
            for words in ("--yes", "poke", "5=77"), ("--force", "peek", "5"):
                message = on_bus(fault, *words, status=6, held=held)["message"]
                self.assertIn("Nothing was written. Say --trust-device", message)
                self.assertEqual(eeprom.read_bytes(), held)
            on_bus(fault, "--trust-device", "poke", "5=77", status=6, held=held)
            on_bus(fault, "--trust-device", "--yes", "poke", "5=77", held=held)
            self.assertEqual(eeprom.read_bytes()[5], 77)
            for answer, status in (b"n\n", 6), (b"y\n", 0):
                ask = functools.partial(self.on_terminal, answer)
                self.assertIn(question, on_bus(fault, "peek", "5", held=held, status=status, run=ask))
        self.assertIn("in use by another program", on_bus("locked 150", "peek", "5", status=3)["message"])
        on_bus("locked 150", "--wait=30", "peek", "5")
        for fault, status, unconfirmed, result in ("signal 90", 143, 0, "SIGTERM"), ("unplugged 90", 3, 1, "The adapter is gone"):
            report = on_bus(fault, "--yes", "--force", "write", "other.bin", status=status)
            written = report["written"] + unconfirmed
            self.assertGreater(written, 1)
            self.assertEqual(eeprom.read_bytes(), other[:written] + self.before[written:])
            self.assertIn(result, report["message"])

    def test_draws_a_bar_and_can_be_quiet(self):
        self.assertRegex(self.run_cli("--progress=always", "read", "b.bin")[1], r"50 %, \d+ s left")
        self.assertEqual(self.run_cli("--quiet", "read", "c.bin"), (b"", ""))
        terminal, stderr = pty.openpty()
        self.start("read", "d.bin", stderr=stderr)
        os.close(stderr)
        shown = b""
        with contextlib.suppress(OSError):  # the end
            while part := os.read(terminal, 4096):
                shown += part
        self.assertIn(b" 50 %", shown)
        self.assertRegex("".join(map(str, self.run_cli("read", "f.bin"))), r"\Ab'EEProm Image Saved to Disk: f.bin\\nDevice: Primary EEProm, "
                         r"simulated\\nRead: 8192 bytes\\nCRC-32: [0-9A-F]+\\n'\Z")

    def test_compares_restores_and_writes_only_differences(self):
        self.run_cli("read", "a.mot")
        self.assertEqual(self.report("compare", "a.mot")["message"], "No differences.")
        self.run_cli("--yes", "set", "R-YR.480p=7")
        kept = self.report("backups")["backups"]
        self.assertEqual([(backup["number"], Path(backup["file"]).is_file()) for backup in kept], [(n + 1, True) for n in range(len(kept))])
        self.assertRegex(kept[0]["kept"], r"\A\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\Z")
        found = self.report("compare", "backup", status=1)
        self.assertEqual((found["message"], found["mismatches"][0]["setting"]), ("1 byte differs: 1 setting.", "R-YR.480p"))
        self.assertRegex(self.run_cli("backups")[0].decode(), r"\ADevice: Primary EEProm\nbackup:1  2\d{3}-.{14}  /.*-Pri.*\nbackup:2  .*\n\Z")
        self.assertEqual(self.report("compare", "a.mot", "backup:1")["result"], "done")
        for wrong in "backup:0", f"backup:{len(kept) + 1}", "backup:1x", "backup:":
            self.run_cli("restore", "--yes", wrong, status=4)
        self.run_cli("restore", status=6)
        asked = self.on_terminal(b"y\n", "restore", "a.mot")
        self.assertIn("Restore 1 byte of the Primary EEProm? [y/N]", asked)
        self.assertEqual(self.primary.read_bytes(), self.before)
        self.run_cli("--yes", "poke", "5=3", "6=4")
        planned = self.report("write", "--dry-run", "--differences", "a.mot")
        self.assertEqual((planned["data"], planned["written"]), ([{"address": a, "value": self.before[a]} for a in (5, 6)], 0))
        self.assertEqual(self.report("write", "--yes", "--differences", "a.mot")["message"], "EEP Verified OK; 2 Bytes Written")
        again = self.report("write", "--yes", "--differences", "a.mot")
        self.assertEqual((again["written"], again["message"]), (0, "The EEProm already holds what is to be written."))
        self.assertEqual(self.primary.read_bytes(), self.before)
        count = len(self.report("backups")["backups"])
        for _ in range(2):
            self.run_cli("--yes", "poke", "5=7")
            self.assertEqual(self.report("--yes", "restore", "a.mot")["written"], 1)
        self.assertEqual(len(self.report("backups")["backups"]), count + 3, "one was kept before")
        self.assertEqual([self.report("--device=secondary", "backups")[key] for key in ("backups", "message")], [[], "No backup is kept."])
        (self.folder / "s.mot").write_text(settings_archive({2228: [5]}))
        found = self.report("compare", "s.mot", status=1)
        self.assertEqual((found["message"], found["mismatches"]), ("1 byte differs: 1 setting.", [
            {"address": 2228, "expected": 5, "found": self.before[2228] >> 4, "setting": "SHPM"}]))
        self.assertEqual(self.report("write", "--yes", "--differences", "s.mot")["written"], 1)
        self.assertEqual(self.report("compare", "a.mot", "s.mot", status=1)["mismatches"][0]["found"], 5)
        self.assertEqual(self.changed(), {2228: 0x50 | self.before[2228] & 15})
        self.run_cli("--device=secondary", "write", "--yes", "--differences", "s.mot", status=2)
        self.run_cli("--device=secondary", "write", "--yes", "--differences", "a.mot")

    def test_doubtful_readings_need_force(self):
        self.environment["TARNWELL_FAULT"] = ""
        self.primary.write_bytes(b"\xff" * 8192)
        self.run_cli("--yes", "read", "b.bin", status=6)
        self.assertFalse((self.folder / "b.bin").exists())
        self.assertIn("Every byte reads as FF. Use this reading?", self.on_terminal(b"y\n", "--passes=2", "read", "b.bin"))
        self.run_cli("--force", "read", "b.bin")

    def test_completion_and_help_know_what_there_is(self):
        names = {f"{s['name']}.{s['format']}".rstrip(".") for s in self.report("get")["settings"]}
        offered = subprocess.run(
            ["bash", "-c", f"source {SOURCES}/packaging/tarnwell-cli.bash; compopt() {{ :; }}\n"
             "for line in 'get ' -- ''; do COMP_WORDS=(tarnwell-cli $line); [[ $line == -- ]] || COMP_WORDS+=('')\n"
             "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tarnwell_cli; printf '%s\\n' \"${COMPREPLY[@]}\"; done"],
            check=True, stdout=subprocess.PIPE, text=True).stdout.replace("=", "").split()
        self.assertLess(names, set(offered))
        text = self.run_cli("--help")[0].decode()
        for word in re.findall(r"^  (?:-\w,)?(--[a-z-]+|[a-z]+) ", text, re.MULTILINE):
            self.assertIn(word, offered)
        self.assertLessEqual({"KIND", "DIGITS", "SECONDS", "FILE"}, set(re.findall(r"--\w+ ([A-Z]+) ", text)))
        self.assertRegex(self.run_cli("--version")[0], rb"\Atarnwell-cli \d+\.\d+\.\d+\n\Z")


if __name__ == "__main__":
    for number in signal.SIGINT, signal.SIGHUP:
        signal.signal(number, signal.SIG_DFL)  # ignored by what a shell starts in the background
    unittest.main(verbosity=2)
