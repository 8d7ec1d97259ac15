// Random maps over random mails, made as the wizard makes them. What must stand in the tables is worked out here by the
// plain rules, with nothing of the parser's. The seed is printed; TESSALY_SEED takes another.
#include "intake/fit_reasons.h"
#include "intake/map_parser.h"
#include "maps/fit_preview.h"
#include "maps/mail_cutting.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QRandomGenerator>
#include <QtTest/QTest>

namespace {

constexpr int rounds = 400; // two maps and eight mails each

struct form_mail {
    QString subject, sender, body;
};

struct field_rule {
    QString name;
    int piece = 0;
    QStringList texts; // as they were marked
    bool has_label = false;
};

struct map_rule {
    QString name, separator, subject;
    std::vector<field_rule> fields; // in the order of adding
};

// --- the rules

QString without_outer_blanks(QString text)
{
    while (text.startsWith(u' '))
        text.remove(0, 1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

bool same(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QStringList pieces_by_rule(const map_rule &map, const QString &body)
{
    if (body.isEmpty())
        return {};
    return body.split(map.separator == "Line" ? QString("\r\n") : map.separator, Qt::KeepEmptyParts, Qt::CaseSensitive);
}

QStringList texts_by_rule(const field_rule &field)
{
    const QString joined = without_outer_blanks(field.texts.join("@@@"));
    return joined.isEmpty() ? QStringList() : joined.split("@@@");
}

bool field_fits_by_rule(const field_rule &field, const QStringList &cut)
{
    if (field.piece > cut.size())
        return false;
    QString piece = without_outer_blanks(cut[field.piece - 1]);
    piece.remove("\n").remove("\r");
    if (field.has_label && !same(piece.left(field.name.size()), field.name))
        return false;
    for (const QString &text : texts_by_rule(field)) {
        if (!text.isEmpty() && !piece.contains(text, Qt::CaseInsensitive))
            return false;
        if (!text.isEmpty())
            piece.remove(text, Qt::CaseInsensitive);
    }
    return true;
}

bool fits_by_rule(const map_rule &map, const form_mail &tested)
{
    if (!same(without_outer_blanks(map.subject), without_outer_blanks(tested.subject)))
        return false;
    const QStringList cut = pieces_by_rule(map, tested.body);
    return std::all_of(map.fields.begin(), map.fields.end(),
                       [&](const field_rule &field) { return field_fits_by_rule(field, cut); });
}

QString value_by_rule(const field_rule &field, const QStringList &cut)
{
    QString value = without_outer_blanks(cut[field.piece - 1]);
    if (field.has_label) {
        const qsizetype at = value.indexOf(field.name, 0, Qt::CaseInsensitive);
        if (at >= 0)
            value.remove(at, field.name.size());
    }
    for (const QString &text : texts_by_rule(field)) {
        if (!text.isEmpty())
            value.remove(text, Qt::CaseInsensitive);
    }
    value = without_outer_blanks(value.remove("\n").remove("\r"));
    if (value.size() > 255) {
        value.truncate(250);
        if (value.back().isHighSurrogate())
            value.chop(1);
    }
    return without_outer_blanks(value); // quoting trims once more
}

QString row_by_rule(const map_rule &map, const form_mail &taken, int id)
{
    QStringList values{QString::number(id), taken.subject, "(null)", taken.sender, "new"};
    const QStringList cut = pieces_by_rule(map, taken.body);
    for (auto field = map.fields.rbegin(); field != map.fields.rend(); ++field)
        values += value_by_rule(*field, cut);
    return values.join(u'|');
}

// --- what chance makes

class chance {
public:
    explicit chance(quint32 seed) : numbers(seed) {}
    int below(int bound) { return int(numbers.bounded(bound)); }
    bool one_in(int count) { return below(count) == 0; }
    QString one_of(const QStringList &choices) { return choices[below(int(choices.size()))]; }

private:
    QRandomGenerator numbers;
};

const QStringList words{"Name:",
                        "City = ",
                        "O'Neil",
                        "''",
                        "\"x\"",
                        "été",
                        "ÉTÉ",
                        "straße",
                        "Жжж",
                        "\U0001F600",
                        "\U00010400",
                        "\U00010428",
                        "100%",
                        "[x]",
                        "@@@",
                        "a@@@b",
                        " ",
                        "  ",
                        "\r",
                        "\t",
                        "Tab",
                        "\u00a0",
                        "\u2028",
                        "%1",
                        "field_1",
                        "FIELD_2 ",
                        "a",
                        "A",
                        "; drop table orders",
                        ","};

QString long_value(chance &dice)
{
    const QString unit = dice.one_of({"x", "é", "\U0001F600", "ab "});
    return unit.repeated(256).left(250 + dice.below(8)); // may halve a pair, as a hostile mail may
}

QString random_piece(chance &dice)
{
    if (dice.one_in(8))
        return long_value(dice);
    QString piece;
    for (int count = dice.below(5); count > 0; --count)
        piece += dice.one_of(words);
    return piece;
}

// Half a pair of surrogates cannot be stored as it is.
QString without_halves(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

QString glue_of(chance &dice, const QString &separator)
{
    if (separator == "Line")
        return dice.one_in(10) ? "\n" : "\r\n";
    return separator == "Tab" ? dice.one_of({"Tab", "Tab", "tab", "\t"}) : separator;
}

QString body_of(const QStringList &parts, const QString &glue)
{
    return without_halves(parts.join(glue));
}

// A mail of the same form with other values: most pieces as they were, some in other capitals, some new.
QStringList changed_parts(chance &dice, QStringList parts)
{
    for (QString &part : parts) {
        if (dice.one_in(4))
            part = part.toUpper();
        else if (dice.one_in(6))
            part += random_piece(dice);
        else if (dice.one_in(16))
            part = random_piece(dice);
    }
    if (dice.one_in(6))
        parts.removeLast();
    return parts;
}

std::vector<form_mail> random_mails(chance &dice, const QStringList &form, const QString &separator,
                                    const QString &subject)
{
    std::vector<form_mail> mails;
    for (int count = 0; count < 8; ++count) {
        form_mail made;
        made.subject = dice.one_in(6) ? dice.one_of({"Other", "", subject + "!"})
                                      : dice.one_of({subject, subject.toUpper(), "  " + subject + " "});
        made.sender = dice.one_of({"bob@example.net", "o'neil@example.net"});
        made.body = body_of(count == 0 ? form : changed_parts(dice, form), glue_of(dice, separator));
        mails.push_back(made);
    }
    return mails;
}

// Texts as a person marks them in a piece: parts of what is shown, each gone before the next is chosen.
QStringList marked_texts(chance &dice, const QString &piece, const QString &separator)
{
    QStringList marked;
    QString shown = maps::shown_piece(piece, separator);
    for (int count = dice.below(3); count > 0 && !shown.isEmpty(); --count) {
        const int from = dice.below(int(shown.size()));
        const QString text = without_halves(shown.mid(from, 1 + dice.below(12)));
        if (text.contains(QChar::ReplacementCharacter))
            continue;
        marked += text;
        shown = maps::ignoring(shown, text);
    }
    return marked;
}

map_rule random_map(chance &dice, const QString &name, const form_mail &sample, const QString &separator)
{
    map_rule map{name, separator, sample.subject, {}};
    const QStringList cut = maps::cut_sample(sample.body, separator);
    const QStringList names{"field_1", "FIELD_2", "a", "Limit", "x9"};
    for (int count = 1 + dice.below(4); count > 0; --count) {
        field_rule field;
        field.name = names[count - 1];
        field.piece = 1 + dice.below(int(cut.size()) + (dice.one_in(8) ? 2 : 0) + (cut.isEmpty() ? 1 : 0));
        if (field.piece <= cut.size())
            field.texts = marked_texts(dice, cut[field.piece - 1], separator);
        field.has_label = dice.one_in(10);
        map.fields.push_back(field);
    }
    return map;
}

qint64 add_mail(const form_mail &each)
{
    ado::Recordset rows; // past quoting, which would trim the body
    rows.Open("select * from orders", *session.store_connection, ado::cursor_type::keyset, ado::lock_type::optimistic);
    rows.AddNew();
    rows.Fields("tsl_subject").set_value(each.subject);
    rows.Fields("tsl_Email").set_value(each.sender);
    rows.Fields("tsl_body").set_value(each.body);
    rows.Update();
    const qint64 id = rows["message_id"].to_number();
    rows.Close();
    return id;
}

// As the wizard saves it, but for the labels: those are a choice that no screen writes any more.
void save_map(const wizard_site &site, const map_rule &map)
{
    maps::write_map(map.name);
    const QString id = site.column("select max(table_id) from table_list_tbl").value(0);
    for (const field_rule &field : map.fields) {
        if (field.has_label)
            site.run("update format_tbl set finclude=no where table_id=" + id + " and fname='" + field.name + "'");
    }
}

void choose_fields(const wizard_site &site, const map_rule &map)
{
    maps::forget_fields();
    maps::map_wizard.map_separator = map.separator;
    maps::map_wizard.map_subject = map.subject;
    for (const field_rule &field : map.fields)
        site.add_field(field.name, field.piece, field.texts);
}

// What a round leaves; a store of its own for each would take most of the time.
void clear(const wizard_site &site)
{
    for (const QString &name : site.column("select table_name from table_list_tbl"))
        site.run("drop table " + name);
    for (const char *table : {"table_list_tbl", "format_tbl", "orders"})
        site.run("delete from " + QString(table));
}

struct tally {
    int fits = 0, misfits = 0, both = 0;
};

// What must stand in both tables and which mails must be marked, as the passes go by.
struct expected_store {
    QStringList rows_of[2];
    std::vector<bool> taken;

    void take(const map_rule &map, int number, const form_mail &each, size_t at)
    {
        rows_of[number] += row_by_rule(map, each, int(rows_of[number].size()) + 1);
        taken[at] = true;
    }
};

}

class random_maps_test : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void random_maps_and_mails();

private:
    QString one_round(const wizard_site &site, chance &dice); // what went wrong, "" when all is well
    QString save_two_maps(const wizard_site &site, const std::vector<form_mail> &mails,
                          const std::vector<map_rule> &made, expected_store &expected);
    QString parse_the_rest(const wizard_site &site, const std::vector<form_mail> &mails,
                           const std::vector<map_rule> &made, size_t stored_before, expected_store &expected);
    quint32 seed = 20261121;
    tally counted;
};

void random_maps_test::initTestCase()
{
    if (qEnvironmentVariableIsSet("TESSALY_SEED"))
        seed = qEnvironmentVariableIntValue("TESSALY_SEED");
}

// Each map is saved over what is stored by then: it takes every mail that fits, taken before or not.
QString random_maps_test::save_two_maps(const wizard_site &site, const std::vector<form_mail> &mails,
                                        const std::vector<map_rule> &made, expected_store &expected)
{
    for (int number = 0; number < 2; ++number) {
        choose_fields(site, made[size_t(number)]);
        map_rule without_labels = made[size_t(number)];
        for (field_rule &field : without_labels.fields)
            field.has_label = false;
        const auto fitting = std::count_if(mails.begin(), mails.end(),
                                           [&](const form_mail &each) { return fits_by_rule(without_labels, each); });
        const maps::fit_count count = maps::count_fitting_mails();
        if (count.fits != fitting || count.mails != int(mails.size()))
            return "the count before the save is " + QString::number(count.fits);
        save_map(site, made[size_t(number)]);
        maps::bring_mails_over(made[size_t(number)].name);
        for (size_t at = 0; at < mails.size(); ++at) {
            if (fits_by_rule(made[size_t(number)], mails[at]))
                expected.take(made[size_t(number)], number, mails[at], at);
        }
    }
    return {};
}

// What came later goes through the ordinary pass: into each map that it fits.
QString random_maps_test::parse_the_rest(const wizard_site &site, const std::vector<form_mail> &mails,
                                         const std::vector<map_rule> &made, size_t stored_before,
                                         expected_store &expected)
{
    for (size_t at = stored_before; at < mails.size(); ++at) {
        const auto reasons = intake::fit_reasons("orders", add_mail(mails[at]));
        for (size_t number = 0; number < 2; ++number) {
            if (reasons[number].reason.isEmpty() != fits_by_rule(made[number], mails[at]))
                return "the reason given for mail " + QString::number(at + 1) + ": " + reasons[number].reason;
        }
    }
    intake::parse_unprocessed_mails();
    for (int number = 0; number < 2; ++number) {
        for (size_t at = stored_before; at < mails.size(); ++at) {
            if (fits_by_rule(made[size_t(number)], mails[at]))
                expected.take(made[size_t(number)], number, mails[at], at);
        }
    }
    return site.log_text();
}

QString random_maps_test::one_round(const wizard_site &site, chance &dice)
{
    const QString separator = dice.one_of({"Line", "Line", ",", "Tab", ".", "-", "_", ":", ";"});
    const QString subject = dice.one_of({"Order form", "Bestellung für Жanna", "it's \"new\"", "100% [x]"});
    QStringList form;
    for (int count = 1 + dice.below(6); count > 0; --count)
        form += random_piece(dice);
    const std::vector<form_mail> mails = random_mails(dice, form, separator, subject);
    const size_t stored_before = 5;
    const std::vector<map_rule> made{random_map(dice, "first_map", mails[0], separator),
                                     random_map(dice, "second_map", mails[size_t(dice.below(2))], separator)};
    for (size_t at = 0; at < stored_before; ++at)
        add_mail(mails[at]);

    expected_store expected;
    expected.taken.resize(mails.size());
    QString wrong = save_two_maps(site, {mails.begin(), mails.begin() + long(stored_before)}, made, expected);
    if (wrong.isEmpty())
        wrong = parse_the_rest(site, mails, made, stored_before, expected);
    for (int number = 0; number < 2 && wrong.isEmpty(); ++number) {
        const QStringList rows = site.rows("select * from " + made[size_t(number)].name);
        if (rows != expected.rows_of[number])
            wrong = "rows:\n" + rows.join(u'\n') + "\nexpected:\n" + expected.rows_of[number].join(u'\n');
    }
    QStringList marked;
    for (const bool each : expected.taken)
        marked += each ? "True" : "False";
    if (wrong.isEmpty() && site.column("select tsl_processed from orders") != marked)
        wrong = "marked: " + site.column("select tsl_processed from orders").join(u' ');
    for (const form_mail &each : mails) {
        const bool first = fits_by_rule(made[0], each);
        const bool second = fits_by_rule(made[1], each);
        counted.fits += first + second;
        counted.misfits += !first + !second;
        counted.both += first && second;
    }
    return wrong;
}

void random_maps_test::random_maps_and_mails()
{
    chance dice(seed);
    const wizard_site site;
    for (int round = 0; round < rounds; ++round) {
        const QString wrong = one_round(site, dice);
        QVERIFY2(wrong.isEmpty(), qPrintable(QString("seed %1, round %2: %3").arg(seed).arg(round).arg(wrong)));
        clear(site);
    }
    qInfo("seed %u: %d fits, %d misfits, %d mails of both maps", seed, counted.fits, counted.misfits, counted.both);
    QVERIFY(counted.fits > rounds); // or chance makes nothing worth testing
    QVERIFY(counted.misfits > rounds);
    QVERIFY(counted.both > rounds / 4);
}

QTEST_GUILESS_MAIN(random_maps_test)
#include "random_maps_test.moc"
