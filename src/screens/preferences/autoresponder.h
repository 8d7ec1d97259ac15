// The screen "Autoresponder configuration": what each map answers by itself. It belongs to the preferences, from whose
// first page it opens; the Mail Mapping Wizard opens it for a new map. What is stored: intake/auto_reply.h.
#pragma once
#include "intake/auto_reply.h"
#include "screens/screen.h"
#include <QHash>
#include <memory>

namespace Ui {
class autoresponder;
}
class QComboBox;

class autoresponder : public screen {
    Q_OBJECT
public:
    explicit autoresponder(QWidget *parent = nullptr);
    ~autoresponder() override;
    void Load() override;
    void Activate() override;

    void loadmap();                      // the chosen map's fields and its reply; clears them where none is chosen
    void choose_map(const QString &map); // also one that was made since this screen was loaded
    QSize sizeHint() const override;

protected:
    std::optional<unsaved_work> unsaved() const override;

private:
    void mapname_c_Click();
    void enable_b_Click();
    void autosubmit_s_Click();
    void list_maps();
    void read_chosen_map();
    void show_reply(const intake::auto_reply &reply);
    void show_enabled();
    void show_what_applies();
    void show_preview();
    void show_greeting();
    QString newest_of(const QString &field);
    void save();
    intake::auto_reply typed() const;
    QWidget &box_of(intake::reply_part part) const;
    QString chosen_map() const; // "" with "Select Map"
    bool map_is_shown() const;

    std::unique_ptr<Ui::autoresponder> ui;
    bool enabled = false;
    bool is_read = true; // false: the chosen map could not be
    int shown_map = 0;   // its line in mapname_c
    intake::auto_reply as_shown;
    QHash<QString, QString> newest; // of the shown map, by field: asked once
};
