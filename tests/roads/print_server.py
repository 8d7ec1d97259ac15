"""A real CUPS of a test's own, reached by a socket in a folder of its own, with one printer that takes jobs and prints
none: what was handed to it stays to be looked at."""

import contextlib
import grp
import os
import pathlib
import pwd
import shutil
import socket
import subprocess
import tempfile
import time

PRINTER = "office"
PATIENCE = 20.0  # seconds until it listens


def configuration(folder, user):
    """Everything in its folder. The empty Printcap keeps it from telling the machine of its printer."""
    group = grp.getgrgid(user.pw_gid).gr_name
    return {
        "cupsd.conf": f"Listen {folder}/socket\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
                      "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                      "<Policy default>\n<Limit All>\nOrder allow,deny\n</Limit>\n</Policy>\n",
        "cups-files.conf": f"User {user.pw_name}\nGroup {group}\nServerRoot {folder}/root\nStateDir {folder}/state\n"
                           f"CacheDir {folder}/cache\nRequestRoot {folder}/spool\nTempDir {folder}/temporary\n"
                           f"AccessLog {folder}/access.log\nErrorLog {folder}/error.log\nPageLog {folder}/page.log\n"
                           "Printcap\n",
        "root/printers.conf": f"<DefaultPrinter {PRINTER}>\nInfo The office printer\nDeviceURI file:///dev/null\n"
                              "State Stopped\nAccepting Yes\nShared No\nJobSheets none none\n</DefaultPrinter>\n",
    }


class PrintServer:
    """Use it in a with statement. environment: what a program needs to find it."""

    def __enter__(self):
        self._left = contextlib.ExitStack()
        self.folder = pathlib.Path(self._left.enter_context(tempfile.TemporaryDirectory()))
        self.folder.chmod(0o711)
        self.environment = {"CUPS_SERVER": f"{self.folder}/socket"}
        user = pwd.getpwnam("nobody") if os.geteuid() == 0 else pwd.getpwuid(os.geteuid())
        for name in ("root", "state", "cache", "spool", "temporary"):
            (self.folder / name).mkdir()
        for name, text in configuration(self.folder, user).items():
            (self.folder / name).write_text(text, encoding="utf-8")
        # A copy: AppArmor lets the one in its own place write into the machine's own folders only.
        shutil.copy(shutil.which("cupsd", path="/usr/sbin:/usr/bin"), self.folder / "cupsd")
        self._start(user)
        return self

    def __exit__(self, *failure):
        self._process.terminate()
        self._process.wait()
        self._left.close()

    def _start(self, user):
        rights = {}
        if os.geteuid() == 0:
            for path in (self.folder, *self.folder.rglob("*")):
                os.chown(path, user.pw_uid, user.pw_gid)
            rights = {"user": user.pw_uid, "group": user.pw_gid, "extra_groups": []}
        with open(self.folder / "says", "wb") as says:
            self._process = subprocess.Popen([self.folder / "cupsd", "-f", "-c", self.folder / "cupsd.conf",
                                              "-s", self.folder / "cups-files.conf"], stderr=says, **rights)
        end = time.monotonic() + PATIENCE
        while not self._listens():
            if self._process.poll() is not None or time.monotonic() > end:
                raise AssertionError("CUPS does not start: " + (self.folder / "says").read_text(encoding="utf-8"))
            time.sleep(0.02)

    def _listens(self):
        with socket.socket(socket.AF_UNIX) as line:
            return line.connect_ex(self.environment["CUPS_SERVER"]) == 0

    def jobs(self):
        """The files of the jobs, in their order. A file has its name when it has come whole."""
        return sorted((self.folder / "spool").glob("d*-*"))
