// The help file beside the program.
#include "frame/help.h"
#include "platform/app_folder.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <memory>

class help_test : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void a_missing_help_file_opens_nothing();
    void a_help_file_opens_at_the_topic();
    void without_a_viewer_nothing_opens();

private:
    void put_help_file();
    std::unique_ptr<QTemporaryDir> folder;
    QStringList opened;
};

void help_test::init()
{
    folder = std::make_unique<QTemporaryDir>();
    opened.clear();
    set_app_folder(folder->path());
    set_help_viewer([this](const QString &file, const QString &topic) { opened += file + u'|' + topic; });
}

void help_test::cleanup()
{
    set_help_viewer({});
    set_app_folder({});
}

void help_test::put_help_file()
{
    QFile file(folder->filePath("tslhlp.chm"));
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void help_test::a_missing_help_file_opens_nothing()
{
    QVERIFY(!show_help("fetch.htm"));
    QCOMPARE(opened, QStringList());
}

void help_test::a_help_file_opens_at_the_topic()
{
    put_help_file();
    QVERIFY(show_help("fetch.htm"));
    QCOMPARE(opened, QStringList{folder->filePath("tslhlp.chm") + "|fetch.htm"});
}

void help_test::without_a_viewer_nothing_opens()
{
    put_help_file();
    set_help_viewer({});
    QVERIFY(!show_help("fetch.htm"));
}

QTEST_GUILESS_MAIN(help_test)
#include "help_test.moc"
