-- What a fresh store holds. The label stocks come from ../labels/label_stock.csv.

-- The first-run setup has not been done; nothing is fetched by itself.
INSERT INTO "install_tbl"("install") VALUES(0);
INSERT INTO "autofetch"("minutes") VALUES(-1);

-- "8/13/1976" marks a date that has not happened yet: 1 labels, 2 mailing lists, 3 sent-items report.
INSERT INTO "lastdate"("id", "gendate") VALUES(1, '8/13/1976'), (2, '8/13/1976'), (3, '8/13/1976');

-- Unsubscribing, off until the user turns it on. "Keyword Entry no:" becomes the recipient's own keyword and number
-- when a mail is sent.
INSERT INTO "unsub_detail"("unsub_text", "unsub_keyword", "unsub_fontname", "unsub_fontsize", "enable_unsub",
                           "noformat", "msgname", "lasttoken")
VALUES('You receive this mail because your address is on our list. To leave it, answer this mail and put the following into the subject line: Keyword Entry no:',
       'UNSUBSCRIBE', 'Arial', '2', 0, 0, 'Plain', 1);

-- In a standard text "keyword" and "Entry no" are exchanged when it is chosen; "Keyword Entry no:" stays the token.
INSERT INTO "unsub_msg"("msg_name", "unsubmsg") VALUES
    ('Plain', 'You receive this mail because your address is on our list. To leave it, answer this mail and put the following into the subject line: Keyword Entry no:'),
    ('Short', 'No more of these mails? Send this as the subject: Keyword Entry no:'),
    ('Friendly', 'We hope this mail was of use to you. If you would rather not hear from us again, simply reply with this subject and we will take you off our list at once: Keyword Entry no:'),
    ('Formal', 'Your address is kept for the sole purpose of sending you this information. You may withdraw it at any time by sending a mail with the following subject to the address this mail came from: Keyword Entry no:');

INSERT INTO "unsubconfirm_tbl"("mailsubject", "mailcontent", "addquery", "signature")
VALUES('You have been taken off our list',
       'Your address has been taken off our list, as you asked. You will receive no further mailings from us. If this was a mistake, just write to us.',
       0, '-1');

-- Names offered for the fields of a form. The first ones choose their type by themselves.
INSERT INTO "fnames_tbl"("fname") VALUES
    ('First Name'), ('Surname'), ('Jobtitle'), ('Company'), ('Address line1'), ('Address line2'), ('Address line3'),
    ('City/Town'), ('County/District'), ('Postal code'), ('Country'), ('Telephone'), ('Facsimile'), ('E-mail'),
    ('Enquiry'), ('Comments'),
    ('Title'), ('Department'), ('Mobile'), ('Website'), ('Date of birth'), ('Age group'), ('Occupation'),
    ('Product'), ('Quantity'), ('Size'), ('Colour'), ('Order number'), ('Customer number'), ('Delivery date'),
    ('Payment method'), ('Number of guests'), ('Arrival date'), ('Departure date'), ('Preferred contact'),
    ('Best time to call'), ('Newsletter'), ('Heard about us'), ('Rating');

-- The tags that a form page may carry in its head.
INSERT INTO "meta_tbl"("meta_name", "meta_desc") VALUES
    ('keywords', ''), ('description', ''), ('author', ''), ('copyright', ''), ('robots', ''), ('rating', ''),
    ('generator', ''), ('language', ''), ('revisit-after', ''), ('distribution', '');
