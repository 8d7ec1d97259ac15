// The report on the sent mails: its checks, and its statements to the character.
#include "intake/sent_report.h"
#include "support/report_site.h"

#include <QTest>

class sent_report_select_test : public QObject {
    Q_OBJECT
private slots:
    void the_checks_in_their_order_data();
    void the_checks_in_their_order();
    void the_select_to_the_letter_data();
    void the_select_to_the_letter();
    void the_look_up_of_mailings_to_the_letter();
    void the_filters_text_leaves_gaps_as_gaps();
    void the_insert_to_the_letter();
    void the_ids_of_all_mailings_go_into_the_select();
    void a_filter_without_a_mailing_gives_no_select();
};

void sent_report_select_test::the_checks_in_their_order_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QStringList>("filters"); // "2:city=": the second one
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("number");
    QTest::newRow("all well, no filter") << "orders" << QStringList() << "" << -1;
    QTest::newRow("all well, a filter") << "orders" << QStringList{"1:city=Par"} << "" << -1;
    QTest::newRow("no account") << "" << QStringList() << "Please select the account" << 0;
    QTest::newRow("the account comes first") << "" << QStringList{"1:city="} << "Please select the account" << 0;
    QTest::newRow("the first filter") << "orders" << QStringList{"1:city=", "2:age="} << "Please enter value" << 1;
    QTest::newRow("the last filter") << "orders" << QStringList{"1:city=Par", "4:age="} << "Please enter value" << 4;
    QTest::newRow("blanks are no value") << "orders" << QStringList{"3:city=  "} << "Please enter value" << 3;
    QTest::newRow("a value without a field is not in use") << "orders" << QStringList{"2:=Par"} << "" << -1;
}

void sent_report_select_test::the_checks_in_their_order()
{
    QFETCH(QString, account);
    QFETCH(QStringList, filters);
    QFETCH(QString, message);
    QFETCH(int, number);
    intake::report_request request = november();
    request.account = account;
    for (const QString &filter : filters) {
        const QString words = filter.section(u':', 1);
        request.filters[filter.section(u':', 0, 0).toUInt() - 1] = {words.section(u'=', 0, 0), words.section(u'=', 1)};
    }
    const auto gap = intake::why_no_report(request);
    QCOMPARE(gap.has_value(), !message.isEmpty());
    if (gap) {
        QCOMPARE(gap->message, message);
        QCOMPARE(gap->filter, number);
    }
}

void sent_report_select_test::the_select_to_the_letter_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("select");
    const QString days = " and datevalue(tsl_sentdate)>=datevalue('11/1/2026')"
                         " and datevalue(tsl_sentdate)<=datevalue('11/30/2026')";
    const QString start = "select * from sentitems_tbl where tsl_sentaccount='orders'" + days;
    const QString end = " order by tsl_sentdate desc";
    QTest::newRow("the shortest") << "orders"
                                  << ""
                                  << "" << start + end;
    QTest::newRow("words, the per-cent signs inside the quotes")
        << "orders"
        << "offer"
        << "" << start + " and tsl_subject like '%offer%'" + end;
    QTest::newRow("outer blanks of the words go") << "orders"
                                                  << " spring offer "
                                                  << "" << start + " and tsl_subject like '%spring offer%'" + end;
    QTest::newRow("blanks alone are no words") << "orders"
                                               << "  "
                                               << "" << start + end;
    QTest::newRow("a field") << "orders"
                             << ""
                             << "city" << start + " and tsl_sentformat='city'" + end;
    QTest::newRow("both, in this order") << "orders"
                                         << "offer"
                                         << "city"
                                         << start + " and tsl_subject like '%offer%' and tsl_sentformat='city'" + end;
    QTest::newRow("quotes everywhere are doubled")
        << "o'rders"
        << "it's"
        << "c'ity"
        << "select * from sentitems_tbl where tsl_sentaccount='o''rders'" + days +
               " and tsl_subject like '%it''s%' and tsl_sentformat='c''ity'" + end;
}

void sent_report_select_test::the_select_to_the_letter()
{
    QFETCH(QString, account);
    QFETCH(QString, words);
    QFETCH(QString, field);
    QFETCH(QString, select);
    intake::report_request request = november();
    request.account = account;
    request.subject_words = words;
    request.subject_field = field;
    QCOMPARE(intake::report_select(request).value(), select);
}

void sent_report_select_test::the_look_up_of_mailings_to_the_letter()
{
    intake::report_request request = november();
    request.filters[0] = {"city", "L'Isle"};
    request.filters[2] = {"age", " 30 "};
    request.filters[3] = {"", "left over"};
    QCOMPARE(intake::mailings_select(request),
             "select matchid from match_tbl where ac_name='orders' and sub_contains=''"
             " and filter1='city' and fval1='L''Isle' and filter2='' and fval2=''"
             " and filter3='age' and fval3='30' and filter4='' and fval4=''");
    request.account = "o'rders";
    request.subject_field = "na'me";
    QVERIFY(intake::mailings_select(request).startsWith(
        "select matchid from match_tbl where ac_name='o''rders' and sub_contains='na''me' and filter1='city'"));
}

void sent_report_select_test::the_filters_text_leaves_gaps_as_gaps()
{
    intake::report_request request = november();
    QCOMPARE(intake::filters_text(request), "");
    request.filters[1] = {"city", "Par"};
    QCOMPARE(intake::filters_text(request), ",Filter2:city=Par");
    request.filters[3] = {"age", "3"};
    QCOMPARE(intake::filters_text(request), ",Filter2:city=Par,Filter4:age=3");
}

void sent_report_select_test::the_insert_to_the_letter()
{
    QCOMPARE(intake::report_insert({"orders", "11/1/2026 and 11/30/2026", ",Filter1:city=L'Isle", "None", "None", "1",
                                    "mailings 1", "a@b.org", "it's", "11/21/2026 1:02:03 AM", "11/21/2026"}),
             "insert into printreport_tbl (sentaccount,between1,filtersused,dynsubjectfield,subjectcontains,mailgen,"
             "matching,sentto,sentsubject,sentdate,gendate) values('orders','11/1/2026 and 11/30/2026',"
             "',Filter1:city=L''Isle','None','None','1','mailings 1','a@b.org','it''s','11/21/2026 1:02:03 AM',"
             "'11/21/2026')");
}

void sent_report_select_test::the_ids_of_all_mailings_go_into_the_select()
{
    const report_site site;
    site.add_mailing("orders", "", "'city','','','','Par','','',''");
    site.add_mailing("orders", "", "'city','age','','','Par','3','',''"); // made with one filter more
    site.add_mailing("orders", "", "'city','','','','Par','','',''");
    site.add_mailing("orders", "city", "'city','','','','Par','','',''"); // subjects made from a field
    site.add_mailing("contact", "", "'city','','','','Par','','',''");
    intake::report_request request = november();
    request.filters[0] = {"city", "par"}; // the store is case-blind
    const QString end = " order by tsl_sentdate desc";
    QVERIFY(intake::report_select(request).value().endsWith(" and matchid in (1,3)" + end));
    request.subject_field = "city";
    QVERIFY(intake::report_select(request).value().endsWith(" and tsl_sentformat='city' and matchid in (4)" + end));
}

void sent_report_select_test::a_filter_without_a_mailing_gives_no_select()
{
    const report_site site;
    site.add_mailing("orders", "", "'city','','','','Par','','',''");
    intake::report_request request = november();
    request.filters[0] = {"city", "Rome"};
    QVERIFY(!intake::report_select(request));
}

QTEST_GUILESS_MAIN(sent_report_select_test)
#include "sent_report_select_test.moc"
