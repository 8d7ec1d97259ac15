#include "screens/frame/help_frm.h"
#include "frame/error_log.h"
#include "screens/frame/beside_dialogs.h"
#include "screens/frame/found_pages_delegate.h"
#include "screens/icons.h"
#include "ui_help_frm.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QTextDocument>

namespace {

constexpr int page_role = Qt::UserRole;
const QString page_ending = QStringLiteral(".html");

// A page's heading is its title once more.
QString text_below_heading(const QTextDocument &page)
{
    return page.toPlainText().section(u'\n', 1);
}

}

help_frm::help_frm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::help_frm>())
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("help"));
    ui->qt_splitter->setStretchFactor(0, 1);
    ui->qt_splitter->setStretchFactor(1, 3);
    ui->qt_splitter->setSizes({300, 600});
    ui->results_li->setItemDelegate(new found_pages_delegate(ui->results_li));
    ui->results_li->hide();
    ui->found_l->hide();
    ui->find_f->hide();
    ui->not_found_l->hide();
    ui->back_b->setEnabled(false);
    ui->forward_b->setEnabled(false);
    new beside_dialogs(*this);

    connect(ui->back_b, &QToolButton::clicked, ui->page_t, &help_page::backward);
    connect(ui->forward_b, &QToolButton::clicked, ui->page_t, &help_page::forward);
    connect(ui->page_t, &help_page::backwardAvailable, ui->back_b, &QToolButton::setEnabled);
    connect(ui->page_t, &help_page::forwardAvailable, ui->forward_b, &QToolButton::setEnabled);
    connect(ui->page_t, &help_page::sourceChanged, this, &help_frm::page_shown);
    connect(ui->start_b, &QToolButton::clicked, this, &help_frm::show_start_page);
    connect(ui->find_b, &QToolButton::clicked, this, &help_frm::find_b_Click);
    connect(ui->close_b, &QPushButton::clicked, this, &help_frm::unload);
    connect(ui->contents_tv, &QTreeWidget::currentItemChanged, this, &help_frm::contents_tv_Click);
    connect(ui->contents_tv, &QTreeWidget::itemClicked, this, &help_frm::contents_tv_Click);
    connect(ui->search_t, &QLineEdit::textChanged, this, &help_frm::search_t_Change);
    connect(ui->search_t, &QLineEdit::returnPressed, this, &help_frm::show_found);
    connect(ui->results_li, &QListWidget::currentRowChanged, this, &help_frm::results_li_Click);
    connect(ui->results_li, &QListWidget::itemClicked, this, &help_frm::results_li_Click); // the same one again, too
    connect(ui->results_li, &QListWidget::itemActivated, this, &help_frm::results_li_Click);
    connect(ui->find_t, &QLineEdit::textChanged, this, &help_frm::find_t_Change);
    connect(ui->find_t, &QLineEdit::returnPressed, this, [this] { find_again(false); });
    connect(ui->next_b, &QToolButton::clicked, this, [this] { find_again(false); });
    connect(ui->before_b, &QToolButton::clicked, this, [this] { find_again(true); });
    connect(ui->end_b, &QToolButton::clicked, this, &help_frm::end_finding);
    add_shortcuts();
}

void help_frm::add_shortcuts()
{
    connect(new QShortcut(QKeySequence("Ctrl+F"), this), &QShortcut::activated, this, &help_frm::find_b_Click);
    connect(new QShortcut(QKeySequence("Ctrl+K"), this), &QShortcut::activated, ui->search_t,
            [this] { ui->search_t->setFocus(Qt::ShortcutFocusReason); });
    connect(new QShortcut(QKeySequence("Alt+Left"), this), &QShortcut::activated, ui->page_t, &help_page::backward);
    connect(new QShortcut(QKeySequence("Alt+Right"), this), &QShortcut::activated, ui->page_t, &help_page::forward);
    connect(new QShortcut(QKeySequence("Alt+Home"), this), &QShortcut::activated, this, &help_frm::show_start_page);
    for (const char *larger : {"Ctrl++", "Ctrl+="}) // the second needs no Shift
        connect(new QShortcut(QKeySequence(larger), this), &QShortcut::activated, this,
                [this] { ui->page_t->zoomIn(); });
    connect(new QShortcut(QKeySequence("Ctrl+-"), this), &QShortcut::activated, this,
            [this] { ui->page_t->zoomOut(); });
    connect(new QShortcut(QKeySequence("F3"), this), &QShortcut::activated, this, [this] { find_again(false); });
    connect(new QShortcut(QKeySequence("Shift+F3"), this), &QShortcut::activated, this, [this] { find_again(true); });
}

help_frm::~help_frm() = default;

QSize help_frm::sizeHint() const
{
    return {900, 640};
}

void help_frm::open_help(const QString &path, const QString &topic)
{
    const QFileInfo file(path);
    if (path != held_path || file.lastModified() != held_since) {
        held_path = path;
        held_since = file.lastModified();
        read_file(path);
    }
    show();
    const QString page = topic + page_ending;
    if (held.bytes_of(page))
        ui->page_t->open(page.toLower());
    else
        show_start_page();
    ui->page_t->setFocus();
}

// A file that cannot be read leaves an empty help, which says so.
void help_frm::read_file(const QString &path)
{
    held = {};
    texts.clear();
    guarded("help_frm.frm", "read_file", [&] { held = help::read_help_file(path); });
    ui->page_t->set_file(&held);
    fill_contents();
    for (QWidget *control : {static_cast<QWidget *>(ui->search_t), static_cast<QWidget *>(ui->start_b),
                             static_cast<QWidget *>(ui->find_b)})
        control->setEnabled(!held.files.isEmpty());
}

void help_frm::fill_contents()
{
    const QSignalBlocker quiet(ui->contents_tv);
    ui->contents_tv->clear();
    lines.clear();
    std::vector<QTreeWidgetItem *> open_lines; // one a depth
    for (const help::contents_line &line : held.contents) {
        open_lines.resize(std::min(open_lines.size(), size_t(line.depth)));
        auto *made = open_lines.empty() ? new QTreeWidgetItem(ui->contents_tv) : new QTreeWidgetItem(open_lines.back());
        made->setText(0, line.title);
        made->setToolTip(0, line.title); // it may be cut
        made->setData(0, page_role, line.page.toLower());
        made->setExpanded(open_lines.empty());
        open_lines.push_back(made);
        if (!line.page.isEmpty() && !lines.contains(line.page.toLower()))
            lines.insert(line.page.toLower(), made);
    }
}

void help_frm::show_start_page()
{
    if (held.files.isEmpty())
        return ui->page_t->say(
            "The help file tslhlp.chm in the program's folder is damaged and cannot be shown. Put the "
            "one in its place that came with Tessaly. Everything else works as usual.");
    QString page = held.start_page.toLower();
    if (!held.bytes_of(page))
        page = held.pages().first();
    ui->page_t->open(page);
}

void help_frm::page_shown()
{
    const QString title = ui->page_t->documentTitle();
    setWindowTitle(title.isEmpty() ? "Tessaly Help" : title + " - Tessaly Help");
    const QSignalBlocker quiet(ui->contents_tv);
    ui->contents_tv->setCurrentItem(lines.value(ui->page_t->shown_page()));
    ui->not_found_l->hide();
}

void help_frm::contents_tv_Click()
{
    const QTreeWidgetItem *line = ui->contents_tv->currentItem();
    const QString page = line ? line->data(0, page_role).toString() : QString();
    if (page.isEmpty() || page == ui->page_t->shown_page())
        return;
    ui->page_t->mark({});
    ui->page_t->open(page);
}

void help_frm::gather_pages()
{
    if (!texts.empty())
        return;
    for (const QString &page : held.pages()) {
        QTextDocument text;
        text.setHtml(QString::fromUtf8(held.bytes_of(page).value_or(QByteArray())));
        texts.push_back({page, text.metaInformation(QTextDocument::DocumentTitle), text_below_heading(text)});
    }
}

void help_frm::search_t_Change()
{
    const QStringList words = help::words_of(ui->search_t->text());
    const QSignalBlocker quiet(ui->results_li);
    ui->results_li->clear();
    ui->contents_tv->setVisible(words.isEmpty());
    ui->results_li->setVisible(!words.isEmpty());
    ui->found_l->setVisible(!words.isEmpty());
    if (words.isEmpty())
        return ui->page_t->mark({});
    gather_pages();
    for (const help::search_result &result : help::search(texts, words)) {
        auto *line = new QListWidgetItem(result.title + u'\n' + result.excerpt, ui->results_li);
        line->setData(page_role, result.name);
    }
    const int count = ui->results_li->count();
    ui->found_l->setText(count == 0   ? "No page holds all these words. Try fewer, or the beginning of a word."
                         : count == 1 ? "1 page"
                                      : QString::number(count) + " pages");
}

void help_frm::show_found()
{
    if (ui->results_li->count() == 0)
        return;
    if (ui->results_li->currentRow() < 0)
        ui->results_li->setCurrentRow(0);
    ui->results_li->setFocus();
}

void help_frm::results_li_Click()
{
    const QListWidgetItem *line = ui->results_li->currentItem();
    if (!line)
        return;
    const QStringList words = help::words_of(ui->search_t->text());
    ui->page_t->open(line->data(page_role).toString());
    ui->page_t->mark(words);
    if (!words.isEmpty())
        ui->page_t->show_first_mark();
}

void help_frm::find_b_Click()
{
    ui->find_f->show();
    ui->find_t->setFocus();
    ui->find_t->selectAll();
}

void help_frm::find_t_Change()
{
    QTextCursor start = ui->page_t->textCursor();
    start.setPosition(start.selectionStart()); // what is being typed grows at its place
    ui->page_t->setTextCursor(start);
    find_again(false);
}

void help_frm::find_again(bool backwards)
{
    if (ui->find_f->isHidden())
        return find_b_Click();
    ui->not_found_l->setVisible(!ui->page_t->find_next(ui->find_t->text(), backwards));
}

void help_frm::end_finding()
{
    ui->find_f->hide();
    ui->page_t->setFocus();
}

// Escape: out of finding, out of searching, then out of the help.
bool help_frm::take_back_a_step()
{
    if (!ui->find_f->isHidden())
        end_finding();
    else if (!ui->search_t->text().isEmpty())
        ui->search_t->clear();
    else
        return false;
    return true;
}

// The first size is cut to two thirds of the desktop otherwise, too little beside a contents list.
void help_frm::showEvent(QShowEvent *event)
{
    screen::showEvent(event);
    if (std::exchange(has_its_size, true) || event->spontaneous())
        return;
    const QRect room = QWidget::screen()->availableGeometry();
    resize(sizeHint().boundedTo(room.size() * 9 / 10));
    move(room.center() - rect().center());
}

void help_frm::keyPressEvent(QKeyEvent *event)
{
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape && take_back_a_step())
        return;
    if (!is_enter) // there is nothing to confirm here
        screen::keyPressEvent(event);
}
