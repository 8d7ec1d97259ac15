"""The Mail Auditor's Reply: what is written there goes through a real SMTP server and comes to the visitor, once."""

import sys

from road import equal, leave

from answering import ORDER, SHOP, address, answers_to, handed_over, post_order, shop_with, text_of, wait_for_answer

TYPED = "Thank you, Ann. It goes off on Monday."


def fetch(tessaly):
    tessaly.choose("Mail", "Fetch Mail")
    tessaly.window("Tessaly - Inbox")
    tessaly.find("label", "2 of 2 mails processed")


def reply_to(tessaly, name):
    """By mouse and keyboard: the mail, Reply, the account, the text above the visitor's, Send."""
    tessaly.choose_row("LV_sub", address(name))
    tessaly.click("Inreply_b")
    tessaly.find("dialog", "Reply")
    equal("to", tessaly.text_of(tessaly.control("to_t")), address(name))
    equal("subject", tessaly.text_of(tessaly.control("subject_t")), f"Re: {ORDER}")
    tessaly.choose_entry("account_c", "alt+f", 2, "orders", title="Reply")
    tessaly.type_before("body_t", TYPED, title="Reply")
    tessaly.click("send_b")
    tessaly.until_gone("dialog", "Reply")


def check_reply(here, post):
    body = "\n".join([TYPED, "-----Your Original Message-----", "full_name: Ann Moss", f"email: {address('ann')}",
                      "city: Bath", "item: Sage", "quantity: 2 pieces"])
    mails = answers_to(post, "ann")
    equal("subjects in Ann's mailbox", [mail["Subject"] for mail in mails], [f"Re: {ORDER}"])
    equal("sender and recipient", (mails[0]["From"], mails[0]["To"]), (SHOP, address("ann")))
    equal("a person wrote it", mails[0]["Auto-Submitted"], None)
    equal("its text", text_of(mails[0]), body)
    equal("mails in Bob's mailbox", answers_to(post, "bob"), [])
    equal("listed as sent", here.rows("select tsl_to, tsl_subject, tsl_sentaccount from sentitems_tbl"),
          [(address("ann"), f"Re: {ORDER}", "orders")])
    equal("left in the Outbox", handed_over(here), [])
    equal("the error log", here.log(), "")


with shop_with("ann", "bob") as (post, here):
    for name in ("ann", "bob"):
        post_order(post, name)
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        fetch(tessaly)
        reply_to(tessaly, "ann")
        wait_for_answer(tessaly, post, "ann")
        tessaly.press_by_key("sentitems_b")
        tessaly.choose_row("LV_sub_si", address("ann"))  # it is listed among what was sent
        equal("exit status", leave(tessaly), 0)
    check_reply(here, post)

sys.exit(0)
