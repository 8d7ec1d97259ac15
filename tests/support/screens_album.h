// Pictures of screens, for eyes: where they go, and those of the mail client's page.
// The others: tests/screens/pictures.cpp.
#pragma once
#include <QString>
#include <QWidget>

class menuFrm;
class screens_site;

struct album {
    QString folder;
    QString desktop; // "light" or "dark"

    void keep(QWidget &window, const QString &name) const;
};

void picture_mail_client(const album &pictures, menuFrm &console);
void picture_outbox(const album &pictures, menuFrm &console);        // screens_album_outbox.cpp
void picture_classic_maps(const album &pictures, menuFrm &console);  // screens_album_classic.cpp
void picture_map_wizard(const album &pictures, menuFrm &console);    // screens_album_maps.cpp
void picture_autoresponder(const album &pictures, menuFrm &console); // screens_album_answers.cpp; with and without maps

void picture_preferences(const album &pictures, menuFrm &console); // screens_album_preferences.cpp

// screens_album_setup.cpp
void picture_setup(const album &pictures);
void picture_accounts(const album &pictures, menuFrm &console);

// screens_album_help.cpp
void picture_help(const album &pictures);
// Of other screens, for its pages, over a site that holds nothing but the mails to be fetched.
void picture_for_help(const album &pictures, menuFrm &console, screens_site &site);

void picture_report(const album &pictures, menuFrm &console, screens_site &site); // screens_album_report.cpp
