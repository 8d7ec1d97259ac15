// An mbox file that other programs write to, replace, cut and lock while it is read; and that nothing is written by us.
#include "platform/network.h"
#include "support/mbox_folder.h"
#include <QDir>
#include <sys/file.h>
#include <unistd.h>

class mbox_changes_test : public QObject {
    Q_OBJECT
private slots:
    void a_last_mail_that_is_not_whole_waits();
    void an_unchanged_file_is_not_walked_again();
    void mails_appended_meanwhile_change_nothing_for_this_fetch();
    void a_file_rewritten_in_the_middle_ends_the_walk_and_is_read_anew();
    void a_truncated_file_ends_the_walk();
    void a_replaced_file_is_read_to_its_end_and_then_anew();
    void a_lock_of_another_program_is_respected_data();
    void a_lock_of_another_program_is_respected();
    void a_left_over_lock_file_holds_nobody_up();
    void nothing_is_written_beside_the_file();
};

void mbox_changes_test::a_last_mail_that_is_not_whole_waits()
{
    mbox_folder box;
    QCOMPARE(box.subjects_of(mbox_mail("One") + mbox_mail("Two").chopped(4)), QStringList{"One"});
    box.append("lo\n\n");
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
    QCOMPARE(box.at(1).text, QString("Hello\n"));
    box.write(mbox_mail("One") + mbox_mail("Two").chopped(4));
    box.make_old(); // nobody writes any more
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
}

void mbox_changes_test::an_unchanged_file_is_not_walked_again()
{
    mbox_folder box;
    QCOMPARE(box.subjects_of(mbox_mail("One")), QStringList{"One"});
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"One"});
    QCOMPARE(box.client.mbox_walks(), 1);
    box.append(mbox_mail("Two"));
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
    QCOMPARE(box.client.mbox_walks(), 2);
}

void mbox_changes_test::mails_appended_meanwhile_change_nothing_for_this_fetch()
{
    mbox_folder box;
    box.write(mbox_mail("One") + mbox_mail("Two"));
    box.sign_on();
    QCOMPARE(box.at(0).text, QString("Hello\n"));
    box.append(mbox_mail("Three"));
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
    QCOMPARE(box.at(1).text, QString("Hello\n"));
}

void mbox_changes_test::a_file_rewritten_in_the_middle_ends_the_walk_and_is_read_anew()
{
    mbox_folder box;
    box.write(mbox_mail("One") + mbox_mail("Two") + mbox_mail("Three"));
    box.sign_on();
    QCOMPARE(box.at(0).subject, QString("One"));
    box.write(mbox_mail("Two") + mbox_mail("Three") +
              mbox_mail("A mail that is a good deal longer", QByteArray(900, 'x') + "\n"));
    QCOMPARE(failure_of_call([&] { box.at(1); }), 57u);
    QCOMPARE(failure_of_call([&] { box.at(2); }), 57u);
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"Two", "Three", "A mail that is a good deal longer"}));
}

void mbox_changes_test::a_truncated_file_ends_the_walk()
{
    mbox_folder box;
    box.write(mbox_mail("One") + mbox_mail("Two"));
    box.sign_on();
    box.write(mbox_mail("One"));
    QCOMPARE(failure_of_call([&] { box.at(1); }), 57u);
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"One"});
}

void mbox_changes_test::a_replaced_file_is_read_to_its_end_and_then_anew()
{
    mbox_folder box;
    box.write(mbox_mail("One") + mbox_mail("Two"));
    box.sign_on();
    QVERIFY(QFile::remove(box.path("inbox")));
    box.write(mbox_mail("Three"));
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"Three"});
}

void mbox_changes_test::a_lock_of_another_program_is_respected_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("flock") << 0;
    QTest::newRow("fcntl") << 1;
    QTest::newRow("a lock file") << 2;
}

void mbox_changes_test::a_lock_of_another_program_is_respected()
{
    QFETCH(int, kind);
    mbox_folder box;
    box.write(mbox_mail("One"));
    net::patience waits;
    waits.connect_ms = 300;
    const net::patience_scope short_waits(waits);
    const int other = open(QFile::encodeName(box.path("inbox")).constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(other >= 0);
    struct flock whole {};
    whole.l_type = F_WRLCK;
    if (kind == 0)
        QCOMPARE(flock(other, LOCK_EX), 0);
    else if (kind == 1)
        QCOMPARE(fcntl(other, F_OFD_SETLK, &whole), 0);
    else
        close(open(QFile::encodeName(box.path("inbox.lock")).constData(), O_CREAT | O_CLOEXEC, 0600));
    QCOMPARE(failure_of_call([&] { box.sign_on(); }), 70u);
    close(other);
    QFile::remove(box.path("inbox.lock"));
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"One"});
}

void mbox_changes_test::a_left_over_lock_file_holds_nobody_up()
{
    mbox_folder box;
    box.write(mbox_mail("One"));
    const QByteArray lock = QFile::encodeName(box.path("inbox.lock"));
    close(open(lock.constData(), O_CREAT | O_CLOEXEC, 0600));
    const timespec times[2] = {{1767268800, 0}, {1767268800, 0}};
    QCOMPARE(utimensat(AT_FDCWD, lock.constData(), times, 0), 0);
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"One"});
}

void mbox_changes_test::nothing_is_written_beside_the_file()
{
    mbox_folder box;
    const QByteArray bytes = mbox_mail("One") + mbox_mail("Two");
    box.write(bytes);
    box.make_old();
    box.sign_on();
    QCOMPARE(box.at(1).text, QString("Hello\n"));
    box.sign_off();
    QCOMPARE(QDir(box.folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"inbox"});
    QFile file(box.path("inbox"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), bytes);
    QCOMPARE(file.fileTime(QFileDevice::FileModificationTime).toSecsSinceEpoch(), 1767268800);
}

QTEST_GUILESS_MAIN(mbox_changes_test)
#include "mbox_changes_test.moc"
