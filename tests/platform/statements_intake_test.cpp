// Start-up, accounts, fetch, map parser and auto-responder: each statement with its effect.
#include "support/statement_effects.h"
#include <QTest>

class statements_intake_test : public QObject {
    Q_OBJECT

private slots:
    void start_up_and_checks_data();
    void start_up_and_checks() { check_effect(); }
    void accounts_data();
    void accounts() { check_effect(); }
    void fetching_data();
    void fetching() { check_effect(); }
    void parsing_and_answering_data();
    void parsing_and_answering() { check_effect(); }
};

void statements_intake_test::start_up_and_checks_data()
{
    effect_columns();
    effect("1 the setup flag is a flag", "select * from install_tbl", "", "True");
    effect("2 setup done", "update install_tbl set install=yes", "select install from install_tbl", "True");
    effect("3 all maps in table order", "select * from table_list_tbl", "",
           "7|cust|8/13/2026|3|False|Line|Order/8|leads|8/14/2026|3|True|.|Lead");
    effect("4 all accounts in table order", "select * from email_tbl", "",
           "1|orders|jo@site.org|orders/2|sales|sales@site.org|sales/3|info|info@site.org|info");
    effect("5 a table in brackets from the model", "select * into [web_orders] from model_for_first",
           "select count(*) from web_orders", "0");
    effect("6 a bare table from the model", "select * into Leads2 from model_tbl", "select * from leads2", "");
    effect("7 a text column", "alter table cust add column surname text(255)", "select surname from cust", "-/-/-");
    effect("8 the latest row", "select * from cust where message_id=(select max(message_id) from cust)", "",
           "3|Order|-|cy@b.org|-|Rome|-|-");
    effect("9 all of a map", "select * from cust", "",
           "1|Order|8/13/2026 1:02:03 PM|ann@b.org|new|Paris|ann@b.org|Ann/"
           "2|Order|9/1/2026|bad|sent|paRma|bad|Bob/3|Order|-|cy@b.org|-|Rome|-|-");
    effect("10 Null becomes empty", "update cust set email='' where email is null", "select email from cust",
           "ann@b.org/bad/");
    effect("11 a missing date becomes now", "update cust set tsl_recdate=now where  tsl_recdate is null",
           "select tsl_recdate from cust", "8/13/2026 1:02:03 PM/9/1/2026/11/21/2026 1:02:03 AM");
    effect("12 a missing status becomes new",
           "update cust set tsl_status='new' where  tsl_status is null or tsl_Status=''", "select tsl_status from cust",
           "new/sent/new");
    effect("13 auto-fetch", "select * from autofetch", "", "-1");
}

void statements_intake_test::accounts_data()
{
    effect_columns();
    effect("14 an address taken, in other letters", "select count(*) from email_tbl where email='JO@site.org'", "",
           "1");
    effect("15 a new account", "insert into email_tbl(query,email,table_name) values('web','w@site.org','web')",
           "select * from email_tbl where id=4", "4|web|w@site.org|web");
    effect("16 an account goes", "delete from email_tbl where query='ORDERS'", "select query from email_tbl",
           "sales/info");
    effect("17 the selected signature", "select signtitle from sign where signselected='Yes'", "", "Mine");
    effect("18 auto-fetch off", "Update autofetch set minutes=-1", "select minutes from autofetch", "-1");
    effect("19 auto-fetch on", "Update autofetch set minutes=5", "select minutes from autofetch", "5");
    effect("20 an account by name", "select * from email_tbl where query='orders'", "", "1|orders|jo@site.org|orders");
    effect("21 a map by name", "select * from table_list_tbl where table_name='CUST'", "",
           "7|cust|8/13/2026|3|False|Line|Order");
    effect("22 a table that exists is refused", "select * into orders from model_for_first",
           "select count(*) from orders", "error 80040E14");
    effect("23 a copy with its rows and keys", "select * into sales_old from sales",
           "select message_id,tsl_recdate,tsl_processed from sales_old",
           "1|8/13/2026 1:02:03 PM|False/2|8/13/2026 1:02:04 PM|True/3|8/14/2026|False");
    effect("24 a table goes", "drop table orders", "select * from orders", "error 80040E37");
    effect("25 an address of another account",
           "select count(*) from email_tbl where email='jo@site.org' and query <>'Orders'", "", "0");
    effect("26 a name that is free", "select count(*) from email_tbl where query='orders2'", "", "0");
    effect("27 an account renamed", "update email_tbl set query='orders2', email='j2@site.org' where query='orders'",
           "select query,email,table_name from email_tbl where id=1", "orders2|j2@site.org|orders");
}

void statements_intake_test::fetching_data()
{
    effect_columns();
    effect("28 the keyword", "select unsub_keyword from unsub_detail", "", "UNSUBSCRIBE");
    effect("29 keyword and switch", "select unsub_keyword,enable_unsub from unsub_detail", "", "UNSUBSCRIBE|False");
    effect("30 an entry number is a text", "select * from unsub_entryno where entryno='1037'", "", "A@b.org|1037");
    effect("30 leading zeros are another number", "select * from unsub_entryno where entryno='01037'", "", "");
    effect("31 blocked, in other letters", "select count(*) from unsubscribe_tbl where email='ann@B.org'", "", "1");
    effect("32 block an address", "insert into unsubscribe_tbl (email) values('a@b.org')",
           "select email from unsubscribe_tbl", "ANN@b.org/a@b.org");
    effect("33 the confirmation", "select addquery,signature from unsubconfirm_tbl", "", "False|-1");
    effect("34 a signature", "select * from sign where signtitle='mine'", "", "Mine|Regards|Yes");
    effect("35 a block changes hands", "update unsubscribe_tbl set email='a@b.org' where email='ann@b.org'",
           "select email from unsubscribe_tbl", "a@b.org");
    effect("36 the duplicate is found in any letters",
           "select * from sales where ucase(tsl_subject)='ORDER' and month(tsl_recdate)=8 and day(tsl_recdate)=13 and "
           "year(tsl_recdate)=2026 and hour(tsl_recdate)=13 and minute(tsl_recdate)=2 and second(tsl_recdate)=3 and "
           "ucase(tsl_Email) ='ANN BEE' and ucase(tsl_body) ='NAME: ANN'",
           "", "1|Order|8/13/2026 1:02:03 PM|Ann Bee|new|Name: Ann|False");
    effect("36 a second later is no duplicate",
           "select * from sales where ucase(tsl_subject)='ORDER' and month(tsl_recdate)=8 and day(tsl_recdate)=13 and "
           "year(tsl_recdate)=2026 and hour(tsl_recdate)=13 and minute(tsl_recdate)=2 and second(tsl_recdate)=5 and "
           "ucase(tsl_Email) ='ANN BEE' and ucase(tsl_body) ='NAME: ANN'",
           "", "");
    effect("36 no such day",
           "select * from sales where month(tsl_recdate)=2 and day(tsl_recdate)=31 and "
           "year(tsl_recdate)=2026 and hour(tsl_recdate)=13 and minute(tsl_recdate)=2 and second(tsl_recdate)=5",
           "", "");
}

void statements_intake_test::parsing_and_answering_data()
{
    effect_columns();
    effect("38 unprocessed mails", "select message_id from sales where tsl_processed=no", "", "1/3");
    effect("39 the maps of an account", "select table_name from table_list_tbl where query_id=3", "", "cust/leads");
    effect("40 the fields of a map", "select * from format_tbl where table_id=7", "",
           "1|city|Line3|City:|True|7|1/2|email|Line1||False|7|0");
    effect("42 a field of the newest row, with a quote",
           "update cust set first_name='O''Neil' where message_id=(select max(message_id) from cust)",
           "select first_name from cust", "Ann/Bob/O'Neil");
    effect("43 marks, in a chain",
           "update sales set tsl_processed=-1 where 1=2  or message_id=1 or message_id=2 or message_id=3",
           "select tsl_processed from sales", "True/True/True");
    effect("43 marks of none", "update sales set tsl_processed=-1 where 1=2 ", "select tsl_processed from sales",
           "False/True/False");
    effect("45 the answer of a map",
           "SELECT SubjectType,Subject,SubjectPrefix,SubjectDynamic,SubjectSuffix,GreetText,GreetField,LastToken,"
           "autocontent,enable FROM autocontent WHERE Mapname='cust'",
           "", "3|S|-|-|-|-|-|7|Thanks|True");
    effect("46 a field of the newest row",
           "SELECT first_name FROM cust where message_id=(select max(message_id) from cust)", "", "-");
    effect("47 a number into a text", "UPDATE autocontent SET LASTTOKEN = 8 WHERE Mapname = 'cust'",
           "select LastToken from autocontent", "8");
    effect("48 names in other letters", "SELECT Table_name FROM Table_List_tbl", "", "cust/leads");
    effect("49 by map", "select Mapname from autocontent where mapname='cust'", "", "cust");
    effect("50 two blanks", "select Mapname from  autocontent", "", "cust");
    effect("51 delete with a star", "delete * from autocontent where mapname='cust'",
           "select count(*) from autocontent", "0");
    effect("52 quoted texts into number and flag",
           "INSERT INTO autocontent(Mapname,SubjectType,Subject,SubjectPrefix,SubjectDynamic,SubjectSuffix,GreetText,"
           "GreetField,LastToken,autocontent,enable) values "
           "('leads','3','','Ticket','','','Dear','first_name','1','Thank you','True') ",
           "select * from autocontent where mapname='leads'", "leads|3||Ticket|||Dear|first_name|1|Thank you|True");
}

QTEST_GUILESS_MAIN(statements_intake_test)
#include "statements_intake_test.moc"
