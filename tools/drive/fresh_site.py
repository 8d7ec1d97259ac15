"""A program folder as it is delivered: an empty store, nothing set up."""

import os
import pathlib
import subprocess

SOURCE = pathlib.Path(__file__).resolve().parents[2]


TOLD_NAMES = ["[tests]", "control_names=true"]  # each control tells a driver its name


def make(folder, settings):
    """FOLDER/tessaly and FOLDER/config. settings: the lines of the settings file."""
    folder = pathlib.Path(folder)
    out = pathlib.Path(os.environ.get("TESSALY_OUT") or SOURCE / "out")
    beside = [out / "tessaly/tessaly", out / "tools/mailapp.mdb", out / "tessaly/tips.tip",
              out / "tessaly/mail_providers.tsv", out / "tessaly/tslhlp.chm", *(out / "tessaly").glob("*.gif")]
    subprocess.run([SOURCE / "tools/deliver", folder / "tessaly", *beside], check=True)
    (folder / "config").mkdir(parents=True)
    file = folder / "config/brenmoorbiz.conf"
    file.touch(mode=0o600)
    file.write_text("\n".join(settings) + "\n", encoding="utf-8")


def imap_settings(port):
    """The mail client: user ann of a server on this machine."""
    return ["[mail_client]", "kind=imap", "host=127.0.0.1", f"port={port}", "security=none", "user=ann",
            "password=secret", "", *TOLD_NAMES]
