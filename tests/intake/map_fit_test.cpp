// Cutting one mail by one map: fitting, and the value of each column.
#include "frame/text.h"
#include "intake/map_fit.h"

#include <QtTest/QTest>

using intake::map_field;

namespace {

const map_field plain{"Name", 1, {}, false};
const map_field without_label{"Name", 1, {}, true};

map_field with_texts(const QStringList &texts, bool label_left_out = false)
{
    return {"Name", 1, texts, label_left_out};
}

}
Q_DECLARE_METATYPE(map_field)

class map_fit_test : public QObject {
    Q_OBJECT
private slots:
    void separators_data();
    void separators();
    void piece_numbers_data();
    void piece_numbers();
    void supporting_texts_are_split_data();
    void supporting_texts_are_split();
    void subjects_data();
    void subjects();
    void one_field_fits_data();
    void one_field_fits();
    void a_map_without_fields_fits_nothing();
    void every_field_must_fit();
    void values_data();
    void values();
    void a_point_and_a_dash_separate_as_they_stand();
};

void map_fit_test::separators_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("cuts");
    QTest::newRow("Line is a line end") << "Line"
                                        << "\r\n";
    QTest::newRow("in any capitals") << "lINE"
                                     << "\r\n";
    QTest::newRow("Tab stays three letters") << "Tab"
                                             << "Tab";
    QTest::newRow("a comma is itself") << ","
                                       << ",";
    QTest::newRow("Line with a blank is itself") << "Line "
                                                 << "Line ";
}

void map_fit_test::separators()
{
    QFETCH(QString, stored);
    QTEST(intake::cutting_separator(stored), "cuts");
}

void map_fit_test::piece_numbers_data()
{
    QTest::addColumn<QString>("position");
    QTest::addColumn<int>("piece");
    QTest::newRow("Line3") << "Line3" << 3;
    QTest::newRow("two digits") << "Line12" << 12;
    QTest::newRow("a blank between") << "Line 4" << 4;
    QTest::newRow("no number") << "Line" << 0;
    QTest::newRow("zero") << "Line0" << 0;
    QTest::newRow("below zero") << "Line-2" << -2;
    QTest::newRow("shorter than the word") << "Li" << 0;
    QTest::newRow("nothing") << "" << 0;
    QTest::newRow("the first four letters are not looked at") << "xxxx7" << 7;
}

void map_fit_test::piece_numbers()
{
    QFETCH(QString, position);
    QTEST(intake::piece_number(position), "piece");
}

void map_fit_test::supporting_texts_are_split_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("nothing gives none") << "" << QStringList{};
    QTest::newRow("one") << ":" << QStringList{":"};
    QTest::newRow("two") << "from@@@to" << QStringList{"from", "to"};
    QTest::newRow("two at signs belong to the text") << "a@@b" << QStringList{"a@@b"};
}

void map_fit_test::supporting_texts_are_split()
{
    QFETCH(QString, stored);
    QTEST(intake::supporting_texts(stored), "texts");
}

void map_fit_test::subjects_data()
{
    QTest::addColumn<QString>("of_map");
    QTest::addColumn<QString>("of_mail");
    QTest::addColumn<bool>("fits");
    QTest::newRow("the same") << "Order form"
                              << "Order form" << true;
    QTest::newRow("case does not matter") << "Order form"
                                          << "ORDER FORM" << true;
    QTest::newRow("surrounding blanks do not matter") << " Order form "
                                                      << "Order form  " << true;
    QTest::newRow("inner blanks matter") << "Order form"
                                         << "Order  form" << false;
    QTest::newRow("an answer is another subject") << "Order form"
                                                  << "Re: Order form" << false;
    QTest::newRow("a start is not enough") << "Order"
                                           << "Order form" << false;
    QTest::newRow("accented letters in other case") << "Été"
                                                    << "éTÉ" << true;
    QTest::newRow("no subject on either side") << ""
                                               << " " << true;
}

void map_fit_test::subjects()
{
    QFETCH(QString, of_map);
    QFETCH(QString, of_mail);
    intake::mail_map map;
    map.subject = of_map;
    QTEST(intake::subject_fits(map, of_mail), "fits");
}

void map_fit_test::one_field_fits_data()
{
    QTest::addColumn<map_field>("field");
    QTest::addColumn<QStringList>("mail");
    QTest::addColumn<bool>("fits");
    const auto one = [](const char *piece) { return QStringList{QString(piece)}; };

    QTest::newRow("the piece starts with the label") << plain << one("Name: Ann") << true;
    QTest::newRow("in other capitals") << plain << one("NAME: Ann") << true;
    QTest::newRow("behind blanks, which are trimmed") << plain << one("   Name: Ann") << true;
    QTest::newRow("the label stands later") << plain << one("Your name: Ann") << false;
    QTest::newRow("the label alone") << plain << one("Name") << true;
    QTest::newRow("the piece is shorter than the label") << plain << one("Nam") << false;
    QTest::newRow("another label") << plain << one("City: Rome") << false;
    QTest::newRow("no label is tested where the piece holds none") << without_label << one("Ann") << true;
    QTest::newRow("an empty piece of such a field fits") << without_label << one("") << true;
    QTest::newRow("line ends before the label go first") << plain << one("\r\nName: Ann") << true;
    QTest::newRow("a line end inside the label goes first") << plain << one("Na\rme: Ann") << true;
    QTest::newRow("a blank behind a line end stays before the label") << plain << one("\r Name: Ann") << false;
    QTest::newRow("a label with a blank is compared over its whole length")
        << map_field{"Name ", 1, {}, false} << one("Name: Ann") << false;
    QTest::newRow("so that it fits only where nothing stands behind the word")
        << map_field{"Name ", 1, {}, false} << one("Name") << true;

    QTest::newRow("a mail one piece short does not fit")
        << map_field{"Name", 3, {}, true} << QStringList{"a", "b"} << false;
    QTest::newRow("the last piece counts though it is empty")
        << map_field{"Name", 3, {}, true} << QStringList{"a", "b", ""} << true;
    QTest::newRow("piece 0 fits no mail") << map_field{"Name", 0, {}, true} << one("Name") << false;
    QTest::newRow("a piece below 0 neither") << map_field{"Name", -1, {}, true} << one("Name") << false;
    QTest::newRow("an empty body has no pieces, so it does not fit") << without_label << QStringList{} << false;

    QTest::newRow("a supporting text that is there") << with_texts({":"}) << one("Name: Ann") << true;
    QTest::newRow("one that is not there") << with_texts({"="}) << one("Name: Ann") << false;
    QTest::newRow("in other capitals") << with_texts({"mrs"}) << one("Name MRS Ann") << true;
    QTest::newRow("tested with the label still on") << with_texts({"name:"}) << one("Name: Ann") << true;
    QTest::newRow("one after another on the shrinking text: the second is gone with the first")
        << with_texts({"a b", "b"}) << one("Name a b") << false;
    QTest::newRow("the other way round it is still there, then the first is not")
        << with_texts({"b", "a b"}) << one("Name a b") << false;
    QTest::newRow("what the first leaves behind can make the second")
        << with_texts({"--", "xy"}) << one("Name x--y") << true;
    QTest::newRow("the same text twice in the list is gone the second time")
        << with_texts({":", ":"}) << one("Name: Ann: x") << false;
    QTest::newRow("a supporting text is no pattern") << with_texts({"."}) << one("Name Ann") << false;
    QTest::newRow("supporting texts are looked for without a label too")
        << with_texts({"=>"}, true) << one("Ann") << false;
}

void map_fit_test::one_field_fits()
{
    QFETCH(map_field, field);
    QFETCH(QStringList, mail);
    intake::mail_map map;
    map.fields = {field};
    QTEST(intake::pieces_fit(map, mail), "fits");
}

void map_fit_test::a_map_without_fields_fits_nothing()
{
    QVERIFY(!intake::pieces_fit({}, {"Name: Ann"}));
    QVERIFY(!intake::pieces_fit({}, {}));
}

void map_fit_test::every_field_must_fit()
{
    intake::mail_map map;
    map.fields = {{"Name", 1, {}, false}, {"City", 2, {}, false}};
    QVERIFY(intake::pieces_fit(map, {"Name Ann", "City Rome", "whatever"}));
    QVERIFY(!intake::pieces_fit(map, {"Name Ann", "Town Rome"}));
    QVERIFY(!intake::pieces_fit(map, {"Nome Ann", "City Rome"}));
}

void map_fit_test::values_data()
{
    QTest::addColumn<map_field>("field");
    QTest::addColumn<QString>("piece");
    QTest::addColumn<QString>("value");
    const QString emoji = "\U0001F600";

    QTest::newRow("the label goes") << plain << "Name Ann"
                                    << "Ann";
    QTest::newRow("in other capitals too") << plain << "NAME Ann"
                                           << "Ann";
    QTest::newRow("a label repeated inside the value loses only its first occurrence") << plain << "Name my Name is"
                                                                                       << "my Name is";
    QTest::newRow("no label is removed where the piece holds none") << without_label << "Name Ann"
                                                                    << "Name Ann";
    QTest::newRow("a supporting text that occurs twice is removed both times") << with_texts({":"}) << "Name: a:b"
                                                                               << "ab";
    QTest::newRow("supporting texts go after the label, so one that holds the label stays")
        << with_texts({"name:"}) << "Name: Ann"
        << ": Ann";
    QTest::newRow("in other capitals they go too") << with_texts({"mr."}) << "Name MR. Bob"
                                                   << "Bob";
    QTest::newRow("one pass each") << with_texts({"ab"}, true) << "aabbc"
                                   << "abc";
    QTest::newRow("line feeds and carriage returns go") << plain << "Name a\r\nb\rc\nd"
                                                        << "abcd";
    QTest::newRow("a carriage return inside the label keeps it, as the label is looked for before they go")
        << plain << "Na\rme Ann"
        << "Name Ann";
    QTest::newRow("a tab stays") << plain << "Name \tAnn"
                                 << "\tAnn";
    QTest::newRow("nothing behind the label") << plain << "Name"
                                              << "";
    QTest::newRow("quotes and percent signs stay") << plain << "Name O'Neil %1 \"x\""
                                                   << "O'Neil %1 \"x\"";
    QTest::newRow("a sharp s before the label does not move the cut") << without_label << "ßName"
                                                                      << "ßName";

    QTest::newRow("250 characters stay") << without_label << QString(250, u'x') << QString(250, u'x');
    QTest::newRow("251 characters stay") << without_label << QString(251, u'x') << QString(251, u'x');
    QTest::newRow("255 characters are stored whole") << without_label << QString(255, u'x') << QString(255, u'x');
    QTest::newRow("256 are stored as 250") << without_label << QString(256, u'x') << QString(250, u'x');
    QTest::newRow("255 accented letters stay whole: characters count, not bytes")
        << without_label << QString(255, u'é') << QString(255, u'é');
    QTest::newRow("counted when all is removed and trimmed")
        << with_texts({":"}) << "Name: " + QString(255, u'x') + "  " << QString(255, u'x');
    QTest::newRow("the cut does not trim; quoting will")
        << without_label << QString(249, u'x') + "   " + QString(20, u'y') << QString(249, u'x') + " ";
    QTest::newRow("a letter and 128 emoji: the pair at the cut goes whole")
        << without_label << "a" + emoji.repeated(128) << "a" + emoji.repeated(124);
    QTest::newRow("128 emoji are cut between two pairs") << without_label << emoji.repeated(128) << emoji.repeated(125);
}

void map_fit_test::values()
{
    QFETCH(map_field, field);
    QFETCH(QString, piece);
    QTEST(intake::field_value(field, {piece}), "value");
}

void map_fit_test::a_point_and_a_dash_separate_as_they_stand()
{
    intake::mail_map map;
    map.fields = {{"b", 2, {}, true}};
    QVERIFY(intake::pieces_fit(map, pieces("a.b", intake::cutting_separator("."))));
    QVERIFY(!intake::pieces_fit(map, pieces("a-b", intake::cutting_separator("."))));
    QVERIFY(intake::pieces_fit(map, pieces("a-b", intake::cutting_separator("-"))));
}

QTEST_GUILESS_MAIN(map_fit_test)
#include "map_fit_test.moc"
