// A site for the report on sent mails: the account orders, mails that were sent and mailings that were made, on
// 21 November 2026.
#pragma once
#include "intake/sent_report.h"
#include "platform/clock.h"
#include "support/intake_site.h"

struct report_site : intake_site {
    report_site()
    {
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(9, 30), Qt::UTC); });
        add_account("orders", "orders@shop.example");
    }
    ~report_site() { set_clock({}); }

    void add_sent(const QString &to, const QString &subject, const QString &date, const QString &format = "''",
                  const QString &mailing = "0", const QString &account = "orders") const
    {
        run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid,"
            "tsl_sentformat,matchid) values('" +
            to + "','" + subject + "','" + date + "','body','" + account + "','orders@shop.example'," + format + "," +
            mailing + ")");
    }
    void add_mailing(const QString &account, const QString &field, const QString &filters) const
    {
        run("insert into match_tbl(ac_name,from_dt,to_dt,sub_contains,filter1,filter2,filter3,filter4,fval1,fval2,"
            "fval3,fval4) values('" +
            account + "','','','" + field + "'," + filters + ")");
    }
};

inline intake::report_request november()
{
    intake::report_request request;
    request.account = "orders";
    request.from = QDate(2026, 11, 1);
    request.to = QDate(2026, 11, 30);
    return request;
}
