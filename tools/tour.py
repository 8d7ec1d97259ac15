"""The steps of tools/tour."""

import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys

source = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(source / "tools/drive"))
import fresh_site  # noqa: E402
from first_map import add_field, cut_into_lines, fetch_samples, save, set_up  # noqa: E402
from mail_server import Served  # noqa: E402
from program import Program  # noqa: E402

site = pathlib.Path(sys.argv[1]).resolve()
pictures = site / "pictures"
new_user = site / "new-user"


def picture(name):
    number = len(list(pictures.iterdir())) + 1
    Program.picture(str(pictures / f"{number:02}-{name}.png"))


def rows(store, table):
    print(f"\n{table}")
    subprocess.run(["sqlite3", "-readonly", "-column", "-header", store,
                    f"select * from [{table}] order by message_id"], check=True)


def deliver(server, mails, later=0):
    """Puts mails of the sample into the mailbox that the server keeps, at the times in their names."""
    inbox = pathlib.Path(server.facts["maildir"]) / "new"
    for mail in sorted((source / "tools/sample/mails").glob(mails)):
        come = int(mail.name.split(".")[0]) + later
        os.utime(shutil.copy(mail, inbox / f"{come}.{mail.name}"), (come, come))
    server.ask("own")


def connect_mailbox(tessaly, server):
    """Types the server's settings into the open Mail Client page, tests them and keeps them."""
    tessaly.window("Mail Client")
    tessaly.enabled("password_t")  # the desktop's keyring has been asked
    picture("mail-client")
    tessaly.keys("alt+i")  # an IMAP mailbox
    tessaly.type_into("text", "Address:", "ann@rosecottage.example")
    tessaly.type_into("password text", "Password", "secret")
    tessaly.type_into("text", "Mail server:", "127.0.0.1")
    tessaly.keys("alt+y", "n")  # no encryption: the server is this machine
    tessaly.keys("alt+g", "n")  # nothing is sent: what would be stays in the Outbox
    tessaly.type_into("spin button", "Port:", str(server.facts["imap"]))
    tessaly.type_into("text", "User name:", "ann")
    tessaly.press(tessaly.find("button", "Test"))
    tessaly.find("label", lambda words: words.startswith("It works"))
    picture("mail-client-tested")
    tessaly.press(tessaly.find("button", "OK"))
    told = tessaly.find("alert", "Mail Client")  # there is no keyring on a virtual screen, and the program says so
    tessaly.press(tessaly.until(lambda: next(iter(tessaly.all("button", "OK", below=told)), None), "its OK"))
    tessaly.until_gone("frame", "Mail Client")


def make_first_map(tessaly, server):
    fetch_samples(tessaly, picture)
    picture("wizard-no-mail-yet")
    tessaly.click("mail_client_b")
    connect_mailbox(tessaly, server)
    tessaly.click("back_b")
    tessaly.window("Map mails Wizard-Step1")
    tessaly.click("next_b")
    cut_into_lines(tessaly, "Order from the web shop", picture)
    add_field(tessaly, "full_name", 1, ["full_name: "], seen=picture)
    add_field(tessaly, "city", 3, ["city: "])
    add_field(tessaly, "item", 4, ["item: "], codes=[("Lavender, blue", "LAV"), ("Foxglove", "FOX")], seen=picture)
    add_field(tessaly, "quantity", 5, ["quantity: ", " pieces"], seen=picture)
    save(tessaly, "web_orders", lambda words: words.startswith("fits 8 of the "), picture)
    tessaly.click("Command1")


def leave(tessaly):
    tessaly.choose("File", "Exit")
    tessaly.find("label", "Would you like to backup your data?")
    picture("closing")
    tessaly.press(tessaly.find("button", "No"))
    return tessaly.ended()


def first_day():
    """A new user: setup, mailbox, first map, and a mail that comes later."""
    fresh_site.make(new_user, fresh_site.TOLD_NAMES)
    home = {"HOME": str(new_user), "XDG_CONFIG_HOME": str(new_user / "config")}  # no mail of who takes the tour
    with Served([source / "build/ci/tests/serve_mail"]) as server, \
            Program(str(new_user / "tessaly/tessaly"), home) as tessaly:
        deliver(server, "*")
        set_up(tessaly, "Ellen Marsh", "Rose Cottage Nursery",
               [("orders", "orders@rosecottage.example"), ("contact", "hello@rosecottage.example")],
               new_user / "copies", picture)
        tessaly.dismiss_splash()
        make_first_map(tessaly, server)
        deliver(server, "*.order-ann", later=1000000)
        tessaly.choose("Mail", "Fetch Mail")
        tessaly.find("label", "1 of 2 mails processed")
        picture("fetched-over-imap")
        moved = [mail for part in ("new", "cur")
                 for mail in (pathlib.Path(server.facts["maildir"]) / ".Tessaly_Inbox" / part).iterdir()]
        status = leave(tessaly)
    print("A new user: setup, mailbox, and a first map, made by hand from one mail.")
    rows(str(new_user / "tessaly/mailapp.mdb"), "web_orders")
    print(f"\nFetched over IMAP and moved to Tessaly_Inbox there: {len(moved)}")
    return status


def sample_site():
    with Program(str(site / "tessaly/tessaly"), {"XDG_CONFIG_HOME": str(site / "config")}) as tessaly:
        tessaly.window("Tip of the Day")
        picture("splash")
        tessaly.dismiss_splash()
        picture("console")
        tessaly.choose("Mail", "Fetch Mail")
        inbox = tessaly.window("Tessaly - Inbox")
        picture("mail-auditor")
        first = tessaly.until(lambda: next(iter(tessaly.all("table cell", below=inbox)), None), "a mail in the list")
        tessaly.press(first)
        picture("mail-auditor-with-a-mail")
        status = leave(tessaly)
    store = str(site / "tessaly/mailapp.mdb")
    print("\nThe sample site, where three maps are made already.")
    for table in ("shop_orders", "wholesale", "enquiries"):
        rows(store, table)
    with sqlite3.connect(store) as connection:
        blocked = [email for (email,) in connection.execute("select email from unsubscribe_tbl")]
    print(f"\nLeft the list: {', '.join(blocked)}")
    print(f"Still in the Inbox: {len(os.listdir(site / 'Maildir/new'))}")
    return status


def main():
    status = first_day() or sample_site()
    print(f"Pictures of the screens: {pictures}")
    return status


sys.exit(main())
