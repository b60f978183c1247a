# SPDX-License-Identifier: MIT
"""A separate root file system with the essential packages of this machine and the dependencies of a
package, and nothing else. It is copied from what is installed here, so it takes seconds and no
network; a missing dependency is missing there, too."""

import os
import pathlib
import re
import shutil
import subprocess

DATABASE = pathlib.Path("/var/lib/dpkg")
MERGED = ("bin", "sbin", "lib", "lib32", "lib64", "libx32")
# No test reads these.
LEFT_OUT = re.compile(r"/usr/share/(doc|man|info|locale|lintian)/.")


class Package:
    def __init__(self, stanza):
        self.stanza = stanza
        fields = dict(re.findall(r"^([\w-]+): *(.*)$", stanza, flags=re.M))
        self.name = fields["Package"]
        self.essential = fields.get("Essential") == "yes"
        self.provides = [re.split(r"[ (:]", text.strip())[0]
                         for text in fields.get("Provides", "").split(",") if text.strip()]
        self.wants = wanted(fields.get("Pre-Depends", "") + "," + fields.get("Depends", ""))
        self._architecture = fields.get("Architecture")

    def list_file(self):
        for name in (self.name, f"{self.name}:{self._architecture}"):
            path = DATABASE / "info" / f"{name}.list"
            if path.exists():
                return path
        raise FileNotFoundError(f"the list of the files of {self.name}")


def wanted(depends):
    """Names in groups; one of each group is enough."""
    return [[re.split(r"[ (:]", name.strip())[0] for name in group.split("|")]
            for group in depends.split(",") if group.strip()]


def installed():
    stanzas = (DATABASE / "status").read_text().split("\n\n")
    packages = [Package(stanza) for stanza in stanzas if "\nStatus: install ok installed" in stanza]
    found = {}
    for package in packages:
        for name in package.provides:
            found.setdefault(name, package)
    return found | {package.name: package for package in packages}


def closure(depends):
    """The packages that these dependencies need, and all essential ones."""
    here = installed()
    queue = [package for package in here.values() if package.essential]
    groups = wanted(depends)
    taken = {}
    while queue or groups:
        for group in groups:
            match = next((here[name] for name in group if name in here), None)
            if not match:
                raise LookupError(f"none of {group} is installed here")
            queue.append(match)
        groups = []
        while queue:
            package = queue.pop()
            if package.name not in taken:
                taken[package.name] = package
                groups += package.wants
    return list(taken.values())


class CleanRoot:
    def __init__(self, folder):
        self.path = pathlib.Path(folder)

    def populate(self, packages):
        for name in MERGED:
            if os.path.islink(f"/{name}"):
                (self.path / name).symlink_to(os.readlink(f"/{name}"))
                (self.path / os.readlink(f"/{name}")).mkdir(parents=True)
        database = self.path / DATABASE.relative_to("/")
        for name in ("info", "updates", "triggers"):
            (database / name).mkdir(parents=True)
        for package in packages:
            shutil.copy(package.list_file(), database / "info")
            for path in package.list_file().read_text().splitlines():
                self._copy(path)
        (database / "status").write_text("\n\n".join(each.stanza for each in packages) + "\n")
        for name in ("proc", "dev", "tmp", "run/user", "home/user/Desktop"):
            (self.path / name).mkdir(parents=True, exist_ok=True)
        subprocess.run(["/sbin/ldconfig", "-r", self.path], check=True)

    def _copy(self, path):
        target = self.path / path.lstrip("/")
        if path == "/." or LEFT_OUT.match(path) or os.path.lexists(target):
            return
        if os.path.islink(path):
            self._make_parent(target)
            target.symlink_to(os.readlink(path))
        elif os.path.isdir(path):
            target.mkdir(parents=True, exist_ok=True)
        elif os.path.isfile(path):
            self._make_parent(target)
            shutil.copy2(path, target)

    @staticmethod
    def _make_parent(target):
        target.parent.mkdir(parents=True, exist_ok=True)

    @staticmethod
    def _secluded():
        root = [] if os.geteuid() == 0 else ["--map-root-user"]
        return ["unshare", *root, "--mount", "--"]

    @classmethod
    def is_possible(cls):
        return subprocess.run([*cls._secluded(), "true"], capture_output=True).returncode == 0

    def install(self, deb):
        """dpkg checks the versions of all dependencies. Its output, and whether it succeeded."""
        done = subprocess.run([*self._secluded(), "dpkg", f"--root={self.path}", "--install", deb],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return done.returncode == 0, done.stdout

    def start(self, *command, **environment):
        """Starts a program in there, with this machine's devices and X server."""
        mounts = "; ".join(f"mount --rbind {path} '{self.path}{path}'"
                           for path in ("/proc", "/dev", "/tmp/.X11-unix"))
        (self.path / "tmp/.X11-unix").mkdir(exist_ok=True)
        script = f"set -e; {mounts}; exec chroot '{self.path}' \"$@\""
        return subprocess.Popen([*self._secluded(), "sh", "-c", script, "sh", *command],
                                env={"PATH": "/usr/bin:/bin:/usr/sbin:/sbin"} | environment)
