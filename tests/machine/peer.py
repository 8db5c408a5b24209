"""The kernel's own drivers on the same wire, as judges of what was written and read, and in the way."""
MACHINE = ["-chardev", "parallel,id=port,path=/dev/null", "-device", "isa-parallel,chardev=port"]
SECONDS = 240
BUS = "tarnwell-cli --port=i2c:/dev/i2c-0 "
AT24 = "/sys/bus/i2c/devices/0-0050/eeprom"
ROWS = [
    ("modprobe -a parport_pc ppdev i2c-dev at24", 0, ""),
    ("tarnwell-cli --port=ppdev read /tmp/first.bin", 0, "8192", "ppdev"),
    ("tarnwell-cli --port=devport read /tmp/again.bin; cmp /tmp/first.bin /tmp/again.bin", 0, "8192", "/dev/port"),
    ("modprobe i2c-parport type=3; " + BUS + "read /tmp/second.bin; cmp /tmp/first.bin /tmp/second.bin", 0, "8192", "the kernel's bus"),
    ("tarnwell-cli check", 3, "parport0 is in use by the kernel's driver i2c-parport. Take it away"),
    ("echo 24c64 0x50 >/sys/bus/i2c/devices/i2c-0/new_device", 0, ""),
    ("cat " + AT24 + " >/tmp/at24.bin", 0, "", "at24"),
    ("cmp /tmp/first.bin /tmp/at24.bin", 0, ""),
    (BUS + "check", 3, "driver at24 uses the device at 0x50.*echo 0-0050 | sudo tee /sys/bus/i2c/drivers/at24/unbind"),
    (BUS + "--yes poke 0x100=1", 3, "driver at24 uses the device at 0x50"),
    ("head -c 64 /dev/urandom >/tmp/64; dd if=/tmp/64 of=" + AT24 + " conv=notrunc bs=32 seek=3", 0, "", "at24 writes"),
    ("echo 0-0050 | tee /sys/bus/i2c/drivers/at24/unbind; " + BUS + "read /tmp/third.bin", 0, "8192"),
    ("tail -c +97 /tmp/third.bin | head -c 64 | cmp - /tmp/64", 0, ""),
    (BUS + "--yes write --differences /tmp/first.bin", 0, r"6\d bytes"),
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
# Ours take the processor's time, at24 the time of its clock: on a busy one the limits are far off.
RATIOS = [("ppdev", "at24", 3), ("/dev/port", "at24", 3), ("the kernel's bus", "at24", 3)]
