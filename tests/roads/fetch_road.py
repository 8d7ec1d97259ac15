"""From the mails in the Inbox to the rows of the map tables, through the real menu."""

import sys

from road import equal, leave, site

with site() as here:
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        tessaly.choose("Mail", "Fetch Mail")
        tessaly.window("Tessaly - Inbox")
        tessaly.find("label", "19 of 21 mails processed")
        equal("exit status", leave(tessaly), 0)

    equal("shop orders", here.rows("select full_name, city, quantity from shop_orders order by message_id"), [
        ("Ann Bee", "Bath", "12"),
        ("Zoe Krämer", "Köln", "3"),
        ("Liam O'Neil", "Cork", "6"),
        ("Mia Holt", "York", "2"),
        ("José Díaz", "Málaga", "10"),
        ("Tom Reed", "Leeds", "4"),
        ("Ida Berg", "Bergen", "5"),
        ("Noor Smit", "Utrecht", "8"),
    ])
    equal("wholesale", here.rows("select company, boxes from wholesale order by message_id"), [
        ("Garden Gate Ltd", "14"), ("Green Row & Sons", "3"), ("The Plant Barn", "40")])
    equal("enquiries", here.rows("select sender_name, question from enquiries order by message_id"), [
        ("Ruth Penn", "Do you deliver to the Isle of Skye?"),
        ("Omar Haddad", "Which roses grow in the shade?"),
        ("Eva Novák", "May I visit the nursery on a Sunday?")])
    equal("not taken by a map", here.rows("select count(*) from orders where tsl_processed=0"), [(4,)])
    equal("the block list", here.rows("select email from unsubscribe_tbl"), [("vera.lind@post.example",)])
    equal("left in the Inbox", here.mails_in("new") + here.mails_in("cur"), 1)
    equal("moved", here.mails_in(".Tessaly_Inbox/cur"), 20)
    equal("answers in the Outbox", len(list((here.tessaly / "outbox").glob("*.eml"))), 1)
    equal("the error log", here.log(), "")

sys.exit(0)
