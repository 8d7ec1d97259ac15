#!/usr/bin/python3
"""Reads mails with Python's own reader, an independent one, and prints what it found as JSON, a list in the order of
the files named."""

import email
import email.policy
import json
import sys


def text_of(mail, kind):
    part = mail.get_body(preferencelist=(kind,))
    return part.get_payload(decode=True).decode(part.get_content_charset()) if part else None


def defects_in(mail):
    found = []
    for part in mail.walk():
        found += [str(defect) for defect in part.defects]
        for value in part.values():
            found += [str(defect) for defect in getattr(value, "defects", ())]
    return found


def facts(path):
    with open(path, "rb") as file:
        raw = file.read()
    mail = email.message_from_bytes(raw, policy=email.policy.SMTPUTF8)
    return {
        "headers": mail.keys(),
        "subject": mail["Subject"],
        "to": [one.addr_spec for one in mail["To"].addresses] if mail["To"] else [],
        "from": mail["From"].addresses[0].addr_spec if mail["From"] else "",
        "date": mail["Date"].datetime.isoformat(),
        "type": mail.get_content_type(),
        "parts": [part.get_content_type() for part in mail.iter_parts()] if mail.is_multipart() else [],
        "plain": text_of(mail, "plain"),
        "html": text_of(mail, "html"),
        "defects": defects_in(mail),
        "longest_line": max(len(line) for line in raw.split(b"\r\n")),
        "lone_line_ends": raw.replace(b"\r\n", b"").count(b"\n") + raw.replace(b"\r\n", b"").count(b"\r"),
    }


print(json.dumps([facts(path) for path in sys.argv[1:]]))
