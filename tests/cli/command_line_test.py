#!/usr/bin/python3
"""Drives tarnwell-cli itself, on the simulated television and on faults, and the program's own arguments.

    command_line_test.py PROGRAM PROGRAM-WITH-FAULTS [PROGRAM-WITH-WINDOW]
"""

import functools, json, os, pty, re, resource, select, signal, subprocess, sys, tempfile, threading, time, unittest  # noqa: E401
from pathlib import Path

PROGRAMS = [word for word in sys.argv[1:] if "/" in word]
PROGRAM, FAULTY, WINDOW = [Path(word).resolve() for word in PROGRAMS] + [None] * (3 - len(PROGRAMS))
sys.argv = [word for word in sys.argv if word not in PROGRAMS]
SOURCES = Path(__file__).resolve().parents[2]
KEYS = {"command": str, "device": str, "devices": dict, "port": str, "simulated": bool, "result": str, "file": str, "doubts": str, "crc": str, "bytes": int, "data": list,
        "written": int, "mismatches": list, "nameFaults": list, "names": list, "settings": list, "backups": list, "backup": str, "set": str, "looksLike": str,
        "sets": list, "damaged": list, "events": list, "skipped": int, "newer": list, "unknown": list, "message": str}
OF_OWN = {"minimum": int, "low": int, "meaning": str}
SETTING = {"name": str, "format": str, "page": str, "description": str, "value": int, "maximum": int, "address": int, "bits": str}
RESULTS = {0: "done", 1: "different", 2: "refused", 3: "failed", 4: "failed", 5: "unverified", 6: "refused", 129: "interrupted", 130: "interrupted", 143: "interrupted"}


NUMBERS = {name: str(number) for names in re.findall(r"enum class \w+ {(.*?)}", (SOURCES / "src/port/simulated/Fault.h").read_text(), re.DOTALL)
           for number, name in enumerate(re.findall(r"^ +(\w+)", names, re.MULTILINE))}  # of faults and events


def record(kind, address, data):
    body = bytes([len(data) + 3]) + address.to_bytes(2, "big") + data
    return kind + (body + bytes([~sum(body) & 0xFF])).hex().upper() + "\n"


def settings_archive(groups):
    return record("S0", 0, b"Halv Dorn Tarnwell 2\2\2Settings") + "".join(record("S1", base, bytes(data)) for base, data in groups.items()) + "S9030000FC\n"


class CommandLine(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        self.primary, self.backups = self.folder / "data/tarnwell/simulated-primary.bin", self.folder / "state/tarnwell/backups"
        self.environment = {**os.environ, "HOME": scratch.name, "TZ": "UTC", **{f"XDG_{name.upper()}_HOME": f"{scratch.name}/{name}" for name in ("config", "data", "state")}}
        self.run_cli("poke --yes 5=1 0x1000=9")
        self.before = self.primary.read_bytes()
        self.tint = self.before[2085] >> 2

    def start(self, line, program=PROGRAM, **streams):
        words = line.split() if isinstance(line, str) else line
        return subprocess.Popen([program, *words], cwd=self.folder, env=self.environment, **{"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **streams})

    def run_cli(self, line, status=0, given=None, typed=None, **streams):
        """What it prints, the exit status being the one given; an error is one line. `typed` is an answer on a terminal."""
        streams |= {} if given is None else {"stdin": subprocess.PIPE}
        if typed is not None:
            ends = terminal, streams["stdin"] = pty.openpty()
            self.addCleanup(lambda: [os.close(end) for end in ends])
            os.write(terminal, typed)
        process = self.start(line, **streams)
        out, err = process.communicate(given, timeout=60)
        err = (err or b"").decode()
        self.assertEqual(process.returncode, status, f"{line}: {err}")
        if status > 1:
            self.assertRegex(err, r"(\A|\[y/N\] \n?|\r)tarnwell-cli: [^\n]*[^.?!\n][.?!]\n\Z")
        return (out or b"").decode(errors="replace"), err

    def report(self, line, status=0, says="", wanted=(), **streams):
        """The JSON object, after a look at its form, with what its message and some keys must say."""
        out, err = self.run_cli(["--json", *(line.split() if isinstance(line, str) else line)], status, **streams)
        report = json.loads(out)
        self.assertEqual({key: type(value) for key, value in report.items()}, {key: KEYS[key] for key in report})
        for setting in report.get("settings", []):
            own = OF_OWN.keys() & setting
            self.assertEqual({key: type(value) for key, value in setting.items()}, SETTING | {key: OF_OWN[key] for key in own})
            self.assertEqual("minimum" in own, setting["page"] == "")
        self.assertEqual(report["result"], RESULTS[status])
        self.assertIn(report.get("message", "") if status > 1 else "", err)
        self.assertRegex(report.get("message", ""), re.compile(says), line)
        self.assertEqual({key: report.get(key) for key in dict(wanted)}, dict(wanted), line)
        return report

    def put(self, name, content):
        (self.folder / name).write_bytes(content if isinstance(content, bytes) else content.encode())

    def held(self, name):
        """The bytes of a file, or of an image archive as another program reads it."""
        if name.endswith(".mot"):
            subprocess.run(["srec_cat", name, "-fill", "0xFF", "0", "8192", "-o", name := "srec.bin", "-binary"], cwd=self.folder, check=True)
        return (self.folder / name).read_bytes()

    def changed(self):
        return {address: byte for address, byte in enumerate(self.primary.read_bytes()) if byte != self.before[address]}

    def test_reads_and_verifies_archives_and_bytes(self):
        crc = self.report("read a.mot", wanted={"command": "read", "device": "primary", "port": "simulated", "simulated": True, "bytes": 8192})["crc"]
        self.run_cli("read a.bin")
        self.run_cli("read a.hex")
        archive = (self.folder / "a.mot").read_bytes()
        out, err = self.run_cli("read -")
        self.assertEqual((out.encode(), crc in err, self.held("a.mot"), self.held("a.bin")), (archive, True, self.before, self.before))
        self.assertEqual(self.start("--raw read -").communicate()[0], self.before)
        for name, given in (("a.mot", None), ("a.bin", None), ("a.hex", None), ("-", archive)):
            for command in "verify", "info":
                self.report(f"{command} {name}", given=given, wanted={"crc": crc})
        for size, status in ((1 << 20, 0), ((1 << 20) + 1, 4)):
            self.run_cli("info -", status, archive.ljust(size, b"\n"))
        self.run_cli("read a.mot", 4)
        self.run_cli("--device secondary read a.mot --force")
        self.assertNotEqual(self.held("a.mot"), self.before)
        verified = self.report("verify a.mot", 1)
        different = {m["address"]: [m.get(key) for key in ("setting", "found", "foundValue")] for m in verified["mismatches"]}
        self.assertEqual((verified["message"], different[2085]), (f"{len(different)} bytes differ.", ["TINT", self.before[2085], self.tint]))

    def test_draws_a_bar_and_can_be_quiet(self):
        self.assertRegex(self.run_cli("--progress=always read b.bin")[1], r"50 %, \d+ s left")
        self.assertEqual(self.run_cli("--quiet read c.bin"), ("", ""))
        terminal, stderr = pty.openpty()
        process = self.start("read d.bin", stderr=stderr)
        self.assertTrue(any(b" 50 %" in os.read(terminal, 4096) for _ in range(200)))
        process.communicate()
        self.assertRegex("".join(self.run_cli("read f.bin")), r"\AEEProm Image Saved to Disk: f.bin\nDevice: Primary EEProm, simulated\nRead: 8192 bytes\nCRC-32: [0-9A-F]+\n\Z")

    def test_writes_what_other_programs_made(self):
        image = bytes(address * 7 % 253 for address in range(8192))
        self.put("new.bin", image)
        self.put("short.bin", image[:-1])
        differing = sum(old != new for old, new in zip(self.before, image))
        planned = self.run_cli("--dry-run write new.bin")[0]
        self.assertEqual((f"of which {differing} change\n" in planned, planned.count(" becomes "), " It does not look like this set: " in planned.split("\nTo be asked: ")[1]), (True, differing, True))
        report = self.report("--yes --force write new.bin", wanted={"written": 8192, "crc": self.report("info new.bin")["crc"]})
        self.assertEqual((self.primary.read_bytes(), self.held(report["backup"]), report["file"]), (image, self.before, "new.bin"))
        self.run_cli("write --yes --force --raw -", given=self.before)
        for name in "none.bin", "short.bin":
            self.run_cli(f"--yes write {name}", 4)
        self.assertEqual(self.changed(), {})

    def test_settings_are_read_changed_and_archived(self):
        everything = self.report("get")["settings"]
        self.assertEqual((len(everything), all(s["description"] and s["value"] <= s["maximum"] for s in everything)), (72, True))
        self.assertIn({"name": "TINT", "format": "", "page": "Global", "description": "Main Tint", "value": self.tint, "maximum": 63, "address": 2085, "bits": "7-2"}, everything)
        bits = {f"{s['name']}.{s['format']}": s["bits"] for s in everything}
        self.assertEqual([bits[name] for name in ("SHPM.", "R-YR.480p", "DCOL.VGA", "IT2.")], ["7-4", "3-0", "0-0", "7-0"])
        self.assertEqual([s["format"] for s in self.report("get r-yr")["settings"]], ["480i", "480p", "1080i", "VGA"])
        self.assertIn("CB02.VGA ", self.run_cli("get cb02.vga")[0])
        wanted = {2085: 0x15 << 2 | self.before[2085] & 3, 2365: 3, 2401: 4, 2437: 3, 2473: 3}
        wanted = {a: v for a, v in wanted.items() if v != self.before[a]}
        self.report("--yes set TINT=0x15 R-YR=3 r-yr.480P=4", wanted={"written": len(wanted)})
        self.assertEqual(self.changed(), wanted)
        self.report("--yes set TINT=21", 0, r"\ANo settings were changed; The EEProm was not modified[.]\Z", {"written": 0})
        self.run_cli("read a.mot")
        changed = self.report("--image=a.mot --output=b.bin set TINT=1")
        self.report("get TINT --image b.bin", wanted={"settings": changed["settings"]})
        self.assertEqual((changed["settings"][0]["value"], changed["crc"], self.held("b.bin")[2085]), (1, self.report("info b.bin")["crc"], 4 | self.before[2085] & 3))
        self.assertIn("\nTINT            21  0-63      2085  7-2   Global   Main Tint\n", self.run_cli("get")[0])

    def test_settings_archives_are_used_as_images_are(self):
        groups = {}
        for setting in sorted((everything := self.report("get")["settings"]), key=lambda setting: setting["address"]):
            base = next((base for base, data in groups.items() if base + len(data) == setting["address"]), setting["address"])
            groups.setdefault(base, []).append(setting["value"])
        self.put("s.mot", settings_archive(groups))
        self.report("info s.mot", 0, r"\AA settings archive[.]\Z", {"settings": everything})
        change = "--image=s.mot --output=t.mot set TINT=0x3F"
        for line, status, says in (("verify s.mot", 0, r"\AThe EEProm holds what the file holds[.]\Z"), (f"--dry-run {change}", 0, "Nothing was written[.]"),
                                   (change, 0, r"\ASettings Saved to Archive Disk File: t.mot\Z"), (change, 4, "t.mot exists[.]")):
            self.report(line, status, says)
        groups[2085] = [63]
        self.assertCountEqual((self.folder / "t.mot").read_text().splitlines(), settings_archive(groups).splitlines())
        self.assertEqual(self.report("--image=t.mot get TINT")["settings"][0]["value"], 63)
        differs = {"address": 2085, "expected": 63, "found": self.tint, "setting": "TINT", "expectedValue": 63, "foundValue": self.tint}
        for line, says in ("verify t.mot", r"\A1 byte differs[.]\Z"), ("compare t.mot", r"\A1 byte differs: 1 setting[.]\Z"):
            self.report(line, 1, says, {"mismatches": [differs]})
        self.report("--yes write t.mot", wanted={"written": 72})
        self.assertEqual(self.changed(), {2085: 63 << 2 | self.before[2085] & 3})
        self.put("s.mot", settings_archive({2228: [5]}))
        for name, says in ("t.bin", "archive does not have"), ("u.mot", "only a part of the settings"):
            self.report(f"--image=s.mot --output={name} set TINT=1", 4, says)
        for line in "verify s.mot", "compare s.mot", "--yes write s.mot", "--yes write --differences s.mot", "--image=s.mot get", "set TINT=1 --yes":
            self.report(f"--device=secondary {line}", 2, "PLEASE BE CAREFUL")
        self.report("write --yes --differences s.mot", wanted={"written": 1})
        self.assertEqual(self.changed()[2228], 0x50 | self.before[2228] & 15)

    def test_names_are_those_of_the_device(self):
        self.run_cli("read a.mot")
        old = self.before[2085]
        setting, other = f"Address 2085 (TINT): expected {old >> 2}, found {old >> 2 ^ 1}", f"Address 2085: expected {old}, found {old ^ 1}"
        for flip, lines in (5, [setting, other.replace(str(old ^ 1), str(old ^ 5))]), (4, [setting]), (1, [other]):
            self.run_cli(f"--yes poke 2085={old ^ flip}")
            for command in "compare", "verify":
                self.assertEqual(re.findall("Address.*", self.run_cli(f"{command} a.mot", 1)[0]), lines)
            self.report("compare a.mot", 1, wanted={"mismatches": [{"address": 2085, "expected": old, "found": old ^ flip, "setting": "TINT",
                                                                    "expectedValue": old >> 2, "foundValue": (old ^ flip) >> 2}]})
        for device, named in ("--device=primary", True), ("--device=secondary", False):
            self.run_cli(f"{device} read held.mot --force")
            for line, status in ("peek 2085", 0), ("poke 2085=1", 6), ("--dry-run poke 2085=1", 0):
                self.assertEqual("TINT" in "".join(self.run_cli(f"{device} {line}", status, typed=b"n\n")), named, line)
            self.run_cli(f"{device} --yes poke 2085=2")
            for line in "verify held.mot", "compare held.mot device", "compare device backup":
                told = self.run_cli(f"{device} {line}", 1)[0], self.report(f"{device} {line}", 1)["mismatches"][0]
                self.assertEqual(["TINT" in told[0], "setting" in told[1]], [named, named], line)

    def test_names_of_ones_own_are_set_shown_and_kept(self):
        names = [{"name": "Mode", "device": "primary", "address": 5, "bits": [1, 2], "values": {"2": "wide"}}, {"name": "Level", "device": "primary", "address": 4096, "low": 4094, "range": [1, 999]}]
        self.put("data/tarnwell/names.json", json.dumps({"format": 1, "names": names}))
        self.put("far.json", '{"format": 1, "names": [{"name": "Far", "device": "secondary", "address": 2085, "bits": [3, 3], "text": "it", "values": {"0": "off", "1": "on"}},\n{"name": "far"}]}')
        level = self.before[4096] * 256 + self.before[4094]
        self.assertEqual([s for s in self.report("get")["settings"] if not s["page"]],
                         [{"name": "Mode", "format": "", "page": "", "description": "", "value": 0, "maximum": 3, "address": 5, "bits": "2-1", "minimum": 0},
                          {"name": "Level", "format": "", "page": "", "description": "", "value": level, "maximum": 999, "address": 4096, "bits": "15-0", "minimum": 1, "low": 4094}])
        self.run_cli("read a.bin")
        self.assertRegex(self.run_cli("--set=TV --new-set --yes set mode=WIDE level=515")[0], r"\nMode +2  0-3 +5  2-1 +wide\nLevel +515  1-999 +4096  15-0 ")
        self.assertEqual(self.changed(), {5: 5, 4096: 2, 4094: 3})
        self.assertEqual(self.run_cli("peek 5 4094")[0].split("\n")[2:4], ["   5 0x0005    5 0x05  Mode", "4094 0x0FFE    3 0x03  Level low"])
        self.assertRegex(self.run_cli("compare a.bin", 1)[0], r"3 bytes differ: 2 settings(.*\n)*Address 4094 \(Level low\): .*\nAddress 4096 \(Level high\): ")
        self.assertIn("Address 5 (Mode): expected 0, found 2 (wide)\n", self.run_cli("compare a.bin", 1)[0])
        mode = self.report("compare a.bin", 1)["mismatches"][0]
        self.assertEqual([mode[key] for key in ("setting", "expectedValue", "foundValue", "found")], ["Mode", 0, 2, 5])
        self.assertEqual(re.findall("Address.*", self.run_cli("--set=TV --setting=mode log")[0]), ["Address 5 (Mode): 0 becomes 2 (wide)"])
        self.assertEqual([b["setting"] for b in self.report("--set=TV log")["events"][0]["bytes"]], ["Mode", "Level low", "Level high"])
        self.run_cli("--image=a.bin --output=b.bin set mode=3")
        self.assertEqual((self.held("b.bin")[5], self.report("--image=b.bin get mode")["settings"][0]["value"]), (7, 3))
        self.run_cli("sheet a.html")
        self.assertIn(f"<td>Level</td><td></td><td>Primary EEProm, address 4096, high byte, low byte at 4094</td><td>515 (203)</td>", (self.folder / "a.html").read_text())
        far = self.report("--names=far.json --yes set far=on")
        self.assertEqual((far["device"], far["settings"][0]["meaning"], far["nameFaults"]), ("secondary", "on", ['far.json: line 2, names[1].device: It has to be "primary" or "secondary".']))
        self.assertEqual((self.primary.with_name("simulated-secondary.bin").read_bytes()[2085] & 8, self.run_cli("--names=far.json --device=secondary peek 2085")[0][-5:]), (8, " Far\n"))
        self.assertIn("\n  Mode\n", self.run_cli("get --help")[0])
        held = self.report("info far.json", 0, "A file of 1 name.")
        self.assertEqual((held["names"][0]["name"], len(held["nameFaults"])), ("Far", 1))
        self.assertRegex(self.run_cli("info far.json")[0], r"\n  Far: Secondary EEProm, address 2085, bit 3")
        self.put("bad.json", '{"format": 9}')
        self.assertIn("bad.json", self.report("info bad.json", 4)["message"])
        for line, reason in {"set level=0": "Level goes from 1 to 999, not to 0", "--names=far.json get far mode": "not on the same", "get levl": "Did you mean Level", "--device=secondary get": "CAREFUL"}.items():
            self.report(line, 2, reason)
        self.report("--names=none get", 4, "none does not exist")
        self.put("newer.json", '{"format": 2, "names": []}')
        self.report("--names=newer.json get", 4, "another version")

    def test_files_that_are_of_no_use_are_told_with_the_reason(self):
        self.run_cli("read a.mot")
        lines = (self.folder / "a.mot").read_text().splitlines(keepends=True)
        for content, said in (("", "is empty."), ("text\n", "is not an S-Record file."), ("".join(lines[:-1]), "ends before its last record"),
                ("".join(lines).replace("S113004", "S113104", 1), "a checksum is wrong"), (lines[0] + "x" * 66000, "has a line that is too long"),
                (lines[0] + "S5\n", "has a record that does not belong"), (record("S0", 0, b"other") + lines[1], "another program"),
                (settings_archive({2085: [63], 2228: [16]}), 'such an archive. Record 2, address 2228: "10" does not fit into SHPM, bits 4 to 7.')):
            for name, given in ("f.mot", None), ("-", content.encode()):
                self.put("f.mot", content)
                self.report(f"info {name}", 4, rf"^{name.replace('-', 'Standard input')} .*{said}", given=given)
        for line, said in {"info g.bin": "g.bin does not exist.", "info .": ". is no regular file.", "read no/f.mot": "no/f.mot could not be saved. ",
                           "info --raw -": "Standard input has 3 bytes, not 8192."}.items():
            self.report(line, 4, rf"\A{re.escape(said)}", given=b"123")
        self.put("half.mot", lines[0] + lines[1] + lines[-1])
        self.report("--yes write half.mot", 6, " values lie outside their setting's range: 480i R-YR.* bytes differ from what was last read of it. .* Say --force ", {"written": 0})
        self.assertEqual(self.changed(), {})
        self.run_cli("--yes --force write half.mot")
        self.assertEqual(self.primary.read_bytes(), self.before[:16] + b"\xff" * 8176)

    def test_bytes_are_shown_and_written(self):
        self.report("peek 0x5 4094+3 8191", wanted={"bytes": 5, "data": [{"address": a, "value": self.before[a]} for a in (5, 4094, 4095, 4096, 8191)]})
        self.report("peek 8190-8191 0x1FFF+1 0+8192", wanted={"bytes": 8195})
        self.assertEqual(self.run_cli("peek 5 2085+1")[0], "Device: Primary EEProm, simulated\nRead: 2 bytes\n   5 0x0005    1 0x01\n"
                         f"2085 0x0825  {self.before[2085]:3} 0x{self.before[2085]:02X}  TINT\n")
        self.report("--dry-run poke 5=1 6=0x7F 6=2", wanted={"written": 0, "data": [{"address": 5, "value": 1}, {"address": 6, "value": 2}]})
        kept = len(list(self.backups.iterdir()))
        self.assertEqual(self.changed(), {})
        self.assertRegex(self.run_cli("--yes poke 5=1")[0], r"\AEEP Verified OK; New Data Written to EEProm\nDevice: Primary "
                         r"EEProm, simulated\nRead: 8192 bytes\nWritten: 1 byte\nBackup: /.*\n\Z")
        self.report("--yes poke 5=1 6=0x7F 6=2", wanted={"written": 2})
        self.assertEqual((self.changed(), len(list(self.backups.iterdir()))), ({6: 2}, kept + 2))

    def test_asks_on_a_terminal_only(self):
        self.put("a.bin", bytes(8192))
        for line, question in (("poke 5=2 5=3", "the Primary EEProm:\n  Address 5: 1 becomes 3\nWrite 1 new value to the EEP? [y/N] "),
                ("poke 5=2 6=3", "\nWrite 2 new values to the EEP? [y/N] "), ("set TINT=9 CLP=3", f" (TINT): {self.before[2085] >> 2} becomes 9\n"),
                ("set TINT=9", "\nWrite settings values to EEPROM? [y/N] "), ("write --differences a.bin", " bytes to the Primary EEProm? [y/N] "),
                ("write a.bin", " bytes differ from what was last read of it.\n\nWrite to the EEProm all the same? [y/N] "),
                ("--force write a.bin", f"\n  and {sum(map(bool, self.before)) - 100} more\nWrite memory buffer to EEProm? [y/N] ")):
            for answer in (b"\n", b"yess\n", b"\x04"):
                self.assertIn(question, self.run_cli(line, 6, typed=answer)[1])
            self.run_cli(line, 6, given=b"y\n")
        self.assertEqual(self.changed(), {})
        self.assertRegex(self.run_cli("--device=secondary poke 1=1", typed=b"YES\n")[1],
                         r"B E   C A R E F U L ![^\r]*KILL your HDTV![^\r]*Secondary EEProm:\n  Address 1: .*\n.*EEP\? \[y/N\] \Z")
        self.run_cli("poke 5=7", typed=b"Y\n")
        self.assertEqual(self.changed(), {5: 7})

    def test_wrong_arguments(self):
        for line, reason in {"": "command", "raed x": "Did you mean read", "rstor": "Did you mean restore", "est x": "Did you mean set", "diff a b": "Did you mean compare",
                "read": "FILE", "read a b": "One FILE", "restore a b": "One FILE", "--bogus check": "bogus", "get tnit": "Did you mean TINT", "get itnt": "Did you mean TINT",
                "get r-yr.080i": "R-YR.480i", "get R-YR.480": "Did you mean R-YR.480i", "get TINT.VGA": "no formats", "set TINT=64": "0 to 63", "set TINT": "=", "set TINT=-1": "number",
                "peek 8192": "8191", "peek 9-8": "range", "peek 8190+3": "range", "peek 1+0": "range", "poke 1=256": "255", "poke 0x=1": "number", "--pins=11112010 check": "pin",
                "--pins=1101201 check": "eight", "--pins=11015010 check": "eight", "--address=379 check": "378", "--port=lpt check": "no port", "--trace= check": "value",
                "--wait=x check": "wait", "--quiet get": "quiet", "--quiet peek 1": "quiet", "--count=1 peek 1": "for watch", "--quiet watch": "quiet", "--count=0 watch": "1000000", "--quiet info a": "quiet", "read - --json": "output", "--image=a peek 1": "image",
                "--image=a set TINT=1": "output", "--raw read a": "raw", "--dry-run read a": "dry-run", "--device=secondary get": "PLEASE BE CAREFUL", "--port=ppdev --real-time check": "simulated",
                "--trace=no/t.vcd check": "No such file", "check x": "'x' is one argument too many.", "compare a b c": "Two to compare, not 3.", "--wait=1000001 check": "1000000",
                "--passes=101 check": "100", "--passes=0 check": "100", "--device=x check": "device", "--progress=x check": "progress", "--differences verify a": "differences", "--output=b get": "output",
                "--image=a --output=- --json set TINT=1": "standard output", "--quiet backups": "quiet", "--dry-run verify a": "dry-run", "check --json=yes": "json", "poke 5": "=", "--quiet sets": "quiet",
                "--set=a sets": "backups and log", "--new-set check": "--set=NAME", "log": "need --set", "take-back 1": "need --set", "--set=a take-back x": "number", "--since=2026 check": "for log",
                "--since=2026-1 --set=a log": "date", "--set=a --setting=tnit log": "Did you mean TINT", "--also-newer check": "take-back", "--set=a log": "--new-set", f"--new-set --set={61 * chr(97)} check": "60 letters"}.items():
            report = self.report(line, 2)
            self.assertIn(reason, report["message"], line)
            named = [word for word in line.replace("= check", "").split() if word in self.help("")[1]]
            self.assertEqual(report.get("command"), named[0] if named else None, line)
        self.report("--wait=1000000 --address=3bc --port=simulated --passes=100 check")

    def test_what_cannot_be_written_changes_nothing(self):
        def kept():
            return {path: path.read_bytes() for path in self.folder.rglob("*") if path.is_file()}
        before = kept()
        small = functools.partial(resource.setrlimit, resource.RLIMIT_FSIZE, (4096, 4096))
        for line, says in ("read a.mot", r"\Aa.mot could not be saved[.]"), ("--yes poke 5=2", "Nothing was written. Make room there"):
            self.report(line, 4, says, preexec_fn=small)
            self.assertEqual(kept(), before)
        for backup in self.backups.iterdir():
            backup.unlink()
        self.backups.rmdir()
        self.backups.touch()
        self.report("--yes poke 5=2", 4, wanted={"written": 0})
        self.assertEqual(self.changed(), {})

    def test_lost_report_does_not_stop_the_work(self):
        with open("/dev/full", "wb") as full:
            for line in "--yes --json poke 5=2", "--yes poke 5=3":
                self.run_cli(line, 4, stdout=full)
                self.assertEqual(self.changed(), {5: int(line[-1])})
        reader, writer = os.pipe()
        os.close(reader)
        self.assertEqual(self.start("--yes --progress=always poke 5=4", stdout=writer, stderr=writer).wait(), 4)
        self.assertEqual(self.changed(), {5: 4})
        subprocess.run(["sh", "-c", '"$0" --progress=always read x.bin <&- >&- 2>&-', PROGRAM], cwd=self.folder, env=self.environment, check=False)
        self.assertEqual(self.held("x.bin"), self.primary.read_bytes())
        for file in filter(Path.is_file, self.folder.rglob("*")):
            self.assertNotIn(b" 50 %", file.read_bytes(), file)

    def test_signals_end_it_at_the_next_byte(self):
        self.put("a.bin", bytes(b ^ 0xFF for b in self.before))
        for number, command in (signal.SIGINT, "write"), (signal.SIGTERM, "write"), (signal.SIGHUP, "read"):
            writes = command == "write"
            self.primary.write_bytes(self.before)
            process = self.start(f"--real-time --yes --json --progress=always --force {command} a.bin")
            while (b" 99 %" if writes else b"2 %") not in process.stderr.read1():
                pass  # the first bar of a write is that of the backup
            time.sleep(0.2 if writes else 0)
            for again in number, number, signal.SIGTERM:
                process.send_signal(again)
                time.sleep(0.001)
            out, err = process.communicate(timeout=10)
            self.assertEqual(process.returncode, 128 + number, err)
            report = json.loads(out)
            count = f" {len(self.changed())} bytes were written and not verified: repeat the command." if writes else ""
            self.assertEqual((report["result"], report["message"]), ("interrupted", f"Stopped by {number.name}.{count}"))
            self.assertIn(report["bytes"], (8192,) if writes else range(100, 8192))
            self.assertEqual(list(self.changed()), list(range(report.get("written", 0))))
            self.assertGreater(report.get("written", 1), 0)
            self.run_cli("check")

    def test_second_one_is_told_that_the_port_is_taken(self):
        first = self.start("--real-time --force --progress=always read a.mot")
        first.stderr.read1()
        first.send_signal(signal.SIGSTOP)  # however slow the machine is, it still reads
        self.report("peek 1", 3, rf"\(tarnwell-cli, process {first.pid}\)")
        waiting = self.start("--wait=30 peek 1", preexec_fn=functools.partial(signal.signal, signal.SIGHUP, signal.SIG_IGN))
        while not int(re.search(r"SigCgt:\s(\w+)", Path(f"/proc/{waiting.pid}/status").read_text())[1], 16) & 2:
            pass
        waiting.send_signal(signal.SIGHUP)  # which it was told to ignore
        waiting.send_signal(signal.SIGINT)
        self.assertEqual(waiting.wait(), 130, waiting.communicate())
        threading.Timer(0.5, first.send_signal, [signal.SIGCONT]).start()
        self.report("--wait=60 peek 5", wanted={"data": [{"address": 5, "value": 1}]})
        self.assertEqual((first.wait(60), first.communicate()[0] != b"", self.held("a.mot")), (0, True, self.before))

    def test_watches_until_it_is_stopped(self):
        tint, watches = self.before[2085], "watch 2085 0+16".split()  # another program may have the port meanwhile, which is told
        for options, status in (["--json", "--count=3"], 0), ([], 130):
            process, value = self.start([*options, *watches]), tint
            while not select.select([process.stdout], [], [], 0.3)[0] or not status and process.poll() is None:  # it has yet to read what is there
                self.run_cli(f"--yes --wait=9 poke 5={value & 15} 2085={(value := value ^ 5)}")
            process.send_signal(signal.SIGINT)
            out, err = process.communicate(timeout=10)
            self.assertEqual((process.returncode, b"Stopped by SIGINT." in err), (status, status != 0))
            if status:
                self.assertRegex(out.decode(), r"\A(2\d{3}-\d\d-\d\d \d\d:\d\d:\d\d  Address (5|2085|2085 \(TINT\)): \d+ becomes \d+\n)+\Z")
                continue
            *changes, last = [line for line in map(json.loads, out.splitlines()) if "message" not in line]
            self.assertEqual((len(changes), last["command"], last["result"]), (3, "watch", "done"))
            for change in changes:
                named = {"setting": "TINT", "fromValue": change["from"] >> 2, "toValue": change["to"] >> 2} if "setting" in change else {}
                self.assertEqual((change.pop("time")[:1], change), ("2", {"device": "primary", "address": 2085 if named else change["address"], "from": change["from"], "to": change["to"]} | named))
        self.environment["TARNWELL_FAULT"] = f"{NUMBERS['DeviceSilent']} {NUMBERS['Access']} 20000"
        process = self.start("--json watch", FAULTY)
        told = json.loads(process.stdout.readline())
        self.assertRegex(told["message"], r"\AThere is an I2C bus or Interface Hardware Problem[.] .*It is tried again[.]\Z")
        process.terminate()
        self.assertEqual(process.communicate()[1].decode(), f"tarnwell-cli: {told['message']}\ntarnwell-cli: Stopped by SIGTERM.\n")
        self.environment["TARNWELL_FAULT"] = self.environment["TARNWELL_FAULT"].replace("20000", "0")
        self.report("watch", 3, "Hardware Problem", program=FAULTY)

    def test_faults(self):
        self.put("a.bin", self.before)
        self.report("check", wanted={"devices": {"primary": True, "secondary": True}})
        self.assertEqual(self.run_cli("--device=secondary check")[0], "The bus is in order.\nDevice: Secondary EEProm, simulated\nPrimary EEProm: answers\nSecondary EEProm: answers\n")
        for option, cause in {"--port=ppdev": "parport|ppdev", "--no-television": "television has power", "--pins=01112010": "swapped",
                              "--pins=21012010": "SDA stays high", "--pins=11212010": "SCL stays high"}.items():
            self.report(f"check {option}", 3, cause, {"devices": {"primary": False, "secondary": False}})
            self.assertRegex(self.run_cli(f"check {option}", 3)[1], cause)
        for fault, line, status, said in (("AdapterGone Access 0", "check", 3, "no adapter"), ("LinesJoined Access 0", "check", 3, "joined"),
                ("SdaStuckLow Access 0", "check", 3, "SDA"), ("InputsInverted Access 0", "check", 3, "SCL and SDA stay low"), ("DeviceSilent Access 0", "check", 3, ""),
                ("SclStuckLow Access 90000", "read x.mot", 3, "Hardware Problem"), ("DeviceSilent Access 9000", "get", 3, r"Hardware Problem[.] Find the cause with 'tarnwell-cli check'[.]\Z"),
                ("PortFails Access 40000", "--yes poke 7=1", 3, r"Problem[.] The simulated port has failed[.] Plug it in again and repeat the command[.]\Z"),
                ("LostWrite WriteCycle 2", "--yes poke 7=1 2085=3", 5, "not programmed correctly"), ("WrongWrite WriteCycle 8192", "--yes write a.bin", 5, "not programmed correctly"),
                ("DeviceSilent WriteCycle 2", "--yes write a.bin", 3, " 1 byte was written and"), ("DeviceSilent WriteCycle 1", "--yes write --differences a.bin", 3, "it writes the rest"),
                ("LostWrite WriteCycle 2", "--yes write --differences a.bin", 5, "not programmed correctly"), ("DeviceSilent Access 0", "--device=secondary check", 0, "in order"),
                ("FlippedBit Read 1", "--passes=2 read x.mot", 6, "1 byte did not read the same twice"), ("LostWrite WriteCycle 0", "--yes set TINT=9", 5, "settings values failed")):
            self.environment["TARNWELL_FAULT"] = " ".join(NUMBERS.get(word, word) for word in fault.split())
            report = self.report(line, status, said, program=FAULTY)
            mismatches = report.get("mismatches", [])
            self.assertEqual((len(mismatches), (self.folder / "x.mot").exists()), (1 if status == 5 else 0, False), fault)
            if "Silent Access 0" in fault:
                self.assertEqual(report["devices"], {"primary": False, "secondary": True})
            if "2085=3" in line:
                self.assertEqual((mismatches[0]["setting"], mismatches[0]["expected"]), ("TINT", 3))
                self.assertIn("(TINT): expected 3, found", self.run_cli(line, 5, program=FAULTY)[0])
        self.primary.write_bytes(b"\xff" * 8192)
        self.run_cli("--yes read b.bin", 6)
        self.assertFalse((self.folder / "b.bin").exists())
        self.assertIn("Every byte reads as FF. Use this reading?", self.run_cli("--passes=2 read b.bin", typed=b"y\n")[1])
        self.run_cli("--force read b.bin")

    def test_takes_wiring_and_port_from_the_options_and_leaves_them(self):
        options = self.folder / "config/Halvdorn/Tarnwell.ini"
        self.assertFalse(options.parent.exists())
        options.parent.mkdir(parents=True)
        kept = "[Startup]\nMainTop=1\n[ProgPort]\nPortAddr=888\nPortOpts="
        options.write_text(f"{kept}21012010\n")
        self.run_cli("check", 3)
        self.run_cli("--pins=11012010 --address=3bc check")
        self.assertEqual(options.read_text(), f"{kept}21012010\n")
        options.write_text(f"{kept}11012010\nI2CBus=No such|/dev/i2c-9\n")
        self.report("check", 3, "The I2C bus No such is not there[.]", {"port": "i2c:/dev/i2c-9", "simulated": False})
        for option in "--trace=a.vcd", "--pins=11012010", "--address=378", "--real-time", "--no-television":
            self.report(f"{option} check", 2, rf"^{option.split('=')[0]} needs a parallel port: .*the I2C bus No such is used")
            self.report(f"{option} --port=i2c:x check", 2, "needs a parallel port[.]")
        self.report("--port=auto check", wanted={"simulated": True})
        self.report("--port=i2c:x check", 3, "is not there")

    def test_works_over_a_bus_of_the_kernel(self):
        eeprom = self.folder / "eeprom.bin"
        other = bytes(byte ^ 0xFF for byte in self.before)
        self.put("other.bin", other)

        def on_bus(fault, line, status=0, says="", held=self.before, bus="/dev/i2c-7", **wanted):
            eeprom.write_bytes(held)
            self.environment["TARNWELL_FAULT"] = f"I2c {fault} 0"
            return self.report([f"--port=i2c:{bus}", *line.split()], status, says, wanted, program=FAULTY)

        on_bus("plain", "--yes poke 5=77", bus="Test adapter", port="i2c:/dev/i2c-7", simulated=False, written=1)
        self.assertEqual([at for at in range(8192) if eeprom.read_bytes()[at] != self.before[at]], [5])
        on_bus("plain", "--yes --force write --differences other.bin")
        self.assertEqual(eeprom.read_bytes(), other)
        on_bus("twice", "check", 3, "named Test adapter: /dev/i2c-7, /dev/i2c-9[.]", bus="Test adapter")
        on_bus("twice", "check", devices={"primary": True, "secondary": False})
        for fault, held, question in ("plain", b"\xff" * 8191 + b"1", "Use it all the same?"), ("blind", self.before, "Is a 24C64 connected?"):
            for line, status, says in (("check", 0, ""), ("--yes poke 5=77", 6, "Nothing was written. Say --trust-device"),
                                       ("--force peek 5", 6, "Nothing was written. Say --trust-device"), ("--trust-device poke 5=77", 6, "")):
                on_bus(fault, line, status, says, held)
                self.assertEqual(eeprom.read_bytes(), held)
            for answer, status in (b"n\n", 6), (b"y\n", 0):
                self.assertIn(question, self.run_cli("--port=i2c:/dev/i2c-7 peek 5", status, typed=answer, program=FAULTY)[1])
            on_bus(fault, "--trust-device --yes poke 5=77", held=held)
            self.assertEqual(eeprom.read_bytes()[5], 77)
        on_bus("locked 150", "peek 5", 3, "in use by another program")
        on_bus("locked 150", "--wait=30 peek 5")
        on_bus("locked 250", "--wait=1 peek 5", 3, "in use by another program")  # two claims, of 95 looks each
        for fault, status, unconfirmed, says in ("signal 90", 143, 0, "SIGTERM"), ("unplugged 90", 3, 32, "The adapter is gone"):
            written = on_bus(fault, "--yes --force write other.bin", status, says)["written"] + unconfirmed
            self.assertGreater(written, 1)
            self.assertEqual(eeprom.read_bytes(), other[:written] + self.before[written:])

    def test_compares_restores_and_writes_only_differences(self):
        self.run_cli("read a.mot")
        self.report("compare a.mot", 0, r"\ANo differences[.]\Z")
        self.run_cli("--yes set R-YR.480p=7")
        kept = self.report("backups")["backups"]
        self.assertEqual([(backup["number"], Path(backup["file"]).is_file()) for backup in kept], [(1, True), (2, True)])
        self.assertRegex(self.run_cli("backups")[0], rf"\ADevice: Primary EEProm\nbackup:1  {kept[0]['kept']}  /.*-Pri.*\nbackup:2  2\d{{3}}-\d\d-\d\d \d\d:\d\d:\d\d  .*\n\Z")
        self.assertEqual(self.report("compare backup", 1, r"\A1 byte differs: 1 setting[.]\Z")["mismatches"][0]["setting"], "R-YR.480p")
        self.report("compare a.mot backup:1")
        for wrong in "backup:0", "backup:3", "backup:1x", "backup:":
            self.run_cli(f"restore --yes {wrong}", 4)
        self.run_cli("restore", 6)
        self.assertIn("Restore 1 byte of the Primary EEProm? [y/N]", self.run_cli("restore a.mot", typed=b"y\n")[1])
        self.assertEqual(self.primary.read_bytes(), self.before)
        self.run_cli("--yes poke 5=3 6=4")
        for line in "write --dry-run --differences a.mot", "--dry-run restore a.mot":
            self.report(line, wanted={"data": [{"address": a, "value": self.before[a]} for a in (5, 6)], "written": 0})
        for says, written in (r"\AEEP Verified OK; 2 Bytes Written\Z", 2), (r"\AThe EEProm already holds what is to be written[.]\Z", 0):
            self.report("write --yes --differences a.mot", 0, says, {"written": written})
        self.assertEqual(self.primary.read_bytes(), self.before)
        count = len(self.report("backups")["backups"])
        for _ in range(2):
            self.run_cli("--yes poke 5=7")
            self.report("--yes restore a.mot", wanted={"written": 1})
        self.assertEqual(len(self.report("backups")["backups"]), count + 3, "one was kept before")
        self.report("--device=secondary backups", wanted={"backups": [], "message": "No backup is kept."})
        self.put("s.mot", settings_archive({2228: [self.before[2228] >> 4 ^ 1]}))
        self.assertEqual(self.report("compare a.mot s.mot", 1)["mismatches"][0]["foundValue"], self.before[2228] >> 4 ^ 1)
        self.run_cli("--device=secondary write --yes --differences a.mot")

    def test_keeps_the_record_of_a_set_and_takes_back(self):
        self.run_cli("--set=TV --new-set --yes set TINT=%d" % (self.tint ^ 1))
        self.run_cli("--set=tv --yes poke 5=77 6=1")
        self.assertIn("Did you mean TV?", self.run_cli("--set=vt log", 2)[1])
        log = self.report("--set=TV log")
        self.assertEqual([(event["number"], event["event"], event.get("command"), event.get("end")) for event in log["events"]],
                         [(3, "write", "poke", "verified"), (2, "write", "set", "verified"), (1, "read", None, None)])
        self.assertEqual(log["events"][0]["bytes"][0], {"address": 5, "from": 1, "to": 77, "held": 77})
        self.assertEqual(log["events"][0]["port"], "the simulated television")
        tint = self.run_cli("--set=TV --setting=TINT --since=2026 log")[0]
        self.assertRegex(tint, rf"\ASet: TV\n   2  20\d\d-\d\d-\d\d \d\d:\d\d:\d\d  set, primary, verified, 1 byte\n      Address 2085 \(TINT\): {self.tint} becomes {self.tint ^ 1}\n\Z")
        self.report("--set=TV --since=3000 log", says="Nothing of that", wanted={"events": []})
        with (self.folder / "state/tarnwell/sets/TV/history.jsonl").open("a") as history:
            history.write('{"time":"')
        self.run_cli("--set=TV --yes poke 6=2")
        self.report("--set=TV log", wanted={"skipped": 1})
        for events, says in ("9", "Event 9 is not"), ("4", "Event 4 is not"):
            self.assertIn(says, self.run_cli(f"--set=TV take-back {events}", 2)[1])
        self.assertIn("--device=primary", self.run_cli("--set=TV --device=secondary take-back 3", 2)[1])
        self.report("--set=TV --dry-run take-back 2 3", wanted={"newer": [6], "data": [{"address": 5, "value": 1}, {"address": 2085, "value": self.before[2085]}]})
        self.report("--set=TV --yes take-back 2 3 --also-newer", wanted={"written": 3})
        self.assertEqual(self.changed(), {})
        self.assertEqual(len(self.report("--set=TV backups")["backups"]), 4)
        self.run_cli("--set=TV restore --yes backup:2")
        self.assertEqual(self.changed(), {5: 77, 6: 1, 2085: (self.tint ^ 1) << 2 | self.before[2085] & 3})
        self.report("--set=TV sheet s.html", says=r"Sheet Saved: s.html")
        sheet = (self.folder / "s.html").read_text()
        was, now = (f"{value} ({value:X})" for value in (self.tint, self.tint ^ 1))
        self.assertIn("<h1>TV</h1>", sheet)
        self.assertIn(f"<td>TINT</td><td>Main Tint</td><td><b>{now}</b> was {was}</td>", sheet)
        self.assertEqual(len(re.findall(r"\d+ \([0-9A-F]+\)", sheet)), 72 + 1)
        self.run_cli("--set=TV sheet s.html", 4)
        self.put("v.mot", settings_archive({2228: [1]}))
        self.report("--image=v.mot sheet v.html", 4, "holds settings")
        self.report("--image=i.mot sheet i.PDF", 2, "name it .html")
        self.run_cli("read --force i.mot")
        self.assertEqual(self.report("--image=i.mot sheet i.html")["crc"], self.report("info i.mot")["crc"])
        self.assertNotIn("<b>", (self.folder / "i.html").read_text())
        refused = self.report("--set=Other --new-set --yes poke 5=1", 6, "looks like TV, not like Other", {"looksLike": "This looks like TV, not like Other."})
        self.assertNotIn("backup", refused)
        self.run_cli("--set=Other --yes --force poke 5=1")
        self.put("state/tarnwell/sets/Other/set.json", "{")
        sets = self.report("sets")
        self.assertEqual(([entry["name"] for entry in sets["sets"]], len(sets["damaged"])), (["TV"], 1))
        self.assertRegex(self.run_cli("sets")[0], r"\ATV, last read 20[^,]*, last written 20.*\n.*set.json is damaged")

    @functools.cache
    def help(self, command):
        """The forms of the options, the commands, and all of it."""
        text = self.run_cli(f"{command} --help")[0]
        options = dict(re.findall(r"^  (?:-\w,)?(--[a-z-]+)(?: (\S+))?", text, re.MULTILINE))
        return options, re.findall(r"^  ([a-z][a-z-]*)  ", text, re.MULTILINE), text

    def test_help_man_page_manual_and_completion_know_the_same(self):
        options, commands, _ = self.help("")
        self.assertGreaterEqual((len(commands), len(options)), (12, 22))
        forms = {re.search(r"\[OPTIONS\] (.*)", self.help(command)[2])[1].replace(" ", "").lower() for command in commands}
        man = (SOURCES / "packaging/tarnwell-cli.1.in").read_text()
        heads = {section: {re.sub(r'^\.[BIR]+ |\\f.|\\(?=-)|[" ]', "", head).lower().replace("-h,", "").replace("-v,", "") for head in re.findall(r"\.TP\n(.*)", part)}
                 for section, part in re.findall(r"^\.SH ([A-Z ]+)\n(.*?)(?=^\.SH|\Z)", man, re.MULTILINE | re.DOTALL)}
        named = {f"{name}={form.lower()}" if form else name for name, form in options.items()}
        self.assertEqual(heads["COMMANDS"] | {name for head in heads["OPTIONS"] for name in head.split(",")}, forms | named)
        page = dict(re.findall(r'<h2 id="(\w+)">(.*?)(?=<h2|\Z)', (SOURCES / "manual/pages/tarnwell-cli.html").read_text(), re.DOTALL))
        self.assertEqual({form.replace(" ", "").lower() for form in re.findall(r"<tr><td><code>(.*?)</code></td>", page["commands"])}, forms)
        self.assertLessEqual(set(options), set(re.findall(r"<code>(--[a-z-]+)", page["options"])))
        self.assertEqual(re.findall(r"<tr><td><code>(\w+)</code>", page["json"]), list(KEYS))
        self.assertRegex(self.run_cli("--version")[0], r"\Atarnwell-cli \d+\.\d+\.\d+\n\Z")
        self.put("an.mot", "")
        self.put("far.json", '{"format": 1, "names": [{"name": "Far", "device": "primary", "address": 5}]}')
        files = {path.name for path in self.folder.iterdir()}
        names = {name.rstrip(".") for s in self.report("get")["settings"] for name in (s["name"], f"{s['name']}.{s['format']}")}
        for typed, wanted in {"": set(commands), "-": {f"{name}{'=' if form else ''}" for name, form in options.items()}, "--device=": {"primary", "secondary"},
                              "--progress=a": {"auto", "always"}, "--port=": {"auto", "ppdev", "devport", "simulated", "i2c:"}, "--passes=": set(), "--image=": files,
                              "read ": files, "info a": {"an.mot"}, "compare ": files | {"device", "backup"}, "--yes restore ": files | {"backup"}, "peek ": set(),
                              "get ": names, "--names=far.json get Fa": {"Far"}, "check --pro": {"--progress="}, "set CLP": {"CLP", "CLP.480i", "CLP.1080i"}}.items():
            words = re.findall("=|[^ =]+", typed) + ([""] if not typed or typed[-1] == " " else [])
            script = f'source {SOURCES}/packaging/tarnwell-cli.bash; compopt() {{ :; }}; COMP_WORDS=({PROGRAM} "$@"); COMP_CWORD=$#; _tarnwell_cli; printf "%s\\n" "${{COMPREPLY[@]}}"'
            offered = subprocess.run(["bash", "-c", script, "", *words], check=True, stdout=subprocess.PIPE, text=True, cwd=self.folder, env=self.environment).stdout.split()
            self.assertCountEqual(offered, wanted, typed)

    @unittest.skipUnless(WINDOW, "no program with a window")
    def test_window_is_told_what_is_wrong_with_its_arguments(self):
        for name in "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM":
            self.environment.pop(name, None)
        self.environment["XDG_RUNTIME_DIR"] = self.environment["HOME"]
        image = os.fsencode(self.folder) + b"/im\xe4ge\n.mot"  # not UTF-8
        Path(os.fsdecode(image)).write_text(record("S0", 0, b"Halv Dorn Tarnwell 2\2\2Data File") + "S9030000FC\n")
        self.put("archive.mot", "S9030000FC\r\n")
        os.mkfifo(self.folder / "pipe")
        hint = ". Try 'tarnwell --help'"
        wrong = {"--bogus": f"Unknown option 'bogus'{hint}", "-x": f"Unknown option 'x'{hint}", "--port": f"Missing value after '--port'{hint}",
                 "--trace=": f"Missing value after '--trace'{hint}", "--port=lpt": f"There is no port 'lpt'{hint}", "--real-time=1": f"Unexpected value after '--real-time'{hint}",
                 "archive.mot archive.mot": f"One FILE at most{hint}", "--port=simulated": "There is no display to show the window on", ".": ".: this is no regular file",
                 "no\nwhere.mot": "no?where.mot: No such file or directory", "-- pipe": "pipe: this is no regular file", "-- -display": "-display: No such file or directory",
                 "--trace=missing/bus.vcd": "missing/bus.vcd: No such file or directory", "--trace archive.mot": "archive.mot: this file exists and is no VCD",
                 **{f"--port={port} --{option}": f"--no-television and --real-time need the simulated port{hint}" for port in ("ppdev", "devport") for option in ("real-time", "no-television")},
                 **{f"-{option} value gone": "gone: No such file or directory" for option in "display fontengine geometry icon name platform platformpluginpath platformtheme plugin "
                    "qwindowgeometry qwindowicon qwindowtitle session style stylesheet title visual".split()},
                 **{f"--{option} gone": "gone: No such file or directory" for option in ("dograb", "nograb", "reverse", "widgetcount", "style=fusion", "stylesheet=value")}}
        for line, said in wrong.items():
            process = self.start(line.split(" "), program=WINDOW)
            self.assertEqual((*process.communicate(timeout=300), process.returncode), (b"", f"tarnwell: {said}.\n".encode(), 2), line)
        self.assertIn(b"--trace", self.start("--help", program=WINDOW).communicate()[0])
        self.assertRegex(self.start("--version", program=WINDOW).communicate()[0], rb"\Atarnwell \d+\.\d+\.\d+\n\Z")
        process = self.start(["-platform", "offscreen", "--trace=bus.vcd", "-style", "fusion", "--port=simulated", "--real-time", image], program=WINDOW)
        while not (trace := self.folder / "bus.vcd").exists() or not trace.stat().st_size:  # which it has with the bus
            self.assertIsNone(process.poll())
            time.sleep(0.05)
        process.terminate()
        self.assertEqual((process.communicate()[1].splitlines()[-1], process.returncode, trace.read_bytes()[:5]), (b"tarnwell: stopped by SIGTERM.", 143, b"$date"))

    def test_loader_starts_nothing_that_stands_before_the_folders_of_the_system(self):
        (self.folder / "parport0").touch()
        for name in "zenity", "kdialog", "xmessage", "notify-send":
            self.put(name, '#!/bin/sh\n: >"$0.taken"\n')
            (self.folder / name).chmod(0o755)
        self.environment |= {"DISPLAY": ":none", "DBUS_SESSION_BUS_ADDRESS": "none:", "TARNWELL_DEV": str(self.folder), "PATH": f"{self.folder}:{os.environ['PATH']}"}
        self.start("", program=SOURCES / "src/loaddrv/loaddrv").communicate(timeout=60)
        self.assertEqual(list(self.folder.glob("*.taken")), [])


if __name__ == "__main__":
    for number in signal.SIGINT, signal.SIGHUP:
        signal.signal(number, signal.SIG_DFL)  # ignored by what a shell starts in the background
    unittest.main(verbosity=2)
