"""The parallel port of Debian's kernel: by ppdev and by /dev/port, shared, broken off, taken away."""
MACHINE = ["-chardev", "parallel,id=port,path=/dev/null", "-device", "isa-parallel,chardev=port"]
SECONDS = 240
CLI = "tarnwell-cli --port=ppdev "
IN_ORDER = "The bus is in order.*Primary EEProm: answers.*Secondary EEProm: answers"
# How many bytes of /tmp/new are on the device, which held /tmp/old, whose first 100 were the same.
AS_TOLD = (r"n=$(sed -n 's/.*Written: \([0-9]*\) bytes.*/\1/p' /tmp/said); cmp -n $n /tmp/new /tmp/model "
           "&& [ $(cmp -l /tmp/old /tmp/model | wc -l) = $((n - 100)) ]")
START = ("rm -f /tmp/status; "
         "({{ {} & echo $! >/tmp/job; wait $!; echo $? >/tmp/status; }} >/tmp/said 2>&1) &")
END = ("kill -{} $(cat /tmp/job); until [ -s /tmp/status ]; do sleep 0.1; done; cat /tmp/said; "
       "exit $(cat /tmp/status)")
ROWS = [
    (CLI + "check", 3, "The kernel lists no parallel port.*modprobe parport_pc"),
    ("modprobe parport_pc; " + CLI + "check", 3, "parport0 is missing.*modprobe ppdev"),
    ("modprobe ppdev; " + CLI + "read /tmp/first.bin", 0, "8192 bytes"),
    ("@model primary /tmp/model", 0, ""),
    ("cmp /tmp/first.bin /tmp/model", 0, ""),
    ("tarnwell-cli --port=devport --device=secondary read /tmp/second.bin", 0, "8192 bytes"),
    ("@model secondary /tmp/model", 0, ""),
    ("cmp /tmp/second.bin /tmp/model && ! cmp /tmp/second.bin /tmp/first.bin", 0, ""),
    (r"tr '\000-\377' '\001-\377\000' </tmp/first.bin | tee /tmp/new.bin >/tmp/new; "
     "(head -c 100 /tmp/new; tail -c 8092 /tmp/first.bin) | tee /tmp/old.bin >/tmp/old", 0, ""),
    (CLI + "--yes write --differences /tmp/old.bin", 0, "Written: 100 bytes"),
    ("@model primary /tmp/model", 0, ""),
    ("cmp /tmp/old /tmp/model", 0, ""),
    # Others have the port.
    ("hold /dev/parport0 & sleep 1; " + CLI + "check; s=$?; kill $!; exit $s", 3,
     r"/dev/parport0 is in use by another program \(hold, process \d+\)"),
    ("hold /dev/parport0 exclusive & sleep 1; dmesg -c >/dev/null; tarnwell-cli --port=devport --wait=3 check; s=$?; "
     "kill $!; dmesg | grep -c ppdev0; exit $s", 3, r"parport0 is in use by another program \(hold.*\n[3-5]\n$"),
    ("modprobe lp; ls /proc/sys/dev/parport/parport0/devices; " + CLI + "check", 0, "lp.*" + IN_ORDER),
    # Broken off in the midst of a write, which is told as it is on the device.
    (START.format(CLI + "--yes --force write /tmp/new.bin"), 0, ""),
    ("@until WriteCycle 300", 0, ""),
    (END.format("TERM"), 143, "Stopped by SIGTERM"),
    ("@model primary /tmp/model", 0, ""),
    (AS_TOLD, 0, ""),
    (CLI + "check", 0, IN_ORDER),
    (START.format(CLI + "--yes --force write /tmp/new.bin"), 0, ""),
    ("@until WriteCycle 9", 0, ""),
    (END.format("KILL"), 137, ""),
    # Where the lines are let go, only a device that is in the midst of a byte tells of it.
    ("tarnwell-cli --port=devport check || true", 0, "in order|SDA stays low.*off and on|have freed the bus"),
    ("@wire power", 0, ""),
    ("tarnwell-cli --port=devport check", 0, IN_ORDER),
    # Who may use it.
    ("chgrp lp /dev/parport0; chmod 660 /dev/parport0; su in -c '" + CLI + "check'", 0, IN_ORDER),
    ("su out -c '" + CLI + "check'", 3, "Permission denied. Add your account to the group lp"),
    # The driver goes: not while the port is in use, unless it is taken away.
    (START.format(CLI + "read /tmp/third.bin"), 0, ""),
    ("@until Byte 2000", 0, ""),
    ("rmmod ppdev", 1, "can't unload module"),
    (END.format("0"), 0, "8192 bytes"),
    ("rmmod lp ppdev parport_pc && " + CLI + "check", 3, "The kernel lists no parallel port"),
    ("modprobe -a parport_pc ppdev; " + CLI + "check", 0, IN_ORDER),
    ("@pardon sysfs_remove_group", 0, ""),
    (START.format(CLI + "read /tmp/fourth.bin"), 0, ""),
    ("@until Byte 2000", 0, ""),
    ("echo 00:00 >/sys/bus/pnp/drivers/parport_pc/unbind", 0, ""),
    (END.format("0"), 3, r"Find the cause with 'tarnwell-cli check'.*Read: \d{4} bytes"),
    (CLI + "check", 3, "The kernel lists no parallel port"),
]
