#include "platform/real/mail/html_entities.h"
#include <algorithm>
#include <array>

namespace mime {

namespace {

struct entity {
    QStringView name;
    char16_t letter;
};

// In the order of their code points, so that the ones of the upper half of Latin 1 need no number.
constexpr std::array<QStringView, 96> latin_names{
    u"nbsp",   u"iexcl",  u"cent",   u"pound",  u"curren", u"yen",    u"brvbar", u"sect",   u"uml",    u"copy",
    u"ordf",   u"laquo",  u"not",    u"shy",    u"reg",    u"macr",   u"deg",    u"plusmn", u"sup2",   u"sup3",
    u"acute",  u"micro",  u"para",   u"middot", u"cedil",  u"sup1",   u"ordm",   u"raquo",  u"frac14", u"frac12",
    u"frac34", u"iquest", u"Agrave", u"Aacute", u"Acirc",  u"Atilde", u"Auml",   u"Aring",  u"AElig",  u"Ccedil",
    u"Egrave", u"Eacute", u"Ecirc",  u"Euml",   u"Igrave", u"Iacute", u"Icirc",  u"Iuml",   u"ETH",    u"Ntilde",
    u"Ograve", u"Oacute", u"Ocirc",  u"Otilde", u"Ouml",   u"times",  u"Oslash", u"Ugrave", u"Uacute", u"Ucirc",
    u"Uuml",   u"Yacute", u"THORN",  u"szlig",  u"agrave", u"aacute", u"acirc",  u"atilde", u"auml",   u"aring",
    u"aelig",  u"ccedil", u"egrave", u"eacute", u"ecirc",  u"euml",   u"igrave", u"iacute", u"icirc",  u"iuml",
    u"eth",    u"ntilde", u"ograve", u"oacute", u"ocirc",  u"otilde", u"ouml",   u"divide", u"oslash", u"ugrave",
    u"uacute", u"ucirc",  u"uuml",   u"yacute", u"thorn",  u"yuml"};

constexpr std::array<entity, 25> other_entities{
    {{u"amp", u'&'},      {u"lt", u'<'},       {u"gt", u'>'},       {u"quot", u'"'},     {u"apos", u'\''},
     {u"euro", 0x20AC},   {u"ndash", 0x2013},  {u"mdash", 0x2014},  {u"lsquo", 0x2018},  {u"rsquo", 0x2019},
     {u"sbquo", 0x201A},  {u"ldquo", 0x201C},  {u"rdquo", 0x201D},  {u"bdquo", 0x201E},  {u"bull", 0x2022},
     {u"hellip", 0x2026}, {u"trade", 0x2122},  {u"lsaquo", 0x2039}, {u"rsaquo", 0x203A}, {u"OElig", 0x0152},
     {u"oelig", 0x0153},  {u"Scaron", 0x0160}, {u"scaron", 0x0161}, {u"ensp", u' '},     {u"emsp", u' '}}};

QString letter_of_number(QStringView digits)
{
    const bool hex = digits.startsWith(u'x') || digits.startsWith(u'X');
    bool good = false;
    const uint code = (hex ? digits.sliced(1) : digits).toUInt(&good, hex ? 16 : 10);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (!good || code == 0 || code > 0x10FFFF || surrogate)
        return {};
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(&code), 1);
}

}

QString entity_text(QStringView name)
{
    if (name.startsWith(u'#'))
        return letter_of_number(name.sliced(1));
    const auto *other = std::find_if(other_entities.begin(), other_entities.end(),
                                     [name](const entity &one) { return one.name == name; });
    if (other != other_entities.end())
        return QString(QChar(other->letter));
    if (name == u"nbsp")
        return QStringLiteral(" ");
    const auto *latin = std::find(latin_names.begin(), latin_names.end(), name);
    return latin == latin_names.end() ? QString() : QString(QChar(char16_t(0xA0 + (latin - latin_names.begin()))));
}

}
