// Sent items, map model, wizard, codes, database manager, import and export: each statement with its effect.
#include "support/statement_effects.h"
#include <QTest>

class statements_maps_test : public QObject {
    Q_OBJECT

private slots:
    void sent_items_data();
    void sent_items() { check_effect(); }
    void maps_data();
    void maps() { check_effect(); }
    void wizard_and_codes_data();
    void wizard_and_codes() { check_effect(); }
    void managing_data();
    void managing() { check_effect(); }
};

namespace {

const QString sent = "insert into sentitems_tbl "
                     "(tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid,tsl_sentformat,matchid) "
                     "values('a@b.org','An Offer','11/21/2026 1:02:03 AM','body','orders','jo@site.org','city',";

}

void statements_maps_test::sent_items_data()
{
    effect_columns();
    effect("53 a mail goes", "delete from sales where message_id=2", "select message_id from sales", "1/3");
    effect("54 a sent mail goes", sent + "4) ;; delete from sentitems_tbl where sentid=1",
           "select count(*) from sentitems_tbl", "0");
    effect("55 no sent mails", "select * from sentitems_tbl", "", "");
    effect("56 a sent mail, its date as text",
           "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid) "
           "values('a@b.org','Re: x','11/21/2026 1:02:03 AM','body','orders','jo@site.org')",
           "select * from sentitems_tbl", "1|a@b.org|Re: x|11/21/2026 1:02:03 AM|body|orders|jo@site.org|-|-");
    effect("57 the report emptied", "delete from printreport_tbl", "select count(*) from printreport_tbl", "0");
    effect("58 the long form, dates in a text column", sent + "2) ;; " + sent + "5)",
           "select sentid from sentitems_tbl where tsl_sentaccount='orders' and "
           "datevalue(tsl_sentdate)>=datevalue('11/1/2026') and datevalue(tsl_sentdate)<=datevalue('11/30/2026') and "
           "tsl_subject like '%offer%' and tsl_sentformat='city' and matchid in (1,2,3) order by tsl_sentdate desc",
           "1");
    effect("59 the shortest form, order by text",
           "insert into sentitems_tbl (tsl_sentdate,tsl_sentaccount) values('11/5/2026','orders') ;; "
           "insert into sentitems_tbl (tsl_sentdate,tsl_sentaccount) values('11/21/2026 1:02:03 AM','orders') ;; "
           "insert into sentitems_tbl (tsl_sentdate,tsl_sentaccount) values('12/1/2026','orders')",
           "select sentid from sentitems_tbl where tsl_sentaccount='orders' and "
           "datevalue(tsl_sentdate)>=datevalue('11/1/2026') and datevalue(tsl_sentdate)<=datevalue('11/30/2026') "
           "order by tsl_sentdate desc",
           "1/2");
    effect("60 mailings by their filters",
           "insert into match_tbl(ac_name,sub_contains,filter1,fval1,filter2,fval2) "
           "values('orders','city','city','Par','','')",
           "select matchid from match_tbl where ac_name='orders' and sub_contains='city' and filter1='city' and "
           "fval1='par' and filter2='' and fval2=''",
           "1");
    effect("61 quoted texts into dates",
           "insert into printreport_tbl (sentaccount,between1,filtersused,dynsubjectfield,subjectcontains,mailgen,"
           "matching,sentto,sentsubject,sentdate,gendate) values('orders','11/1/2026 and 11/30/2026',"
           "',Filter1:city=Par','None','None','3','None','a@b.org','s','11/21/2026 1:02:03 AM','11/21/2026')",
           "select id,filtersused,sentdate,gendate,month(gendate) from printreport_tbl",
           "1|,Filter1:city=Par|11/21/2026 1:02:03 AM|11/21/2026|11");
    effect("62 the last date", "update lastdate set gendate='11/21/2026' where id=3", "select * from lastdate",
           "1|8/13/1976/2|8/13/1976/3|11/21/2026");
    effect("63 the newest report row, of none",
           "select * from printreport_tbl where id=(select max(id) from printreport_tbl)", "", "");
    effect("64 one last date", "select * from lastdate where id=3", "", "3|8/13/1976");
    effect("65 the map used last", "select table_name from table_list_tbl where query_id=3 and lastformat=yes", "",
           "leads");
}

void statements_maps_test::maps_data()
{
    effect_columns();
    effect("66 the newest map", "select max(table_id) from table_list_tbl", "", "8");
    effect("67 no map used last", "update table_list_tbl set lastformat=no", "select lastformat from table_list_tbl",
           "False/False");
    effect("68 a map used last", "update table_list_tbl set lastformat=yes where table_name='cust'",
           "select lastformat from table_list_tbl", "True/True");
    effect("69 the one used last comes first", "select table_id from table_list_tbl order by lastformat,date_created",
           "", "8/7");
    effect("70 newest first among the others", "update table_list_tbl set lastformat=no",
           "Select table_name from table_list_tbl order by lastformat,date_created desc", "leads/cust");
    effect("71 the newest field", "select max(id) from format_tbl", "", "2");
    effect("72 fields with codes", "select fname from format_tbl where table_id=7 and fcodegen<>0", "", "city");
    effect("73 one of them", "select id from format_tbl where table_id=7 and fcodegen<>0 and fname='CITY'", "", "1");
    effect("74 the account of a map",
           "select query from email_tbl where id=(select query_id from table_list_tbl where table_name='cust')", "",
           "info");
    effect("75 a new map of today",
           "insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator,subject) "
           "values('late',date(),3,yes,'Line','Order')",
           "select * from table_list_tbl where table_name='late'", "9|late|11/21/2026|3|True|Line|Order");
    effect("76 a new field",
           "insert into format_tbl (fname,fposition,fignore,finclude,table_id,fcodegen) "
           "values('street','Line3','City:',yes,8,0)",
           "select * from format_tbl where table_id=8", "3|street|Line3|City:|True|8|0");
    effect("77 a map goes", "delete from table_list_tbl where table_name='cust'",
           "select table_name from table_list_tbl", "leads");
}

void statements_maps_test::wizard_and_codes_data()
{
    effect_columns();
    effect("78 how many maps", "select count(*) from table_list_tbl", "", "2");
    effect("79 names in other letters", "select query from email_TBL", "", "orders/sales/info");
    effect("80 one mail", "select tsl_subject from sales where message_id=3", "", "Lead");
    effect("81 an address", "select email from email_tbl where table_name='sales'", "", "sales@site.org");
    effect("82 two blanks", "select  table_name from table_list_tbl", "", "cust/leads");
    effect("83 a table", "select table_name from email_tbl where id=3", "", "info");
    effect("84 a map named by a reserved word is refused", "select * into Query from model_tbl",
           "select * from [Query]", "error 80040E14");
    effect("84 in brackets it is not", "select * into [Query] from model_tbl", "select * from [Query]", "");
    effect("85 a code", "insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(4,'Red','R')",
           "select * from fcodes_tbl", "1|4|Red|R");
    effect("86 codes of a field, in other letters",
           "insert into fcodes_tbl (fieldID,fielddesc,fieldCODE) values(4,'Red','R')",
           "select * from fcodes_Tbl where fieldid=4", "1|4|Red|R");
    effect("87 some mails go", "delete from sales where message_id in (1,3)", "select message_id from sales", "2");
    effect("88 an account's number", "select id from email_tbl where table_name='sales'", "", "2");
    effect("89 the fields of a map by its name",
           "select fname from format_tbl where table_id=(select table_id from table_list_tbl where table_name='cust')",
           "", "city/email");
}

void statements_maps_test::managing_data()
{
    effect_columns();
    effect("90 by number, a blank at the end", "select message_id from cust order by message_id ", "", "1/2/3");
    effect("91 an empty record",
           "insert into cust (tsl_recdate,tsl_status,tsl_subject,tsl_Email,city,first_name) "
           "values(now,'new','','','','')",
           "select * from cust where message_id=4", "4||11/21/2026 1:02:03 AM||new||-|");
    effect("92 the newest record", "select max(message_id) from cust", "", "3");
    effect("93 a record changed",
           "update cust set tsl_Email ='a@b.org' , city ='Paris' , first_name ='Jo' where message_id=3",
           "select tsl_Email,city,first_name from cust where message_id=3", "a@b.org|Paris|Jo");
    effect("94 a merged record",
           "insert into cust (tsl_subject,tsl_recdate,tsl_Email,tsl_Status,city) "
           "values('Order',now,'a@b.org','new','Paris')",
           "select * from cust where message_id=4", "4|Order|11/21/2026 1:02:03 AM|a@b.org|new|Paris|-|-");
    effect("95 a merged map has no subject",
           "insert into table_list_tbl (table_name,date_created,query_id,lastformat,seperator) "
           "values('merged',date(),0,no,'')",
           "select * from table_list_tbl where table_id=9", "9|merged|11/21/2026|0|False||-");
    effect("97 no form elements", "select form_description from felements_tbl where fid=12", "", "");
    effect("98 an imported line", "insert into cust( city,first_name) values( 'Paris','Jo')",
           "select tsl_subject,tsl_recdate,city,first_name from cust where message_id=4", "-|-|Paris|Jo");
    effect("99 its status", "update cust set tsl_status='new' where tsl_status is null or tsl_status=''",
           "select tsl_status from cust", "new/sent/new");
    effect("100 its status, when Null", "update cust set tsl_status='new' where tsl_status is null",
           "select tsl_status from cust", "new/sent/new");
    effect("101 its date", "update cust set tsl_recdate=now where tsl_recdate is null",
           "select tsl_recdate from cust where message_id=3", "11/21/2026 1:02:03 AM");
    effect("104 an imported contact",
           "insert into cust(city,first_name,tsl_recdate,tsl_status) values( 'Paris','Jo',now,'new')",
           "select * from cust where message_id=4", "4|-|11/21/2026 1:02:03 AM|-|new|Paris|-|Jo");
    effect("106 columns in the user's order", "select first_name,city from cust", "", "Ann|Paris/Bob|paRma/-|Rome");
}

QTEST_GUILESS_MAIN(statements_maps_test)
#include "statements_maps_test.moc"
