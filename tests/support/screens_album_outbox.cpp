// Pictures of the Outbox, and of its line at the bottom of the console.
#include "platform/app_folder.h"
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"

#include <QFile>
#include <QHeaderView>
#include <QTest>

namespace {

void hand_over(int number)
{
    outbox::outgoing_mail mail;
    mail.SendingAccount = "orders@rosecottage.example";
    mail.To = QStringList{number % 5 == 3 ? QString("no address") : QString("visitor%1@mail.example").arg(number)};
    mail.Subject = number == 7 ? QString("A subject that does not want to end ").repeated(9)
                               : QString("Your order %1").arg(1000 + number);
    mail.body = "Dear visitor,\n\nthank you for your order. The plants leave the nursery on Monday.\n\nRose Cottage";
    outbox::hand_over(mail);
}

// The 11th within an hour is held.
void answer_visitor_2()
{
    outbox::outgoing_mail mail;
    mail.Kind = outbox::mail_kind::answer;
    mail.SendingAccount = "orders@rosecottage.example";
    mail.To = {"visitor2@mail.example"};
    mail.Subject = "Thank you for your order";
    mail.body = "Dear visitor,\n\nthank you for your order. We pack it within two days.";
    outbox::hand_over(mail);
}

// Every state at the top of the list, none of their words cut.
void picture_states(const album &pictures, menuFrm &console)
{
    auto &list = control<list_view>(the<outbox_frm>(), "LV_outbox");
    const std::vector<int> widths{145, 100, 70, 105};
    for (size_t column = 0; column < widths.size(); ++column)
        list.setColumnWidth(int(column), widths[column]);
    constexpr int state_column = 2;
    QHeaderView &heads = *list.header();
    QTest::mouseClick(heads.viewport(), Qt::LeftButton, {},
                      {heads.sectionViewportPosition(state_column) + 20, heads.height() / 2});
    list.setCurrentIndex(list.model()->index(0, 0));
    list.scrollToTop();
    console.delivery_told(delivery::present());
    pictures.keep(console, "help-outbox_frm");
}

QString folder_of_outbox()
{
    return app_folder() + "/outbox/";
}

}

void picture_outbox(const album &pictures, menuFrm &console)
{
    the<outbox_frm>().show();
    pictures.keep(console, "outbox_frm-empty");
    SaveSetting("mail_client", "send", "smtp");
    for (int number = 1; number <= 14; ++number)
        hand_over(number);
    for (int number = 0; number < 11; ++number)
        answer_visitor_2();
    QFile state(folder_of_outbox() + outbox::contents().front().id + ".json");
    if (state.open(QIODevice::WriteOnly)) // damaged: nobody knows whether the first one has gone
        state.close();
    the<outbox_frm>().unload();
    the<outbox_frm>().show();
    auto &rows = control<list_view>(the<outbox_frm>(), "LV_outbox");
    rows.scrollToBottom();
    rows.setCurrentIndex(rows.model()->index(24, 0));
    delivery::report told;
    told.line =
        "20 mails wait in the Outbox: nobody answers at smtp.rosecottage.example, port 465: tried again at 2:05:00 PM; "
        "1 answer is held; 3 mails were refused; 1 mail may or may not have gone";
    console.delivery_told(told);
    pictures.keep(console, "outbox_frm-mixed");
    const QSize usual = console.size();
    the<outbox_frm>().unload();
    console.resize(640, 520);
    the<outbox_frm>().show();
    picture_states(pictures, console);
    console.resize(usual);
    for (int number = 15; number <= 400; ++number)
        hand_over(number);
    the<outbox_frm>().unload();
    the<outbox_frm>().show();
    pictures.keep(console, "outbox_frm-long");
    the<outbox_frm>().unload();
    console.delivery_told({});
    SaveSetting("mail_client", "send", {});
}
