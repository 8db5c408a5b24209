"""An I2C-Tiny-USB, plugged in while the computer runs, and out in the midst of what it does."""
MACHINE = ["-device", "qemu-xhci", "-chardev", "socket,id=usb,path={folder}/usb", "-device", "usb-redir,chardev=usb"]
SECONDS = 300
BUS = "tarnwell-cli --port=i2c:/dev/i2c-0 "
GONE = "The adapter is gone. Plug it in again"


def plug(longest):
    """In, as the next number; its transfers are no longer than that."""
    return [("@adapter plug " + longest, 0, ""),
            ("until [ -e /dev/i2c-0 ]; do sleep 0.1; done; cat /sys/bus/i2c/devices/i2c-0/name", 0,
             r"i2c-tiny-usb at bus 001 device 00\d")]


def unplugged_in_write(place):
    """So many requests behind so many write cycles: what was told is stored, and one page more at most."""
    return [*plug("254"), ("@adapter unplug-behind " + place, 0, ""),
            (BUS + "--yes --force write /tmp/new.bin >/tmp/said 2>&1; s=$?; cat /tmp/said; exit $s", 3, GONE),
            ("@stored primary /tmp/model", 0, ""),
            (r"n=$(sed -n 's/.*Written: \([0-9]*\) bytes.*/\1/p' /tmp/said); echo $n; cmp -n $n /tmp/new.bin /tmp/model && "
             "s=$(cmp -l /tmp/first.bin /tmp/model | wc -l) && echo $s && [ $n -gt 0 -a $s -ge $n -a $s -le $((n + 32)) ]", 0, "")]


ROWS = [
    ("modprobe -a xhci-pci i2c-dev i2c-tiny-usb; " + BUS + "check", 3, "i2c-0 is not there. Plug its adapter in"),
    *plug("65535"),
    (BUS + "read /tmp/first.bin", 0, "8192 bytes"),
    ("@stored primary /tmp/model", 0, ""),
    ("cmp /tmp/first.bin /tmp/model", 0, ""),
    ("tarnwell-cli '--port=i2c:i2c-tiny-usb at bus 001 device 002' --device=secondary read /tmp/second.bin", 0, "8192 bytes"),
    ("@stored secondary /tmp/model", 0, ""),
    ("cmp /tmp/second.bin /tmp/model", 0, ""),
    (r"tr '\000-\377' '\001-\377\000' </tmp/first.bin >/tmp/new.bin", 0, ""),
    ("@adapter unplug", 0, ""),
    ("while [ -e /dev/i2c-0 ]; do sleep 0.1; done; " + BUS + "check", 3, "i2c-0 is not there"),
    *plug("254"),
    ("@adapter unplug-behind 0 120", 0, ""),
    (BUS + "read /tmp/third.bin", 3, GONE + r".*Read: [1-9]\d* bytes"),
    *unplugged_in_write("5 0"), *unplugged_in_write("20 1"), *unplugged_in_write("60 3"),
    *plug("254"),
    (BUS + "--yes write --differences /tmp/first.bin", 0, r"Verified OK; \d"),
    ("@stored primary /tmp/model", 0, ""),
    ("cmp /tmp/first.bin /tmp/model", 0, ""),
    ("@adapter unplug", 0, ""),
    ("while [ -e /dev/i2c-0 ]; do sleep 0.1; done", 0, ""),
    *plug("32"),
    (BUS + "read /tmp/fourth.bin && cmp /tmp/first.bin /tmp/fourth.bin", 0, "8192 bytes"),
    (BUS + "--yes --force write /tmp/new.bin", 0, "Verified OK"),
    ("@stored primary /tmp/model", 0, ""),
    ("cmp /tmp/new.bin /tmp/model", 0, ""),
]
