"""A board with a bus of its own: i2c-imx, and two EEPROMs that are the emulator's. The package for
that processor is what is tried."""
ARCHITECTURES = ["armhf"]
MACHINE = []
SECONDS = 300
CLI = "tarnwell-cli --port=i2c:/dev/i2c-0 "
ROWS = [
    ("modprobe -a i2c-imx i2c-dev; cat /sys/class/i2c-dev/i2c-0/name; " + CLI + "check", 0,
     r"21a0000\.i2c.*in order.*Primary EEProm: answers\n.*Secondary EEProm: answers"),
    *[row for chip, name in (("primary", "first"), ("secondary", "second"))
      for row in [(f"{CLI} --device={chip} read /tmp/{name}.bin", 0, "8192 bytes"), (f"@held {chip} /tmp/held", 0, ""),
                  (f"cmp /tmp/{name}.bin /tmp/held", 0, "")]],
    (r"tr '\000-\377' '\001-\377\000' </tmp/first.bin >/tmp/new.bin; "
     + CLI + "--yes --force write /tmp/new.bin", 0, "Verified OK.*Written: 8192 bytes"),
    ("@held primary /tmp/held", 0, ""),
    ("cmp /tmp/new.bin /tmp/held", 0, ""),
    (CLI + "--device=secondary --yes poke 0x1FFF=0x5A && " + CLI + "--device=secondary peek 0x1FFF", 0, "5A"),
    ("@held secondary /tmp/held", 0, ""),
    ("tail -c 1 /tmp/held; cmp -n 8191 /tmp/second.bin /tmp/held", 0, r"\AZ\Z"),
]
