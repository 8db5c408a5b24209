"""Boards with a bus of their own: an i.MX 6 (i2c-imx) with two EEPROMs that are the emulator's, and a processor of 64
bits with a USB adapter. The package for that processor is what is tried."""
ARCHITECTURES = ["armhf", "arm64"]
MACHINE = []
SECONDS = 300
CLI = "tarnwell-cli --port=i2c:/dev/i2c-0 "
FIRST = {
    "armhf": [("modprobe -a i2c-imx i2c-dev", 0, "")],
    "arm64": [("modprobe -a xhci-pci i2c-dev i2c-tiny-usb; uname -m", 0, "aarch64"), ("@adapter plug 254", 0, ""),
              ("until [ -e /dev/i2c-0 ]; do sleep 0.1; done", 0, "")],
}
ROWS = [
    ("cat /sys/class/i2c-dev/i2c-0/name; " + CLI + "check", 0,
     r"(21a0000\.i2c|i2c-tiny-usb at bus 001 device 002)\n.*in order.*Primary EEProm: answers\n.*Secondary EEProm: answers"),
    *[row for chip, name in (("primary", "first"), ("secondary", "second"))
      for row in [(f"{CLI} --device={chip} read /tmp/{name}.bin", 0, "8192 bytes"), (f"@stored {chip} /tmp/stored", 0, ""),
                  (f"cmp /tmp/{name}.bin /tmp/stored", 0, "")]],
    (r"tr '\000-\377' '\001-\377\000' </tmp/first.bin >/tmp/new.bin; "
     + CLI + "--yes --force write /tmp/new.bin", 0, "Verified OK.*Written: 8192 bytes"),
    ("@stored primary /tmp/stored", 0, ""),
    ("cmp /tmp/new.bin /tmp/stored", 0, ""),
    (CLI + "--device=secondary --yes poke 0x1FFF=0x5A && " + CLI + "--device=secondary peek 0x1FFF", 0, "5A"),
    ("@stored secondary /tmp/stored", 0, ""),
    ("tail -c 1 /tmp/stored; cmp -n 8191 /tmp/second.bin /tmp/stored", 0, r"\AZ\Z"),
]
