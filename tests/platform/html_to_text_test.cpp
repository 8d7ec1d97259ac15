// HTML mails as text.
#include "platform/real/mail/html_to_text.h"
#include <QTest>

class html_to_text_test : public QObject {
    Q_OBJECT
private slots:

    void text_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *html, const char *text) {
            QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(text);
        };
        row("nothing", "", "");
        row("plain text", "Hello", "Hello");
        row("line breaks", "Name: Ann<br>City: Paris<BR/>End", "Name: Ann\nCity: Paris\nEnd");
        row("a source line end is a blank", "Name:\n   Ann", "Name: Ann");
        row("a break at a source line end", "a <br>\n b", "a\nb");
        row("paragraphs are an empty line apart", "<p>a</p><p>b</p>", "a\n\nb");
        row("divisions are a line end apart", "<div>a</div><div>b</div>", "a\nb");
        row("an empty line as a division", "<div>a</div><div><br></div><div>b</div>", "a\n\nb");
        row("table rows and cells",
            "<table><tr><td>Name</td><td>Ann</td></tr><tr><td>City</td><td>Paris</td></tr></table>",
            "Name Ann\nCity Paris");
        row("list entries", "<ul><li>a<li>b</ul>c", "a\nb\nc");
        row("inline tags go", "<b>Na</b>me", "Name");
        row("entities", "a &amp; b &lt;c&gt; &eacute;&Eacute;&euro;&#233;&#xE9;&quot;", "a & b <c> éÉ€éé\"");
        row("a hard blank is a blank", "a&nbsp;b", "a b");
        row("an entity nobody knows stays", "&unheard; &", "&unheard; &");
        row("numbers that are no letter stay", "&#0;&#xD800;&#1114112;", "&#0;&#xD800;&#1114112;");
        row("a letter beyond the first plane", "&#128512;", "😀");
        row("script, style and title go", "<title>t</title><style>p{}</style>a<script>if (a<b) x()</script>b", "ab");
        row("a script that never ends", "a<script>b", "a");
        row("comments go", "a<!-- <b> -->b", "ab");
        row("a comment that never ends", "a<!-- b", "a");
        row("a declaration goes", "<!DOCTYPE html><html>a</html>", "a");
        row("a sign in a quoted attribute", "<a title=\"x > y\">link</a>", "link");
        row("a tag that never ends", "a<b ", "a");
        row("a lone less-than sign", "1 < 2", "1 < 2");
        row("less-than at the end", "a<", "a<");
        row("preformatted keeps its lines", "<pre>a\n  b</pre>c", "a\n  b\nc");
        row("no outer line ends", "<p><br>a<br></p><br>", "a");
    }
    void text()
    {
        QFETCH(QString, html);
        QFETCH(QString, text);
        QCOMPARE(mime::html_to_text(html), text);
    }

    void a_million_open_tags_do_no_harm()
    {
        QCOMPARE(mime::html_to_text(QString("<div>").repeated(1000000) + "a"), "a");
        QCOMPARE(mime::html_to_text(QString("<script>").repeated(200000) + "a"), "");
        QCOMPARE(mime::html_to_text(QString("<").repeated(1000000)), QString("<").repeated(1000000));
        QCOMPARE(mime::html_to_text(QString("&").repeated(1000000)).size(), 1000000);
        QCOMPARE(mime::html_to_text(QString("<!--").repeated(200000)), "");
        QVERIFY(mime::html_to_text(QString("<br>").repeated(1000000) + "a").size() < 100);
    }
};

QTEST_GUILESS_MAIN(html_to_text_test)
#include "html_to_text_test.moc"
