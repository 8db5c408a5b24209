"""What an emulated computer starts with: Debian's kernel, and an initramfs made for the steps."""

import pathlib
import re
import shutil
import subprocess
import tarfile
import types

from emulated import Failed

HERE = pathlib.Path(__file__).resolve().parent

# By Debian's name of the processor: the kernel's package, the modules that are put beside it, the
# file that describes the board to it, and where the compiler's libraries are.
KINDS = {
    "amd64": types.SimpleNamespace(
        kernel="linux-image-amd64", board=None,
        modules=["virtio_pci", "virtio_console", "virtio_blk", "crc32c_generic", "ext4", "parport_pc", "ppdev", "lp",
                 "i2c-parport", "at24", "i2c-dev", "i2c-stub", "i2c-tiny-usb", "xhci-pci", "i2c-piix4", "i2c-i801"]),
    "armhf": types.SimpleNamespace(
        kernel="linux-image-armmp", board="imx6q-sabrelite.dtb", modules=["i2c-imx", "i2c-dev"]),
    "arm64": types.SimpleNamespace(
        kernel="linux-image-arm64", board=None,
        modules=["virtio_pci", "virtio_console", "xhci-pci", "i2c-tiny-usb", "i2c-dev"]),
}
# What a program of another processor needs beside itself; on this one's it is taken from the system.
FOREIGN = ["busybox-static", "libc6", "libstdc++6", "libgcc-s1"]


def output_of(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True, **options).stdout


class Archive:
    """Debian's packages for a processor, by lists of their own: nothing of the system's is changed."""

    def __init__(self, cache, architecture):
        self.cache = cache
        lists = cache / "lists"
        (lists / "partial").mkdir(parents=True, exist_ok=True)
        self.options = ["-q", "-o", "Acquire::Retries=3", "-o", "APT::Sandbox::User=root",
                        "-o", f"APT::Architecture={architecture}", "-o", f"APT::Architectures={architecture}",
                        "-o", f"Dir::State::lists={lists}", "-o", "Dir::State::status=/dev/null",
                        "-o", "Dir::Cache::pkgcache=", "-o", "Dir::Cache::srcpkgcache="]

    def update(self):
        subprocess.run(["apt-get", *self.options, "update"], check=False, stdout=subprocess.DEVNULL)

    def kernel(self, name):
        """The package that a package without content stands for, or nothing."""
        result = subprocess.run(["apt-cache", *self.options, "depends", name], check=False,
                                capture_output=True, text=True)
        found = re.search(r"Depends: (linux-image-\S+)", result.stdout)
        return found and found[1].split(":")[0]

    def unpack(self, package, folder):
        """Once, into a folder; the package is never installed."""
        done = folder / ("." + package)
        if done.exists():
            return
        command = ["apt-get", *self.options, "download", package]
        if subprocess.run(command, cwd=self.cache, check=False).returncode != 0:
            self.update()  # what the lists name may have been replaced since
            if subprocess.run(command, cwd=self.cache, check=False).returncode != 0:
                raise Failed(f"Debian's package {package} cannot be had: is there a network?")
        folder.mkdir(parents=True, exist_ok=True)
        for file in self.cache.glob(f"{package}_*.deb"):
            output_of("dpkg-deb", "-x", file, folder)
            file.unlink()
        done.touch()


def copy(file, root, name):
    target = root / str(name).lstrip("/")
    target.parent.mkdir(parents=True, exist_ok=True)
    shutil.copy(file, target)


def libraries(program):
    return set(re.findall(r"(/\S+) \(0x", output_of("ldd", program)))


class Ground:
    """For computers with one kind of processor: `kernel`, `initramfs`, `board` and `release`."""

    def __init__(self, cache, build, architecture):
        self.kind = KINDS[architecture]
        self.cache = cache / architecture
        self.archive = Archive(self.cache, architecture)
        self.unpack_kernel()
        self.initramfs = self.cache / "initramfs"
        root = self.cache / "root"
        shutil.rmtree(root, ignore_errors=True)
        for name in ("proc", "sys", "dev", "tmp", "root", "etc"):
            (root / name).mkdir(parents=True)
        copy(HERE / "init", root, "init")
        if architecture == "amd64":
            self.put_own_programs(root, build)
        else:
            self.put_package(root, build / "packages" / architecture, architecture)
        self.put_modules(root)
        (root / "etc/passwd").write_text("root::0:0::/root:/bin/sh\nin::1000:1000::/tmp:/bin/sh\n"
                                         "out::1001:1001::/tmp:/bin/sh\n")
        (root / "etc/group").write_text("root:x:0:\nlp:x:7:in\ni2c:x:999:in\n")
        names = "\n".join(str(path.relative_to(root)) for path in sorted(root.rglob("*")))
        archive = subprocess.run(["cpio", "--quiet", "-o", "-H", "newc", "-R", "0:0"], cwd=root,
                                 input=names.encode(), check=True, capture_output=True).stdout
        self.initramfs.write_bytes(archive)

    def unpack_kernel(self):
        package = self.archive.kernel(self.kind.kernel)
        if not package:
            self.archive.update()
            package = self.archive.kernel(self.kind.kernel)
        if not package:
            raise Failed(f"apt finds no {self.kind.kernel}, so there is no kernel to meet: is there a network, "
                         "and is Debian 12 among apt's sources?")
        self.release = package.removeprefix("linux-image-")
        self.folder = self.cache / self.release
        self.archive.unpack(package, self.folder)
        output_of("depmod", "-b", self.folder, self.release)
        self.kernel = self.folder / f"boot/vmlinuz-{self.release}"
        self.board = self.kind.board and self.folder / f"usr/lib/{package}" / self.kind.board

    def put_own_programs(self, root, build):
        programs = [build / "tarnwell-cli", build / "machines/hold"]
        copy("/bin/busybox", root, "bin/busybox")
        for program in programs:
            copy(program, root, "bin/" + program.name)
        for library in set().union(*map(libraries, programs)):
            copy(library, root, library)

    def put_package(self, root, folder, architecture):
        """The package that ./package makes for that processor."""
        subprocess.run([HERE.parent / "packaging/make", folder, architecture], check=True)
        user = self.cache / "user"
        for package in FOREIGN:
            self.archive.unpack(package, user)
        shutil.copytree(user, root, symlinks=True, dirs_exist_ok=True, ignore=shutil.ignore_patterns("share", "gconv"))
        package, = folder.glob("tarnwell-cli_*.deb")
        output_of("dpkg-deb", "-x", package, root)

    def put_modules(self, root):
        for module in self.kind.modules:
            for file in re.findall(r"^insmod (\S+)", output_of(
                    "modprobe", "-d", self.folder, "-S", self.release, "--show-depends", module), re.M):
                copy(file, root, pathlib.Path(file).relative_to(self.folder))
        for table in ("order", "builtin", "builtin.modinfo"):
            copy(self.folder / f"lib/modules/{self.release}/modules.{table}", root,
                 f"lib/modules/{self.release}/modules.{table}")
        output_of("depmod", "-b", root, self.release)


class Installed:
    """Our packages (`packages`, a tar archive), and a disk (`disk`) with Debian as it is installed, with what they
    depend on and what else a step needs."""

    def __init__(self, cache, build, more):
        folder = build / "packages/amd64"
        output_of(HERE.parent / "packaging/make", folder)
        self.disk = cache / "disk.ext2"
        self.packages = cache / "packages"
        cache.mkdir(parents=True, exist_ok=True)
        needed = set(more)
        with tarfile.open(self.packages, "w") as archive:
            for name in ("tarnwell", "tarnwell-cli"):
                package, = folder.glob(name + "_*.deb")
                archive.add(package, package.name)
                needed |= set(re.findall(r"(?:^|, )([^ ,]+)", output_of("dpkg-deb", "-f", package, "Depends").strip()))
        hook = HERE / "installed"
        made_of = cache / "made-of"
        wanted = " ".join(sorted(needed)) + "\n" + hook.read_text()
        if self.disk.exists() and made_of.exists() and made_of.read_text() == wanted:
            return
        made_of.unlink(missing_ok=True)
        made = subprocess.run(
            ["mmdebstrap", "--quiet", "--variant=minbase", "--dpkgopt=force-unsafe-io", "--include=" + ",".join(needed),
             f"--customize-hook={hook}", "bookworm", self.disk], check=False, capture_output=True, text=True)
        if made.returncode != 0:
            raise Failed("mmdebstrap could not install Debian:\n" + made.stderr)
        made_of.write_text(wanted)
