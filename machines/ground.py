"""What an emulated computer starts with: Debian's kernel, and an initramfs made for the steps."""

import pathlib
import re
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
MODULES = ["virtio_pci", "virtio_console", "parport_pc", "ppdev", "lp", "i2c-parport", "at24", "i2c-dev", "i2c-stub",
           "i2c-tiny-usb", "xhci-pci", "i2c-piix4", "i2c-i801"]


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def wanted_release():
    found = re.search(r"Depends: linux-image-(\S+)",
                      output_of("apt-cache", "depends", "linux-image-amd64"))
    return found and found[1]


def unpack(cache, release):
    apt_get = ["apt-get", "-q", "-o", "Acquire::Retries=3", "-o", "APT::Sandbox::User=root"]
    package = f"linux-image-{release}"
    if subprocess.run([*apt_get, "download", package], cwd=cache, check=False).returncode != 0:
        sys.exit(f"machine: Debian's package {package} cannot be had, so there is no kernel to meet")
    file, = cache.glob(f"{package}_*.deb")
    output_of("dpkg-deb", "-x", file, cache / release)
    file.unlink()
    output_of("depmod", "-b", cache / release, release)


def kernel(cache):
    """The folder in which Debian's kernel package is unpacked (never installed), and its release."""
    cache.mkdir(parents=True, exist_ok=True)
    release = wanted_release()
    if not release or not (cache / release).exists():
        subprocess.run(["apt-get", "-q", "update"], check=False, stdout=subprocess.DEVNULL)
        release = wanted_release()
    if not release:
        sys.exit("machine: apt knows no linux-image-amd64, so there is no kernel to meet")
    folder = cache / release
    if not (folder / f"lib/modules/{release}/modules.dep").exists():
        shutil.rmtree(folder, ignore_errors=True)
        unpack(cache, release)
    return folder, release


def copy(file, root, name):
    target = root / str(name).lstrip("/")
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(file, target)


def libraries(program):
    return set(re.findall(r"(/\S+) \(0x", output_of("ldd", program)))


def initramfs(cache, build, folder, release):
    """The file of it: busybox, the modules, the program without a window, and what holds a port."""
    root = cache / "root"
    shutil.rmtree(root, ignore_errors=True)
    for name in ("proc", "sys", "dev", "tmp", "root"):
        (root / name).mkdir(parents=True)
    copy("/bin/busybox", root, "bin/busybox")
    copy(HERE / "init", root, "init")
    programs = [build / "tarnwell-cli", build / "machines/hold"]
    for program in programs:
        copy(program, root, "bin/" + program.name)
    for library in set().union(*map(libraries, programs)):
        copy(library, root, library)
    for module in MODULES:
        for file in re.findall(r"^insmod (\S+)", output_of(
                "modprobe", "-d", folder, "-S", release, "--show-depends", module), re.M):
            copy(file, root, pathlib.Path(file).relative_to(folder))
    for table in ("order", "builtin", "builtin.modinfo"):
        copy(folder / f"lib/modules/{release}/modules.{table}", root,
             f"lib/modules/{release}/modules.{table}")
    output_of("depmod", "-b", root, release)
    (root / "etc").mkdir()
    (root / "etc/passwd").write_text("root::0:0::/root:/bin/sh\nin::1000:1000::/tmp:/bin/sh\n"
                                     "out::1001:1001::/tmp:/bin/sh\n")
    (root / "etc/group").write_text("root:x:0:\nlp:x:7:in\ni2c:x:999:in\n")
    file = cache / "initramfs"
    names = "\n".join(str(path.relative_to(root)) for path in sorted(root.rglob("*")))
    archive = subprocess.run(["cpio", "--quiet", "-o", "-H", "newc", "-R", "0:0"], cwd=root,
                             input=names.encode(), check=True, capture_output=True).stdout
    file.write_bytes(archive)
    return file
