#include "support/hostile_mails.h"
#include <QRandomGenerator>
#include <QtGlobal>

namespace {

using mails = std::vector<hostile_mail>;

QByteArray head_to(const QByteArray &account, const QByteArray &subject = "An order")
{
    return "To: " + account + "\nFrom: ann@example.net\nSubject: " + subject + "\n";
}

QByteArray multipart_head(const QByteArray &account, const QByteArray &boundary)
{
    return head_to(account) + "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=\"" + boundary + "\"\n\n";
}

QByteArray noise(int size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

void add_broken_heads(const QByteArray &account, mails &all)
{
    const QByteArray to = "To: " + account + '\n';
    all.push_back({"nothing at all", ""});
    all.push_back({"one line end", "\n"});
    all.push_back({"one letter", "x"});
    all.push_back({"a colon alone", ":\n\n"});
    all.push_back({"no header, only text", "Dear Sir,\nI have no header.\n"});
    all.push_back({"a header without an end", head_to(account)});
    all.push_back({"a header without a last line end", "To: " + account});
    all.push_back({"continuation before any field", "  continued\n\tagain\n" + head_to(account) + "\nbody\n"});
    all.push_back({"lone CRs for line ends", "To: " + account + "\rSubject: x\r\rbody\r"});
    all.push_back({"LF CR for line ends", "To: " + account + "\n\rSubject: x\n\r\n\rbody\n\r"});
    all.push_back({"a subject of one million letters", head_to(account, QByteArray(1000000, 's')) + "\nbody\n"});
    all.push_back({"a subject folded a hundred thousand times",
                   head_to(account, "a\n" + QByteArray(" b\n").repeated(100000).chopped(1)) + "\nbody\n"});
    all.push_back({"a header of five megabytes that never ends", to + "X-Long: " + QByteArray(5 * 1024 * 1024, 'x')});
    all.push_back(
        {"a hundred thousand fields", QByteArray("X-Field: y\n").repeated(100000) + head_to(account) + "\nbody\n"});
    all.push_back({"a hundred To fields", to.repeated(100) + "Subject: x\n\nbody\n"});
    all.push_back({"a hundred thousand recipients",
                   "To: " + QByteArray("a@example.org, ").repeated(100000) + account + "\nSubject: x\n\nbody\n"});
    all.push_back({"two subjects", head_to(account) + "Subject: the other one\n\nbody\n"});
    all.push_back(
        {"a field name of a megabyte", QByteArray(1024 * 1024, 'n') + ": x\n" + head_to(account) + "\nbody\n"});
    all.push_back({"blanks before the colon", "To : " + account + "\nSubject \t: x\n\nbody\n"});
    all.push_back({"fields of control characters", head_to(account, "\x01\x02\x1B[2J\x7F\x08") + "\nbody \x1B[31m\n"});
}

void add_zeros_and_noise(const QByteArray &account, mails &all)
{
    const QByteArray zero(1, '\0');
    all.push_back({"a zero in the subject", head_to(account, "a" + zero + "b") + "\nbody\n"});
    all.push_back({"a zero in the body", head_to(account) + "\nName: A" + zero + "nn\n"});
    all.push_back({"a zero in the To field", "To: " + account + zero + "\nSubject: x\n\nbody\n"});
    all.push_back(
        {"a zero in the sender", "To: " + account + "\nFrom: a" + zero + "@example.net\nSubject: x\n\nbody\n"});
    all.push_back({"a zero in a field name", "Sub" + zero + "ject: x\n" + head_to(account) + "\nbody\n"});
    all.push_back({"zeros only", QByteArray(10000, '\0')});
    all.push_back({"zeros behind the header", head_to(account) + '\n' + QByteArray(10000, '\0')});
    all.push_back({"noise only", noise(20000, 1)});
    all.push_back({"noise behind the header", head_to(account) + '\n' + noise(20000, 2)});
    all.push_back({"noise in the subject", head_to(account, noise(200, 3).replace('\n', ' ')) + "\nbody\n"});
    all.push_back({"noise as base64", head_to(account) + "Content-Transfer-Encoding: base64\n\n" + noise(20000, 4)});
    all.push_back({"noise as quoted-printable",
                   head_to(account) + "Content-Transfer-Encoding: quoted-printable\n\n" + noise(20000, 5)});
    all.push_back({"noise as uuencode",
                   head_to(account) + "Content-Transfer-Encoding: x-uuencode\n\nbegin 644 x\n" + noise(20000, 6)});
    all.push_back({"noise between boundaries",
                   multipart_head(account, "b") + "--b\n" + noise(5000, 7) + "\n--b\n" + noise(5000, 8) + "\n--b--\n"});
    all.push_back({"noise as HTML", head_to(account) + "Content-Type: text/html\n\n" + noise(20000, 9)});
}

void add_charsets(const QByteArray &account, mails &all)
{
    const auto with_charset = [&](const QByteArray &name, const QByteArray &charset, const QByteArray &body) {
        all.push_back({name, head_to(account) + "Content-Type: text/plain; charset=" + charset + "\n\n" + body});
    };
    with_charset("UTF-8 that is none", "utf-8", "Name: J\xF6rg \xFF\xFE\n");
    with_charset("overlong UTF-8", "utf-8", "Name: \xC0\xAF\xE0\x80\xAF\xF0\x80\x80\xAF\n");
    with_charset("surrogates in UTF-8", "utf-8", "Name: \xED\xA0\x80\xED\xB0\x80\n");
    with_charset("UTF-8 cut in a letter", "utf-8", "Name: \xF0\x9F\x98");
    with_charset("a charset nobody knows", "x-martian", "Name: \xE9\n");
    with_charset("a charset name of a hundred kilobytes", QByteArray(100000, 'c'), "Name: \xE9\n");
    with_charset("a charset that is a path", "../../../../etc/passwd", "Name: \xE9\n");
    with_charset("a charset with converter instructions", "\"utf-16//TRANSLIT//IGNORE\"", "Name: \xE9\n");
    with_charset("UTF-16 of an odd length", "utf-16le", QByteArray("N\0a\0m", 5));
    with_charset("half a surrogate pair in UTF-16", "utf-16le", QByteArray("\x3D\xD8N\0", 4));
    with_charset("UTF-7 of a script", "utf-7", "+ADw-script+AD4-\n");
    with_charset("Japanese that never ends its escape", "iso-2022-jp", "\x1B$B\x1B$B\x1B");
    with_charset("Korean shifts without end", "iso-2022-kr", QByteArray("\x0E\x0F").repeated(50000));
    with_charset("an empty charset", "\"\"", "Name: \xE9\n");
    all.push_back({"an encoded word that never ends", head_to(account, "=?utf-8?Q?abc") + "\nbody\n"});
    all.push_back(
        {"ten thousand encoded words", head_to(account, QByteArray("=?utf-8?B?w6k=?= ").repeated(10000)) + "\nbody\n"});
    all.push_back(
        {"ten thousand openings of an encoded word", head_to(account, QByteArray("=?").repeated(10000)) + "\nbody\n"});
    all.push_back({"an encoded word of broken base64", head_to(account, "=?utf-8?B?!!!!?=") + "\nbody\n"});
}

void add_injections(const QByteArray &account, mails &all)
{
    const QByteArray evil = "'; drop table email_tbl; --";
    all.push_back({"a statement in the subject", head_to(account, evil) + "\nbody\n"});
    all.push_back({"a statement in the body",
                   head_to(account) + "\nName: " + evil + "\nEmail: \"; delete * from unsubscribe_tbl\n"});
    all.push_back(
        {"a statement as the sender", "To: " + account + "\nFrom: \"" + evil + "\"@example.net\nSubject: x\n\nbody\n"});
    all.push_back({"brackets, quotes and bars", head_to(account, "[a]'\"|`#*?%_") + "\n[x]'\"|`#*?%_\n"});
    all.push_back(
        {"line ends in an encoded subject", head_to(account, "=?utf-8?Q?x=0D=0ABcc:_all@example.org?=") + "\nbody\n"});
    all.push_back(
        {"line ends in an encoded name",
         "To: " + account + "\nFrom: =?utf-8?Q?A=0D=0ABcc:_all@example.org?= <ann@example.net>\nSubject: x\n\nbody\n"});
    all.push_back(
        {"line ends in an encoded address",
         "To: " + account + "\nFrom: =?utf-8?Q?ann@example.net=0D=0ABcc:_all@example.org?=\nSubject: x\n\nbody\n"});
    all.push_back({"line ends in a quoted address",
                   "To: " + account + "\nFrom: \"a\\\r\n b\"@example.net\nSubject: x\n\nbody\n"});
    all.push_back(
        {"line ends in a Message-ID", head_to(account) + "Message-ID: <a\r\n b@x>\nReferences: <c\n\td@x>\n\nbody\n"});
    all.push_back({"a Message-ID of a megabyte",
                   head_to(account) + "Message-ID: <" + QByteArray(1000000, 'm') + "@x>\n\nbody\n"});
    all.push_back({"a hundred thousand references",
                   head_to(account) + "References:" + QByteArray(" <r@x>\n").repeated(100000) + "\nbody\n"});
    all.push_back({"a path as the subject", head_to(account, "..\\..\\mailapp.mdb") + "\n/etc/passwd\n"});
    all.push_back({"place markers", head_to(account, "%1 %2 %n %s {0}") + "\n%1 %n %s\n"});
    all.push_back({"unsubscribe with a statement for a number", head_to(account, "unsubscribe 1 or 1=1") + "\nbody\n"});
    all.push_back({"unsubscribe with a number beyond all bounds", head_to(account, "unsubscribe 1e999") + "\nbody\n"});
    all.push_back(
        {"unsubscribe with a thousand digits", head_to(account, "unsubscribe " + QByteArray(1000, '9')) + "\nbody\n"});
}

void add_unanswerable(const QByteArray &account, mails &all)
{
    const auto from = [&](const QByteArray &name, const QByteArray &fields) {
        all.push_back({name, "To: " + account + "\nSubject: unsubscribe 1037\n" + fields + "\nbody\n"});
    };
    from("no sender", "");
    from("an empty sender", "From:\n");
    from("a sender without a domain", "From: root\n");
    from("a sender in empty brackets", "From: <>\n");
    from("two at signs", "From: a@b@example.net\n");
    from("a sender with blanks", "From: \"a b\"@example.net\n");
    from("a sender of ten thousand letters", "From: " + QByteArray(10000, 'a') + "@example.net\n");
    from("ten thousand open brackets", "From: " + QByteArray(10000, '<') + "a@example.net\n");
    from("ten thousand open comments", "From: " + QByteArray(10000, '(') + "a@example.net\n");
    from("a quote that never ends", "From: \"a@example.net\n");
    from("groups within groups", "From: " + QByteArray("g:").repeated(5000) + "a@example.net\n");
    from("answer to oneself", "From: " + account + "\nReply-To: " + account + "\n");
}

void add_structures(const QByteArray &account, mails &all)
{
    QByteArray deep = head_to(account), messages = head_to(account), many = multipart_head(account, "b");
    for (int depth = 0; depth < 3000; ++depth) {
        const QByteArray boundary = "b" + QByteArray::number(depth);
        deep += "Content-Type: multipart/mixed; boundary=" + boundary + "\n\n--" + boundary + '\n';
        messages += "Content-Type: message/rfc822\n\n";
    }
    for (int part = 0; part < 2000; ++part)
        many += "--b\nContent-Type: text/plain\n\npart " + QByteArray::number(part) + '\n';
    all.push_back({"parts nested three thousand deep", deep + "\nbottom\n"});
    all.push_back({"mails within mails three thousand deep", messages + "\nbottom\n"});
    all.push_back({"two thousand parts", many + "--b--\n"});
    all.push_back({"two thousand parts of nothing",
                   multipart_head(account, "b") + QByteArray("--b\n").repeated(2000) + "--b--\n"});
    all.push_back({"a boundary that never occurs", multipart_head(account, "never") + "Name: Ann\n"});
    all.push_back({"a boundary that never ends", multipart_head(account, "b") + "--b\n\nName: Ann\n"});
    all.push_back({"an empty boundary", multipart_head(account, "") + "--\n\nName: Ann\n--\n"});
    all.push_back({"a boundary of a hundred kilobytes",
                   multipart_head(account, QByteArray(100000, 'b')) + "--" + QByteArray(100000, 'b') + "\n\nx\n"});
    all.push_back(
        {"two parts in one boundary of both",
         multipart_head(account, "b") + "--b\nContent-Type: multipart/mixed; boundary=b\n\n--b\n\nx\n--b--\n--b--\n"});
    all.push_back(
        {"a multipart that says base64",
         head_to(account) +
             "Content-Type: multipart/mixed; boundary=b\nContent-Transfer-Encoding: base64\n\nLS1iCgp4Ci0tYi0tCg==\n"});
    all.push_back({"a type without a subtype", head_to(account) + "Content-Type: multipart\n\nx\n"});
    all.push_back(
        {"a type of a megabyte", head_to(account) + "Content-Type: text/" + QByteArray(1000000, 'p') + "\n\nx\n"});
    all.push_back({"a hundred thousand parameters",
                   head_to(account) + "Content-Type: text/plain" + QByteArray("; a=b").repeated(100000) + "\n\nx\n"});
    all.push_back({"a charset in a thousand pieces", head_to(account) + "Content-Type: text/plain" +
                                                         QByteArray("; charset*0=u").repeated(1000) + "\n\nx\n"});
    all.push_back(
        {"a million groups within groups in an inner mail",
         head_to(account) + "Content-Type: message/rfc822\n\nTo: " + QByteArray("g:").repeated(1000000) + "\n\nx\n"});
    all.push_back({"thirty thousand groups within groups",
                   "To: " + QByteArray("g:").repeated(30000) + account + "\nSubject: x\n\nx\n"});
    all.push_back({"nested parts, then a million other boundaries", deep + QByteArray("--x\n").repeated(1000000)});
    all.push_back({"a million empty parts", multipart_head(account, "b") + QByteArray("\nx\n--b\n").repeated(500000)});
    all.push_back({"half a million fields in a part",
                   multipart_head(account, "b") + "--b\n" + QByteArray("X: y\n").repeated(500000) + "\nx\n--b--\n"});
    all.push_back({"an encoding nobody knows", head_to(account) + "Content-Transfer-Encoding: x-secret\n\nx\n"});
}

void add_big_ones(const QByteArray &account, mails &all)
{
    const int five_megabytes = 5 * 1024 * 1024;
    all.push_back({"five megabytes in one line", head_to(account) + '\n' + QByteArray(five_megabytes, 'x')});
    all.push_back({"five megabytes of line ends", head_to(account) + '\n' + QByteArray(five_megabytes, '\n')});
    all.push_back({"five megabytes of open tags",
                   head_to(account) + "Content-Type: text/html\n\n" + QByteArray("<b>").repeated(five_megabytes / 3)});
    all.push_back({"five megabytes of one entity", head_to(account) + "Content-Type: text/html\n\n" +
                                                       QByteArray("&amp;").repeated(five_megabytes / 5)});
}

}

std::vector<hostile_mail> hostile_mails(const QByteArray &account_address)
{
    mails all;
    add_broken_heads(account_address, all);
    add_zeros_and_noise(account_address, all);
    add_charsets(account_address, all);
    add_injections(account_address, all);
    add_unanswerable(account_address, all);
    add_structures(account_address, all);
    add_big_ones(account_address, all);
    return all;
}
