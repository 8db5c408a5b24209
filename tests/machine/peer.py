"""The kernel's own drivers on the same wire, as judges of what was written and read, and in the way."""
MACHINE = ["-chardev", "parallel,id=port,path=/dev/null", "-device", "isa-parallel,chardev=port"]
SECONDS = 480
BUS = "tarnwell-cli --port=i2c:/dev/i2c-0 "
AT24 = "/sys/bus/i2c/devices/0-0050/eeprom"
ROWS = [
    ("modprobe -a parport_pc ppdev i2c-dev at24", 0, ""),
    ("@model primary /tmp/model", 0, ""),
    *[row for name, bus in (("ppdev", "tarnwell-cli --port=ppdev "), ("/dev/port", "tarnwell-cli --port=devport "),
                            ("the kernel's bus", BUS))
      for row in [("modprobe i2c-parport type=3" if bus == BUS else "true", 0, ""),
                  *[("rm -f /tmp/first.bin; " + bus + "read /tmp/first.bin; cmp /tmp/first.bin /tmp/model", 0, "8192", name)] * 3]],
    ("tarnwell-cli check", 3, "parport0 is in use by the kernel's driver i2c-parport. Take it away"),
    ("echo 24c64 0x50 >/sys/bus/i2c/devices/i2c-0/new_device", 0, ""),
    *[("cmp /tmp/first.bin " + AT24, 0, "", "at24")] * 3,
    (BUS + "check", 3, "driver at24 uses the device at 0x50.*echo 0-0050 | sudo tee /sys/bus/i2c/drivers/at24/unbind"),
    (BUS + "--yes poke 0x100=1", 3, "driver at24 uses the device at 0x50"),
    ("head -c 64 /dev/urandom >/tmp/64; cat " + AT24 + " >/tmp/at24.bin; dd if=/tmp/64 of=" + AT24 + " conv=notrunc bs=32 seek=3; "
     "cat " + AT24 + " >/tmp/again.bin; cmp -l /tmp/at24.bin /tmp/again.bin | wc -l", 0, r"\n6\d\n\Z", "at24's write of 64 bytes"),
    ("echo 0-0050 | tee /sys/bus/i2c/drivers/at24/unbind; " + BUS + "read /tmp/third.bin", 0, "8192"),
    ("tail -c +97 /tmp/third.bin | head -c 64 | cmp - /tmp/64", 0, ""),
    (BUS + "--yes write --differences /tmp/first.bin", 0, r"6\d bytes", "ours"),
    ("@model primary /tmp/model", 0, ""),
    ("cmp /tmp/first.bin /tmp/model", 0, ""),
    ("echo 0-0050 >/sys/bus/i2c/drivers/at24/bind; cmp /tmp/first.bin " + AT24, 0, ""),
    # Lines that are held, from the beginning and in the midst of a write.
    ("echo 0x50 >/sys/bus/i2c/devices/i2c-0/delete_device", 0, ""),
    *[row for fault, says in [("SclStuckLow", "The clock is held: SCL stays low"), ("LinesJoined", "The clock is held"),
                              ("SdaStuckLow", "Every address answers: SDA is held low")]
      for row in [("@wire fault " + fault, 0, ""), (BUS + "check", 3, says, fault), ("@wire clear", 0, ""),
                  ("@wire power", 0, ""), (BUS + "check", 0, "in order")]],
    (r"tr '\000-\377' '\001-\377\000' </tmp/first.bin >/tmp/new.bin", 0, ""),
    ("@wire fault SdaStuckLow WriteCycle 10", 0, ""),
    (BUS + "--yes --force write /tmp/new.bin", 3, "SDA is held low.* 288 bytes were written and not verified"),
    ("@wire clear", 0, ""),
    ("@wire power", 0, ""),
    ("@model primary /tmp/model", 0, ""),
    ("[ $(cmp -l /tmp/first.bin /tmp/model | wc -l) = 320 ] && cmp -n 320 /tmp/new.bin /tmp/model", 0, ""),
    (BUS + "--yes --force write /tmp/new.bin", 0, "Verified OK.*Written: 8192 bytes", "a whole write"),
    ("@model primary /tmp/model", 0, ""),
    ("cmp /tmp/new.bin /tmp/model", 0, ""),
]
# Ours take the processor's time, at24 the time of its clock; the writes are between two whole reads.
RATIOS = [("ppdev", "at24", 1.5), ("/dev/port", "at24", 1.5), ("the kernel's bus", "at24", 1.5),
          ("ours", "at24's write of 64 bytes", 1.5)]
