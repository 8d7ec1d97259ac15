"""The SMTP server is away for the first minute of two answers: they wait, fetching goes on, and each comes once."""

import sys
import time

from road import equal, leave

from answering import (answer_orders, answers_to, check_answers, fetch_by_itself, handed_over, open_preferences,
                       post_order, shop_with, wait_for_answer, wait_for_rows)

VISITORS = ("ann", "bob")
A_MINUTE = 60.0


def set_up_with_the_server_away(tessaly, post):
    """The orders lie in the mailbox, the server goes, and then only is there a tick that fetches them."""
    tessaly.dismiss_splash()
    open_preferences(tessaly)
    answer_orders(tessaly)
    for name in VISITORS:
        post_order(post, name)
    post.ask("down")
    fetch_by_itself(tessaly)


def tells_of_a_failed_try(words):
    return words.startswith("Outbox: 2 mails wait in the Outbox: ") and "tried again at" in words


def last_fetch(tessaly):
    return tessaly.find("label", lambda words: words.startswith("Mail was last fetched ")).get_name()


def a_minute_without_a_server(here, tessaly):
    """From the handing-over of the first answer: it is tried at once and after half a minute, and fetching goes on."""
    tessaly.until(lambda: handed_over(here), "the first answer in the Outbox")
    since = time.monotonic()
    bar = tessaly.find("button", tells_of_a_failed_try)
    first_try, first_fetch = bar.get_name(), last_fetch(tessaly)
    tessaly.until(lambda: tells_of_a_failed_try(bar.get_name()) and bar.get_name() != first_try, "the second try")
    tessaly.until(lambda: time.monotonic() >= since + A_MINUTE, "the end of the minute")
    tessaly.until(lambda: last_fetch(tessaly) != first_fetch, "a later fetch")
    equal("answers that wait", len(handed_over(here)), len(VISITORS))


with shop_with(*VISITORS) as (post, here):
    with here.start() as tessaly:
        set_up_with_the_server_away(tessaly, post)
        a_minute_without_a_server(here, tessaly)
        equal("what came meanwhile", [answers_to(post, name) for name in VISITORS], [[], []])
        equal("the passes went well", here.rows("select tsl_processed from orders"), [(-1,), (-1,)])
        post.ask("up")
        for name in VISITORS:
            wait_for_answer(tessaly, post, name)
        post_order(post, "ann", "A subject of no map")  # a pass behind the answers
        wait_for_rows(tessaly, here, "orders", 3)
        equal("exit status", leave(tessaly), 0)
    check_answers(here, post, [("ann", "007"), ("bob", "8")])

sys.exit(0)
