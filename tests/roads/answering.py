"""What the roads of answering share: the web shop's post office, its orders, and the screens where answers are set.

The post office is an SMTP server in front of Dovecot (tests/serve/serve_post.cpp): the shop fetches its orders there,
and its visitors find their answers there."""

import contextlib
import email
import email.policy
import imaplib
import os
import smtplib
from email.message import EmailMessage

from road import equal, site

from fresh_site import TOLD_NAMES
from mail_server import Served

SHOP = "orders@rosecottage.example"
ORDER = "Order from the web shop"
ANSWER = "We pack it today."


def address(name):
    return f"{name}@mail.example"


def settings(post):
    return ["[main]", "org=Rose Cottage Nursery", "", "[mail_client]", "kind=imap", "host=127.0.0.1",
            f"port={post.facts['imap']}", "security=none", f"user={SHOP}", "password=secret", "send=smtp",
            "smtp_host=127.0.0.1", f"smtp_port={post.facts['smtp']}", "smtp_security=none", "smtp_login=no", "",
            *TOLD_NAMES]


@contextlib.contextmanager
def shop_with(*visitors):
    """The post office with a mailbox for each, and the sample as a shop that fetches and sends there."""
    with Served([os.environ["SERVE_POST"], SHOP, *map(address, visitors)]) as post, site() as here:
        here.settings.write_text("\n".join(settings(post)) + "\n", encoding="utf-8")
        yield post, here


# --- mails

def order(name, subject):
    mail = EmailMessage(policy=email.policy.SMTP)
    mail["From"], mail["To"], mail["Subject"] = f"The Form <{address(name)}>", SHOP, subject
    mail["Auto-Submitted"] = "auto-generated"  # a form's script is a machine
    mail.set_content(f"full_name: {name.title()} Moss\nemail: {address(name)}\ncity: Bath\nitem: Sage\n"
                     "quantity: 2 pieces\n")
    return mail


def post_order(post, name, subject=ORDER):
    with smtplib.SMTP("127.0.0.1", post.facts["smtp"]) as server:
        server.send_message(order(name, subject))
    post.ask("deliver")


def answers_to(post, name):
    """What lies in the visitor's mailbox, as a mail program reads it."""
    post.ask("deliver")
    with imaplib.IMAP4("127.0.0.1", post.facts["imap"]) as mailbox:
        mailbox.login(address(name), "secret")
        mailbox.select("INBOX", readonly=True)
        numbers = mailbox.search(None, "ALL")[1][0].split()
        return [email.message_from_bytes(mailbox.fetch(number, "(RFC822)")[1][0][1], policy=email.policy.default)
                for number in numbers]


def text_of(mail):
    return mail.get_content().replace("\r\n", "\n").rstrip("\n")


def handed_over(here):
    return list((here.tessaly / "outbox").glob("*.json"))


def wait_for_answer(tessaly, post, name):
    tessaly.until(lambda: answers_to(post, name), f"the answer to {name}")


def wait_for_rows(tessaly, here, table, count):
    tessaly.until(lambda: len(here.rows(f"select message_id from {table}")) == count, f"{count} rows of {table}")


def check_answers(here, post, numbers):
    """Each visitor has one answer, with that number; each order is stored once, and nothing waits."""
    for name, number in numbers:
        mails = answers_to(post, name)
        equal(f"the answers to {name}", [mail["Subject"] for mail in mails], [f"Order {number} is here"])
        equal("its sender", mails[0]["From"], SHOP)
        equal("its kind", mails[0]["Auto-Submitted"], "auto-replied")
        equal("its text", text_of(mails[0]), f"Dear {name.title()} Moss\n\n{ANSWER}")
    equal("the next number", here.rows("select LastToken from autocontent"), [(str(int(numbers[-1][1]) + 1),)])
    equal("orders", here.rows("select full_name from shop_orders order by message_id"),
          [(f"{name.title()} Moss",) for name, _ in numbers])
    equal("left in the Outbox", handed_over(here), [])
    equal("the error log", here.log(), "")


# --- screens

def open_preferences(tessaly):
    tessaly.choose("Preferences", "General")
    tessaly.find("frame", "General")


def answer_orders(tessaly):
    """From the open preferences: orders are answered, with a number from 007 on and the visitor's name."""
    tessaly.click("Command8")
    tessaly.window("Autoresponder configuration")
    tessaly.choose_entry("mapname_c", "alt+a", 2, "shop_orders")
    tessaly.press(tessaly.enabled("token_o"))
    tessaly.fill("prefix_t", "Order")
    tessaly.fill("token_t", "007")
    tessaly.fill("suffix_t", "is here")
    tessaly.find("label", "It will go out as: “Order 007 is here”")
    tessaly.choose_entry("greetfield_c", "alt+y", 2, "full_name")
    tessaly.find("label", "It will begin with: “Dear <full_name>”")
    tessaly.fill("autocontent_t", ANSWER)
    tessaly.click("enable_b")
    tessaly.find("label", "Replies go out after Update.")
    tessaly.click("autosubmit_s")
    tessaly.find("label", "Replies go out.")
    tessaly.click("cancel_b")
    tessaly.until_gone(None, "Autoresponder configuration")


def fetch_by_itself(tessaly):
    """From the open preferences: every tick fetches."""
    tessaly.press(tessaly.control("autofetch_ch"))
    tessaly.enabled("minutes_t")
    tessaly.fill("minutes_t", "1")
    tessaly.click("Command1")
    tessaly.find("label", lambda words: words.startswith("In force now: ") and "every ten seconds" in words)
    tessaly.click("close_b")
    tessaly.until_gone("frame", "General")
