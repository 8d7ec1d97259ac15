"""The steps of tools/tour."""

import os
import pathlib
import sqlite3
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "drive"))
from program import Program  # noqa: E402

site = pathlib.Path(sys.argv[1]).resolve()
pictures = site / "pictures"


def picture(name):
    Program.picture(str(pictures / f"{name}.png"))


def rows(store, table):
    print(f"\n{table}")
    subprocess.run(["sqlite3", "-readonly", "-column", "-header", store,
                    f"select * from [{table}] order by message_id"], check=True)


def walk_through(tessaly):
    tessaly.window("Tip of the Day")
    picture("1-splash")
    tessaly.dismiss_splash()
    picture("2-console")
    tessaly.choose("Mail", "Fetch Mail")
    inbox = tessaly.window("Tessaly - Inbox")
    picture("3-mail-auditor")
    first = tessaly.until(lambda: next(iter(tessaly.all("table cell", below=inbox)), None), "a mail in the list")
    tessaly.press(first)
    picture("4-mail-auditor-with-a-mail")
    tessaly.choose("File", "Exit")
    tessaly.window("Tessaly")
    picture("5-closing")
    tessaly.press(tessaly.find("button", "No"))
    return tessaly.ended()


def main():
    with Program(str(site / "tessaly/tessaly"), {"XDG_CONFIG_HOME": str(site / "config")}) as tessaly:
        status = walk_through(tessaly)
    store = str(site / "tessaly/mailapp.mdb")
    for table in ("shop_orders", "wholesale", "enquiries"):
        rows(store, table)
    with sqlite3.connect(store) as connection:
        blocked = [email for (email,) in connection.execute("select email from unsubscribe_tbl")]
    print(f"\nLeft the list: {', '.join(blocked)}")
    print(f"Still in the Inbox: {len(os.listdir(site / 'Maildir/new'))}")
    print(f"Pictures of the screens: {pictures}")
    return status


sys.exit(main())
