"""Both packages in an installed Debian: who may use port and adapter, the program with its window, and what is left."""
INSTALLED = ["systemd", "systemd-sysv", "udev", "dbus", "libpam-systemd", "kmod", "acl", "xvfb", "openbox", "xdotool", "scrot",
             "fonts-dejavu-core"]
MACHINE = ["-chardev", "parallel,id=port,path=/dev/null", "-device", "isa-parallel,chardev=port",
           "-device", "qemu-xhci", "-chardev", "socket,id=usb,path={folder}/usb", "-device", "usb-redir,chardev=usb"]
SECONDS = 900
STARTED = ("systemctl is-system-running --wait; until loginctl | grep seat0; do sleep 0.1; done", 0,
           "^running\n.* in +seat0 tty1")
RIGHTS = "udevadm settle; getfacl -cp "
# All but what belongs to the users and to the computer's run.
FILES = (r"find / -xdev \( -path /home -o -path /root -o -path /tmp -o -path /var/tmp -o -path /var/log \) "
         "-prune -o -print | sort >")
IN_ORDER = "The bus is in order.*Primary EEProm: answers.*Secondary EEProm: answers"


def cli(user, words):
    return f"runuser {user} -c 'tarnwell-cli {words}'"


def at_seat(words):
    return f"runuser in -c 'export DISPLAY=:7 XDG_RUNTIME_DIR=/run/user/1000; cd; {words}'"


def keys(words):
    """A little later, so that what the television sees of it comes behind the next row's beginning."""
    return (at_seat(f"(sleep 2; xdotool key --delay 300 {words}) >/dev/null 2>&1 &"), 0, "")


def window(title, opened_by):
    """Asked for again where the program was not done with what is before."""
    return (at_seat(f"n=0; until xdotool search --onlyvisible --name \"{title}\"; do [ $((n % 60)) != 0 ] || "
                    f"xdotool key --delay 300 {opened_by}; n=$((n + 1)); sleep 0.5; done"), 0, "")


def started(port):
    return (at_seat(f"tarnwell --port={port} >>said 2>&1 & echo $! >job; "
                    "xdotool search --sync --onlyvisible --name Tarnwell"), 0, "")


def saved_as(name):
    return [window("Save EEProm", "alt+f s i"),
            (at_seat(f"sleep 1; xdotool type --delay 100 /home/in/{name}; xdotool key Return; "
                     f"until [ -s {name} ]; do sleep 0.2; done"), 0, "")]


ENDED = (at_seat("kill $(cat job); while kill -0 $(cat job); do sleep 0.2; done 2>/dev/null; cat said"), 0,
         r"\A(tarnwell: stopped by SIGTERM\.\n)+\Z")


def picture(name):
    return [(at_seat(f"sleep 2; scrot -o {name}.png"), 0, ""), (f"@keep /home/in/{name}.png", 0, "")]


ROWS = [
    STARTED,
    # Nothing of the packages is there yet; a port that is there already is given away when they come.
    (FILES + "/root/before; modprobe -a parport_pc ppdev; " + RIGHTS + "/dev/parport0", 0,
     r"\Auser::rw-\ngroup::rw-\nother::---\n+\Z"),
    ("mkdir /tmp/packages; tar -x -C /tmp/packages -f /dev/vdb; dpkg -i /tmp/packages/*.deb", 0, ""),
    (RIGHTS + "/dev/parport0", 0, "user:in:rw-"),
    ("@restart", 0, ""),
    STARTED,
    ("grep -o '^\\(parport_pc\\|ppdev\\|i2c_dev\\) ' /proc/modules | sort | xargs", 0, r"\Ai2c_dev parport_pc ppdev\n\Z"),
    (RIGHTS + "/dev/parport0", 0, "user:in:rw-"),
    # The mainboard's own bus is nobody's.
    ("cat /sys/class/i2c-dev/i2c-0/name; " + RIGHTS + "/dev/i2c-0", 0, r"PIIX4.*user::rw-\ngroup::---\nother::---\n+\Z"),
    (cli("in", "check"), 0, IN_ORDER),
    (cli("out", "--port=ppdev check"), 3, "Permission denied"),
    (cli("in", "--port=i2c:/dev/i2c-0 check"), 3, "Permission denied"),
    # An adapter that is plugged in now.
    ("@adapter plug 65535", 0, ""),
    ("until [ -e /dev/i2c-1 ]; do sleep 0.1; done; " + RIGHTS + "/dev/i2c-1", 0, "user:in:rw-"),
    (cli("out", "--port=i2c:/dev/i2c-1 check"), 3, "Permission denied"),
    (cli("in", "--port=i2c:/dev/i2c-1 read /tmp/adapter.bin"), 0, "8192 bytes"),
    ("@stored primary /tmp/stored.bin", 0, ""),
    ("cmp /tmp/adapter.bin /tmp/stored.bin", 0, ""),
    # The window, at the parallel port.
    (at_seat("Xvfb :7 -screen 0 1100x800x24 >/dev/null 2>&1 & until xdotool getmouselocation; do sleep 0.2; done; "
             "openbox >/dev/null 2>&1 & until xdotool get_num_desktops; do sleep 0.2; done"), 0, ""),
    started("ppdev"),
    keys("alt+o r"),
    ("@until Byte 8192", 0, ""),
    ("@quiet", 0, ""),
    *picture("read"),
    *saved_as("first.mot"),
    ("@model primary /tmp/first.bin", 0, ""),
    ("tarnwell-cli compare /home/in/first.mot /tmp/first.bin", 0, "No differences"),
    # A setting: one more, by the editor of its value.
    window("Edit.Value", "Tab Return"),
    (at_seat("sleep 1; xdotool key Up"), 0, ""),
    (at_seat("xdotool key Return"), 0, ""),
    window("V.E.R.I.F.Y", "alt+w"),
    keys("alt+y"),
    ("@until WriteCycle 1", 0, ""),
    ("@quiet", 0, ""),
    *picture("settings"),
    ("@model primary /tmp/set.bin", 0, ""),
    ("cmp -l /tmp/first.bin /tmp/set.bin", 1, r"\A *2366 +11 +12\n\Z"),
    # What the archive holds, written where it differs.
    window("Load EEProm", "alt+f l i"),
    (at_seat("sleep 1; xdotool type --delay 100 /home/in/first.mot; xdotool key Return"), 0, ""),
    window("V.E.R.I.F.Y", "alt+o d"),
    keys("alt+y"),
    ("@until WriteCycle 1", 0, ""),
    ("@quiet", 0, ""),
    *picture("differences"),
    ("@model primary /tmp/model.bin", 0, ""),
    ("cmp /tmp/first.bin /tmp/model.bin", 0, ""),
    ENDED,
    # And at the adapter.
    started("i2c:/dev/i2c-1"),
    (at_seat("sleep 2; xdotool key --delay 300 alt+o r"), 0, ""),
    *saved_as("adapter.mot"),
    *picture("adapter"),
    ("tarnwell-cli compare /home/in/adapter.mot /tmp/stored.bin", 0, "No differences"),
    ENDED,
    # The packages leave nothing; what the user has read and saved is the user's.
    ("dpkg --purge tarnwell tarnwell-cli", 0, "Removing tarnwell-cli"),
    (FILES + "/root/after; diff /root/before /root/after", 0, r"\A\Z"),
    ("find / -xdev -name '*tarnwell*'", 0, r"\A/home/in/.local/state/tarnwell\n\Z"),
]
