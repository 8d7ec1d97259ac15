"""A new user's first day: setup, the wizard's first map from a real mailbox, later mails, a back-up, another start."""

import contextlib
import datetime
import os
import pathlib
import sqlite3
import sys

from road import equal, fresh, leave

from first_map import add_field, cut_into_lines, fetch_samples, save, set_up
from fresh_site import imap_settings
from mail_server import Served

SUBJECT = "Order from the site"
FIRST_COME = 1786200000
LONG_NAME = "N" * 300

USER_FIELDS = "full_name, order_no, town, delivery, whole_line"


def order(number, name, town="Bath (EU)", delivery="by post"):
    return f"Order no: {number}\nName: {name}\nTown: {town}\nDelivery: {delivery}\nRemarks: please ring twice\n"


# sender, account's address, subject, body
FIRST_MAILS = [
    ("ann@mail.example", "orders@alder.example", SUBJECT, order("A-1041", "Ann O'Hara", "Malmö (EU)")),
    ("zoe@mail.example", "orders@alder.example", SUBJECT.upper(), order("A-1042", "Zoë", "Köln (EU)", "collected")),
    ("max@mail.example", "orders@alder.example", SUBJECT, order("A-1043", LONG_NAME)),
    ("out@mail.example", "orders@alder.example", SUBJECT, order("A-1044", "Far Away", "Oslo")),
    ("tom@mail.example", "orders@alder.example", SUBJECT,
     order("", "\"Tom\" O''Neil 😀 <b>").replace("Order no", "ORDER NO").replace("Delivery", "Delivery: Delivery")),
    ("ida@mail.example", "orders@alder.example", "A question", order("A-1046", "Ida Berg")),
    ("cut@mail.example", "orders@alder.example", SUBJECT, "Order no: A-1047\n"),
    ("eva@mail.example", "hello@alder.example", SUBJECT, order("A-1048", "Eva Novák")),
    ("pal@mail.example", "ellen@alder.example", "Lunch?", "On Friday?\n"),
]
LATER_MAILS = [
    ("liv@mail.example", "orders@alder.example", SUBJECT, order("A-1050", "Liv;Ås", "Århus (EU)", "collected")),
    ("far@mail.example", "orders@alder.example", SUBJECT + "!", order("A-1051", "Other Form")),
]

# In the order of the columns above.
FIRST_VALUES = [
    ("Ann O'Hara", "A-1041", "Malmö", "by post", "Name: Ann O'Hara"),
    ("Zoë", "A-1042", "Köln", "collected", "Name: Zoë"),
    ("N" * 250, "A-1043", "Bath", "by post", "Name: " + "N" * 244),
    ("\"Tom\" O''Neil 😀 <b>", "", "Bath", "by post", "Name: \"Tom\" O''Neil 😀 <b>"),
]
LATER_VALUES = [("Liv;Ås", "A-1050", "Århus", "collected", "Name: Liv;Ås")]


def come(number):
    return FIRST_COME + 60 * number


def told_time(number):
    return datetime.datetime.fromtimestamp(come(number)).strftime("%Y-%m-%d %H:%M:%S")


def deliver(server, mails, first_number=0):
    inbox = pathlib.Path(server.facts["maildir"]) / "new"
    for number, (sender, to, subject, body) in enumerate(mails, first_number):
        file = inbox / f"{come(number)}.{number}"
        file.write_text(f"From: A Visitor <{sender}>\nTo: {to}\nSubject: {subject}\nMessage-ID: <{number}@mail.example>\n"
                        "MIME-Version: 1.0\nContent-Type: text/plain; charset=utf-8\n"
                        f"Content-Transfer-Encoding: 8bit\n\n{body}", encoding="utf-8")
        os.utime(file, (come(number), come(number)))
    server.ask("own")


def make_map(tessaly):
    fetch_samples(tessaly)
    cut_into_lines(tessaly, SUBJECT)
    tessaly.find("button", "Add this field»")  # what a screen reader says of the button that was Next
    stored = [add_field(tessaly, "order_no", 1, ["Order no: "], codes=[]),
              add_field(tessaly, "full_name", 2, ["Name: "]),
              add_field(tessaly, "line_two", 2),  # the same piece again
              add_field(tessaly, "town", 3, ["Town: ", " (EU)"]),
              add_field(tessaly, "delivery", 4, ["Delivery: "], codes=[("by post", "P"), ("collected", "it's C")])]
    equal("what is said to be stored", stored, ["A-1041", "Ann O'Hara", "Name: Ann O'Hara", "Malmö", "by post"])
    rename_field(tessaly, "line_two", "whole_line")
    save(tessaly, "site_orders", "fits 4 of the 7 stored mails of this account")
    tessaly.find("label", lambda text: text.startswith("The map site_orders is saved. 4 mails are in its table."))
    tessaly.click("Command1")
    tessaly.until_gone(None, "Congratulations!")


def rename_field(tessaly, old, new):
    tessaly.click("pfields_b")
    tessaly.window("Preview Fields")
    tessaly.choose_row("inbox_lv", old)
    tessaly.click("Open_b")
    tessaly.until_gone(None, "Preview Fields")
    tessaly.until(lambda: tessaly.text_of(tessaly.control("field_t")) == old, "the field to be changed")
    tessaly.fill("field_t", new)
    tessaly.click("next_b")
    tessaly.window("Map mails wizard - Add this field")
    tessaly.click("save_b")
    tessaly.until_gone(None, "Map mails wizard - Add this field")


def check_definition(here):
    equal("the map", here.rows("select table_name, query_id, lastformat, seperator, subject, date_created = "
                               "strftime('%Y-%m-%d 00:00:00', 'now', 'localtime') from table_list_tbl"),
          [("site_orders", 1, -1, "Line", SUBJECT, 1)])
    equal("its fields", here.rows("select fname, fposition, fignore, finclude, table_id, fcodegen from format_tbl "
                                  "order by id"), [
        ("whole_line", "Line2", "", -1, 1, 0),
        ("delivery", "Line4", "Delivery:", -1, 1, 1),
        ("town", "Line3", "Town: @@@ (EU)", -1, 1, 0),
        ("full_name", "Line2", "Name:", -1, 1, 0),
        ("order_no", "Line1", "Order no:", -1, 1, 2)])
    equal("its codes", here.rows("select fname, fielddesc, fieldCODE from fcodes_tbl join format_tbl "
                                 "on fieldID = format_tbl.id order by fcodes_tbl.id"),
          [("delivery", "by post", "P"), ("delivery", "collected", "it's C")])
    equal("its columns", [name for (name,) in here.rows("select name from pragma_table_info('site_orders')")],
          ["message_id", "tsl_subject", "tsl_RecDate", "tsl_Email", "tsl_status",
           "whole_line", "delivery", "town", "full_name", "order_no"])


def check_values(here, numbers, values):
    """The rows of the map are those of these mails, in their order."""
    mails = dict(enumerate(FIRST_MAILS + LATER_MAILS))
    equal("the map's values", here.rows(f"select {USER_FIELDS} from site_orders order by message_id"), values)
    equal("the map's own columns", here.rows("select tsl_Email, tsl_subject, tsl_RecDate, tsl_status from site_orders "
                                             "order by message_id"),
          [(mails[number][0], mails[number][2], told_time(number), "new") for number in numbers])


def processed(here, account):
    return here.rows(f"select tsl_Email, tsl_processed from {account} order by message_id")


with Served([os.environ["SERVE_MAIL"]]) as server, fresh(imap_settings(server.facts["imap"])) as here:
    deliver(server, FIRST_MAILS)
    copies = here.folder / "kept/copies"
    with here.start() as tessaly:
        set_up(tessaly, "Ellen Marsh", "Alder Nursery",
               [("orders", "orders@alder.example"), ("contact", "hello@alder.example")], copies)
        tessaly.dismiss_splash()
        equal("set up", here.rows("select install from install_tbl"), [(-1,)])
        equal("accounts", here.rows("select id, query, email, table_name from email_tbl order by id"),
              [(1, "orders", "orders@alder.example", "orders"), (2, "contact", "hello@alder.example", "contact")])
        make_map(tessaly)
        check_definition(here)
        check_values(here, [0, 1, 2, 4], FIRST_VALUES)
        equal("mails to orders", processed(here, "orders"), [
            ("ann@mail.example", -1), ("zoe@mail.example", -1), ("max@mail.example", -1), ("out@mail.example", 0),
            ("tom@mail.example", -1), ("ida@mail.example", 0), ("cut@mail.example", 0)])
        equal("mails to contact", processed(here, "contact"), [("eva@mail.example", 0)])

        deliver(server, LATER_MAILS, len(FIRST_MAILS))
        tessaly.choose("Mail", "Fetch Mail")
        tessaly.find("label", "2 of 3 mails processed")  # the third one is a private letter
        check_values(here, [0, 1, 2, 4, 9], FIRST_VALUES + LATER_VALUES)
        equal("later mails", processed(here, "orders")[7:], [("liv@mail.example", -1), ("far@mail.example", 0)])
        equal("exit status", leave(tessaly, "Yes"), 0)

    check_definition(here)
    with contextlib.closing(sqlite3.connect(copies / "data/Tessaly.mdb")) as copy:
        equal("its copy", copy.execute(f"select {USER_FIELDS} from site_orders order by message_id").fetchall(),
              FIRST_VALUES + LATER_VALUES)
        equal("the copy's state", copy.execute("pragma integrity_check").fetchall(), [("ok",)])

    with here.start() as tessaly:  # a store with a map: neither setup nor wizard
        tessaly.dismiss_splash()
        tessaly.window("Tessaly")
        equal("wizards", tessaly.all(None, lambda name: "Wizard for setting up" in name), [])
        equal("exit status of the second start", leave(tessaly), 0)
    equal("the error log", here.log(), "")

sys.exit(0)
