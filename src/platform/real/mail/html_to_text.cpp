#include "platform/real/mail/html_to_text.h"
#include "platform/real/mail/html_entities.h"
#include <array>

namespace mime {

namespace {

constexpr qsizetype longest_entity = 10;
constexpr qsizetype longest_tag_name = 12;

constexpr std::array<QStringView, 30> block_tags{
    u"p",      u"div",   u"tr",      u"table",    u"ul",      u"ol",        u"li",      u"dl",
    u"dt",     u"dd",    u"h1",      u"h2",       u"h3",      u"h4",        u"h5",      u"h6",
    u"pre",    u"hr",    u"form",    u"body",     u"section", u"header",    u"article", u"aside",
    u"footer", u"title", u"address", u"fieldset", u"option",  u"blockquote"};
constexpr std::array<QStringView, 4> silent_tags{u"script", u"style", u"title", u"noscript"};

template <size_t N>
bool is_one_of(const std::array<QStringView, N> &names, QStringView name)
{
    for (const QStringView one : names)
        if (one == name)
            return true;
    return false;
}

bool is_html_blank(QChar letter)
{
    return letter == u' ' || letter == u'\t' || letter == u'\n' || letter == u'\r' || letter == u'\f';
}

// What was written so far. Breaks are kept back until text follows, so that none stands at either end.
class text_writer {
public:
    void letters(QStringView text)
    {
        begin_text();
        result += text;
    }
    void blank()
    {
        if (!result.isEmpty() && pending_breaks == 0)
            pending_blank = true;
    }
    void begin_line() { pending_breaks = qMax(pending_breaks, 1); }
    void begin_paragraph() { pending_breaks = qMax(pending_breaks, 2); }
    void line_break() { ++pending_breaks; }
    void line_end_as_it_is()
    {
        begin_text();
        result += u'\n';
    }
    QString result;

private:
    void begin_text()
    {
        if (!result.isEmpty() && pending_breaks > 0)
            result += QString(qMin(pending_breaks, most_breaks), u'\n');
        else if (pending_blank)
            result += u' ';
        pending_breaks = 0;
        pending_blank = false;
    }
    static constexpr int most_breaks = 20;
    int pending_breaks = 0;
    bool pending_blank = false;
};

class html_reader {
public:
    explicit html_reader(QStringView page) : html(page) {}

    QString text()
    {
        while (at < html.size()) {
            if (html[at] == u'<' && opens_markup())
                markup();
            else
                letter();
        }
        return writer.result;
    }

private:
    bool opens_markup() const
    {
        if (at + 1 >= html.size())
            return false;
        const QChar next = html[at + 1];
        return next.isLetter() || next == u'/' || next == u'!' || next == u'?';
    }

    void letter()
    {
        if (html[at] == u'&') {
            entity();
        } else if (is_html_blank(html[at])) {
            preformatted > 0 && html[at] == u'\n' ? writer.line_end_as_it_is() : blank_run();
        } else {
            qsizetype end = at;
            while (end < html.size() && html[end] != u'<' && html[end] != u'&' && !is_html_blank(html[end]))
                ++end;
            end = qMax(end, at + 1); // a "<" that opens nothing is a letter
            writer.letters(html.sliced(at, end - at));
            at = end - 1;
        }
        ++at;
    }

    void blank_run()
    {
        if (preformatted > 0 && html[at] != u'\r')
            writer.letters(u" ");
        else
            writer.blank();
    }

    void entity()
    {
        const qsizetype end = html.sliced(at, qMin(longest_entity, html.size() - at)).indexOf(u';');
        const QString text = end > 1 ? entity_text(html.sliced(at + 1, end - 1)) : QString();
        if (text.isEmpty())
            return writer.letters(u"&");
        text == u" " ? writer.blank() : writer.letters(text);
        at += end;
    }

    void markup()
    {
        if (html.sliced(at).startsWith(u"<!--")) {
            at = behind(u"-->", at + 4);
            return;
        }
        const bool closing = html[at + 1] == u'/';
        qsizetype name_at = at + (closing ? 2 : 1), end = name_at;
        while (end < html.size() && end - name_at < longest_tag_name && html[end].isLetterOrNumber())
            ++end;
        const QString name = html.sliced(name_at, end - name_at).toString().toLower();
        at = behind_tag(end);
        if (!closing && is_one_of(silent_tags, name))
            skip_to_closing(name);
        else
            tag(name, closing);
    }

    void tag(const QString &name, bool closing)
    {
        if (name == u"br")
            return closing ? void() : writer.line_break();
        if (name == u"pre")
            preformatted = qMax(0, preformatted + (closing ? -1 : 1));
        if (name == u"p" || name == u"blockquote")
            return writer.begin_paragraph();
        if (is_one_of(block_tags, name))
            return writer.begin_line();
        if (name == u"td" || name == u"th")
            writer.blank();
    }

    // Behind the ">" of a tag; one inside a quoted attribute does not count. No ">" at all: the rest is the tag.
    qsizetype behind_tag(qsizetype from) const
    {
        QChar quote;
        for (qsizetype place = from; place < html.size(); ++place) {
            const QChar letter = html[place];
            if (!quote.isNull())
                quote = letter == quote ? QChar() : quote;
            else if (letter == u'>')
                return place + 1;
            else if ((letter == u'"' || letter == u'\'') && place > from && html[place - 1] == u'=')
                quote = letter;
        }
        return html.size();
    }

    void skip_to_closing(QStringView name)
    {
        for (qsizetype close = html.indexOf(u"</", at); close >= 0; close = html.indexOf(u"</", close + 2)) {
            if (html.sliced(close + 2).startsWith(name, Qt::CaseInsensitive)) {
                at = behind_tag(close + 2 + name.size());
                return;
            }
        }
        at = html.size();
    }

    qsizetype behind(QStringView mark, qsizetype from) const
    {
        const qsizetype found = from > html.size() ? -1 : html.indexOf(mark, from);
        return found < 0 ? html.size() : found + mark.size();
    }

    QStringView html;
    qsizetype at = 0;
    int preformatted = 0;
    text_writer writer;
};

}

QString html_to_text(QStringView html)
{
    return html_reader(html).text();
}

}
