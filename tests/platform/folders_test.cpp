// Folders: what is made, copied and removed, and that nothing behind a link is ever touched.
#include "platform/folders.h"
#include "platform/run_time_error.h"
#include "support/test_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

namespace {

constexpr uid_t nobody = 65534;

// A temporary folder, and what tests put into it. Names are bytes: not all of them are texts.
struct place {
    QTemporaryDir folder;

    QString path(const QString &below) const { return folder.filePath(below); }
    QByteArray bytes(const QByteArray &below) const { return folder.path().toUtf8() + '/' + below; }

    void make(const QByteArray &below) const
    {
        if (::mkdir(bytes(below).constData(), 0755) != 0)
            qFatal("cannot make %s", below.constData());
    }
    void write(const QByteArray &below, const QByteArray &text) const
    {
        FILE *file = fopen(bytes(below).constData(), "wb");
        if (!file || fwrite(text.constData(), 1, size_t(text.size()), file) != size_t(text.size()) || fclose(file) != 0)
            qFatal("cannot write %s", below.constData());
    }
    void link(const QByteArray &to, const QByteArray &below) const
    {
        if (::symlink(to.constData(), bytes(below).constData()) != 0)
            qFatal("cannot link %s", below.constData());
    }
    // "(none)" where there is no such file; a link is not looked through.
    QByteArray read(const QByteArray &below) const
    {
        struct stat found = {};
        if (lstat(bytes(below).constData(), &found) != 0 || !S_ISREG(found.st_mode))
            return "(none)";
        FILE *file = fopen(bytes(below).constData(), "rb");
        QByteArray text(int(found.st_size), 0);
        const size_t got = fread(text.data(), 1, size_t(text.size()), file);
        fclose(file);
        return text.left(int(got));
    }
    bool is_there(const QByteArray &below) const
    {
        struct stat found = {};
        return lstat(bytes(below).constData(), &found) == 0;
    }
    QStringList names(const QString &below) const
    {
        return QDir(path(below))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
};

// Runs the work in a child without root's rights; its status.
template <typename Work>
int without_rights(const place &where, Work work)
{
    for (QString folder = where.folder.path(); folder.size() > 1; folder = folder.left(folder.lastIndexOf('/')))
        chmod(qPrintable(folder), 0777);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(nobody) != 0)
            _exit(99);
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}

class folders_test : public QObject {
    Q_OBJECT
private slots:
    void a_folder_is_there_and_a_file_or_link_is_none();
    void the_parent_of_a_path_data();
    void the_parent_of_a_path();
    void the_drive_of_a_path_data();
    void the_drive_of_a_path();
    void an_absolute_path_is_clean_and_free_of_links();
    void a_folder_is_made_in_one_that_is_there();
    void what_is_in_the_way_of_a_new_folder_is_told();
    void sub_folders_are_folders_only();
    void a_folder_goes_with_all_that_is_in_it();
    void a_link_goes_and_what_it_leads_to_stays();
    void a_link_is_no_folder_to_be_deleted();
    void a_folder_that_is_not_there_cannot_be_deleted();
    void a_deep_tree_is_refused_and_a_usual_one_is_not();
    void deleting_a_file_takes_the_link_and_no_folder();
    void what_is_moved_is_whole_and_takes_no_ones_place();
    void a_copy_holds_files_folders_modes_and_times();
    void a_copy_overwrites_and_keeps_the_rest();
    void a_copy_leaves_links_and_pipes_out();
    void a_copy_replaces_a_link_in_its_place_and_writes_through_none();
    void a_link_where_a_folder_should_be_is_a_failure();
    void names_of_every_kind_are_copied();
    void a_folder_is_not_copied_into_itself();
    void a_file_where_a_folder_should_be_is_a_failure();
    void a_full_disk_leaves_the_older_file();
    void what_may_not_be_read_is_told();
};

void folders_test::a_folder_is_there_and_a_file_or_link_is_none()
{
    const place here;
    here.make("folder");
    here.write("file", "x");
    here.link("folder", "link");
    QVERIFY(FolderExists(here.path("folder")));
    QVERIFY(FolderExists(here.path("folder/")));
    QVERIFY(!FolderExists(here.path("file")));
    QVERIFY(!FolderExists(here.path("link")));
    QVERIFY(!FolderExists(here.path("link/"))); // a slash behind it leads through it elsewhere
    QVERIFY(!FolderExists(here.path("nothing")));
    QVERIFY(!FolderExists(""));
}

void folders_test::the_parent_of_a_path_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("parent");
    QTest::newRow("a file") << "/home/ann/Tessaly.mdb"
                            << "/home/ann";
    QTest::newRow("a slash at the end") << "/home/ann/"
                                        << "/home";
    QTest::newRow("below the root") << "/home"
                                    << "/";
    QTest::newRow("the root") << "/"
                              << "";
    QTest::newRow("a bare name") << "Tessaly.mdb"
                                 << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void folders_test::the_parent_of_a_path()
{
    QFETCH(QString, path);
    QTEST(GetParentFolderName(path), "parent");
}

void folders_test::the_drive_of_a_path_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("drive");
    QTest::newRow("an absolute path") << "/home/ann"
                                      << "/";
    QTest::newRow("also of what is not there") << "/no/such/place"
                                               << "/";
    QTest::newRow("a bare name") << "backup"
                                 << "";
    QTest::newRow("another system's drive") << "C:\\backup"
                                            << "";
    QTest::newRow("a blank before it") << " /home"
                                       << "";
    QTest::newRow("an end inside") << QString("/home") + QChar(0) + "x"
                                   << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void folders_test::the_drive_of_a_path()
{
    QFETCH(QString, path);
    QTEST(GetDriveName(path), "drive");
}

void folders_test::an_absolute_path_is_clean_and_free_of_links()
{
    const place here;
    const QString real = QFileInfo(here.folder.path()).canonicalFilePath();
    here.make("folder");
    here.link("folder", "link");
    here.link("nowhere", "dangling");
    QCOMPARE(GetAbsolutePathName(here.path("link/../link//new/deep/")), real + "/folder/new/deep");
    QCOMPARE(GetAbsolutePathName(here.path("link")), real + "/folder");
    QCOMPARE(GetAbsolutePathName(here.path("dangling")), real + "/dangling");
    QCOMPARE(GetAbsolutePathName("/"), QString("/"));
}

void folders_test::a_folder_is_made_in_one_that_is_there()
{
    const place here;
    CreateFolder(here.path("new"));
    QVERIFY(FolderExists(here.path("new")));
    QCOMPARE(error_number_of([&] { CreateFolder(here.path("no/deep")); }), 76u);
    QVERIFY(!FolderExists(here.path("no")));
}

void folders_test::what_is_in_the_way_of_a_new_folder_is_told()
{
    const place here;
    here.make("folder");
    here.write("file", "x");
    QCOMPARE(error_number_of([&] { CreateFolder(here.path("folder")); }), 58u);
    QCOMPARE(error_number_of([&] { CreateFolder(here.path("file")); }), 58u);
    QCOMPARE(error_number_of([&] { CreateFolder(here.path("file/below")); }), 76u);
    QCOMPARE(error_number_of([&] { CreateFolder(here.path(QString(300, 'x'))); }), 75u);
    try {
        CreateFolder(here.path("file"));
    } catch (const run_time_error &failure) {
        QCOMPARE(failure.description, "File already exists: " + here.path("file"));
    }
}

void folders_test::sub_folders_are_folders_only()
{
    const place here;
    here.make("b");
    here.make("a");
    here.make(".hidden");
    here.write("file", "x");
    here.link("b", "link");
    QCOMPARE(SubFolders(here.folder.path()), (QStringList{".hidden", "a", "b"}));
    QCOMPARE(AllEntries(here.folder.path()), (QStringList{".hidden", "a", "b", "file", "link"}));
    QCOMPARE(error_number_of([&] { SubFolders(here.path("nothing")); }), 76u);
    QCOMPARE(error_number_of([&] { SubFolders(here.path("link")); }), 76u);
}

void folders_test::a_folder_goes_with_all_that_is_in_it()
{
    const place here;
    here.make("folder");
    here.make("folder/deep");
    here.make("folder/deep/\xff\nodd");
    here.write("folder/deep/\xff\nodd/-rf", "x");
    here.write("folder/.hidden", "x");
    here.write("beside", "x");
    DeleteFolder(here.path("folder/"));
    QCOMPARE(here.names("."), QStringList{"beside"});
}

void folders_test::a_link_goes_and_what_it_leads_to_stays()
{
    const place here;
    here.make("precious");
    here.write("precious/letter", "dear");
    here.write("precious.txt", "dear");
    here.make("folder");
    here.link("../precious", "folder/link");
    here.link("../precious.txt", "folder/text");
    here.link("..", "folder/up");
    here.link("nowhere", "folder/dangling");
    DeleteFolder(here.path("folder"));
    QVERIFY(!here.is_there("folder"));
    QCOMPARE(here.read("precious/letter"), QByteArray("dear"));
    QCOMPARE(here.read("precious.txt"), QByteArray("dear"));
}

void folders_test::a_link_is_no_folder_to_be_deleted()
{
    const place here;
    here.make("precious");
    here.write("precious/letter", "dear");
    here.link("precious", "link");
    QCOMPARE(error_number_of([&] { DeleteFolder(here.path("link")); }), 76u);
    QCOMPARE(error_number_of([&] { DeleteFolder(here.path("link/")); }), 76u);
    QCOMPARE(here.read("precious/letter"), QByteArray("dear"));
}

void folders_test::a_folder_that_is_not_there_cannot_be_deleted()
{
    const place here;
    here.write("file", "x");
    QCOMPARE(error_number_of([&] { DeleteFolder(here.path("nothing")); }), 76u);
    QCOMPARE(error_number_of([&] { DeleteFolder(here.path("file")); }), 76u);
    QCOMPARE(here.read("file"), QByteArray("x"));
}

void folders_test::a_deep_tree_is_refused_and_a_usual_one_is_not()
{
    const place here;
    const auto make_deep = [&](const QString &name, int levels) {
        QString path = here.path(name);
        CreateFolder(path);
        for (int level = 1; level < levels; ++level)
            CreateFolder(path += "/d");
    };
    make_deep("usual", 100);
    make_deep("deep", 400);
    CreateFolder(here.path("copies"));
    CopyFolder(here.path("usual"), here.path("copies"));
    QVERIFY(FolderExists(here.path("copies/usual") + QString("/d").repeated(99)));
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("deep"), here.path("copies")); }), 75u);
    DeleteFolder(here.path("usual"));
    QCOMPARE(error_number_of([&] { DeleteFolder(here.path("deep")); }), 75u);
}

void folders_test::deleting_a_file_takes_the_link_and_no_folder()
{
    const place here;
    here.make("folder");
    here.write("file", "x");
    here.link("file", "link");
    DeleteFile(here.path("link"));
    QVERIFY(!here.is_there("link"));
    QCOMPARE(here.read("file"), QByteArray("x"));
    QCOMPARE(error_number_of([&] { DeleteFile(here.path("folder")); }), 70u);
    QCOMPARE(error_number_of([&] { DeleteFile(here.path("nothing")); }), 76u);
}

void folders_test::what_is_moved_is_whole_and_takes_no_ones_place()
{
    const place here;
    here.make("folder");
    here.write("folder/file", "x");
    here.link("folder", "link");
    here.link("nowhere", "dangling");
    Move(here.path("folder"), here.path("moved"));
    QCOMPARE(here.read("moved/file"), QByteArray("x"));
    QVERIFY(!here.is_there("folder"));
    Move(here.path("link"), here.path("moved link"));
    QVERIFY(here.is_there("moved link") && !here.is_there("link"));
    for (const char *taken : {"moved", "dangling"})
        QCOMPARE(error_number_of([&] { Move(here.path("moved link"), here.path(taken)); }), 58u);
    QCOMPARE(error_number_of([&] { Move(here.path("nothing"), here.path("new")); }), 76u);
    QCOMPARE(here.names(""), (QStringList{"dangling", "moved", "moved link"}));
}

void folders_test::a_copy_holds_files_folders_modes_and_times()
{
    const place here;
    here.make("form");
    here.make("form/pictures");
    here.make("form/empty");
    here.write("form/page.htm", QByteArray(200000, 'p'));
    here.write("form/pictures/rose.gif", QByteArray("GIF\0\xff", 5));
    here.write("form/none", "");
    chmod(here.bytes("form/page.htm").constData(), 0640);
    const utimbuf times{1700000000, 1700000000};
    utime(here.bytes("form/page.htm").constData(), &times);
    here.make("html");
    CopyFolder(here.path("form"), here.path("html"));
    QCOMPARE(here.names("html"), QStringList{"form"});
    QCOMPARE(here.names("html/form"), (QStringList{"empty", "none", "page.htm", "pictures"}));
    QCOMPARE(here.read("html/form/page.htm"), QByteArray(200000, 'p'));
    QCOMPARE(here.read("html/form/pictures/rose.gif"), QByteArray("GIF\0\xff", 5));
    QCOMPARE(here.read("html/form/none"), QByteArray());
    struct stat copied = {};
    QCOMPARE(stat(here.bytes("html/form/page.htm").constData(), &copied), 0);
    QCOMPARE(int(copied.st_mode & 0777), 0640);
    QCOMPARE(qint64(copied.st_mtime), qint64(1700000000));
}

void folders_test::a_copy_overwrites_and_keeps_the_rest()
{
    const place here;
    here.make("form");
    here.write("form/page.htm", "new");
    here.make("html");
    here.make("html/form");
    here.write("html/form/page.htm", "a longer old text");
    here.write("html/form/older.htm", "stays");
    CopyFolder(here.path("form"), here.path("html"));
    QCOMPARE(here.read("html/form/page.htm"), QByteArray("new"));
    QCOMPARE(here.read("html/form/older.htm"), QByteArray("stays"));
    QCOMPARE(here.names("html/form"), (QStringList{"older.htm", "page.htm"}));
}

void folders_test::a_copy_leaves_links_and_pipes_out()
{
    const place here;
    here.make("secrets");
    here.write("secrets/key", "secret");
    here.make("form");
    here.write("form/page.htm", "page");
    here.link("../secrets", "form/folder");
    here.link("../secrets/key", "form/file");
    here.link("form", "form/itself");
    QCOMPARE(mkfifo(here.bytes("form/pipe").constData(), 0600), 0); // reading it would wait for ever
    here.make("html");
    CopyFolder(here.path("form"), here.path("html"));
    QCOMPARE(here.names("html/form"), QStringList{"page.htm"});
}

void folders_test::a_copy_replaces_a_link_in_its_place_and_writes_through_none()
{
    const place here;
    here.write("precious", "dear");
    here.make("form");
    here.write("form/page.htm", "page");
    here.make("html");
    here.make("html/form");
    here.link("../../precious", "html/form/page.htm");
    here.link("../../precious", "html/form/.tessaly-copy");
    CopyFolder(here.path("form"), here.path("html"));
    QCOMPARE(here.read("precious"), QByteArray("dear"));
    QCOMPARE(here.read("html/form/page.htm"), QByteArray("page"));
}

void folders_test::a_link_where_a_folder_should_be_is_a_failure()
{
    const place here;
    here.make("precious");
    here.write("precious/page.htm", "dear");
    here.make("form");
    here.write("form/page.htm", "page");
    here.make("html");
    here.link("../precious", "html/form");
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("form"), here.path("html")); }), 58u);
    QCOMPARE(here.read("precious/page.htm"), QByteArray("dear"));
    here.link("html", "other");
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("form"), here.path("other")); }), 76u);
}

void folders_test::names_of_every_kind_are_copied()
{
    const QByteArrayList names{"-rf",
                               "a\nb",
                               "a b ",
                               "\"quoted\"",
                               "'",
                               "\xff\xfe",
                               "caf\xe9",
                               "caf\xc3\xa9",
                               "\xed\xb2\x80",
                               "*?",
                               "\\back",
                               "~",
                               "...",
                               "\xef\xbf\xbd\xff",
                               "\xf0\x9f\x8c\xb9\xff",
                               QByteArray(255, 'l')};
    const place here;
    here.make("forms");
    here.make("html");
    for (const QByteArray &name : names) {
        here.make("forms/" + name);
        here.write("forms/" + name + '/' + name, name);
    }
    const QStringList found = SubFolders(here.path("forms"));
    QCOMPARE(found.size(), names.size());
    for (const QString &name : found)
        CopyFolder(here.path("forms") + '/' + name, here.path("html"));
    for (const QByteArray &name : names)
        QCOMPARE(here.read("html/" + name + '/' + name), name);
    for (const QString &name : found)
        DeleteFolder(here.path("html") + '/' + name);
    QCOMPARE(AllEntries(here.path("html")), QStringList());
    DeleteFolder(here.path("forms"));
    QCOMPARE(here.names("."), QStringList{"html"});
}

void folders_test::a_folder_is_not_copied_into_itself()
{
    const place here;
    here.make("forms");
    here.make("forms/html");
    here.write("forms/page.htm", "page");
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("forms"), here.path("forms/html")); }), 75u);
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("forms/html"), here.path("forms/html")); }), 75u);
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("forms/html"), here.path("forms")); }), 75u);
    QCOMPARE(here.read("forms/page.htm"), QByteArray("page"));
}

void folders_test::a_file_where_a_folder_should_be_is_a_failure()
{
    const place here;
    here.make("form");
    here.make("form/pictures");
    here.make("html");
    here.make("html/form");
    here.write("html/form/pictures", "a file");
    QCOMPARE(error_number_of([&] { CopyFolder(here.path("form"), here.path("html")); }), 58u);
    QCOMPARE(here.read("html/form/pictures"), QByteArray("a file"));
}

void folders_test::a_full_disk_leaves_the_older_file()
{
    const place here;
    here.make("form");
    here.write("form/page.htm", QByteArray(100000, 'n'));
    here.make("html");
    here.make("html/form");
    here.write("html/form/page.htm", "old");
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit little{50000, 50000};
        setrlimit(RLIMIT_FSIZE, &little);
        _exit(int(error_number_of([&] { CopyFolder(here.path("form"), here.path("html")); })));
    }
    int status = 0;
    waitpid(child, &status, 0);
    QCOMPARE(WEXITSTATUS(status), 61);
    QCOMPARE(here.names("html/form"), QStringList{"page.htm"});
    QCOMPARE(here.read("html/form/page.htm"), QByteArray("old"));
}

void folders_test::what_may_not_be_read_is_told()
{
    const place here;
    here.make("form");
    here.write("form/page.htm", "page");
    here.make("html");
    here.make("closed");
    chmod(here.bytes("form/page.htm").constData(), 0);
    chmod(here.bytes("html").constData(), 0777);
    QCOMPARE(without_rights(
                 here, [&] { return int(error_number_of([&] { CopyFolder(here.path("form"), here.path("html")); })); }),
             70);
    QCOMPARE(here.names("html/form"), QStringList());
    QCOMPARE(without_rights(here, [&] { return int(error_number_of([&] { CreateFolder(here.path("closed/x")); })); }),
             70);
}

QTEST_GUILESS_MAIN(folders_test)
#include "folders_test.moc"
