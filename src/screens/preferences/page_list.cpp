#include "screens/preferences/page_list.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/mail_client_frm.h"

#include <QComboBox>
#include <QEvent>
#include <QPushButton>
#include <QStandardItemModel>
#include <algorithm>
#include <vector>

namespace {

const char *const not_there = "This page is not there yet.";

struct listed_page {
    preference_page page;
    const char *caption;
    void (*show)();  // none: there is no such page yet
    bool (*leave)(); // false: it stays open
};

template <typename T>
void show_page()
{
    the<T>().show();
}

template <typename T>
bool leave_page()
{
    return !is_loaded<T>() || the<T>().leave();
}

const std::vector<listed_page> &all_pages()
{
    using enum preference_page;
    static const std::vector<listed_page> pages{
        {general, "GENERAL", show_page<Preference>, leave_page<Preference>},
        {accounts, "ACCOUNTS", show_page<Accounts>, leave_page<Accounts>},
        {labels, "LABELS", nullptr, nullptr},
        {online_form, "ONLINE FORM", show_page<OnlinePref>, leave_page<OnlinePref>},
        {map_mails, "MAP MAILS", show_page<Format_mail_frm>, leave_page<Format_mail_frm>},
        {mail_client, "MAIL CLIENT", show_page<mail_client_frm>, leave_page<mail_client_frm>},
    };
    return pages;
}

// A turn of the wheel over the list would leave the page, and what is typed there.
class wheel_stop : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Wheel)
            event->ignore(); // it scrolls what lies below
        return event->type() == QEvent::Wheel;
    }
};

const listed_page &line_of(preference_page page)
{
    return *std::find_if(all_pages().begin(), all_pages().end(),
                         [page](const listed_page &line) { return line.page == page; });
}

void add_entry(QComboBox &list, const listed_page &line)
{
    list.addItem(line.caption, int(line.page));
    if (line.show)
        return;
    const int index = list.count() - 1;
    static_cast<QStandardItemModel *>(list.model())->item(index)->setEnabled(false);
    list.setItemData(index, not_there, Qt::ToolTipRole);
}

}

void fill_page_list(QComboBox &list, preference_page here)
{
    const auto stand_on_own = [&list, here] { list.setCurrentIndex(list.findData(int(here))); };
    list.clear();
    for (const listed_page &line : all_pages())
        add_entry(list, line);
    stand_on_own();
    list.installEventFilter(new wheel_stop(&list));
    QObject::connect(&list, &QComboBox::activated, &list, [&list, here, stand_on_own](int index) {
        const auto wanted = preference_page(list.itemData(index).toInt());
        stand_on_own(); // where the page stays open
        if (wanted != here)
            open_page(wanted);
    });
}

void open_page(preference_page wanted)
{
    for (const listed_page &line : all_pages()) {
        if (line.page != wanted && line.leave && !line.leave())
            return;
    }
    line_of(wanted).show();
}

bool page_exists(preference_page page)
{
    return line_of(page).show;
}

void lead_to_page(QPushButton &button, preference_page wanted)
{
    QObject::connect(&button, &QPushButton::clicked, &button, [wanted] { open_page(wanted); });
    if (page_exists(wanted))
        return;
    button.setEnabled(false);
    button.setToolTip(not_there);
}
