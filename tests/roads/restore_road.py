"""Restoring a back-up from the menu: the program ends, the next start works on the copy, the former store is kept."""

import contextlib
import sqlite3
import sys

from road import equal, leave, site

with site() as here:
    copies = here.folder / "copies"
    (copies / "data").mkdir(parents=True)
    (copies / "html").mkdir()
    here.set(f"backup={copies}")
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        equal("exit status of the back-up", leave(tessaly, "Yes"), 0)
    here.change("delete from email_tbl where query='contact'")

    with here.start() as tessaly:
        tessaly.dismiss_splash()
        tessaly.choose("File", "Restore from Backup")
        tessaly.find("dialog", "Open")
        tessaly.press(tessaly.find("button", "Open"))  # the last back-up is proposed
        tessaly.find("label", "Are you sure to restore this database?")
        tessaly.press(tessaly.find("button", "Yes"))
        tessaly.find("label", "Database will be restored once you restart the application. "
                              "Click here to close the application.")
        tessaly.press(tessaly.find("button", "OK"))
        equal("exit status of restoring", tessaly.ended(), 0)
    equal("accounts", here.rows("select query from email_tbl"), [("orders",), ("contact",)])
    kept = list(here.tessaly.glob("mailapp 20*.mdb"))
    equal("kept stores", len(kept), 1)
    with contextlib.closing(sqlite3.connect(kept[0])) as former:
        equal("accounts of the former one", former.execute("select query from email_tbl").fetchall(), [("orders",)])
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        equal("exit status afterwards", leave(tessaly), 0)

    with open(here.store, "r+b") as store:  # a store that is damaged keeps the console shut: the back-up is offered
        store.seek(5 * 4096)
        store.write(b"\0" * 4096)
    with here.start() as tessaly:
        tessaly.find("label", lambda text: text.startswith("Tessaly cannot start: ") and "damaged" in text)
        tessaly.press(tessaly.find("button", "OK"))
        tessaly.find("label", "There is a back-up. Would you like to restore it?")
        tessaly.press(tessaly.find("button", "Yes"))
        tessaly.find("dialog", "Open")
        tessaly.press(tessaly.find("button", "Open"))
        tessaly.press(tessaly.find("button", "Yes"))
        tessaly.find("label", lambda text: text.startswith("Database will be restored"))
        tessaly.press(tessaly.find("button", "OK"))
        equal("exit status of the offered restoring", tessaly.ended(), 1)
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        equal("exit status in the end", leave(tessaly), 0)


sys.exit(0)
