// Hands so many personal mails to the Outbox of a program folder: fill_outbox PROGRAM_FOLDER COUNT
#include "platform/app_folder.h"
#include "platform/outbox.h"
#include <QCoreApplication>

int main(int count, char **argument)
{
    const QCoreApplication application(count, argument);
    if (count != 3)
        return 2;
    set_app_folder(QString::fromLocal8Bit(argument[1]));
    const int mails = QByteArray(argument[2]).toInt();
    for (int number = 0; number < mails; ++number) {
        outbox::outgoing_mail mail;
        mail.Kind = outbox::mail_kind::mailing;
        mail.SendingAccount = "hello@rosecottage.example";
        mail.To = {QStringLiteral("reader%1@mail.example").arg(number)};
        mail.Subject = QStringLiteral("Spring plants for visitor %1").arg(number);
        mail.body =
            QStringLiteral("Dear visitor %1,\n\n").arg(number) +
            QStringLiteral("our spring plants have come, and the first hundred orders travel free.\n").repeated(12);
        outbox::hand_over(mail);
    }
}
