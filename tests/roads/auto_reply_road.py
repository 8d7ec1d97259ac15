"""Form mails come through a real SMTP server into Dovecot, a tick fetches them, and the answers come to the visitors.

What is to be answered is set through the screens. In between the program is killed before an answer is handed over:
each visitor still gets one answer, and no number is left out."""

import os
import sys

from road import equal, leave

from answering import (answer_orders, check_answers, fetch_by_itself, handed_over, open_preferences, post_order,
                       shop_with, wait_for_answer, wait_for_rows)


def set_up_and_answer(here, post):
    with here.start() as tessaly:
        tessaly.dismiss_splash()
        open_preferences(tessaly)
        answer_orders(tessaly)
        fetch_by_itself(tessaly)
        equal("minutes", here.rows("select minutes from autofetch"), [(1,)])
        for name in ("ann", "bob"):
            post_order(post, name)
        for name in ("ann", "bob"):
            wait_for_answer(tessaly, post, name)
        equal("exit status", leave(tessaly), 0)


def killed_before_handing_over(here, post):
    """The last two calls that put an answer into the Outbox are renames: the program dies before each of them."""
    post_order(post, "eva")
    for point in (1, 2):
        # A mail's two files are named after the clock's seconds, which begin with 1 until 2033; no other file is.
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


with shop_with("ann", "bob", "eva", "liv") as (post, here):
    set_up_and_answer(here, post)
    killed_before_handing_over(here, post)
    the_next_start_answers(here, post)
    check_answers(here, post, [("ann", "007"), ("bob", "8"), ("eva", "9"), ("liv", "10")])

sys.exit(0)
