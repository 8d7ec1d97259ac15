"""A new user's first start: the setup, left in the middle and gone on with, up to a console that fetches."""

import contextlib
import os
import pathlib
import shutil
import sqlite3
import sys

from road import SOURCE, equal, leave, site


def make_new(here):
    """The delivered store, and settings that know of the mailbox only."""
    out = pathlib.Path(os.environ.get("TESSALY_OUT", SOURCE / "out"))
    shutil.copy(out / "tools/mailapp.mdb", here.store)
    text = here.settings.read_text(encoding="utf-8")
    here.settings.write_text(text[text.index("[mail_client]"):], encoding="utf-8")


def add_account(tessaly, query, email):
    tessaly.type_into("text", "Query name:", query, title="Configure")
    tessaly.type_into("text", "E-mail ID:", email, title="Configure")
    tessaly.press(tessaly.find("button", "Add"))
    tessaly.find("list item", query)


with site() as here:
    make_new(here)
    back_ups = here.folder / "kept/back-ups"
    with here.start() as tessaly:
        tessaly.window("Tessaly Setup")
        tessaly.type_into("text", "Administrator name:", "Ellen Marsh", title="Tessaly Setup")
        tessaly.type_into("text", "Organisation:", "Rose Cottage", title="Tessaly Setup")
        tessaly.keys("Return", title="Tessaly Setup")
        tessaly.window("Configure")
        add_account(tessaly, "orders", "orders@rosecottage.example")
        tessaly.keys("Escape", title="Configure")
        equal("exit status of a setup that was left", tessaly.ended(), 0)
    equal("set up", here.rows("select install from install_tbl"), [(0,)])

    with here.start() as tessaly:
        tessaly.window("Tessaly Setup")
        tessaly.press(tessaly.find("button", "Next»"))
        tessaly.window("Configure")
        tessaly.find("list item", "orders")
        add_account(tessaly, "contact", "hello@rosecottage.example")
        tessaly.press(tessaly.find("button", "Next»"))
        tessaly.find("button", "Finish")
        tessaly.type_into("text", "Back-up folder:", str(back_ups), title="Tessaly Setup")
        tessaly.press(tessaly.find("button", "Finish"))
        tessaly.find("label", f"Do you want to create a new folder called {back_ups} ?")
        tessaly.press(tessaly.find("button", "Yes"))
        tessaly.dismiss_splash()
        tessaly.window("Tessaly")
        tessaly.choose("Mail", "Fetch Mail")
        tessaly.until(lambda: here.mails_in(".Tessaly_Inbox/cur") > 0, "fetched mail")
        equal("exit status", leave(tessaly, "Yes"), 0)
    equal("set up", here.rows("select install from install_tbl"), [(-1,)])
    with contextlib.closing(sqlite3.connect(back_ups / "data/Tessaly.mdb")) as copy:
        equal("accounts in the back-up", copy.execute("select query from email_tbl").fetchall(), [("orders",), ("contact",)])
    equal("the folder for forms", list((back_ups / "html").iterdir()), [])
    equal("accounts", here.rows("select query,table_name from email_tbl"), [("orders", "orders"), ("contact", "contact")])
    equal("mails in both tables", [here.rows(f"select count(*)>0 from {name}") for name in ("orders", "contact")],
          [[(1,)], [(1,)]])
    settings = here.settings.read_text(encoding="utf-8")
    equal("kept names", ["admin=Ellen Marsh" in settings, "org=Rose Cottage" in settings], [True, True])
    equal("the error log", here.log(), "")

sys.exit(0)
