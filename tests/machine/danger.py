"""Buses on which what answers is no set's EEPROM: memory modules on the buses of two mainboards, and
i2c-stub. No command may store a byte there, whatever it is told."""
MACHINES = [["-machine", "pc"], ["-machine", "q35"]]
SECONDS = 120
DUMP = ("for b in 0 1; do for a in 0x50 0x51 0x52 0x53 0x54 0x55 0x56 0x57; do i2cdump -y $b $a b 2>/dev/null; "
        "done; done | tee ")
COMMANDS = ("check|read /tmp/r.bin|peek 0+8|get|verify /tmp/image.bin|compare /tmp/image.bin|poke 5=77|set TINT=31|"
            "write /tmp/image.bin|write --differences /tmp/image.bin|restore /tmp/image.bin")
ROWS = [
    ("modprobe -a i2c-dev i2c-piix4 i2c-i801; modprobe i2c-stub chip_addr=0x50,0x51; "
     "cat /sys/bus/i2c/devices/*/name", 0, "SMBus (PIIX4|I801) adapter.*SMBus stub driver"),
    ("for b in 0 1; do for a in 0x50 0x51; do for r in 0 1 5 31 255; do i2cset -y $b $a $r $((r ^ 0xA5)) b; "
     "done; done; done; " + DUMP + "/tmp/before", 0, "00: a5 a4 00 00 00 a0"),
    ("head -c 8192 /dev/urandom >/tmp/image.bin; echo '" + COMMANDS + "' | tr '|' '\\n' | while read c; do "
     "for b in 0 1; do for d in primary secondary; do for trust in '' '--yes --force --trust-device'; do "
     "tarnwell-cli --port=i2c:/dev/i2c-$b --device $d $trust $c </dev/null 2>&1 | cat >/tmp/said; "
     "grep -o 'takes SMBus commands only\\|Say --yes to write\\|must use the Data Editor' /tmp/said || cat /tmp/said; "
     "done; done; done; done | sort | uniq -c", 0,
     r"\A *18 Say --yes to write\n *8 must use the Data Editor\n *62 takes SMBus commands only\n\Z"),
    (DUMP + "/tmp/after; cmp /tmp/before /tmp/after", 0, ""),
]
