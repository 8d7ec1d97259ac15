"""What the roads share: a site of their own in a temporary folder, sample or fresh, and the running program on it."""

import contextlib
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "tools/drive"))
import fresh_site  # noqa: E402
from program import Program  # noqa: E402


class Site:
    """Program folder and settings; the sample has a Maildir too."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.tessaly = self.folder / "tessaly"
        self.store = self.tessaly / "mailapp.mdb"
        self.settings = self.folder / "config/brenmoorbiz.conf"

    def start(self, environment=None):
        return Program(str(self.tessaly / "tessaly"),
                       {"XDG_CONFIG_HOME": str(self.folder / "config"), **(environment or {})})

    def rows(self, sql):
        with contextlib.closing(sqlite3.connect(f"file:{self.store}?mode=ro", uri=True)) as connection:
            return connection.execute(sql).fetchall()

    def change(self, sql):
        with contextlib.closing(sqlite3.connect(self.store)) as connection, connection:
            connection.execute(sql)

    def set(self, line):
        """Puts a line into section main of the settings."""
        text = self.settings.read_text(encoding="utf-8")
        self.settings.write_text(text.replace("[main]\n", f"[main]\n{line}\n", 1), encoding="utf-8")

    def mails_in(self, folder):
        path = self.folder / "Maildir" / folder
        return len(os.listdir(path)) if path.exists() else 0

    def log(self):
        path = self.tessaly / "errorlog.txt"
        return path.read_text(encoding="utf-8") if path.exists() else ""


@contextlib.contextmanager
def site():
    """The sample."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([SOURCE / "tools/sample/make", folder], check=True)
        yield Site(folder)


@contextlib.contextmanager
def fresh(settings):
    """Nothing is set up, but for the lines of the settings."""
    with tempfile.TemporaryDirectory() as folder:
        fresh_site.make(folder, settings)
        yield Site(folder)


def equal(what, found, wanted):
    if found != wanted:
        raise AssertionError(f"{what}: {found!r}, not {wanted!r}")


def leave(tessaly, answer="No"):
    """Closes the console and answers the back-up question; the exit status."""
    tessaly.choose("File", "Exit")
    tessaly.find("label", "Would you like to backup your data?")
    tessaly.press(tessaly.find("button", answer))
    return tessaly.ended()
