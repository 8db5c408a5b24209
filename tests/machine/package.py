"""Both packages in an installed Debian: who may use port and adapter, the program with its window, and what is left."""
INSTALLED = ["systemd", "systemd-sysv", "udev", "dbus", "libpam-systemd", "kmod", "acl", "xvfb", "openbox", "xdotool", "scrot",
             "fonts-dejavu-core"]
MACHINE = ["-chardev", "parallel,id=port,path=/dev/null", "-device", "isa-parallel,chardev=port",
           "-device", "qemu-xhci", "-chardev", "socket,id=usb,path={folder}/usb", "-device", "usb-redir,chardev=usb"]
SECONDS = 600
ROWS = [
    ("systemctl is-system-running --wait; systemctl --failed; systemd-analyze; systemd-analyze blame | head -30; systemd-analyze critical-chain; loginctl; ps aux; lsmod; ls -l /dev", 0, ""),
]
