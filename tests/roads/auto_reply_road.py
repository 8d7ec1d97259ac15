"""Form mails come through a real SMTP server into Dovecot, a tick fetches them, and the answers come to the visitors.

In between the SMTP server is away, and the program is killed before an answer is handed over: each visitor still gets
one answer, and no number is left out."""

import email
import email.policy
import imaplib
import os
import smtplib
import sys
from email.message import EmailMessage

from road import equal, leave, site

from fresh_site import TOLD_NAMES
from mail_server import Served

SHOP = "orders@rosecottage.example"
VISITORS = {name: f"{name}@mail.example" for name in ("ann", "bob", "eva", "liv")}


def settings(post):
    return ["[main]", "org=Rose Cottage Nursery", "", "[mail_client]", "kind=imap", "host=127.0.0.1",
            f"port={post.facts['imap']}", "security=none", f"user={SHOP}", "password=secret", "send=smtp",
            "smtp_host=127.0.0.1", f"smtp_port={post.facts['smtp']}", "smtp_security=none", "smtp_login=no", "",
            *TOLD_NAMES]


def configure(here, post):
    here.settings.write_text("\n".join(settings(post)) + "\n", encoding="utf-8")
    here.change("insert into autocontent (Mapname, SubjectType, Subject, SubjectPrefix, SubjectDynamic, SubjectSuffix, "
                "GreetText, GreetField, LastToken, autocontent, enable) values ('shop_orders', 3, '', 'Order', '', "
                "'is here', 'Dear', 'full_name', '007', 'We pack it today.', -1)")
    here.change("update autofetch set minutes=1")


def order(name, subject="Order from the web shop"):
    mail = EmailMessage(policy=email.policy.SMTP)
    mail["From"], mail["To"], mail["Subject"] = f"The Form <{VISITORS[name]}>", SHOP, subject
    mail["Auto-Submitted"] = "auto-generated"  # a form's script is a machine
    mail.set_content(f"full_name: {name.title()} Moss\nemail: {VISITORS[name]}\ncity: Bath\nitem: Sage\n"
                     "quantity: 2 pieces\n")
    return mail


def post_order(post, *mail):
    with smtplib.SMTP("127.0.0.1", post.facts["smtp"]) as server:
        server.send_message(order(*mail))
    post.ask("deliver")


def answers_to(post, name):
    """The answers in the visitor's mailbox, as a mail program reads them."""
    with imaplib.IMAP4("127.0.0.1", post.facts["imap"]) as mailbox:
        mailbox.login(VISITORS[name], "secret")
        mailbox.select("INBOX", readonly=True)
        numbers = mailbox.search(None, "ALL")[1][0].split()
        return [email.message_from_bytes(mailbox.fetch(number, "(RFC822)")[1][0][1], policy=email.policy.default)
                for number in numbers]


def subjects_to(post, name):
    post.ask("deliver")
    return [mail["Subject"] for mail in answers_to(post, name)]


def wait_for_answer(tessaly, post, name):
    tessaly.until(lambda: subjects_to(post, name), f"the answer to {name}")


def wait_for_rows(tessaly, here, table, count):
    tessaly.until(lambda: len(here.rows(f"select message_id from {table}")) == count, f"{count} rows of {table}")


def handed_over(here):
    return list((here.tessaly / "outbox").glob("*.json"))


def the_server_is_away(here, post):
    """Two orders are fetched by a tick while nobody takes their answers; those go when it is there again."""
    for name in ("ann", "bob"):
        post_order(post, name)
    post.ask("down")
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        wait_for_rows(tessaly, here, "shop_orders", 2)
        tessaly.find("button", lambda name: name.startswith("Outbox: 2 mails wait in the Outbox: ") and
                     "tried again at" in name)
        equal("the passes went well", here.rows("select tsl_processed from orders"), [(-1,), (-1,)])
        post.ask("up")
        for name in ("ann", "bob"):
            wait_for_answer(tessaly, post, name)
        equal("exit status", leave(tessaly), 0)


def killed_before_handing_over(here, post):
    """The last two calls that put an answer into the Outbox are renames: the program dies before each of them."""
    post_order(post, "eva")
    for point in (1, 2):
        shim = {"LD_PRELOAD": os.environ["DISK_SHIM"], "DISK_SHIM_CALLS": "renames", "DISK_SHIM_NAMED": "/outbox/1",
                "DISK_SHIM_KILL": str(point), "ASAN_OPTIONS": "verify_asan_link_order=0"}
        with here.start(shim) as tessaly:
            tessaly.dismiss_splash()
            equal("killed", tessaly.ended(), -9)
        equal("handed over", handed_over(here), [])
        equal("rows", len(here.rows("select message_id from shop_orders")), 2)


def the_next_start_answers(here, post):
    post_order(post, "liv")
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        for name in ("eva", "liv"):
            wait_for_answer(tessaly, post, name)
        post_order(post, "liv", "A subject of no map")  # the tick behind all that was answered
        wait_for_rows(tessaly, here, "orders", 5)
        equal("exit status", leave(tessaly), 0)


def check_answers(here, post):
    for name, number in (("ann", "007"), ("bob", "8"), ("eva", "9"), ("liv", "10")):
        equal(f"the answers to {name}", subjects_to(post, name), [f"Order {number} is here"])
        mail = answers_to(post, name)[0]
        equal("its sender", mail["From"], SHOP)
        equal("its kind", mail["Auto-Submitted"], "auto-replied")
        equal("its text", mail.get_content().strip().replace("\r\n", "\n"),
              f"Dear {name.title()} Moss\n\nWe pack it today.")
    equal("the next number", here.rows("select LastToken from autocontent"), [("11",)])
    equal("orders", here.rows("select full_name from shop_orders order by message_id"),
          [(f"{name.title()} Moss",) for name in VISITORS])
    equal("left in the Outbox", handed_over(here), [])
    equal("the error log", here.log(), "")


with Served([os.environ["SERVE_POST"], SHOP, *VISITORS.values()]) as post, site() as here:
    configure(here, post)
    the_server_is_away(here, post)
    killed_before_handing_over(here, post)
    the_next_start_answers(here, post)
    check_answers(here, post)

sys.exit(0)
