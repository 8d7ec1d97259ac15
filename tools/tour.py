"""The steps of tools/tour."""

import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys

source = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(source / "tools/drive"))
from mail_server import Served  # noqa: E402
from program import Program  # noqa: E402

site = pathlib.Path(sys.argv[1]).resolve()
pictures = site / "pictures"


def picture(name):
    Program.picture(str(pictures / f"{name}.png"))


def rows(store, table):
    print(f"\n{table}")
    subprocess.run(["sqlite3", "-readonly", "-column", "-header", store,
                    f"select * from [{table}] order by message_id"], check=True)


def second_visit(server):
    """Three visitors come back: their mails lie in the mailbox that the server keeps."""
    inbox = pathlib.Path(server.facts["maildir"]) / "new"
    for number, name in enumerate(("order-ann", "wholesale-garden-gate", "enquiry-ruth")):
        mail = next((source / "tools/sample/mails").glob(f"*.{name}"))
        come = 1786200000 + 60 * number
        os.utime(shutil.copy(mail, inbox / f"{come}.{name}"), (come, come))
    server.ask("own")


def connect_mailbox(tessaly, server):
    """Types the server's settings into the Mail Client page, tests them and keeps them."""
    tessaly.choose("Preferences", "Mail Client")
    tessaly.window("Mail Client")
    picture("5-mail-client")
    tessaly.keys("alt+i")  # an IMAP mailbox
    tessaly.type_into("text", "Address:", "ann@rosecottage.example")
    tessaly.type_into("password text", "Password", "secret")
    tessaly.type_into("text", "Mail server:", "127.0.0.1")
    tessaly.keys("alt+e", "n")  # no encryption: the server is this machine
    tessaly.type_into("spin button", "Port:", str(server.facts["imap"]))
    tessaly.type_into("text", "User name:", "ann")
    tessaly.press(tessaly.find("button", "Test"))
    tessaly.find("label", lambda words: words.startswith("It works"))
    picture("6-mail-client-tested")
    tessaly.press(tessaly.find("button", "OK"))
    told = tessaly.find("alert", "Mail Client")  # there is no keyring on a virtual screen, and the program says so
    tessaly.press(tessaly.until(lambda: next(iter(tessaly.all("button", "OK", below=told)), None), "its OK"))
    tessaly.until_gone("frame", "Mail Client")


def over_imap(tessaly):
    with Served([source / "build/ci/tests/serve_mail"]) as server:
        second_visit(server)
        connect_mailbox(tessaly, server)
        tessaly.choose("Mail", "Fetch Mail")
        tessaly.until_gone(None, "Fetching mail ...")
        tessaly.find("label", "3 of 3 mails processed")
        picture("7-fetched-over-imap")
        moved = [mail for part in ("new", "cur")
                 for mail in (pathlib.Path(server.facts["maildir"]) / ".Tessaly_Inbox" / part).iterdir()]
        print(f"\nFetched over IMAP and moved to Tessaly_Inbox there: {len(moved)}")


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
    over_imap(tessaly)
    tessaly.choose("File", "Exit")
    tessaly.window("Tessaly")
    picture("8-closing")
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
