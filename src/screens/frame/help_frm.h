// The help: its table of contents, a page, full-text search. A window of its own, which stays usable beside dialogs.
// The page: help_page.h. The searching: frame/help_search.h.
#pragma once
#include "frame/help_search.h"
#include "platform/help_file.h"
#include "screens/screen.h"
#include <QDateTime>
#include <memory>

class QTreeWidgetItem;

namespace Ui {
class help_frm;
}

class help_frm : public screen {
    Q_OBJECT
public:
    explicit help_frm(QWidget *parent = nullptr);
    ~help_frm() override;

    // At the topic's page, the name of a page without its ending; an unknown topic opens the start page.
    void open_help(const QString &path, const QString &topic);
    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    QString help_topic() const override { return QStringLiteral("help"); }
    bool opens_in_area() const override { return false; }
    void keyPressEvent(QKeyEvent *event) override;

private:
    void add_shortcuts();
    void read_file(const QString &path);
    void fill_contents();
    void show_start_page();
    void page_shown();
    void contents_tv_Click();
    void search_t_Change();
    void results_li_Click();
    void show_found();
    void find_b_Click();
    void find_t_Change();
    void find_again(bool backwards);
    void end_finding();
    bool take_back_a_step();
    void gather_pages();

    std::unique_ptr<Ui::help_frm> ui;
    help::help_file held;
    QString held_path;
    QDateTime held_since;                    // as the file then was
    std::vector<help::searched_page> texts;  // gathered at the first search
    QHash<QString, QTreeWidgetItem *> lines; // of the contents, by page
    bool has_its_size = false;
};
