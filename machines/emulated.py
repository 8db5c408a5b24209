"""An emulated computer with Debian's kernel, and what is at its ports and buses."""

import base64
import os
import pathlib
import re
import select
import socket
import subprocess
import time

# What no step may make the kernel say.
FAULTS = re.compile(r"Oops|BUG:|WARNING:|Call Trace|Kernel panic|general protection|"
                    r"unable to handle|soft lockup|blocked for more than|stalls? on CPU")


# What an emulator needs of these in its arguments.
EEPROMS = {"primary": 0x50, "secondary": 0x51}
USB = "socket,id=usb,path={folder}/usb"

ADAPTER = ["-device", "qemu-xhci", "-chardev", USB, "-device", "usb-redir,chardev=usb"]

# By Debian's name of the processor: the emulator with what the step does not choose, and what the
# kernel is told. The agent talks by a port that is made for it, or by a board's first serial line, which would wait
# for a memory controller that the emulator does not have.
VIRTIO = ["-device", "virtio-serial", "-device", "virtserialport,chardev=agent", "-serial", "file:{console}"]
BOARD = [word for name, address in EEPROMS.items() for word in (
    "-drive", "if=none,id=%s,format=raw,file={folder}/%s" % (name, name),
    "-device", f"at24c-eeprom,bus=i2c-bus.0,address={address},rom-size=8192,drive={name}")]
BOARD += ["-device", "i2c-ddc,bus=i2c-bus.1,address=0x50"]
EMULATORS = {
    "amd64": (["qemu-system-x86_64", "-accel", "tcg", "-m", "256", "-no-user-config", *VIRTIO],
              "console=ttyS0 tsc=unstable"),
    "armhf": (["qemu-system-arm", "-machine", "sabrelite", "-smp", "1", "-m", "512", "-serial", "chardev:agent",
               "-serial", "file:{console}", *BOARD], "console=ttymxc1 agent=/dev/ttymxc0 initcall_blacklist=sdma_driver_init"),
    "arm64": (["qemu-system-aarch64", "-machine", "virt", "-cpu", "cortex-a53", "-m", "512", *VIRTIO, *ADAPTER],
              "console=ttyAMA0"),
}
# What it has as well where Debian is installed, whose disk is as before each time; the second holds the packages.
INSTALLED = ["-m", "1024", "-smp", "2", "-action", "reboot=reset",
             "-drive", "if=virtio,format=raw,snapshot=on,file={disk}",
             "-drive", "if=virtio,format=raw,readonly=on,file={packages}"]


class Failed(Exception):
    """What a step found; the text tells it."""


class Machine:
    """Started at once; ended by its process number. `seconds` is the limit of all of its life."""

    def __init__(self, folder, architecture, ground, built, arguments, seconds, installed=None):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.deadline = time.monotonic() + seconds
        self.console = self.folder / "console"
        self.looked = 0
        self.pardoned = None
        self.buffer = b""
        for stale in ("wire", "console", "adapter", "usb", "emulator"):
            (self.folder / stale).unlink(missing_ok=True)
        for name in EEPROMS:
            (self.folder / name).write_bytes(os.urandom(8192))
        self.adapter = None
        emulator, told = EMULATORS[architecture]
        if USB in [*emulator, *arguments]:
            self.adapter = self.start([built / "usb-adapter", self.folder / "usb", self.folder / "adapter"])
            try:
                self.await_file("usb")
            except Failed:
                self.adapter.kill()
                raise
        here, there = socket.socketpair()
        self.agent = here
        if installed:
            told += " disk=/dev/vda"
            arguments = [word.format(**vars(installed)) for word in INSTALLED] + arguments
        command = [
            *emulator, "-nodefaults", "-no-reboot", "-display", "none", "-kernel", ground.kernel,
            "-initrd", ground.initramfs, "-append", told + " panic=-1",
            "-chardev", f"socket,id=agent,fd={there.fileno()}",
            *(["-dtb", ground.board] if ground.board else []), *arguments]
        self.process = self.start(
            [str(word).format(folder=self.folder, console=self.console) for word in command],
            pass_fds=[there.fileno()],
            env=dict(os.environ, LD_PRELOAD=str(built / "tarnwell_wire.so"),
                     TARNWELL_WIRE=str(self.folder / "wire")))
        there.close()

    def start(self, command, **options):
        with open(self.folder / "emulator", "a", encoding="utf-8") as log:
            return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, **options)

    def await_file(self, name):
        while not (self.folder / name).exists():
            if time.monotonic() > self.deadline:
                raise Failed(f"{name} does not come")
            time.sleep(0.01)

    def __enter__(self):
        try:
            self.await_start()
        except Failed:
            self.end()
            raise
        return self

    def await_start(self):
        if (line := self.line()) != "ready":
            raise Failed("the computer does not start, but says " + line)

    def __exit__(self, *_):
        self.end()

    def end(self):
        for process in filter(None, (self.process, self.adapter)):
            process.kill()
            process.wait()
        self.agent.close()

    def restart(self):
        """The agent is ended by it, maybe in the midst of its answer."""
        self.agent.sendall(base64.b64encode(b"systemctl --no-block reboot") + b"\n")
        while not self.line().endswith("ready"):
            pass

    def line(self):
        """The next line from the computer."""
        while b"\n" not in self.buffer:
            left = self.deadline - time.monotonic()
            if left <= 0 or not select.select([self.agent], [], [], left)[0]:
                raise Failed("out of time")
            part = self.agent.recv(65536)
            if not part:
                raise Failed("the emulator has ended: " + (self.folder / "emulator").read_text())
            self.buffer += part
        line, self.buffer = self.buffer.split(b"\n", 1)
        return line.decode("ascii", "replace").rstrip("\r")

    def run(self, command):
        """The status of a command in the computer, its output, and the seconds that it took."""
        self.agent.sendall(base64.b64encode(command.encode()) + b"\n")
        output = ""
        while not (line := self.line()).startswith("= "):
            output += line
        self.look_at_messages()
        _, status, hundredths = line.split()
        return int(status), base64.b64decode(output).decode(errors="replace"), int(hundredths) / 100

    def put(self, path, content):
        """A file of the computer."""
        text = base64.b64encode(content).decode()
        status, output, _ = self.run(f"base64 -d <<end >{path}\n{text}\nend")
        if status != 0:
            raise Failed(output)

    def ask(self, whom, line):
        """What the "wire" at the parallel port (machines/Wire.cpp) or the USB "adapter" answers."""
        self.await_file(whom)
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(10)
            connection.connect(str(self.folder / whom))
            connection.sendall(line.encode() + b"\n")
            reply = b""
            while part := connection.recv(65536):
                reply += part
        return reply

    def image(self, whom, chip):
        """What an EEPROM holds: that of the wire, that behind the adapter, or else the emulator's own."""
        if whom == "wire" or self.adapter:
            return self.ask(whom, "image " + chip)
        return (self.folder / chip).read_bytes()

    def wait_until(self, event, count):
        """Until the television has seen so many more of them."""
        begun = int(self.ask("wire", "count " + event))
        while int(self.ask("wire", "count " + event)) < begun + count:
            if time.monotonic() > self.deadline:
                raise Failed("out of time")
            time.sleep(0.01)

    def wait_until_quiet(self):
        seen = None
        while seen != (seen := self.ask("wire", "count Byte")):
            if time.monotonic() > self.deadline:
                raise Failed("out of time")
            time.sleep(2)

    def messages(self):
        return self.console.read_text(errors="replace")

    def look_at_messages(self):
        new = self.messages()[self.looked:]
        self.looked += len(new)
        if self.pardoned:
            new, count = re.subn(f"WARNING: [^\n]* {self.pardoned}.*?end trace", "", new, flags=re.S)
            if count:
                self.pardoned = None
        if found := FAULTS.search(new):
            raise Failed("the kernel says: " + new[found.start():][:2000])
