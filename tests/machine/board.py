"""Boards with a bus of their own: an i.MX 6 (i2c-imx) with two EEPROMs that are the emulator's, and a monitor on the next
bus; and a processor of 64 bits with a USB adapter. The package for that processor is what is tried."""
ARCHITECTURES = ["armhf", "arm64"]
MACHINE = []
SECONDS = 300
CLI = "tarnwell-cli --port=i2c:/dev/i2c-0 "
MONITOR = "get|poke 5=77|write /tmp/image.bin|restore /tmp/image.bin"
TRACE = "/sys/kernel/tracing/"
FIRST = {
    "armhf": [
        ("modprobe -a i2c-imx i2c-dev; mount -t tracefs none " + TRACE + "; echo 1 >" + TRACE + "events/i2c/enable; "
         "head -c 8192 /dev/urandom >/tmp/image.bin; i2cdump -y 1 0x50 b | head -n 2; echo >" + TRACE + "trace", 0,
         "00: 00 ff ff ff ff ff ff 00"),
        # What describes a monitor is not written to, trusted or not: the kernel sees addresses alone, each before a read.
        ("echo '" + MONITOR + "' | tr '|' '\n' | while read c; do for trust in '' --trust-device; do "
         "tarnwell-cli --port=i2c:/dev/i2c-1 --yes --force $trust $c </dev/null 2>&1 | cat >/tmp/said; grep -o "
         "'describes a monitor (EDID).* Nothing was written\\|did not read the same twice. Nothing was written' /tmp/said || "
         "echo \"$c\"; done; done | sort | uniq -c", 0,
         r"\A *4 describes a monitor .*\n *3 did not read the same twice\. Nothing was written\n *1 get\n\Z"),
        ("cd " + TRACE + "; for sent in i2c_write 'i2c_write: i2c-1 #0 a=050 .* l=[12] ' 'i2c_read: i2c-1 #1 a=050 '; do "
         "grep -c \"$sent\" trace; done; echo 0 >events/i2c/enable", 0, r"\A(\d\d+)\n\1\n\1\n\Z"),
    ],
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
