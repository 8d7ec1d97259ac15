// Mailing lists, sending, unsubscribing, signatures: each statement with its effect.
#include "support/statement_effects.h"
#include <QTest>

class statements_mailing_test : public QObject {
    Q_OBJECT

private slots:
    void lists_data();
    void lists() { check_effect(); }
    void sending_data();
    void sending() { check_effect(); }
    void subscriptions_data();
    void subscriptions() { check_effect(); }
    void saved_lists_data();
    void saved_lists() { check_effect(); }
};

namespace {

const QString spring = "insert into mail_list_tbl(mname,mlistdate,mapaccount,betweendate,filtersused,sub_pre,"
                       "sub_field,sub_suf,email_pre,email_field,email_suf) values('Spring','11/21/2026 1:02:03 AM',"
                       "'cust','Complete mailing list','','','','','','','')";
const QString spring_row = "1|Spring|cust|Complete mailing list||||||||11/21/2026 1:02:03 AM";
const QString member = "insert into mlist_details_tbl(datecreated,mail,sub_dyn,line_dyn,query,message_id,mtbl_id) "
                       "values('8/13/2026 1:02:03 PM','a@b.org',' ',' ','orders','12',4)";

}

void statements_mailing_test::lists_data()
{
    effect_columns();
    effect("108 capitals", spring, "SELECT * FROM MAIL_LIST_TBL WHERE ID=1", spring_row);
    effect("109 lists of a map", spring, "select mname from mail_list_tbl where mapaccount='CUST'", "Spring");
    effect("110 a list by name", spring, "select id from mail_list_tbl where mname='spring'", "1");
    effect("111 members that are not blocked",
           member + " ;; insert into mlist_details_tbl(mail,mtbl_id) values('Ann@B.org',4)",
           "select mail from mlist_details_tbl where mtbl_id=4 and mail not in (select email from unsubscribe_tbl)",
           "a@b.org");
    effect("112 a list by number", spring, "select * from mail_list_tbl where id=4", "");
    effect("113 a filtered list, its map has addresses",
           "select message_id from cust where 1=1  and city like 'Par%' and "
           "datevalue(tsl_recdate)>=datevalue('8/1/2026') and datevalue(tsl_recdate)<=datevalue('9/30/2026') and "
           "email<>''  and email not in (select email from unsubscribe_tbl)",
           "", "2");
    effect("114 a list of senders",
           "select message_id from cust where 1=1  and tsl_email<>'' and tsl_email not in (select email from "
           "unsubscribe_tbl)",
           "", "2/3");
    effect("115 the account of a recipient", "select query_id from table_list_tbl where table_name='cust'", "", "3");
    effect("116 and its name", "select query from email_tbl where id=3", "", "info");
    effect("117 an address repaired", "update cust set email='ok@b.org' where email='bad'", "select email from cust",
           "ann@b.org/ok@b.org/-");
    effect("118 a mailing kept",
           "insert into match_tbl(ac_name,from_dt,to_dt,sub_contains,filter1,filter2,filter3,filter4,fval1,fval2,"
           "fval3,fval4) values('orders','8/1/2026','8/31/2026','city','city','','','','Par','','','')",
           "select * from match_tbl", "orders|8/1/2026|8/31/2026|-|city|city||||Par||||1");
}

void statements_mailing_test::sending_data()
{
    effect_columns();
    effect("119 no mailing yet", "select max(matchid) from match_tbl", "", "-");
    effect("120 a sent mail of a mailing",
           "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid,"
           "tsl_sentformat,matchid) values('a@b.org','s','11/21/2026 1:02:03 AM','body','orders','jo@site.org','city',"
           "4)",
           "select sentid,tsl_sentformat,matchid from sentitems_tbl", "1|city|4");
    effect("121 a sent mail without one",
           "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid,"
           "tsl_sentformat) values('a@b.org','s','11/21/2026 1:02:03 AM','body','orders','jo@site.org','city')",
           "select sentid,tsl_sentformat,matchid from sentitems_tbl", "1|city|-");
    effect("122 the report's body emptied",
           "insert into mlistreportbody_tbl(sentto) values('a') ;; delete from mlistreportbody_tbl",
           "select count(*) from mlistreportbody_tbl", "0");
    effect(
        "123 a row of it",
        "insert into mlistreportbody_tbl(sentto,subject,sentd) values('a@b.org','Offer  now','8/13/2026 1:02:03 PM')",
        "select * from mlistreportbody_tbl", "a@b.org|Offer  now|8/13/2026 1:02:03 PM");
    effect("124 the report's head emptied",
           "insert into mlistprintreport_tbl(mailgen) values('1') ;; delete from mlistprintreport_tbl",
           "select count(*) from mlistprintreport_tbl", "0");
    effect("125 a row of it",
           "insert into mlistprintreport_tbl(sentaccount,between1,filters_used,subjectfield,mailfline,mailgen,"
           "maillistname) values('cust','Complete mailing list','','Offer city now','Dear first_name !','3 mail(s)',"
           "'Spring')",
           "select * from mlistprintreport_tbl",
           "cust|Complete mailing list||Offer city now|Dear first_name !|3 mail(s)|Spring");
}

void statements_mailing_test::subscriptions_data()
{
    effect_columns();
    effect("126 a number by address", "select entryno from unsub_entryno where email='a@b.org'", "", "1037");
    effect("127 the settings, in other letters", "select unsub_keyword,noformat from unsub_Detail", "",
           "UNSUBSCRIBE|0");
    effect("128 upper case against lower", "select entryno from unsub_entryno where ucase(email)='a@b.org'", "",
           "1037");
    effect("129 leading zeros stay", "insert into unsub_entryno (email,entryno) values('b@b.org','000701')",
           "select entryno from unsub_entryno where email='b@b.org'", "000701");
    effect("130 the counter", "update unsub_detail set lasttoken=lasttoken+1", "select lasttoken from unsub_detail",
           "2");
    effect("131 a standard text", "select msg_name from unsub_msg where msg_name='short'", "", "Short");
    effect("132 nobody blocked", "delete from unsubscribe_tbl", "select count(*) from unsubscribe_tbl", "0");
    effect("133 the settings go", "delete * from unsub_detail", "select count(*) from unsub_detail", "0");
    effect("134 the settings by position",
           "delete * from unsub_detail ;; insert into unsub_detail values('To leave send keyword Entry no','REMOVE',"
           "'Arial','2',True,0,'Short',5)",
           "select * from unsub_detail", "To leave send keyword Entry no|REMOVE|Arial|2|True|0|Short|5");
    effect("134 one value too few",
           "insert into unsub_detail values('To leave send keyword Entry no','REMOVE','Arial','2',True,0,'Short')",
           "select count(*) from unsub_detail", "error 80040E14");
    effect("135 two blanks", "select signature from  unsubconfirm_tbl", "", "-1");
    effect("136 a quoted flag",
           "delete from unsubconfirm_tbl ;; insert into unsubconfirm_tbl (mailsubject,mailcontent,addquery,signature) "
           "values('Done','You left','True','-1')",
           "select * from unsubconfirm_tbl", "Done|You left|True|-1");
    effect("137 a quoted flag changed",
           "update unsubconfirm_tbl set mailsubject='Done', mailcontent='You left', addquery='False', signature='Mine'",
           "select * from unsubconfirm_tbl", "Done|You left|False|Mine");
    effect("138 a signature's text", "select signtext from sign where signtitle='Mine'", "", "Regards");
    effect("139 the settings", "select msgname,lasttoken from unsub_detail", "", "Plain|1");
    effect("140 signatures", "Select * from sign", "", "Mine|Regards|Yes/Other|Bye|No");
    effect("141 a signature goes", "delete from sign where signtitle='mine'", "select signtitle from sign", "Other");
    effect("142 none selected", "update sign set signselected='No' where signselected= 'yes'",
           "select signselected from sign", "No/No");
    effect("143 one selected", "update sign set signselected='Yes' where signtitle= 'Other'",
           "select signselected from sign", "Yes/Yes");
    effect("144 the selected one", "select signtitle from sign where signselected='Yes'", "", "Mine");
    effect("145 a new one by position", "insert into sign values( 'New','Regards','No' )",
           "select * from sign where signtitle='New'", "New|Regards|No");
    effect("146 its text changed", "update sign set signtext= 'Bye' where signtitle= 'Mine'",
           "select signtext from sign", "Bye/Bye");
}

void statements_mailing_test::saved_lists_data()
{
    effect_columns();
    effect("147 no lists", "select * from mail_list_tbl", "", "");
    effect("148 members, text into date and number", member, "select * from mlist_details_tbl where mtbl_id=4",
           "4|8/13/2026 1:02:03 PM|a@b.org| | |orders|12");
    effect("149 a list, text into date", spring, "select * from mail_list_tbl", spring_row);
    effect("150 the newest list", spring, "select max(id) from mail_list_tbl", "1");
    effect("151 no number is refused", "insert into mlist_details_tbl(message_id) values('twelve')",
           "select count(*) from mlist_details_tbl", "error 80040E07");
    effect("151 nor is the empty text a number", "insert into mlist_details_tbl(message_id) values('')",
           "select count(*) from mlist_details_tbl", "error 80040E07");
    effect("152 a member's address",
           member + " ;; update mlist_details_tbl set mail='x@b.org' where mail='A@b.org' "
                    "and mtbl_id=4",
           "select mail from mlist_details_tbl", "x@b.org");
    effect("153 a member goes", member + " ;; delete from mlist_details_tbl where mail='a@b.org' and mtbl_id=4",
           "select count(*) from mlist_details_tbl", "0");
    effect("154 a list goes", spring + " ;; delete from mail_list_tbl where mname='Spring'",
           "select count(*) from mail_list_tbl", "0");
}

QTEST_GUILESS_MAIN(statements_mailing_test)
#include "statements_mailing_test.moc"
