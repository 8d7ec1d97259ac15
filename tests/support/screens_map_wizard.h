// The Mail Mapping Wizard in tests: a site with stored form mail, and the steps driven through their controls.
#pragma once
#include "frame/session.h"
#include "maps/map_wizard.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QPushButton>
#include <QTimer>

// An account "orders" with three mails of one form, "Order", and one other mail.
struct map_wizard_site : screens_site {
    map_wizard_site();
    void store_mail(const QString &table, const QString &subject, const QString &body,
                    const QString &received = "8/13/2026 10:00:00 AM", const QString &from = "ann@mail.example");

    qint64 account = 0;
};

const char *const order_body = "Name: Ann Moss\r\nCity: Bath\r\nItem: Lavender, blue\r\nQuantity: 12\r\n";

template <typename T>
void press(const char *name)
{
    control<QPushButton>(the<T>(), name).click();
}

// Does this with the modal screen T that opens next; ends the test program when none does, or when it stays open.
template <typename T, typename Deed>
void in_modal(Deed deed)
{
    QTimer::singleShot(0, [deed] {
        if (!is_visible<T>())
            qFatal("The modal screen did not open: %s", T::staticMetaObject.className());
        deed(the<T>());
        if (is_visible<T>())
            qFatal("The modal screen stayed open: %s", T::staticMetaObject.className());
    });
}

void type(QWidget &screen, const char *line_edit, const QString &text); // replaces what stood there

// Chooses the mail with this subject as the sample and opens step 3 (A).
void choose_sample(const QString &subject);
// A sample of the site's own, read from its table, straight into step 3 (A).
void open_cutting(map_wizard_site &site, const QString &table, qint64 message_id);
void cut_by_lines(); // on to step 3 (B)
void cut_by(const QString &separator_caption);

// In step 3 (B): the name, the piece (0: as it stands), each text ignored on the way, and Save.
void add_field(const QString &name, int piece = 0, const QStringList &ignored = {});
// Finish, Save in the preview, and the name given; what mapwizardsave_frm does then is done. stays: it does not close.
void finish_as(const QString &map_name);

QStringList added_fields(); // "name position ignore code value", joined by "|"
