"""The report on sent mails is printed: from the Mail Auditor, by the desktop's print dialog, to a real CUPS."""

import datetime
import subprocess
import sys

from road import equal, leave, site

from fresh_site import TOLD_NAMES
from print_server import PRINTER, PrintServer

SENT = [f"friend{number}@mail.example" for number in range(1, 121)]


def add_sent_mails(here):
    """Yesterday's, since when there was no report: midnight may pass meanwhile."""
    yesterday = datetime.date.today() - datetime.timedelta(days=1)
    values = ",".join(f"('{to}', 'Spring offer', '{yesterday} 08:00:00', 'Hello', 'orders', "
                      "'orders@rosecottage.example', 0)" for to in SENT)
    here.change("insert into sentitems_tbl (tsl_to, tsl_subject, tsl_sentdate, tsl_body, tsl_sentaccount, "
                f"tsl_sentmailid, matchid) values {values}")
    here.change(f"update lastdate set gendate='{yesterday.month}/{yesterday.day}/{yesterday.year}' where id=3")
    with here.settings.open("a", encoding="utf-8") as settings:
        settings.write("\n" + "\n".join(TOLD_NAMES) + "\n")


def make_report(tessaly):
    tessaly.choose("Mail", "Mail Auditor")
    tessaly.window("Tessaly - Inbox")
    tessaly.press_by_key("sentitems_b")
    tessaly.choose_entry("account_c", "alt+u", 2, "orders")
    tessaly.click("genrep_b")
    tessaly.find("label", lambda words: words.startswith("The list shows the report: 120 mails of orders"))


def print_report(tessaly):
    """How many pages the preview tells."""
    tessaly.click("prnrep_t")
    tessaly.find("frame", "Print Report")
    pages = int(tessaly.control("pages_l").get_name().split()[-1])
    tessaly.click("print_b")
    dialog = tessaly.find("dialog", "Print")
    tessaly.until(lambda: tessaly.all("combo box", PRINTER, below=dialog), "the printer in the dialog")
    tessaly.press(next(iter(tessaly.all("button", "Print", below=dialog))))
    tessaly.find("label", "The report was handed to the printer.")
    return pages


def check_paper(job, pages):
    facts = subprocess.run(["pdfinfo", job], check=True, capture_output=True, text=True).stdout
    equal("title and number of pages",
          [line.split()[1:] for line in facts.splitlines() if line.startswith(("Title:", "Pages:"))],
          [["Report", "on", "Sent", "Mails"], [str(pages)]])
    text = subprocess.run(["pdftotext", "-layout", job, "-"], check=True, capture_output=True, text=True).stdout
    printed = text.split("\f")[:-1]
    equal("pages with sent mails", [any(to in page.split() for to in SENT) for page in printed], [True] * pages)
    equal("sent mails on paper", sorted(word for word in text.split() if word in SENT), sorted(SENT))


with PrintServer() as printing, site() as here:
    add_sent_mails(here)
    with here.start(printing.environment) as tessaly:
        tessaly.dismiss_splash()
        make_report(tessaly)
        pages = print_report(tessaly)
        tessaly.until(printing.jobs, "the job")
        equal("exit status", leave(tessaly), 0)
    equal("jobs", len(printing.jobs()), 1)
    equal("more than one page", pages > 1, True)
    check_paper(printing.jobs()[0], pages)
    equal("the error log", here.log(), "")

sys.exit(0)
