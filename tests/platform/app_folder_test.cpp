// The program's folder: how a user's own one is filled, and what a missing one gives.
#include "platform/app_folder.h"
#include "support/test_store.h"

#include <QDir>
#include <QFile>
#include <QtTest/QTest>
#include <cerrno>

namespace {

struct lock_state {
    int failure = 0; // what the next locks fail with
} locks;

}

// The program's own calls come here instead of to the C library, because the linker meets this one first.
extern "C" int flock(int, int) noexcept
{
    errno = locks.failure;
    return locks.failure == 0 ? 0 : -1;
}

class app_folder_test : public QObject {
    Q_OBJECT

    static void write_file(const QString &path, const QByteArray &bytes, bool executable = false)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.setPermissions(executable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
    }
    static QByteArray text_of(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

private slots:
    void all_but_the_program_is_copied_and_can_be_written()
    {
        const QTemporaryDir place;
        QDir(place.path()).mkpath("installed/forms/templates");
        write_file(place.filePath("installed/mailapp.mdb"), "store");
        write_file(place.filePath("installed/forms/templates/a.htm"), "page");
        write_file(place.filePath("installed/tessaly"), "program", true);
        seed_folder(place.filePath("installed"), place.filePath("own"));
        QCOMPARE(text_of(place.filePath("own/mailapp.mdb")), QByteArray("store"));
        QCOMPARE(text_of(place.filePath("own/forms/templates/a.htm")), QByteArray("page"));
        QVERIFY(QFile::permissions(place.filePath("own/mailapp.mdb")) & QFile::WriteOwner);
        QVERIFY(!QFile::exists(place.filePath("own/tessaly")));
        QCOMPARE(QDir(place.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList({"installed", "own"}));
    }

    void what_an_earlier_try_left_by_half_is_not_used()
    {
        const QTemporaryDir place;
        QDir(place.path()).mkpath("installed");
        write_file(place.filePath("installed/mailapp.mdb"), "the whole store");
        QDir(place.path()).mkpath("own.new");
        write_file(place.filePath("own.new/mailapp.mdb"), "the wh");
        seed_folder(place.filePath("installed"), place.filePath("own"));
        QCOMPARE(text_of(place.filePath("own/mailapp.mdb")), QByteArray("the whole store"));
        QVERIFY(!QDir(place.filePath("own.new")).exists());
    }

    void where_it_cannot_be_made_nothing_is_left()
    {
        const QTemporaryDir place;
        QDir(place.path()).mkpath("installed");
        write_file(place.filePath("installed/mailapp.mdb"), "store");
        write_file(place.filePath("own"), "a file in its place");
        seed_folder(place.filePath("installed"), place.filePath("own"));
        QCOMPARE(text_of(place.filePath("own")), QByteArray("a file in its place"));
        QVERIFY(!QDir(place.filePath("own.new")).exists());
    }

    void locking_a_missing_folder_says_so()
    {
        const QTemporaryDir place;
        set_app_folder(place.filePath("gone"));
        QCOMPARE(error_number_of([] { lock_app_folder(); }), 76u);
        set_app_folder({});
    }

    void where_locks_do_not_work_it_is_no_other_instance()
    {
        const QTemporaryDir place;
        set_app_folder(place.path());
        locks.failure = ENOLCK;
        QCOMPARE(error_number_of([] { lock_app_folder(); }), 75u);
        locks.failure = EWOULDBLOCK;
        QVERIFY(!lock_app_folder());
        locks.failure = 0;
        QVERIFY(lock_app_folder());
        set_app_folder({});
    }
};

QTEST_GUILESS_MAIN(app_folder_test)
#include "app_folder_test.moc"
