// A page of the help: what it may read, how wide its pictures are, and its links on any ground.
#include "platform/winopen.h"
#include "support/screens_help.h"
#include "support/screens_own_help.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

namespace {

// A page with a picture of twice its height in width, wider than any page.
void make_help_with_picture(const screens_site &site)
{
    QDir().mkpath(site.file("pages/pictures"));
    QImage picture(2000, 1000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    if (!picture.save(site.file("pages/pictures/wide.png")))
        qFatal("the test's picture cannot be written");
    make_help(site, "<p><img src=\"pictures/wide.png\" alt=\"Wide\"></p><p>Below</p>");
}

QRectF place_of_block(int number)
{
    const QTextDocument &document = *page().document();
    return document.documentLayout()->blockBoundingRect(document.findBlockByNumber(number));
}

}

class help_page_test : public QObject {
    Q_OBJECT
private slots:
    void nothing_is_read_from_the_disk()
    {
        help_site site;
        QFile secret(site.file("secret.html"));
        QVERIFY(secret.open(QIODevice::WriteOnly));
        secret.write("the secret text");
        secret.close();
        make_help(site, "<p>Page <a href=\"file://" + site.file("secret.html") + "\">out</a></p>");
        QStringList opened;
        set_winopen([&opened](const QString &path) {
            opened += path;
            return true;
        });
        show_help({});
        emit page().anchorClicked(QUrl("file://" + site.file("secret.html")));
        QVERIFY(!page().toPlainText().contains("secret text"));
        QCOMPARE(
            page().loadResource(QTextDocument::HtmlResource, QUrl("file://" + site.file("secret.html"))).toByteArray(),
            QByteArray());
        QCOMPARE(opened, QStringList());
        emit page().anchorClicked(QUrl("https://www.rosecottage.example/a"));
        QCOMPARE(opened, QStringList{"https://www.rosecottage.example/a"});
        QCOMPARE(page().shown_page(), "start.html");
        set_winopen({});
    }

    void a_picture_is_as_wide_as_the_page_whatever_becomes_of_it()
    {
        help_site site;
        make_help_with_picture(site);
        show_help({});
        for (const int width : {900, 620, 1200}) {
            the<help_frm>().resize(width, 640);
            const double room = page().viewport()->width() - 2 * page().document()->documentMargin();
            QTRY_VERIFY(qAbs(page().document()->size().width() - page().viewport()->width()) < 1);
            QVERIFY(page().horizontalScrollBar()->maximum() == 0);
            const double high = place_of_block(0).height();
            QVERIFY2(high >= room / 2 - 1, qPrintable(QString("%1 at %2").arg(high).arg(room)));
            QVERIFY2(high < room / 2 + page().fontMetrics().lineSpacing(), qPrintable(QString::number(high)));
            const double gap = place_of_block(1).top() - place_of_block(0).bottom();
            QVERIFY2(gap < 2 * page().fontMetrics().lineSpacing(), qPrintable(QString::number(gap)));
        }
    }

    void a_page_shown_again_has_its_picture_at_the_width_of_now()
    {
        help_site site;
        make_help_with_picture(site);
        show_help({});
        page().say("Another page");
        the<help_frm>().resize(620, 640);
        tool("start_b").click();
        const double room = page().viewport()->width() - 2 * page().document()->documentMargin();
        QVERIFY(qAbs(place_of_block(0).height() - room / 2) < page().fontMetrics().lineSpacing());
    }

    void links_can_be_read_on_any_ground_data()
    {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(0x1f, 0x21, 0x23) << QColor(Qt::white);
        QTest::newRow("the links' own blue") << QColor(Qt::blue) << QColor(Qt::white);
    }

    void links_can_be_read_on_any_ground()
    {
        QFETCH(QColor, ground);
        QFETCH(QColor, text);
        const QPalette usual = QApplication::palette();
        QPalette colours = usual;
        colours.setColor(QPalette::Base, ground);
        colours.setColor(QPalette::Text, text);
        colours.setColor(QPalette::Link, Qt::blue);
        QApplication::setPalette(colours);
        help_site site;
        make_help(site, "<p><a href=\"start.html\">a link</a></p>");
        show_help({});
        QTextCursor link = page().document()->find("link");
        const QColor drawn = link.charFormat().foreground().color();
        QApplication::setPalette(usual);
        // Far enough apart in brightness, by the plain average of what the eye weighs.
        const auto weight = [](const QColor &colour) { return qGray(colour.rgb()); };
        QVERIFY2(qAbs(weight(drawn) - weight(ground)) > 60, qPrintable(drawn.name()));
    }
};

QTEST_MAIN(help_page_test)
#include "help_page_test.moc"
