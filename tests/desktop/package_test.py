#!/usr/bin/python3
"""Makes the Debian packages, checks them, installs them in folders of their own, drives what they
installed, and removes them.

    tests/desktop/session /usr/bin/python3 package_test.py BUILD-FOLDER
"""

import configparser
import filecmp
import gzip
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from urllib.parse import unquote, urlparse
from xml.etree import ElementTree

import driver

BUILD = Path(sys.argv.pop(1)).resolve()
SOURCES = Path(__file__).resolve().parents[2]
NAMES = ("tarnwell", "tarnwell-cli")
IMAGE_HEADER = "S021000048616C7620446F726E205461726E77656C6C203202024461746146696C65E7"
SYSTEM_FOLDERS = "/usr/local/sbin:/usr/sbin:/sbin"  # dpkg wants them on the path


def run(*command, **environment):
    """What the command says, which must succeed."""
    result = subprocess.run([str(word) for word in command], text=True, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, env={**os.environ, **environment})
    assert result.returncode == 0, f"{command} ended with {result.returncode}:\n{result.stdout}"
    return result.stdout.strip()


def make_packages(folder):
    """The packages' files by their names."""
    made = BUILD / "packages" / run("dpkg", "--print-architecture")
    run(SOURCES / "packaging/make", made)
    shutil.copytree(made, folder, ignore=shutil.ignore_patterns("tarnwell"))
    return {path.name.split("_")[0]: path for path in folder.glob("*.deb")}


def files_below(folder):
    """All files, links and folders below the folder, but not dpkg's own."""
    paths = {str(path.relative_to(folder)) for path in folder.rglob("*")}
    return {path for path in paths if not path.startswith("var/lib/dpkg")}


def dpkg(root, *arguments):
    for folder in ("info", "updates", "triggers"):
        (root / "var/lib/dpkg" / folder).mkdir(parents=True, exist_ok=True)
    (root / "var/lib/dpkg/status").touch()
    return run("fakeroot", "dpkg", f"--root={root}", "--force-depends",
               "--force-script-chrootless", "--log=/dev/null", *arguments,
               PATH=f"{os.environ['PATH']}:{SYSTEM_FOLDERS}")


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.scratch = Path(scratch.name)
        cls.made = make_packages(cls.scratch / "first")
        cls.packages = {name: cls.made[name] for name in NAMES}
        cls.package = cls.packages["tarnwell"]
        (cls.scratch / "unpacked").mkdir()
        cls.roots = {name: cls.scratch / "unpacked" / name for name in cls.packages}
        for name, package in cls.packages.items():
            run("dpkg-deb", "-x", package, cls.roots[name])
        cls.root = cls.roots["tarnwell"]
        cls.share = cls.root / "usr/share"

    def field(self, name, package="tarnwell"):
        return run("dpkg-deb", "-f", self.packages[package], name)

    def test_are_as_debian_wants_them_and_the_same_when_made_again(self):
        architecture = run("dpkg", "--print-architecture")
        self.assertEqual({package.name for package in self.made.values()},
                         {f"{name}{kind}_{self.field('Version')}_{architecture}.deb" for name in NAMES for kind in ("", "-dbgsym")})
        self.assertNotRegex(self.field("Depends", "tarnwell-cli"), "(?i)qt|x11|xcb|gl|font")
        for name, again in make_packages(self.scratch / "second").items():
            self.assertTrue(filecmp.cmp(self.made[name], again, shallow=False), name)

    def test_desktop_finds_the_program(self):
        entry = self.share / "applications/tarnwell.desktop"
        self.assertEqual(run("desktop-file-validate", entry), "")
        run("appstreamcli", "validate", "--no-net", *self.share.glob("metainfo/*"))
        parser = configparser.ConfigParser(interpolation=None)
        parser.read(entry)
        values = parser["Desktop Entry"]
        self.assertTrue((self.root / "usr/bin" / values["Exec"].split()[0]).is_file())
        icon = self.share / f"icons/hicolor/scalable/apps/{values['Icon']}.svg"
        self.assertEqual(ElementTree.parse(icon).getroot().tag, "{http://www.w3.org/2000/svg}svg")

    def test_loads_modules_and_gives_access_to_the_buses_of_known_adapters_only(self):
        configuration = (self.root / "usr/lib/modules-load.d/tarnwell.conf").read_text()
        self.assertEqual(re.findall("^[^#].*", configuration, re.MULTILINE),
                         ["parport_pc", "ppdev", "i2c-dev"])
        for name, root in self.roots.items():
            rules = (root / f"usr/lib/udev/rules.d/70-{name}.rules").read_text()
            [rule] = re.findall('^.*SUBSYSTEM=="i2c-dev".*$', rules, re.MULTILINE)
            self.assertRegex(rule, r'^ACTION!="remove", .*, DRIVERS=="[a-z0-9_|-]*\bcp2112\b[a-z0-9_|-]*", TAG\+="uaccess"$')

    def test_archives_are_known_and_opened(self):
        root = self.scratch / "desktop"
        run("dpkg-deb", "-x", self.package, root)
        share = root / "usr/share"
        run("update-mime-database", share / "mime")
        run("update-desktop-database", share / "applications")
        folders = {"XDG_DATA_DIRS": f"{share}:/usr/share",
                   "PATH": f"{root}/usr/bin:{os.environ['PATH']}"}
        for name, content in (("by-name.mot", "S1"), ("by-content", IMAGE_HEADER)):
            file = self.scratch / name
            file.write_text(content)
            self.assertIn("text/x-srecord",
                          run("gio", "info", "-a", "standard::content-type", file, **folders), name)
        self.assertIn("tarnwell.desktop", run("gio", "mime", "text/x-srecord", **folders))

    def test_manual_page_is_well_formed(self):
        for name, root in self.roots.items():
            page = root / f"usr/share/man/man1/{name}.1.gz"
            self.assertEqual(run("sh", "-c", 'man --warnings -l -Tutf8 -Z "$0" >/dev/null', page), "")
            described = run("man", "-l", page, MANWIDTH="200")
            help_text = run(root / "usr/bin" / name, "--help", DISPLAY="")
            offered = re.findall(r"^ .*?(--[a-z-]+)", help_text, re.MULTILINE)
            self.assertIn("--port", offered)
            self.assertEqual([option for option in offered if option not in described], [], name)

    def test_versions_agree(self):
        version = self.field("Version")
        changelog = gzip.decompress((self.share / "doc/tarnwell/changelog.gz").read_bytes())
        [metainfo] = self.share.glob("metainfo/*")
        told = [re.match(r"tarnwell \((.*?)\)", changelog.decode())[1],
                ElementTree.parse(metainfo).find("releases/release").get("version"),
                *(run(root / "usr/bin" / name, "--version", DISPLAY="").removeprefix(f"{name} ")
                  for name, root in self.roots.items())]
        self.assertEqual(told, [version] * 4)

    def test_installs_below_any_prefix(self):
        run("cmake", "--install", BUILD, "--prefix", "/opt/tv", DESTDIR=str(self.scratch / "dest"))
        installed = self.scratch / "dest/opt/tv"
        packed = set.union(*(files_below(root / "usr") for root in self.roots.values()))
        self.assertEqual(files_below(installed), {re.sub(r"(/man1/.*)\.gz", r"\1", path) for path in packed if not re.match("share/(doc|lintian)", path)})
        for name in NAMES:
            self.assertLessEqual({f"share/doc/{name}/copyright", f"share/doc/{name}/changelog.gz"}, packed)
        run(installed / "bin/tarnwell", "--version")
        (self.scratch / "parport0").touch()
        self.assertIn("is ready", run(installed / "libexec/tarnwell/loaddrv",
                                      TARNWELL_DEV=str(self.scratch), DISPLAY=""))

    def test_is_driven_and_leaves_nothing(self):
        root = self.scratch / "installed"
        root.mkdir()
        dpkg(root, "--install", *self.packages.values())
        self.drive(root / "usr/bin/tarnwell")
        dpkg(root, "--purge", "tarnwell")
        self.assertFalse((root / "usr/bin/tarnwell").exists())
        run(root / "usr/bin/tarnwell-cli", "--port=simulated", "check", DISPLAY="")
        dpkg(root, "--purge", "tarnwell-cli")
        self.assertLessEqual(files_below(root), {"var", "var/lib"})
        self.drive(self.root / "usr/bin/tarnwell")  # where it is unpacked

    def drive(self, path):
        """Reads the EEPROM, opens the help, and opens the same bytes as an archive."""
        device = Path(os.environ["XDG_DATA_HOME"]) / "tarnwell/simulated-primary.bin"
        device.parent.mkdir(exist_ok=True)
        device.write_bytes(bytes(address % 251 for address in range(8192)))
        with driver.Program(path, "--port=simulated", env=self.with_viewer()) as program:
            program.menu("I2C Operations", "Read Entire EEP")
            program.wait_for_status("Primary EEProm Data Read Into Memory")
            crc = program.panel("CRC32")
            for item in ("Help Topics", "Release History"):
                program.menu("Help", item)
                driver.wait_for(f"the viewer for {item}", self.opened.exists)
                file = Path(unquote(urlparse(self.opened.read_text().strip()).path))
                self.opened.unlink()
                self.assertTrue(file.is_file(), file)
                self.assertIn(path.resolve().parent, file.parents)
            program.menu("Archive File", "Exit")
            self.assertEqual(program.process.wait(driver.TIMEOUT), 0)

        archive = self.scratch / "read.mot"
        records = run("srec_cat", device, "-binary", "-o", "-", "-motorola",
                      "-address-length=2", "-disable=header", "-disable=data-count")
        archive.write_text(f"{IMAGE_HEADER}\n{records}\n")
        with driver.Program(path, "--port=simulated", archive) as program:
            driver.wait_for(f"CRC32 {crc}", lambda: program.panel("CRC32") == crc)

    def with_viewer(self):  # one that tells which file it was given
        self.opened = self.scratch / "opened"
        viewer = self.scratch / "bin/xdg-open"
        viewer.parent.mkdir(exist_ok=True)
        viewer.write_text(f'#!/bin/sh\necho "$1" >"{self.opened}.part"\n'
                          f'mv "{self.opened}.part" "{self.opened}"\n')
        viewer.chmod(0o755)
        return {**os.environ, "PATH": f"{viewer.parent}:{os.environ['PATH']}"}


if __name__ == "__main__":
    unittest.main(verbosity=2)
