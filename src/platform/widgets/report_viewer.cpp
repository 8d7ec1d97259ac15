#include "platform/widgets/report_viewer.h"
#include "platform/widgets/report_page.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>

namespace {

constexpr int zooms[] = {50, 75, 100, 125, 150, 200};
constexpr int paper_air = 24; // around the page, in all

QToolButton *page_button(const char *name, const QString &sign, const QString &words, QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setText(sign);
    button->setToolTip(words);
    button->setAccessibleName(words);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAutoRaise(true);
    return button;
}

QPushButton *report_button(const char *name, const QString &caption, QWidget *parent)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

}

report_viewer::report_viewer(QWidget *parent) : QWidget(parent)
{
    make_controls();
    lay_out_controls();
    connect_controls();
    show_state();
}

report_viewer::~report_viewer() = default;

void report_viewer::make_controls()
{
    print_b = report_button("print_b", "P&rint ...", this);
    save_b = report_button("save_b", "Save as P&DF ...", this);
    close_b = report_button("close_b", "Clos&e", this);
    first_b = page_button("first_b", QStringLiteral("|◀"), "First page (Home)", this);
    previous_b = page_button("previous_b", QStringLiteral("◀"), "Previous page (Page Up)", this);
    next_b = page_button("next_b", QStringLiteral("▶"), "Next page (Page Down)", this);
    last_b = page_button("last_b", QStringLiteral("▶|"), "Last page (End)", this);
    page_t = new QSpinBox(this);
    page_t->setObjectName("page_t");
    page_t->setAccessibleName("Page");
    page_t->setKeyboardTracking(false);
    page_t->setButtonSymbols(QAbstractSpinBox::NoButtons);
    page_t->setAlignment(Qt::AlignRight);
    pages_l = new QLabel(this);
    pages_l->setObjectName("pages_l");
    zoom_c = new QComboBox(this);
    zoom_c->setObjectName("zoom_c");
    zoom_c->setAccessibleName("Size on the screen");
    zoom_c->addItem("Whole page", whole_page);
    zoom_c->addItem("Page width", page_width);
    for (const int percent : zooms)
        zoom_c->addItem(QStringLiteral("%1 %").arg(percent), percent);
    zoom_c->setCurrentIndex(1);
    empty_l = new QLabel(this);
    empty_l->setObjectName("empty_l");
    empty_l->setTextFormat(Qt::PlainText);
    empty_l->setAlignment(Qt::AlignCenter);
    empty_l->setWordWrap(true);
    empty_l->setMargin(24);
}

void report_viewer::lay_out_controls()
{
    page = new report_page;
    page->setObjectName("page_fr");
    area = new QScrollArea;
    area->setObjectName("area_fr");
    area->setWidget(page);
    area->setAlignment(Qt::AlignCenter);
    area->setBackgroundRole(QPalette::Mid);
    area->setFocusPolicy(Qt::StrongFocus);
    views = new QStackedWidget(this);
    views->addWidget(area);
    views->addWidget(empty_l);

    auto *tools = new QHBoxLayout;
    for (QWidget *control : std::initializer_list<QWidget *>{first_b, previous_b, page_t, pages_l, next_b, last_b})
        tools->addWidget(control);
    tools->addSpacing(12);
    tools->addWidget(zoom_c);
    tools->addStretch();
    for (QWidget *control : {print_b, save_b, close_b})
        tools->addWidget(control);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addLayout(tools);
    rows->addWidget(views, 1);
    const QWidget *former = area;
    for (QWidget *control : std::initializer_list<QWidget *>{first_b, previous_b, page_t, next_b, last_b, zoom_c,
                                                             print_b, save_b, close_b}) {
        setTabOrder(const_cast<QWidget *>(former), control);
        former = control;
    }
}

void report_viewer::connect_controls()
{
    connect(first_b, &QToolButton::clicked, this, &report_viewer::ShowFirstPage);
    connect(previous_b, &QToolButton::clicked, this, &report_viewer::ShowPreviousPage);
    connect(next_b, &QToolButton::clicked, this, &report_viewer::ShowNextPage);
    connect(last_b, &QToolButton::clicked, this, &report_viewer::ShowLastPage);
    connect(page_t, &QSpinBox::valueChanged, this, &report_viewer::ShowNthPage);
    connect(zoom_c, &QComboBox::currentIndexChanged, this, &report_viewer::fit_page);
    connect(print_b, &QPushButton::clicked, this, &report_viewer::print_wanted);
    connect(save_b, &QPushButton::clicked, this, &report_viewer::save_wanted);
    connect(close_b, &QPushButton::clicked, this, &report_viewer::close_wanted);
    const auto key = [this](const QKeySequence &keys, auto answer) {
        connect(new QShortcut(keys, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut), &QShortcut::activated,
                this, answer);
    };
    key(QKeySequence("Ctrl++"), [this] { zoom_step(1); });
    key(QKeySequence("Ctrl+="), [this] { zoom_step(1); });
    key(QKeySequence("Ctrl+-"), [this] { zoom_step(-1); });
    key(QKeySequence("Ctrl+0"), [this] { Zoom(whole_page); });
    key(QKeySequence("Ctrl+P"), [this] { print_b->click(); });
    key(QKeySequence("Ctrl+S"), [this] { save_b->click(); });
    area->installEventFilter(this);
    area->viewport()->installEventFilter(this);
}

void report_viewer::set_empty_text(const QString &text)
{
    empty_l->setText(text);
}

void report_viewer::ViewReport(std::shared_ptr<paged_report> report)
{
    page->show_page(nullptr, 0, {});
    shown = std::move(report);
    if (shown)
        paper = lay_out_on_own_paper(*shown) / units_an_inch;
    const int pages = shown ? shown->page_count() : 0;
    const QSignalBlocker quiet(page_t);
    page_t->setRange(qMin(1, pages), pages);
    page_t->setValue(1);
    pages_l->setText(QStringLiteral("of %1").arg(pages));
    views->setCurrentWidget(pages > 0 ? static_cast<QWidget *>(area) : empty_l);
    ShowFirstPage();
    fit_page();
}

int report_viewer::GetCurrentPageNumber() const
{
    return page_t->value();
}

void report_viewer::ShowNthPage(int number)
{
    if (!shown || number < 1 || number > shown->page_count())
        return show_state();
    const QSignalBlocker quiet(page_t);
    page_t->setValue(number);
    page->show_page(shown.get(), number - 1, paper);
    page->setAccessibleName(QStringLiteral("Page %1 of %2").arg(number).arg(shown->page_count()));
    area->verticalScrollBar()->setValue(0);
    show_state();
}

void report_viewer::ShowFirstPage()
{
    ShowNthPage(1);
}

void report_viewer::ShowPreviousPage()
{
    ShowNthPage(GetCurrentPageNumber() - 1);
}

void report_viewer::ShowNextPage()
{
    ShowNthPage(GetCurrentPageNumber() + 1);
}

void report_viewer::ShowLastPage()
{
    ShowNthPage(page_t->maximum());
}

void report_viewer::show_state()
{
    const int number = GetCurrentPageNumber(), pages = page_t->maximum();
    const bool any = shown && pages > 0;
    first_b->setEnabled(any && number > 1);
    previous_b->setEnabled(any && number > 1);
    next_b->setEnabled(any && number < pages);
    last_b->setEnabled(any && number < pages);
    for (QWidget *control : std::initializer_list<QWidget *>{page_t, zoom_c, print_b, save_b})
        control->setEnabled(any);
}

void report_viewer::Zoom(int percent)
{
    const int index = zoom_c->findData(percent);
    if (index >= 0)
        zoom_c->setCurrentIndex(index);
}

// From a fitted size to the next of the list, whichever way.
void report_viewer::zoom_step(int steps)
{
    const double now = paper.isEmpty() ? 100 : 100.0 * page->width() / (paper.width() * logicalDpiX());
    int wanted = zoom_c->currentData().toInt();
    for (const int percent : zooms) {
        if (steps > 0 && percent > now + 0.5)
            return Zoom(percent);
        if (steps < 0 && percent < now - 0.5)
            wanted = percent;
    }
    if (steps < 0)
        Zoom(wanted);
}

void report_viewer::fit_page()
{
    if (paper.isEmpty())
        return;
    const int wanted = zoom_c->currentData().toInt();
    const QSizeF room = area->maximumViewportSize() - QSize(paper_air, paper_air);
    double dots = logicalDpiX() * wanted / 100.0; // an inch
    if (wanted == whole_page)
        dots = qMin(room.width() / paper.width(), room.height() / paper.height());
    if (wanted == page_width) // beside the scroll bar, which stands there as soon as it is wider than high
        dots = (room.width() - area->verticalScrollBar()->sizeHint().width()) / paper.width();
    page->resize((paper * qMax(dots, 10.0)).toSize());
}

void report_viewer::take_focus()
{
    (shown && shown->page_count() > 0 ? static_cast<QWidget *>(area) : close_b)->setFocus();
}
