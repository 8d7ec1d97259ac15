"""Closing with Yes copies the store and the forms to the back-up folder, and the program ends."""

import contextlib
import sqlite3
import sys

from road import equal, leave, site

with site() as here:
    copies = here.folder / "copies"
    (copies / "data").mkdir(parents=True)
    (copies / "html").mkdir()
    (here.tessaly / "forms/contact").mkdir(parents=True)
    (here.tessaly / "forms/contact/page.htm").write_text("the published page", encoding="utf-8")
    here.set(f"backup={copies}")
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        equal("exit status", leave(tessaly, "Yes"), 0)
    with contextlib.closing(sqlite3.connect(copies / "data/Tessaly.mdb")) as copy:
        equal("accounts in the copy", copy.execute("select query from email_tbl").fetchall(), [("orders",), ("contact",)])
        equal("its state", copy.execute("pragma integrity_check").fetchall(), [("ok",)])
    equal("the form's copy", (copies / "html/contact/page.htm").read_text(encoding="utf-8"), "the published page")
    equal("what lies beside the store", sorted(path.name for path in here.tessaly.glob("mailapp.mdb*")), ["mailapp.mdb"])
    equal("the error log", here.log(), "")

sys.exit(0)
